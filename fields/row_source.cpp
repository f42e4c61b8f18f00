// Row source and display control: the kind of a field's list, the list itself parsed from a
// value-list text, and the column settings.
#include <algorithm>

#include "automation/convert.hpp"
#include "automation/textops.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "fields/value_rules.hpp"

namespace celdo::fields {

using automation::Array;
using automation::Variant;

namespace {

bool starts_with_text(std::u16string_view text, std::u16string_view head) {
    return text.size() >= head.size() && automation::equal_text(text.substr(0, head.size()), head);
}

// Width of one character of a grid or list column, in twips.
constexpr int32_t kTwipsPerCharacter = 120;

}  // namespace

exRowSourceType clsCeldo::get_RowSourceType() const {
    // Derived from the text every time; the stored kind only records the caller's wish.
    if (starts_with_text(row_source_, u"Select")) return exQuery;
    if (starts_with_text(row_source_, u"Exec ")) return exSPReturnValues;
    const std::u16string_view after_first = row_source_.size() > 1 ? std::u16string_view(row_source_).substr(1) : u"";
    if (after_first.find_first_of(u";,") == std::u16string_view::npos) return exQuery;
    return exValueList;
}

Variant clsCeldo::get_DisplayControlType() const {
    // Code in column 0, Spanish name in column 1, one row per control that can be chosen.
    static constexpr std::pair<ExDisplayControl, std::u16string_view> kControls[] = {
        {exTextBox, u"Cuadro de texto"},       {exComboBox, u"Cuadro combinado"},
        {exListBox, u"Lista de valores"},      {exOptionButton, u"Botón de opciones"},
        {exBuilder, u"Generador de datos"},    {exCheckBox, u"Casilla de verificación"},
    };
    Array list = Array::matrix(2, static_cast<int32_t>(std::size(kControls)));
    for (int32_t r = 0; r < static_cast<int32_t>(std::size(kControls)); ++r) {
        list.at(0, r) = Variant(static_cast<int32_t>(kControls[r].first));
        list.at(1, r) = Variant(kControls[r].second);
    }
    return Variant(std::move(list));
}

int16_t clsCeldo::get_ColumnWidth() const {
    if (column_width_ != -1) return column_width_;
    // Not set: as wide as the type's display size, in twips.
    return static_cast<int16_t>(std::min<int32_t>(get_DefaultDisplaySize() * kTwipsPerCharacter, INT16_MAX));
}

void clsCeldo::set_ColumnHeader(Ref<Fields> value) { column_header_ = std::move(value); }

automation::Ref<collections::clsCeldos> clsCeldo::GetColumnHeader() const { return column_header_; }

Variant clsCeldo::get_GetRowSource() {
    const exRowSourceType kind = get_RowSourceType();
    if (kind == exQuery || kind == exSPReturnValues) return Variant();  // the host runs queries
    auto header = automation::make_ref<Fields>();
    column_header_ = header;
    // A list without a column count is one column of values.
    const size_t columns = column_count_ ? column_count_ : 1;
    const std::vector<std::u16string> items = cut_list(row_source_);
    size_t first = 0;
    if (column_heads_) {
        // Columns the list gives no head are named Celdo1, Celdo2... by their number from 1.
        for (size_t c = 0; c < columns; ++c) {
            const std::u16string name = c < items.size() ? items[c] : u"Celdo" + automation::to_string(Variant(static_cast<int32_t>(c + 1)));
            header->Add(name, u"", exText, 0, -1, false, u"", u"", Variant::missing(), Variant::missing(),
                        Variant::missing(), Variant::missing());
        }
        first = std::min(columns, items.size());
    }
    const size_t data = items.size() - first;
    const size_t rows = std::max<size_t>(1, (data + columns - 1) / columns);
    Array list = Array::matrix(static_cast<int32_t>(columns), static_cast<int32_t>(rows));
    for (size_t i = 0; i < data; ++i) {
        list.at(static_cast<int32_t>(i % columns), static_cast<int32_t>(i / columns)) = Variant(items[first + i]);
    }
    return Variant(std::move(list));
}

}  // namespace celdo::fields

// Lists and combos (items with a numeric ItemData), image combos (items with key, image and
// tag) and toolbars (buttons and their menus), filled from data arrays, queries run by the
// host's data-access object, or literal value lists; and a field's row source as data.

#include <optional>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "automation/textops.hpp"
#include "services/ISService.hpp"
#include "services/service_support.hpp"

namespace celdo::services {

using automation::LateBound;
using automation::Ordering;
using automation::resume_next;
using automation::Variant;
namespace lang = automation::lang;

namespace {

constexpr char16_t kTab = u'\t';

// An image index that the caller gave (not omitted, not Empty), numeric and 0 or more.
bool image_given(const Variant& index) {
    if (index.is_missing() || index.is_empty() || !lang::IsNumeric(index)) return false;
    return automation::compare_to_typed(index, Variant(0)) != Ordering::Less;
}

// Entries of a value list: cut at the first "," or, when there is none, at the first ";",
// again and again, so that one list may mix both.
std::vector<std::u16string> value_list(std::u16string rest) {
    std::vector<std::u16string> entries;
    while (!rest.empty()) {
        size_t cut = rest.find(u',');
        if (cut == std::u16string::npos) cut = rest.find(u';');
        entries.push_back(rest.substr(0, cut));
        rest.erase(0, cut == std::u16string::npos ? rest.size() : cut + 1);
    }
    return entries;
}

// A value list as a data array of one column.
Variant value_list_rows(const std::u16string& text) {
    const std::vector<std::u16string> entries = value_list(text);
    if (entries.empty()) return Variant();
    auto rows = automation::Array::matrix(1, static_cast<int32_t>(entries.size()));
    for (size_t r = 0; r < entries.size(); ++r) rows.at(0, static_cast<int32_t>(r)) = Variant(entries[r]);
    return Variant(std::move(rows));
}

// The shown text of a row: its columns after the identifier, each followed by a tab, the last
// tab dropped. A row of one column shows its identifier.
std::u16string row_text(const automation::Array& rows, int32_t r) {
    const int32_t last = rows.ubound(1);
    if (last < 1) return text_of(rows.at(0, r));
    std::u16string text;
    for (int32_t c = 1; c <= last; ++c) text += text_of(rows.at(c, r)) + kTab;
    text.pop_back();
    return text;
}

// A row of a data array as one element to add (an image-combo item, a button, a menu entry):
// its key, column 0 when keyed, then its columns from the text on, column(0) being the text.
// A keyed array of one column shows its key; columns the array lacks are Missing.
class ElementRow {
public:
    ElementRow(const automation::Array& cells, bool keyed, int32_t row)
        : cells_(cells), row_(row), first_(keyed && cells.ubound(1) >= 1 ? 1 : 0) {
        if (keyed) key = text_of(cells.at(0, row));
    }
    std::u16string key;
    Variant column(int32_t i) const {
        return first_ + i <= cells_.ubound(1) ? cells_.at(first_ + i, row_) : Variant::missing();
    }
    std::u16string text(int32_t i) const {
        const Variant cell = column(i);
        return cell.is_missing() ? std::u16string() : text_of(cell);
    }

private:
    const automation::Array& cells_;
    int32_t row_, first_;
};

template <class F>
void each_element(const Variant& rows, bool keyed, F&& add) {
    const automation::Array* cells = matrix_of(rows);
    if (!cells) return;
    for (int32_t r = 0; r <= cells->ubound(2); ++r) add(ElementRow(*cells, keyed, r));
}

// A text that the data-access object runs: "Select" after trimming, in any case, or a
// stored procedure call.
bool is_query(const std::u16string& text) {
    const std::u16string trimmed = automation::to_string(lang::Trim(Variant(text)));
    const auto starts = [&](std::u16string_view head) {
        return trimmed.size() >= head.size() && automation::equal_text(std::u16string_view(trimmed).substr(0, head.size()), head);
    };
    return starts(u"Select") || starts(u"Exec ");
}

}  // namespace

// ---- Rows from the host ---------------------------------------------------------------------------

std::optional<Variant> ISService::query_rows(const std::u16string& query, Variant* parameters) const {
    // The field collection of the short form is a new one: what the host leaves in it (the
    // rows' description) is not used by lists.
    return fetch_short(query, fields::exOpenStatic, Variant(automation::Ref<automation::Object>(
                                                         automation::make_ref<collections::clsCeldos>())),
                       parameters, nullptr);
}

std::optional<Variant> ISService::fetch_short(const std::u16string& query, int32_t mode, Variant header,
                                              Variant* parameters, Fields* header_back) const {
    LateBound ex(ex_);
    // Every argument goes by reference.
    Variant query_arg(query), mode_arg(mode), status_arg(0);
    Variant data;
    if (!parameters) {
        data = ex.call(u"ExecFillArray", {automation::ByRef{query_arg}, automation::ByRef{mode_arg},
                                          automation::ByRef{status_arg}, automation::ByRef{header}});
    } else {
        Variant absent = Variant::missing();
        data = ex.call(u"ExecFillArray", {automation::ByRef{query_arg}, automation::ByRef{mode_arg},
                                          automation::ByRef{status_arg}, automation::ByRef{header},
                                          automation::ByRef{absent}, automation::ByRef{*parameters}});
    }
    if (automation::to_long(status_arg) < 0) return std::nullopt;
    if (header_back) *header_back = fields_in(header);
    return data;
}

Variant ISService::expand(const std::u16string& text, const Fields& row) const {
    if (!ex_) return Variant(text);
    LateBound ex(ex_);
    LateBound evaluator(ex.get(u"Evaluador"));
    return evaluator.call(u"ReplaceExpresion", {text, Variant(automation::Ref<automation::Object>(row))});
}

Variant ISService::row_source_rows(fields::clsCeldo& field, const Fields& row) const {
    const fields::exRowSourceType kind = field.get_RowSourceType();
    if (kind != fields::exQuery && kind != fields::exSPReturnValues) return field.get_GetRowSource();
    LateBound ex(ex_);
    Variant query = expand(field.get_RowSource(), row), mode(static_cast<int32_t>(fields::exOpenStatic)), status(0);
    Variant rows = ex.call(u"GetArray", {automation::ByRef{query}, automation::ByRef{mode}, automation::ByRef{status}});
    return automation::to_long(status) < 0 ? Variant() : rows;
}

// ---- Lists and combos -----------------------------------------------------------------------------

void ISService::ExecFillListDB(Object& rlstList, const std::u16string& vstrQuery, Variant& aParametros) {
    resume_next([&] {
        LateBound list(rlstList);
        // An image combo has no Clear of its own: FillImageCombo empties its items.
        resume_next([&] { list.call(u"Clear"); });
        const std::optional<Variant> rows = query_rows(vstrQuery, aParametros.is_missing() ? nullptr : &aParametros);
        if (!rows) return;
        const std::u16string type = rlstList ? rlstList->type_name() : std::u16string();
        if (type == u"ImageCombo" || type == u"icbo") FillImageCombo(rlstList, *rows, true);
        else FillListDB(rlstList, *rows);
    });
}

void ISService::FillListDB(Object rlstList, const Variant& Registros) {
    resume_next([&] {
        LateBound list(rlstList);
        list.call(u"Clear");
        Variant rows = Registros;
        if (rows.is_string()) {
            const std::u16string text = automation::to_string(lang::Trim(rows));
            if (is_query(text)) {
                const std::optional<Variant> fetched = query_rows(text, nullptr);
                if (!fetched) return;
                rows = *fetched;
            } else {
                for (const std::u16string& entry : value_list(text)) list.call(u"AddItem", {entry});
                return;
            }
        }
        const automation::Array* cells = matrix_of(rows);
        if (!cells) return;
        const bool one_column = cells->ubound(1) < 1;
        for (int32_t r = 0; r <= cells->ubound(2); ++r) {
            list.call(u"AddItem", {row_text(*cells, r)});
            const Variant& id = cells->at(0, r);
            // ItemData is a Long: a list of one column keeps a text identifier as its text only.
            if (one_column && !lang::IsNumeric(id)) continue;
            list.let(u"ItemData", {list.get(u"NewIndex"), id});
        }
    });
}

void ISService::AddComboItem(Object rlstCombo, const std::u16string& vstrClave, const std::u16string& vstrInfo,
                             const Variant& vImage, const Variant& vSelImage, const std::u16string& oTag) {
    LateBound combo(rlstCombo);
    LateBound items(combo.get(u"ComboItems"));
    LateBound item(items.call(u"Add", {Variant::missing(), element_key(vstrClave), vstrInfo}));
    item.let(u"Tag", {oTag});
    if (image_given(vImage)) item.let(u"Image", {vImage});
    if (image_given(vSelImage)) item.let(u"SelImage", {vSelImage});
}

// Columns, as AddComboItem takes them: key (when keyed), text, image, selected image, tag.
// Without a key the text is column 0; a keyed array of one column shows its key.
void ISService::FillImageCombo(Object rlstList, const Variant& Registros, bool obolKey) {
    resume_next([&] {
        LateBound combo(rlstList);
        LateBound items(combo.get(u"ComboItems"));
        items.call(u"Clear");
        const std::optional<Variant> rows = element_rows(Registros, true);
        if (!rows) return;
        each_element(*rows, obolKey, [&](const ElementRow& e) {
            AddComboItem(rlstList, e.key, e.text(0), e.column(1), e.column(2), e.text(3));
        });
        // The first item shows, as a combo that opens on its first entry.
        if (automation::to_long(items.get(u"Count")) > 0) LateBound(items.get(u"Item", {1})).let(u"Selected", {true});
    });
}

// The text a field's value stands for: the other columns of the row source's row whose
// identifier (column 0) is the value, joined by tabs as a list shows them; Null when no row
// matches or the row source gives no rows. Identifiers compare by their text, without regard
// to case, so that a number field finds its value among a value list's texts.
Variant ISService::FindRowSource(Field objCeldo, const Variant& RowSource) {
    if (!objCeldo) throw automation::AutomationError(automation::StdError::ObjectVariableNotSet);
    return find_row_source(*objCeldo, RowSource, nullptr);
}

// `row`, when known, is the row whose fields a query row source may name.
Variant ISService::find_row_source(fields::clsCeldo& field, const Variant& rows_given, const Fields& row) const {
    const Variant value = field.get_Value();
    if (value.is_null() || value.is_empty()) return Variant::null();
    Variant rows = rows_given;
    const fields::exRowSourceType kind = field.get_RowSourceType();
    if (kind == fields::exQuery || kind == fields::exSPReturnValues) rows = row_source_rows(field, row);
    else if (rows.is_string()) rows = value_list_rows(rows.as_string());
    const automation::Array* cells = matrix_of(rows);
    if (!cells) return Variant::null();
    const std::u16string wanted = automation::to_string(value);
    for (int32_t r = 0; r <= cells->ubound(2); ++r) {
        if (automation::equal_text(text_of(cells->at(0, r)), wanted)) return Variant(row_text(*cells, r));
    }
    return Variant::null();
}

// ---- Toolbars -------------------------------------------------------------------------------------

void ISService::AddButtonItem(Object rlstCombo, const std::u16string& vstrClave, const std::u16string& vstrInfo,
                              const Variant& vImage, const std::u16string& vToolTip, const std::u16string& oTag) {
    LateBound toolbar(rlstCombo);
    LateBound buttons(toolbar.get(u"Buttons"));
    LateBound button(buttons.call(u"Add", {Variant::missing(), element_key(vstrClave), vstrInfo}));
    button.let(u"Tag", {oTag});
    button.let(u"ToolTipText", {vToolTip});
    if (image_given(vImage)) button.let(u"Image", {vImage});
}

void ISService::AddButtonMenuItem(Object rlstCombo, Variant& Index, const std::u16string& vstrClave,
                                  const std::u16string& vstrInfo) {
    LateBound toolbar(rlstCombo);
    LateBound buttons(toolbar.get(u"Buttons"));
    LateBound button(buttons.get(u"Item", {Index}));
    LateBound(button.get(u"ButtonMenus")).call(u"Add", {Variant::missing(), element_key(vstrClave), vstrInfo});
}

// Rows of elements: a query is run (a text first passed through the host's expressions when
// `expanded`), any other text is a value list, one element per entry.
std::optional<Variant> ISService::element_rows(const Variant& registros, bool expanded) const {
    if (!registros.is_string()) return registros;
    const std::u16string text =
        expanded ? automation::to_string(lang::Trim(expand(registros.as_string(), nullptr))) : registros.as_string();
    if (is_query(text)) return query_rows(text, nullptr);
    return value_list_rows(text);
}

// Columns, as AddButtonItem takes its arguments: key (when keyed), then text, image, tooltip
// and tag, as many as the array has; a keyed array of one column shows its key.
void ISService::FillToolBar(Object& rlstList, const Variant& Registros, bool obolKey) {
    resume_next([&] {
        const std::optional<Variant> rows = element_rows(Registros, false);
        if (!rows) return;
        each_element(*rows, obolKey, [&](const ElementRow& e) {
            AddButtonItem(rlstList, e.key, e.text(0), e.column(1), e.text(2), e.text(3));
        });
    });
}

// Columns: key (when keyed), then the entry's text; a keyed array of one column shows its key.
void ISService::FillButtonMenus(Object rlstList, Variant& Index, const Variant& Registros, bool obolKey) {
    resume_next([&] {
        LateBound toolbar(rlstList);
        LateBound button(LateBound(toolbar.get(u"Buttons")).get(u"Item", {Index}));
        LateBound(button.get(u"ButtonMenus")).call(u"Clear");
        const std::optional<Variant> rows = element_rows(Registros, false);
        if (!rows) return;
        each_element(*rows, obolKey, [&](const ElementRow& e) { AddButtonMenuItem(rlstList, Index, e.key, e.text(0)); });
    });
}

}  // namespace celdo::services

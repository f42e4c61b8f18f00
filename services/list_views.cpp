// List views (report view) and data grids: items from info strings, fills from data arrays,
// collections and rows, column headers and sorting.

#include <algorithm>
#include <optional>
#include <vector>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "services/ISService.hpp"
#include "services/service_support.hpp"

namespace celdo::services {

using automation::LateBound;
using automation::Ordering;
using automation::resume_next;
using automation::Variant;

namespace {

// Taken off a list view's width before sharing it among columns: room for the vertical
// scroll bar and the borders, so that filled columns never force a horizontal one.
constexpr double kListViewMargin = 330;

// ColumnHeader alignments.
constexpr int32_t kAlignLeft = 0;
constexpr int32_t kAlignRight = 1;

// One piece cut off the front of `rest` at the first `separator`. Only one character of the
// separator is skipped, deliberately: a longer separator leaves its tail on the next piece.
std::u16string cut_piece(std::u16string& rest, const std::u16string& separator) {
    const size_t found = rest.find(separator);
    std::u16string piece;
    if (found == std::u16string::npos) {
        piece = std::move(rest);
        rest.clear();
    } else {
        piece = rest.substr(0, found);
        rest.erase(0, found + 1);
    }
    return piece;
}

// Numbers show right-aligned; a list view keeps its first column left-aligned whatever it is
// asked.
bool is_numeric_type(fields::ExDataType type) {
    switch (type) {
        case fields::exByte: case fields::exInteger: case fields::exLong: case fields::exCurrency:
        case fields::exSingle: case fields::exDouble: case fields::exFloat: case fields::exDecimal:
        case fields::exAutoNumeric: case fields::exBigInt: case fields::exSmallCurrency:
        case fields::exPositeveInteger: case fields::exnumExpresion:
            return true;
        default:
            return false;
    }
}

struct Column {
    Variant key = Variant::missing();
    std::u16string caption;
    std::optional<double> width;
    int32_t alignment = kAlignLeft;
};

// "Caption[,Width[,Alignment]]" entries separated by ";": a width in twips and a ColumnHeader
// alignment (0 left, 1 right, 2 centre) may follow each caption.
std::vector<Column> columns_of_text(std::u16string rest) {
    std::vector<Column> columns;
    while (!rest.empty()) {
        std::u16string entry = cut_piece(rest, u";");
        Column column;
        column.caption = cut_piece(entry, u",");
        const std::u16string width = cut_piece(entry, u",");
        if (automation::lang::IsNumeric(Variant(width))) column.width = automation::to_double(Variant(width));
        if (automation::lang::IsNumeric(Variant(entry))) column.alignment = automation::to_long(Variant(entry));
        columns.push_back(std::move(column));
    }
    return columns;
}

Column column_of(const fields::clsCeldo& field) {
    Column column;
    column.key = Variant(field.get_Name());
    column.caption = field.get_Caption();
    column.width = field.get_ColumnWidth();
    column.alignment = is_numeric_type(field.get_DataType()) ? kAlignRight : kAlignLeft;
    return column;
}

std::vector<Column> columns_of(const Variant& header) {
    if (header.is_string()) return columns_of_text(header.as_string());
    std::vector<Column> columns;
    if (!header.is_object() || !header.as_object()) return columns;
    automation::Object* object = header.as_object();
    if (auto* fields = dynamic_cast<collections::clsCeldos*>(object)) {
        for (size_t i = 0; i < fields->size(); ++i) columns.push_back(column_of(fields->at(i)));
    } else if (auto* field = dynamic_cast<fields::clsCeldo*>(object)) {
        columns.push_back(column_of(*field));
    } else {
        // Another host's column description, such as a ColumnHeader of another list view.
        LateBound described(header);
        Column column;
        column.caption = automation::to_string(described.get(u"Caption"));
        column.alignment = automation::to_long(described.get(u"DefaultAlignment"));
        columns.push_back(std::move(column));
    }
    return columns;
}

int32_t header_count(LateBound& view) {
    LateBound headers(view.get(u"ColumnHeaders"));
    return automation::to_long(headers.get(u"Count"));
}

}  // namespace

void ISService::AddListItem(Object& rlstView, const std::u16string& vstrClave, const Variant& vIcon,
                            const Variant& vSmallIcon, const std::u16string& vstrInfo,
                            const std::u16string& Separador, const std::u16string& oTag) {
    // The first error ends the item where it stands: what was set so far stays.
    resume_next([&] {
        LateBound view(rlstView);
        LateBound item;
        std::optional<int32_t> columns;
        std::u16string rest = vstrInfo;
        for (int16_t i = 0; !rest.empty(); ++i) {
            std::u16string piece = cut_piece(rest, Separador);
            if (i == 0) {
                LateBound items(view.get(u"ListItems"));
                item = LateBound(items.call(u"Add", {Variant::missing(), element_key(vstrClave), piece}));
                item.let(u"Tag", {oTag});
                if (at_least_zero(vIcon)) item.let(u"Icon", {vIcon});
                if (at_least_zero(vSmallIcon)) item.let(u"SmallIcon", {vSmallIcon});
                continue;
            }
            if (!columns) columns = header_count(view);
            // Pieces beyond the columns overwrite the tag, the last one winning.
            if (*columns >= i) item.let(u"SubItems", {i, piece});
            else item.let(u"Tag", {piece});
        }
    });
}

void ISService::ExecFillListView(Object& rlstView, int16_t vintList, const std::u16string& vstrQuery,
                                 fields::exTypeRs Mode, int16_t Opciones, const std::u16string& Separador,
                                 Fields& oarrParametros, int32_t& olngMaxRows, bool obolKey, bool oPersintente) {
    resume_next([&] {
        if (!connected()) return;
        // The status is not looked at: the fill goes on whatever the data-access object says.
        int32_t status = 0;
        Fields header;
        const Variant data = fetch(vstrQuery, Mode, status, header, Opciones, oarrParametros, olngMaxRows);
        if (olngMaxRows != -1) {
            FillListView(rlstView, vintList, data, header, Separador, obolKey, oPersintente);
            return;
        }
        // -1 rows: the columns are prepared and the list left empty.
        LateBound view(rlstView);
        LateBound(view.get(u"ListItems")).call(u"Clear");
        if (header_count(view) != 0) return;
        Variant described{automation::Ref<automation::Object>(header)};
        ListViewColumnHeaders(rlstView, described, false);
        if (obolKey && header && header->get_Count() > 1) LateBound(view.get(u"ColumnHeaders")).call(u"Remove", {1});
    });
}

void ISService::FillListView(Object& rlstView, int16_t vintList, const Variant& Datos, Fields colCeldos,
                             const std::u16string& Separador, bool obolKey, bool oPersintente) {
    // Every step goes on past an error: one bad cell or item does not stop the fill.
    LateBound view(rlstView);
    if (!oPersintente) resume_next([&] { LateBound(view.get(u"ListItems")).call(u"Clear"); });
    resume_next([&] {
        if (colCeldos && header_count(view) == 0) {
            Variant described{automation::Ref<automation::Object>(colCeldos)};
            ListViewColumnHeaders(rlstView, described, obolKey);
        }
    });
    if (matrix_of(Datos)) fill_list_array(rlstView, vintList, Datos, colCeldos, Separador, obolKey);
    else if (Datos.is_object() && Datos.as_object()) fill_list_objects(rlstView, vintList, Datos, colCeldos, Separador, obolKey);
    // Anything else holds no rows: nothing is added.
}

void ISService::fill_list_array(Object& view, int16_t list, const Variant& data, const Fields& header,
                                const std::u16string& separator, bool key) {
    const automation::Array& cells = *matrix_of(data);
    const int32_t last_column = cells.ubound(1), last_row = cells.ubound(2);
    const bool keyed = key && last_column >= 1;
    const int32_t first = keyed ? 1 : 0;
    const int32_t count = header ? header->get_Count() : 0;
    // Header fields are numbered from 1: with fewer columns than fields, column c is described by
    // field c + 1; with more, by field c, so that the first column has no field.
    const int32_t offset = last_column + 1 <= count ? 1 : 0;
    auto field_at = [&](int32_t position) {
        Variant index(position);
        return header->get_Item(index);
    };
    const Variant shown = Variant(list);
    for (int32_t r = 0; r <= last_row; ++r) {
        std::u16string info, item_key;
        if (keyed) resume_next([&] { item_key = automation::to_string(cells.at(0, r)); });
        for (int32_t c = first; c <= last_column; ++c) {
            Variant cell = cells.at(c, r);
            if (!header) {
                resume_next([&] { info += text_of(cell) + separator; });
                continue;
            }
            resume_next([&] {
                if (cell.is_null()) cell = shown_for_null(*field_at(c + offset));
            });
            resume_next([&] { info += build_format(cell, field_at(c + offset)->get_Format()) + separator; });
        }
        // One character off the end, whatever the separator's length.
        if (!info.empty()) info.pop_back();
        AddListItem(view, item_key, shown, shown, info, separator, u"");
    }
}

void ISService::fill_list_objects(Object& view, int16_t list, const Variant& data, const Fields& header,
                                  const std::u16string& separator, bool key) {
    LateBound collection(data);
    int32_t count = 0;
    if (!resume_next([&] { count = automation::to_long(collection.get(u"Count")); })) return;
    const Variant shown = Variant(list);
    for (int32_t i = 1; i <= count; ++i) {
        Variant element;
        if (!resume_next([&] { element = collection.get(u"Item", {i}); })) continue;
        if (!element.is_object()) {
            // A collection of info strings; the text before the first separator is the key.
            resume_next([&] {
                const std::u16string info = element.is_null() ? u" " : automation::to_string(element);
                const size_t found = info.find(separator);
                const std::u16string item_key = found == std::u16string::npos ? u"" : info.substr(0, found);
                AddListItem(view, item_key, shown, shown, info, separator, u"");
            });
            continue;
        }
        // A row of fields: the header's fields (or the row's own) are looked up in it by name.
        LateBound row(element);
        Fields described = header && header->get_Count() > 0 ? header : nullptr;
        if (!described) resume_next([&] { described = fields_in(element); });
        const std::vector<Field> columns = fields_of(described);
        const bool keyed = key && columns.size() >= 2;
        std::u16string info, item_key;
        for (size_t c = 0; c < columns.size(); ++c) {
            resume_next([&] {
                const Variant found = row.get(u"Item", {columns[c]->get_Name()});
                const Variant value = found.is_object() ? LateBound(found).get(u"Value") : found;
                if (keyed && c == 0) item_key = text_of(value);
                else info += build_format(value, columns[c]->get_Format()) + separator;
            });
        }
        if (!info.empty()) info.pop_back();
        AddListItem(view, item_key, shown, shown, info, separator, u"");
    }
}

void ISService::ListViewColumnHeaders(Object& rlstView, Variant& vHeader, bool obolKey) {
    LateBound view(rlstView);
    LateBound headers(view.get(u"ColumnHeaders"));
    headers.call(u"Clear");
    const double share = automation::to_double(view.get(u"Width")) - kListViewMargin;
    std::vector<Column> columns = columns_of(vHeader);
    if (columns.empty()) return;
    // Columns without a width share what the others leave.
    double given = 0;
    size_t open = 0;
    for (const Column& c : columns) {
        if (c.width) given += *c.width;
        else ++open;
    }
    for (Column& c : columns) {
        if (!c.width) c.width = std::max(0.0, (share - given) / static_cast<double>(open));
    }
    columns.front().alignment = kAlignLeft;
    for (const Column& c : columns) {
        headers.call(u"Add", {Variant::missing(), c.key, c.caption, static_cast<float>(*c.width), c.alignment});
    }
    size_t first_shown = 0;
    if (obolKey && columns.size() > 1) {
        headers.call(u"Remove", {1});
        first_shown = 1;
    }
    double used = 0;
    for (size_t i = first_shown; i < columns.size(); ++i) used += *columns[i].width;
    if (used >= share) return;
    // What the widths leave goes to the last column, so the list fills its width.
    const int32_t last = static_cast<int32_t>(columns.size() - first_shown);
    LateBound column(headers.get(u"Item", {last}));
    const double width = automation::to_double(column.get(u"Width"));
    column.let(u"Width", {static_cast<float>(width + share - used)});
}

void ISService::ListViewColumnClick(Object rlst, Object ColumnHeader) {
    LateBound view(rlst);
    // Ascending (0) becomes descending (1), anything else ascending: a second click toggles.
    const bool ascending = automation::compare_to_typed(view.get(u"SortOrder"), Variant(0)) == Ordering::Equal;
    view.let(u"SortOrder", {ascending ? 1 : 0});
    LateBound clicked(ColumnHeader);
    view.let(u"SortKey", {automation::to_integer(Variant(automation::to_long(clicked.get(u"Index")) - 1))});
    view.let(u"Sorted", {true});
}

void ISService::DBGridColumnHeaders(Object rdbgSource, Object& vcolHeaders) {
    LateBound grid(rdbgSource);
    LateBound columns(grid.get(u"Columns"));
    columns.call(u"RemoveAll");
    LateBound captions(vcolHeaders);
    const int32_t count = automation::to_long(captions.get(u"Count"));
    const int32_t width = automation::to_long(
        automation::lang::Round(Variant(automation::to_double(grid.get(u"Width")) / (count + 1))));
    // Kept as hosts know it: the columns are counted from 0 against a collection counted from 1,
    // so a standard collection refuses item 0 (error 9), after the grid was cleared and one
    // column added; that error reaches the caller.
    for (int32_t i = 0; i <= count; ++i) {
        columns.call(u"Add", {i});
        LateBound column(columns.get(u"Item", {i}));
        column.let(u"Caption", {captions.get(u"Item", {i})});
        column.let(u"Width", {width});
    }
}

// ---- Moving entries between list views and data grids -------------------------------------------

namespace {

// A list item's text and its sub-items, one per column after the first, joined by the
// separator: the info string that AddListItem takes and a data grid's line.
std::u16string info_of(LateBound& item, LateBound& source, const std::u16string& separator) {
    std::u16string info = text_of(item.get(u"Text"));
    const int32_t columns = header_count(source);
    for (int32_t i = 1; i <= columns - 1; ++i) info += separator + text_of(item.get(u"SubItems", {i}));
    return info;
}

void remove_item(LateBound& source, LateBound& item) {
    LateBound(source.get(u"ListItems")).call(u"Remove", {item.get(u"Index")});
}

int32_t item_count(const ISService::Object& view) {
    return automation::to_long(LateBound(LateBound(view).get(u"ListItems")).get(u"Count"));
}

}  // namespace

// The item keeps its key and its tag; its icons belong to the source's image lists and stay.
// AddListItem keeps its failures to itself, so the entry leaves its source only once the target
// holds one more: a target that refuses it (a key it holds already) loses nothing.
void ISService::SawpListView(Object& vItem, Object rlstSource, Object rlstTarget, const std::u16string& Separador) {
    resume_next([&] {
        LateBound item(vItem), source(rlstSource);
        const std::u16string info = info_of(item, source, Separador);
        const int32_t before = item_count(rlstTarget);
        AddListItem(rlstTarget, text_of(item.get(u"Key")), Variant(-1), Variant(-1), info, Separador,
                    text_of(item.get(u"Tag")));
        if (item_count(rlstTarget) > before) remove_item(source, item);
    });
}

void ISService::SawpListViewGrid(Object& vItem, Object rlstSource, Object rdbgTarget, const std::u16string& Separador) {
    resume_next([&] {
        LateBound item(vItem), source(rlstSource), grid(rdbgTarget);
        grid.let(u"FieldSeparator", {Separador});
        grid.call(u"AddItem", {info_of(item, source, Separador)});
        remove_item(source, item);
    });
}

// The row is made the grid's current one and read through its columns, as many as the list
// view has; a grid row has no key, so the new item has none.
void ISService::SawpGridListView(int16_t& vIndex, Object rdbgSource, Object rlstTarget, const std::u16string& Separador) {
    resume_next([&] {
        LateBound grid(rdbgSource), target(rlstTarget);
        grid.let(u"Row", {vIndex});
        LateBound columns(grid.get(u"Columns"));
        const int32_t count = header_count(target);
        std::u16string info;
        for (int32_t c = 0; c < count; ++c) {
            info += (c ? Separador : std::u16string()) + text_of(LateBound(columns.get(u"Item", {c})).get(u"Value"));
        }
        const int32_t before = item_count(rlstTarget);
        AddListItem(rlstTarget, u"", Variant(-1), Variant(-1), info, Separador, u"");
        if (item_count(rlstTarget) > before) grid.call(u"RemoveItem", {vIndex});
    });
}

// With a description of the rows the grid gets one column per field, captioned and as wide as
// the field's column; without one its columns stay as they are.
void ISService::ExecFillGrid(Object rdbgSource, const std::u16string& vstrQuery, int16_t Mode, int16_t Opciones,
                             const std::u16string& Separador, Fields& oarrParametros) {
    resume_next([&] {
        if (!connected()) return;
        int32_t status = 0, max_rows = 0;
        Fields header;
        const Variant data = fetch(vstrQuery, static_cast<fields::exTypeRs>(Mode), status, header, Opciones,
                                   oarrParametros, max_rows);
        if (status < 0) return;
        LateBound grid(rdbgSource);
        if (header) {
            const std::vector<Field> fields = fields_of(header);
            grid.let(u"Cols", {static_cast<int32_t>(fields.size())});
            LateBound columns(grid.get(u"Columns"));
            for (size_t c = 0; c < fields.size(); ++c) {
                LateBound column(columns.get(u"Item", {static_cast<int32_t>(c)}));
                column.let(u"Caption", {fields[c]->get_Caption()});
                column.let(u"Width", {fields[c]->get_ColumnWidth()});
            }
        }
        FillGrid(rdbgSource, data, Separador);
    });
}

void ISService::FillGrid(Object rdbgSource, const Variant& vData, const std::u16string& Separador) {
    resume_next([&] {
        LateBound grid(rdbgSource);
        grid.call(u"RemoveAll");
        grid.let(u"FieldSeparator", {Separador});
        const automation::Array* cells = matrix_of(vData);
        if (!cells) return;
        for (int32_t r = 0; r <= cells->ubound(2); ++r) {
            std::u16string line;
            for (int32_t c = 0; c <= cells->ubound(1); ++c) line += (c ? Separador : std::u16string()) + text_of(cells->at(c, r));
            grid.call(u"AddItem", {line});
        }
    });
}

}  // namespace celdo::services

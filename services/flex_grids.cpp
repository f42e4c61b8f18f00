// Flex grids (MSFlexGrid, MSHFlexGrid): the header row, fills from data arrays, texts and rows,
// single-row editing and the clipboard. Column 0 and row 0 are fixed: data column c lands in
// grid column c + FixedCols.

#include <algorithm>
#include <vector>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "services/ISService.hpp"
#include "services/clipboard.hpp"
#include "services/service_support.hpp"

namespace celdo::services {

using automation::LateBound;
using automation::resume_next;
using automation::Variant;
using fields::ExDataType;

namespace {

// The grid's fixed colours, in 0x00BBGGRR.
constexpr int32_t kWhite = 16777215;
constexpr int32_t kHeaderBlue = 8800768;
constexpr int32_t kLineBlue = 8735488;
// The system window colour, which every second data row keeps.
constexpr int32_t kWindowColour = static_cast<int32_t>(0x80000005u);
// Row counters are 16-bit: rows past this one are counted in Rows but left empty.
constexpr int32_t kLastFilledRow = 30000;
// Widths in twips.
constexpr int32_t kGridMargin = 200;
constexpr int32_t kMaxTextWidth = 4000;
// Set after a fill: a minimum row height that fits one line of the default font, and a narrow
// fixed column that serves as the row selector.
constexpr int32_t kRowHeightMin = 285;
constexpr int32_t kSelectorWidth = 285;
// FillStyle: a cell property set while it is 1 applies to the whole selection.
constexpr int16_t kFillSingle = 0;
constexpr int16_t kFillRepeat = 1;
// ColAlignment: left and top.
constexpr int16_t kAlignLeftTop = 0;

bool is_time_type(ExDataType type) {
    switch (type) {
        case fields::exTime: case fields::exTimeNumber: case fields::exDate: case fields::exDateNumber:
        case fields::exDateTime: case fields::exTimeStamp: case fields::exdtmExpresion:
            return true;
        default:
            return false;
    }
}

// The part of a format before its first ";".
std::u16string first_section(const std::u16string& format) { return format.substr(0, format.find(u';')); }

struct Width {
    int32_t twips = 0;  // 0: the column keeps its width
    bool capped = false;
};

Width column_width(const fields::clsCeldo& field) {
    const ExDataType type = field.get_DataType();
    if (field.get_DisplayControl() == fields::exHelpButton) return {315};
    if (is_time_type(type)) return {1000};
    switch (type) {
        case fields::exChar: case fields::exText: {
            const std::u16string format = field.get_Format();
            // Kept as hosts know it: a sectioned format's first section length is taken as
            // twips as it stands, without the factor the size gets.
            const int64_t wanted = format.find(u';') == std::u16string::npos
                                       ? int64_t{150} * field.get_Size()
                                       : static_cast<int64_t>(first_section(format).size());
            if (wanted > kMaxTextWidth) return {kMaxTextWidth, true};
            return {static_cast<int32_t>(wanted)};
        }
        case fields::exMemo:
            return {1000};
        case fields::exCurrency: case fields::exDecimal: case fields::exDouble: case fields::exFloat:
        case fields::exInteger: case fields::exLong: case fields::exSingle: {
            size_t k = first_section(field.get_Format()).size();
            if (k == 0) k = 10;
            return {static_cast<int32_t>(110 * std::min<size_t>(k, 17))};
        }
        case fields::exByte: case fields::exBoolean:
            return {800};
        case fields::exAutoNumeric:
            return {1000};
        default:
            return {};
    }
}

// The header as the grid's FormatString ("|" first, for the fixed column) and what sizes its
// columns.
struct Layout {
    std::u16string format = u"|";
    int32_t columns = 0;
    std::vector<Field> fields;  // a field header
    bool captions = false;      // a plain collection of captions: equal shares
};

void add_caption(Layout& layout, const std::u16string& caption) {
    layout.format += caption + u"|";
    ++layout.columns;
}

Layout layout_of(const Variant& header) {
    Layout layout;
    if (header.is_object() && header.as_object()) {
        automation::Object* object = header.as_object();
        if (auto* fields = dynamic_cast<collections::clsCeldos*>(object)) {
            layout.fields = fields_of(Fields(fields));
        } else if (auto* field = dynamic_cast<fields::clsCeldo*>(object)) {
            layout.fields.emplace_back(field);
        } else {
            LateBound captions(header);
            const int32_t count = automation::to_long(captions.get(u"Count"));
            for (int32_t i = 1; i <= count; ++i) add_caption(layout, automation::to_string(captions.get(u"Item", {i})));
            layout.captions = true;
        }
        for (const Field& f : layout.fields) add_caption(layout, f->get_Caption());
    } else {
        // Captions cut at the first ";", or at the first "," when no ";" is left.
        std::u16string rest = automation::to_string(header);
        while (!rest.empty()) {
            size_t found = rest.find(u';');
            if (found == std::u16string::npos) found = rest.find(u',');
            if (found == std::u16string::npos) {
                add_caption(layout, rest);
                break;
            }
            add_caption(layout, rest.substr(0, found));
            rest.erase(0, found + 1);
        }
    }
    layout.format.pop_back();
    return layout;
}

std::vector<std::u16string> split_at(const std::u16string& text, char16_t separator) {
    std::vector<std::u16string> cells;
    size_t start = 0;
    for (;;) {
        const size_t found = text.find(separator, start);
        cells.push_back(text.substr(start, found - start));
        if (found == std::u16string::npos) return cells;
        start = found + 1;
    }
}

// The cells of a one-row text: cut at ";" when it has one, else at ",", and trimmed.
std::vector<std::u16string> cells_of_text(const std::u16string& text) {
    std::vector<std::u16string> cells = split_at(text, text.find(u';') != std::u16string::npos ? u';' : u',');
    for (std::u16string& cell : cells) cell = std::u16string(automation::trim(cell));
    return cells;
}

// The format of each column a field describes, read once per fill rather than once per cell.
std::vector<std::u16string> formats_of(const std::vector<Field>& fields) {
    std::vector<std::u16string> formats;
    formats.reserve(fields.size());
    for (const Field& f : fields) formats.push_back(f->get_Format());
    return formats;
}

// A cell as the grid shows it: formatted by the field that describes its column, if any.
Variant shown_cell(const Variant& cell, const std::vector<std::u16string>& formats, size_t column) {
    if (column < formats.size()) return Variant(build_format(cell, formats[column]));
    return cell;
}

}  // namespace

void ISService::FlexGridHeader(Object& rdbgSource, const Variant& vHeader) {
    // An error ends the layout where it stands, Redraw possibly still off.
    resume_next([&] {
        LateBound grid(rdbgSource);
        grid.let(u"Redraw", {false});
        const Layout layout = layout_of(vHeader);
        const int32_t cols = automation::to_long(grid.get(u"Cols"));
        const int32_t fixed = automation::to_long(grid.get(u"FixedCols"));
        // A grid with more scrollable columns than the header describes keeps its layout.
        if (cols == layout.columns || cols - fixed <= layout.columns) {
            grid.let(u"Cols", {layout.columns + 1});
            grid.let(u"FixedCols", {1});
            grid.let(u"Rows", {1});
            grid.let(u"FormatString", {layout.format});
            double share = automation::to_double(grid.get(u"Width")) - kGridMargin;
            if (automation::to_long(grid.get(u"FixedCols")) == 1)
                share -= automation::to_double(grid.get(u"ColWidth", {0}));
            // Long captions wrap instead of being cut.
            const int32_t last = automation::to_long(grid.get(u"Cols")) - 1;
            for (int32_t c = 1; c <= last; ++c) {
                grid.let(u"Row", {0});
                grid.let(u"Col", {c});
                grid.let(u"WordWrap", {true});
            }
            grid.let(u"ForeColorFixed", {kWhite});
            grid.let(u"BackColorFixed", {kHeaderBlue});
            grid.let(u"GridColorFixed", {kHeaderBlue});
            if (layout.captions) {
                const double total = 10.0 * layout.columns;
                for (int32_t c = 1; c <= layout.columns; ++c) {
                    grid.let(u"ColWidth", {c, automation::to_long(Variant(share * 10 / total))});
                }
            }
            std::vector<int32_t> capped;
            int32_t column = 1;
            for (const Field& f : layout.fields) {
                // A hidden field keeps its column's width but still takes its column.
                if (f->get_Visible()) {
                    const Width width = column_width(*f);
                    if (width.capped) capped.push_back(column);
                    if (width.twips > 0) grid.let(u"ColWidth", {column, width.twips});
                }
                ++column;
            }
            // A capped column holds texts longer than it shows: they wrap from the cell's top
            // left rather than being centred on a cut line.
            for (int32_t c : capped) grid.let(u"ColAlignment", {c, kAlignLeftTop});
        }
        grid.let(u"Redraw", {true});
    });
}

void ISService::FillFlexGrid(Object rdbgSource, Variant& vData, Fields& rHeader) {
    resume_next([&] {
        LateBound grid(rdbgSource);
        open_grid_fill(grid);
        if (vData.is_object()) {
            fill_grid_rows(grid, vData, rHeader);
        } else if (vData.is_string()) {
            // One row of cells.
            const std::vector<std::u16string> cells = cells_of_text(vData.as_string());
            automation::Array row = automation::Array::matrix(static_cast<int32_t>(cells.size()), 1);
            for (size_t c = 0; c < cells.size(); ++c) row.at(static_cast<int32_t>(c), 0) = Variant(cells[c]);
            fill_grid_matrix(grid, row, rHeader);
        } else if (matrix_of(vData)) {
            // The caller's own array: its Null cells are replaced where they stand.
            fill_grid_matrix(grid, vData.array_mut(), rHeader);
        }
        close_grid_fill(grid);
    });
}

void ISService::open_grid_fill(LateBound& grid) {
    grid.let(u"Redraw", {false});
    grid.let(u"BackColorBkg", {kLineBlue});
    grid.let(u"GridColorFixed", {kLineBlue});
    grid.let(u"GridColor", {kLineBlue});
    grid.let(u"ForeColor", {kLineBlue});
}

void ISService::close_grid_fill(LateBound& grid) {
    grid.let(u"RowHeightMin", {kRowHeightMin});
    grid.let(u"ColWidth", {0, kSelectorWidth});
    grid.let(u"Redraw", {true});
}

void ISService::band_row(LateBound& grid, int32_t row, int32_t fixed_rows, int32_t fixed_cols, int32_t cols) {
    grid.let(u"FillStyle", {kFillRepeat});
    grid.let(u"Row", {row + fixed_rows});
    grid.let(u"Col", {fixed_cols});
    grid.let(u"ColSel", {cols - fixed_cols});
    grid.let(u"CellBackColor", {row % 2 == 0 ? cell_back_color_ : kWindowColour});
    grid.let(u"FillStyle", {kFillSingle});
}

void ISService::fill_grid_matrix(LateBound& grid, automation::Array& cells, const Fields& header) {
    const int32_t last_column = cells.ubound(1), last_row = cells.ubound(2);
    const std::vector<Field> fields = fields_of(header);
    const std::vector<std::u16string> formats = formats_of(fields);
    std::vector<bool> help_buttons;
    for (const Field& f : fields) help_buttons.push_back(f->get_DisplayControl() == fields::exHelpButton);
    grid.let(u"BackColorBkg", {kWhite});
    const int32_t fixed_rows = automation::to_long(grid.get(u"FixedRows"));
    grid.let(u"Rows", {last_row + fixed_rows + 1});
    const int32_t fixed_cols = automation::to_long(grid.get(u"FixedCols"));
    const int32_t cols = last_column + fixed_cols + 1;
    grid.let(u"Cols", {cols});
    for (int32_t r = 0; r <= std::min(last_row, kLastFilledRow); ++r) {
        for (int32_t c = 0; c <= last_column; ++c) {
            Variant& cell = cells.at(c, r);
            const size_t column = static_cast<size_t>(c);
            // A Null cell is replaced in the array, so the caller sees what was shown; a column
            // no field describes shows it as empty text.
            if (cell.is_null() && column < fields.size()) cell = shown_for_null(*fields[column]);
            const Variant shown = cell.is_null() ? Variant(std::u16string()) : shown_cell(cell, formats, column);
            grid.let(u"TextMatrix", {r + fixed_rows, c + fixed_cols, shown});
            if (column < help_buttons.size() && help_buttons[column]) {
                grid.let(u"Row", {r + fixed_rows});
                grid.let(u"Col", {c + fixed_cols});
                grid.let(u"CellForeColor", {kWhite});
            }
        }
        band_row(grid, r, fixed_rows, fixed_cols, cols);
    }
}

// A collection of rows (clsRegistro, or any collection of field collections): the header's
// fields are looked up in each row by name; without a header, each row's fields in order.
void ISService::fill_grid_rows(LateBound& grid, const Variant& rows, const Fields& header) {
    LateBound collection(rows);
    const int32_t count = automation::to_long(collection.get(u"Count"));
    const int32_t fixed_rows = automation::to_long(grid.get(u"FixedRows"));
    grid.let(u"Rows", {count + fixed_rows});
    const int32_t fixed_cols = automation::to_long(grid.get(u"FixedCols"));
    int32_t cols = automation::to_long(grid.get(u"Cols"));
    const bool described = header && header->get_Count() > 0;
    std::vector<Field> columns = fields_of(described ? header : nullptr);
    std::vector<std::u16string> formats = formats_of(columns);
    for (int32_t r = 0; r < std::min(count, kLastFilledRow + 1); ++r) {
        const Variant row = collection.get(u"Item", {r + 1});
        if (!described) {
            columns = fields_of(fields_in(row));
            formats = formats_of(columns);
        }
        if (static_cast<int32_t>(columns.size()) + fixed_cols > cols) {
            cols = static_cast<int32_t>(columns.size()) + fixed_cols;
            grid.let(u"Cols", {cols});
        }
        LateBound fields_of_row(row);
        for (size_t c = 0; c < columns.size(); ++c) {
            const Variant found = fields_of_row.get(u"Item", {columns[c]->get_Name()});
            Variant value = found.is_object() ? LateBound(found).get(u"Value") : found;
            if (value.is_null()) value = shown_for_null(*columns[c]);
            grid.let(u"TextMatrix", {r + fixed_rows, static_cast<int32_t>(c) + fixed_cols, shown_cell(value, formats, c)});
        }
        band_row(grid, r, fixed_rows, fixed_cols, cols);
    }
}

void ISService::ExecFillFlexGrid(Object rdbgSource, const std::u16string& vstrQuery, fields::exTypeRs Mode,
                                 int16_t Opciones, Fields& oarrParametros, int32_t MaxRows, Fields oHeader) {
    if (!connected()) return;
    int32_t status = 0, max_rows = MaxRows;
    Fields header;
    Variant data = fetch(vstrQuery, Mode, status, header, Opciones, oarrParametros, max_rows);
    if (status < 0) return;
    // oHeader, when given, is the layout the host wants shown; the returned header describes
    // the result's columns and formats its cells.
    const Fields layout = oHeader ? oHeader : header;
    const automation::Array* cells = matrix_of(data);
    const bool has_rows = cells && cells->ubound(2) >= cells->lbound(2) && max_rows != -1;
    if (!has_rows) {
        LateBound(rdbgSource).call(u"Clear");
        // Without any header there is nothing to lay out (and a layout of Nothing would stop
        // with Redraw off).
        if (layout) FlexGridHeader(rdbgSource, Variant(automation::Ref<automation::Object>(layout)));
        return;
    }
    if (oHeader) FlexGridHeader(rdbgSource, Variant(automation::Ref<automation::Object>(oHeader)));
    Fields formats = header ? header : oHeader;
    FillFlexGrid(rdbgSource, data, formats);
}

Variant ISService::AddFlexItem(Object rFlexGrid, const Variant& vData, Fields& oFormat, int32_t& Index) {
    LateBound grid(rFlexGrid);
    const std::vector<Field> fields = fields_of(oFormat);
    // AddItem takes the whole row, fixed columns included, as tab-separated cells.
    const int32_t fixed_cols = automation::to_long(grid.get(u"FixedCols"));
    std::u16string row(static_cast<size_t>(std::max(fixed_cols, 0)), u'\t');
    const std::vector<std::u16string> cells = split_at(text_of(vData), u'\t');
    for (size_t c = 0; c < cells.size(); ++c) {
        if (c > 0) row += u'\t';
        row += c < fields.size() ? build_format(Variant(cells[c]), fields[c]->get_Format()) : cells[c];
    }
    if (Index == -1) {
        grid.call(u"AddItem", {row});
        Index = automation::to_long(grid.get(u"Rows")) - 1;
    } else {
        grid.call(u"AddItem", {row, Index});
    }
    return Variant(Index);
}

Variant ISService::RemoveFlexItem(Object rFlexGrid, int32_t vRow) {
    LateBound grid(rFlexGrid);
    const int32_t rows = automation::to_long(grid.get(u"Rows"));
    const int32_t fixed_rows = automation::to_long(grid.get(u"FixedRows"));
    // A flex grid refuses to remove its last scrollable row; the grid is cut back to its fixed
    // rows instead.
    if (rows - fixed_rows == 1 && vRow == rows - 1) grid.let(u"Rows", {fixed_rows});
    else grid.call(u"RemoveItem", {vRow});
    return grid.get(u"Rows");
}

Variant ISService::FlexItemUpdateRow(Object rdbgSource, int32_t vRow, const Variant& vData, Fields& rHeader) {
    LateBound grid(rdbgSource);
    const std::vector<std::u16string> formats = formats_of(fields_of(rHeader));
    const int32_t fixed_cols = automation::to_long(grid.get(u"FixedCols"));
    const std::vector<std::u16string> cells = cells_of_text(text_of(vData));
    for (size_t c = 0; c < cells.size(); ++c) {
        grid.let(u"TextMatrix", {vRow, static_cast<int32_t>(c) + fixed_cols, shown_cell(Variant(cells[c]), formats, c)});
    }
    return Variant(vRow);
}

void ISService::FlexGridClipBoard(Object rdbgSource) {
    LateBound grid(rdbgSource);
    const int32_t rows = automation::to_long(grid.get(u"Rows"));
    if (rows <= automation::to_long(grid.get(u"FixedRows"))) return;
    // Everything but the fixed column, the header row included.
    grid.let(u"Row", {0});
    grid.let(u"Col", {1});
    grid.let(u"RowSel", {rows - 1});
    grid.let(u"ColSel", {automation::to_long(grid.get(u"Cols")) - 1});
    clipboard_->put_text(text_of(grid.get(u"Clip")));
}

}  // namespace celdo::services

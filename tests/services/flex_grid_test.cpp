// Flex grids filled late-bound: header layout, cells, banding, single rows and the clipboard.
#include <gtest/gtest.h>

#include "collections/clsRegistro.hpp"
#include "services/ISService.hpp"
#include "services/clipboard.hpp"
#include "tests/services/control_double.hpp"
#include "tests/services/service_doubles.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::services {
namespace {

using automation::make_ref;
using automation::Ref;
using automation::Variant;
using testing::ControlDouble;
using testing::object_of;

// A grid with one fixed row and column, 6200 twips wide with a 500-twip fixed column, so that
// a header shares 5500 twips.
Ref<ControlDouble> grid(int32_t cols = 2) {
    auto g = make_ref<ControlDouble>(u"MSFlexGrid", "grid");
    g->property(u"Cols") = Variant(cols);
    g->property(u"FixedCols") = Variant(1);
    g->property(u"FixedRows") = Variant(1);
    g->property(u"Rows") = Variant(1);
    g->property(u"Width") = Variant(6200.0);
    g->property(u"ColWidth", {Variant(0)}) = Variant(500);
    return g;
}

std::vector<std::string> lines_with(const Ref<ControlDouble>& g, const std::string& part) {
    std::vector<std::string> found;
    for (const std::string& line : g->log()) {
        if (line.find(part) != std::string::npos) found.push_back(line);
    }
    return found;
}

TEST(FlexGridHeader, TextHeadersAreCutAtSemicolonsFirst) {
    struct Case {
        Variant header;
        std::string format;
        int cols;
    };
    const Case cases[] = {
        {Variant(u"Code;Name"), "\"|Code|Name\"", 3},
        {Variant(u"A,B;C"), "\"|A,B|C\"", 3},
        {Variant(u"A,B"), "\"|A|B\"", 3},
        {Variant(u"Solo"), "\"|Solo\"", 2},
    };
    ISService s;
    for (const Case& c : cases) {
        auto g = grid();
        automation::Ref<automation::Object> control(g);
        s.FlexGridHeader(control, c.header);
        EXPECT_EQ(lines_with(g, "FormatString"), std::vector<std::string>{"grid: Let FormatString = " + c.format});
        EXPECT_EQ(g->property(u"Cols"), Variant(c.cols));
        EXPECT_EQ(g->log().front(), "grid: Let Redraw = False");
        EXPECT_EQ(g->log().back(), "grid: Let Redraw = True");
    }
}

TEST(FlexGridHeader, ColumnWidthsByFieldType) {
    struct Case {
        fields::ExDataType type;
        int32_t size;
        const char16_t* format;
        std::string width;  // "" when the column keeps its width
    };
    const Case cases[] = {
        {fields::exText, 40, u"", "4000"},  // 150 x 40, capped
        {fields::exText, 10, u"", "1500"},
        {fields::exChar, 10, u"@@@@@@;x", "6"},  // the first section's length as twips
        {fields::exLong, 0, u"#,##0.00", "880"},
        {fields::exDouble, 0, u"", "1100"},
        {fields::exCurrency, 0, u"00000000000000000000", "1870"},
        {fields::exDate, 0, u"", "1000"},
        {fields::exTimeNumber, 0, u"", "1000"},
        {fields::exMemo, 0, u"", "1000"},
        {fields::exBoolean, 0, u"", "800"},
        {fields::exAutoNumeric, 0, u"", "1000"},
        {fields::exImagen, 0, u"", ""},
    };
    ISService s;
    for (const Case& c : cases) {
        auto header = testing::header({{u"F", c.type, c.format}});
        header->at(0).let_Size(c.size);
        auto g = grid();
        automation::Ref<automation::Object> control(g);
        s.FlexGridHeader(control, object_of(header));
        const auto widths = lines_with(g, "Let ColWidth(1)");
        EXPECT_EQ(widths.empty() ? "" : widths.at(0).substr(widths.at(0).rfind(' ') + 1), c.width) << int(c.type);
    }
}

TEST(FlexGridHeader, HiddenFieldsHelpButtonsCappedColumnsAndCaptionCollections) {
    auto header = testing::header({{u"Hidden", fields::exLong, u""}, {u"Help", fields::exText, u""},
                                   {u"Long", fields::exText, u""}});
    header->at(0).let_Visible(false);
    header->at(1).let_DisplayControl(fields::exHelpButton);
    header->at(2).let_Size(100);
    ISService s;
    auto g = grid();
    automation::Ref<automation::Object> control(g);
    s.FlexGridHeader(control, object_of(header));
    EXPECT_EQ(lines_with(g, "Let ColWidth"), (std::vector<std::string>{"grid: Let ColWidth(2) = 315", "grid: Let ColWidth(3) = 4000"}));
    EXPECT_EQ(lines_with(g, "ColAlignment"), (std::vector<std::string>{"grid: Let ColAlignment(3) = 0"}));
    EXPECT_EQ(lines_with(g, "WordWrap").size(), 3u);

    // Plain captions share the width equally: (6200 - 200 - 500) x 10 / 20.
    auto captions = make_ref<ControlDouble>(u"Collection", "captions");
    captions->property(u"Count") = Variant(2);
    captions->property(u"Item", {Variant(1)}) = Variant(u"A");
    captions->property(u"Item", {Variant(2)}) = Variant(u"B");
    auto plain = grid();
    automation::Ref<automation::Object> second(plain);
    s.FlexGridHeader(second, testing::object(captions));
    EXPECT_EQ(lines_with(plain, "Let ColWidth"), (std::vector<std::string>{"grid: Let ColWidth(1) = 2750", "grid: Let ColWidth(2) = 2750"}));

    // A grid with more scrollable columns than the header describes keeps its layout.
    auto wide = grid(6);
    automation::Ref<automation::Object> third(wide);
    s.FlexGridHeader(third, Variant(u"A;B"));
    EXPECT_EQ(wide->log(), (std::vector<std::string>{"grid: Let Redraw = False", "grid: Get Cols", "grid: Get FixedCols",
                                                     "grid: Let Redraw = True"}));
}

TEST(FillFlexGrid, OneTextMatrixPerCellFormattedBandedAndNullsReplacedInTheCallersArray) {
    auto header = testing::header({{u"Price", fields::exDouble, u"0.00"}, {u"Help", fields::exText, u""}});
    header->at(1).let_DisplayControl(fields::exHelpButton);
    Variant data = testing::matrix({{Variant(2.5), Variant(u"x")}, {Variant(1), Variant::null()}, {Variant(3), Variant(u"z")}});
    ISService s;
    s.let_CellBackColor(123);
    auto g = grid();
    s.FillFlexGrid(g, data, header);
    EXPECT_EQ(lines_with(g, "TextMatrix"),
              (std::vector<std::string>{"grid: Let TextMatrix(1, 1) = \"2.50\"", "grid: Let TextMatrix(1, 2) = \"x\"",
                                        "grid: Let TextMatrix(2, 1) = \"1.00\"", "grid: Let TextMatrix(2, 2) = \"\"",
                                        "grid: Let TextMatrix(3, 1) = \"3.00\"", "grid: Let TextMatrix(3, 2) = \"z\""}));
    EXPECT_EQ(data.as_array().at(1, 1), Variant(u""));
    EXPECT_EQ(lines_with(g, "CellBackColor"),
              (std::vector<std::string>{"grid: Let CellBackColor = 123", "grid: Let CellBackColor = -2147483643",
                                        "grid: Let CellBackColor = 123"}));
    EXPECT_EQ(lines_with(g, "CellForeColor").size(), 3u);  // the help button column, every row
    EXPECT_EQ(g->property(u"Rows"), Variant(4));
    EXPECT_EQ(g->property(u"Cols"), Variant(3));
    EXPECT_EQ(g->log().back(), "grid: Let Redraw = True");
}

TEST(FillFlexGrid, RowsPast30000AreCountedButLeftEmpty) {
    auto cells = automation::Array::matrix(1, 40000);
    for (Variant& cell : cells.elements_mut()) cell = Variant(1);
    Variant data{std::move(cells)};
    automation::Ref<collections::clsCeldos> no_header;
    ISService s;
    auto g = grid();
    g->quiet(u"TextMatrix");
    s.FillFlexGrid(g, data, no_header);
    EXPECT_EQ(g->property(u"Rows"), Variant(40001));
    EXPECT_FALSE(g->property(u"TextMatrix", {Variant(30001), Variant(1)}).is_empty());
    EXPECT_TRUE(g->property(u"TextMatrix", {Variant(30002), Variant(1)}).is_empty());
}

TEST(FillFlexGrid, TextsRowsAndErrorsThatStopTheFillQuietly) {
    ISService s;
    auto header = testing::header({{u"A", fields::exDouble, u"0.0"}, {u"B", fields::exText, u""}});
    auto g = grid();
    Variant text(u" 1 ; b ");
    s.FillFlexGrid(g, text, header);
    EXPECT_EQ(lines_with(g, "TextMatrix"), (std::vector<std::string>{"grid: Let TextMatrix(1, 1) = \"1.0\"", "grid: Let TextMatrix(1, 2) = \"b\""}));

    auto row = testing::header({{u"B", fields::exText, u""}, {u"A", fields::exDouble, u""}});
    row->at(0).let_Value(Variant(u"q"));
    row->at(1).let_Value(Variant(7));
    auto rows = make_ref<collections::clsRegistro>();
    rows->Add(row, u"");
    Variant records{automation::Ref<automation::Object>(rows)};
    auto from_rows = grid();
    s.FillFlexGrid(from_rows, records, header);
    EXPECT_EQ(lines_with(from_rows, "TextMatrix"), (std::vector<std::string>{"grid: Let TextMatrix(1, 1) = \"7.0\"", "grid: Let TextMatrix(1, 2) = \"q\""}));

    auto refusing = grid();
    refusing->fails(u"TextMatrix", 380);
    Variant data = testing::matrix({{Variant(1)}, {Variant(2)}});
    s.FillFlexGrid(refusing, data, header);  // no error reaches the caller
    EXPECT_EQ(lines_with(refusing, "TextMatrix").size(), 1u);
    EXPECT_EQ(refusing->log().back(), "grid: Let TextMatrix(1, 1) = \"1.0\"");  // Redraw stays off
}

TEST(ExecFillFlexGrid, FillsOnSuccessLaysOutTheHeaderWithoutRowsAndStopsOnFailure) {
    auto header = testing::header({{u"A", fields::exText, u""}});
    struct Case {
        int32_t status;
        Variant data;
        bool cleared, filled;
    };
    const Case cases[] = {
        {0, testing::matrix({{Variant(u"x")}}), false, true},
        {0, Variant(), true, false},
        {-1, testing::matrix({{Variant(u"x")}}), false, false},
    };
    for (const Case& c : cases) {
        auto ex = testing::data_access(true);
        ex->on(u"ExecFillArray", [&](uint16_t, std::span<automation::Argument> a) {
            a[2].value = Variant(c.status);
            a[3].value = object_of(header);
            return c.data;
        });
        ISService s;
        s.set_Ex(ex);
        auto g = grid();
        automation::Ref<collections::clsCeldos> parameters;
        s.ExecFillFlexGrid(g, u"Select", fields::exOpenStatic, 0, parameters, 50, nullptr);
        EXPECT_EQ(ex->log().at(1), "ex: Call ExecFillArray(\"Select\", 5273, 0, Nothing, 0, Nothing, 50)");
        EXPECT_EQ(lines_with(g, "Call Clear").size(), c.cleared ? 1u : 0u);
        EXPECT_EQ(lines_with(g, "FormatString").size(), c.cleared ? 1u : 0u);
        EXPECT_EQ(lines_with(g, "TextMatrix").size(), c.filled ? 1u : 0u);
    }
}

TEST(FlexGridRows, AddRemoveUpdateAndCopyToTheClipboard) {
    ISService s;
    auto formats = testing::header({{u"A", fields::exDouble, u"0.00"}});
    auto g = grid();
    g->property(u"Rows") = Variant(3);
    int32_t index = -1;
    EXPECT_EQ(s.AddFlexItem(g, Variant(u"1\tdos"), formats, index), Variant(2));
    EXPECT_EQ(lines_with(g, "AddItem").at(0), "grid: Call AddItem(\"\t1.00\tdos\")");
    index = 1;
    s.AddFlexItem(g, Variant(u"x"), formats, index);
    EXPECT_EQ(lines_with(g, "AddItem").at(1), "grid: Call AddItem(\"\tx\", 1)");

    s.RemoveFlexItem(g, 1);
    EXPECT_EQ(g->log().back(), "grid: Get Rows");
    EXPECT_EQ(lines_with(g, "RemoveItem").at(0), "grid: Call RemoveItem(1)");
    // The last scrollable row cannot be removed: the grid is cut back to its fixed rows.
    g->property(u"Rows") = Variant(2);
    EXPECT_EQ(s.RemoveFlexItem(g, 1), Variant(1));

    s.FlexItemUpdateRow(g, 4, Variant(u"3;y"), formats);
    EXPECT_EQ(lines_with(g, "TextMatrix(4"), (std::vector<std::string>{"grid: Let TextMatrix(4, 1) = \"3.00\"", "grid: Let TextMatrix(4, 2) = \"y\""}));

    struct Recorder final : Clipboard {
        std::u16string text = u"untouched";
        void put_text(const std::u16string& t) override { text = t; }
    } clipboard;
    s.use_clipboard(clipboard);
    g->property(u"Rows") = Variant(1);
    s.FlexGridClipBoard(g);
    EXPECT_EQ(clipboard.text, u"untouched");  // no data rows: nothing copied
    g->property(u"Rows") = Variant(3);
    g->property(u"Clip") = Variant(u"A\tB\r1\t2");
    s.FlexGridClipBoard(g);
    EXPECT_EQ(clipboard.text, u"A\tB\r1\t2");
    EXPECT_EQ(lines_with(g, "Sel"), (std::vector<std::string>{"grid: Let RowSel = 2", "grid: Let ColSel = 1"}));
}

}  // namespace
}  // namespace celdo::services

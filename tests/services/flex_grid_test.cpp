// Flex grids filled late-bound: header layout, cells, banding, single rows and the clipboard.
#include "collections/clsRegistro.hpp"
#include "services/clipboard.hpp"
#include "tests/services/doubles.hpp"

namespace celdo::services {
namespace {

using namespace testing;
using ServiceFlexGrids = Service;

// One fixed row and column, 6200 twips wide with a 500-twip fixed column: 5500 to share.
Control grid(int32_t cols = 2) {
    auto g = make_ref<Fake>(u"MSFlexGrid", "grid");
    g->props = {{"Cols", cols}, {"FixedCols", 1}, {"FixedRows", 1}, {"Rows", 1}, {"Width", 6200.0}, {"ColWidth(0)", 500}};
    return g;
}

// What a header sets on a grid of `cols` columns: Cols, FormatString, widths and alignments.
std::string layout(ISService& s, const Variant& header, int32_t cols = 2) {
    Control g = grid(cols);
    s.FlexGridHeader(g, header);
    EXPECT_EQ(fake(g).log->front() + ", " + fake(g).log->back(), "grid: Let Redraw = False, grid: Let Redraw = True");
    std::string out;
    for (const std::string& line : *fake(g).log)
        for (const char* part : {"Let Cols", "Let FormatString", "Let ColWidth", "Let ColAlignment"})
            if (line.find(part) != std::string::npos) out += line.substr(line.find("Let ") + 4) + "; ";
    return out + "WordWrap " + std::to_string(fake(g).count("WordWrap = True"));
}

TEST_F(ServiceFlexGrids, FlexGridHeaderLaysOutTextsCaptionsAndFieldsButLeavesWideGridsAlone) {
    auto fields = header("Hidden exLong; Help exText; Long exText");
    fields->at(0).let_Visible(false);  // keeps its column's width, still takes its column
    fields->at(1).let_DisplayControl(exHelpButton);
    fields->at(2).let_Size(100);
    for_each_case("GridHeader", [&](const std::string& where, const auto& row) {
        EXPECT_EQ(layout(s, row[0] == "the fields" ? Variant(fields) : data(row[0]), number<int32_t>(row[1])), row[2]) << where;
    });
}

TEST_F(ServiceFlexGrids, FlexGridHeaderSizesColumnsByFieldType) {
    // The width set for column 1, and " top" when it is aligned to the top left.
    const auto width = [&](ExDataType type, int32_t size, const std::u16string& format) {
        auto fields = header("F exText");
        fields->at(0).let_DataType(type);
        fields->at(0).let_Format(format);
        fields->at(0).let_Size(size);
        Control g = grid();
        s.FlexGridHeader(g, fields);
        const std::string set = fake(g).lines("Let ColWidth(1)");
        return (set.empty() ? "" : set.substr(set.rfind(' ') + 1)) + (fake(g).count("ColAlignment(1) = 0") ? " top" : "");
    };
    for_each_case("ColumnWidth", [&](const std::string& where, const auto& row) {
        const auto type = static_cast<ExDataType>(data(row[0]).as_long());
        EXPECT_EQ(width(type, number<int32_t>(row[1]), data(row[2]).as_string()), row[3]) << where;
    });
    EXPECT_EQ(width(exChar, 0, std::u16string(4000, u'@') + u";x"), "4000");
}

TEST_F(ServiceFlexGrids, FillFlexGridSetsOneTextMatrixPerCellBandsRowsAndReplacesNullsInTheCallersArray) {
    auto fields = header(R"(Price exDouble "0.00"; Help exText)");
    fields->at(1).let_DisplayControl(exHelpButton);
    Variant data = matrix({{2.5, u"x"}, {1, Variant::null()}, {3, u"z"}});
    s.let_CellBackColor(123);
    Control g = grid();
    s.FillFlexGrid(g, data, fields);
    EXPECT_EQ(fake(g).lines("TextMatrix"), R"(grid: Let TextMatrix(1, 1) = "2.50"; grid: Let TextMatrix(1, 2) = "x"; )"
                                           R"(grid: Let TextMatrix(2, 1) = "1.00"; grid: Let TextMatrix(2, 2) = ""; )"
                                           R"(grid: Let TextMatrix(3, 1) = "3.00"; grid: Let TextMatrix(3, 2) = "z")");
    EXPECT_EQ(data.as_array().at(1, 1), Variant(u""));
    EXPECT_EQ(fake(g).lines("CellBackColor"),
              "grid: Let CellBackColor = 123; grid: Let CellBackColor = -2147483643; grid: Let CellBackColor = 123");
    EXPECT_EQ(fake(g).count("CellForeColor"), 3);  // the help button's column, every row
    EXPECT_EQ(fake(g).lines("TextMatrix(3, 2)", true),
              R"(grid: Let TextMatrix(3, 2) = "z"; grid: Let Row = 3; grid: Let Col = 2; grid: Let CellForeColor = 16777215; )"
              "grid: Let FillStyle = 1; grid: Let Row = 3; grid: Let Col = 1; grid: Let ColSel = 2; grid: Let CellBackColor = 123; "
              "grid: Let FillStyle = 0; grid: Let RowHeightMin = 285; grid: Let ColWidth(0) = 285; grid: Let Redraw = True");
    EXPECT_EQ(fake(g).log->front() + ", " + render(fake(g).props["Rows"]) + " " + render(fake(g).props["Cols"]),
              "grid: Let Redraw = False, 4 3");
}

TEST_F(ServiceFlexGrids, FillFlexGridFromTextsAndRowsUpToRow30000StoppingQuietlyAtAnError) {
    auto fields = header(R"(A exDouble "0.0"; B exText)");
    const auto record = header(R"(B exText "" "q"; A exDouble "" Long 7)");
    auto rows = make_ref<collections::clsRegistro>();
    rows->Add(record, u"");
    auto cells = automation::Array::matrix(1, 40000);
    for (Variant& cell : cells.elements_mut()) cell = 1;
    const std::map<std::string_view, Variant> named = {
        {"the record", rows}, {"the 40000 cells", cells}, {"the 30002 rows", collection(std::vector<Variant>(30002, record))}};
    for_each_case("FlexRows", [&](const std::string& where, const auto& row) {
        Variant source = named.count(row[0]) ? named.at(row[0]) : data(row[0]);
        Fields head = fields_in(row[1]);
        Control g = grid();
        s.FillFlexGrid(g, source, head);
        auto& p = fake(g).props;
        std::string got = render(p["TextMatrix(1, 1)"]) + (p.count("TextMatrix(1, 2)") ? " " + render(p["TextMatrix(1, 2)"]) : "");
        if (p.count("TextMatrix(30001, 1)"))
            got += " " + render(p["Rows"]) + " rows filled to 3000" + (p.count("TextMatrix(30002, 1)") ? "2" : "1");
        EXPECT_EQ(got, row[2]) << where;
        EXPECT_EQ(fake(g).log->back(), "grid: Let Redraw = True") << where;
    });
    Control refusing = grid();
    fake(refusing).on["TextMatrix"] = refuse;
    Variant data = matrix({{1}, {2}});
    s.FillFlexGrid(refusing, data, fields);  // no error reaches the caller, Redraw stays off
    EXPECT_EQ(fake(refusing).log->back(), "grid: Let TextMatrix(1, 1) = \"1.0\"");
}

TEST_F(ServiceFlexGrids, ExecFillFlexGridFillsLaysOutTheHeaderWithoutRowsAndStopsOnFailure) {
    const auto out = header("Out exLong");
    for_each_case("ExecFillFlexGrid", [&](const std::string& where, const auto& row) {
        const bool connected = data(row[0]).as_bool();
        const int32_t max_rows = number<int32_t>(row[3]);
        auto ex = data_access(connected, data(row[2]), header("A exText"), number<int32_t>(row[1]), out);
        Control g = grid();
        Fields parameters;
        s.ExecFillFlexGrid(g, u"Q", exOpenStatic, 3, parameters, max_rows, fields_in(row[4]));
        auto& f = fake(g);
        EXPECT_EQ(std::to_string(f.count("Call Clear")) + " " + std::to_string(f.count("FormatString")) + " " +
                      std::to_string(f.count("TextMatrix")) + (f.props.count("FormatString") ? " " + render(f.props["FormatString"]) : ""),
                  row[5]) << where;
        const std::string fetched = R"(ex: Call ExecFillArray("Q", 5273, 0, Nothing, 3, Nothing, )" + std::to_string(max_rows) + ")";
        EXPECT_EQ(ex->lines("ExecFillArray") + (parameters == out ? " out" : ""), connected ? fetched + " out" : "") << where;
    });
    // No rows and no header at all: the grid is only cleared, never left with Redraw off.
    data_access(true);
    Control bare = grid();
    Fields none;
    s.ExecFillFlexGrid(bare, u"Q", exOpenStatic, 0, none, 0, {});
    EXPECT_EQ(fake(bare).lines("Redraw") + fake(bare).lines("Clear"), "grid: Call Clear()");
}

TEST_F(ServiceFlexGrids, RowsAreAddedRemovedUpdatedAndCopiedToTheClipboard) {
    auto formats = header(R"(A exDouble "0.00")");
    Control g = grid();
    Fake& f = fake(g);
    f.props["Rows"] = 3;
    int32_t last = -1, first = 0;
    EXPECT_EQ(s.AddFlexItem(g, u"1\tdos", formats, last), Variant(2));  // a tab per fixed column first
    f.props["FixedCols"] = 0;
    EXPECT_EQ(s.AddFlexItem(g, u"x", formats, first), Variant(0));
    f.props["FixedCols"] = 1;
    EXPECT_EQ(s.RemoveFlexItem(g, 2), Variant(3));
    f.props["Rows"] = 2;  // the last scrollable row cannot be removed: the grid is cut back to its fixed rows
    EXPECT_EQ(s.RemoveFlexItem(g, 1), Variant(1));
    EXPECT_EQ(s.FlexItemUpdateRow(g, 4, u"3;y", formats), Variant(4));
    EXPECT_EQ(f.lines("Item") + "; " + f.lines("TextMatrix(4"),
              "grid: Call AddItem(\"\t1.00\tdos\"); grid: Call AddItem(\"x\", 0); grid: Call RemoveItem(2); "
              R"(grid: Let TextMatrix(4, 1) = "3.00"; grid: Let TextMatrix(4, 2) = "y")");
    struct Recorder final : Clipboard {
        std::u16string text;
        void put_text(const std::u16string& t) override { text += t + u"."; }
    } clipboard;
    s.use_clipboard(clipboard);
    s.FlexGridClipBoard(g);  // no data rows: nothing copied
    f.props["Rows"] = 3;
    f.props["Clip"] = u"A\tB";
    s.FlexGridClipBoard(g);
    EXPECT_EQ(clipboard.text, u"A\tB.");
    EXPECT_EQ(f.lines("Let Row = 0", true),  // everything but the fixed column, the header row included
              "grid: Let Row = 0; grid: Let Col = 1; grid: Let RowSel = 2; grid: Get Cols; grid: Let ColSel = 1; grid: Get Clip");
}

}  // namespace
}  // namespace celdo::services

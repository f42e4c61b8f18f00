// List views and data grids filled late-bound: what the service calls, in which order.
#include "tests/services/doubles.hpp"

namespace celdo::services {
namespace {

using namespace testing;
using ServiceListViews = Service;

TEST_F(ServiceListViews, AddListItemCutsPiecesIntoTextSubItemsAndTag) {
    for_each_case("AddListItem", [&](const std::string& where, const auto& row) {
        const int columns = number<int>(row[3]);
        Control view = list_view(columns);
        if (columns < 0) fake(view).kid("ColumnHeaders").on["Count"] = refuse;
        const std::u16string key = data(row[0]).as_string(), info = data(row[1]).as_string();
        s.AddListItem(view, key, number<int32_t>(row[4]), -1, info, data(row[2]).as_string(), u"t");
        EXPECT_EQ(writes(fake(view), "item"), row[5]) << where;
    });
}

TEST_F(ServiceListViews, FillListViewFromArraysInfoStringsAndRows) {
    const auto two = header(R"(Code exLong "000"; Name exText)");
    const auto prices = header(R"(Id exLong; Price exDouble "0.00")");
    const Variant rows = collection({header(R"(Price exDouble "" Double 2.5; Id exLong "" Long 9)")});
    const std::tuple<Variant, Fields, bool, std::string> cases[] = {
        // As many columns as fields: column c is described by field c + 1 (counted from 1); a
        // Null cell shows empty and the separator after the last piece is cut off.
        {matrix({{7, u"Ana"}, {12, Variant::null()}}), two, false, "007|Ana; 012"},
        {matrix({{5, u"Ana"}}), two, true, "K5: Ana"}, {matrix({{5}}), two, true, "005"},
        // More columns than fields: column c by field c, so the first has none and is lost.
        {matrix({{1, 2, 3}}), two, false, "002|3"}, {matrix({{1, Variant::null(), 3}}), {}, false, "1||3"},
        // Info strings, keyed by their first piece.
        {collection({u"k1!uno!x", Variant::null()}), {}, false, "k1: k1|uno|x;  "}, {u"a!b", two, false, ""},
        // Rows of fields, looked up by the header's names or, without one, the row's own.
        {rows, prices, false, "9|2.50"}, {rows, prices, true, "K9: 2.50"}, {rows, header(""), false, "2.5|9"},
        {rows, header(R"(Price exDouble "0.00")"), true, "2.50"}, {rows, {}, false, "2.5|9"},
    };
    for (const auto& [data, fields, key, items] : cases) {
        Control view = list_view(3);
        s.FillListView(view, 3, data, fields, u"!", key, false);
        EXPECT_EQ(shown(view, "ListItems"), items);
        EXPECT_EQ(fake(view).count("Let Icon = 3"), fake(view).count("Call Add"));
        EXPECT_EQ(fake(view).count("items: Call Clear"), 1);
    }
    Control view = list_view();  // columns come from the header only for a list without any
    s.FillListView(view, 0, matrix({{5, u"Ana"}}), two, u"!", true, true);  // a persistent list keeps its items
    EXPECT_EQ(fake(view).lines("Clear") + "; " + shown(view, "ColumnHeaders"), "headers: Call Clear(); Name: Name/6000/0");
}

TEST_F(ServiceListViews, ExecFillListViewFetchesByReferenceAndPreparesOnlyColumnsForMinusOneRows) {
    const auto two = header("Id exLong; Name exText"), out = header("Out exLong");
    const std::tuple<bool, int32_t, Fields, bool, int, std::string> cases[] = {
        // connected, max rows, header, key, the list's columns: its columns, then its items
        {true, 0, two, false, 0, "Id: Id/1680/0; Name: Name/4320/0 = 1|Ana"},  // a status < 0 is not looked at
        {true, -1, two, true, 0, "Name: Name/4320/0 = "}, {true, -1, two, false, 0, "Id: Id/1680/0; Name: Name/4320/0 = "},
        {true, -1, header("Id exLong"), true, 0, "Id: Id/6000/0 = "}, {true, -1, two, false, 1, "C = "},
        {false, 0, two, false, 0, " = "}};
    for (auto [connected, max_rows, fields, key, columns, expected] : cases) {
        auto ex = data_access(connected, matrix({{1, u"Ana"}}), fields, -5, out);
        Control lv = list_view(columns);
        Fields parameters;
        const std::string fetched = R"(ex: Call ExecFillArray("Q", 5273, 0, Nothing, 2, Nothing, )" + std::to_string(max_rows) + ")";
        s.ExecFillListView(lv, 0, u"Q", fields::exOpenStatic, 2, u"!", parameters, max_rows, key, false);
        EXPECT_EQ(ex->lines("ExecFillArray") + (parameters == out ? " out" : ""), connected ? fetched + " out" : "");
        EXPECT_EQ(fake(lv).count("items: Call Clear"), connected);
        EXPECT_EQ(shown(lv, "ColumnHeaders") + " = " + shown(lv, "ListItems"), expected);
    }
}

TEST_F(ServiceListViews, ListViewColumnHeadersFromTextOrFieldsWithTheWidthLeftOver) {
    auto fields = header("Id exLong; Name exText; Price exDouble");
    for (auto [i, width] : {std::pair{0, 1000}, {1, 500}, {2, 2000}}) fields->at(i).let_ColumnWidth(int16_t(width));
    auto other = make_ref<Fake>(u"ColumnHeader");  // another list's column
    other->props = {{"Caption", u"X"}, {"DefaultAlignment", 1}};
    const std::tuple<Variant, bool, std::string, std::string> cases[] = {
        // header, key: columns, then what the last one got (6000 to share; the first is left-aligned)
        {u"A;B;C", false, "A/2000/0; B/2000/0; C/2000/0", ""},
        {u"A,1000,2;B,500,2", false, "A/1000/0; B/5000/2", "item2: Let Width = 5000"},
        {u"A,1000;B", false, "A/1000/0; B/5000/0", ""}, {u"A,7000;B", false, "A/7000/0; B/0/0", ""},
        {fields, false, "Id: Id/1000/0; Name: Name/500/0; Price: Price/4500/1", "item3: Let Width = 4500"},
        {fields, true, "Name: Name/500/0; Price: Price/5500/1", "item3: Let Width = 5500"},
        {header("Id exLong"), true, "Id: Id/6000/0", "item1: Let Width = 6000"}, {other, false, "X/6000/0", ""},
        {Variant(), false, "", ""},
    };
    for (auto [columns, key, expected, leftover] : cases) {
        Control view = list_view(2);
        s.ListViewColumnHeaders(view, columns, key);
        EXPECT_EQ(shown(view, "ColumnHeaders"), expected);
        EXPECT_EQ(fake(view).lines("Let Width"), leftover);
    }
}

TEST_F(ServiceListViews, ListViewColumnClickTogglesTheOrderAndSortsByTheClickedColumn) {
    auto clicked = make_ref<Fake>(u"ColumnHeader");
    clicked->props["Index"] = 3;
    for (auto [before, after] : {std::pair{Variant(), "1"}, {0, "1"}, {1, "0"}, {5, "0"}}) {
        auto lv = make_ref<Fake>(u"ListView", "lv");
        lv->props["SortOrder"] = before;
        s.ListViewColumnClick(lv, clicked);
        EXPECT_EQ(lv->lines(),
                  std::string("lv: Get SortOrder; lv: Let SortOrder = ") + after + "; lv: Let SortKey = 2; lv: Let Sorted = True");
    }
}

TEST_F(ServiceListViews, DBGridColumnHeadersCountFromZeroAndTheCollectionsError9ReachesTheCaller) {
    // A collection from 1 refuses item 0 once the grid is cleared and a column added; from 0,
    // three columns of Width / 4 (312.5, halved to even) come before item 3 is refused.
    for (auto [base, expected] :
         {std::pair{1, "grid: Get Columns; columns: Call RemoveAll(); grid: Get Width; columns: Call Add(0); columns: Get Item(0)"},
          {0, "item1: Let Width = 312; item2: Let Width = 312; item3: Let Width = 312"}}) {
        auto grid = make_ref<Fake>(u"DataGrid", "grid");
        grid->props["Width"] = 1250.0;
        holder(*grid, "Columns", "columns", 0);
        Control captions = collection({u"A", u"B", u"C"}, base).object();
        EXPECT_EQ(error_of([&] { s.DBGridColumnHeaders(grid, captions); }).number(), 9);
        EXPECT_EQ(grid->lines(base ? "" : "Let Width"), expected);
    }
}

}  // namespace
}  // namespace celdo::services

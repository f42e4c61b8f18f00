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
    for_each_case("FillListView", [&](const std::string& where, const auto& row) {
        Control view = list_view(3);
        s.FillListView(view, 3, data(row[0]), fields_in(row[1]), u"!", data(row[2]).as_bool(), false);
        EXPECT_EQ(Variant(automation::utf8_to_utf16(shown(view, "ListItems"))), data(row[3])) << where;
        EXPECT_EQ(fake(view).count("Let Icon = 3"), fake(view).count("Call Add")) << where;
        EXPECT_EQ(fake(view).count("items: Call Clear"), 1) << where;
    });
    Control view = list_view();  // columns come from the header only for a list without any
    // A persistent list keeps its items.
    s.FillListView(view, 0, matrix({{5, u"Ana"}}), header(R"(Code exLong "000"; Name exText)"), u"!", true, true);
    EXPECT_EQ(fake(view).lines("Clear") + "; " + shown(view, "ColumnHeaders"), "headers: Call Clear(); Name: Name/6000/0");
}

TEST_F(ServiceListViews, ExecFillListViewFetchesByReferenceAndPreparesOnlyColumnsForMinusOneRows) {
    const auto out = header("Out exLong");
    for_each_case("ExecFillListView", [&](const std::string& where, const auto& row) {
        const bool connected = data(row[0]).as_bool();
        int32_t max_rows = number<int32_t>(row[1]);
        auto ex = data_access(connected, matrix({{1, u"Ana"}}), fields_in(row[2]), -5, out);
        Control lv = list_view(number<int>(row[4]));
        Fields parameters;
        const std::string fetched = R"(ex: Call ExecFillArray("Q", 5273, 0, Nothing, 2, Nothing, )" + std::to_string(max_rows) + ")";
        s.ExecFillListView(lv, 0, u"Q", fields::exOpenStatic, 2, u"!", parameters, max_rows, data(row[3]).as_bool(), false);
        EXPECT_EQ(ex->lines("ExecFillArray") + (parameters == out ? " out" : ""), connected ? fetched + " out" : "") << where;
        EXPECT_EQ(fake(lv).count("items: Call Clear"), connected) << where;
        const std::string columns_and_items = shown(lv, "ColumnHeaders") + " = " + shown(lv, "ListItems");
        EXPECT_EQ(Variant(automation::utf8_to_utf16(columns_and_items)), data(row[5])) << where;
    });
}

TEST_F(ServiceListViews, ListViewColumnHeadersFromTextOrFieldsWithTheWidthLeftOver) {
    auto fields = header("Id exLong; Name exText; Price exDouble");
    for (auto [i, width] : {std::pair{0, 1000}, {1, 500}, {2, 2000}}) fields->at(i).let_ColumnWidth(int16_t(width));
    auto other = make_ref<Fake>(u"ColumnHeader");  // another list's column
    other->props = {{"Caption", u"X"}, {"DefaultAlignment", 1}};
    for_each_case("ColumnHeaders", [&](const std::string& where, const auto& row) {
        Variant columns = row[0] == "the fields"              ? Variant(fields)
                          : row[0] == "another list's column" ? Variant(other)
                                                              : data(row[0]);
        Control view = list_view(2);
        s.ListViewColumnHeaders(view, columns, data(row[1]).as_bool());
        EXPECT_EQ(shown(view, "ColumnHeaders"), row[2]) << where;
        EXPECT_EQ(fake(view).lines("Let Width"), row[3]) << where;
    });
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

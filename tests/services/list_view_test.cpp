// List views and data grids filled late-bound: what the service calls, in which order.
#include <gtest/gtest.h>

#include "services/ISService.hpp"
#include "tests/services/control_double.hpp"
#include "tests/services/service_doubles.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::services {
namespace {

using automation::make_ref;
using automation::Variant;
using testing::ControlDouble;
using testing::error_of;
using testing::ListView;
using testing::object;
using testing::object_of;

TEST(AddListItem, PiecesBecomeTextSubItemsAndTag) {
    struct Case {
        const char16_t *key, *info, *separator;
        int columns;
        Variant icon;
        std::vector<std::string> calls;  // on the added item, after Add
    };
    const Case cases[] = {
        {u"12", u"a!b", u"!", 2, Variant(-1), {"items: Call Add(Missing, \"K12\", \"a\")", "item1: Let Tag = \"t\"", "item1: Let SubItems(1) = \"b\""}},
        {u"A12", u"a", u"!", 1, Variant(0), {"items: Call Add(Missing, \"A12\", \"a\")", "item1: Let Tag = \"t\"", "item1: Let Icon = 0"}},
        {u"", u"a!b!c", u"!", 1, Variant(-1), {"items: Call Add(Missing, Missing, \"a\")", "item1: Let Tag = \"t\"", "item1: Let SubItems(1) = \"b\"", "item1: Let Tag = \"c\""}},
        // The header count is compared with the piece's index: the third piece of a two-column
        // list still goes to SubItems(2).
        {u"", u"a!b!c", u"!", 2, Variant(-1), {"items: Call Add(Missing, Missing, \"a\")", "item1: Let Tag = \"t\"", "item1: Let SubItems(1) = \"b\"", "item1: Let SubItems(2) = \"c\""}},
        // Only one character of a longer separator is skipped; empty pieces keep their place.
        {u"", u"a!!b!", u"!!", 3, Variant(-1), {"items: Call Add(Missing, Missing, \"a\")", "item1: Let Tag = \"t\"", "item1: Let SubItems(1) = \"!b!\""}},
        {u"", u"a!!b", u"!", 3, Variant(-1), {"items: Call Add(Missing, Missing, \"a\")", "item1: Let Tag = \"t\"", "item1: Let SubItems(1) = \"\"", "item1: Let SubItems(2) = \"b\""}},
        {u"", u"", u"!", 3, Variant(-1), {}},
    };
    for (const Case& c : cases) {
        ListView lv;
        for (int i = 0; i < c.columns; ++i) lv.add_column(u"C");
        ISService s;
        s.AddListItem(lv.control, c.key, c.icon, Variant(-1), c.info, c.separator, u"t");
        EXPECT_EQ(lv.calls_after("items: Call Add"), c.calls) << automation::utf16_to_utf8(c.info);
    }
}

TEST(AddListItem, StopsQuietlyAtTheFirstErrorKeepingWhatWasSet) {
    ListView lv;
    lv.add_column(u"C");
    lv.on_item = [](ControlDouble& item) { item.fails(u"SubItems", 380); };
    ISService s;
    s.AddListItem(lv.control, u"", Variant(-1), Variant(-1), u"a!b!c", u"!", u"");
    EXPECT_EQ(lv.calls_after("items: Call Add"),
              (std::vector<std::string>{"items: Call Add(Missing, Missing, \"a\")", "item1: Let Tag = \"\"",
                                        "item1: Let SubItems(1) = \"b\""}));
}

TEST(FillListView, ArrayColumnsAreFormattedByTheHeaderFieldAtTheirOffset) {
    // Two columns and two fields: column c is described by field c + 1.
    auto header = testing::header({{u"Code", fields::exLong, u"000"}, {u"Name", fields::exText, u""}});
    auto data = testing::matrix({{Variant(7), Variant(u"Ana")}, {Variant(12), Variant::null()}});
    ListView lv;
    ISService s;
    s.FillListView(lv.control, 3, data, header, u"!", false, false);
    // The Null name became an empty last piece, and a trailing separator adds nothing.
    EXPECT_EQ(lv.item_texts(), (std::vector<std::string>{"\"007\" \"Ana\"", "\"012\""}));
    EXPECT_EQ(lv.column_captions(), (std::vector<std::string>{"Code", "Name"}));
    EXPECT_EQ(lv.count("Call Clear"), 2);  // items, then the headers being built
    EXPECT_EQ(lv.count("Let Icon = 3"), 2);
}

TEST(FillListView, KeysPersistenceAndArraysWiderThanTheHeader) {
    auto header = testing::header({{u"Id", fields::exLong, u""}, {u"Name", fields::exText, u""}});
    ListView lv;
    lv.add_column(u"Existing");
    ISService s;
    // The key column is not shown; the list is persistent, so nothing is cleared.
    s.FillListView(lv.control, 0, testing::matrix({{Variant(5), Variant(u"Ana")}}), header, u"!", true, true);
    EXPECT_EQ(lv.count("Call Clear"), 0);
    EXPECT_EQ(lv.calls_after("items: Call Add").front(), "items: Call Add(Missing, \"K5\", \"Ana\")");
    // Three columns against two fields: column c would be described by field c, and field 0
    // does not exist, so the first cell's text is lost; the fill goes on.
    ListView wide;
    s.FillListView(wide.control, 0, testing::matrix({{Variant(1), Variant(2), Variant(3)}}), header, u"!", false, false);
    EXPECT_EQ(wide.item_texts(), (std::vector<std::string>{"\"2\" \"3\""}));
}

TEST(FillListView, CollectionsOfInfoStringsAndOfRows) {
    ISService s;
    ListView strings;
    strings.add_column(u"A");
    strings.add_column(u"B");
    auto texts = testing::collection({Variant(u"k1!uno!x"), Variant::null()});
    s.FillListView(strings.control, 0, texts, nullptr, u"!", false, false);
    EXPECT_EQ(strings.calls_after("items: Call Add"),
              (std::vector<std::string>{"items: Call Add(Missing, \"k1\", \"k1\")", "item1: Let Tag = \"\"",
                                        "item1: Let Icon = 0", "item1: Let SmallIcon = 0",
                                        "item1: Let SubItems(1) = \"uno\"", "item1: Let SubItems(2) = \"x\"",
                                        "items: Call Add(Missing, Missing, \" \")", "item2: Let Tag = \"\"",
                                        "item2: Let Icon = 0", "item2: Let SmallIcon = 0"}));

    auto header = testing::header({{u"Id", fields::exLong, u""}, {u"Price", fields::exDouble, u"0.00"}});
    auto row = testing::header({{u"Price", fields::exDouble, u""}, {u"Id", fields::exLong, u""}});
    row->at(0).let_Value(Variant(2.5));
    row->at(1).let_Value(Variant(9));
    ListView rows;
    rows.add_column(u"A");
    rows.add_column(u"B");
    s.FillListView(rows.control, 0, testing::collection({object_of(row)}), header, u"!", false, false);
    EXPECT_EQ(rows.item_texts(), (std::vector<std::string>{"\"9\" \"2.50\""}));
}

TEST(ExecFillListView, AsksForAConnectionThenFetchesByReference) {
    auto ex = testing::data_access(true);
    auto header = testing::header({{u"Id", fields::exLong, u""}, {u"Name", fields::exText, u""}});
    auto returned_parameters = testing::header({{u"Out", fields::exLong, u""}});
    ex->on(u"ExecFillArray", [&](uint16_t, std::span<automation::Argument> a) {
        for (const auto& arg : a) EXPECT_TRUE(arg.by_ref);
        a[2].value = Variant(-5);  // the status is not looked at
        a[3].value = object_of(header);
        a[5].value = object_of(returned_parameters);
        return testing::matrix({{Variant(1), Variant(u"Ana")}});
    });
    ISService s;
    s.set_Ex(ex);
    ListView lv;
    automation::Ref<collections::clsCeldos> parameters;
    int32_t max_rows = 0;
    s.ExecFillListView(lv.control, 0, u"Select", fields::exOpenStatic, 2, u"!", parameters, max_rows, false, false);
    EXPECT_EQ(ex->log().at(1), "ex: Call ExecFillArray(\"Select\", 5273, 0, Nothing, 2, Nothing, 0)");
    EXPECT_EQ(parameters.get(), returned_parameters.get());
    EXPECT_EQ(lv.item_texts(), (std::vector<std::string>{"\"1\" \"Ana\""}));

    // No connection: the list is not touched and nothing is raised.
    auto offline = testing::data_access(false);
    s.set_Ex(offline);
    ListView untouched;
    s.ExecFillListView(untouched.control, 0, u"Select", fields::exOpenStatic, 0, u"!", parameters, max_rows, false, false);
    EXPECT_TRUE(untouched.control_log().empty());
    EXPECT_EQ(offline->log(), (std::vector<std::string>{"ex: Get HayConexion"}));
}

TEST(ExecFillListView, MinusOneRowsPreparesOnlyTheColumnsWithoutTheKey) {
    auto ex = testing::data_access(true);
    auto header = testing::header({{u"Id", fields::exLong, u""}, {u"Name", fields::exText, u""}});
    ex->on(u"ExecFillArray", [&](uint16_t, std::span<automation::Argument> a) {
        a[3].value = object_of(header);
        a[6].value = Variant(-1);
        return testing::matrix({{Variant(1), Variant(u"Ana")}});
    });
    ISService s;
    s.set_Ex(ex);
    ListView lv;
    automation::Ref<collections::clsCeldos> parameters;
    int32_t max_rows = 0;
    s.ExecFillListView(lv.control, 0, u"Select", fields::exOpenStatic, 0, u"!", parameters, max_rows, true, false);
    EXPECT_EQ(max_rows, -1);
    EXPECT_TRUE(lv.item_texts().empty());
    EXPECT_EQ(lv.column_captions(), (std::vector<std::string>{"Name"}));
}

TEST(ListViewColumnHeaders, TextFieldsAndTheWidthLeftOver) {
    struct Case {
        Variant header;
        bool key;
        std::vector<std::string> columns;  // caption/width/alignment after the call
    };
    auto fields = testing::header({{u"Id", fields::exLong, u""}, {u"Price", fields::exDouble, u""}});
    fields->at(0).let_ColumnWidth(1000);
    fields->at(1).let_ColumnWidth(2000);
    const Case cases[] = {
        // The list view is 6330 twips wide, 6000 to share.
        {Variant(u"A;B;C"), false, {"A/2000/0", "B/2000/0", "C/2000/0"}},
        {Variant(u"A,1000;B,500,2"), false, {"A/1000/0", "B/5000/2"}},
        {Variant(u"A,1000;B"), false, {"A/1000/0", "B/5000/0"}},
        {object_of(fields), false, {"Id/1000/0", "Price/5000/1"}},
        {object_of(fields), true, {"Price/6000/1"}},
        {Variant(), false, {}},
    };
    ISService s;
    for (const Case& c : cases) {
        ListView lv;
        Variant header = c.header;
        s.ListViewColumnHeaders(lv.control, header, c.key);
        EXPECT_EQ(lv.column_layout(), c.columns);
    }
}

TEST(ListViewColumnClick, TogglesTheOrderAndSortsByTheClickedColumn) {
    ListView lv;
    auto clicked = make_ref<ControlDouble>(u"ColumnHeader", "header");
    clicked->property(u"Index") = Variant(3);
    ISService s;
    s.ListViewColumnClick(lv.control, clicked);
    EXPECT_EQ(lv.control_log(), (std::vector<std::string>{"lv: Get SortOrder", "lv: Let SortOrder = 1",
                                                          "lv: Let SortKey = 2", "lv: Let Sorted = True"}));
    s.ListViewColumnClick(lv.control, clicked);
    EXPECT_EQ(lv.control_log().at(5), "lv: Let SortOrder = 0");
}

TEST(DBGridColumnHeaders, CountsFromZeroAndTheCollectionsError9ReachesTheCaller) {
    auto grid = make_ref<ControlDouble>(u"DataGrid", "grid");
    auto columns = grid->child(u"Columns", "columns");
    grid->property(u"Columns") = object(columns);
    grid->property(u"Width") = Variant(1000.0);
    auto column = grid->child(u"Column", "column");
    columns->on(u"Item", [&](uint16_t, std::span<automation::Argument>) { return object(column); });
    ISService s;
    automation::Ref<automation::Object> grid_object(grid);
    auto captions = testing::collection({Variant(u"A"), Variant(u"B"), Variant(u"C")});
    automation::Ref<automation::Object> from_one(captions.as_object());
    EXPECT_EQ(error_of([&] { s.DBGridColumnHeaders(grid_object, from_one); }).number(), 9);
    EXPECT_EQ(grid->log(), (std::vector<std::string>{"grid: Get Columns", "columns: Call RemoveAll()", "grid: Get Width",
                                                     "columns: Call Add(0)", "columns: Get Item(0)"}));
    // Counted from 0, three captions give three columns of Width / 4 (312.5: halves to even)
    // before item 3 is refused in turn.
    grid->log().clear();
    grid->property(u"Width") = Variant(1250.0);
    auto zero_based = testing::collection({Variant(u"A"), Variant(u"B"), Variant(u"C")}, 0);
    automation::Ref<automation::Object> from_zero(zero_based.as_object());
    EXPECT_EQ(error_of([&] { s.DBGridColumnHeaders(grid_object, from_zero); }).number(), 9);
    int widths = 0;
    for (const std::string& line : grid->log()) widths += line == "column: Let Width = 312";
    EXPECT_EQ(widths, 3);
}

}  // namespace
}  // namespace celdo::services

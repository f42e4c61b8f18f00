// Lists, combos, image combos and toolbars filled late-bound, and a field's row source as text.
#include "tests/services/doubles.hpp"

namespace celdo::services {
namespace {

using namespace testing;
using ServiceLists = Service;

TEST_F(ServiceLists, FillListDBFromArraysQueriesAndValueLists) {
    const std::tuple<Variant, Variant, int32_t, std::string> cases[] = {
        // rows, what the query answers, its status: the list's items "text/ItemData"
        {matrix({{7, u"Ana", u"G\u00F3mez"}, {8, Variant::null(), u"x"}}), {}, 0, "Ana\tG\u00F3mez/7; \tx/8"},
        {u"  select Id, Name From T ", matrix({{1, u"a"}}), 0, "a/1"},
        {u"Exec ListNames", matrix({{1, u"a"}}), 0, "a/1"}, {u"select Id From T", matrix({{1, u"a"}}), -1, ""},
        {u"a,b;c", {}, 0, "a/0; b/0; c/0"}, {u"a;b", {}, 0, "a/0; b/0"}, {u"a,,b,", {}, 0, "a/0; /0; b/0"},
        // One column: its value is the text, and its identifier only when it is a number.
        {matrix({{u"x"}, {5}}), {}, 0, "x/0; 5/5"},
        // ItemData is a Long: a text identifier ends the fill where it stands.
        {matrix({{u"A", u"a"}, {2, u"b"}}), {}, 0, "a/0"},
    };
    for (const auto& [rows, answer, status, expected] : cases) {
        auto list = keeps_items(make_ref<Fake>(u"ListBox", "lst"));
        automation::call(*list, u"AddItem", {u"old"});
        s.set_Ex(data_access(true, answer, {}, status));
        s.FillListDB(list, rows);
        std::string shown;
        const int32_t count = automation::to_long(automation::get(*list, u"ListCount"));
        for (int32_t i = 0; i < count; ++i) {
            automation::let(*list, u"ListIndex", {i});
            shown += (i ? "; " : "") + render(automation::get(*list, u"Text")).substr(1);
            shown.back() = '/';
            shown += render(automation::get(*list, u"ItemData", {i}));
        }
        EXPECT_EQ(shown, expected) << render(rows);
    }
}

TEST_F(ServiceLists, ExecFillListDBCallsTheShortFormAndChoosesByTypeName) {
    const std::tuple<const char16_t*, int32_t, std::string> cases[] = {
        // the control's type, the status: what the control was asked
        {u"ComboBox", 0, R"(c: Call Clear(); c: Call Clear(); c: Call AddItem("a"); c: Get NewIndex; c: Let ItemData(0) = 3)"},
        {u"ComboBox", -1, "c: Call Clear()"},
        {u"icbo", 0, R"(c: Call Clear(); c: Get ComboItems; items: Call Clear(); c: Get ComboItems; items: Call Add(Missing, "K3", "a"); )"
                     R"(item1: Let Tag = ""; items: Get Count; items: Get Item(1); item1: Let Selected = True)"},
    };
    for (const auto& [type, status, expected] : cases) {
        auto list = make_ref<Fake>(type, "c");
        list->props["NewIndex"] = 0;
        list->kid("ComboItems", "items").items.emplace();
        auto ex = data_access(true, matrix({{3, u"a"}}), {}, status, u"out");
        s.set_Ex(ex);
        Control c = list;
        Variant none = Variant::missing(), given = u"in";
        s.ExecFillListDB(c, u"Select 1", none);
        EXPECT_EQ(fake(c).lines(), expected) << render(type);
        // Given parameters: the long form, a missing fifth argument, the host's answer written back.
        s.ExecFillListDB(c, u"Select 1", given);
        EXPECT_EQ(ex->lines("ExecFillArray"), R"(ex: Call ExecFillArray("Select 1", 5273, 0, Object); )"
                                              R"(ex: Call ExecFillArray("Select 1", 5273, 0, Object, Missing, "in"))");
        EXPECT_EQ(given, Variant(u"out"));
    }
}

TEST_F(ServiceLists, ImageCombosAndToolbarsTakeColumnsInTheirAddersOrder) {
    const Variant rows1 = matrix({{5}}), rows2 = matrix({{5, u"Save"}}), rows3 = matrix({{5, u"Save", 2}}),
                  rows4 = matrix({{5, u"Save", 2, u"tip"}}), rows5 = matrix({{5, u"Save", 2, u"tip", u"tag"}});
    const std::tuple<bool, Variant, bool, std::string> cases[] = {
        // toolbar or image combo, rows, keyed: what each element was given
        {true, rows1, false, R"(Add(Missing, Missing, "5"); Tag = ""; ToolTipText = "")"},
        {true, rows1, true, R"(Add(Missing, "K5", "5"); Tag = ""; ToolTipText = "")"},
        {true, rows2, false, R"(Add(Missing, Missing, "5"); Tag = ""; ToolTipText = "")"},
        {true, rows2, true, R"(Add(Missing, "K5", "Save"); Tag = ""; ToolTipText = "")"},
        {true, rows3, false, R"(Add(Missing, Missing, "5"); Tag = ""; ToolTipText = "2")"},
        {true, rows3, true, R"(Add(Missing, "K5", "Save"); Tag = ""; ToolTipText = ""; Image = 2)"},
        {true, rows4, true, R"(Add(Missing, "K5", "Save"); Tag = ""; ToolTipText = "tip"; Image = 2)"},
        {true, rows4, false, R"(Add(Missing, Missing, "5"); Tag = "tip"; ToolTipText = "2")"},
        {true, rows5, true, R"(Add(Missing, "K5", "Save"); Tag = "tag"; ToolTipText = "tip"; Image = 2)"},
        {true, u"New;Open", false, R"(Add(Missing, Missing, "New"); Tag = ""; ToolTipText = ""; )"
                                   R"(Add(Missing, Missing, "Open"); Tag = ""; ToolTipText = "")"},
        {false, rows2, true, R"(Clear(); Add(Missing, "K5", "Save"); Tag = ""; Selected = True)"},
        {false, rows5, true, R"(Clear(); Add(Missing, "K5", "Save"); Tag = "tag"; Image = 2; Selected = True)"},
        // An image index is set only when it is 0 or more.
        {false, matrix({{5, u"Save", 0}}), true, R"(Clear(); Add(Missing, "K5", "Save"); Tag = ""; Image = 0; Selected = True)"},
        {false, matrix({{5, u"Save", -1}}), true, R"(Clear(); Add(Missing, "K5", "Save"); Tag = ""; Selected = True)"},
        {false, rows2, false, R"(Clear(); Add(Missing, Missing, "5"); Tag = ""; Selected = True)"},
        {false, u"Rojo,Verde", true, R"(Clear(); Add(Missing, "Rojo", "Rojo"); Tag = ""; Add(Missing, "Verde", "Verde"); Tag = ""; )"
                                     R"(Selected = True)"},
    };
    for (const auto& [toolbar, rows, keyed, expected] : cases) {
        auto c = make_ref<Fake>(toolbar ? u"Toolbar" : u"ImageCombo", "c");
        c->kid(toolbar ? "Buttons" : "ComboItems", "items").items.emplace();
        Control shown = c;
        if (toolbar) s.FillToolBar(shown, rows, keyed);
        else s.FillImageCombo(shown, rows, keyed);
        EXPECT_EQ(writes(*c, "item"), expected) << render(rows) << toolbar << keyed;
    }
}

TEST_F(ServiceLists, ButtonMenusAreClearedThenFilledUnderTheButton) {
    auto toolbar = make_ref<Fake>(u"Toolbar", "tb");
    Fake& buttons = holder(*toolbar, "Buttons", "buttons");
    s.AddButtonItem(toolbar, u"File", u"File", Variant::missing(), u"", u"");
    fake(buttons.items->front().object()).kid("ButtonMenus", "menus");
    Variant index(u"File");
    s.FillButtonMenus(toolbar, index, matrix({{1, u"Open"}, {u"x", u"Close"}}), true);
    EXPECT_EQ(toolbar->lines("menus"), R"(menus: Call Clear(); menus: Call Add(Missing, "K1", "Open"); )"
                                       R"(menus: Call Add(Missing, "x", "Close"))");
    index = u"Edit";  // no such button: nothing happens and nothing is raised
    s.FillButtonMenus(toolbar, index, matrix({{1, u"Open"}}), true);
    EXPECT_EQ(toolbar->count("menus"), 3);
}

TEST_F(ServiceLists, FindRowSourceGivesTheTextOfTheValuesRow) {
    auto ex = make_ref<Fake>(u"DataAccess", "ex");
    ex->kid("Evaluador", "eval").on["ReplaceExpresion"] = [](std::span<Argument> a) { return Variant(a[0].value.as_string() + u"!"); };
    ex->on["GetArray"] = [](std::span<Argument> a) {
        EXPECT_EQ(render(a[0].value) + render(a[1].value) + render(a[2].value), "\"Select Id, Name From T!\"52730");
        return matrix({{1.0, u"Uno", u"One"}, {u"b", u"Bee", u""}});
    };
    s.set_Ex(ex);
    const std::tuple<const char16_t*, uint8_t, Variant, Variant> cases[] = {
        // row source, column count, value: the text
        {u"1;Uno;2;Dos", 2, 2, u"Dos"}, {u"1;Uno;2;Dos", 2, 3, Variant::null()}, {u"a;b;c", 1, u"B", u"b"},
        {u"Select Id, Name From T", 0, 1, u"Uno\tOne"}, {u"Select Id, Name From T", 0, u"B", u"Bee\t"},
        {u"Select Id, Name From T", 0, Variant(), Variant::null()},
    };
    for (const auto& [source, columns, value, expected] : cases) {
        auto field = make_ref<clsCeldo>();
        // Identifiers compare by their text: a number field finds its value in a value list.
        if (value == Variant(2)) field->let_DataType(exLong);
        field->let_RowSource(source);
        field->let_ColumnCount(columns);
        field->let_Value(value);
        EXPECT_EQ(s.FindRowSource(field, field->get_GetRowSource()), expected) << render(value);
    }
}

}  // namespace
}  // namespace celdo::services

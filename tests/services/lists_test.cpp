// Lists, combos, image combos and toolbars filled late-bound, a field's row source as text, and
// the service object's own helpers that hosts call directly.
#include "tests/services/doubles.hpp"

namespace celdo::services {
namespace {

using namespace testing;
using ServiceLists = Service;
using ServiceHelpers = Service;

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
        data_access(true, answer, {}, status);
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

// Lists and trees ask the data-access object in its short form: every argument by reference (the
// double checks), the parameters last, after a missing argument, only when given, and handed back.
TEST_F(ServiceLists, ExecFillListDBAndTreeViewAskInTheShortFormAndChooseTheFillByTypeName) {
    const Fields in = header({{u"In", exLong}}), out = header({{u"Out", exLong}});
    const std::tuple<const char16_t*, bool, int32_t, Fields, std::string, std::string> cases[] = {
        // the control's type, connected, status, parameters given: ExecFillArray's arguments after
        // the query ("out" when the parameters came back), then what the control was told
        {u"ComboBox", true, 0, {}, "5273, 0, Object)", R"(Clear(); Clear(); AddItem("a"); ItemData(4) = 3)"},
        {u"ComboBox", true, -1, in, "5273, 0, Object, Missing, Object) out", "Clear()"},
        {u"icbo", true, 0, {}, "5273, 0, Object)", R"(Clear(); Clear(); Add(Missing, "K3", "a"); Tag = ""; Selected = True)"},
        // A tree passes its own mode and no header, and asks nothing without a connection.
        {u"TreeView", true, 0, in, "5271, 0, Nothing, Missing, Object) out",
         R"(Clear(); Add(Missing, Missing, "K3", "a", Missing, Missing))"},
        {u"TreeView", true, -1, {}, "5271, 0, Nothing)", ""},
        {u"TreeView", false, 0, in, "", ""},
    };
    for (const auto& [type, connected, status, given, asked, told] : cases) {
        const bool tree = std::u16string_view(type) == u"TreeView";
        auto ex = data_access(connected, tree ? matrix({{3, u"", u"a"}}) : matrix({{3, u"a"}}), {}, status, out);
        auto c = make_ref<Fake>(type, "c");
        c->props["NewIndex"] = 4;  // the item just added, wherever the list put it
        holder(*c, tree ? "Nodes" : "ComboItems", "items");
        Control control = c;
        Fields parameters = given;
        Variant listed = given ? Variant(Control(given)) : Variant::missing();
        if (tree) s.ExecFillTreeView(control, u"Q", exOpenKeyset, Variant::missing(), Variant::missing(), parameters);
        else s.ExecFillListDB(control, u"Q", listed);
        const bool back = parameters == out || (listed.is_object() && listed.as_object() == out.get());
        EXPECT_EQ(ex->lines("ExecFillArray") + (back ? " out" : ""), asked.empty() ? "" : "ex: Call ExecFillArray(\"Q\", " + asked)
            << render(type) << status;
        EXPECT_EQ(writes(*c, ""), told) << render(type) << status;
    }
}

TEST_F(ServiceLists, ImageCombosToolbarsAndButtonMenusTakeColumnsInTheirAddersOrder) {
    const Variant rows1 = matrix({{5}}), rows2 = matrix({{5, u"Save"}}), rows3 = matrix({{5, u"Save", 2}}),
                  rows4 = matrix({{5, u"Save", 2, u"tip"}}), rows5 = matrix({{5, u"Save", 2, u"tip", u"tag"}});
    const std::tuple<char, Variant, bool, std::string> cases[] = {
        // toolbar (t), image combo (c) or the menus of button "File" (m) or "Edit", which there is
        // not (e); rows, keyed: what each element was given
        {'t', rows1, false, R"(Add(Missing, Missing, "5"); Tag = ""; ToolTipText = "")"},
        {'t', rows1, true, R"(Add(Missing, "K5", "5"); Tag = ""; ToolTipText = "")"},
        {'t', rows2, false, R"(Add(Missing, Missing, "5"); Tag = ""; ToolTipText = "")"},
        {'t', rows2, true, R"(Add(Missing, "K5", "Save"); Tag = ""; ToolTipText = "")"},
        {'t', rows3, false, R"(Add(Missing, Missing, "5"); Tag = ""; ToolTipText = "2")"},
        {'t', rows3, true, R"(Add(Missing, "K5", "Save"); Tag = ""; ToolTipText = ""; Image = 2)"},
        {'t', rows4, true, R"(Add(Missing, "K5", "Save"); Tag = ""; ToolTipText = "tip"; Image = 2)"},
        {'t', rows4, false, R"(Add(Missing, Missing, "5"); Tag = "tip"; ToolTipText = "2")"},
        {'t', rows5, true, R"(Add(Missing, "K5", "Save"); Tag = "tag"; ToolTipText = "tip"; Image = 2)"},
        {'t', u"New;Open", false, R"(Add(Missing, Missing, "New"); Tag = ""; ToolTipText = ""; )"
                                   R"(Add(Missing, Missing, "Open"); Tag = ""; ToolTipText = "")"},
        {'c', rows2, true, R"(Clear(); Add(Missing, "K5", "Save"); Tag = ""; Selected = True)"},
        {'c', rows5, true, R"(Clear(); Add(Missing, "K5", "Save"); Tag = "tag"; Image = 2; Selected = True)"},
        // An image index is set only when it is 0 or more.
        {'c', matrix({{5, u"Save", 0}}), true, R"(Clear(); Add(Missing, "K5", "Save"); Tag = ""; Image = 0; Selected = True)"},
        {'c', matrix({{5, u"Save", -1}}), true, R"(Clear(); Add(Missing, "K5", "Save"); Tag = ""; Selected = True)"},
        {'c', rows2, false, R"(Clear(); Add(Missing, Missing, "5"); Tag = ""; Selected = True)"},
        {'c', u"Rojo,Verde", true, R"(Clear(); Add(Missing, "Rojo", "Rojo"); Tag = ""; Add(Missing, "Verde", "Verde"); Tag = ""; )"
                                     R"(Selected = True)"},
        // A button's menus are cleared first; no such button, nothing happens and nothing is raised.
        {'m', matrix({{1, u"Open"}, {u"x", u"Close"}}), true, R"(Clear(); Add(Missing, "K1", "Open"); Add(Missing, "x", "Close"))"},
        {'e', matrix({{1, u"Open"}}), true, ""},
    };
    for (const auto& [kind, rows, keyed, expected] : cases) {
        const bool menus = kind == 'm' || kind == 'e';
        auto c = make_ref<Fake>(kind == 'c' ? u"ImageCombo" : u"Toolbar", "c");
        Fake& items = holder(*c, kind == 'c' ? "ComboItems" : "Buttons", menus ? "buttons" : "items");
        if (menus) holder(add(items, "File", {{"Key", u"File"}}), "ButtonMenus", "items");
        Control shown = c;
        Variant button(kind == 'm' ? u"File" : u"Edit");
        if (kind == 't') s.FillToolBar(shown, rows, keyed);
        else if (kind == 'c') s.FillImageCombo(shown, rows, keyed);
        else s.FillButtonMenus(shown, button, rows, keyed);
        EXPECT_EQ(writes(*c, "item"), expected) << render(rows) << kind << keyed;
    }
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

TEST_F(ServiceHelpers, ColoursCustomFormatAndEx) {
    EXPECT_EQ(std::tuple(s.get_CellBackColor(), s.get_ForeColor(), s.get_BackColor()), std::tuple(0xFFDACC, 0x854B00, 0xFFFFFF));
    EXPECT_EQ(error_of([&] { s.get_CustomFormat(); }).number(), 91);  // no data-access object
    auto ex = make_ref<Fake>(u"DataAccess", "ex");
    ex->props["FormatShowDate"] = u"dd/mm/yyyy";
    ex->kid("Evaluador", "eval").on["ReplaceString"] = [](std::span<Argument>) { return Variant(u"dd/MM"); };
    s.set_Ex(ex);
    EXPECT_EQ(s.get_CustomFormat(), u"dd/MM");
    EXPECT_EQ(ex->lines(), R"(ex: Get Evaluador; ex: Get FormatShowDate; eval: Call ReplaceString("dd/mm/yyyy", "m", "M"))");
    auto other = make_ref<ISService>();
    other->set_Ex(ex);
    other = nullptr;  // releases Ex
    EXPECT_EQ(ex->ref_count(), 2u);
}

TEST_F(ServiceHelpers, NvlBuildFormatAndMoveSpin) {
    EXPECT_EQ(s.nvl(Variant::null(), 5), Variant(5));
    EXPECT_TRUE(s.nvl(Variant(), 5).is_empty());
    EXPECT_EQ(s.BuildFormat(Variant::null(), u"") + u"," + s.BuildFormat(3.5, u"") + u"," + s.BuildFormat(3.5, u"0.00"), u",3.5,3.50");
    EXPECT_EQ(error_of([&] { s.BuildFormat(Variant::null(), u"0.00"); }).number(), 94);
    // LimInf is the ceiling of positive steps, LimSub the floor of negative ones.
    const Variant x(u"x"), spins[][5] = {  // value, LimInf, LimSub, step: result
        {9, 10, 1, 2, 10},  {7, 10, 1, 2, 9},      {2, 10, 1, -2, 1}, {5, 10, 1, -2, 3},           {5, 10, 1, 0, 5},
        {1.5, 10, 1, 1, 2.5}, {9.8, 10, 1, 0.5, 10}, {x, 10, 1, 1, x},  {5, Variant::null(), 1, 1, 5}, {5, 10, 1, x, 5}};
    for (const auto& c : spins) EXPECT_EQ(s.MoveSpin(c[0], c[1], c[2], c[3]), c[4]) << render(c[0]);
}

TEST_F(ServiceHelpers, TagPiecesAreReadByTheCharacterAndReplacedByTheDigits) {
    using Case = std::tuple<std::u16string, uint8_t, std::u16string>;
    const Case gets[] = {{u"A»B»C", 2, u"B"}, {u"A»B»C", 3, u""}, {u"A»B»C»", 3, u"C"}, {u"A»B»C", 1, u"A"},
                         {u"A»B", 0, u""},     {u"", 1, u""},       {u"»»", 2, u""}};
    for (const auto& [tag, index, piece] : gets) EXPECT_EQ(s.GetTag(tag, index), piece) << int(index);
    const Case lets[] = {{u"A»B»", 1, u"A»B»"},  // no "187": unchanged
                         {u"A187B187", 1, u"X187B187"}, {u"A187B", 3, u"A187B"},
                         {u"A187B187", 2, u"A1X187"}, {u"187A187", 2, u"1X187"}};  // a hit moves on by one character
    for (const auto& [tag, index, result] : lets) EXPECT_EQ(s.LetTag(tag, index, u"X"), result) << int(index);
    EXPECT_EQ(error_of([&] { s.LetTag(u"AB", 0, u"X"); }).number(), 5);
}

TEST_F(ServiceHelpers, FindItemDataAndFindListIndexSelectTheFirstMatch) {
    auto list = make_ref<Fake>(u"ComboBox", "list");
    const std::array<const char16_t*, 3> texts = {u"Uno", u"Dos", u"dos"};
    list->props = {{"ListCount", 3}, {"ItemData(0)", 10}, {"ItemData(1)", 20}, {"ItemData(2)", 30}};
    list->on["Value"] = [&](std::span<Argument>) { return Variant(texts.at(automation::to_long(list->props["ListIndex"]))); };
    Control control(list);
    for (auto [text, data, index] : {std::tuple{u"", 10, "0"}, {u"", 30, "2"}, {u"", 20, "1"}, {u"", 99, "-1"},
                                     {u"UNO", 0, "0"}, {u"x", 0, "-1"}, {u"DOS", 0, "1"}}) {
        list->log->clear();
        *text ? s.FindListIndex(text, control) : s.FindItemData(data, control);
        EXPECT_EQ(render(list->props["ListIndex"]), index);
    }
    // Each item is selected in turn while searching; text compares without case.
    EXPECT_EQ(list->lines(), "list: Get ListCount; list: Let ListIndex = 0; list: Get Value; list: Let ListIndex = 1; list: Get Value");
    list->props["ListCount"] = 40000;
    EXPECT_EQ(error_of([&] { s.FindItemData(1, control); }).number(), 6);
}

TEST_F(ServiceHelpers, IsControlWantsAKnownTypeNameAndTheMembersOfAControlOnAForm) {
    const std::tuple<std::u16string, bool, bool> cases[] = {
        {u"TextBox", true, true},   {u"txtFnd", true, true},    {u"Label", true, true},  {u"PictureBox", true, true},
        {u"TextBox", false, false}, {u"ListView", true, false}, {u"textbox", true, false}};
    for (const auto& [type, on_form, expected] : cases) {
        auto control = make_ref<Fake>(type);
        if (!on_form) control->absent.insert("Parent");
        Variant v = control;
        EXPECT_EQ(s.IsControl(v), expected) << automation::utf16_to_utf8(type);
        EXPECT_TRUE(control->log->empty());  // asked about, never called
    }
    for (Variant v : {Variant(), Variant(u"TextBox"), Variant::nothing()}) EXPECT_FALSE(s.IsControl(v));
}

}  // namespace
}  // namespace celdo::services

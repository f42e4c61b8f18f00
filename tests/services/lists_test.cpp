// Lists, combos, image combos and toolbars filled late-bound, a field's row source as text, and
// the service object's own helpers that hosts call directly (their pure cases in service_helpers.tsv).
#include "tests/services/doubles.hpp"

namespace celdo::services {
namespace {

using namespace testing;
using ServiceLists = Service;
using ServiceHelpers = Service;

TEST_F(ServiceLists, FillListDBFromArraysQueriesAndValueLists) {
    for_each_case("FillListDB", [&](const std::string& where, const auto& row) {
        auto list = keeps_items(make_ref<Fake>(u"ListBox", "lst"));
        automation::call(*list, u"AddItem", {u"old"});
        data_access(true, data(row[1]), {}, number<int32_t>(row[2]));
        Variant rows = data(row[0]);
        s.FillListDB(list, rows);
        std::string shown;
        const int32_t count = automation::to_long(automation::get(*list, u"ListCount"));
        for (int32_t i = 0; i < count; ++i) {
            automation::let(*list, u"ListIndex", {i});
            shown += (i ? "; " : "") + render(automation::get(*list, u"Text")).substr(1);
            shown.back() = '/';
            shown += render(automation::get(*list, u"ItemData", {i}));
        }
        EXPECT_EQ(shown, automation::utf16_to_utf8(data(row[3]).as_string())) << where;
    });
}

// Lists and trees ask the data-access object in its short form: every argument by reference (the
// double checks), the parameters last, after a missing argument, only when given, and handed back.
TEST_F(ServiceLists, ExecFillListDBAndTreeViewAskInTheShortFormAndChooseTheFillByTypeName) {
    const Fields out = header("Out exLong");
    for_each_case("ShortForm", [&](const std::string& where, const auto& row) {
        const std::u16string type = automation::utf8_to_utf16(row[0]);
        const bool tree = type == u"TreeView";
        const Variant answer = tree ? matrix({{3, u"", u"a"}}) : matrix({{3, u"a"}});
        auto ex = data_access(data(row[1]).as_bool(), answer, {}, number<int32_t>(row[2]), out);
        auto c = make_ref<Fake>(type, "c");
        c->props["NewIndex"] = 4;  // the item just added, wherever the list put it
        holder(*c, tree ? "Nodes" : "ComboItems", "items");
        Control control = c;
        Fields parameters = fields_in(row[3]);
        Variant listed = parameters ? Variant(Control(parameters)) : Variant::missing();
        if (tree) s.ExecFillTreeView(control, u"Q", exOpenKeyset, Variant::missing(), Variant::missing(), parameters);
        else s.ExecFillListDB(control, u"Q", listed);
        const bool back = parameters == out || (listed.is_object() && listed.as_object() == out.get());
        const std::string asked = row[4].empty() ? "" : "ex: Call ExecFillArray(\"Q\", " + std::string(row[4]);
        EXPECT_EQ(ex->lines("ExecFillArray") + (back ? " out" : ""), asked) << where;
        EXPECT_EQ(writes(*c, ""), row[5]) << where;
    });
}

TEST_F(ServiceLists, ImageCombosToolbarsAndButtonMenusTakeColumnsInTheirAddersOrder) {
    for_each_case("Adders", [&](const std::string& where, const auto& row) {
        const bool combo = row[0] == "combo", menus = row[0] == "menus" || row[0] == "no button";
        auto c = make_ref<Fake>(combo ? u"ImageCombo" : u"Toolbar", "c");
        Fake& items = holder(*c, combo ? "ComboItems" : "Buttons", menus ? "buttons" : "items");
        if (menus) holder(add(items, "File", {{"Key", u"File"}}), "ButtonMenus", "items");
        Control shown = c;
        Variant button(row[0] == "menus" ? u"File" : u"Edit"), rows = data(row[1]);
        const bool keyed = data(row[2]).as_bool();
        if (row[0] == "toolbar") s.FillToolBar(shown, rows, keyed);
        else if (combo) s.FillImageCombo(shown, rows, keyed);
        else s.FillButtonMenus(shown, button, rows, keyed);
        EXPECT_EQ(writes(*c, "item"), row[3]) << where;
    });
}

TEST_F(ServiceLists, FindRowSourceGivesTheTextOfTheValuesRow) {
    auto ex = make_ref<Fake>(u"DataAccess", "ex");
    ex->kid("Evaluador", "eval").on["ReplaceExpresion"] = [](std::span<Argument> a) { return Variant(a[0].value.as_string() + u"!"); };
    ex->on["GetArray"] = [](std::span<Argument> a) {
        EXPECT_EQ(render(a[0].value) + render(a[1].value) + render(a[2].value), "\"Select Id, Name From T!\"52730");
        return matrix({{1.0, u"Uno", u"One"}, {u"b", u"Bee", u""}});
    };
    s.set_Ex(ex);
    for_each_case("FindRowSource", [&](const std::string& where, const auto& row) {
        auto field = make_ref<clsCeldo>();
        field->let_DataType(static_cast<ExDataType>(data(row[0]).as_long()));
        field->let_RowSource(data(row[1]).as_string());
        field->let_ColumnCount(number<uint8_t>(row[2]));
        field->let_Value(data(row[3]));
        EXPECT_EQ(typed(s.FindRowSource(field, field->get_GetRowSource())), typed(data(row[4]))) << where;
    });
}

constexpr std::string_view kHelperRules =
#include "service_helpers.inc"
    ;

TEST(ServiceHelperRules, EveryRowOfTheTable) { expect_every_row<ISService>(kHelperRules); }

TEST_F(ServiceHelpers, CustomFormatAndEx) {
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
    for_each_case("IsControl", [&](const std::string& where, const auto& row) {
        auto control = make_ref<Fake>(data(row[0]).as_string());
        if (!data(row[1]).as_bool()) control->absent.insert("Parent");
        Variant v = control;
        EXPECT_EQ(s.IsControl(v), data(row[2]).as_bool()) << where;
        EXPECT_TRUE(control->log->empty());  // asked about, never called
    });
    for (Variant v : {Variant(), Variant(u"TextBox"), Variant::nothing()}) EXPECT_FALSE(s.IsControl(v));
}

}  // namespace
}  // namespace celdo::services

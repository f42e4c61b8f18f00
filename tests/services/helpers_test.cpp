// The service object and the helpers hosts call directly.
#include "tests/services/doubles.hpp"

namespace celdo::services {
namespace {

using namespace testing;
using ServiceHelpers = Service;

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

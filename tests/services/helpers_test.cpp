// The service object and the helpers hosts call directly.
#include <gtest/gtest.h>

#include "automation/lifetime.hpp"
#include "services/ISService.hpp"
#include "tests/services/control_double.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::services {
namespace {

using automation::make_ref;
using automation::Ref;
using automation::Variant;
using testing::ControlDouble;
using testing::error_of;
using testing::object;

Variant text(const char16_t* s) { return Variant(s); }

TEST(ServiceObject, StartsWithItsColoursAndHoldsItsDataAccessObjectUntilReleased) {
    auto service = make_ref<ISService>();
    EXPECT_EQ(service->get_CellBackColor(), 0xFFDACC);
    EXPECT_EQ(service->get_ForeColor(), 0x854B00);
    EXPECT_EQ(service->get_BackColor(), 0xFFFFFF);
    auto ex = make_ref<ControlDouble>(u"DataAccess", "ex");
    service->set_Ex(ex);
    EXPECT_EQ(ex->ref_count(), 2u);
    service = nullptr;
    EXPECT_EQ(ex->ref_count(), 1u);
}

TEST(ServiceObject, CustomFormatAsksTheHostsEvaluatorToUpperCaseItsMonths) {
    ISService service;
    EXPECT_EQ(error_of([&] { service.get_CustomFormat(); }).number(), 91);  // no data-access object
    auto ex = make_ref<ControlDouble>(u"DataAccess", "ex");
    auto evaluator = ex->child(u"Evaluador", "evaluator");
    ex->property(u"Evaluador") = object(evaluator);
    ex->property(u"FormatShowDate") = text(u"dd/mm/yyyy");
    evaluator->on(u"ReplaceString", [](uint16_t, std::span<automation::Argument> a) {
        std::u16string s = a[0].value.as_string();
        for (auto& c : s) c = c == a[1].value.as_string()[0] ? a[2].value.as_string()[0] : c;
        return Variant(s);
    });
    service.set_Ex(ex);
    EXPECT_EQ(service.get_CustomFormat(), u"dd/MM/yyyy");
    EXPECT_EQ(ex->log(), (std::vector<std::string>{"ex: Get Evaluador", "ex: Get FormatShowDate",
                                                   "evaluator: Call ReplaceString(\"dd/mm/yyyy\", \"m\", \"M\")"}));
}

TEST(Helpers, NvlAndBuildFormat) {
    ISService s;
    EXPECT_EQ(s.nvl(Variant::null(), Variant(5)), Variant(5));
    EXPECT_TRUE(s.nvl(Variant(), Variant(5)).is_empty());
    EXPECT_EQ(s.nvl(text(u""), Variant(5)), text(u""));
    EXPECT_EQ(s.BuildFormat(Variant::null(), u""), u"");
    EXPECT_EQ(s.BuildFormat(Variant(3.5), u""), u"3.5");
    EXPECT_EQ(s.BuildFormat(Variant(3.5), u"0.00"), u"3.50");
    EXPECT_EQ(error_of([&] { s.BuildFormat(Variant::null(), u"0.00"); }).number(), 94);
}

TEST(Helpers, MoveSpinClampsWithItsLimitsReadTheOtherWayRound) {
    struct Case {
        Variant value, ceiling, floor, step, expected;
    };
    const Case cases[] = {
        {Variant(9), Variant(10), Variant(1), Variant(2), Variant(10)},
        {Variant(7), Variant(10), Variant(1), Variant(2), Variant(9)},
        {Variant(2), Variant(10), Variant(1), Variant(-2), Variant(1)},
        {Variant(5), Variant(10), Variant(1), Variant(-2), Variant(3)},
        {Variant(5), Variant(10), Variant(1), Variant(0), Variant(5)},
        {Variant(1.5), Variant(10), Variant(1), Variant(1), Variant(2.5)},
        {text(u"x"), Variant(10), Variant(1), Variant(1), text(u"x")},
        {Variant(5), Variant::null(), Variant(1), Variant(1), Variant(5)},
    };
    ISService s;
    for (const Case& c : cases) {
        EXPECT_EQ(s.MoveSpin(c.value, c.ceiling, c.floor, c.step), c.expected) << testing::render(c.value);
    }
}

TEST(Helpers, TagPiecesAreReadByTheCharacterAndReplacedByTheDigits) {
    struct Case {
        std::u16string tag;
        uint8_t index;
        std::u16string got;
    };
    const Case gets[] = {
        {u"A\u00BBB\u00BBC", 2, u"B"}, {u"A\u00BBB\u00BBC", 3, u""}, {u"A\u00BBB\u00BBC\u00BB", 3, u"C"},
        {u"A\u00BBB\u00BBC", 1, u"A"}, {u"A\u00BBB", 0, u""},        {u"", 1, u""},
        {u"\u00BB\u00BB", 2, u""},
    };
    ISService s;
    for (const Case& c : gets) EXPECT_EQ(s.GetTag(c.tag, c.index), c.got) << int(c.index);
    struct Let {
        std::u16string tag;
        uint8_t index;
        std::u16string result;
    };
    const Let lets[] = {
        {u"A\u00BBB\u00BB", 1, u"A\u00BBB\u00BB"},  // no "187": unchanged
        {u"A187B187", 1, u"X187B187"},
        {u"A187B187", 2, u"A1X187"},  // the next piece starts one character after a hit
        {u"A187B", 3, u"A187B"},
    };
    for (const Let& c : lets) EXPECT_EQ(s.LetTag(c.tag, c.index, u"X"), c.result) << int(c.index);
    EXPECT_EQ(error_of([&] { s.LetTag(u"AB", 0, u"X"); }).number(), 5);
}

// A list of items with data, recording the selection as it moves.
Ref<ControlDouble> list_of(std::vector<std::pair<std::u16string, int32_t>> items) {
    auto list = make_ref<ControlDouble>(u"ComboBox", "list");
    list->default_member("Text");
    list->property(u"ListCount") = Variant(static_cast<int32_t>(items.size()));
    auto selected = std::make_shared<int32_t>(-1);
    list->on(u"ItemData", [items](uint16_t, std::span<automation::Argument> a) {
        return Variant(items.at(static_cast<size_t>(automation::to_long(a[0].value))).second);
    });
    list->on(u"ListIndex", [selected](uint16_t call, std::span<automation::Argument> a) {
        if (call & automation::kLet) *selected = automation::to_long(a.back().value);
        return Variant(*selected);
    });
    list->on(u"Text", [items, selected](uint16_t, std::span<automation::Argument>) {
        return Variant(items.at(static_cast<size_t>(*selected)).first);
    });
    return list;
}

TEST(Helpers, FindItemDataAndFindListIndexSelectTheFirstMatch) {
    ISService s;
    auto list = list_of({{u"Uno", 10}, {u"Dos", 20}, {u"dos", 20}});
    automation::Ref<automation::Object> control(list);
    s.FindItemData(20, control);
    EXPECT_EQ(list->log().back(), "list: Let ListIndex = 1");
    s.FindItemData(99, control);
    EXPECT_EQ(list->log().back(), "list: Let ListIndex = -1");
    list->log().clear();
    // Each item is selected in turn while searching; text compares without case.
    s.FindListIndex(u"DOS", control);
    EXPECT_EQ(list->log(), (std::vector<std::string>{"list: Get ListCount", "list: Let ListIndex = 0", "list: Get Text",
                                                     "list: Let ListIndex = 1", "list: Get Text"}));
    auto empty = list_of({});
    automation::Ref<automation::Object> none(empty);
    s.FindItemData(1, none);
    EXPECT_EQ(empty->log().back(), "list: Let ListIndex = -1");
    auto huge = make_ref<ControlDouble>(u"ListBox", "huge");
    huge->property(u"ListCount") = Variant(40000);
    automation::Ref<automation::Object> big(huge);
    EXPECT_EQ(error_of([&] { s.FindItemData(1, big); }).number(), 6);
}

TEST(Helpers, IsControlWantsAKnownTypeNameAndTheMembersOfAControlOnAForm) {
    struct Case {
        std::u16string type;
        bool on_form;
        bool expected;
    };
    const Case cases[] = {
        {u"TextBox", true, true},   {u"txtFnd", true, true},  {u"Label", true, true},
        {u"PictureBox", true, true}, {u"TextBox", false, false}, {u"ListView", true, false},
        {u"textbox", true, false},
    };
    ISService s;
    for (const Case& c : cases) {
        auto control = make_ref<ControlDouble>(c.type, "c");
        if (!c.on_form) control->lacks(u"Parent");
        Variant v = object(control);
        EXPECT_EQ(s.IsControl(v), c.expected) << automation::utf16_to_utf8(c.type);
        EXPECT_TRUE(control->log().empty());  // asked about, never called
    }
    for (Variant v : {Variant(), text(u"TextBox"), Variant::nothing()}) EXPECT_FALSE(s.IsControl(v));
}

TEST(ServiceObject, MembersNotBuiltYetRefuseClearly) {
    ISService s;
    automation::Ref<automation::Object> form;
    automation::Ref<collections::clsCeldos> row;
    auto e = error_of([&] { s.FillForm(form, row, u"Cliente", false); });
    EXPECT_EQ(e.number(), 445);
    EXPECT_NE(e.description().find(u"ISService.FillForm is not available yet"), std::u16string::npos);
}

}  // namespace
}  // namespace celdo::services

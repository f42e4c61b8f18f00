#include "automation/language.hpp"

#include <gtest/gtest.h>

#include "automation/clock.hpp"
#include "automation/recognize.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;
using namespace celdo::automation::lang;

TEST(TextFunctions, NullPropagates) {
    for (auto* fn : {&Trim, &LTrim, &RTrim, &UCase, &LCase, &Len}) EXPECT_EQ(fn(Variant::null()), Variant::null());
    EXPECT_EQ(Left(Variant::null(), 2), Variant::null());
    EXPECT_EQ(Mid(Variant::null(), 1), Variant::null());
    EXPECT_EQ(InStr(Variant::null(), Variant(u"a")), Variant::null());
}

TEST(TextFunctions, TrimRemovesSpacesOnly) {
    EXPECT_EQ(Trim(Variant(u"  a b  ")), Variant(u"a b"));
    EXPECT_EQ(Trim(Variant(u"\ta\t")), Variant(u"\ta\t"));
    EXPECT_EQ(LTrim(Variant(u"  a  ")), Variant(u"a  "));
    EXPECT_EQ(RTrim(Variant(u"  a  ")), Variant(u"  a"));
    EXPECT_EQ(Trim(Variant(int16_t{5})), Variant(u"5")) << "numbers are read as text";
    EXPECT_EQ(Trim(Variant()), Variant(u""));
}

TEST(TextFunctions, CaseCoversAccentedLetters) {
    EXPECT_EQ(UCase(Variant(u"ñandú çava")), Variant(u"ÑANDÚ ÇAVA"));
    EXPECT_EQ(LCase(Variant(u"ÁRBOL Ñ")), Variant(u"árbol ñ"));
    EXPECT_EQ(UCase(Variant(u"ÿ")), Variant(u"Ÿ"));
}

TEST(TextFunctions, PiecesAndPositions) {
    EXPECT_EQ(Len(Variant(u"abc")), Variant(3));
    EXPECT_EQ(Left(Variant(u"abc"), 5), Variant(u"abc"));
    EXPECT_EQ(Right(Variant(u"abc"), 2), Variant(u"bc"));
    EXPECT_EQ(Mid(Variant(u"abcdef"), 3, 2), Variant(u"cd"));
    EXPECT_EQ(Mid(Variant(u"abc"), 4), Variant(u""));
    EXPECT_EQ(Mid(Variant(u"abc"), 2), Variant(u"bc"));
    EXPECT_EQ(InStr(Variant(u"a.b.c"), Variant(u".")), Variant(2));
    EXPECT_EQ(InStr(3, Variant(u"a.b.c"), Variant(u".")), Variant(4));
    EXPECT_EQ(InStr(Variant(u"ABC"), Variant(u"b")), Variant(0));
    EXPECT_EQ(InStr(Variant(u"ABC"), Variant(u"b"), CompareMode::Text), Variant(2));
    EXPECT_EQ(InStr(Variant(u""), Variant(u"")), Variant(0));
    EXPECT_EQ(InStr(Variant(u"abc"), Variant(u"")), Variant(1));
    EXPECT_EQ(error_of([] { Left(Variant(u"a"), -1); }).number(), 5);
    EXPECT_EQ(error_of([] { Mid(Variant(u"a"), 0); }).number(), 5);
}

TEST(Round, TiesGoToTheEvenDigitAndTheSubtypeStays) {
    EXPECT_EQ(Round(Variant(2.5)), Variant(2.0));
    EXPECT_EQ(Round(Variant(3.5)), Variant(4.0));
    EXPECT_EQ(Round(Variant(-2.5)), Variant(-2.0));
    EXPECT_EQ(Round(Variant(0.125), 2), Variant(0.12));
    EXPECT_EQ(Round(Variant(1.2345f), 2), Variant(1.23f));
    EXPECT_EQ(Round(Variant(Currency{12345}), 2), Variant(Currency{12300}));
    EXPECT_EQ(Round(Variant(Currency{12350}), 2), Variant(Currency{12400})) << "1.235 is a tie, 1.24 is even";
    EXPECT_EQ(Round(Variant(Currency{12250}), 2), Variant(Currency{12200})) << "1.225 is a tie, 1.22 is even";
    EXPECT_EQ(Round(Variant(int16_t{7}), 2), Variant(int16_t{7}));
    EXPECT_EQ(Round(Variant(u"2.5")), Variant(2.0));
    EXPECT_EQ(Round(Variant::null()), Variant::null());
    EXPECT_EQ(error_of([] { Round(Variant(1.0), -1); }).number(), 5);
    EXPECT_EQ(error_of([] { Round(Variant(u"x")); }).number(), 13);
}

TEST(IntAndFix, RoundDownAndTowardZero) {
    EXPECT_EQ(Int(Variant(-2.5)), Variant(-3.0));
    EXPECT_EQ(Fix(Variant(-2.5)), Variant(-2.0));
    EXPECT_EQ(Int(Variant(Currency{-15000})), Variant(Currency{-20000}));
    EXPECT_EQ(Fix(Variant(Date{45429.75})), Variant(Date{45429}));
}

struct ValCase {
    const char16_t* text;
    double value;
};

TEST(Val, ReadsTheLeadingNumber) {
    const ValCase cases[] = {
        {u"", 0},          {u"abc", 0},        {u"  12", 12},       {u"1 2 3", 123},
        {u"1,000", 1},     {u"1.2.3", 1.2},    {u"-1.5e3x", -1500}, {u"2D2", 200},
        {u".5", 0.5},      {u"&HFFFF", -1},    {u"&H10000", 65536}, {u"&O17", 15},
        {u"1e", 1},        {u"+7", 7},         {u"\t\n4", 4},       {u"1e-400", 0},
        {u"12,5%", 12},    {u"$5", 0},
    };
    for (const auto& c : cases) EXPECT_EQ(Val(Variant(c.text)), c.value) << debug_string(Variant(c.text));
    EXPECT_EQ(error_of([] { Val(Variant(u"1e400")); }).number(), 6);
    EXPECT_EQ(error_of([] { Val(Variant::null()); }).number(), 94);
}

TEST(Val, NumbersAreReadThroughTheirText) {
    EXPECT_EQ(Val(Variant(1.5)), 1.5);
    LocaleScope spain(Locale::spanish_spain());
    EXPECT_EQ(Val(Variant(1.5)), 1.0) << "CStr writes 1,5 and Val reads only points";
}

TEST(Clock, NowDateAndTimeFollowThePinnedClock) {
    ClockScope pinned(*make_date(2024, 5, 17, 9, 30, 15));
    EXPECT_EQ(Now(), Variant(*make_date(2024, 5, 17, 9, 30, 15)));
    EXPECT_EQ(Today(), Variant(*make_date(2024, 5, 17)));
    EXPECT_EQ(Time(), Variant(Date{(9 * 3600 + 30 * 60 + 15) / 86400.0}));
    EXPECT_EQ(Year(Now()), 2024);
}

}  // namespace
}  // namespace celdo::automation

#include "automation/language.hpp"

#include <gtest/gtest.h>

#include "automation/clock.hpp"
#include "automation/recognize.hpp"
#include "automation/textops.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;
using namespace celdo::automation::lang;
const Variant Null = Variant::null();

constexpr auto check = celdo::testing::expect_rows<Variant>;

TEST(TextFunctions, NullPropagatesTrimTakesSpacesOnlyAndCaseCoversAccents) {
    check({
        {Trim(Null), Null}, {LTrim(Null), Null}, {RTrim(Null), Null}, {UCase(Null), Null}, {LCase(Null), Null},
        {Len(Null), Null}, {Left(Null, 2), Null}, {Mid(Null, 1), Null}, {InStr(Null, u"a"), Null},
        {Trim(u"  a b  "), u"a b"}, {Trim(u"\ta\t"), u"\ta\t"}, {LTrim(u"  a  "), u"a  "}, {RTrim(u"  a  "), u"  a"},
        {Trim(u"    "), u""}, {LTrim(u"    "), u""}, {RTrim(u"    "), u""}, {LTrim(u"\t a"), u"\t a"}, {RTrim(u"a \t"), u"a \t"},
        {Trim(int16_t{5}), u"5"}, {Trim(Variant()), u""},  // numbers and Empty are read as text
        {UCase(u"ñandú çava"), u"ÑANDÚ ÇAVA"}, {LCase(u"ÁRBOL Ñ"), u"árbol ñ"}, {UCase(u"ÿ"), u"Ÿ"},
    });
}

TEST(Case, MapsLettersBeyondAsciiAndLeavesTheRest) {
    // Ā/ā and Ă/ă alternate in one block: each maps only its own partner.
    const std::pair<char16_t, char16_t> pairs[] = {
        {u'a', u'A'}, {u'ñ', u'Ñ'}, {u'á', u'Á'}, {u'ü', u'Ü'}, {u'ç', u'Ç'}, {u'ω', u'Ω'}, {u'ж', u'Ж'},
        {u'\u0101', u'\u0100'}, {u'\u0103', u'\u0102'},
        {u'1', u'1'}, {u'-', u'-'}, {u'ß', u'ß'}, {u'€', u'€'}, {u'中', u'中'},  // no case of their own
    };
    for (auto [lower, upper] : pairs) {
        EXPECT_EQ(std::u16string({upper_char(lower), upper_char(upper), lower_char(upper), lower_char(lower)}),
                  std::u16string({upper, upper, lower, lower}));
    }
}

TEST(Utf, ConvertsBothWaysIncludingSurrogates) {
    const std::u16string text = u"año 𝄞 €";
    EXPECT_EQ(utf8_to_utf16(utf16_to_utf8(text)), text);
    EXPECT_EQ(utf16_to_utf8(u"ñ"), "\xC3\xB1");
    EXPECT_EQ(utf8_to_utf16("\xFF"), u"\uFFFD") << "a malformed byte reads as the replacement character";
}

TEST(TextFunctions, PiecesAndPositions) {
    check({
        {Len(u"abc"), 3}, {Left(u"abc", 5), u"abc"}, {Right(u"abc", 2), u"bc"}, {Mid(u"abcdef", 3, 2), u"cd"},
        {Mid(u"abc", 4), u""}, {Mid(u"abc", 2), u"bc"}, {InStr(u"a.b.c", u"."), 2}, {InStr(3, u"a.b.c", u"."), 4},
        {InStr(u"ABC", u"b"), 0}, {InStr(u"ABC", u"b", CompareMode::Text), 2}, {InStr(u"", u""), 0},
        {InStr(u"abc", u""), 1},
    });
}

// Round's ties, subtypes and text are rows of platform_record.tsv (record_test.cpp).
TEST(IntAndFix, IntRoundsDownAndFixTowardZeroKeepingTheSubtype) {
    check({{Int(-2.5), -3.0}, {Fix(-2.5), -2.0}, {Int(Currency{-15000}), Currency{-20000}}, {Fix(Date{45429.75}), Date{45429}}});
}

TEST(Val, ReadsTheLeadingNumber) {
    const std::pair<const char16_t*, double> cases[] = {
        {u"", 0},      {u"abc", 0},      {u"  12", 12},    {u"1 2 3", 123},    {u"1,000", 1},   {u"1.2.3", 1.2},
        {u"-1.5e3x", -1500}, {u"2D2", 200}, {u".5", 0.5},  {u"&HFFFF", -1},    {u"&H10000", 65536}, {u"&O17", 15},
        {u"1e", 1},    {u"+7", 7},       {u"\t\n4", 4},    {u"1e-400", 0},     {u"12,5%", 12},  {u"$5", 0},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(Val(text), value) << utf16_to_utf8(text);
    EXPECT_EQ(Val(1.5), 1.5);
    LocaleScope spain(Locale::spanish_spain());
    EXPECT_EQ(Val(1.5), 1.0) << "numbers are read through their text: CStr writes 1,5 and Val reads only points";
}

TEST(TextFunctions, ArgumentsOutOfRangeAreErrors) {
    const std::pair<void (*)(), int> cases[] = {
        {[] { Left(u"a", -1); }, 5}, {[] { Mid(u"a", 0); }, 5}, {[] { Round(1.0, -1); }, 5}, {[] { Round(u"x"); }, 13},
        {[] { Val(u"1e400"); }, 6},  {[] { Val(Null); }, 94},
    };
    for (const auto& [body, number] : cases) EXPECT_EQ(error_of(body).number(), number);
}

TEST(DateParts, SplitRoundsToTheSecondAndCountsWeekdaysFromSunday) {
    const DateParts p = split_date(*make_date(2024, 5, 17, 23, 59, 59));
    EXPECT_EQ(std::vector<int>({p.year, p.month, p.day, p.weekday, p.day_of_year}), std::vector<int>({2024, 5, 17, 6, 138}));
    const DateParts late = split_date(Date{make_date(2024, 5, 17)->serial + 0.9999999});
    EXPECT_EQ(late.day * 100 + late.hour, 1800) << "a time a hair before midnight rounds into the next day";
    const DateParts before = split_date(Date{-1.25});  // 1899-12-29 06:00
    EXPECT_EQ(before.day * 100 + before.hour, 2906);
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

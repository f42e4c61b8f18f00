// The language's functions and operators as rows of language_rules.tsv (Format, comparison, +
// and &, the text functions, Int, Fix, Val, IsNumeric, CStr and CLng); here what a row cannot
// say.
#include "automation/language.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#ifdef _WIN32
#include <windows.h>
#endif

#include "automation/clock.hpp"
#include "automation/convert.hpp"
#include "automation/format.hpp"
#include "automation/operators.hpp"
#include "automation/recognize.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::cell;
using celdo::testing::error_of;
using celdo::testing::typed;
using namespace celdo::automation::lang;
using Args = std::vector<Variant>;

constexpr std::string_view kLanguageRules =
#include "language_rules.inc"
    ;

// An ordering by its name, as the table writes it.
Variant ordering(Ordering order) {
    const char16_t* const names[] = {u"Less", u"Equal", u"Greater", u"Null"};
    return Variant(names[static_cast<int>(order)]);
}

// The calls a row can make, by name; an argument the row leaves out takes the function's default.
const std::map<std::string_view, std::function<Variant(const Args&)>> kCalls = {
    {"Format",
     [](const Args& a) {
         return format(a[0], a[1].as_string(), a.size() > 2 ? FirstDayOfWeek(a[2].as_long()) : FirstDayOfWeek::Sunday);
     }},
    {"Compare", [](const Args& a) { return ordering(compare(a[0], a[1], CompareMode::Binary)); }},
    {"CompareText", [](const Args& a) { return ordering(compare(a[0], a[1], CompareMode::Text)); }},
    {"Add", [](const Args& a) { return add(a[0], a[1]); }},
    {"Concat", [](const Args& a) { return concat(a[0], a[1]); }},
    {"Trim", [](const Args& a) { return Trim(a[0]); }},
    {"LTrim", [](const Args& a) { return LTrim(a[0]); }},
    {"RTrim", [](const Args& a) { return RTrim(a[0]); }},
    {"UCase", [](const Args& a) { return UCase(a[0]); }},
    {"LCase", [](const Args& a) { return LCase(a[0]); }},
    {"Len", [](const Args& a) { return Len(a[0]); }},
    {"Left", [](const Args& a) { return Left(a[0], a[1].as_long()); }},
    {"Right", [](const Args& a) { return Right(a[0], a[1].as_long()); }},
    {"Mid", [](const Args& a) { return a.size() > 2 ? Mid(a[0], a[1].as_long(), a[2].as_long()) : Mid(a[0], a[1].as_long()); }},
    {"InStr",
     [](const Args& a) {
         if (a.size() == 2) return InStr(a[0], a[1]);
         return InStr(a[0].as_long(), a[1], a[2], a.size() > 3 && a[3].as_long() == 1 ? CompareMode::Text : CompareMode::Binary);
     }},
    {"Round", [](const Args& a) { return a.size() > 1 ? Round(a[0], a[1].as_long()) : Round(a[0]); }},
    {"Int", [](const Args& a) { return Int(a[0]); }},
    {"Fix", [](const Args& a) { return Fix(a[0]); }},
    {"Val", [](const Args& a) { return Variant(Val(a[0])); }},
    {"IsNumeric", [](const Args& a) { return Variant(IsNumeric(a[0])); }},
    {"CStr", [](const Args& a) { return Variant(to_string(a[0])); }},
    {"CLng", [](const Args& a) { return Variant(to_long(a[0])); }},
};

TEST(LanguageRules, EveryRowOfTheTable) {
    int rows = 0;
    celdo::testing::for_each_row(kLanguageRules, "rule\t", [&](int line_number, const std::vector<std::string_view>& row) {
        ASSERT_EQ(row.size(), 4u) << "line " << line_number;
        LocaleScope settings(row[1] == "es-ES" ? Locale::spanish_spain() : Locale::english_united_states());
        const std::string_view call = row[2];
        const size_t open = call.find('(');
        Args args;
        for (std::string_view arg : celdo::testing::split_cells(call.substr(open + 1, call.size() - open - 2), ", "))
            args.push_back(cell(arg, u"."));
        std::string got;
        try {
            got = typed(kCalls.at(call.substr(0, open))(args));
        } catch (const AutomationError& e) {
            got = "error " + std::to_string(e.number()) + " " + utf16_to_utf8(e.description());
        }
        const std::string expected = row[3].starts_with("error ") ? std::string(row[3]) : typed(cell(row[3], u"."));
        EXPECT_EQ(got, expected) << "line " << line_number << ": " << row[0] << ": " << call;
        ++rows;
    });
    EXPECT_GT(rows, 200) << "the table was read";
}

TEST(Compare, ArraysAreATypeMismatch) {
    EXPECT_EQ(error_of([] { compare(Variant(Array::vector({})), Variant(1)); }).number(), 13);
}

TEST(Utf, ConvertsBothWaysIncludingSurrogates) {
    const std::u16string text = u"año 𝄞 €";
    EXPECT_EQ(utf8_to_utf16(utf16_to_utf8(text)), text);
    EXPECT_EQ(utf16_to_utf8(u"ñ"), "\xC3\xB1");
    EXPECT_EQ(utf8_to_utf16("\xFF"), u"\uFFFD") << "a malformed byte reads as the replacement character";
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

TEST(Locale, ScopesRestoreWhatWasCurrent) {
    EXPECT_EQ(Locale::current().name, u"en-US");
    {
        LocaleScope spain(Locale::spanish_spain());
        EXPECT_EQ(to_string(Variant(1.5)), u"1,5");
        EXPECT_EQ(to_string(Variant(true)), u"Verdadero");
    }
    EXPECT_EQ(to_string(Variant(1.5)), u"1.5");
}

#ifdef _WIN32
std::u16string platform(LCTYPE what) {
    wchar_t buffer[128];
    int n = GetLocaleInfoW(LOCALE_USER_DEFAULT, what, buffer, 128);
    return std::u16string(reinterpret_cast<const char16_t*>(buffer), n > 0 ? static_cast<size_t>(n - 1) : 0);
}

TEST(Locale, OnWindowsTheDefaultIsTheUsersRegionalSettings) {
    const Locale user = Locale::user_default();
    EXPECT_EQ(user.decimal, platform(LOCALE_SDECIMAL));
    EXPECT_EQ(user.thousands, platform(LOCALE_STHOUSAND));
    EXPECT_EQ(user.currency, platform(LOCALE_SCURRENCY));
    EXPECT_EQ(user.short_date, platform(LOCALE_SSHORTDATE));
    EXPECT_EQ(user.month_names[0], platform(LOCALE_SMONTHNAME1));
    EXPECT_EQ(user.day_names[0], platform(LOCALE_SDAYNAME7)) << "the language's weeks start on Sunday";
}
#else
TEST(Locale, ElsewhereTheDefaultIsEnglishUnitedStates) {
    EXPECT_EQ(Locale::user_default().name, u"en-US");
}
#endif

}  // namespace
}  // namespace celdo::automation

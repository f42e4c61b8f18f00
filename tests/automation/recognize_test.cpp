// Recognition of dates and numbers in text: locale x input -> value or refusal.
#include "automation/recognize.hpp"

#include <gtest/gtest.h>

#include "automation/convert.hpp"
#include "automation/clock.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

Date on(int y, int m, int d, int h = 0, int n = 0, int s = 0) { return *make_date(y, m, d, h, n, s); }
Date at(int h, int n, int s = 0) { return Date{(h * 3600.0 + n * 60.0 + s) / 86400.0}; }

struct DateCase {
    const char16_t* text;
    std::optional<Date> expected;
};

void check(const Locale& locale, std::initializer_list<DateCase> cases) {
    for (const auto& c : cases) {
        auto got = parse_date(c.text, locale);
        ASSERT_EQ(got.has_value(), c.expected.has_value()) << utf16_to_utf8(c.text);
        if (got) {
            EXPECT_DOUBLE_EQ(got->serial, c.expected->serial) << utf16_to_utf8(c.text);
        }
        EXPECT_EQ(is_date(Variant(c.text), locale), c.expected.has_value()) << "IsDate " << utf16_to_utf8(c.text);
    }
}

class DateRecognition : public ::testing::Test {
protected:
    ClockScope this_year{*make_date(2026, 11, 22)};
};

TEST_F(DateRecognition, EnglishUnitedStates) {
    check(Locale::english_united_states(), {
        {u"2024-05-17", on(2024, 5, 17)},
        {u"2024-05-17 09:30", on(2024, 5, 17, 9, 30)},
        {u"2024-05-17 09:30:15", on(2024, 5, 17, 9, 30, 15)},
        {u"5/17/2024", on(2024, 5, 17)},
        {u"17/5/2024", on(2024, 5, 17)},  // no 17th month: day first
        {u"5/17/24", on(2024, 5, 17)},
        {u"5/17", on(2026, 5, 17)},
        {u"05-OCT-2021", on(2021, 10, 5)},
        {u"05-oct-21", on(2021, 10, 5)},
        {u"Oct 5, 2021", on(2021, 10, 5)},
        {u"October 5 2021", on(2021, 10, 5)},
        {u"Friday, May 17, 2024", on(2024, 5, 17)},
        {u"5 oct. 2021", on(2021, 10, 5)},
        {u"10/2021", on(2021, 10, 1)},
        {u"May 2024", on(2024, 5, 1)},
        {u"1/1/29", on(2029, 1, 1)},
        {u"1/1/30", on(2030, 1, 1)},
        {u"1/1/50", on(1950, 1, 1)},
        {u"12/31/9999", on(9999, 12, 31)},
        {u"1/1/100", on(100, 1, 1)},
        {u"2/29/2024", on(2024, 2, 29)},
        {u"5/17/2024 9:30 PM", on(2024, 5, 17, 21, 30)},
    });
}

TEST_F(DateRecognition, Times) {
    check(Locale::english_united_states(), {
        {u"9:30", at(9, 30)},
        {u"9:30 PM", at(21, 30)},
        {u"9:30PM", at(21, 30)},
        {u"9:30:15 am", at(9, 30, 15)},
        {u"21:30", at(21, 30)},
        {u"12:00 AM", at(0, 0)},
        {u"12:00 PM", at(12, 0)},
        {u"9 PM", at(21, 0)},
        {u"9.30", at(9, 30)},
        {u"1.2.3", at(1, 2, 3)},
        {u"9:30 p.m.", at(21, 30)},
    });
}

TEST_F(DateRecognition, Refusals) {
    check(Locale::english_united_states(), {
        {u"", std::nullopt},          {u"abc", std::nullopt},        {u"12", std::nullopt},
        {u"31/02/2024", std::nullopt}, {u"2/29/2023", std::nullopt}, {u"13/13/2024", std::nullopt},
        {u"25:00", std::nullopt},      {u"9:60", std::nullopt},      {u"5 de octubre de 2021", std::nullopt},
        {u"-2.5", std::nullopt},       {u"5/", std::nullopt},        {u"5//2024", std::nullopt},
        {u"2024-05-17T09:30:00", std::nullopt}, {u"1/1/10000", std::nullopt}, {u"255.5", std::nullopt},
        {u"0.00005", std::nullopt},    {u"1,234", std::nullopt},
    });
}

TEST_F(DateRecognition, SpanishSpainReadsDayFirstAndItsOwnNames) {
    check(Locale::spanish_spain(), {
        {u"17/05/2024", on(2024, 5, 17)},
        {u"5/10/2021", on(2021, 10, 5)},
        {u"5 de octubre de 2021", on(2021, 10, 5)},
        {u"viernes, 17 de mayo de 2024", on(2024, 5, 17)},
        {u"17.05.2024", std::nullopt},
        {u"17-ene-2024", on(2024, 1, 17)},
        {u"21:30", at(21, 30)},
    });
}

TEST(DateParts, SplitRoundsToTheSecondAndCountsWeekdaysFromSunday) {
    const DateParts p = split_date(on(2024, 5, 17, 23, 59, 59));
    EXPECT_EQ(p.year, 2024);
    EXPECT_EQ(p.month, 5);
    EXPECT_EQ(p.day, 17);
    EXPECT_EQ(p.weekday, 6);  // Friday
    EXPECT_EQ(p.day_of_year, 138);
    const DateParts late = split_date(Date{on(2024, 5, 17).serial + 0.9999999});
    EXPECT_EQ(late.day, 18) << "a time a hair before midnight rounds into the next day";
    EXPECT_EQ(late.hour, 0);
    const DateParts before = split_date(Date{-1.25});  // 1899-12-29 06:00
    EXPECT_EQ(before.day, 29);
    EXPECT_EQ(before.hour, 6);
}

TEST(NumberRecognition, KeepsEveryDigit) {
    auto n = parse_number(u"  -0001234.5000  ", Locale::english_united_states());
    ASSERT_TRUE(n);
    EXPECT_TRUE(n->negative);
    EXPECT_EQ(n->digits, "12345");
    EXPECT_EQ(n->exponent, -1);
    EXPECT_FALSE(parse_number(u"$$5", Locale::english_united_states()));
    EXPECT_FALSE(parse_number(u"(5", Locale::english_united_states()));
    EXPECT_FALSE(parse_number(u"5)", Locale::english_united_states()));
    EXPECT_TRUE(parse_number(u"5 €", Locale::spanish_spain()));
    EXPECT_FALSE(parse_number(u"5 €", Locale::english_united_states()));
}

}  // namespace
}  // namespace celdo::automation

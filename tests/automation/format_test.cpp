#include "automation/format.hpp"

#include <gtest/gtest.h>

#include "automation/recognize.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

struct FormatCase {
    Variant value;
    const char16_t* format;
    Variant expected;
};

void check(std::initializer_list<FormatCase> cases) {
    for (const auto& c : cases) {
        EXPECT_EQ(format(c.value, c.format), c.expected)
            << debug_string(c.value) << " with \"" << utf16_to_utf8(c.format) << "\"";
    }
}

Variant day(int y, int m, int d, int h = 0, int n = 0, int s = 0) { return Variant(*make_date(y, m, d, h, n, s)); }

TEST(Format, WithoutFormatWritesTheValueAsText) {
    check({
        {Variant(1234.5), u"", Variant(u"1234.5")},
        {Variant(true), u"", Variant(u"True")},
        {Variant(), u"", Variant(u"")},
        {Variant::null(), u"", Variant::null()},
        {day(2024, 5, 17), u"", Variant(u"5/17/2024")},
    });
}

TEST(Format, NamedNumberFormats) {
    check({
        {Variant(1234.567), u"General Number", Variant(u"1234.567")},
        {Variant(1234.567), u"Currency", Variant(u"$1,234.57")},
        {Variant(-1234.567), u"currency", Variant(u"($1,234.57)")},
        {Variant(1234.567), u"Fixed", Variant(u"1234.57")},
        {Variant(1234.567), u"Standard", Variant(u"1,234.57")},
        {Variant(0.1234), u"Percent", Variant(u"12.34%")},
        {Variant(1234.567), u"Scientific", Variant(u"1.23E+03")},
        {Variant(0), u"Yes/No", Variant(u"No")},
        {Variant(-2), u"True/False", Variant(u"True")},
        {Variant(1), u"On/Off", Variant(u"On")},
    });
}

TEST(Format, NamedDateFormats) {
    const Variant d = day(2024, 5, 17, 21, 5, 9);
    check({
        {d, u"General Date", Variant(u"5/17/2024 9:05:09 PM")},
        {d, u"Long Date", Variant(u"Friday, May 17, 2024")},
        {d, u"Medium Date", Variant(u"17-May-24")},
        {d, u"Short Date", Variant(u"5/17/2024")},
        {d, u"Long Time", Variant(u"9:05:09 PM")},
        {d, u"Medium Time", Variant(u"09:05 PM")},
        {d, u"Short Time", Variant(u"21:05")},
    });
}

TEST(Format, DigitPlaceholdersAndSeparators) {
    check({
        {Variant(5.0), u"0.00", Variant(u"5.00")},
        {Variant(1234567.891), u"#,##0.00", Variant(u"1,234,567.89")},
        {Variant(0.5), u"#.##", Variant(u".5")},
        {Variant(1.0), u"#.##", Variant(u"1.")},
        {Variant(0.05), u"0.##", Variant(u"0.05")},
        {Variant(5), u"000", Variant(u"005")},
        {Variant(12345), u"00", Variant(u"12345")},
        {Variant(0), u"#", Variant(u"")},
        {Variant(5551234567.0), u"(###) ###-####", Variant(u"(555) 123-4567")},
        {Variant(1234567), u"#,##0,", Variant(u"1,235")},
        {Variant(1534567), u"#,##0,,", Variant(u"2")},
    });
}

TEST(Format, RoundsHalfAwayFromZeroOnTheShownDigits) {
    check({
        {Variant(2.5), u"0", Variant(u"3")},
        {Variant(0.125), u"0.00", Variant(u"0.13")},
        {Variant(2.675), u"0.00", Variant(u"2.68")},
        {Variant(-2.5), u"0", Variant(u"-3")},
        {Variant(9.995), u"0.00", Variant(u"10.00")},
        {Variant(Currency{123455}), u"0.000", Variant(u"12.346")},
    });
}

TEST(Format, SectionsForNegativeZeroAndNull) {
    const char16_t* f = u"0.00;(0.00);\"cero\";\"nada\"";
    check({
        {Variant(1.5), f, Variant(u"1.50")},
        {Variant(-1.5), f, Variant(u"(1.50)")},
        {Variant(0), f, Variant(u"cero")},
        {Variant::null(), f, Variant(u"nada")},
        {Variant(-1.5), u"0.00", Variant(u"-1.50")},
        {Variant(-1.5), u"0.00;;0", Variant(u"-1.50")},
        {Variant::null(), u"0.00", Variant::null()},
        {Variant(-5), u"###,###,###,###,##0;(###,###,###,###,##0);0", Variant(u"(5)")},
        {Variant(0), u"###,###,###,###,##0;(###,###,###,###,##0);0", Variant(u"0")},
        {Variant(1234), u"###,###,###,###,##0;(###,###,###,###,##0);0", Variant(u"1,234")},
    });
}

TEST(Format, PercentAndScientific) {
    check({
        {Variant(0.125), u"0.0%", Variant(u"12.5%")},
        {Variant(12345.0), u"0.00E+00", Variant(u"1.23E+04")},
        {Variant(0.00012), u"0.0E-0", Variant(u"1.2E-4")},
        {Variant(12345.0), u"0.0e-00", Variant(u"1.2e04")},
        {Variant(0), u"0.00E+00", Variant(u"0.00E+00")},
        {Variant(99999.0), u"0.0E+0", Variant(u"1.0E+5")},
    });
}

TEST(Format, LiteralsQuotesAndEscapes) {
    check({
        {Variant(5), u"$0", Variant(u"$5")},
        {Variant(-5), u"$0", Variant(u"-$5")},
        {Variant(5), u"\"Total: \"0", Variant(u"Total: 5")},
        {Variant(5), u"0\\%", Variant(u"5%")},
    });
}

TEST(Format, NumericTextIsFormattedAsANumber) {
    check({
        {Variant(u"1234.5"), u"#,##0.00", Variant(u"1,234.50")},
        {Variant(u"abc"), u"0.00", Variant(u"abc")},
        {Variant(u"2024-05-17"), u"yyyy", Variant(u"2024")},
    });
}

TEST(Format, DateTokensInAnyCase) {
    const Variant d = day(2024, 5, 7, 9, 5, 3);
    check({
        {d, u"YYYY-MM-DD\\Thh:mm:ss", Variant(u"2024-05-07T09:05:03")},
        {d, u"yyyy-mm-dd hh:nn:ss", Variant(u"2024-05-07 09:05:03")},
        {d, u"d/m/yy", Variant(u"7/5/24")},
        {d, u"dddd d \"de\" mmmm", Variant(u"Tuesday 7 de May")},
        {d, u"ddd mmm", Variant(u"Tue May")},
        {d, u"h:mm AM/PM", Variant(u"9:05 AM")},
        {d, u"h:mm am/pm", Variant(u"9:05 am")},
        {d, u"hh A/P", Variant(u"09 A")},
        {d, u"q y w", Variant(u"2 128 3")},
        {d, u"mm", Variant(u"05")},
        {d, u"c", Variant(u"5/7/2024 9:05:03 AM")},
        {d, u"ddddd", Variant(u"5/7/2024")},
        {day(2024, 1, 1), u"ww", Variant(u"1")},
        {day(2024, 12, 31), u"ww", Variant(u"53")},
        {Variant(45419.5), u"yyyy-mm-dd hh", Variant(u"2024-05-07 12")},
    });
}

TEST(Format, WeekdaysCountFromTheGivenFirstDay) {
    const Variant tuesday = day(2024, 5, 7);
    EXPECT_EQ(format(tuesday, u"w"), Variant(u"3"));
    EXPECT_EQ(format(tuesday, u"w", FirstDayOfWeek::Monday), Variant(u"2"));
}

TEST(Format, TextPlaceholders) {
    check({
        {Variant(u"abc"), u"@@@@@", Variant(u"  abc")},
        {Variant(u"abc"), u"!@@@@@", Variant(u"abc  ")},
        {Variant(u"abc"), u"&&&&&", Variant(u"abc")},
        {Variant(u"abcdef"), u"@@@", Variant(u"abcdef")},
        {Variant(u"abc"), u">", Variant(u"ABC")},
        {Variant(u"ABC"), u"<@", Variant(u"abc")},
        {Variant(u"5551234"), u"@@@-@@@@", Variant(u"555-1234")},
        {Variant(u""), u"@;\"vacío\"", Variant(u"vacío")},
        {Variant::null(), u"@;\"vacío\"", Variant(u"vacío")},
    });
}

TEST(Format, FollowsTheLocale) {
    LocaleScope spain(Locale::spanish_spain());
    check({
        {Variant(1234.5), u"#,##0.00", Variant(u"1.234,50")},
        {Variant(1234.5), u"Currency", Variant(u"1.234,50 €")},
        {day(2024, 5, 7), u"dddd d mmmm yyyy", Variant(u"martes 7 mayo 2024")},
        {day(2024, 5, 7), u"dd/mm/yyyy", Variant(u"07/05/2024")},
    });
}

}  // namespace
}  // namespace celdo::automation

#include "automation/format.hpp"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

#include "automation/locale.hpp"
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

TEST(Format, Numbers) {
    const char16_t* sections = u"0.00;(0.00);\"cero\";\"nada\"";
    const char16_t* accounting = u"###,###,###,###,##0;(###,###,###,###,##0);0";
    check({
        // No format: the value as text; Null stays Null.
        {1234.5, u"", u"1234.5"}, {true, u"", u"True"}, {Variant(), u"", u""},
        {Variant::null(), u"", Variant::null()}, {day(2024, 5, 17), u"", u"5/17/2024"},
        // Named number formats.
        {1234.567, u"General Number", u"1234.567"}, {1234.567, u"Currency", u"$1,234.57"},
        {-1234.567, u"currency", u"($1,234.57)"}, {1234.567, u"Fixed", u"1234.57"},
        {1234.567, u"Standard", u"1,234.57"}, {0.1234, u"Percent", u"12.34%"}, {1234.567, u"Scientific", u"1.23E+03"},
        {0, u"Yes/No", u"No"}, {-2, u"True/False", u"True"}, {1, u"On/Off", u"On"},
        // Digit placeholders and separators (a trailing comma divides by a thousand).
        {5.0, u"0.00", u"5.00"}, {1234567.891, u"#,##0.00", u"1,234,567.89"}, {0.5, u"#.##", u".5"},
        {1.0, u"#.##", u"1."}, {0.05, u"0.##", u"0.05"}, {5, u"000", u"005"}, {12345, u"00", u"12345"},
        {0, u"#", u""}, {5551234567.0, u"(###) ###-####", u"(555) 123-4567"}, {1234567, u"#,##0,", u"1,235"},
        {1534567, u"#,##0,,", u"2"},
        // The shown digits round half away from zero.
        {2.5, u"0", u"3"}, {0.125, u"0.00", u"0.13"}, {2.675, u"0.00", u"2.68"}, {-2.5, u"0", u"-3"},
        {9.995, u"0.00", u"10.00"}, {Currency{123455}, u"0.000", u"12.346"},
        // Sections for negative, zero and Null; an empty section falls back to the first.
        {1.5, sections, u"1.50"}, {-1.5, sections, u"(1.50)"}, {0, sections, u"cero"},
        {Variant::null(), sections, u"nada"},
        {-1.5, u"0.00", u"-1.50"}, {-1.5, u"0.00;;0", u"-1.50"}, {Variant::null(), u"0.00", Variant::null()},
        {-5, accounting, u"(5)"}, {0, accounting, u"0"}, {1234, accounting, u"1,234"},
        // Percent and scientific.
        {0.125, u"0.0%", u"12.5%"}, {12345.0, u"0.00E+00", u"1.23E+04"}, {0.00012, u"0.0E-0", u"1.2E-4"},
        {12345.0, u"0.0e-00", u"1.2e04"}, {0, u"0.00E+00", u"0.00E+00"}, {99999.0, u"0.0E+0", u"1.0E+5"},
        // Literals, quotes and escapes; a minus sign goes before them.
        {5, u"$0", u"$5"}, {-5, u"$0", u"-$5"}, {5, u"\"Total: \"0", u"Total: 5"}, {5, u"0\\%", u"5%"},
        // Numeric text is formatted as a number, a date text as a date, other text as it is.
        {u"1234.5", u"#,##0.00", u"1,234.50"}, {u"abc", u"0.00", u"abc"}, {u"2024-05-17", u"yyyy", u"2024"},
    });
}

TEST(Format, Dates) {
    const Variant named = day(2024, 5, 17, 21, 5, 9), d = day(2024, 5, 7, 9, 5, 3);
    check({
        // Named date formats.
        {named, u"General Date", u"5/17/2024 9:05:09 PM"}, {named, u"Long Date", u"Friday, May 17, 2024"},
        {named, u"Medium Date", u"17-May-24"}, {named, u"Short Date", u"5/17/2024"},
        {named, u"Long Time", u"9:05:09 PM"},
        {named, u"Medium Time", u"09:05 PM"}, {named, u"Short Time", u"21:05"},
        // Date tokens in any case.
        {d, u"YYYY-MM-DD\\Thh:mm:ss", u"2024-05-07T09:05:03"}, {d, u"yyyy-mm-dd hh:nn:ss", u"2024-05-07 09:05:03"},
        {d, u"d/m/yy", u"7/5/24"}, {d, u"dddd d \"de\" mmmm", u"Tuesday 7 de May"}, {d, u"ddd mmm", u"Tue May"},
        {d, u"h:mm AM/PM", u"9:05 AM"}, {d, u"h:mm am/pm", u"9:05 am"}, {d, u"hh A/P", u"09 A"},
        {d, u"q y w", u"2 128 3"}, {d, u"mm", u"05"}, {d, u"c", u"5/7/2024 9:05:03 AM"}, {d, u"ddddd", u"5/7/2024"},
        {day(2024, 1, 1), u"ww", u"1"}, {day(2024, 12, 31), u"ww", u"53"},
        {45419.5, u"yyyy-mm-dd hh", u"2024-05-07 12"},
    });
    EXPECT_EQ(format(d, u"w", FirstDayOfWeek::Monday), Variant(u"2")) << "weekdays count from the given first day";
}

TEST(Format, TextPlaceholders) {
    check({
        {u"abc", u"@@@@@", u"  abc"}, {u"abc", u"!@@@@@", u"abc  "}, {u"abc", u"&&&&&", u"abc"},
        {u"abcdef", u"@@@", u"abcdef"}, {u"abc", u">", u"ABC"}, {u"ABC", u"<@", u"abc"},
        {u"5551234", u"@@@-@@@@", u"555-1234"}, {u"", u"@;\"vacío\"", u"vacío"},
        {Variant::null(), u"@;\"vacío\"", u"vacío"},
    });
}

TEST(Format, FollowsTheLocale) {
    LocaleScope spain(Locale::spanish_spain());
    check({
        {1234.5, u"#,##0.00", u"1.234,50"}, {1234.5, u"Currency", u"1.234,50 €"},
        {day(2024, 5, 7), u"dddd d mmmm yyyy", u"martes 7 mayo 2024"},
        {day(2024, 5, 7), u"dd/mm/yyyy", u"07/05/2024"},
    });
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

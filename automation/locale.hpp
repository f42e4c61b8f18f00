#pragma once
// The regional settings every conversion reads: separators, currency, date order and names.

#include <array>
#include <string>

namespace celdo::automation {

enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

struct Locale {
    std::u16string name = u"en-US";
    std::u16string decimal = u".";
    std::u16string thousands = u",";
    std::u16string currency = u"$";
    // Where the symbol goes in positive and negative amounts, with the platform's codes
    // (LOCALE_ICURRENCY 0 to 3 and LOCALE_INEGCURR 0 to 15).
    int currency_positive_format = 0;
    int currency_negative_format = 0;
    int currency_digits = 2;
    DateOrder date_order = DateOrder::MonthDayYear;
    // The last year a two-digit year stands for: 30 is 2030 and 50 is 1950 with 2049, the
    // platform's default.
    int two_digit_year_max = 2049;
    std::u16string date_separator = u"/";
    std::u16string time_separator = u":";
    std::u16string short_date = u"M/d/yyyy";
    std::u16string long_date = u"dddd, MMMM d, yyyy";
    std::u16string long_time = u"h:mm:ss tt";
    std::u16string short_time = u"h:mm tt";
    std::u16string am = u"AM";
    std::u16string pm = u"PM";
    std::u16string true_name = u"True";
    std::u16string false_name = u"False";
    std::array<std::u16string, 12> month_names{u"January", u"February", u"March",     u"April",
                                               u"May",     u"June",     u"July",      u"August",
                                               u"September", u"October", u"November", u"December"};
    std::array<std::u16string, 12> month_abbreviations{u"Jan", u"Feb", u"Mar", u"Apr",
                                                       u"May", u"Jun", u"Jul", u"Aug",
                                                       u"Sep", u"Oct", u"Nov", u"Dec"};
    // Sunday first, as the language counts weekdays.
    std::array<std::u16string, 7> day_names{u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                            u"Thursday", u"Friday", u"Saturday"};
    std::array<std::u16string, 7> day_abbreviations{u"Sun", u"Mon", u"Tue", u"Wed",
                                                    u"Thu", u"Fri", u"Sat"};

    static Locale english_united_states();
    static Locale spanish_spain();
    static Locale spanish_mexico();

    // The user's regional settings on Windows; English (United States) elsewhere.
    static Locale user_default();

    // The locale conversions use when none is given. It starts as user_default(), as the
    // automation runtime's does.
    static const Locale& current();
    static void set_current(Locale locale);
};

// Pins the current locale for a scope (tests, the differential harness).
class LocaleScope {
public:
    explicit LocaleScope(Locale locale);
    ~LocaleScope();
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;

private:
    Locale saved_;
};

}  // namespace celdo::automation

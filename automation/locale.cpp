#include "automation/locale.hpp"

#ifdef _WIN32
#include <windows.h>
#endif

namespace celdo::automation {

namespace {

const std::array<std::u16string, 12> kSpanishMonths{
    u"enero", u"febrero", u"marzo",      u"abril",   u"mayo",      u"junio",
    u"julio", u"agosto",  u"septiembre", u"octubre", u"noviembre", u"diciembre"};
const std::array<std::u16string, 12> kSpanishMonthAbbreviations{
    u"ene", u"feb", u"mar", u"abr", u"may", u"jun", u"jul", u"ago", u"sep", u"oct", u"nov", u"dic"};
const std::array<std::u16string, 7> kSpanishDays{u"domingo", u"lunes",   u"martes", u"miércoles",
                                                 u"jueves",  u"viernes", u"sábado"};
const std::array<std::u16string, 7> kSpanishDayAbbreviations{u"dom", u"lun", u"mar", u"mié",
                                                             u"jue", u"vie", u"sáb"};

Locale spanish_common() {
    Locale l;
    l.true_name = u"Verdadero";
    l.false_name = u"Falso";
    l.date_order = DateOrder::DayMonthYear;
    l.short_date = u"dd/MM/yyyy";
    l.long_date = u"dddd, d' de 'MMMM' de 'yyyy";
    l.month_names = kSpanishMonths;
    l.month_abbreviations = kSpanishMonthAbbreviations;
    l.day_names = kSpanishDays;
    l.day_abbreviations = kSpanishDayAbbreviations;
    return l;
}

#ifdef _WIN32
std::u16string locale_text(LCTYPE what, const std::u16string& fallback) {
    wchar_t buffer[128];
    int n = GetLocaleInfoW(LOCALE_USER_DEFAULT, what, buffer, 128);
    if (n <= 1) return fallback;
    return std::u16string(reinterpret_cast<const char16_t*>(buffer), static_cast<size_t>(n - 1));
}

int locale_number(LCTYPE what, int fallback) {
    std::u16string text = locale_text(what, u"");
    if (text.empty()) return fallback;
    int value = 0;
    for (char16_t c : text) {
        if (c < u'0' || c > u'9') return fallback;
        value = value * 10 + (c - u'0');
    }
    return value;
}

// The user's settings that map onto one member each; where the platform has none, the
// member keeps the value it had.
struct TextSetting {
    LCTYPE what;
    std::u16string Locale::*member;
};
constexpr TextSetting kTextSettings[] = {
    {LOCALE_SDECIMAL, &Locale::decimal},         {LOCALE_STHOUSAND, &Locale::thousands},
    {LOCALE_SCURRENCY, &Locale::currency},       {LOCALE_SDATE, &Locale::date_separator},
    {LOCALE_STIME, &Locale::time_separator},     {LOCALE_SSHORTDATE, &Locale::short_date},
    {LOCALE_SLONGDATE, &Locale::long_date},      {LOCALE_STIMEFORMAT, &Locale::long_time},
    {LOCALE_SSHORTTIME, &Locale::short_time},
};
struct NumberSetting {
    LCTYPE what;
    int Locale::*member;
};
constexpr NumberSetting kNumberSettings[] = {
    {LOCALE_ICURRENCY, &Locale::currency_positive_format},
    {LOCALE_INEGCURR, &Locale::currency_negative_format},
    {LOCALE_ICURRDIGITS, &Locale::currency_digits},
};

Locale user_locale() {
    Locale l;
    const std::u16string language = locale_text(LOCALE_SISO639LANGNAME, u"en");
    if (language == u"es") l = spanish_common();
    l.name = language + u"-" + locale_text(LOCALE_SISO3166CTRYNAME, u"US");
    for (const TextSetting& s : kTextSettings) l.*s.member = locale_text(s.what, l.*s.member);
    for (const NumberSetting& s : kNumberSettings) l.*s.member = locale_number(s.what, l.*s.member);
    switch (locale_number(LOCALE_IDATE, 0)) {
    case 1: l.date_order = DateOrder::DayMonthYear; break;
    case 2: l.date_order = DateOrder::YearMonthDay; break;
    default: l.date_order = DateOrder::MonthDayYear; break;
    }
    DWORD last_year = 0;
    if (GetCalendarInfoW(LOCALE_USER_DEFAULT, CAL_GREGORIAN, CAL_ITWODIGITYEARMAX | CAL_RETURN_NUMBER, nullptr, 0,
                         &last_year) &&
        last_year >= 99 && last_year <= 9999)
        l.two_digit_year_max = static_cast<int>(last_year);
    // A clock without AM and PM has none (the platform answers an empty text).
    l.am = locale_text(LOCALE_S1159, u"");
    l.pm = locale_text(LOCALE_S2359, u"");
    for (int m = 0; m < 12; ++m) {
        l.month_names[m] = locale_text(LOCALE_SMONTHNAME1 + m, l.month_names[m]);
        l.month_abbreviations[m] = locale_text(LOCALE_SABBREVMONTHNAME1 + m, l.month_abbreviations[m]);
    }
    // The platform lists weekdays from Monday; the language counts them from Sunday.
    for (int d = 0; d < 7; ++d) {
        const int platform = (d + 6) % 7;
        l.day_names[d] = locale_text(LOCALE_SDAYNAME1 + platform, l.day_names[d]);
        l.day_abbreviations[d] = locale_text(LOCALE_SABBREVDAYNAME1 + platform, l.day_abbreviations[d]);
    }
    return l;
}
#endif

Locale& current_locale() {
    static Locale current = Locale::user_default();
    return current;
}

}  // namespace

Locale Locale::english_united_states() { return Locale{}; }

Locale Locale::user_default() {
#ifdef _WIN32
    return user_locale();
#else
    return english_united_states();
#endif
}

Locale Locale::spanish_spain() {
    Locale l = spanish_common();
    l.name = u"es-ES";
    l.decimal = u",";
    l.thousands = u".";
    l.currency = u"€";
    l.currency_positive_format = 3;   // "1,00 €"
    l.currency_negative_format = 8;   // "-1,00 €"
    l.long_time = u"H:mm:ss";
    l.short_time = u"H:mm";
    l.am = u"";
    l.pm = u"";
    return l;
}

Locale Locale::spanish_mexico() {
    Locale l = spanish_common();
    l.name = u"es-MX";
    l.currency = u"$";
    l.currency_negative_format = 1;   // "-$1.00"
    l.long_time = u"hh:mm:ss tt";
    l.short_time = u"hh:mm tt";
    l.am = u"a.m.";
    l.pm = u"p.m.";
    return l;
}

const Locale& Locale::current() { return current_locale(); }

void Locale::set_current(Locale locale) { current_locale() = std::move(locale); }

LocaleScope::LocaleScope(Locale locale) : saved_(Locale::current()) {
    Locale::set_current(std::move(locale));
}

LocaleScope::~LocaleScope() { Locale::set_current(std::move(saved_)); }

}  // namespace celdo::automation

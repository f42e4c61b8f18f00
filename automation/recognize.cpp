#include "automation/recognize.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "automation/clock.hpp"
#include "automation/textops.hpp"

namespace celdo::automation {

// ------------------------------------------------------------------------------- numbers

namespace {

bool is_blank_char(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == u'\v' || c == u'\f' ||
           c == 0xA0;
}

bool starts_with(std::u16string_view text, size_t at, std::u16string_view what) {
    return !what.empty() && text.substr(at, what.size()) == what;
}

int hex_value(char16_t c) {
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    return -1;
}

}  // namespace

double NumberText::to_double() const {
    if (radix) return static_cast<double>(bits);
    if (digits.empty()) return negative ? -0.0 : 0.0;
    // "<digits>e<exponent>", on the stack unless the digits are many.
    char stack[64];
    std::string heap;
    const size_t size = digits.size() + 16;
    char* text = stack;
    if (size > sizeof stack) {
        heap.resize(size);
        text = heap.data();
    }
    char* end = std::copy(digits.begin(), digits.end(), text);
    *end++ = 'e';
    end = std::to_chars(end, text + size, exponent).ptr;
    double value = 0;
    auto [ptr, ec] = std::from_chars(text, end, value);
    if (ec == std::errc::result_out_of_range) {
        // Underflow reads as zero, overflow as infinity, which callers refuse.
        value = exponent < 0 ? 0.0 : HUGE_VAL;
    }
    return negative ? -value : value;
}

std::optional<Currency> NumberText::to_currency() const {
    if (radix) return Currency{static_cast<int64_t>(bits) * Currency::kScale};
    if (digits.empty()) return Currency{0};
    // value x 10^4 = digits x 10^(exponent + 4): its first `whole` digits (with zeros after the
    // written ones) are the integer, the rest are dropped.
    const int64_t whole = static_cast<int64_t>(digits.size()) + exponent + 4;
    // Nineteen digits always fit in 64 unsigned bits; the sign's range is checked after.
    if (whole > 19) return std::nullopt;
    uint64_t magnitude = 0;
    for (int64_t k = 0; k < whole; ++k)
        magnitude = magnitude * 10 + (k < static_cast<int64_t>(digits.size()) ? static_cast<unsigned>(digits[static_cast<size_t>(k)] - '0') : 0u);
    if (whole >= 0 && whole < static_cast<int64_t>(digits.size())) {
        // Half to even on the first dropped digit and whether anything follows it. Below the
        // first written digit, all that is dropped is below half.
        const size_t first = static_cast<size_t>(whole);
        const bool above_half = digits[first] > '5' ||
                                (digits[first] == '5' && digits.find_first_not_of('0', first + 1) != std::string::npos);
        const bool exactly_half = digits[first] == '5' && !above_half;
        if (above_half || (exactly_half && (magnitude & 1))) ++magnitude;
    }
    const uint64_t limit = negative ? uint64_t{1} << 63 : (uint64_t{1} << 63) - 1;
    if (magnitude > limit) return std::nullopt;
    const int64_t scaled = negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
    return Currency{scaled};
}

std::optional<NumberText> parse_number(std::u16string_view text, const Locale& locale) {
    NumberText n;
    size_t i = 0;
    const size_t end = text.size();
    auto skip_blanks = [&] {
        while (i < end && is_blank_char(text[i])) ++i;
    };
    bool sign_seen = false, paren = false, currency_seen = false;
    // The sign, parenthesis and currency symbol a number may carry before its digits or
    // after them, once each (the symbol may repeat after them: "$11$$"); a closing
    // parenthesis makes it negative and counts as its sign.
    auto read_affixes = [&](bool after) {
        skip_blanks();
        for (;;) {
            if (i < end && (text[i] == u'+' || text[i] == u'-') && !sign_seen) {
                sign_seen = true;
                n.negative = text[i] == u'-';
                ++i;
            } else if (!after && i < end && text[i] == u'(' && !paren) {
                paren = true;
                ++i;
            } else if (after && i < end && text[i] == u')' && paren) {
                paren = false;
                n.negative = true;
                ++i;
                if (sign_seen) return false;
                sign_seen = true;
            } else if ((after || !currency_seen) && starts_with(text, i, locale.currency)) {
                currency_seen = true;
                i += locale.currency.size();
            } else {
                return true;
            }
            skip_blanks();
        }
    };

    read_affixes(false);

    if (i + 1 < end && text[i] == u'&' && !sign_seen && !paren && !currency_seen) {
        const char16_t kind = text[i + 1];
        const int base = (kind == u'H' || kind == u'h') ? 16 : (kind == u'O' || kind == u'o') ? 8 : 0;
        if (!base) return std::nullopt;
        i += 2;
        size_t start = i;
        uint64_t bits = 0;
        while (i < end) {
            int d = hex_value(text[i]);
            if (d < 0 || d >= base) break;
            bits = bits * static_cast<unsigned>(base) + static_cast<unsigned>(d);
            if (bits > 0xFFFFFFFFu) return std::nullopt;
            ++i;
        }
        if (i == start) return std::nullopt;
        skip_blanks();
        if (i != end) return std::nullopt;
        n.radix = true;
        n.bits = bits;
        return n;
    }

    bool any_digit = false;
    bool in_fraction = false;
    int fraction_digits = 0;
    std::string digits;
    while (i < end) {
        char16_t c = text[i];
        if (c >= u'0' && c <= u'9') {
            any_digit = true;
            if (!(digits.empty() && c == u'0')) digits.push_back(static_cast<char>(c));
            if (in_fraction) ++fraction_digits;
            ++i;
        } else if (!in_fraction && starts_with(text, i, locale.decimal)) {
            in_fraction = true;
            i += locale.decimal.size();
        } else if (!in_fraction && any_digit && starts_with(text, i, locale.thousands)) {
            i += locale.thousands.size();
        } else {
            break;
        }
    }
    if (!any_digit) return std::nullopt;

    int exponent = -fraction_digits;
    if (i < end && (text[i] == u'e' || text[i] == u'E')) {
        ++i;
        bool negative_exponent = false;
        if (i < end && (text[i] == u'+' || text[i] == u'-')) {
            negative_exponent = text[i] == u'-';
            ++i;
        }
        size_t start = i;
        int value = 0;
        while (i < end && text[i] >= u'0' && text[i] <= u'9') {
            if (value < 100000) value = value * 10 + (text[i] - u'0');
            ++i;
        }
        if (i == start) return std::nullopt;
        exponent += negative_exponent ? -value : value;
    }

    if (!read_affixes(true) || i != end || paren) return std::nullopt;

    // Keep only significant digits: trailing zeros move into the exponent.
    while (!digits.empty() && digits.back() == '0') {
        digits.pop_back();
        ++exponent;
    }
    n.digits = std::move(digits);
    n.exponent = n.digits.empty() ? 0 : exponent;
    return n;
}

// --------------------------------------------------------------------------------- dates

namespace {

// 1899-12-30, the day serial 0 stands for, counted from 1970-01-01.
constexpr int64_t kEpochShift = -25569;

int64_t days_from_civil(int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

void civil_from_days(int64_t z, int& y, int& m, int& d) {
    z += 719468;
    const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const int64_t yy = static_cast<int64_t>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yy + (m <= 2));
}

bool leap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int days_in_month(int y, int m) {
    static constexpr std::array<int, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && leap(y) ? 29 : kDays[static_cast<size_t>(m - 1)];
}

// Dates without a year fall in the clock's year, pinned or not.
int current_year() { return split_date(now()).year; }

struct Token {
    enum Kind { Number, Month, Meridiem, TimeSep, DateSep, Other } kind;
    int value = 0;       // number value, month 1-12, 0/12 for AM/PM, or a separator's character
    size_t length = 0;   // digits written
};

// The year a number stands for: written with one or two digits, it falls in the hundred years
// that end with the settings' last two-digit year (2049 unless the user chose otherwise).
int year_of(const Token& number, const Locale& locale) {
    if (number.length > 2) return number.value;
    const int last = locale.two_digit_year_max;
    const int year = last - last % 100 + number.value;
    return year > last ? year - 100 : year;
}

const std::array<std::u16string_view, 12> kEnglishMonths{
    u"january", u"february", u"march",     u"april",   u"may",      u"june",
    u"july",    u"august",   u"september", u"october", u"november", u"december"};
const std::array<std::u16string_view, 7> kEnglishDays{u"sunday",   u"monday", u"tuesday", u"wednesday",
                                                      u"thursday", u"friday", u"saturday"};

// A word that names `name`: the whole of it, or its first three letters or more.
bool abbreviates(std::u16string_view word, std::u16string_view name) {
    return word.size() >= 3 && word.size() <= name.size() && name.substr(0, word.size()) == word;
}

// Names are read in English and in the settings' language, as the platform reads the words
// for True and False; another language's names are text.
int month_of(std::u16string_view word, const Locale& locale) {
    for (int m = 0; m < 12; ++m) {
        if (abbreviates(word, kEnglishMonths[m]) ||
            abbreviates(word, lower_case(locale.month_names[m])) ||
            word == lower_case(locale.month_abbreviations[m]))
            return m + 1;
    }
    if (word == u"sept" || word == u"set") return 9;
    return 0;
}

bool is_day_name(std::u16string_view word, const Locale& locale) {
    for (auto d : kEnglishDays) {
        if (abbreviates(word, d)) return true;
    }
    for (int d = 0; d < 7; ++d) {
        if (abbreviates(word, lower_case(locale.day_names[d]))) return true;
    }
    return false;
}

// -1 when not a meridiem word, else 0 for AM and 12 for PM.
int meridiem_of(std::u16string_view word, const Locale& locale) {
    std::u16string bare;
    for (char16_t c : word) {
        if (c != u'.' && c != u' ') bare.push_back(c);
    }
    auto bare_of = [](const std::u16string& s) {
        std::u16string b;
        for (char16_t c : lower_case(s)) {
            if (c != u'.' && c != u' ') b.push_back(c);
        }
        return b;
    };
    if (bare == u"am" || bare == u"a" || (!locale.am.empty() && bare == bare_of(locale.am))) return 0;
    if (bare == u"pm" || bare == u"p" || (!locale.pm.empty() && bare == bare_of(locale.pm))) return 12;
    return -1;
}

bool is_letter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c != 0xD7 && c != 0xF7 && c != 0x3000);
}

std::optional<std::vector<Token>> tokenize(std::u16string_view text, const Locale& locale) {
    std::vector<Token> tokens;
    size_t i = 0;
    while (i < text.size()) {
        char16_t c = text[i];
        if (c >= u'0' && c <= u'9') {
            size_t start = i;
            int64_t value = 0;
            while (i < text.size() && text[i] >= u'0' && text[i] <= u'9') {
                value = value * 10 + (text[i] - u'0');
                if (value > 99999) return std::nullopt;
                ++i;
            }
            tokens.push_back({Token::Number, static_cast<int>(value), i - start});
        } else if (is_letter(c)) {
            size_t start = i;
            // "a.m." and "p. m." are one word.
            while (i < text.size() && (is_letter(text[i]) || text[i] == u'.' ||
                                       (text[i] == u' ' && i + 1 < text.size() &&
                                        (text[i + 1] == u'm' || text[i + 1] == u'M') &&
                                        i > start && text[i - 1] == u'.'))) {
                ++i;
            }
            std::u16string word = lower_case(text.substr(start, i - start));
            int mer = meridiem_of(word, locale);
            if (mer >= 0) {
                tokens.push_back({Token::Meridiem, mer, 0});
                continue;
            }
            while (!word.empty() && word.back() == u'.') word.pop_back();
            if (int m = month_of(word, locale)) {
                tokens.push_back({Token::Month, m, 0});
            } else if (word == u"de" || word == u"del" || is_day_name(word, locale)) {
                // Spanish "5 de octubre de 2021", a weekday name.
                tokens.push_back({Token::Other, 0, 0});
            } else {
                return std::nullopt;
            }
        } else if (c == u':' || starts_with(text, i, locale.time_separator) ||
                   (c == u'.' && locale.date_separator != u".")) {
            // Where points do not separate dates, they separate a time's parts ("9.30").
            tokens.push_back({Token::TimeSep, c, 0});
            i += c == u':' || c == u'.' ? 1 : locale.time_separator.size();
        } else if (c == u'/' || c == u'-' || c == u'.' || starts_with(text, i, locale.date_separator)) {
            tokens.push_back({Token::DateSep, c, 0});
            i += (c == u'/' || c == u'-' || c == u'.') ? 1 : locale.date_separator.size();
        } else if (c == u',' || is_blank_char(c) || c == 0x3000) {
            tokens.push_back({Token::Other, 0, 0});
            ++i;
        } else {
            return std::nullopt;
        }
    }
    // A separator stands between two parts: none may lead, trail or follow another one.
    for (size_t t = 0; t < tokens.size(); ++t) {
        if (tokens[t].kind != Token::DateSep && tokens[t].kind != Token::TimeSep) continue;
        const bool first = t == 0 || tokens[t - 1].kind == Token::DateSep || tokens[t - 1].kind == Token::TimeSep;
        const bool last = t + 1 == tokens.size();
        if (first || last) return std::nullopt;
    }
    return tokens;
}

struct Ymd {
    int y, m, d;
};

bool valid(const Ymd& v) {
    return v.y >= 100 && v.y <= 9999 && v.m >= 1 && v.m <= 12 && v.d >= 1 &&
           v.d <= days_in_month(v.y, v.m);
}

// The date's numbers read in the first order that gives a real day: the settings' own order,
// then year-month-day, then the other of month-day-year and day-month-year (so "14 2 3" is
// 2014-02-03 in English-US and 2003-02-14 in Spanish), with year-day-month last. Two numbers
// are a month and day of this year, in the settings' order first, or else a month and a year.
std::optional<Ymd> read_numbers(const std::vector<Token>& n, const Locale& locale) {
    auto year = [&](const Token& t) { return year_of(t, locale); };
    std::vector<Ymd> tries;
    if (n.size() == 3) {
        const Ymd mdy{year(n[2]), n[0].value, n[1].value}, dmy{year(n[2]), n[1].value, n[0].value};
        const Ymd ymd{year(n[0]), n[1].value, n[2].value}, ydm{year(n[0]), n[2].value, n[1].value};
        switch (locale.date_order) {
        case DateOrder::MonthDayYear: tries = {mdy, ymd, dmy, ydm}; break;
        case DateOrder::DayMonthYear: tries = {dmy, ymd, mdy, ydm}; break;
        case DateOrder::YearMonthDay: tries = {ymd, mdy, dmy, ydm}; break;
        }
    } else if (n.size() == 2) {
        const int this_year = current_year();
        const Ymd md{this_year, n[0].value, n[1].value}, dm{this_year, n[1].value, n[0].value};
        if (locale.date_order == DateOrder::DayMonthYear) tries = {dm, md};
        else tries = {md, dm};
        // A year of three digits reads as no year at all ("1,234" is no date).
        if (n[1].length != 3) tries.push_back({year(n[1]), n[0].value, 1});
        if (n[0].length != 3) tries.push_back({year(n[0]), n[1].value, 1});
    }
    for (const Ymd& t : tries) {
        if (valid(t)) return t;
    }
    return std::nullopt;
}

}  // namespace

std::optional<Date> make_date(int year, int month, int day, int hour, int minute, double second) {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 ||
        day > days_in_month(year, month))
        return std::nullopt;
    const int64_t days = days_from_civil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) - kEpochShift;
    const double fraction = (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
    const double serial = days >= 0 ? static_cast<double>(days) + fraction : static_cast<double>(days) - fraction;
    return Date{serial};
}

DateParts split_date(Date value) {
    double whole = std::trunc(value.serial);
    double fraction = std::fabs(value.serial - whole);
    int64_t days = static_cast<int64_t>(whole);
    int64_t seconds = std::llround(fraction * 86400.0);
    if (seconds >= 86400) {
        seconds -= 86400;
        days += value.serial < 0 ? -1 : 1;
    }
    DateParts p{};
    civil_from_days(days + kEpochShift, p.year, p.month, p.day);
    p.hour = static_cast<int>(seconds / 3600);
    p.minute = static_cast<int>(seconds / 60 % 60);
    p.second = static_cast<int>(seconds % 60);
    p.weekday = static_cast<int>(((days % 7) + 7 + 6) % 7) + 1;
    p.day_of_year = static_cast<int>(days - (days_from_civil(p.year, 1, 1) - kEpochShift)) + 1;
    return p;
}

std::optional<Date> parse_date(std::u16string_view text, const Locale& locale) {
    auto tokens = tokenize(text, locale);
    if (!tokens) return std::nullopt;
    const std::vector<Token>& t = *tokens;

    // The time: up to three numbers joined by time separators, or one number, and a meridiem
    // right after it. There is one at most, before or after the whole date, never inside it.
    int hour = 0, minute = 0, second = 0, meridiem = -1;
    bool has_time = false, dotted = true;
    size_t date_parts_before_time = 0;
    std::vector<Token> numbers;
    int month_word = 0;
    auto date_parts = [&] { return numbers.size() + (month_word ? 1 : 0); };
    for (size_t i = 0; i < t.size(); ++i) {
        if (t[i].kind == Token::Month) {
            if (month_word) return std::nullopt;
            month_word = t[i].value;
            continue;
        }
        if (t[i].kind == Token::Meridiem || t[i].kind == Token::TimeSep) return std::nullopt;
        if (t[i].kind != Token::Number) continue;  // separators between the date's parts
        std::array<int, 3> parts{t[i].value, 0, 0};
        size_t count = 1, end = i;
        bool two_digits = t[i].length <= 2;
        for (; end + 2 < t.size() && t[end + 1].kind == Token::TimeSep && t[end + 2].kind == Token::Number; end += 2) {
            if (count == parts.size()) return std::nullopt;
            dotted = dotted && t[end + 1].value == u'.';
            two_digits = two_digits && t[end + 2].length <= 2;
            parts[count++] = t[end + 2].value;
        }
        size_t after = end + 1;
        while (after < t.size() && t[after].kind == Token::Other) ++after;
        const bool has_meridiem = after < t.size() && t[after].kind == Token::Meridiem;
        if (count == 1 && !has_meridiem) {
            numbers.push_back(t[i]);
            continue;
        }
        if (has_time || !two_digits) return std::nullopt;
        has_time = true;
        date_parts_before_time = date_parts();
        hour = parts[0];
        minute = parts[1];
        second = parts[2];
        if (has_meridiem) {
            meridiem = t[after].value;
            dotted = false;
            end = after;
        }
        i = end;
    }
    if (has_time) {
        if (date_parts_before_time != 0 && date_parts_before_time != date_parts()) return std::nullopt;
        // AM and PM apply to hours up to 12: "0:30 PM" is 12:30, "13:30 AM" stays 13:30.
        if (meridiem >= 0 && hour <= 12) hour = hour % 12 + meridiem;
        if (hour > 23 || minute > 59 || second > 59) return std::nullopt;
        // Points alone that give no time at all are the number zero ("0.0"), not a time.
        if (dotted && hour + minute + second == 0 && date_parts() == 0) return std::nullopt;
    }

    auto year_like = [](const Token& n) { return n.length >= 3 || n.value > 31; };
    std::optional<Ymd> ymd;
    if (month_word) {
        // With a month's name the number is the day, unless it cannot be one ("Jan 35" is 2035).
        if (numbers.size() == 2) {
            const Token& a = numbers[0];
            const Token& b = numbers[1];
            if (year_like(a) && !year_like(b)) ymd = Ymd{year_of(a, locale), month_word, b.value};
            else ymd = Ymd{year_of(b, locale), month_word, a.value};
        } else if (numbers.size() == 1) {
            const Token& a = numbers[0];
            if (year_like(a)) ymd = Ymd{year_of(a, locale), month_word, 1};
            else ymd = Ymd{current_year(), month_word, a.value};
        } else {
            return std::nullopt;
        }
        if (!valid(*ymd)) return std::nullopt;
    } else if (!numbers.empty()) {
        ymd = read_numbers(numbers, locale);
        if (!ymd) return std::nullopt;
    } else if (!has_time) {
        return std::nullopt;
    }

    if (!ymd) {
        // A time alone sits on day zero.
        return Date{(hour * 3600.0 + minute * 60.0 + second) / 86400.0};
    }
    return make_date(ymd->y, ymd->m, ymd->d, hour, minute, second);
}

}  // namespace celdo::automation

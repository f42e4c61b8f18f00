#include "automation/format.hpp"

#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "automation/convert.hpp"
#include "automation/datetext.hpp"
#include "automation/error.hpp"
#include "automation/recognize.hpp"
#include "automation/textops.hpp"

namespace celdo::automation {

namespace {

// ------------------------------------------------------------------------------- sections

std::vector<std::u16string_view> split_sections(std::u16string_view format) {
    std::vector<std::u16string_view> sections;
    size_t start = 0;
    bool quoted = false;
    for (size_t i = 0; i < format.size(); ++i) {
        const char16_t c = format[i];
        if (c == u'"') quoted = !quoted;
        else if (c == u'\\' && !quoted) ++i;
        else if (c == u';' && !quoted) {
            sections.push_back(format.substr(start, i - start));
            start = i + 1;
        }
    }
    sections.push_back(format.substr(start));
    return sections;
}

enum class Kind { Number, Date, Text, Literal };

// What a section formats, judged by its placeholders outside quotes and escapes.
Kind classify(std::u16string_view section) {
    bool number = false, date = false, text_case = false;
    bool quoted = false;
    for (size_t i = 0; i < section.size(); ++i) {
        const char16_t c = section[i];
        if (c == u'"') {
            quoted = !quoted;
            continue;
        }
        if (quoted) continue;
        if (c == u'\\') {
            ++i;
            continue;
        }
        switch (lower_char(c)) {
        case u'@':
        case u'&': return Kind::Text;
        case u'0':
        case u'#': number = true; break;
        case u'<':
        case u'>':
        case u'!': text_case = true; break;
        case u'd':
        case u'w':
        case u'm':
        case u'q':
        case u'y':
        case u'h':
        case u'n':
        case u's':
        case u'c':
        case u't':
        case u'/':
        case u':': date = true; break;
        default: break;
        }
    }
    if (number) return Kind::Number;
    if (date) return Kind::Date;
    if (text_case) return Kind::Text;
    return Kind::Literal;
}

// Literal text of a section: quotes removed, escapes resolved.
std::u16string literal_text(std::u16string_view section) {
    std::u16string out;
    bool quoted = false;
    for (size_t i = 0; i < section.size(); ++i) {
        const char16_t c = section[i];
        if (c == u'"') quoted = !quoted;
        else if (c == u'\\' && !quoted && i + 1 < section.size()) out.push_back(section[++i]);
        else out.push_back(c);
    }
    return out;
}

// ------------------------------------------------------------------------------ numbers

// A number as decimal digits: value = 0.digits x 10^point, with the sign apart.
struct Decimal {
    bool negative = false;
    std::string digits;  // without leading or trailing zeros; empty for zero
    int point = 0;
};

Decimal decimal_of(const Variant& v) {
    Decimal d;
    if (v.type() == VarType::Currency) {
        const int64_t s = v.as_currency().scaled;
        d.negative = s < 0;
        uint64_t m = d.negative ? 0 - static_cast<uint64_t>(s) : static_cast<uint64_t>(s);
        d.digits = m ? std::to_string(m) : std::string();
        d.point = static_cast<int>(d.digits.size()) - 4;
    } else {
        // Fifteen significant digits for Double and seven for Single, as the language shows
        // them, so that 2.675 formats as the 2.675 the user sees.
        const double x = to_double(v);
        d.negative = std::signbit(x) && x != 0;
        if (x == 0) return d;
        char buffer[40];
        const int precision = v.type() == VarType::Single ? 7 : 15;
        auto r = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(x), std::chars_format::scientific,
                               precision - 1);
        std::string text(buffer, r.ptr);
        const size_t e = text.find('e');
        for (size_t i = 0; i < e; ++i) {
            if (text[i] != '.') d.digits.push_back(text[i]);
        }
        d.point = std::stoi(text.substr(e + 1)) + 1;
    }
    while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
    if (d.digits.empty()) d.point = 0;
    return d;
}

// Rounds half away from zero to `fraction` digits after the point.
void round_to(Decimal& d, int fraction) {
    const int keep = d.point + fraction;
    if (keep >= static_cast<int>(d.digits.size())) return;
    if (keep < 0) {
        d.digits.clear();
        d.point = 0;
        return;
    }
    const bool up = d.digits[static_cast<size_t>(keep)] >= '5';
    d.digits.resize(static_cast<size_t>(keep));
    if (up) {
        int i = keep - 1;
        while (i >= 0 && d.digits[static_cast<size_t>(i)] == '9') {
            d.digits[static_cast<size_t>(i)] = '0';
            --i;
        }
        if (i < 0) {
            d.digits.insert(d.digits.begin(), '1');
            ++d.point;
        } else {
            ++d.digits[static_cast<size_t>(i)];
        }
    }
    while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
    if (d.digits.empty()) d.point = 0;
}

std::string integer_digits(const Decimal& d) {
    if (d.point <= 0) return {};
    std::string out = d.digits.substr(0, std::min(d.digits.size(), static_cast<size_t>(d.point)));
    out.append(static_cast<size_t>(d.point) - out.size(), '0');
    return out;
}

std::string fraction_digits(const Decimal& d, int count) {
    std::string out;
    for (int i = 0; i < count; ++i) {
        const int at = d.point + i;
        out.push_back(at >= 0 && at < static_cast<int>(d.digits.size()) ? d.digits[static_cast<size_t>(at)] : '0');
    }
    return out;
}

struct Item {
    char16_t placeholder;  // '0' or '#', or 0 for a literal
    std::u16string literal;
};

struct NumberSection {
    std::vector<Item> whole;     // before the decimal point
    std::vector<Item> fraction;  // after it
    bool point = false;
    bool grouping = false;
    int scaling = 0;  // commas that divide by 1000
    int percent = 0;
    bool scientific = false;
    bool exponent_sign_always = false;
    char16_t exponent_letter = u'E';
    std::vector<Item> exponent;
};

NumberSection parse_number_section(std::u16string_view section) {
    NumberSection s;
    std::vector<Item>* target = &s.whole;
    auto literal = [&](std::u16string text) {
        if (!target->empty() && target->back().placeholder == 0) target->back().literal += text;
        else target->push_back({0, std::move(text)});
    };
    int pending_commas = 0;
    auto settle_commas = [&](bool digit_follows) {
        if (pending_commas == 0) return;
        if (digit_follows && target == &s.whole) s.grouping = true;
        else if (target == &s.whole) s.scaling += pending_commas;
        pending_commas = 0;
    };
    for (size_t i = 0; i < section.size(); ++i) {
        const char16_t c = section[i];
        if (c == u'"') {
            size_t end = section.find(u'"', i + 1);
            if (end == std::u16string_view::npos) end = section.size();
            literal(std::u16string(section.substr(i + 1, end - i - 1)));
            i = end;
        } else if (c == u'\\' && i + 1 < section.size()) {
            literal(std::u16string(1, section[++i]));
        } else if (c == u'0' || c == u'#') {
            settle_commas(true);
            target->push_back({c, {}});
        } else if (c == u'.' && !s.point && !s.scientific) {
            settle_commas(false);
            s.point = true;
            target = &s.fraction;
        } else if (c == u',') {
            if (target == &s.whole) ++pending_commas;
        } else if (c == u'%') {
            ++s.percent;
            literal(u"%");
        } else if ((c == u'E' || c == u'e') && !s.scientific && i + 1 < section.size() &&
                   (section[i + 1] == u'+' || section[i + 1] == u'-')) {
            settle_commas(false);
            s.scientific = true;
            s.exponent_letter = c;
            s.exponent_sign_always = section[i + 1] == u'+';
            ++i;
            target = &s.exponent;
        } else {
            literal(std::u16string(1, c));
        }
    }
    settle_commas(false);
    return s;
}

size_t placeholders(const std::vector<Item>& items) {
    size_t n = 0;
    for (const Item& item : items) n += item.placeholder ? 1 : 0;
    return n;
}

std::u16string widen(const std::string& s) { return std::u16string(s.begin(), s.end()); }

// The integer digits laid into the placeholders from the right; digits beyond the placeholders
// go where the first one is.
std::u16string render_whole(const std::vector<Item>& items, std::string digits, bool grouping, const Locale& locale) {
    const size_t count = placeholders(items);
    // Zeros that the 0 placeholders show beyond the number's own digits.
    size_t shown = digits.size();
    size_t from_right = 0;
    for (auto it = items.rbegin(); it != items.rend(); ++it) {
        if (!it->placeholder) continue;
        ++from_right;
        if (it->placeholder == u'0') shown = std::max(shown, from_right);
    }
    if (digits.size() < shown) digits.insert(0, shown - digits.size(), '0');
    std::u16string out;
    if (grouping) {
        std::u16string grouped;
        for (size_t i = 0; i < digits.size(); ++i) {
            if (i > 0 && (digits.size() - i) % 3 == 0) grouped += locale.thousands;
            grouped.push_back(static_cast<char16_t>(digits[i]));
        }
        bool placed = false;
        for (const Item& item : items) {
            if (!item.placeholder) out += item.literal;
            else if (!placed) {
                out += grouped;
                placed = true;
            }
        }
        if (!placed) out += grouped;
        return out;
    }
    // Placeholder k (from the left, of count) takes digit index k - (count - size).
    const long offset = static_cast<long>(count) - static_cast<long>(digits.size());
    long k = 0;
    for (const Item& item : items) {
        if (!item.placeholder) {
            out += item.literal;
            continue;
        }
        if (k == 0 && offset < 0) out += widen(digits.substr(0, static_cast<size_t>(-offset)));
        const long index = k - offset;
        if (index >= 0 && index < static_cast<long>(digits.size())) out.push_back(static_cast<char16_t>(digits[static_cast<size_t>(index)]));
        ++k;
    }
    if (count == 0) out += widen(digits);
    return out;
}

std::u16string render_fraction(const std::vector<Item>& items, std::string digits) {
    // Trailing zeros at # positions show nothing.
    std::vector<char16_t> kinds;
    for (const Item& item : items) {
        if (item.placeholder) kinds.push_back(item.placeholder);
    }
    size_t keep = digits.size();
    while (keep > 0 && kinds[keep - 1] == u'#' && digits[keep - 1] == '0') --keep;
    std::u16string out;
    size_t k = 0;
    for (const Item& item : items) {
        if (!item.placeholder) {
            out += item.literal;
            continue;
        }
        if (k < keep) out.push_back(static_cast<char16_t>(digits[k]));
        ++k;
    }
    return out;
}

std::u16string render_number(Decimal d, const NumberSection& s, const Locale& locale) {
    d.point += 2 * s.percent - 3 * s.scaling;
    const int fraction = static_cast<int>(placeholders(s.fraction));
    if (s.scientific) {
        const int whole = std::max<int>(1, static_cast<int>(placeholders(s.whole)));
        int exponent = 0;
        if (!d.digits.empty()) {
            exponent = d.point - whole;
            d.point = whole;
            round_to(d, fraction);
            if (d.point > whole) {  // rounding carried a digit
                ++exponent;
                d.point = whole;
            }
        }
        std::u16string out = render_whole(s.whole, integer_digits(d), false, locale);
        if (s.point) out += locale.decimal + render_fraction(s.fraction, fraction_digits(d, fraction));
        out.push_back(s.exponent_letter);
        if (exponent < 0) out.push_back(u'-');
        else if (s.exponent_sign_always) out.push_back(u'+');
        return out + render_whole(s.exponent, std::to_string(std::abs(exponent)), false, locale);
    }
    round_to(d, fraction);
    std::u16string out = render_whole(s.whole, integer_digits(d), s.grouping, locale);
    if (s.point) out += locale.decimal + render_fraction(s.fraction, fraction_digits(d, fraction));
    return out;
}

// --------------------------------------------------------------------------------- dates

int weekday_from(const DateParts& p, FirstDayOfWeek first) {
    return (p.weekday - static_cast<int>(first) + 7) % 7 + 1;
}

int week_of_year(Date value, FirstDayOfWeek first_day, FirstWeekOfYear first_week) {
    const DateParts p = split_date(value);
    auto start_of_week1 = [&](int year) {
        const double jan1 = make_date(year, 1, 1)->serial;
        const int offset = weekday_from(split_date(Date{jan1}), first_day) - 1;  // days since week start
        double start = jan1 - offset;
        if (first_week == FirstWeekOfYear::FirstFullWeek && offset > 0) start += 7;
        if (first_week == FirstWeekOfYear::FirstFourDays && offset > 3) start += 7;
        return start;
    };
    const double day = std::floor(value.serial);
    if (first_week == FirstWeekOfYear::January1) {
        return static_cast<int>((day - start_of_week1(p.year)) / 7) + 1;
    }
    double start = start_of_week1(p.year);
    if (day < start) start = start_of_week1(p.year - 1);
    else if (day >= start_of_week1(p.year + 1)) start = start_of_week1(p.year + 1);
    return static_cast<int>((day - start) / 7) + 1;
}

void append_two(std::u16string& out, int value, bool pad) {
    if (pad && value < 10) out.push_back(u'0');
    out += widen(std::to_string(value));
}

bool starts_with_ci(std::u16string_view text, size_t at, std::u16string_view what) {
    return text.size() - at >= what.size() && equal_text(text.substr(at, what.size()), what);
}

std::u16string render_date(Date value, std::u16string_view section, FirstDayOfWeek first_day,
                           FirstWeekOfYear first_week, const Locale& locale) {
    const DateParts p = split_date(value);
    bool twelve_hour = false;
    for (std::u16string_view marker : {u"AM/PM", u"A/P", u"AMPM"}) {
        for (size_t i = 0; i + marker.size() <= section.size(); ++i) {
            if (starts_with_ci(section, i, marker)) twelve_hour = true;
        }
    }
    std::u16string out;
    bool after_hour = false;
    for (size_t i = 0; i < section.size();) {
        const char16_t c = section[i];
        const char16_t l = lower_char(c);
        size_t run = 1;
        while (i + run < section.size() && lower_char(section[i + run]) == l) ++run;
        if (c == u'"') {
            size_t end = section.find(u'"', i + 1);
            if (end == std::u16string_view::npos) end = section.size();
            out += section.substr(i + 1, end - i - 1);
            i = end + 1;
            continue;
        }
        if (c == u'\\' && i + 1 < section.size()) {
            out.push_back(section[i + 1]);
            i += 2;
            continue;
        }
        if (l == u'a') {
            if (starts_with_ci(section, i, u"AM/PM")) {
                const bool upper = section[i] == u'A';
                out += p.hour < 12 ? (upper ? u"AM" : u"am") : (upper ? u"PM" : u"pm");
                i += 5;
                continue;
            }
            if (starts_with_ci(section, i, u"A/P")) {
                const bool upper = section[i] == u'A';
                out.push_back(p.hour < 12 ? (upper ? u'A' : u'a') : (upper ? u'P' : u'p'));
                i += 3;
                continue;
            }
            if (starts_with_ci(section, i, u"AMPM")) {
                out += p.hour < 12 ? locale.am : locale.pm;
                i += 4;
                continue;
            }
        }
        bool hour = false;
        size_t used = run;
        switch (l) {
        case u'c': out += date_to_text(value, locale); used = 1; break;
        case u'd':
            used = std::min<size_t>(run, 6);
            if (used == 1) append_two(out, p.day, false);
            else if (used == 2) append_two(out, p.day, true);
            else if (used == 3) out += locale.day_abbreviations[p.weekday - 1];
            else if (used == 4) out += locale.day_names[p.weekday - 1];
            else if (used == 5) out += format_date_picture(Date{std::trunc(value.serial)}, locale.short_date, locale);
            else out += format_date_picture(Date{std::trunc(value.serial)}, locale.long_date, locale);
            break;
        case u'w':
            used = std::min<size_t>(run, 2);
            out += widen(std::to_string(used == 1 ? weekday_from(p, first_day) : week_of_year(value, first_day, first_week)));
            break;
        case u'm':
            if (after_hour && run <= 2) {
                append_two(out, p.minute, run == 2);
                hour = true;  // a following m is still the minute's company
                break;
            }
            used = std::min<size_t>(run, 4);
            if (used <= 2) append_two(out, p.month, used == 2);
            else if (used == 3) out += locale.month_abbreviations[p.month - 1];
            else out += locale.month_names[p.month - 1];
            break;
        case u'q': out += widen(std::to_string((p.month - 1) / 3 + 1)); used = 1; break;
        case u'y':
            used = run >= 4 ? 4 : (run >= 2 ? 2 : 1);
            if (used == 1) out += widen(std::to_string(p.day_of_year));
            else if (used == 2) append_two(out, p.year % 100, true);
            else out += widen(std::to_string(p.year));
            break;
        case u'h': {
            used = std::min<size_t>(run, 2);
            const int h = twelve_hour ? (p.hour % 12 == 0 ? 12 : p.hour % 12) : p.hour;
            append_two(out, h, used == 2);
            hour = true;
            break;
        }
        case u'n': used = std::min<size_t>(run, 2); append_two(out, p.minute, used == 2); break;
        case u's': used = std::min<size_t>(run, 2); append_two(out, p.second, used == 2); break;
        case u't':
            if (run >= 5) {
                used = 5;
                out += format_date_picture(value, locale.long_time, locale);
            } else {
                out.append(run, c);
            }
            break;
        case u'/': out += locale.date_separator; used = 1; break;
        case u':':
            // A separator keeps the hour's company: in h:mm the m is the minute.
            out += locale.time_separator;
            ++i;
            continue;
        default:
            out.append(run, c);
            i += run;
            continue;
        }
        after_hour = hour;
        i += used;
    }
    return out;
}

// ---------------------------------------------------------------------------------- text

std::u16string render_text(std::u16string text, std::u16string_view section) {
    struct Slot {
        char16_t placeholder;  // '@', '&' or 0 for literal
        std::u16string literal;
    };
    std::vector<Slot> slots;
    bool lower = false, upper = false, left_to_right = false;
    for (size_t i = 0; i < section.size(); ++i) {
        const char16_t c = section[i];
        if (c == u'"') {
            size_t end = section.find(u'"', i + 1);
            if (end == std::u16string_view::npos) end = section.size();
            slots.push_back({0, std::u16string(section.substr(i + 1, end - i - 1))});
            i = end;
        } else if (c == u'\\' && i + 1 < section.size()) {
            slots.push_back({0, std::u16string(1, section[++i])});
        } else if (c == u'@' || c == u'&') {
            slots.push_back({c, {}});
        } else if (c == u'<') {
            lower = true;
            upper = false;
        } else if (c == u'>') {
            upper = true;
            lower = false;
        } else if (c == u'!') {
            left_to_right = true;
        } else {
            slots.push_back({0, std::u16string(1, c)});
        }
    }
    if (lower) text = lower_case(text);
    if (upper) text = upper_case(text);
    size_t count = 0;
    for (const Slot& s : slots) count += s.placeholder ? 1 : 0;
    std::u16string out;
    if (count == 0) {
        for (const Slot& s : slots) out += s.literal;
        return out + text;
    }
    // Which character each placeholder shows: filled from the right unless ! says otherwise;
    // characters beyond the placeholders stay with the outermost one.
    std::vector<std::u16string> fill(count);
    if (left_to_right) {
        for (size_t k = 0; k < count && k < text.size(); ++k) fill[k] = text.substr(k, 1);
        if (text.size() > count) fill[count - 1] += text.substr(count);
    } else {
        const size_t extra = text.size() > count ? text.size() - count : 0;
        for (size_t k = 0; k < count; ++k) {
            const long index = static_cast<long>(k) - static_cast<long>(count) + static_cast<long>(text.size());
            if (index >= 0) fill[k] = text.substr(static_cast<size_t>(index), 1);
        }
        if (extra) fill[0] = text.substr(0, extra + 1);
    }
    size_t k = 0;
    for (const Slot& s : slots) {
        if (!s.placeholder) {
            out += s.literal;
            continue;
        }
        if (!fill[k].empty()) out += fill[k];
        else if (s.placeholder == u'@') out.push_back(u' ');
        ++k;
    }
    return out;
}

// ---------------------------------------------------------------------------- named formats

std::u16string with_currency(const std::u16string& amount, bool negative, const Locale& locale) {
    const std::u16string& c = locale.currency;
    if (!negative) {
        switch (locale.currency_positive_format) {
        case 1: return amount + c;
        case 2: return c + u" " + amount;
        case 3: return amount + u" " + c;
        default: return c + amount;
        }
    }
    switch (locale.currency_negative_format) {
    case 1: return u"-" + c + amount;
    case 2: return c + u"-" + amount;
    case 3: return c + amount + u"-";
    case 4: return u"(" + amount + c + u")";
    case 5: return u"-" + amount + c;
    case 6: return amount + u"-" + c;
    case 7: return amount + c + u"-";
    case 8: return u"-" + amount + u" " + c;
    case 9: return u"-" + c + u" " + amount;
    case 10: return amount + u" " + c + u"-";
    case 11: return c + u" " + amount + u"-";
    case 12: return c + u" -" + amount;
    case 13: return amount + u"- " + c;
    case 14: return u"(" + c + u" " + amount + u")";
    case 15: return u"(" + amount + u" " + c + u")";
    default: return u"(" + c + amount + u")";
    }
}

std::u16string number_with(const Variant& v, std::u16string_view section, const Locale& locale) {
    Decimal d = decimal_of(v);
    const bool negative = d.negative;
    d.negative = false;
    std::u16string out = render_number(d, parse_number_section(section), locale);
    return negative ? u"-" + out : out;
}

std::optional<Variant> named_format(const Variant& v, std::u16string_view name, const Locale& locale) {
    auto is = [&](std::u16string_view n) { return equal_text(name, n); };
    auto as_date = [&] { return to_date(v, locale); };
    if (is(u"General Number")) return Variant(to_string(Variant(to_double(v, locale)), locale));
    if (is(u"Currency")) {
        Decimal d = decimal_of(change_type(v, VarType::Double, locale));
        const bool negative = d.negative;
        d.negative = false;
        std::u16string digits = u"#,##0";
        if (locale.currency_digits > 0) digits += u"." + std::u16string(static_cast<size_t>(locale.currency_digits), u'0');
        std::u16string amount = render_number(d, parse_number_section(digits), locale);
        return Variant(with_currency(amount, negative && amount.find_first_not_of(u"0,.") != std::u16string::npos, locale));
    }
    if (is(u"Fixed")) return Variant(number_with(change_type(v, VarType::Double, locale), u"0.00", locale));
    if (is(u"Standard")) return Variant(number_with(change_type(v, VarType::Double, locale), u"#,##0.00", locale));
    if (is(u"Percent")) return Variant(number_with(change_type(v, VarType::Double, locale), u"0.00%", locale));
    if (is(u"Scientific")) return Variant(number_with(change_type(v, VarType::Double, locale), u"0.00E+00", locale));
    if (is(u"Yes/No")) return Variant(to_bool(v, locale) ? u"Yes" : u"No");
    if (is(u"True/False")) return Variant(to_bool(v, locale) ? u"True" : u"False");
    if (is(u"On/Off")) return Variant(to_bool(v, locale) ? u"On" : u"Off");
    if (is(u"General Date")) return Variant(date_to_text(as_date(), locale));
    if (is(u"Long Date")) return Variant(format_date_picture(as_date(), locale.long_date, locale));
    if (is(u"Medium Date")) return Variant(render_date(as_date(), u"dd-mmm-yy", FirstDayOfWeek::Sunday, FirstWeekOfYear::January1, locale));
    if (is(u"Short Date")) return Variant(format_date_picture(as_date(), locale.short_date, locale));
    if (is(u"Long Time")) return Variant(format_date_picture(as_date(), locale.long_time, locale));
    if (is(u"Medium Time")) return Variant(render_date(as_date(), u"hh:mm AMPM", FirstDayOfWeek::Sunday, FirstWeekOfYear::January1, locale));
    if (is(u"Short Time")) return Variant(render_date(as_date(), u"hh:mm", FirstDayOfWeek::Sunday, FirstWeekOfYear::January1, locale));
    return std::nullopt;
}

}  // namespace

Variant format(const Variant& value0, std::u16string_view fmt, FirstDayOfWeek first_day, FirstWeekOfYear first_week,
               const Locale& locale) {
    const Variant value = value_of(value0);
    if (value.is_array() || value.type() == VarType::Error) throw AutomationError(StdError::TypeMismatch);
    if (fmt.empty()) {
        if (value.is_null()) return value;
        return Variant(to_string(value, locale));
    }
    if (!value.is_null()) {
        if (auto named = named_format(value.is_empty() ? Variant(int16_t{0}) : value, fmt, locale)) return *named;
    }

    const std::vector<std::u16string_view> sections = split_sections(fmt);
    const Kind kind = classify(sections[0]);

    if (kind == Kind::Text) {
        const bool blank = value.is_null() || value.is_empty() || (value.is_string() && value.as_string().empty());
        if (blank && sections.size() > 1) return Variant(literal_text(sections[1]));
        if (value.is_null()) return value;
        return Variant(render_text(to_string(value, locale), sections[0]));
    }

    if (value.is_null()) {
        if (kind == Kind::Number && sections.size() >= 4) return Variant(literal_text(sections[3]));
        return value;
    }

    // Which value the format reads: a date for date formats, a number for number formats;
    // text that reads as neither is returned as it is.
    Variant subject = value.is_empty() ? Variant(int16_t{0}) : value;
    if (subject.is_string()) {
        if (kind == Kind::Date && is_date(subject, locale)) subject = Variant(to_date(subject, locale));
        else if (is_numeric(subject, locale)) subject = change_type(subject, VarType::Double, locale);
        else if (kind != Kind::Literal) return subject;
    }
    if (subject.type() == VarType::Boolean) subject = Variant(static_cast<int16_t>(subject.as_bool() ? -1 : 0));

    if (kind == Kind::Date) {
        const Date d = to_date(subject, locale);
        return Variant(render_date(d, sections[0], first_day, first_week, locale));
    }
    if (kind == Kind::Literal && subject.is_string()) return Variant(literal_text(sections[0]));

    // Number sections: positive; negative; zero; Null. An empty section falls back to the first.
    Decimal d = decimal_of(subject);
    const bool zero = d.digits.empty();
    const bool negative = d.negative && !zero;
    std::u16string_view section = sections[0];
    bool own_sign = false;
    if (negative && sections.size() >= 2 && !sections[1].empty()) {
        section = sections[1];
        own_sign = true;
    } else if (zero && sections.size() >= 3 && !sections[2].empty()) {
        section = sections[2];
    }
    d.negative = false;
    const NumberSection parsed = parse_number_section(section);
    std::u16string out = render_number(d, parsed, locale);
    if (negative && !own_sign) out = u"-" + out;
    return Variant(std::move(out));
}

}  // namespace celdo::automation

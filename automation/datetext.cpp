#include "automation/datetext.hpp"

#include "automation/recognize.hpp"

namespace celdo::automation {

namespace {

void append_number(std::u16string& out, int value, int min_digits) {
    std::u16string digits;
    do {
        digits.insert(digits.begin(), static_cast<char16_t>(u'0' + value % 10));
        value /= 10;
    } while (value > 0);
    while (static_cast<int>(digits.size()) < min_digits) digits.insert(digits.begin(), u'0');
    out += digits;
}

}  // namespace

std::u16string format_date_picture(Date value, std::u16string_view picture, const Locale& locale) {
    const DateParts p = split_date(value);
    std::u16string out;
    size_t i = 0;
    while (i < picture.size()) {
        const char16_t c = picture[i];
        if (c == u'\'') {
            // Quoted literal; '' inside quotes is a quote.
            ++i;
            while (i < picture.size()) {
                if (picture[i] == u'\'') {
                    if (i + 1 < picture.size() && picture[i + 1] == u'\'') {
                        out.push_back(u'\'');
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                out.push_back(picture[i++]);
            }
            continue;
        }
        size_t run = 1;
        while (i + run < picture.size() && picture[i + run] == c) ++run;
        switch (c) {
        case u'd':
            if (run == 1) append_number(out, p.day, 1);
            else if (run == 2) append_number(out, p.day, 2);
            else if (run == 3) out += locale.day_abbreviations[p.weekday - 1];
            else out += locale.day_names[p.weekday - 1];
            break;
        case u'M':
            if (run <= 2) append_number(out, p.month, static_cast<int>(run));
            else if (run == 3) out += locale.month_abbreviations[p.month - 1];
            else out += locale.month_names[p.month - 1];
            break;
        case u'y':
            if (run <= 2) append_number(out, p.year % 100, static_cast<int>(run));
            else append_number(out, p.year, 4);
            break;
        case u'h':
            append_number(out, p.hour % 12 == 0 ? 12 : p.hour % 12, run >= 2 ? 2 : 1);
            break;
        case u'H':
            append_number(out, p.hour, run >= 2 ? 2 : 1);
            break;
        case u'm':
            append_number(out, p.minute, run >= 2 ? 2 : 1);
            break;
        case u's':
            append_number(out, p.second, run >= 2 ? 2 : 1);
            break;
        case u't': {
            const std::u16string& m = p.hour < 12 ? locale.am : locale.pm;
            out += run == 1 ? m.substr(0, 1) : m;
            break;
        }
        case u'g':
            break;  // era: none in the Gregorian calendar
        default:
            out.append(run, c);
            break;
        }
        i += run;
    }
    // A picture that ends with an empty AM/PM designator leaves a trailing blank behind.
    while (!out.empty() && out.back() == u' ' && !picture.empty() && picture.back() == u't') out.pop_back();
    return out;
}

}  // namespace celdo::automation

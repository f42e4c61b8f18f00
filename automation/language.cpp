#include "automation/language.hpp"

#include <charconv>
#include <cmath>

#include "automation/clock.hpp"
#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/format.hpp"
#include "automation/recognize.hpp"
#include "automation/textops.hpp"

namespace celdo::automation::lang {

namespace {

[[noreturn]] void invalid_call() { throw AutomationError(StdError::InvalidCall); }

// Text functions read their argument as text; Null passes through untouched.
template <class F>
Variant on_text(const Variant& v, F&& f) {
    const Variant value = value_of(v);
    if (value.is_null()) return value;
    return f(to_string(value));
}

// Half to even of a value already scaled to the digit that is kept.
double round_half_even(double scaled) {
    const double whole = std::trunc(scaled);
    const double fraction = scaled - whole;
    if (fraction > 0.5) return whole + 1;
    if (fraction < -0.5) return whole - 1;
    if (fraction == 0.5 || fraction == -0.5) {
        const bool odd = std::fmod(whole, 2.0) != 0;
        return odd ? whole + (fraction > 0 ? 1 : -1) : whole;
    }
    return whole;
}

double round_double(double value, int32_t digits) {
    const double scale = std::pow(10.0, digits);
    const double scaled = value * scale;
    // A value whose scaled form has no fraction left (or would overflow) keeps every digit it
    // has: rounding never makes a finite value infinite.
    if (!(std::fabs(scaled) < 0x1p52)) return value;
    return round_half_even(scaled) / scale;
}

}  // namespace

bool IsNumeric(const Variant& v) { return is_numeric(v); }
bool IsDate(const Variant& v) { return is_date(v); }

Variant Trim(const Variant& v) {
    return on_text(v, [](const std::u16string& t) { return Variant(trim(t)); });
}
Variant LTrim(const Variant& v) {
    return on_text(v, [](const std::u16string& t) { return Variant(ltrim(t)); });
}
Variant RTrim(const Variant& v) {
    return on_text(v, [](const std::u16string& t) { return Variant(rtrim(t)); });
}
Variant UCase(const Variant& v) {
    return on_text(v, [](const std::u16string& t) { return Variant(upper_case(t)); });
}
Variant LCase(const Variant& v) {
    return on_text(v, [](const std::u16string& t) { return Variant(lower_case(t)); });
}
Variant Len(const Variant& v) {
    return on_text(v, [](const std::u16string& t) { return Variant(static_cast<int32_t>(t.size())); });
}

Variant Left(const Variant& v, int32_t length) {
    if (length < 0) invalid_call();
    return on_text(v, [&](const std::u16string& t) { return Variant(t.substr(0, static_cast<size_t>(length))); });
}

Variant Right(const Variant& v, int32_t length) {
    if (length < 0) invalid_call();
    return on_text(v, [&](const std::u16string& t) {
        const size_t n = std::min(t.size(), static_cast<size_t>(length));
        return Variant(t.substr(t.size() - n));
    });
}

Variant Mid(const Variant& v, int32_t start, int32_t length) {
    if (start < 1 || length < -1) invalid_call();
    return on_text(v, [&](const std::u16string& t) {
        const size_t from = static_cast<size_t>(start - 1);
        if (from >= t.size()) return Variant(u"");
        return Variant(length < 0 ? t.substr(from) : t.substr(from, static_cast<size_t>(length)));
    });
}

Variant InStr(int32_t start, const Variant& text, const Variant& find, CompareMode mode) {
    if (start < 1) invalid_call();
    const Variant a = value_of(text);
    const Variant b = value_of(find);
    if (a.is_null() || b.is_null()) return Variant::null();
    std::u16string haystack = to_string(a);
    std::u16string needle = to_string(b);
    const size_t from = static_cast<size_t>(start - 1);
    if (haystack.empty() || from > haystack.size()) return Variant(0);
    if (needle.empty()) return Variant(from < haystack.size() ? start : 0);
    if (mode == CompareMode::Text) {
        haystack = upper_case(haystack);
        needle = upper_case(needle);
    }
    const size_t at = haystack.find(needle, from);
    return Variant(at == std::u16string::npos ? 0 : static_cast<int32_t>(at + 1));
}

namespace {

// Round, Int and Fix keep the numeric subtype: integers pass through, Booleans become Integer,
// text is read as a Double, and the fractional subtypes are cut by `cut` (Currency by
// `cut_currency` on its scaled value).
template <class Cut, class CutCurrency>
Variant keeping_subtype(const Variant& v, Cut&& cut, CutCurrency&& cut_currency) {
    const Variant value = value_of(v);
    switch (value.type()) {
    case VarType::Null:
    case VarType::Byte:
    case VarType::Integer:
    case VarType::Long:
        return value;
    case VarType::Empty: return Variant(int16_t{0});
    case VarType::Boolean: return Variant(static_cast<int16_t>(value.as_bool() ? -1 : 0));
    case VarType::Single: return Variant(static_cast<float>(cut(value.as_single())));
    case VarType::Double: return Variant(cut(value.as_double()));
    case VarType::Date: return Variant(Date{cut(value.as_date().serial)});
    case VarType::Currency: return Variant(Currency{cut_currency(value.as_currency().scaled)});
    case VarType::String: return Variant(cut(to_double(value)));
    default: throw AutomationError(StdError::TypeMismatch);
    }
}

// A scaled Currency cut to a multiple of `factor` by `cut` of the quotient.
template <class Cut>
int64_t cut_scaled(int64_t scaled, int64_t factor, Cut&& cut) {
    if (factor <= 1) return scaled;
    int64_t q = scaled / factor;
    const int64_t r = scaled % factor;
    q = cut(q, r, factor);
    return q * factor;
}

}  // namespace

Variant Round(const Variant& v, int32_t digits) {
    if (digits < 0) invalid_call();
    int64_t factor = 1;
    for (int32_t i = digits; i < 4; ++i) factor *= 10;
    return keeping_subtype(
        v, [&](double d) { return round_double(d, digits); },
        [&](int64_t s) {
            return cut_scaled(s, factor, [](int64_t q, int64_t r, int64_t f) {
                const int64_t twice = 2 * (r < 0 ? -r : r);
                if (twice > f || (twice == f && (q & 1))) q += r < 0 ? -1 : 1;
                return q;
            });
        });
}

Variant Int(const Variant& v) {
    return keeping_subtype(
        v, [](double d) { return std::floor(d); },
        [](int64_t s) {
            return cut_scaled(s, Currency::kScale, [](int64_t q, int64_t r, int64_t) { return r < 0 ? q - 1 : q; });
        });
}

Variant Fix(const Variant& v) {
    return keeping_subtype(
        v, [](double d) { return std::trunc(d); },
        [](int64_t s) { return cut_scaled(s, Currency::kScale, [](int64_t q, int64_t, int64_t) { return q; }); });
}

double Val(const Variant& v) {
    const std::u16string text = to_string(v);
    size_t i = 0;
    const size_t n = text.size();
    auto skip = [&] {
        while (i < n && (text[i] == u' ' || text[i] == u'\t' || text[i] == u'\n' || text[i] == u'\r')) ++i;
    };
    skip();
    if (i + 1 < n && text[i] == u'&') {
        const char16_t kind = text[i + 1];
        const int base = (kind == u'H' || kind == u'h') ? 16 : (kind == u'O' || kind == u'o') ? 8 : 0;
        if (base) {
            i += 2;
            uint64_t bits = 0;
            for (;; ++i) {
                skip();
                if (i >= n) break;
                const char16_t c = text[i];
                int d = -1;
                if (c >= u'0' && c <= u'9') d = c - u'0';
                else if (c >= u'a' && c <= u'f') d = c - u'a' + 10;
                else if (c >= u'A' && c <= u'F') d = c - u'A' + 10;
                if (d < 0 || d >= base) break;
                bits = bits * static_cast<unsigned>(base) + static_cast<unsigned>(d);
                if (bits > 0xFFFFFFFFu) throw AutomationError(StdError::Overflow);
            }
            if (bits <= 0xFFFF) return static_cast<int16_t>(static_cast<uint16_t>(bits));
            return static_cast<int32_t>(static_cast<uint32_t>(bits));
        }
    }
    // Gather the number's characters without the blanks, then read them in one go.
    std::string number;
    if (i < n && (text[i] == u'-' || text[i] == u'+')) {
        number.push_back(static_cast<char>(text[i]));
        ++i;
    }
    bool point = false, digits = false;
    for (; (skip(), i < n); ++i) {
        const char16_t c = text[i];
        if (c >= u'0' && c <= u'9') {
            number.push_back(static_cast<char>(c));
            digits = true;
        } else if (c == u'.' && !point) {
            number.push_back('.');
            point = true;
        } else {
            break;
        }
    }
    if (!digits) return 0;
    if (i < n && (text[i] == u'e' || text[i] == u'E' || text[i] == u'd' || text[i] == u'D')) {
        size_t j = i + 1;
        std::string exponent = "e";
        while (j < n && (text[j] == u' ' || text[j] == u'\t' || text[j] == u'\n' || text[j] == u'\r')) ++j;
        if (j < n && (text[j] == u'-' || text[j] == u'+')) exponent.push_back(static_cast<char>(text[j++]));
        bool exponent_digits = false;
        for (; j < n; ++j) {
            const char16_t c = text[j];
            if (c == u' ' || c == u'\t' || c == u'\n' || c == u'\r') continue;
            if (c < u'0' || c > u'9') break;
            exponent.push_back(static_cast<char>(c));
            exponent_digits = true;
        }
        if (exponent_digits) number += exponent;
    }
    if (number[0] == '+') number.erase(0, 1);
    double value = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
    if (read.ec == std::errc::result_out_of_range) {
        // Too small reads as zero, too large is an overflow.
        if (number.find("e-") != std::string::npos) return 0;
        throw AutomationError(StdError::Overflow);
    }
    return value;
}

Variant Format(const Variant& v, std::u16string_view format_text) { return format(v, format_text); }

Variant Now() { return Variant(now()); }

Variant Today() { return Variant(Date{std::trunc(now().serial)}); }

Variant Time() {
    const DateParts p = split_date(now());
    return Variant(Date{(p.hour * 3600.0 + p.minute * 60.0 + p.second) / 86400.0});
}

int32_t Year(const Variant& v) { return split_date(to_date(v)).year; }

}  // namespace celdo::automation::lang

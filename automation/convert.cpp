#include "automation/convert.hpp"

#include <cfloat>
#include <charconv>
#include <cmath>

#include "automation/datetext.hpp"
#include "automation/error.hpp"
#include "automation/recognize.hpp"
#include "automation/textops.hpp"

namespace celdo::automation {

namespace {

[[noreturn]] void raise(StdError e) { throw AutomationError(e); }

// An object in a value context stands for its default member.
Variant value_of_object(const Variant& v) {
    Object* o = v.as_object();
    if (!o) raise(StdError::ObjectVariableNotSet);
    Variant inner = o->invoke(kDefaultMember, kGet | kMethod, {});
    if (inner.is_object()) raise(StdError::TypeMismatch);
    return inner;
}

// The bits of &H and &O text read as a Long by the targets wider than Long: &HFFFF is 65535,
// &HFFFFFFFF is -1.
double radix_value(uint64_t bits) { return static_cast<int32_t>(static_cast<uint32_t>(bits)); }

NumberText number_text(const std::u16string& text, const Locale& locale) {
    auto n = parse_number(text, locale);
    if (!n) raise(StdError::TypeMismatch);
    return std::move(*n);
}

// The value of a number-like variant (not Null, objects or arrays) as a double.
double double_of(const Variant& v, const Locale& locale) {
    switch (v.type()) {
    case VarType::Empty: return 0;
    case VarType::Boolean: return v.as_bool() ? -1 : 0;
    case VarType::Byte: return v.as_byte();
    case VarType::Integer: return v.as_integer();
    case VarType::Long: return v.as_long();
    case VarType::Single: return v.as_single();
    case VarType::Double: return v.as_double();
    case VarType::Currency: return static_cast<double>(v.as_currency().scaled) / Currency::kScale;
    case VarType::Date: return v.as_date().serial;
    case VarType::String: {
        NumberText n = number_text(v.as_string(), locale);
        double d = n.radix ? radix_value(n.bits) : n.to_double();
        if (!std::isfinite(d)) raise(StdError::Overflow);
        return d;
    }
    default: raise(StdError::TypeMismatch);
    }
}

// Integer targets: exact where the source is an integer, half to even from fractions, and
// &H text wrapped at the target's width.
int64_t integer_of(const Variant& v, const Locale& locale, int width_bits) {
    switch (v.type()) {
    case VarType::Boolean: return v.as_bool() ? (width_bits == 8 ? 255 : -1) : 0;
    case VarType::Byte: return v.as_byte();
    case VarType::Integer: return v.as_integer();
    case VarType::Long: return v.as_long();
    case VarType::Currency: {
        const int64_t s = v.as_currency().scaled;
        int64_t q = s / Currency::kScale;
        const int64_t r = s % Currency::kScale;
        const int64_t twice = 2 * (r < 0 ? -r : r);
        if (twice > Currency::kScale || (twice == Currency::kScale && (q & 1))) q += s < 0 ? -1 : 1;
        return q;
    }
    case VarType::String: {
        NumberText n = number_text(v.as_string(), locale);
        if (n.radix) {
            if (width_bits == 8) {
                if (n.bits > 0xFF) raise(StdError::Overflow);
                return static_cast<int64_t>(n.bits);
            }
            if (width_bits == 16) {
                if (n.bits > 0xFFFF) raise(StdError::Overflow);
                return static_cast<int16_t>(static_cast<uint16_t>(n.bits));
            }
            return static_cast<int32_t>(static_cast<uint32_t>(n.bits));
        }
        const double d = n.to_double();
        if (!std::isfinite(d) || std::fabs(d) > 4e18) raise(StdError::Overflow);
        return static_cast<int64_t>(std::nearbyint(d));
    }
    default: {
        const double d = double_of(v, locale);
        if (!std::isfinite(d) || std::fabs(d) > 4e18) raise(StdError::Overflow);
        return static_cast<int64_t>(std::nearbyint(d));
    }
    }
}

template <class T>
T narrow(int64_t value) {
    if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max())
        raise(StdError::Overflow);
    return static_cast<T>(value);
}

bool bool_of(const Variant& v, const Locale& locale) {
    switch (v.type()) {
    case VarType::Boolean: return v.as_bool();
    case VarType::String: {
        // The literals #TRUE# and #FALSE# as written, the words in any case, or a number,
        // True unless it reads as zero (so "1E-400" is False, as its Double is 0).
        std::u16string_view t = trim(v.as_string());
        if (t == u"#TRUE#" || equal_text(t, u"True") || equal_text(t, locale.true_name)) return true;
        if (t == u"#FALSE#" || equal_text(t, u"False") || equal_text(t, locale.false_name)) return false;
        return double_of(v, locale) != 0;
    }
    case VarType::Currency: return v.as_currency().scaled != 0;
    default: return double_of(v, locale) != 0;
    }
}

Currency currency_of(const Variant& v, const Locale& locale) {
    switch (v.type()) {
    case VarType::Currency: return v.as_currency();
    case VarType::String: {
        NumberText n = number_text(v.as_string(), locale);
        if (n.radix) return Currency{static_cast<int64_t>(radix_value(n.bits)) * Currency::kScale};
        auto c = n.to_currency();
        if (!c) raise(StdError::Overflow);
        return *c;
    }
    default: {
        auto c = round_to_currency(double_of(v, locale));
        if (!c) raise(StdError::Overflow);
        return *c;
    }
    }
}

Date date_of(const Variant& v, const Locale& locale) {
    if (v.type() == VarType::Date) return v.as_date();
    if (v.type() == VarType::String) {
        auto d = parse_date(v.as_string(), locale);
        if (!d) raise(StdError::TypeMismatch);
        return *d;
    }
    const double serial = double_of(v, locale);
    if (!(serial >= kMinDate && serial < kMaxDate + 1e-9)) raise(StdError::Overflow);
    return Date{serial};
}

std::u16string text_of(const Variant& v, const Locale& locale) {
    switch (v.type()) {
    case VarType::Empty: return {};
    case VarType::String: return v.as_string();
    case VarType::Boolean: return v.as_bool() ? locale.true_name : locale.false_name;
    case VarType::Byte:
    case VarType::Integer:
    case VarType::Long: {
        char buffer[16];
        auto r = std::to_chars(buffer, buffer + sizeof buffer, integer_of(v, locale, 32));
        return std::u16string(buffer, r.ptr);
    }
    case VarType::Single: return single_to_text(v.as_single(), locale);
    case VarType::Double: return double_to_text(v.as_double(), locale);
    case VarType::Currency: return currency_to_text(v.as_currency(), locale);
    case VarType::Date: return date_to_text(v.as_date(), locale);
    default: raise(StdError::TypeMismatch);
    }
}

Variant convert(const Variant& v, VarType target, const Locale& locale, StdError on_null) {
    if (target == VarType::Variant) return v;
    if (v.is_object()) return convert(value_of_object(v), target, locale, on_null);
    if (v.is_null()) raise(on_null);
    if (v.type() == target) return v;
    if (v.is_array() || v.type() == VarType::Error) raise(StdError::TypeMismatch);
    switch (target) {
    case VarType::String: return Variant(text_of(v, locale));
    case VarType::Boolean: return Variant(bool_of(v, locale));
    case VarType::Byte: return Variant(narrow<uint8_t>(integer_of(v, locale, 8)));
    case VarType::Integer: return Variant(narrow<int16_t>(integer_of(v, locale, 16)));
    case VarType::Long: return Variant(narrow<int32_t>(integer_of(v, locale, 32)));
    case VarType::Single: {
        // The nearest Single decides: "3.4028235E38" is above FLT_MAX as a Double but rounds to it.
        const float f = static_cast<float>(double_of(v, locale));
        if (std::isinf(f)) raise(StdError::Overflow);
        return Variant(f);
    }
    case VarType::Double: return Variant(double_of(v, locale));
    case VarType::Currency: return Variant(currency_of(v, locale));
    case VarType::Date: return Variant(date_of(v, locale));
    default: raise(StdError::TypeMismatch);
    }
}

std::u16string localise_number(std::string_view ascii_text, const Locale& locale) {
    std::u16string out;
    for (char c : ascii_text) {
        if (c == '.') out += locale.decimal;
        else if (c == 'e') out.push_back(u'E');
        else out.push_back(static_cast<char16_t>(c));
    }
    return out;
}

}  // namespace

bool to_bool(const Variant& v, const Locale& l) {
    return convert(v, VarType::Boolean, l, StdError::InvalidUseOfNull).as_bool();
}
uint8_t to_byte(const Variant& v, const Locale& l) {
    return convert(v, VarType::Byte, l, StdError::InvalidUseOfNull).as_byte();
}
int16_t to_integer(const Variant& v, const Locale& l) {
    return convert(v, VarType::Integer, l, StdError::InvalidUseOfNull).as_integer();
}
int32_t to_long(const Variant& v, const Locale& l) {
    return convert(v, VarType::Long, l, StdError::InvalidUseOfNull).as_long();
}
float to_single(const Variant& v, const Locale& l) {
    return convert(v, VarType::Single, l, StdError::InvalidUseOfNull).as_single();
}
double to_double(const Variant& v, const Locale& l) {
    return convert(v, VarType::Double, l, StdError::InvalidUseOfNull).as_double();
}
Currency to_currency(const Variant& v, const Locale& l) {
    return convert(v, VarType::Currency, l, StdError::InvalidUseOfNull).as_currency();
}
Date to_date(const Variant& v, const Locale& l) {
    return convert(v, VarType::Date, l, StdError::InvalidUseOfNull).as_date();
}
std::u16string to_string(const Variant& v, const Locale& l) {
    return convert(v, VarType::String, l, StdError::InvalidUseOfNull).as_string();
}

Variant change_type(const Variant& value, VarType target, const Locale& locale) {
    return convert(value, target, locale, StdError::TypeMismatch);
}

Variant value_of(const Variant& value) {
    return value.is_object() ? value_of_object(value) : value;
}

bool is_numeric(const Variant& value, const Locale& locale) {
    // Empty is numeric to the language; a Date, although it holds a number, is not.
    if (value.is_empty() || (value.is_number() && value.type() != VarType::Date)) return true;
    switch (value.type()) {
    case VarType::String: {
        auto n = parse_number(value.as_string(), locale);
        return n && (n->radix || std::isfinite(n->to_double()));
    }
    case VarType::Object:
        try {
            return is_numeric(value_of_object(value), locale);
        } catch (const AutomationError&) {
            return false;
        }
    default:
        return false;
    }
}

bool is_date(const Variant& value, const Locale& locale) {
    if (value.type() == VarType::Date) return true;
    if (value.type() == VarType::String) return parse_date(value.as_string(), locale).has_value();
    if (value.type() == VarType::Object) {
        try {
            return is_date(value_of_object(value), locale);
        } catch (const AutomationError&) {
            return false;
        }
    }
    return false;
}

std::optional<int16_t> round_to_integer(double value) noexcept {
    const double r = std::nearbyint(value);
    if (!(r >= INT16_MIN && r <= INT16_MAX)) return std::nullopt;
    return static_cast<int16_t>(r);
}

std::optional<int32_t> round_to_long(double value) noexcept {
    const double r = std::nearbyint(value);
    if (!(r >= INT32_MIN && r <= INT32_MAX)) return std::nullopt;
    return static_cast<int32_t>(r);
}

std::optional<Currency> round_to_currency(double value) noexcept {
    // Whole and fraction apart, so that large amounts keep every digit the double holds.
    if (!(std::fabs(value) < 922337203685477.6)) return std::nullopt;
    const double whole = std::trunc(value);
    const int64_t fraction = static_cast<int64_t>(std::nearbyint((value - whole) * Currency::kScale));
    int64_t scaled = 0;
    if (__builtin_mul_overflow(static_cast<int64_t>(whole), Currency::kScale, &scaled) ||
        __builtin_add_overflow(scaled, fraction, &scaled))
        return std::nullopt;
    return Currency{scaled};
}

std::u16string double_to_text(double value, const Locale& locale) {
    if (value == 0) return u"0";
    char buffer[40];
    auto r = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
    return localise_number(std::string_view(buffer, static_cast<size_t>(r.ptr - buffer)), locale);
}

std::u16string single_to_text(float value, const Locale& locale) {
    if (value == 0) return u"0";
    char buffer[32];
    auto r = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 7);
    return localise_number(std::string_view(buffer, static_cast<size_t>(r.ptr - buffer)), locale);
}

std::u16string currency_to_text(Currency value, const Locale& locale) {
    const bool negative = value.scaled < 0;
    const uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(value.scaled)
                                        : static_cast<uint64_t>(value.scaled);
    std::string text = std::to_string(magnitude / Currency::kScale);
    uint64_t fraction = magnitude % Currency::kScale;
    if (fraction != 0) {
        text.push_back('.');
        for (uint64_t unit = Currency::kScale / 10; fraction != 0; unit /= 10) {
            text.push_back(static_cast<char>('0' + fraction / unit));
            fraction %= unit;
        }
    }
    return (negative ? u"-" : u"") + localise_number(text, locale);
}

std::u16string date_to_text(Date value, const Locale& locale) {
    const double whole = std::trunc(value.serial);
    const bool has_date = whole != 0;
    const bool has_time = value.serial != whole;
    if (has_date && !has_time) return format_date_picture(value, locale.short_date, locale);
    if (!has_date) return format_date_picture(value, locale.long_time, locale);
    return format_date_picture(value, locale.short_date, locale) + u" " +
           format_date_picture(value, locale.long_time, locale);
}

}  // namespace celdo::automation

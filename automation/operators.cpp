#include "automation/operators.hpp"

#include <cmath>
#include <limits>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/textops.hpp"

namespace celdo::automation {

namespace {

[[noreturn]] void mismatch() { throw AutomationError(StdError::TypeMismatch); }

bool is_integral(VarType t) {
    return t == VarType::Empty || t == VarType::Boolean || t == VarType::Byte || t == VarType::Integer ||
           t == VarType::Long;
}

int64_t integral_of(const Variant& v) {
    switch (v.type()) {
    case VarType::Boolean: return v.as_bool() ? -1 : 0;
    case VarType::Byte: return v.as_byte();
    case VarType::Integer: return v.as_integer();
    case VarType::Long: return v.as_long();
    default: return 0;
    }
}

void check_operand(const Variant& v) {
    if (v.is_array() || v.type() == VarType::Error) mismatch();
}

Ordering order_of(auto a, auto b) {
    return a < b ? Ordering::Less : (b < a ? Ordering::Greater : Ordering::Equal);
}

// Rank of a numeric subtype in the widening order of +.
enum Rank { kByte, kInteger, kLong, kSingle, kDouble, kCurrency, kDate };

Rank rank_of(VarType t) {
    switch (t) {
    case VarType::Empty:
    case VarType::Byte: return kByte;
    case VarType::Boolean:
    case VarType::Integer: return kInteger;
    case VarType::Long: return kLong;
    case VarType::Single: return kSingle;
    case VarType::Double: return kDouble;
    case VarType::Currency: return kCurrency;
    case VarType::Date: return kDate;
    default: mismatch();
    }
}

Variant add_numbers(const Variant& a, const Variant& b) {
    Rank r = std::max(rank_of(a.type()), rank_of(b.type()));
    const Rank low = std::min(rank_of(a.type()), rank_of(b.type()));
    if (r == kSingle && low == kLong) r = kDouble;
    switch (r) {
    case kByte:
    case kInteger:
    case kLong: {
        const int64_t sum = integral_of(a) + integral_of(b);
        if (r == kByte && sum >= 0 && sum <= 255) return Variant(static_cast<uint8_t>(sum));
        if (r <= kInteger && sum >= INT16_MIN && sum <= INT16_MAX) return Variant(static_cast<int16_t>(sum));
        if (sum >= INT32_MIN && sum <= INT32_MAX) return Variant(static_cast<int32_t>(sum));
        return Variant(static_cast<double>(sum));
    }
    case kSingle: {
        const double sum = to_double(a) + to_double(b);
        if (std::fabs(sum) <= std::numeric_limits<float>::max()) return Variant(static_cast<float>(sum));
        return Variant(sum);
    }
    case kDouble: {
        const double sum = to_double(a) + to_double(b);
        if (!std::isfinite(sum)) throw AutomationError(StdError::Overflow);
        return Variant(sum);
    }
    case kCurrency: {
        const int64_t x = to_currency(a).scaled;
        const int64_t y = to_currency(b).scaled;
        int64_t sum = 0;
        if (__builtin_add_overflow(x, y, &sum)) throw AutomationError(StdError::Overflow);
        return Variant(Currency{sum});
    }
    case kDate: {
        const double sum = to_double(a) + to_double(b);
        if (!(sum >= kMinDate && sum <= kMaxDate)) throw AutomationError(StdError::Overflow);
        return Variant(Date{sum});
    }
    }
    mismatch();
}

}  // namespace

Ordering compare(const Variant& a0, const Variant& b0, CompareMode mode) {
    const Variant a = value_of(a0);
    const Variant b = value_of(b0);
    if (a.is_null() || b.is_null()) return Ordering::Null;
    check_operand(a);
    check_operand(b);
    if (a.is_string() || b.is_string()) {
        if (a.is_string() && b.is_string()) {
            const int c = mode == CompareMode::Text ? compare_text(a.as_string(), b.as_string())
                                                    : a.as_string().compare(b.as_string());
            return c < 0 ? Ordering::Less : (c > 0 ? Ordering::Greater : Ordering::Equal);
        }
        if (a.is_empty()) return b.as_string().empty() ? Ordering::Equal : Ordering::Less;
        if (b.is_empty()) return a.as_string().empty() ? Ordering::Equal : Ordering::Greater;
        return a.is_string() ? Ordering::Greater : Ordering::Less;
    }
    if (is_integral(a.type()) && is_integral(b.type())) return order_of(integral_of(a), integral_of(b));
    if (a.type() == VarType::Currency && b.type() == VarType::Currency)
        return order_of(a.as_currency().scaled, b.as_currency().scaled);
    return order_of(to_double(a), to_double(b));
}

Ordering compare_to_typed(const Variant& value0, const Variant& typed, CompareMode mode) {
    const Variant value = value_of(value0);
    if (value.is_null() || typed.is_null()) return Ordering::Null;
    check_operand(value);
    if (typed.is_string()) {
        return compare(Variant(value.is_empty() ? std::u16string() : to_string(value)), typed, mode);
    }
    if (value.is_string()) return compare(change_type(value, VarType::Double), typed, mode);
    return compare(value, typed, mode);
}

Variant add(const Variant& a0, const Variant& b0) {
    const Variant a = value_of(a0);
    const Variant b = value_of(b0);
    if (a.is_null() || b.is_null()) return Variant::null();
    check_operand(a);
    check_operand(b);
    if (a.is_empty() && b.is_empty()) return Variant(int16_t{0});
    if (a.is_string() && b.is_string()) return Variant(a.as_string() + b.as_string());
    if (a.is_empty() && b.is_string()) return b;
    if (b.is_empty() && a.is_string()) return a;
    if (a.is_string()) return add_numbers(change_type(a, VarType::Double), b);
    if (b.is_string()) return add_numbers(a, change_type(b, VarType::Double));
    return add_numbers(a, b);
}

Variant concat(const Variant& a0, const Variant& b0) {
    const Variant a = value_of(a0);
    const Variant b = value_of(b0);
    if (a.is_null() && b.is_null()) return Variant::null();
    auto text = [](const Variant& v) { return v.is_null() ? std::u16string() : to_string(v); };
    return Variant(text(a) + text(b));
}

}  // namespace celdo::automation

#pragma once
// The conversions the automation language applies between Variant subtypes.
//
// Two families, as the language has them:
//  * to_bool ... to_string behave like CBool ... CStr: Null raises "Invalid use of Null" (94).
//  * change_type behaves like the coercion of an argument to a typed parameter: Null cannot
//    become a typed value and raises "Type mismatch" (13).
// Both raise "Overflow" (6) for a value outside the target's range, "Type mismatch" (13) for
// text that is not a number or date, and round to even where a fraction meets an integer.

#include <optional>
#include <string>
#include <string_view>

#include "automation/locale.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

bool to_bool(const Variant& value, const Locale& locale = Locale::current());
uint8_t to_byte(const Variant& value, const Locale& locale = Locale::current());
int16_t to_integer(const Variant& value, const Locale& locale = Locale::current());
int32_t to_long(const Variant& value, const Locale& locale = Locale::current());
float to_single(const Variant& value, const Locale& locale = Locale::current());
double to_double(const Variant& value, const Locale& locale = Locale::current());
Currency to_currency(const Variant& value, const Locale& locale = Locale::current());
Date to_date(const Variant& value, const Locale& locale = Locale::current());
std::u16string to_string(const Variant& value, const Locale& locale = Locale::current());

// Coerces to a subtype; VarType::Variant returns the value unchanged. Objects are read through
// their default member first.
Variant change_type(const Variant& value, VarType target,
                    const Locale& locale = Locale::current());

// The value a Variant stands for in an expression: an object's default member, read once (an
// object whose default member is itself an object is a type mismatch), otherwise the value.
Variant value_of(const Variant& value);

// What IsNumeric and IsDate answer: exactly the values the conversions above accept.
bool is_numeric(const Variant& value, const Locale& locale = Locale::current());
bool is_date(const Variant& value, const Locale& locale = Locale::current());

// Integer conversions of a double, rounding half to even; nullopt when out of range.
std::optional<int16_t> round_to_integer(double value) noexcept;
std::optional<int32_t> round_to_long(double value) noexcept;
std::optional<Currency> round_to_currency(double value) noexcept;

// The language's own text for numbers, as CStr writes them.
std::u16string double_to_text(double value, const Locale& locale = Locale::current());
std::u16string single_to_text(float value, const Locale& locale = Locale::current());
std::u16string currency_to_text(Currency value, const Locale& locale = Locale::current());
std::u16string date_to_text(Date value, const Locale& locale = Locale::current());

// Date range of the language: years 100 to 9999.
inline constexpr double kMinDate = -657434.0;
inline constexpr double kMaxDate = 2958465.999988426;  // 9999-12-31 23:59:59

}  // namespace celdo::automation

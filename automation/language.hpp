#pragma once
// The built-in functions of the automation language, by their own names, on Variants and with
// the language's Null propagation: the rules of the object model are written in these terms
// (IsNumeric(w), Round(w, n), Trim(w), Format(v, f), ...).

#include <string>
#include <string_view>

#include "automation/operators.hpp"
#include "automation/variant.hpp"

namespace celdo::automation::lang {

bool IsNumeric(const Variant& v);
bool IsDate(const Variant& v);
inline bool IsNull(const Variant& v) { return v.is_null(); }
inline bool IsEmpty(const Variant& v) { return v.is_empty(); }
inline bool IsMissing(const Variant& v) { return v.is_missing(); }
inline bool IsObject(const Variant& v) { return v.is_object(); }
inline bool IsArray(const Variant& v) { return v.is_array(); }

// Text functions: Null gives Null, any other value is read as text first.
Variant Trim(const Variant& v);
Variant LTrim(const Variant& v);
Variant RTrim(const Variant& v);
Variant UCase(const Variant& v);
Variant LCase(const Variant& v);
Variant Len(const Variant& v);                                    // Long
Variant Left(const Variant& v, int32_t length);                   // error 5 below 0
Variant Right(const Variant& v, int32_t length);
Variant Mid(const Variant& v, int32_t start, int32_t length = -1);  // start from 1; -1: to the end
// Position (from 1) of `find` in `text` from `start`, 0 when absent; Null when either is Null.
Variant InStr(int32_t start, const Variant& text, const Variant& find, CompareMode mode = CompareMode::Binary);
inline Variant InStr(const Variant& text, const Variant& find, CompareMode mode = CompareMode::Binary) {
    return InStr(1, text, find, mode);
}

// Round half to even at `digits` decimals, keeping the numeric subtype; text is read as a
// Double; Null gives Null; negative digits are an invalid call (5).
Variant Round(const Variant& v, int32_t digits = 0);
// Int rounds down, Fix toward zero, both keeping the subtype.
Variant Int(const Variant& v);
Variant Fix(const Variant& v);

// The leading-number reading: blanks, tabs and line feeds are skipped anywhere; a sign, digits,
// one point (always "."), an exponent with E or D, or &H / &O; reading stops at the first
// character that cannot continue the number. Always a Double; Null raises 94.
double Val(const Variant& v);

// Format(value, format): see format.hpp.
Variant Format(const Variant& v, std::u16string_view format = {});

// Current date and time (Now), date (Date) and time of day (Time).
Variant Now();
Variant Today();
Variant Time();
int32_t Year(const Variant& v);

}  // namespace celdo::automation::lang

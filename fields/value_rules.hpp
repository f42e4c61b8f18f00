#pragma once
// Text rules that the value's coercion and validation share.

#include <string>
#include <string_view>
#include <vector>

#include "automation/variant.hpp"

namespace celdo::fields {

class clsCeldo;

// Removes every occurrence of each character of `characters`, ignoring case.
std::u16string remove_chars(std::u16string_view text, std::u16string_view characters);

// Whether a format groups thousands with "," (it holds no more points than commas), so that
// a currency text drops its commas; otherwise it drops its points.
bool comma_decimals(std::u16string_view format);

// The numeric text rules: a trailing first point reads 0, a percentage is divided by 100, a
// currency text (when `currency_sign`) loses its symbol and thousands separators; the result is
// rounded with the field's Redondeo.
automation::Variant numeric_text(const automation::Variant& w, const clsCeldo& field, bool currency_sign);

// The OCT/T rule of date texts.
automation::Variant date_text(const automation::Variant& w);

// A value list cut into its trimmed items: at the first ";", or where there is none at the first
// ",", again and again; an empty text is one empty item.
std::vector<std::u16string> cut_list(std::u16string_view text);

// Date(), Now() or Time() as the current date, date and time, or time.
automation::Variant resolve_date_word(const automation::Variant& v);

}  // namespace celdo::fields

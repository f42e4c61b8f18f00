#pragma once
// Recognition of numbers and dates in text, as the language's conversions read them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/locale.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

// A number read from text, kept as decimal digits so that Currency keeps all 19 digits.
struct NumberText {
    bool negative = false;
    std::string digits;  // significant digits without leading zeros; empty for zero
    int exponent = 0;    // value = digits x 10^exponent
    // Text written as &H or &O: the bits, which each target reads in its own width.
    bool radix = false;
    uint64_t bits = 0;

    double to_double() const;
    // Half-to-even rounding to 4 decimals; nullopt on overflow.
    std::optional<Currency> to_currency() const;
};

// Accepts what the platform's number parser accepts with the standard flags: surrounding
// blanks, a sign before or after, parentheses for negatives, the currency symbol, thousands
// separators in the integer part, one decimal separator, an exponent, &H and &O.
std::optional<NumberText> parse_number(std::u16string_view text, const Locale& locale);

// Dates and times as the language reads them: ISO yyyy-mm-dd, numeric dates in the locale's
// order (falling back to another order when that one gives no valid date), month names and
// abbreviations in the locale's language, English and Spanish, times with or without AM/PM.
std::optional<Date> parse_date(std::u16string_view text, const Locale& locale);

// Serial dates from and to calendar parts.
std::optional<Date> make_date(int year, int month, int day, int hour = 0, int minute = 0,
                              double second = 0);
struct DateParts {
    int year, month, day, hour, minute, second;
    int weekday;  // 1 = Sunday ... 7 = Saturday
    int day_of_year;
};
// Rounds to the nearest second, as the language shows times.
DateParts split_date(Date value);

}  // namespace celdo::automation

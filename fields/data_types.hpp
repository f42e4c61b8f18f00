#pragma once
// How each logical data type behaves across the field's rules, as one table: its Spanish
// name, sizes, rounding, and which validation, coercion, Null stand-in and change test apply.

#include <cstdint>

#include "fields/Constants.gen.hpp"

namespace celdo::fields {

enum class Validation : uint8_t {
    Boolean,         // the Boolean words, the empty text, 0, 1 and -1
    Byte,            // the Boolean words, the empty text, numbers 0 to 255
    Number,          // the numeric rule
    PositiveInteger, // the numeric rule, nothing below 0
    Year,            // the numeric rule, nothing below 0 in its first step
    DateText,        // dates after the OCT/T rule, the empty text, Date(), Now(), Time()
    Time,            // dates and times
    DateOrNumber,    // dates, times and numbers
    Always,
    Unknown,         // not a type the field validates: an error
};

enum class Coercion : uint8_t { Byte, Boolean, Integer, Long, Currency, Single, Double, Decimal, Text, Char, Date, Keep };

// What Value Get answers while the stored value is Null.
enum class NullValue : uint8_t { Empty, False, Zero, EmptyText, Now, One, ThisYear, NewFields, NewField };

// How Value Let tells a change, and how Updated compares value and old value.
enum class Change : uint8_t { Variant, Text, Always };
enum class Compare : uint8_t { Variant, Text, Image, Never };

struct DataTypeFacts {
    int32_t type;
    const char16_t* name;         // DataTypeName; null reads as Empty
    int16_t rounding;             // what DataType Let sets Redondeo to; kKeep leaves it
    int32_t default_size;         // Size Get while the stored size is 0
    int32_t display_size;         // DefaultDisplaySize; kFieldSize reads Size
    bool keeps_size;              // DataType Let keeps the stored size
    bool numeric_format;          // Format Let refuses a "-"
    bool number_format_default;   // Format Get without a format gives the default number format
    Validation validation;
    Coercion coercion;
    NullValue null_value;
    Change change;
    Compare updated;
    bool accepts_date_words;      // DefaultValue Let keeps Date(), Now(), Time() as text
    bool resolves_date_words;     // DefaultValue Get turns them into the current date or time
    bool expression;              // SourceName replaceable; collections put SourceName into Expresion
};

inline constexpr int16_t kKeep = -32768;
inline constexpr int32_t kFieldSize = -1;

// The row of a type; values outside the enumeration get a row of their own (Unknown rules).
const DataTypeFacts& facts_of(int32_t type) noexcept;

}  // namespace celdo::fields

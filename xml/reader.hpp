#pragma once
// The scanning primitives every reader of the dialect shares, and its errors. A position is
// the index of the character just before the text to read (so 0 reads from the start), and
// readers move it forward. Positions are not limited to 16 bits: texts of any length work.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "automation/error.hpp"

namespace celdo::xml {

// The object-error base that every reader and writer error of the dialect carries.
inline constexpr int32_t kXmlError = -2147221504;  // 0x80040000

[[noreturn]] void raise(std::u16string_view source, std::u16string description);

// The characters after `position` up to the delimiter (empty when the delimiter is absent,
// unless `to_end`, which gives everything to the end).
std::u16string text_up_to(std::u16string_view text, std::u16string_view delimiter, size_t position, bool to_end);

// A name is anything non-empty without blanks, line ends, / " & < > or '.
bool is_valid_name(std::u16string_view name);
// A value may not hold its own quote, < or >.
bool is_valid_attribute_value(std::u16string_view value, char16_t quote);
// Line feeds go; carriage returns go and the text is trimmed; then every space goes. Tabs stay.
std::u16string strip_blanks(std::u16string_view text);

// Which quote opens the value after `position`: the first of " and ' that occurs; 0 for none.
char16_t first_quote(std::u16string_view text, size_t position);

// Reads one name="value" (or name='value') attribute after `position` and leaves the position
// on its closing quote. No attribute left: the position advances by one and name and value
// come back empty. The value is decoded for the encoding.
struct Attribute {
    std::u16string name;
    std::u16string value;
};
Attribute read_attribute(std::u16string_view encoding, size_t& position, std::u16string_view text);

// The same reading with the value left as written, for readers that decode it their own way;
// errors carry `source`.
Attribute read_raw_attribute(std::u16string_view source, size_t& position, std::u16string_view text);

// The names of a comma-separated list, cut from the front: an item runs to the next ",", or,
// when it begins with a double quote (blanks before it aside), to the next quote followed by
// "," (else the next quote), so a quoted name may hold commas. Items are trimmed; empty ones
// are left out.
std::vector<std::u16string> cut_names(std::u16string_view list);

}  // namespace celdo::xml

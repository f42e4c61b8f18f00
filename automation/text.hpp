#pragma once
// UTF-16 text helpers shared by the whole library. Text is always UTF-16 code units because
// positions, limits and byte forms are defined on 16-bit units.

#include <string>
#include <string_view>

namespace celdo::automation {

// Lossless conversions for literals, diagnostics and file names.
std::u16string utf8_to_utf16(std::string_view text);
std::string utf16_to_utf8(std::u16string_view text);

// ASCII-only literal to UTF-16, for generated tables and tests.
std::u16string ascii(std::string_view text);

}  // namespace celdo::automation

#pragma once
// Text operations with the language's rules: case over all of the Basic Multilingual Plane,
// comparison that ignores case (accents still count), and trimming of blanks only.

#include <string>
#include <string_view>

namespace celdo::automation {

char16_t upper_char(char16_t c) noexcept;
char16_t lower_char(char16_t c) noexcept;
std::u16string upper_case(std::u16string_view text);  // UCase
std::u16string lower_case(std::u16string_view text);  // LCase

// Text comparison (Option Compare Text): negative, zero or positive.
int compare_text(std::u16string_view a, std::u16string_view b) noexcept;
bool equal_text(std::u16string_view a, std::u16string_view b) noexcept;

// Trim, LTrim and RTrim remove spaces (U+0020) only, never tabs or line ends.
std::u16string_view trim(std::u16string_view text) noexcept;
std::u16string_view ltrim(std::u16string_view text) noexcept;
std::u16string_view rtrim(std::u16string_view text) noexcept;

}  // namespace celdo::automation

#pragma once
// The replace primitives of the private XML text module, which the field model also uses to
// clean values. Comparisons are binary (code unit by code unit).

#include <string>
#include <string_view>

namespace celdo::xml {

// Replaces every occurrence of `find` (whole-text mode) or of each character of `find`
// (each-character mode) by `replacement`. Text that a replacement brings in is never searched
// again, so occurrences do not overlap. Texts of any length work.
std::u16string replace_all(std::u16string_view text, std::u16string_view find, std::u16string_view replacement,
                           bool each_character = false);

// Cuts out every occurrence of `what`.
std::u16string remove_all(std::u16string_view text, std::u16string_view what);

}  // namespace celdo::xml

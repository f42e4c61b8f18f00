#pragma once
// What the fuzz targets make of the fuzzer's bytes: UTF-16 text, two bytes a code unit
// (little-endian), and for the readers an encoding name chosen by the first byte.

#include <cstddef>
#include <cstdint>
#include <string>

namespace celdo::fuzz {

inline std::u16string utf16_of(const uint8_t* data, size_t size) {
    std::u16string text(size / 2, u'\0');
    for (size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(data[2 * i] | (data[2 * i + 1] << 8));
    return text;
}

struct EncodedText {
    std::u16string encoding;
    std::u16string text;
};

// The three kinds of name the readers tell apart: none, a name that escapes, an ISO-8859 one.
inline EncodedText encoded_text_of(const uint8_t* data, size_t size) {
    if (size == 0) return {};
    static const char16_t* const names[] = {u"", u"UTF-8", u"ISO-8859-1"};
    return {names[data[0] % 3], utf16_of(data + 1, size - 1)};
}

}  // namespace celdo::fuzz

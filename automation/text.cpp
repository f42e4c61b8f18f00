#include "automation/text.hpp"

#include <cstdint>

namespace celdo::automation {

std::u16string utf8_to_utf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    size_t i = 0;
    auto continuation = [&](size_t at) -> uint32_t {
        if (at >= text.size()) return 0x100;  // marks a truncated sequence
        auto c = static_cast<unsigned char>(text[at]);
        return (c & 0xC0) == 0x80 ? (c & 0x3Fu) : 0x100;
    };
    while (i < text.size()) {
        auto c = static_cast<unsigned char>(text[i]);
        uint32_t cp = 0xFFFD;
        size_t len = 1;
        if (c < 0x80) {
            cp = c;
        } else if ((c & 0xE0) == 0xC0) {
            uint32_t c1 = continuation(i + 1);
            if (c1 < 0x100) { cp = ((c & 0x1Fu) << 6) | c1; len = 2; }
        } else if ((c & 0xF0) == 0xE0) {
            uint32_t c1 = continuation(i + 1), c2 = continuation(i + 2);
            if (c1 < 0x100 && c2 < 0x100) { cp = ((c & 0x0Fu) << 12) | (c1 << 6) | c2; len = 3; }
        } else if ((c & 0xF8) == 0xF0) {
            uint32_t c1 = continuation(i + 1), c2 = continuation(i + 2), c3 = continuation(i + 3);
            if (c1 < 0x100 && c2 < 0x100 && c3 < 0x100) {
                cp = ((c & 0x07u) << 18) | (c1 << 12) | (c2 << 6) | c3;
                len = 4;
            }
        }
        i += len;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(cp));
        }
    }
    return out;
}

std::string utf16_to_utf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        uint32_t cp = text[i];
        if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] < 0xE000) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        }
        if (cp < 0x80) {
            out.push_back(static_cast<char>(cp));
        } else if (cp < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        }
    }
    return out;
}

std::u16string ascii(std::string_view text) { return std::u16string(text.begin(), text.end()); }

}  // namespace celdo::automation

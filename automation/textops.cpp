#include "automation/textops.hpp"

#include <algorithm>
#include <cstdint>

namespace celdo::automation {

namespace {

struct CaseRun {
    uint16_t first;
    uint16_t last;
    uint8_t step;
    int32_t delta;
};

#include "automation/case_tables.inc"

template <size_t N>
char16_t map_char(const CaseRun (&runs)[N], char16_t c) noexcept {
    auto it = std::upper_bound(std::begin(runs), std::end(runs), c,
                               [](char16_t v, const CaseRun& r) { return v < r.first; });
    if (it == std::begin(runs)) return c;
    const CaseRun& r = *(it - 1);
    if (c > r.last || (c - r.first) % r.step != 0) return c;
    return static_cast<char16_t>(c + r.delta);
}

}  // namespace

char16_t upper_char(char16_t c) noexcept {
    if (c < 0x80) return (c >= u'a' && c <= u'z') ? static_cast<char16_t>(c - 32) : c;
    return map_char(kUpperRuns, c);
}

char16_t lower_char(char16_t c) noexcept {
    if (c < 0x80) return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + 32) : c;
    return map_char(kLowerRuns, c);
}

std::u16string upper_case(std::u16string_view text) {
    std::u16string out(text);
    for (char16_t& c : out) c = upper_char(c);
    return out;
}

std::u16string lower_case(std::u16string_view text) {
    std::u16string out(text);
    for (char16_t& c : out) c = lower_char(c);
    return out;
}

int compare_text(std::u16string_view a, std::u16string_view b) noexcept {
    const size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i) {
        char16_t x = a[i], y = b[i];
        if (x == y) continue;
        x = upper_char(x);
        y = upper_char(y);
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

bool equal_text(std::u16string_view a, std::u16string_view b) noexcept {
    return a.size() == b.size() && compare_text(a, b) == 0;
}

std::u16string_view ltrim(std::u16string_view text) noexcept {
    size_t i = 0;
    while (i < text.size() && text[i] == u' ') ++i;
    return text.substr(i);
}

std::u16string_view rtrim(std::u16string_view text) noexcept {
    size_t n = text.size();
    while (n > 0 && text[n - 1] == u' ') --n;
    return text.substr(0, n);
}

std::u16string_view trim(std::u16string_view text) noexcept { return rtrim(ltrim(text)); }

}  // namespace celdo::automation

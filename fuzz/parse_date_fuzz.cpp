// Date recognition on arbitrary UTF-16 text: never crashes, and every date it returns is in
// the language's range and writes back as text that reads as the same day.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "automation/convert.hpp"
#include "automation/recognize.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace celdo::automation;
    std::u16string text(size / 2, u'\0');
    for (size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(data[2 * i] | (data[2 * i + 1] << 8));
    const Locale locale = Locale::english_united_states();
    auto d = parse_date(text, locale);
    if (!d) return 0;
    if (!(d->serial >= kMinDate && d->serial <= kMaxDate)) __builtin_trap();
    auto again = parse_date(date_to_text(*d, locale), locale);
    if (!again || std::trunc(again->serial) != std::trunc(d->serial)) __builtin_trap();
    return 0;
}

// Date recognition on arbitrary UTF-16 text, in English-US and Spanish settings: never
// crashes, and every date it returns is finite, in the language's range, and writes back as
// text that reads as the same day.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "automation/convert.hpp"
#include "automation/recognize.hpp"
#include "fuzz/fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace celdo::automation;
    const std::u16string text = celdo::fuzz::utf16_of(data, size);
    for (const Locale& locale : {Locale::english_united_states(), Locale::spanish_spain()}) {
        auto d = parse_date(text, locale);
        if (!d) continue;
        if (!(d->serial >= kMinDate && d->serial <= kMaxDate)) __builtin_trap();
        auto again = parse_date(date_to_text(*d, locale), locale);
        if (!again || std::trunc(again->serial) != std::trunc(d->serial)) __builtin_trap();
    }
    return 0;
}

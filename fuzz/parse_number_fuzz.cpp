// Number recognition on arbitrary UTF-16 text: never crashes, and IsNumeric answers True
// exactly for the recognised numbers that fit a Double (others overflow when converted).
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
    for (const Locale& locale : {Locale::english_united_states(), Locale::spanish_spain()}) {
        auto n = parse_number(text, locale);
        const bool numeric = is_numeric(Variant(text), locale);
        if (!n) {
            if (numeric) __builtin_trap();
            continue;
        }
        (void)n->to_currency();
        if (numeric != (n->radix || std::isfinite(n->to_double()))) __builtin_trap();
    }
    return 0;
}

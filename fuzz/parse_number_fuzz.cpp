// Number recognition on arbitrary UTF-16 text: never crashes, IsNumeric answers True exactly
// for the recognised numbers that fit a Double (others overflow when converted), and no text
// becomes an infinite or NaN Double or Single, nor rounds to one.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "automation/recognize.hpp"
#include "fuzz/fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace celdo::automation;
    const std::u16string text = celdo::fuzz::utf16_of(data, size);
    for (const Locale& locale : {Locale::english_united_states(), Locale::spanish_spain()}) {
        auto n = parse_number(text, locale);
        const bool numeric = is_numeric(Variant(text), locale);
        if (!n) {
            if (numeric) __builtin_trap();
            continue;
        }
        (void)n->to_currency();
        if (numeric != (n->radix || std::isfinite(n->to_double()))) __builtin_trap();
        for (VarType type : {VarType::Double, VarType::Single}) {
            try {
                const Variant value = change_type(Variant(text), type, locale);
                if (!std::isfinite(to_double(value))) __builtin_trap();
                for (int digits : {0, 4, 8}) {
                    if (!std::isfinite(to_double(lang::Round(value, digits)))) __builtin_trap();
                }
            } catch (const AutomationError&) {
            }
        }
    }
    return 0;
}

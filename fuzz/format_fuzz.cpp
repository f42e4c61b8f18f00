// Format with arbitrary format texts on a handful of values: never crashes, and answers a
// String (or Null for Null without a Null section) or the language's errors.
#include <cstddef>
#include <cstdint>
#include <string>

#include "automation/error.hpp"
#include "automation/format.hpp"
#include "fuzz/fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace celdo::automation;
    if (size < 1) return 0;
    const Variant values[] = {Variant(1234.5678), Variant(-0.5), Variant(0), Variant(Date{45429.75}),
                              Variant(u"texto"), Variant::null(), Variant(), Variant(Currency{-12345}),
                              Variant(true), Variant(u"1234.5")};
    const Variant& value = values[data[0] % (sizeof values / sizeof values[0])];
    const std::u16string text = celdo::fuzz::utf16_of(data + 1, size - 1);
    try {
        Variant out = format(value, text);
        if (!out.is_string() && !out.is_null()) __builtin_trap();
    } catch (const AutomationError&) {
    }
    return 0;
}

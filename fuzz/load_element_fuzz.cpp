// The element loader on arbitrary text: it either raises one of its automation errors or
// loads a node and moves the position forward within the text; and whatever it loaded, once
// written, loads back into a tree that writes the same text.
#include <cstddef>
#include <cstdint>

#include "automation/error.hpp"
#include "fields/clsCeldo.hpp"
#include "fuzz/fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace celdo;
    auto [encoding, text] = fuzz::encoded_text_of(data, size);
    auto field = automation::make_ref<fields::clsCeldo>();
    int32_t position = 0;
    try {
        const int32_t end = field->LoadElement(encoding, position, text);
        if (end != position || end < 0 || static_cast<size_t>(end) > text.size()) __builtin_trap();
    } catch (const automation::AutomationError&) {
        if (position != 0) __builtin_trap();  // a failed load moves nothing
        return 0;
    }
    std::u16string written = field->XML(encoding);
    auto again = automation::make_ref<fields::clsCeldo>();
    int32_t start = 0;
    again->LoadElement(encoding, start, written);
    if (static_cast<size_t>(start) != written.size() || again->XML(encoding) != written) __builtin_trap();
    return 0;
}

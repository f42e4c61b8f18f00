// The collection's Parse on arbitrary attribute lists: it either raises one of its automation
// errors or fills the row, and a row it filled writes an attribute list that parses back into
// the same list.
#include <cstddef>
#include <cstdint>

#include "automation/error.hpp"
#include "collections/clsCeldos.hpp"
#include "fuzz/fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace celdo;
    auto [encoding, text] = fuzz::encoded_text_of(data, size);
    auto row = automation::make_ref<collections::clsCeldos>();
    try {
        if (!row->Parse(encoding, text)) __builtin_trap();
    } catch (const automation::AutomationError&) {
        return 0;
    }
    std::u16string written = row->get_XMLAttribute(encoding);
    auto again = automation::make_ref<collections::clsCeldos>();
    again->Parse(encoding, written);
    if (again->get_XMLAttribute(encoding) != written) __builtin_trap();
    return 0;
}

// The field's Parse on arbitrary attribute lists: it raises automation errors only (a bad
// attribute, or a value a property refuses), and leaves a field that still writes itself.
#include <cstddef>
#include <cstdint>

#include "automation/error.hpp"
#include "fields/clsCeldo.hpp"
#include "fuzz/fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace celdo;
    auto [encoding, text] = fuzz::encoded_text_of(data, size);
    auto field = automation::make_ref<fields::clsCeldo>();
    try {
        field->Parse(encoding, text);
    } catch (const automation::AutomationError&) {
    }
    std::u16string all;
    try {
        (void)field->XMLAttribute(encoding, all);
        (void)field->XML(encoding);
        (void)field->Clip();
    } catch (const automation::AutomationError&) {
        // An unknown node kind read from the text is refused by the writers, as it should be.
    }
    return 0;
}

// The entity and UTF-8 decoders on arbitrary text: they never grow a text, and each undoes
// its encoder exactly on whatever text that encoder wrote.
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_input.hpp"
#include "xml/entities.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace celdo;
    const std::u16string text = fuzz::utf16_of(data, size);
    if (xml::decode_entities(text).size() > text.size()) __builtin_trap();
    if (xml::unescape_entities(text).size() > text.size()) __builtin_trap();
    if (xml::utf8_decode(text).size() > text.size()) __builtin_trap();
    if (xml::unescape_entities(xml::encode_entities(text)) != text) __builtin_trap();
    if (xml::utf8_decode(xml::utf8_encode(text)) != text) __builtin_trap();
    return 0;
}

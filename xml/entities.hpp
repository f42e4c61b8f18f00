#pragma once
// Entities and the UTF-8 byte form of the library's XML dialect. Every comparison is binary.

#include <string>
#include <string_view>

namespace celdo::xml {

// The nineteen escapes of the dialect (& < > " ' / . á é í ó ú ñ à è ò [ ] !), in one pass.
std::u16string encode_entities(std::u16string_view text);

// The twenty decodings, in one pass, with the same result as applying them row after row in
// their order: "&amp;" is decoded before the rows after it, so "&amp;#46;" gives "." while
// "&amp;lt;" gives "&lt;".
std::u16string decode_entities(std::u16string_view text);

// The exact inverse of encode_entities: each of the twenty entities is decoded once, where it
// stands, so a text that held an entity name comes back as written ("&amp;#46;" gives "&#46;").
std::u16string unescape_entities(std::u16string_view text);

// One code unit per byte of the UTF-8 form; surrogates are encoded one by one (three bytes
// each), as the dialect has always written them. Code units from U+8000 up (CJK, surrogates)
// are coded like any other: the 16-bit shifts that once overflowed on them are not carried
// over, any more than the 32,767-character limit, so such text round-trips instead of failing.
std::u16string utf8_encode(std::u16string_view text);
// The inverse; a malformed sequence (a four-byte lead, a missing or wrong continuation, a
// sequence cut short by the end) returns the input unchanged.
std::u16string utf8_decode(std::u16string_view text);

// Whether an encoding name asks for the UTF-8 byte form: it names an ISO-8859 character set.
bool is_8859(std::u16string_view encoding);

// By encoding name: 8859 writes the byte form without escapes; anything else escapes.
std::u16string xml_encode(std::u16string_view encoding, std::u16string_view text);
// Entities first, then, under an 8859 name, the byte form.
std::u16string xml_decode(std::u16string_view encoding, std::u16string_view text);

}  // namespace celdo::xml

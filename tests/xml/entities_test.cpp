// The entity tables and the UTF-8 byte form, with the single-pass coders checked against the
// literal row-by-row algorithm on many random texts.
#include "xml/entities.hpp"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

#include "automation/text.hpp"
#include "tests/support/test_support.hpp"
#include "tests/xml/entity_reference.hpp"

namespace celdo::xml {
namespace {

using reference::kDecodeRows;
using reference::kEncodeRows;
using reference::row_by_row;
constexpr auto check = celdo::testing::expect_rows<std::u16string>;
using Units = std::u16string;  // one code unit per byte of the UTF-8 form

TEST(Entities, EveryRowOfBothTables) {
    for (const auto& [character, entity] : kEncodeRows) EXPECT_EQ(encode_entities(character), entity);
    for (const auto& [entity, character] : kDecodeRows) {
        EXPECT_EQ(decode_entities(entity), character);
        // "&amp;" decodes first, so "&amp;" and the rest of a later row's name decode again.
        const std::u16string after_amp = u"&amp;" + std::u16string(entity.substr(1));
        EXPECT_EQ(decode_entities(after_amp), row_by_row(after_amp, kDecodeRows));
    }
}

TEST(Entities, EncodeDecodeAndUnescapeTexts) {
    check({
        {encode_entities(u"a<b & c"), u"a&lt;b &amp; c"}, {encode_entities(u"Año 1.5!"), u"A&ntilde;o 1&#46;5&#33;"},
        {encode_entities(u"ÁÉÑü"), u"ÁÉÑü"},  // only the lower-case accents are escaped
        {encode_entities(u"01/02/2003"), u"01&frasl;02&frasl;2003"},
        {decode_entities(u"a&lt;b &amp; c"), u"a<b & c"}, {decode_entities(u"a&ensp;b"), u"a b"},
        {decode_entities(u"&AMP; &#65; &nbsp; &Aacute;"), u"&AMP; &#65; &nbsp; &Aacute;"},
        // "&amp;" decodes before the later rows only.
        {decode_entities(u"&amp;#46;"), u"."}, {decode_entities(u"&amp;frasl;"), u"/"},
        {decode_entities(u"&amp;lt;"), u"&lt;"}, {decode_entities(u"&amp;quot;"), u"&quot;"},
        {decode_entities(u"&amp;amp;"), u"&amp;"},
        {decode_entities(u"&amp;amp;#46;"), u"&amp;#46;"}, {decode_entities(u"&amp;&#46;"), u"&."},
        // Unescaping decodes each entity once, where it stands.
        {unescape_entities(u"&amp;#46; &amp;lt; &#46;&ensp;&frasl;"), u"&#46; &lt; . /"},
        {unescape_entities(u"&AMP; &#65; &amp &"), u"&AMP; &#65; &amp &"},
    });
}

TEST(Entities, SinglePassMatchesRowByRowOnRandomTexts) {
    // Texts built from pieces that provoke the tables: entities, halves of entities,
    // accents, surrogates and plain runs.
    const std::vector<std::u16string> pieces = {
        u"&",      u"&amp;",  u"amp;",   u"&lt;",  u"lt;",     u"&#46;",  u"#46;",   u"&frasl;", u"frasl;",
        u"&ensp;", u"&quot;", u"&apos;", u"&gt;",  u"aacute;", u"&ntilde;", u"&#9",  u";",       u"#",
        u"á",      u"ñ",      u"Ñ",      u".",     u"/",       u"!",      u"[",      u"]",       u"<",
        u"\"",     u"'",      u"x",      u"  ",    u"\U0001D11E", u"\xD800", u"&AMP;", u"abc",    u"&amp;amp;",
    };
    std::mt19937 random(2024);
    std::uniform_int_distribution<size_t> pick(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(0, 40);
    for (int round = 0; round < 5000; ++round) {
        std::u16string text;
        for (int n = length(random); n > 0; --n) text += pieces[pick(random)];
        ASSERT_EQ(decode_entities(text), row_by_row(text, kDecodeRows)) << automation::utf16_to_utf8(text);
        ASSERT_EQ(encode_entities(text), row_by_row(text, kEncodeRows)) << automation::utf16_to_utf8(text);
        ASSERT_EQ(unescape_entities(encode_entities(text)), text) << automation::utf16_to_utf8(text);
    }
    const std::u16string long_run(20000, u'&');
    EXPECT_EQ(encode_entities(long_run), row_by_row(long_run, kEncodeRows));
}

TEST(Utf8, EncodesUnitByUnitAndDecodesOrGivesBackTheInput) {
    const Units malformed{195, 65}, four_byte{0xF0, 0x9D, 0x84, 0x9E}, cut_short{u'a', 0xE2, 0x82}, stray{0x80, u'a'};
    check({
        {utf8_encode(u"é"), Units{195, 169}}, {utf8_encode(u"a"), u"a"}, {utf8_encode(u"€"), Units{0xE2, 0x82, 0xAC}},
        {utf8_encode(u"\U0001D11E"), Units{0xED, 0xA0, 0xB4, 0xED, 0xB4, 0x9E}},  // each surrogate alone
        {utf8_encode(u""), u""}, {utf8_decode(Units{195, 169}), u"é"},
        {utf8_decode(Units{0xE2, 0x82, 0xAC, u'x'}), u"€x"},
        {utf8_decode(malformed), malformed}, {utf8_decode(four_byte), four_byte}, {utf8_decode(cut_short), cut_short},
        {utf8_decode(stray), stray},  // a stray continuation is kept
        {utf8_decode(utf8_encode(u"Año, canción, ü, €, 中")), u"Año, canción, ü, €, 中"},
        // An ISO-8859 name asks for the byte form, anything else for entities.
        {xml_encode(u"ISO-8859-1", u"<"), u"<"}, {xml_encode(u"UTF-8", u"<"), u"&lt;"},
        {xml_encode(u"iso-8859-15", u"ñ"), Units{195, 177}},
        {xml_decode(u"ISO-8859-1", u"&lt;" + Units{195, 177}), u"<ñ"},
        {xml_decode(u"UTF-8", Units{195, 177}), Units{195, 177}},
    });
}

}  // namespace
}  // namespace celdo::xml

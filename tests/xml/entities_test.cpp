// The entity tables and the UTF-8 byte form, with the single-pass coders checked against the
// literal row-by-row algorithm on many random texts.
#include "xml/entities.hpp"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

#include "automation/text.hpp"
#include "tests/xml/entity_reference.hpp"

namespace celdo::xml {
namespace {

using reference::kDecodeRows;
using reference::kEncodeRows;
using reference::row_by_row;

TEST(Entities, EveryEncodeRow) {
    for (const auto& [character, entity] : kEncodeRows) EXPECT_EQ(encode_entities(character), entity);
    EXPECT_EQ(encode_entities(u"a<b & c"), u"a&lt;b &amp; c");
    EXPECT_EQ(encode_entities(u"Año 1.5!"), u"A&ntilde;o 1&#46;5&#33;");
    EXPECT_EQ(encode_entities(u"ÁÉÑü"), u"ÁÉÑü") << "only the lower-case accents are escaped";
    EXPECT_EQ(encode_entities(u"01/02/2003"), u"01&frasl;02&frasl;2003");
}

TEST(Entities, EveryDecodeRow) {
    for (const auto& [entity, character] : kDecodeRows) EXPECT_EQ(decode_entities(entity), character);
    EXPECT_EQ(decode_entities(u"a&lt;b &amp; c"), u"a<b & c");
    EXPECT_EQ(decode_entities(u"a&ensp;b"), u"a b");
    EXPECT_EQ(decode_entities(u"&AMP; &#65; &nbsp; &Aacute;"), u"&AMP; &#65; &nbsp; &Aacute;");
}

TEST(Entities, AmpersandDecodesBeforeTheLaterRows) {
    EXPECT_EQ(decode_entities(u"&amp;#46;"), u".");
    EXPECT_EQ(decode_entities(u"&amp;frasl;"), u"/");
    EXPECT_EQ(decode_entities(u"&amp;lt;"), u"&lt;");
    EXPECT_EQ(decode_entities(u"&amp;quot;"), u"&quot;");
    EXPECT_EQ(decode_entities(u"&amp;amp;"), u"&amp;");
    EXPECT_EQ(decode_entities(u"&amp;amp;#46;"), u"&amp;#46;");
    EXPECT_EQ(decode_entities(u"&amp;&#46;"), u"&.");
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

TEST(Entities, UnescapeDecodesEachEntityOnceWhereItStands) {
    EXPECT_EQ(unescape_entities(u"&amp;#46; &amp;lt; &#46;&ensp;&frasl;"), u"&#46; &lt; . /");
    EXPECT_EQ(unescape_entities(u"&AMP; &#65; &amp &"), u"&AMP; &#65; &amp &");
}

TEST(Utf8, EncodesUnitByUnit) {
    EXPECT_EQ(utf8_encode(u"é"), (std::u16string{195, 169}));
    EXPECT_EQ(utf8_encode(u"a"), u"a");
    EXPECT_EQ(utf8_encode(u"€"), (std::u16string{0xE2, 0x82, 0xAC}));
    EXPECT_EQ(utf8_encode(u"\U0001D11E").size(), 6u) << "each surrogate alone, three bytes each";
    EXPECT_EQ(utf8_encode(u""), u"");
}

TEST(Utf8, DecodesOrGivesBackTheInput) {
    EXPECT_EQ(utf8_decode(std::u16string{195, 169}), u"é");
    EXPECT_EQ(utf8_decode(std::u16string{0xE2, 0x82, 0xAC, u'x'}), u"€x");
    const std::u16string malformed{195, 65};
    EXPECT_EQ(utf8_decode(malformed), malformed);
    const std::u16string four_byte{0xF0, 0x9D, 0x84, 0x9E};
    EXPECT_EQ(utf8_decode(four_byte), four_byte);
    const std::u16string cut_short{u'a', 0xE2, 0x82};
    EXPECT_EQ(utf8_decode(cut_short), cut_short) << "a sequence the end cuts short";
    EXPECT_EQ(utf8_decode(std::u16string{0x80, u'a'}), (std::u16string{0x80, u'a'})) << "a stray continuation is kept";
    const std::u16string text = u"Año, canción, ü, €, 中";
    EXPECT_EQ(utf8_decode(utf8_encode(text)), text);
}

TEST(EncodingName, ChoosesBytesOrEntities) {
    EXPECT_EQ(xml_encode(u"ISO-8859-1", u"<"), u"<");
    EXPECT_EQ(xml_encode(u"UTF-8", u"<"), u"&lt;");
    EXPECT_EQ(xml_encode(u"iso-8859-15", u"ñ"), (std::u16string{195, 177}));
    EXPECT_EQ(xml_decode(u"ISO-8859-1", u"&lt;" + std::u16string{195, 177}), u"<ñ");
    EXPECT_EQ(xml_decode(u"UTF-8", std::u16string{195, 177}), (std::u16string{195, 177}));
}

}  // namespace
}  // namespace celdo::xml

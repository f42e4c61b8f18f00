#include "automation/textops.hpp"

#include <gtest/gtest.h>

#include "automation/text.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

TEST(Case, MapsLettersBeyondAscii) {
    const std::pair<char16_t, char16_t> pairs[] = {
        {u'a', u'A'}, {u'ñ', u'Ñ'}, {u'á', u'Á'}, {u'ü', u'Ü'}, {u'ç', u'Ç'}, {u'ω', u'Ω'}, {u'ж', u'Ж'}, {u'ā', u'Ā'},
    };
    for (auto [lower, upper] : pairs) {
        EXPECT_EQ(upper_char(lower), upper);
        EXPECT_EQ(lower_char(upper), lower);
    }
    for (char16_t unchanged : {u'1', u'-', u'ß', u'€', u'中'}) EXPECT_EQ(upper_char(unchanged), unchanged);
}

TEST(Case, AlternatingPairsMapOnlyTheirOwnLetters) {
    EXPECT_EQ(upper_char(u'\u0101'), u'\u0100');
    EXPECT_EQ(upper_char(u'\u0100'), u'\u0100');
    EXPECT_EQ(lower_char(u'\u0102'), u'\u0103');
}

TEST(Compare, TextIgnoresCaseButNotAccents) {
    EXPECT_TRUE(equal_text(u"CÓDIGO", u"código"));
    EXPECT_FALSE(equal_text(u"codigo", u"código"));
    EXPECT_FALSE(equal_text(u"abc", u"abcd"));
    EXPECT_LT(compare_text(u"abc", u"ABD"), 0);
    EXPECT_GT(compare_text(u"b", u"A"), 0);
    EXPECT_EQ(compare_text(u"", u""), 0);
}

TEST(Trim, RemovesSpacesOnly) {
    EXPECT_EQ(trim(u"  a  "), u"a");
    EXPECT_EQ(trim(u"\t a \t"), u"\t a \t");
    EXPECT_EQ(trim(u"    "), u"");
    EXPECT_EQ(ltrim(u" a "), u"a ");
    EXPECT_EQ(rtrim(u" a "), u" a");
}

TEST(Utf, ConvertsBothWaysIncludingSurrogates) {
    const std::u16string text = u"año 𝄞 €";
    EXPECT_EQ(utf8_to_utf16(utf16_to_utf8(text)), text);
    EXPECT_EQ(utf16_to_utf8(u"ñ"), "\xC3\xB1");
    EXPECT_EQ(utf8_to_utf16("\xFF"), u"\uFFFD") << "a malformed byte reads as the replacement character";
}

}  // namespace
}  // namespace celdo::automation

#include "automation/textops.hpp"

#include <gtest/gtest.h>

#include "automation/text.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

TEST(Case, MapsLettersBeyondAsciiAndLeavesTheRest) {
    // Ā/ā and Ă/ă alternate in one block: each maps only its own partner.
    const std::pair<char16_t, char16_t> pairs[] = {
        {u'a', u'A'}, {u'ñ', u'Ñ'}, {u'á', u'Á'}, {u'ü', u'Ü'}, {u'ç', u'Ç'}, {u'ω', u'Ω'}, {u'ж', u'Ж'},
        {u'\u0101', u'\u0100'}, {u'\u0103', u'\u0102'},
        {u'1', u'1'}, {u'-', u'-'}, {u'ß', u'ß'}, {u'€', u'€'}, {u'中', u'中'},  // no case of their own
    };
    for (auto [lower, upper] : pairs) {
        EXPECT_EQ(std::u16string({upper_char(lower), upper_char(upper), lower_char(upper), lower_char(lower)}),
                  std::u16string({upper, upper, lower, lower}));
    }
}

TEST(Case, TextComparisonIgnoresCaseButNotAccents) {
    EXPECT_TRUE(equal_text(u"CÓDIGO", u"código"));
    EXPECT_FALSE(equal_text(u"codigo", u"código"));
    EXPECT_FALSE(equal_text(u"abc", u"abcd"));
    EXPECT_LT(compare_text(u"abc", u"ABD"), 0);
    EXPECT_GT(compare_text(u"b", u"A"), 0);
    EXPECT_EQ(compare_text(u"", u""), 0);
}

TEST(Trim, RemovesSpacesOnly) {
    const std::tuple<std::u16string_view, std::u16string_view, std::u16string_view, std::u16string_view> cases[] = {
        // text: trim, ltrim, rtrim
        {u"  a  ", u"a", u"a  ", u"  a"}, {u"\t a \t", u"\t a \t", u"\t a \t", u"\t a \t"}, {u"    ", u"", u"", u""}};
    for (const auto& [text, both, left, right] : cases)
        EXPECT_EQ(std::tuple(trim(text), ltrim(text), rtrim(text)), std::tuple(both, left, right));
}

TEST(Utf, ConvertsBothWaysIncludingSurrogates) {
    const std::u16string text = u"año 𝄞 €";
    EXPECT_EQ(utf8_to_utf16(utf16_to_utf8(text)), text);
    EXPECT_EQ(utf16_to_utf8(u"ñ"), "\xC3\xB1");
    EXPECT_EQ(utf8_to_utf16("\xFF"), u"\uFFFD") << "a malformed byte reads as the replacement character";
}

}  // namespace
}  // namespace celdo::automation

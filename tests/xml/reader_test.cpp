// The reader primitives and the attribute reader's errors.
#include "xml/reader.hpp"

#include <gtest/gtest.h>

#include "tests/support/test_support.hpp"

namespace celdo::xml {
namespace {

using celdo::testing::error_of;

TEST(TextUpTo, ReadsToTheDelimiterOrTheEnd) {
    EXPECT_EQ(text_up_to(u"abc=def", u"=", 0, false), u"abc");
    EXPECT_EQ(text_up_to(u"abc=def", u";", 0, false), u"");
    EXPECT_EQ(text_up_to(u"abc=def", u";", 0, true), u"abc=def");
    EXPECT_EQ(text_up_to(u"abc=def", u"=", 3, false), u"");
    EXPECT_EQ(text_up_to(u"abc=def", u"e", 4, false), u"d");
    EXPECT_EQ(text_up_to(u"abc", u"=", 9, true), u"");
}

TEST(Names, RefuseBlanksLineEndsAndMarkup) {
    EXPECT_TRUE(is_valid_name(u"1abc"));
    EXPECT_TRUE(is_valid_name(u"a:b"));
    EXPECT_TRUE(is_valid_name(u"año\tx"));
    for (const char16_t* bad : {u"", u"a b", u"a\nb", u"a\rb", u"a/b", u"a\"b", u"a&b", u"a<b", u"a>b", u"a'b"})
        EXPECT_FALSE(is_valid_name(bad));
}

TEST(AttributeValues, RefuseTheirQuoteAndAngleBrackets) {
    EXPECT_TRUE(is_valid_attribute_value(u"a&lt;b", u'"'));
    EXPECT_TRUE(is_valid_attribute_value(u"it's", u'"'));
    EXPECT_FALSE(is_valid_attribute_value(u"it's", u'\''));
    EXPECT_FALSE(is_valid_attribute_value(u"a<b", u'"'));
    EXPECT_FALSE(is_valid_attribute_value(u"a>b", u'"'));
}

TEST(StripBlanks, KeepsTabsOnly) {
    EXPECT_EQ(strip_blanks(u"  a b\r\n\tc  "), u"ab\tc");
}

TEST(ReadAttribute, ReadsNameAndValueAndStopsOnTheClosingQuote) {
    size_t position = 0;
    const std::u16string text = u"Name=\"Total\" Next='x'";
    Attribute a = read_attribute(u"", position, text);
    EXPECT_EQ(a.name, u"Name");
    EXPECT_EQ(a.value, u"Total");
    EXPECT_EQ(text[position - 1], u'"') << "the position stands on the closing quote";
    Attribute b = read_attribute(u"", position, text);
    EXPECT_EQ(b.name, u"Next");
    EXPECT_EQ(b.value, u"x");
    Attribute none = read_attribute(u"", position, text);
    EXPECT_TRUE(none.name.empty());
}

TEST(ReadAttribute, ABlankAfterTheEqualsSignReadsAnEmptyValue) {
    size_t position = 0;
    EXPECT_EQ(read_attribute(u"", position, u"Name= \"Total\"").value, u"");
}

TEST(ReadAttribute, DecodesEntitiesAndTheByteForm) {
    size_t position = 0;
    EXPECT_EQ(read_attribute(u"UTF-8", position, u"v=\"a&lt;b&amp;#46;\"").value, u"a<b.");
    position = 0;
    const std::u16string bytes = u"v=\"" + std::u16string{195, 177} + u"&amp;lt;\"";
    EXPECT_EQ(read_attribute(u"ISO-8859-1", position, bytes).value, u"ñ<") << "entities twice, then the bytes";
}

TEST(ReadAttribute, Errors) {
    struct Bad {
        const char16_t* text;
        const char16_t* description;
    };
    for (const Bad& bad : {Bad{u"Mi Total=\"1\"", u"Illegal element name: Mi Total"},
                           Bad{u"Total=1", u"Malformed quotation"},
                           Bad{u"Total=\"a<b\"", u"Bad attribute value encoding"}}) {
        size_t position = 0;
        auto e = error_of([&] { read_attribute(u"", position, bad.text); });
        EXPECT_EQ(e.number(), -2147221504);
        EXPECT_EQ(e.source(), u"XMLReadAttribute");
        EXPECT_EQ(e.description(), bad.description);
    }
}

}  // namespace
}  // namespace celdo::xml

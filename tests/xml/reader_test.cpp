// The attribute reader, and which names it takes.
#include "xml/reader.hpp"

#include <gtest/gtest.h>

#include "tests/support/test_support.hpp"

namespace celdo::xml {
namespace {

TEST(ReadAttribute, ReadsNameAndValueAndStopsOnTheClosingQuote) {
    size_t position = 0;
    const std::u16string text = u"Name=\"Total\" Next='x'";
    Attribute a = read_attribute(u"", position, text);
    EXPECT_EQ(std::tie(a.name, a.value), std::tuple(u"Name", u"Total"));
    EXPECT_EQ(text[position - 1], u'"') << "the position stands on the closing quote";
    a = read_attribute(u"", position, text);
    EXPECT_EQ(std::tie(a.name, a.value), std::tuple(u"Next", u"x"));
    const size_t end = position;
    EXPECT_TRUE(read_attribute(u"", position, text).name.empty());
    EXPECT_EQ(position, end + 1) << "no attribute left: the position moves on by one";
    position = 0;
    EXPECT_EQ(read_attribute(u"", position, u"Name= \"Total\"").value, u"") << "a blank after the equals sign";
    position = 0;
    EXPECT_EQ(read_attribute(u"UTF-8", position, u"v=\"a&lt;b&amp;#46;\"").value, u"a<b.");
    position = 0;
    const std::u16string bytes = u"v=\"" + std::u16string{195, 177} + u"&amp;lt;\"";
    EXPECT_EQ(read_attribute(u"ISO-8859-1", position, bytes).value, u"ñ<") << "entities twice, then the bytes";
    for (const char16_t* good : {u"1abc", u"a:b", u"año\tx"}) EXPECT_TRUE(is_valid_name(good));
    for (const char16_t* bad : {u"", u"a b", u"a\nb", u"a\rb", u"a/b", u"a\"b", u"a&b", u"a<b", u"a>b", u"a'b"})
        EXPECT_FALSE(is_valid_name(bad)) << automation::utf16_to_utf8(bad);
}

}  // namespace
}  // namespace celdo::xml

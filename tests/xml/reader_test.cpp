// Which names the attribute and element readers take; the readers themselves are walked
// through the loaders' and Parse's tests.
#include "xml/reader.hpp"

#include <gtest/gtest.h>

#include "tests/support/test_support.hpp"

namespace celdo::xml {
namespace {

TEST(Reader, NamesTakeAnyCharacterButBlanksLineEndsQuotesAndMarkup) {
    for (const char16_t* good : {u"1abc", u"a:b", u"año\tx"}) EXPECT_TRUE(is_valid_name(good));
    for (const char16_t* bad : {u"", u"a b", u"a\nb", u"a\rb", u"a/b", u"a\"b", u"a&b", u"a<b", u"a>b", u"a'b"})
        EXPECT_FALSE(is_valid_name(bad)) << automation::utf16_to_utf8(bad);
}

}  // namespace
}  // namespace celdo::xml

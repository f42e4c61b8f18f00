#include "xml/text.hpp"

#include <gtest/gtest.h>

#include "tests/support/test_support.hpp"

namespace celdo::xml {
namespace {

TEST(ReplaceAll, ReplacesEveryOccurrenceOrEveryCharacterOfTheSetWithoutLookingAgain) {
    std::u16string long_text(40000, u'a');
    celdo::testing::expect_rows<std::u16string>({
        {replace_all(u"aaa", u"a", u"aa"), u"aaaaaa"},  // inserted text is never searched again
        {replace_all(u"abcabc", u"bc", u"X"), u"aXaX"}, {replace_all(u"abc", u"", u"X"), u"abc"},
        {replace_all(u"Tt", u"T", u" "), u" t"},  // case counts
        {replace_all(u"$1,234.5", u"$,", u"", true), u"1234.5"}, {replace_all(u"a-b+c", u"-+", u" ", true), u"a b c"},
        {replace_all(long_text + u"T", u"T", u" "), long_text + u" "},  // beyond 16-bit positions
        {remove_all(u"12%3%", u"%"), u"123"},
    });
}

}  // namespace
}  // namespace celdo::xml

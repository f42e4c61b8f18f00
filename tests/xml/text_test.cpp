#include "xml/text.hpp"

#include <gtest/gtest.h>

namespace celdo::xml {
namespace {

TEST(ReplaceAll, InsertedTextIsNeverSearchedAgain) {
    EXPECT_EQ(replace_all(u"aaa", u"a", u"aa"), u"aaaaaa");
    EXPECT_EQ(replace_all(u"abcabc", u"bc", u"X"), u"aXaX");
    EXPECT_EQ(replace_all(u"abc", u"", u"X"), u"abc");
}

TEST(ReplaceAll, EachCharacterModeReplacesEveryCharacterOfTheSet) {
    EXPECT_EQ(replace_all(u"$1,234.5", u"$,", u"", true), u"1234.5");
    EXPECT_EQ(replace_all(u"a-b+c", u"-+", u" ", true), u"a b c");
}

TEST(ReplaceAll, ComparesCaseSensitively) {
    EXPECT_EQ(replace_all(u"Tt", u"T", u" "), u" t");
}

TEST(ReplaceAll, WorksBeyondSixteenBitPositions) {
    std::u16string long_text(40000, u'a');
    long_text += u"T";
    EXPECT_EQ(replace_all(long_text, u"T", u" ").back(), u' ');
}

TEST(RemoveAll, CutsOutEveryOccurrence) {
    EXPECT_EQ(remove_all(u"12%3%", u"%"), u"123");
}

}  // namespace
}  // namespace celdo::xml

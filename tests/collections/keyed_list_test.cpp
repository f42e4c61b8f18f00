#include "collections/keyed_list.hpp"

#include <gtest/gtest.h>

namespace celdo::collections {
namespace {

using List = KeyedList<int>;

TEST(KeyedList, KeysAreUniqueWithoutRegardToCase) {
    List list;
    EXPECT_EQ(list.insert(0, 1, std::u16string_view(u"Ñandú")), List::Result::Inserted);
    EXPECT_EQ(list.insert(1, 2, std::u16string_view(u"ñANDÚ")), List::Result::DuplicateKey);
    EXPECT_EQ(list.size(), 1u);
    ASSERT_NE(list.find(u"ÑANDÚ"), nullptr);
    EXPECT_EQ(*list.find(u"ÑANDÚ"), 1);
}

TEST(KeyedList, AnEmptyTextIsAKeyAndUnkeyedItemsAreAllowed) {
    List list;
    EXPECT_EQ(list.insert(0, 1, std::u16string_view(u"")), List::Result::Inserted);
    EXPECT_EQ(list.insert(1, 2, std::u16string_view(u"")), List::Result::DuplicateKey);
    EXPECT_EQ(list.insert(1, 3, std::nullopt), List::Result::Inserted);
    EXPECT_EQ(list.insert(2, 4, std::nullopt), List::Result::Inserted);
    EXPECT_EQ(list.size(), 3u);
}

TEST(KeyedList, PositionsFollowInsertsAndRemovals) {
    List list;
    list.insert(0, 10, std::u16string_view(u"a"));
    list.insert(1, 30, std::u16string_view(u"c"));
    list.insert(1, 20, std::u16string_view(u"b"));
    EXPECT_EQ(list.at(1), 20);
    EXPECT_EQ(list.position_of_key(u"C"), std::optional<size_t>(2));
    list.erase(0);
    EXPECT_EQ(list.position_of_key(u"c"), std::optional<size_t>(1));
    EXPECT_EQ(list.find(u"a"), nullptr) << "a removed item's key is free again";
    EXPECT_EQ(list.insert(0, 11, std::u16string_view(u"A")), List::Result::Inserted);
}

}  // namespace
}  // namespace celdo::collections

#include "collections/keyed_list.hpp"

#include <gtest/gtest.h>

namespace celdo::collections {
namespace {

using List = KeyedList<int>;

// Keys are unique without regard to case, accents included; an empty text is a key; unkeyed
// items are allowed; positions follow inserts and removals, and a removed key is free again.
TEST(KeyedList, KeysArePositionsByTextIgnoringCase) {
    List list;
    const std::tuple<size_t, int, std::optional<std::u16string_view>, List::Result> inserts[] = {
        {0, 10, u"Ñandú", List::Result::Inserted}, {1, 11, u"ñANDÚ", List::Result::DuplicateKey},
        {1, 30, u"", List::Result::Inserted},       {2, 31, u"", List::Result::DuplicateKey},
        {1, 20, std::nullopt, List::Result::Inserted}, {1, 21, std::nullopt, List::Result::Inserted},
    };
    for (const auto& [at, value, key, result] : inserts) EXPECT_EQ(list.insert(at, value, key), result) << value;
    EXPECT_EQ(std::tuple(list.size(), list.at(1), *list.find(u"ÑANDÚ"), list.position_of_key(u"")),
              std::tuple(size_t{4}, 21, 10, std::optional<size_t>(3)));
    list.erase(0);
    EXPECT_EQ(std::tuple(list.find(u"ñandú"), list.position_of_key(u"")), std::tuple(nullptr, std::optional<size_t>(2)));
    EXPECT_EQ(list.insert(0, 12, std::u16string_view(u"ÑANDÚ")), List::Result::Inserted);
}

}  // namespace
}  // namespace celdo::collections

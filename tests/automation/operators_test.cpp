#include "automation/operators.hpp"

#include <gtest/gtest.h>

#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;
constexpr auto Text = CompareMode::Text, Binary = CompareMode::Binary;
constexpr auto Less = Ordering::Less, Equal = Ordering::Equal, Greater = Ordering::Greater;
const Variant Null = Variant::null();

TEST(Compare, ByTheLanguagesRules) {
    const std::tuple<Variant, Variant, CompareMode, Ordering> cases[] = {
        // Null on either side is unknown.
        {Null, 1, Binary, Ordering::Null}, {u"a", Null, Binary, Ordering::Null}, {Null, Null, Binary, Ordering::Null},
        // Empty is 0 beside a number and "" beside a text.
        {Variant(), 0, Binary, Equal}, {Variant(), -1, Binary, Greater}, {Variant(), u"", Binary, Equal},
        {u"a", Variant(), Binary, Greater}, {Variant(), Variant(), Binary, Equal},
        // Numbers by value across subtypes; a number is less than any text.
        {int16_t{5}, 5, Binary, Equal}, {5.0, Currency{50000}, Binary, Equal}, {true, int16_t{-1}, Binary, Equal},
        {Date{45429}, 45429, Binary, Equal}, {Currency{1}, Currency{2}, Binary, Less},
        {2147483647, 2147483647.5, Binary, Less}, {5, u"5", Binary, Less}, {u"1", 99, Binary, Greater},
        // Text by code unit, or ignoring case but not accents.
        {u"abc", u"ABC", Binary, Greater}, {u"abc", u"ABC", Text, Equal}, {u"ñandú", u"ÑANDÚ", Text, Equal},
        {u"a", u"á", Text, Less}, {u"ab", u"abc", Text, Less}, {u"abc", u"ABD", Text, Less}, {u"b", u"A", Text, Greater},
        {u"CÓDIGO", u"código", Text, Equal}, {u"codigo", u"código", Text, Less}, {u"", u"", Text, Equal},
    };
    for (const auto& [a, b, mode, expected] : cases)
        EXPECT_EQ(compare(a, b, mode), expected) << debug_string(a) << " " << debug_string(b);
    EXPECT_EQ(error_of([] { compare(Variant(Array::vector({})), Variant(1)); }).number(), 13);  // arrays cannot be
}

TEST(Add, ByTheLanguagesRules) {
    const std::tuple<Variant, Variant, Variant> cases[] = {
        // Null propagates, Empty is neutral (two give an Integer 0).
        {Null, 1, Null}, {u"a", Null, Null}, {Variant(), Variant(), int16_t{0}}, {Variant(), uint8_t{5}, uint8_t{5}},
        {u"x", Variant(), u"x"},
        // Two texts concatenate; numeric text and a number add as Doubles.
        {u"a", u"b", u"ab"}, {u"5", int16_t{3}, 8.0}, {int16_t{3}, u" 5 ", 8.0},
        // The wider subtype; integer sums that overflow widen.
        {uint8_t{200}, uint8_t{55}, uint8_t{255}}, {uint8_t{200}, uint8_t{56}, int16_t{256}},
        {int16_t{32767}, int16_t{1}, 32768}, {2147483647, 1, 2147483648.0}, {true, true, int16_t{-2}},
        {1.5f, int16_t{1}, 2.5f}, {1.5f, 1, 2.5}, {Currency{10000}, 0.5, Currency{15000}},
        {Date{45429}, 1, Date{45430}},
    };
    for (const auto& [a, b, sum] : cases) EXPECT_EQ(add(a, b), sum) << debug_string(a) << " + " << debug_string(b);
    // Text that is not a number beside one is a mismatch; Currency and Date cannot widen.
    const std::tuple<Variant, Variant, int> errors[] = {
        {u"a", 1, 13}, {Currency{INT64_MAX}, Currency{1}, 6}, {Date{2958465}, 1, 6}};
    for (const auto& [a, b, number] : errors)
        EXPECT_EQ(error_of([&] { add(a, b); }).number(), number) << debug_string(a);
}

TEST(Concat, NullOnlyWhenBothAreNull) {
    const std::tuple<Variant, Variant, Variant> cases[] = {
        {Null, Null, Null}, {u"a", Null, u"a"}, {Variant(), int16_t{5}, u"5"}, {true, 1.5, u"True1.5"}};
    for (const auto& [a, b, joined] : cases) EXPECT_EQ(concat(a, b), joined) << debug_string(a);
}

}  // namespace
}  // namespace celdo::automation

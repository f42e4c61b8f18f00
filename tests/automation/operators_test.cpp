#include "automation/operators.hpp"

#include <gtest/gtest.h>

#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;

TEST(Compare, NullOnEitherSideIsUnknown) {
    EXPECT_EQ(compare(Variant::null(), Variant(1)), Ordering::Null);
    EXPECT_EQ(compare(Variant(u"a"), Variant::null()), Ordering::Null);
    EXPECT_EQ(compare(Variant::null(), Variant::null()), Ordering::Null);
}

TEST(Compare, EmptyIsZeroBesideNumbersAndEmptyTextBesideText) {
    EXPECT_EQ(compare(Variant(), Variant(0)), Ordering::Equal);
    EXPECT_EQ(compare(Variant(), Variant(-1)), Ordering::Greater);
    EXPECT_EQ(compare(Variant(), Variant(u"")), Ordering::Equal);
    EXPECT_EQ(compare(Variant(u"a"), Variant()), Ordering::Greater);
    EXPECT_EQ(compare(Variant(), Variant()), Ordering::Equal);
}

TEST(Compare, NumbersCompareByValueAcrossSubtypes) {
    EXPECT_EQ(compare(Variant(int16_t{5}), Variant(5)), Ordering::Equal);
    EXPECT_EQ(compare(Variant(5.0), Variant(Currency{50000})), Ordering::Equal);
    EXPECT_EQ(compare(Variant(true), Variant(int16_t{-1})), Ordering::Equal);
    EXPECT_EQ(compare(Variant(Date{45429}), Variant(45429)), Ordering::Equal);
    EXPECT_EQ(compare(Variant(Currency{1}), Variant(Currency{2})), Ordering::Less);
    EXPECT_EQ(compare(Variant(2147483647), Variant(2147483647.5)), Ordering::Less);
}

TEST(Compare, ANumberIsLessThanAnyText) {
    EXPECT_EQ(compare(Variant(5), Variant(u"5")), Ordering::Less);
    EXPECT_EQ(compare(Variant(u"1"), Variant(99)), Ordering::Greater);
}

TEST(Compare, TextComparesByCodeUnitOrIgnoringCase) {
    EXPECT_EQ(compare(Variant(u"abc"), Variant(u"ABC")), Ordering::Greater);
    EXPECT_EQ(compare(Variant(u"abc"), Variant(u"ABC"), CompareMode::Text), Ordering::Equal);
    EXPECT_EQ(compare(Variant(u"ñandú"), Variant(u"ÑANDÚ"), CompareMode::Text), Ordering::Equal);
    EXPECT_EQ(compare(Variant(u"a"), Variant(u"á"), CompareMode::Text), Ordering::Less) << "accents still count";
    EXPECT_EQ(compare(Variant(u"ab"), Variant(u"abc"), CompareMode::Text), Ordering::Less);
}

TEST(Compare, ArraysCannotBeCompared) {
    EXPECT_EQ(error_of([] { compare(Variant(Array::vector({})), Variant(1)); }).number(), 13);
}

TEST(Add, NullPropagatesAndEmptyIsNeutral) {
    EXPECT_EQ(add(Variant::null(), Variant(1)), Variant::null());
    EXPECT_EQ(add(Variant(u"a"), Variant::null()), Variant::null());
    EXPECT_EQ(add(Variant(), Variant()), Variant(int16_t{0}));
    EXPECT_EQ(add(Variant(), Variant(uint8_t{5})), Variant(uint8_t{5}));
    EXPECT_EQ(add(Variant(u"x"), Variant()), Variant(u"x"));
}

TEST(Add, TextsConcatenateAndNumericTextAdds) {
    EXPECT_EQ(add(Variant(u"a"), Variant(u"b")), Variant(u"ab"));
    EXPECT_EQ(add(Variant(u"5"), Variant(int16_t{3})), Variant(8.0));
    EXPECT_EQ(add(Variant(int16_t{3}), Variant(u" 5 ")), Variant(8.0));
    EXPECT_EQ(error_of([] { add(Variant(u"a"), Variant(1)); }).number(), 13);
}

TEST(Add, ResultTakesTheWiderSubtypeAndOverflowWidens) {
    EXPECT_EQ(add(Variant(uint8_t{200}), Variant(uint8_t{55})), Variant(uint8_t{255}));
    EXPECT_EQ(add(Variant(uint8_t{200}), Variant(uint8_t{56})), Variant(int16_t{256}));
    EXPECT_EQ(add(Variant(int16_t{32767}), Variant(int16_t{1})), Variant(32768));
    EXPECT_EQ(add(Variant(2147483647), Variant(1)), Variant(2147483648.0));
    EXPECT_EQ(add(Variant(true), Variant(true)), Variant(int16_t{-2}));
    EXPECT_EQ(add(Variant(1.5f), Variant(int16_t{1})), Variant(2.5f));
    EXPECT_EQ(add(Variant(1.5f), Variant(1)), Variant(2.5)) << "Single and Long give Double";
    EXPECT_EQ(add(Variant(Currency{10000}), Variant(0.5)), Variant(Currency{15000}));
    EXPECT_EQ(add(Variant(Date{45429}), Variant(1)), Variant(Date{45430}));
}

TEST(Add, CurrencyAndDateOverflowIsAnError) {
    EXPECT_EQ(error_of([] { add(Variant(Currency{INT64_MAX}), Variant(Currency{1})); }).number(), 6);
    EXPECT_EQ(error_of([] { add(Variant(Date{2958465}), Variant(1)); }).number(), 6);
}

TEST(Concat, NullOnlyWhenBothAreNull) {
    EXPECT_EQ(concat(Variant::null(), Variant::null()), Variant::null());
    EXPECT_EQ(concat(Variant(u"a"), Variant::null()), Variant(u"a"));
    EXPECT_EQ(concat(Variant(), Variant(int16_t{5})), Variant(u"5"));
    EXPECT_EQ(concat(Variant(true), Variant(1.5)), Variant(u"True1.5"));
}

}  // namespace
}  // namespace celdo::automation

#include "automation/convert.hpp"

#include <gtest/gtest.h>

#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;

struct Conversion {
    Variant input;
    VarType target;
    Variant expected;  // Empty with an error number means "raises"
    int error = 0;
};

void check(const std::vector<Conversion>& table) {
    for (const auto& c : table) {
        SCOPED_TRACE(debug_string(c.input) + " to VarType " + std::to_string(static_cast<int>(c.target)));
        if (c.error) {
            EXPECT_EQ(error_of([&] { (void)change_type(c.input, c.target); }).number(), c.error);
        } else {
            EXPECT_EQ(change_type(c.input, c.target), c.expected);
        }
    }
}

TEST(ChangeType, IntegersRoundHalfToEven) {
    check({
        {Variant(2.5), VarType::Integer, Variant(int16_t{2})},
        {Variant(3.5), VarType::Integer, Variant(int16_t{4})},
        {Variant(-2.5), VarType::Integer, Variant(int16_t{-2})},
        {Variant(-0.5), VarType::Long, Variant(0)},
        {Variant(0.5000001), VarType::Long, Variant(1)},
        {Variant(Currency{25000}), VarType::Integer, Variant(int16_t{2})},
        {Variant(Currency{35000}), VarType::Integer, Variant(int16_t{4})},
        {Variant(Currency{-15000}), VarType::Long, Variant(-2)},
        {Variant(u"2.5"), VarType::Byte, Variant(uint8_t{2})},
    });
}

TEST(ChangeType, OutOfRangeIsOverflow) {
    check({
        {Variant(32767.5), VarType::Integer, {}, 6},
        {Variant(32767.4), VarType::Integer, Variant(int16_t{32767})},
        {Variant(-32768.5), VarType::Integer, Variant(int16_t{-32768})},
        {Variant(256), VarType::Byte, {}, 6},
        {Variant(-1), VarType::Byte, {}, 6},
        {Variant(2147483647.5), VarType::Long, {}, 6},
        {Variant(1e300), VarType::Single, {}, 6},
        {Variant(1e300), VarType::Currency, {}, 6},
        {Variant(u"1e400"), VarType::Double, {}, 6},
        {Variant(3e6), VarType::Date, {}, 6},
    });
}

TEST(ChangeType, BooleansAreMinusOneAndZero) {
    check({
        {Variant(true), VarType::Integer, Variant(int16_t{-1})},
        {Variant(true), VarType::Byte, Variant(uint8_t{255})},
        {Variant(false), VarType::Double, Variant(0.0)},
        {Variant(true), VarType::Currency, Variant(Currency{-10000})},
        {Variant(true), VarType::String, Variant(u"True")},
        {Variant(0.1), VarType::Boolean, Variant(true)},
        {Variant(u"false"), VarType::Boolean, Variant(false)},
        {Variant(u" TRUE "), VarType::Boolean, Variant(true)},
        {Variant(u"0"), VarType::Boolean, Variant(false)},
        {Variant(u"-3"), VarType::Boolean, Variant(true)},
        {Variant(u"si"), VarType::Boolean, {}, 13},
    });
}

TEST(ChangeType, EmptyIsZeroAndNullIsRefused) {
    check({
        {Variant(), VarType::Long, Variant(0)},
        {Variant(), VarType::String, Variant(u"")},
        {Variant(), VarType::Boolean, Variant(false)},
        {Variant(), VarType::Date, Variant(Date{0})},
        {Variant::null(), VarType::String, {}, 13},
        {Variant::null(), VarType::Long, {}, 13},
        {Variant::null(), VarType::Variant, Variant::null()},
        {Variant::error(5), VarType::Long, {}, 13},
    });
}

TEST(LanguageConversions, NullIsAnInvalidUseOfNull) {
    auto e = error_of([] { (void)to_string(Variant::null()); });
    EXPECT_EQ(e.number(), 94);
    EXPECT_EQ(e.description(), u"Invalid use of Null");
    EXPECT_EQ(error_of([] { (void)to_long(Variant::null()); }).number(), 94);
}

TEST(ChangeType, NumericTextFollowsTheLocale) {
    check({
        {Variant(u"1,234.5"), VarType::Double, Variant(1234.5)},
        {Variant(u"  -12  "), VarType::Long, Variant(-12)},
        {Variant(u"12-"), VarType::Long, Variant(-12)},
        {Variant(u"(12)"), VarType::Long, Variant(-12)},
        {Variant(u"$1,234"), VarType::Long, Variant(1234)},
        {Variant(u"1.5e3"), VarType::Long, Variant(1500)},
        {Variant(u".5"), VarType::Double, Variant(0.5)},
        {Variant(u"5."), VarType::Double, Variant(5.0)},
        {Variant(u"&H10"), VarType::Long, Variant(16)},
        {Variant(u"&O17"), VarType::Long, Variant(15)},
        {Variant(u"&HFFFF"), VarType::Integer, Variant(int16_t{-1})},
        {Variant(u"&HFFFF"), VarType::Long, Variant(65535)},
        {Variant(u""), VarType::Long, {}, 13},
        {Variant(u" "), VarType::Long, {}, 13},
        {Variant(u"1.2.3"), VarType::Double, {}, 13},
        {Variant(u"12abc"), VarType::Long, {}, 13},
        {Variant(u"-(12)"), VarType::Long, {}, 13},
        {Variant(u"1e"), VarType::Double, {}, 13},
    });
    LocaleScope spain(Locale::spanish_spain());
    check({
        {Variant(u"1.234,5"), VarType::Double, Variant(1234.5)},
        {Variant(u"12,5"), VarType::Double, Variant(12.5)},
        {Variant(1234.5), VarType::String, Variant(u"1234,5")},
    });
}

TEST(ChangeType, CurrencyFromTextKeepsAllDigits) {
    check({
        {Variant(u"922337203685477.5807"), VarType::Currency, Variant(Currency{INT64_MAX})},
        {Variant(u"-922337203685477.5808"), VarType::Currency, Variant(Currency{INT64_MIN})},
        {Variant(u"922337203685477.5808"), VarType::Currency, {}, 6},
        {Variant(u"0.00005"), VarType::Currency, Variant(Currency{0})},
        {Variant(u"0.00015"), VarType::Currency, Variant(Currency{2})},
        {Variant(u"0.000051"), VarType::Currency, Variant(Currency{1})},
    });
}

TEST(ChangeType, NumbersToText) {
    check({
        {Variant(0.1), VarType::String, Variant(u"0.1")},
        {Variant(1e15), VarType::String, Variant(u"1E+15")},
        {Variant(123456789012345.0), VarType::String, Variant(u"123456789012345")},
        {Variant(1e-5), VarType::String, Variant(u"1E-05")},
        {Variant(0.0001), VarType::String, Variant(u"0.0001")},
        {Variant(-0.0), VarType::String, Variant(u"0")},
        {Variant(1.1f), VarType::String, Variant(u"1.1")},
        {Variant(Currency{12345000}), VarType::String, Variant(u"1234.5")},
        {Variant(Currency{-1}), VarType::String, Variant(u"-0.0001")},
        {Variant(int16_t{-7}), VarType::String, Variant(u"-7")},
    });
}

TEST(ChangeType, DatesToAndFromText) {
    check({
        {Variant(u"2024-05-17"), VarType::Date, Variant(Date{45429})},
        {Variant(Date{45429}), VarType::String, Variant(u"5/17/2024")},
        {Variant(Date{45429.5}), VarType::String, Variant(u"5/17/2024 12:00:00 PM")},
        {Variant(Date{0.25}), VarType::String, Variant(u"6:00:00 AM")},
        {Variant(Date{0}), VarType::String, Variant(u"12:00:00 AM")},
        {Variant(u"not a date"), VarType::Date, {}, 13},
    });
}

TEST(Recognition, IsNumericAcceptsWhatConversionAccepts) {
    EXPECT_TRUE(is_numeric(Variant()));
    EXPECT_FALSE(is_numeric(Variant(u"")));
    EXPECT_FALSE(is_numeric(Variant::null()));
    EXPECT_TRUE(is_numeric(Variant(u" 12 ")));
    EXPECT_TRUE(is_numeric(Variant(u"&HFF")));
    EXPECT_FALSE(is_numeric(Variant(u"12 34")));
    EXPECT_FALSE(is_numeric(Variant(Date{1})));
    EXPECT_TRUE(is_numeric(Variant(true)));
}

}  // namespace
}  // namespace celdo::automation

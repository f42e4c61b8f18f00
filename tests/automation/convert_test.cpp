#include "automation/convert.hpp"

#include <gtest/gtest.h>

#include "tests/support/test_support.hpp"

// Text, numbers, Empty and Null to each subtype are rows of platform_record.tsv
// (record_test.cpp); what is left here is what the record has no rows for.
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

TEST(ChangeType, NullStaysForAVariantAndErrorsAreRefused) {
    check({
        {Variant(), VarType::String, Variant(u"")},
        {Variant::null(), VarType::String, {}, 13},
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

TEST(ChangeType, NumbersBooleansAndDatesToText) {
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
        {Variant(true), VarType::String, Variant(u"True")},
        {Variant(Date{45429}), VarType::String, Variant(u"5/17/2024")},
        {Variant(Date{45429.5}), VarType::String, Variant(u"5/17/2024 12:00:00 PM")},
        {Variant(Date{0.25}), VarType::String, Variant(u"6:00:00 AM")},
        {Variant(Date{0}), VarType::String, Variant(u"12:00:00 AM")},
    });
}

TEST(Recognition, IsNumericTakesEmptyAndNumbersButNotNullOrDates) {
    EXPECT_TRUE(is_numeric(Variant()));
    EXPECT_TRUE(is_numeric(Variant(true)));
    EXPECT_FALSE(is_numeric(Variant::null()));
    EXPECT_FALSE(is_numeric(Variant(Date{1})));
}

}  // namespace
}  // namespace celdo::automation

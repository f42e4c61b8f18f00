#include "automation/variant.hpp"

#include <gtest/gtest.h>

#include <functional>

#include "automation/convert.hpp"
#include "tests/support/fake_host.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;

TEST(Variant, EachConstructorGivesItsSubtype) {
    const std::pair<Variant, VarType> cases[] = {
        {Variant(), VarType::Empty}, {Variant::null(), VarType::Null}, {true, VarType::Boolean},
        {uint8_t{1}, VarType::Byte}, {int16_t{1}, VarType::Integer}, {1, VarType::Long}, {1.0f, VarType::Single},
        {1.0, VarType::Double},
        {Currency{10000}, VarType::Currency}, {Date{1.5}, VarType::Date}, {u"x", VarType::String},
        {Variant::nothing(), VarType::Object}, {Variant::error(5), VarType::Error},
        {Array::matrix(2, 3), VarType::Array | VarType::Variant},
    };
    for (const auto& [value, type] : cases) EXPECT_EQ(value.type(), type) << debug_string(value);
    // An omitted argument is the error "parameter not found", and only that error.
    EXPECT_EQ(Variant::missing().as_error(), static_cast<int32_t>(0x80020004u));
    EXPECT_TRUE(Variant::missing().is_missing());
    EXPECT_FALSE(Variant::error(5).is_missing() || Variant().is_missing());
}

TEST(Variant, ReadingAnotherSubtypeIsATypeMismatch) {
    for (const auto& read : {+[] { (void)Variant(u"12").as_long(); }, +[] { (void)Variant(int16_t{1}).as_long(); },
                             +[] { (void)Variant().as_string(); }}) {
        const AutomationError e = error_of(read);
        EXPECT_EQ(std::tuple(e.number(), e.description()), std::tuple(13, std::u16string(u"Type mismatch")));
    }
}

TEST(Variant, IdentityWantsSubtypeAndValue) {
    const std::tuple<Variant, Variant, bool> cases[] = {
        {int16_t{5}, int16_t{5}, true}, {int16_t{5}, 5, false},   {u"a", u"A", false},
        {Variant::null(), Variant::null(), true}, {Variant(), Variant::null(), false},
    };
    for (const auto& [a, b, same] : cases) EXPECT_EQ(a == b, same) << debug_string(a) << " " << debug_string(b);
}

TEST(Variant, CopiesAndMovesOwnTheirValue) {
    Variant copy;
    {
        Variant original(u"texto compartido");
        copy = original;
        original = Variant(1);
    }
    EXPECT_EQ(copy.as_string(), u"texto compartido");
    Variant moved(std::move(copy));
    EXPECT_TRUE(copy.is_empty());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(moved.as_string(), u"texto compartido");
}

TEST(Variant, TheLastReferenceReleasesTheObjectAndNothingHasNone) {
    // The object shares its log with the test: the log's count drops when the object goes.
    auto log = std::make_shared<std::vector<std::string>>();
    {
        Variant a(make_ref<celdo::testing::Fake>(u"Probe", "p", log));
        Variant b = a;
        a = Variant();
        EXPECT_EQ(std::tuple(log.use_count(), b.as_object()->ref_count()), std::tuple(2L, 1u));
    }
    EXPECT_EQ(log.use_count(), 1);
    EXPECT_TRUE(Variant::nothing().is_object());
    EXPECT_EQ(Variant::nothing().as_object(), nullptr);
}

// Text, numbers, dates, Empty and Null to each subtype and to text are rows of platform_record.tsv
// (record_test.cpp); the conversions here are what the record has no rows for.
TEST(ChangeType, NullStaysForAVariantAndErrorsAreRefused) {
    EXPECT_EQ(change_type(Variant::null(), VarType::Variant), Variant::null());
    EXPECT_EQ(error_of([] { (void)change_type(Variant::error(5), VarType::Long); }).number(), 13);
}

TEST(Array, DataArraysAreColumnsByRowsFromZeroAndReDimPreserveGrowsRows) {
    Array a = Array::matrix(2, 2);
    EXPECT_EQ(std::tuple(a.dimensions(), a.lbound(1), a.ubound(1), a.lbound(2), a.ubound(2)),
              std::tuple(2, 0, 1, 0, 1));
    a.at(0, 0) = Variant(u"a");
    a.at(1, 0) = Variant(u"b");
    EXPECT_EQ(a.elements()[1], Variant(u"b"));  // the first dimension runs fastest
    a.redim_preserve(2);
    EXPECT_EQ(std::tuple(a.ubound(2), a.at(0, 0), a.at(1, 0), a.at(1, 2)),
              std::tuple(2, Variant(u"a"), Variant(u"b"), Variant()));
    a.redim_preserve(0);
    EXPECT_EQ(std::tuple(a.size(), a.at(1, 0)), std::tuple(size_t{2}, Variant(u"b")));
}

TEST(Array, IndexesOutsideTheBoundsAndUndimensionedArraysAreError9) {
    Array a(VarType::Variant, {{1, 3}}), none;
    EXPECT_NO_THROW(a.at(1));
    EXPECT_NO_THROW(a.at(3));
    EXPECT_EQ(none.dimensions(), 0);
    for (const auto& bad : std::initializer_list<std::function<void()>>{
             [&] { a.at(0); }, [&] { a.at(4); }, [&] { a.at(1, 1); }, [&] { (void)a.ubound(2); },
             [&] { (void)none.ubound(); }, [&] { none.redim_preserve(3); }})
        EXPECT_EQ(error_of(bad).number(), 9);
}

TEST(Array, TypedArraysStartWithTheTypesZero) {
    EXPECT_EQ(Array(VarType::String, {{0, 2}}).at(1), Variant(u""));
    EXPECT_EQ(Array(VarType::Long, {{0, 1}}).at(0), Variant(0));
}

TEST(Array, CopiesShareUntilOneIsWritten) {
    Array a = Array::vector({Variant(1), Variant(2)});
    Array b = a;
    EXPECT_TRUE(a.shares_storage_with(b));
    b.at(0) = Variant(99);
    EXPECT_FALSE(a.shares_storage_with(b));
    EXPECT_EQ(std::tuple(a.at(0), b.at(0)), std::tuple(Variant(1), Variant(99)));
    Variant v(Array::vector({Variant(1)}));
    Variant w = v;
    w.array_mut().at(0) = Variant(2);
    EXPECT_EQ(std::tuple(v.as_array().at(0), w.as_array().at(0)), std::tuple(Variant(1), Variant(2)));
}

}  // namespace
}  // namespace celdo::automation

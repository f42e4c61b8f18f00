#include "automation/variant.hpp"

#include <gtest/gtest.h>

#include "automation/error.hpp"

namespace celdo::automation {
namespace {

// A counted object that records its own destruction.
class Probe final : public Object {
public:
    explicit Probe(bool& destroyed) : destroyed_(destroyed) {}
    ~Probe() override { destroyed_ = true; }
    std::u16string type_name() const override { return u"Probe"; }
    std::optional<int32_t> member_id(std::u16string_view) override { return std::nullopt; }
    Variant invoke(int32_t, uint16_t, std::span<Argument>) override { return {}; }

private:
    bool& destroyed_;
};

TEST(VariantSubtypes, EachConstructorGivesItsSubtype) {
    EXPECT_EQ(Variant().type(), VarType::Empty);
    EXPECT_EQ(Variant::null().type(), VarType::Null);
    EXPECT_EQ(Variant(true).type(), VarType::Boolean);
    EXPECT_EQ(Variant(uint8_t{1}).type(), VarType::Byte);
    EXPECT_EQ(Variant(int16_t{1}).type(), VarType::Integer);
    EXPECT_EQ(Variant(1).type(), VarType::Long);
    EXPECT_EQ(Variant(1.0f).type(), VarType::Single);
    EXPECT_EQ(Variant(1.0).type(), VarType::Double);
    EXPECT_EQ(Variant(Currency{10000}).type(), VarType::Currency);
    EXPECT_EQ(Variant(Date{1.5}).type(), VarType::Date);
    EXPECT_EQ(Variant(u"x").type(), VarType::String);
    EXPECT_EQ(Variant::nothing().type(), VarType::Object);
    EXPECT_EQ(Variant(Array::matrix(2, 3)).type(), VarType::Array | VarType::Variant);
}

TEST(VariantSubtypes, MissingIsTheParamNotFoundError) {
    Variant m = Variant::missing();
    EXPECT_TRUE(m.is_missing());
    EXPECT_EQ(m.type(), VarType::Error);
    EXPECT_EQ(m.as_error(), static_cast<int32_t>(0x80020004u));
    EXPECT_FALSE(Variant::error(5).is_missing());
    EXPECT_FALSE(Variant().is_missing());
}

TEST(VariantSubtypes, ReadingAnotherSubtypeIsATypeMismatch) {
    try {
        (void)Variant(u"12").as_long();
        FAIL() << "no error";
    } catch (const AutomationError& e) {
        EXPECT_EQ(e.number(), 13);
        EXPECT_EQ(e.description(), u"Type mismatch");
    }
    EXPECT_THROW((void)Variant(int16_t{1}).as_long(), AutomationError);
    EXPECT_THROW((void)Variant().as_string(), AutomationError);
}

TEST(VariantIdentity, SubtypeAndValueMustBothMatch) {
    EXPECT_EQ(Variant(int16_t{5}), Variant(int16_t{5}));
    EXPECT_NE(Variant(int16_t{5}), Variant(5));
    EXPECT_NE(Variant(u"a"), Variant(u"A"));
    EXPECT_EQ(Variant::null(), Variant::null());
    EXPECT_NE(Variant(), Variant::null());
}

TEST(VariantCopies, StringsSurviveTheirSource) {
    Variant copy;
    {
        Variant original(u"texto compartido");
        copy = original;
        original = Variant(1);
    }
    EXPECT_EQ(copy.as_string(), u"texto compartido");
}

TEST(VariantCopies, MovedFromIsEmpty) {
    Variant a(u"x");
    Variant b(std::move(a));
    EXPECT_TRUE(a.is_empty());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(b.as_string(), u"x");
}

TEST(VariantObjects, TheLastReferenceReleasesTheObject) {
    bool destroyed = false;
    {
        Variant a(make_ref<Probe>(destroyed));
        Variant b = a;
        a = Variant();
        EXPECT_FALSE(destroyed);
        EXPECT_EQ(b.as_object()->ref_count(), 1u);
    }
    EXPECT_TRUE(destroyed);
}

TEST(VariantObjects, NothingIsAnObjectWithoutTarget) {
    Variant n = Variant::nothing();
    EXPECT_TRUE(n.is_object());
    EXPECT_EQ(n.as_object(), nullptr);
    EXPECT_FALSE(n.object());
}

TEST(VariantArrays, DataArraysAreColumnsByRowsFromZero) {
    Array a = Array::matrix(3, 2);
    EXPECT_EQ(a.dimensions(), 2);
    EXPECT_EQ(a.lbound(1), 0);
    EXPECT_EQ(a.ubound(1), 2);
    EXPECT_EQ(a.ubound(2), 1);
    a.at(2, 1) = Variant(u"last");
    EXPECT_EQ(a.elements().back().as_string(), u"last");
}

TEST(VariantArrays, IndexOutsideTheBoundsIsSubscriptOutOfRange) {
    Array a(VarType::Variant, {{1, 3}});
    EXPECT_NO_THROW(a.at(1));
    EXPECT_NO_THROW(a.at(3));
    EXPECT_THROW(a.at(0), AutomationError);
    EXPECT_THROW(a.at(4), AutomationError);
    EXPECT_THROW(a.at(1, 1), AutomationError);
    EXPECT_THROW((void)a.ubound(2), AutomationError);
}

TEST(VariantArrays, UndimensionedArrayHasNoBounds) {
    Array a;
    EXPECT_EQ(a.dimensions(), 0);
    EXPECT_THROW((void)a.ubound(), AutomationError);
    EXPECT_THROW(a.redim_preserve(3), AutomationError);
}

TEST(VariantArrays, CopiesAreIndependentOnceWritten) {
    Array a = Array::vector({Variant(1), Variant(2)});
    Array b = a;
    EXPECT_TRUE(a.shares_storage_with(b));
    b.at(0) = Variant(99);
    EXPECT_FALSE(a.shares_storage_with(b));
    EXPECT_EQ(a.at(0), Variant(1));
    EXPECT_EQ(b.at(0), Variant(99));
}

TEST(VariantArrays, RedimPreserveGrowsRowsAndKeepsCells) {
    Array a = Array::matrix(2, 1);
    a.at(0, 0) = Variant(u"a");
    a.at(1, 0) = Variant(u"b");
    a.redim_preserve(2);
    EXPECT_EQ(a.ubound(2), 2);
    EXPECT_EQ(a.at(0, 0).as_string(), u"a");
    EXPECT_EQ(a.at(1, 0).as_string(), u"b");
    EXPECT_TRUE(a.at(1, 2).is_empty());
    a.redim_preserve(0);
    EXPECT_EQ(a.size(), 2u);
    EXPECT_EQ(a.at(1, 0).as_string(), u"b");
}

TEST(VariantArrays, TypedArraysStartWithTheTypesZero) {
    Array s(VarType::String, {{0, 2}});
    EXPECT_EQ(s.at(1), Variant(u""));
    Array l(VarType::Long, {{0, 1}});
    EXPECT_EQ(l.at(0), Variant(0));
}

TEST(VariantArrays, ArrayInVariantCopiesShareUntilWritten) {
    Variant v(Array::vector({Variant(1)}));
    Variant w = v;
    w.array_mut().at(0) = Variant(2);
    EXPECT_EQ(v.as_array().at(0), Variant(1));
    EXPECT_EQ(w.as_array().at(0), Variant(2));
}

}  // namespace
}  // namespace celdo::automation

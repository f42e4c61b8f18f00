// The field where a row of field_rules.tsv cannot reach it: its collections, made on demand,
// CancelUpdate, which only the row gives by name, and Parse's pace on a long text.
#include "tests/fields/field_support.hpp"

#include "automation/lifetime.hpp"

namespace celdo::testing {
namespace {

// The three collections are made when first asked for: a host sees the same object on every
// read, and a Nothing it set is not replaced by a new collection.
TEST(FieldSubCollections, AreMadeOnceOnDemandAndKeepWhatWasSet) {
    auto& registry = automation::ObjectRegistry::current();
    const size_t before = registry.live();
    auto f = field_of(exText);
    f->let_Value(Variant(u"x"));
    (void)f->XML(u"");
    std::u16string encoding, names;
    (void)f->XMLAttribute(encoding, names);
    (void)f->Clip();
    EXPECT_EQ(registry.live() - before, 1u) << "writing a plain field made no collections";
    EXPECT_EQ(f->get_Children().get(), f->get_Children().get());
    EXPECT_EQ(f->get_Attributes().get(), f->get_Attributes().get());
    EXPECT_EQ(f->get_ExtendProperties().get(), f->get_ExtendProperties().get());
    f->set_ExtendProperties(nullptr);
    EXPECT_FALSE(f->get_ExtendProperties());
    EXPECT_TRUE(f->Item(u"Mask").is_empty()) << "an extra property read without any";
    EXPECT_NE(f->get_Children().get(), f->get_Attributes().get());
    f->get_Children()->Append(field_of(exText, u"hijo"), kNone, kNone, u"");
    EXPECT_TRUE(f->get_HasChildren()) << "HasChildren follows the children";
}

// CancelUpdate restores the old value without raising Chance.
TEST(FieldValue, CancelUpdateRestoresQuietly) {
    auto f = field_of(exLong);
    ChangeCounter changes(*f);
    f->let_Value(1);
    f->let_Value(2);
    f->cancel_update();
    EXPECT_EQ(std::tuple(f->get_Value(), f->get_OldValue(), changes.count), std::tuple(Variant(1), Variant(1), 2));
}

TEST(Parse, ReadsALongTextWithoutAttributesInOnePass) {
    auto f = field_of(exText);
    std::u16string encode;
    // After the last attribute, two million characters with no "=": each one would otherwise
    // cost a search to the end.
    std::u16string text = u"Caption=\"fin\" " + std::u16string(2000000, u'y');
    ASSERT_NO_THROW(EXPECT_TRUE(f->Parse(encode, text)));
    EXPECT_EQ(f->get_Caption(), u"fin");
}

}  // namespace
}  // namespace celdo::testing

// The field object's collections and the row source's column header (its rules by member are
// rows of field_rules.tsv).
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

TEST(RowSource, HeadsBecomeTheColumnHeaderWhichIsTheReferenceTheHostSets) {
    auto f = field_of(exText);
    f->let_ColumnCount(3);
    f->let_ColumnHeads(true);
    f->let_RowSource(u"Codigo;Nombre");
    EXPECT_TRUE(f->get_GetRowSource().as_array().at(0, 0).is_empty());
    // A column without a head is numbered from 1.
    std::u16string property, comma = u",";
    EXPECT_EQ(f->GetColumnHeader()->ClipNames(property, comma), u"Codigo,Nombre,Celdo3");
    auto header = make_ref<clsCeldos>();
    f->set_ColumnHeader(header);
    EXPECT_EQ(f->GetColumnHeader().get(), header.get());
}

}  // namespace
}  // namespace celdo::testing

// The field collection's enumeration, which a row of collection_rules.tsv cannot walk.
#include "tests/fields/field_support.hpp"

#include "automation/enumerator.hpp"

namespace celdo::testing {
namespace {

TEST(Collection, EnumerationWalksTheFieldsInOrder) {
    auto row = make_ref<clsCeldos>();
    add_field(*row, u"A", exLong);
    add_field(*row, u"B");
    auto walk = row->get_NewEnum();
    auto* e = dynamic_cast<automation::Enumerator*>(walk.get());
    ASSERT_NE(e, nullptr);
    std::u16string seen;
    for (Variant v; e->next(v);) seen += v.object_as<clsCeldo>()->get_Name();
    EXPECT_EQ(seen, u"AB");
}

}  // namespace
}  // namespace celdo::testing

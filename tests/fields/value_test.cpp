// The field's value where a table row cannot reach it (changes, coercion, validation by type and
// the required and value-list checks are rows of field_rules.tsv): CancelUpdate and an object set.
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

// What the rows of field_rules.tsv cannot give by name: CancelUpdate, the row's own, and an
// object assigned with Set.
TEST(FieldValue, CancelUpdateRestoresQuietlyAndAnObjectSetFirstIsTheLoadedValue) {
    auto f = field_of(exLong);
    ChangeCounter changes(*f);
    f->let_Value(1);
    f->let_Value(2);
    f->cancel_update();
    EXPECT_EQ(std::tuple(f->get_Value(), f->get_OldValue(), changes.count), std::tuple(Variant(1), Variant(1), 2));
    auto object = field_of(exObject), other = field_of(exText);
    ChangeCounter object_changes(*object);
    object->set_Value(Variant(other));
    EXPECT_EQ(std::tuple(object->get_Value().as_object(), object->get_OldValue().as_object(), object_changes.count),
              std::tuple(other.get(), other.get(), 1)) << "on a field that held nothing it is the loaded value";
}

}  // namespace
}  // namespace celdo::testing

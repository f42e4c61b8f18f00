// The field's value where a table row cannot reach it (changes, coercion and validation by type
// are rows of field_rules.tsv): CancelUpdate, an object set, and the required and value-list
// checks with the messages they write back.
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

TEST(ValidateRequired, AppendsTheMessagesOfMissingValuesAndValuesOutsideTheList) {
    const std::u16string null_message = u"El campo Talla no puede contener un valor nulo. Escriba un valor en este campo.\r\n";
    const auto outside = [](const char16_t* item) {
        return u"[ " + std::u16string(item) +
               u" ] no hace parte de la lista de valores del campo Talla. Escriba un valor valido en este campo.\r\n";
    };
    struct Case {
        ExDataType type;
        const char16_t* row_source;
        Variant value;
        std::u16string before, after;
        bool answer;
    };
    const Case cases[] = {
        {exText, u"", u"", u"", null_message, false},  // an empty required text
        {exLong, u"", Variant(), u"", u"", true},      // only Null is missing for other types
        {exLong, u"", Variant::null(), u"", null_message, false},
        {exText, u"A;B", u"a;b", u"", u"", true},      // items in the first column, any case
        {exText, u"A;B", u"A,C", u"", outside(u"C"), false},
        {exText, u"A;B", u"X;B;Y", u"", outside(u"X") + outside(u"Y"), false},  // each on its own
        {exText, u"", u"x", u"otro campo\r\n", u"otro campo\r\n", false},       // a message collected before
    };
    for (const Case& c : cases) {
        auto f = field_of(c.type);
        f->let_DefaultValue(Variant::null());  // before Required, which would refuse it
        f->let_Required(true);
        f->let_Caption(u"Talla");
        f->let_RowSource(c.row_source);
        if (c.value.is_null()) {
            f->SetNew();
        } else {
            f->let_Value(c.value);
        }
        std::u16string msg = c.before;
        EXPECT_EQ(f->ValidateRequired(msg, exUpdate), Variant(c.answer)) << debug_string(c.value);
        EXPECT_EQ(msg, c.after) << debug_string(c.value);
    }
}

}  // namespace
}  // namespace celdo::testing

// The field's value: what counts as a change, the old value, defaults and the states between
// them, with the change events each raises, and the required and value-list checks with their
// messages (coercion and validation by type are a table: field_rules.tsv).
#include "tests/fields/field_support.hpp"

#include <functional>

namespace celdo::testing {
namespace {

// What is done to a field, then its value, old value and how many change events it raised.
TEST(FieldValue, ChangesOldValuesAndStates) {
    using Steps = std::function<void(clsCeldo&)>;
    automation::ClockScope pinned(*automation::make_date(2024, 5, 17, 10, 30, 0));
    const auto empty = Variant();
    struct Case {
        const char* rule;
        ExDataType type;
        Steps steps;
        Variant value, old;
        int events;
    };
    const Case cases[] = {
        {"the first value is also the old one; the same value is no change", exLong,
         [](clsCeldo& f) { f.let_Value(1), f.let_Value(2), f.let_Value(u"2"); }, 2, 1, 2},
        {"a case change of text is no change", exText, [](clsCeldo& f) { f.let_Value(u"abc"), f.let_Value(u"ABC"); },
         u"abc", u"abc", 1},
        {"images always change", exImagen, [](clsCeldo& f) { f.let_Value(u"a.jpg"), f.let_Value(u"a.jpg"); }, u"a.jpg",
         u"a.jpg", 2},
        {"Empty clears both values without an event", exLong, [](clsCeldo& f) { f.let_Value(1), f.let_Value(Variant()); },
         empty, empty, 1},
        {"Undo returns to the loaded value with an event", exLong,
         [](clsCeldo& f) { f.let_Value(1), f.let_Value(2), f.let_Value(3), f.Undo(); }, 1, 1, 4},
        {"CancelUpdate restores quietly", exLong, [](clsCeldo& f) { f.let_Value(1), f.let_Value(2), f.cancel_update(); },
         1, 1, 2},
        {"Null takes the default", exLong, [](clsCeldo& f) { f.let_DefaultValue(7), f.let_Value(1), f.let_Value(Variant::null()); },
         7, 1, 2},
        {"Initialize assigns, then loads", exLong, [](clsCeldo& f) { f.Initialize(5), f.let_Value(6), f.Initialize(8); },
         8, 8, 3},
        {"Initialize with nothing empties", exLong, [](clsCeldo& f) { f.Initialize(5), f.Initialize(Variant::missing()); },
         empty, empty, 1},
        {"EstablerceDefault makes the value the default too", exLong, [](clsCeldo& f) { f.EstablerceDefault(u"7"); }, 7,
         7, 1},
        {"SetNew takes the default without event or coercion", exLong,
         [](clsCeldo& f) { f.let_DefaultValue(u"3"), f.SetNew(); }, u"3", u"3", 0},
        {"Clear without a default empties", exLong, [](clsCeldo& f) { f.let_Value(9), f.Clear(); }, empty, empty, 1},
        {"Clear assigns the default, coerced, as a change", exLong,
         [](clsCeldo& f) { f.let_Value(9), f.let_DefaultValue(u"4"), f.Clear(); }, 4, 9, 2},
        {"an unacceptable default is ignored", exLong,
         [](clsCeldo& f) { f.let_DefaultValue(5), f.let_DefaultValue(u"cinco"), f.SetNew(); }, 5, 5, 0},
        {"only date types read the date words", exText, [](clsCeldo& f) { f.let_DefaultValue(u"Now()"), f.SetNew(); },
         u"Now()", u"Now()", 0},
    };
    for (const Case& c : cases) {
        auto f = field_of(c.type);
        ChangeCounter changes(*f);
        c.steps(*f);
        EXPECT_EQ(f->get_Value(), c.value) << c.rule;
        EXPECT_EQ(f->get_OldValue(), c.old) << c.rule;
        EXPECT_EQ(changes.count, c.events) << c.rule;
    }

    auto object = field_of(exObject), other = field_of(exText);
    ChangeCounter changes(*object);
    object->set_Value(Variant(other));
    EXPECT_EQ(std::tuple(object->get_Value().as_object(), object->get_OldValue().as_object(), changes.count),
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

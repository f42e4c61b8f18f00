// The collection's state operations that take another row or write back a message: Assing by
// position with the audit fields kept, Update by name through a property, and the required check
// in each edit mode (the walks over every field are rows of collection_rules.tsv).
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

std::u16string values(const clsCeldos& c) {
    std::u16string out;
    for (size_t i = 0; i < c.size(); ++i) {
        const Variant v = c.at(i).get_OriginalValue();
        out += (i ? u"," : u"") + (v.is_empty() ? std::u16string(u"-") : automation::to_string(v));
    }
    return out;
}

class State : public ::testing::Test {
protected:
    // Fields added to `c`, each with its type and, unless Empty, its value.
    static void fill(clsCeldos& c, std::initializer_list<std::tuple<const char16_t*, ExDataType, Variant>> fields) {
        for (const auto& [name, type, value] : fields) add_field(c, name, type, value.is_empty() ? kNone : value);
    }
    Ref<clsCeldos> row = make_ref<clsCeldos>();
    Ref<clsCeldos> other = make_ref<clsCeldos>();
};

// Assing goes by position, with the default, past the audit fields; Update goes by name
// through a property.
TEST_F(State, AssingGoesByPositionAndKeepsTheAuditFieldsUpdateByNameThroughAProperty) {
    fill(*row, {{u"Codigo", exLong, 1}, {u"NFecha", exText, u"keep"}, {u"Nombre", exText, u"old"}, {u"Resto", exText, u"untouched"}});
    fill(*other, {{u"Otro", exText, u"42"}, {u"nfecha", exText, u"lost"}, {u"Cualquiera", exText, u"new"}});
    other->at(0).let_DefaultValue(Variant(u"9"));
    row->Assing(other);
    EXPECT_EQ(values(*row), u"42,keep,new,untouched") << "names do not matter; the audit name is skipped";
    EXPECT_EQ(row->at(0).get_DefaultValue(), Variant(u"9")) << "the default comes along";
    Ref<clsCeldos> nothing;
    EXPECT_EQ(error_of([&] { row->Assing(nothing); }).number(), 91);

    other = make_ref<clsCeldos>();
    fill(*other, {{u"NOMBRE", exText, u"nuevo"}, {u"Ajeno", exText, u"ignored"}});
    other->at(0).let_Caption(u"Título");
    const std::pair<const char16_t*, const char16_t*> updates[] = {
        {u"Value", u"42,keep,nuevo,untouched"}, {u"Caption", u"42,keep,Título,untouched"},
        {u"NoSuchProperty", u"42,keep,-,untouched"}};  // an unknown property reads Empty
    for (const auto& [property, expected] : updates) {
        row->Update(other, property);
        EXPECT_EQ(values(*row), expected) << automation::utf16_to_utf8(property);
    }
}

TEST_F(State, ValidateRequiredChecksByEditMode) {
    auto codigo = add_field(*row, u"Codigo", exLong, kNone, true);
    add_field(*row, u"Nombre", exText, kNone, true);
    std::u16string msg;
    EXPECT_TRUE(row->ValidateRequired(msg, exUpdate)) << "nothing updated, nothing checked";
    EXPECT_EQ(msg, u"");
    EXPECT_TRUE(row->ValidateRequired(msg, exDelete));

    EXPECT_FALSE(row->ValidateRequired(msg, exInsert));
    EXPECT_EQ(msg, u"El campo Nombre no puede contener un valor nulo. Escriba un valor en este campo.\r\n")
        << "an Empty number passes; only Null counts as missing there";
    codigo->load_value(Variant::null());
    msg.clear();
    EXPECT_FALSE(row->ValidateRequired(msg, exInsert));
    EXPECT_EQ(msg, u"El campo Codigo no puede contener un valor nulo. Escriba un valor en este campo.\r\n"
                   u"El campo Nombre no puede contener un valor nulo. Escriba un valor en este campo.\r\n");

    codigo->let_Value(Variant(5));
    row->at(1).let_Value(Variant(u"x"));
    row->at(1).load_value(Variant(u""));  // Nombre emptied, and no longer counted as updated
    msg.clear();
    EXPECT_TRUE(row->ValidateRequired(msg, exUpdate)) << "only updated fields are checked";
    msg = u"previo";
    EXPECT_FALSE(row->ValidateRequired(msg, exUpdate)) << "a message passed in fails the check";
}

}  // namespace
}  // namespace celdo::testing

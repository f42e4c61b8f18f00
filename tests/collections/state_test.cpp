// The collection's state operations: every field reached in order, Assing by position with the
// audit fields kept, Update by name through a property, operators for a search, and the
// required check in each edit mode.
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
    Ref<clsCeldos> row = make_ref<clsCeldos>();
    Ref<clsCeldos> other = make_ref<clsCeldos>();
};

TEST_F(State, WalksReachEveryField) {
    add_field(*row, u"A", exText, Variant(u"a"));
    add_field(*row, u"B", exLong, Variant(2))->let_DefaultValue(Variant(7));
    row->at(0).let_Value(Variant(u"changed"));

    row->CancelUpdate();
    EXPECT_EQ(values(*row), u"a,2") << "back to the old values";
    row->at(0).let_Value(Variant(u"x"));
    row->Updated();
    EXPECT_FALSE(row->at(0).get_Updated()) << "the current values count as saved";
    EXPECT_EQ(row->at(0).get_OldValue(), Variant(u"x"));
    row->SetNew();
    EXPECT_EQ(values(*row), u"-,7") << "each field takes its default";
    row->Initialize();
    EXPECT_EQ(values(*row), u"-,-");
    row->at(0).let_Value(Variant(u"y"));
    row->Clear();
    EXPECT_EQ(values(*row), u"-,7");

    row->let_Direction(exParamOutput);
    for (size_t i = 0; i < row->size(); ++i) EXPECT_EQ(row->at(i).get_Direction(), exParamOutput);
}

TEST_F(State, ChangeOperatorPreparesLoadsAndSearches) {
    add_field(*row, u"Texto");
    add_field(*row, u"Fecha", exDate);
    add_field(*row, u"Numero", exLong);
    add_field(*row, u"Activo", exBoolean);
    auto operators = [&] {
        std::u16string out;
        for (size_t i = 0; i < row->size(); ++i) out += row->at(i).get_Operator() + u";";
        return out;
    };
    row->ChangeOperator(exFind);
    // Assigned through each field's Operator, which keeps LIKE in capitals.
    EXPECT_EQ(operators(), u"LIKE;LIKE;LIKE;=;") << "never >=";
    row->ChangeOperator(exFilter);
    row->ChangeOperator(exDefault);
    row->ChangeOperator(static_cast<TypeOperator>(42));
    EXPECT_EQ(operators(), u"LIKE;LIKE;LIKE;=;");
    row->ChangeOperator(exLoad);
    EXPECT_EQ(operators(), u"=;=;=;=;");
}

TEST_F(State, AssingGoesByPositionAndKeepsTheAuditFields) {
    add_field(*row, u"Codigo", exLong, Variant(1));
    add_field(*row, u"NFecha", exText, Variant(u"keep"));
    add_field(*row, u"Nombre", exText, Variant(u"old"));
    add_field(*row, u"Resto", exText, Variant(u"untouched"));
    add_field(*other, u"Otro", exText, Variant(u"42"))->let_DefaultValue(Variant(u"9"));
    add_field(*other, u"nfecha", exText, Variant(u"lost"));
    add_field(*other, u"Cualquiera", exText, Variant(u"new"));
    row->Assing(other);
    EXPECT_EQ(values(*row), u"42,keep,new,untouched") << "names do not matter; the audit name is skipped";
    EXPECT_EQ(row->at(0).get_DefaultValue(), Variant(u"9")) << "the default comes along";

    Ref<clsCeldos> nothing;
    EXPECT_EQ(error_of([&] { row->Assing(nothing); }).number(), 91);
}

TEST_F(State, UpdateGoesByNameThroughAProperty) {
    add_field(*row, u"Codigo", exLong, Variant(1));
    add_field(*row, u"Nombre", exText, Variant(u"old"));
    add_field(*other, u"NOMBRE", exText, Variant(u"new"))->let_Caption(u"Título");
    add_field(*other, u"Ajeno", exText, Variant(u"ignored"));
    row->Update(other, u"Value");
    EXPECT_EQ(values(*row), u"1,new");
    row->Update(other, u"Caption");
    EXPECT_EQ(row->at(1).get_Value(), Variant(u"Título"));
    row->Update(other, u"NoSuchProperty");
    EXPECT_TRUE(row->at(1).get_OriginalValue().is_empty()) << "an unknown property reads Empty";
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

// Validation by type, and the required and value-list checks with their messages.
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

TEST(Validate, JudgesEachTypeByItsRule) {
    const std::tuple<ExDataType, Variant, bool> cases[] = {
        // Booleans: the words of both languages, -1 and 0, blank and Null; False itself is refused.
        {exBoolean, u"verdadero", true}, {exBoolean, u"FALSO", true}, {exBoolean, u"", true}, {exBoolean, u"True", true},
        {exBoolean, 2, false}, {exBoolean, -1, true}, {exBoolean, u"1", true}, {exBoolean, false, false},
        {exBoolean, true, true}, {exBoolean, u"si", false}, {exBoolean, Variant::null(), true},
        // Bytes: their range and the Boolean words.
        {exByte, 255, true}, {exByte, 256, false}, {exByte, -1, false}, {exByte, true, true}, {exByte, u"Falso", true},
        {exByte, u"", true}, {exByte, u"abc", false},
        // The numeric rule: a leading number read, signs by type.
        {exInteger, -1, true}, {exPositeveInteger, -1, false}, {exgYear, u"-5", false}, {exDouble, u"casi 5%", true},
        {exCurrency, u"$1,234", true}, {exCurrency, u"$1,2x", false}, {exDouble, u".x", true}, {exDouble, u"abc", false},
        {exLong, Variant(), true}, {exAutoNumeric, u"12", true},
        // Dates and times.
        {exDate, u"2024-05-17", true}, {exDateTime, u"2024-05-17T09:30:00", true}, {exDate, u"Now()", true},
        {exDate, u"", true}, {exDate, u"mañana", false}, {exTime, u"9:30", true}, {exTime, u"", false},
        {exDateNumber, 45429, true}, {exTimeNumber, u"x", false},
        // Everything for texts and objects.
        {exText, u"x", true}, {exMemo, 1, true}, {exObject, Variant(), true},
    };
    for (const auto& [type, value, accepted] : cases) {
        EXPECT_EQ(field_of(type)->Validate(value), accepted) << "type " << type << ", " << debug_string(value);
    }
    auto required = field_of(exDate);
    required->let_Required(true);
    EXPECT_TRUE(required->Validate(Variant::null())) << "Null is a date type's own answer";
    for (int32_t type : {static_cast<int32_t>(exBigInt), static_cast<int32_t>(exSmallCurrency), 9999}) {
        auto f = field_of(static_cast<ExDataType>(type));
        f->let_Caption(u"Importe");
        auto e = error_of([&] { f->Validate(1); });
        EXPECT_EQ(e.number(), -2147221504);
        EXPECT_EQ(e.description(), u"Tipo de dato no válido");
        EXPECT_EQ(e.source(), u"Celdo_Importe");
    }
}

TEST(Validate, WithoutArgumentJudgesTheStoredValue) {
    EXPECT_TRUE(field_of(exText)->Validate(Variant::missing()));
    auto g = field_of(exBoolean);
    g->let_Required(true);
    EXPECT_TRUE(g->Validate(Variant::missing())) << "Empty is numeric and equal to 0";
    auto h = field_of(exText);
    h->let_Value(u"abc");
    h->let_DataType(exLong);
    EXPECT_FALSE(h->Validate(Variant::missing())) << "the stored value is judged by the current type";
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

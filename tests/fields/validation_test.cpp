// Validation by type, and the required and value-list checks with their messages.
#include <gtest/gtest.h>

#include "automation/clock.hpp"
#include "fields/clsCeldo.hpp"
#include "tests/fields/field_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::fields {
namespace {

using automation::Variant;
using celdo::testing::error_of;
using celdo::testing::field_of;

struct Judged {
    ExDataType type;
    Variant value;
    bool accepted;
};

void check(std::initializer_list<Judged> cases) {
    for (const auto& c : cases) {
        auto f = field_of(c.type);
        EXPECT_EQ(f->Validate(c.value), c.accepted) << "type " << c.type << ", " << debug_string(c.value);
    }
}

TEST(Validate, WithoutArgumentJudgesTheStoredValue) {
    auto f = field_of(exText);
    EXPECT_TRUE(f->Validate(Variant::missing()));
    auto g = field_of(exBoolean);
    g->let_Required(true);
    EXPECT_TRUE(g->Validate(Variant::missing())) << "Empty is numeric and equal to 0";
    auto h = field_of(exText);
    h->let_Value(Variant(u"abc"));
    h->let_DataType(exLong);
    EXPECT_FALSE(h->Validate(Variant::missing())) << "the stored value is judged by the current type";
}

TEST(Validate, Booleans) {
    check({
        {exBoolean, Variant(u"verdadero"), true}, {exBoolean, Variant(u"FALSO"), true},
        {exBoolean, Variant(u""), true},          {exBoolean, Variant(u"True"), true},
        {exBoolean, Variant(2), false},           {exBoolean, Variant(-1), true},
        {exBoolean, Variant(u"1"), true},         {exBoolean, Variant(false), false},
        {exBoolean, Variant(true), true},         {exBoolean, Variant(u"si"), false},
        {exBoolean, Variant::null(), true},
    });
}

TEST(Validate, BytesAcceptTheirRangeAndTheBooleanWords) {
    check({
        {exByte, Variant(255), true},    {exByte, Variant(256), false},      {exByte, Variant(-1), false},
        {exByte, Variant(true), true},   {exByte, Variant(u"Falso"), true},  {exByte, Variant(u""), true},
        {exByte, Variant(u"abc"), false},
    });
}

TEST(Validate, TheNumericRule) {
    check({
        {exInteger, Variant(-1), true},          {exPositeveInteger, Variant(-1), false},
        {exgYear, Variant(u"-5"), false},         {exDouble, Variant(u"casi 5%"), true},
        {exCurrency, Variant(u"$1,234"), true},  {exCurrency, Variant(u"$1,2x"), false},
        {exDouble, Variant(u".x"), true},        {exDouble, Variant(u"abc"), false},
        {exLong, Variant(), true},               {exAutoNumeric, Variant(u"12"), true},
    });
}

TEST(Validate, Dates) {
    check({
        {exDate, Variant(u"2024-05-17"), true},   {exDateTime, Variant(u"2024-05-17T09:30:00"), true},
        {exDate, Variant(u"Now()"), true},        {exDate, Variant(u""), true},
        {exDate, Variant(u"mañana"), false},      {exTime, Variant(u"9:30"), true},
        {exTime, Variant(u""), false},            {exDateNumber, Variant(45429), true},
        {exTimeNumber, Variant(u"x"), false},
    });
    auto required = field_of(exDate);
    required->let_Required(true);
    EXPECT_TRUE(required->Validate(Variant::null())) << "Null is a date type's own answer";
}

TEST(Validate, EverythingForTextsAndObjects) {
    check({{exText, Variant(u"x"), true}, {exMemo, Variant(1), true}, {exObject, Variant(), true}});
}

TEST(Validate, UnknownTypesAreAnError) {
    for (int32_t type : {static_cast<int32_t>(exBigInt), static_cast<int32_t>(exSmallCurrency), 9999}) {
        auto f = field_of(static_cast<ExDataType>(type));
        f->let_Caption(u"Importe");
        auto e = error_of([&] { f->Validate(Variant(1)); });
        EXPECT_EQ(e.number(), -2147221504);
        EXPECT_EQ(e.description(), u"Tipo de dato no válido");
        EXPECT_EQ(e.source(), u"Celdo_Importe");
    }
}

TEST(ValidateRequired, AnEmptyRequiredTextGetsTheNullMessage) {
    auto f = field_of(exText);
    f->let_Required(true);
    f->let_Caption(u"Nombre");
    f->let_Value(Variant(u""));
    std::u16string msg;
    EXPECT_EQ(f->ValidateRequired(msg, exInsert), Variant(false));
    EXPECT_EQ(msg, u"El campo Nombre no puede contener un valor nulo. Escriba un valor en este campo.\r\n");
}

TEST(ValidateRequired, OnlyNullIsMissingForOtherTypes) {
    auto f = field_of(exLong);
    f->let_DefaultValue(Variant::null());
    f->let_Required(true);
    std::u16string msg;
    EXPECT_EQ(f->ValidateRequired(msg, exUpdate), Variant(true)) << "Empty passes";
    f->SetNew();
    EXPECT_EQ(f->ValidateRequired(msg, exUpdate), Variant(false));
}

TEST(ValidateRequired, ListItemsMustBeInTheFirstColumn) {
    auto f = field_of(exText);
    f->let_Required(true);
    f->let_Caption(u"Talla");
    f->let_RowSource(u"A;B");
    f->let_Value(Variant(u"a;b"));
    std::u16string msg;
    EXPECT_EQ(f->ValidateRequired(msg, exUpdate), Variant(true));
    f->let_Value(Variant(u"A,C"));
    EXPECT_EQ(f->ValidateRequired(msg, exUpdate), Variant(false));
    EXPECT_EQ(msg, u"[ C ] no hace parte de la lista de valores del campo Talla. Escriba un valor valido en este campo.\r\n");
}

TEST(ValidateRequired, EachMissingItemIsReportedOnItsOwn) {
    auto f = field_of(exText);
    f->let_Required(true);
    f->let_Caption(u"Talla");
    f->let_RowSource(u"A;B");
    f->let_Value(Variant(u"X;B;Y"));
    std::u16string msg;
    f->ValidateRequired(msg, exUpdate);
    EXPECT_EQ(msg, u"[ X ] no hace parte de la lista de valores del campo Talla. Escriba un valor valido en este campo.\r\n"
                   u"[ Y ] no hace parte de la lista de valores del campo Talla. Escriba un valor valido en este campo.\r\n");
}

TEST(ValidateRequired, ACollectedMessageMakesTheAnswerFalse) {
    auto f = field_of(exText);
    std::u16string msg = u"otro campo\r\n";
    EXPECT_EQ(f->ValidateRequired(msg, exUpdate), Variant(false));
    EXPECT_EQ(msg, u"otro campo\r\n");
}

}  // namespace
}  // namespace celdo::fields

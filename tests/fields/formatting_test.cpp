// Formats, type names, display sizes and Redondear.
#include <gtest/gtest.h>

#include "fields/clsCeldo.hpp"
#include "tests/fields/field_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::fields {
namespace {

using automation::Currency;
using automation::Variant;
using celdo::testing::error_of;
using celdo::testing::field_of;

TEST(FieldFormat, CurrencyFieldsDefaultToTheNumberFormat) {
    EXPECT_EQ(field_of(exCurrency)->get_Format(), u"###,###,###,###,##0;(###,###,###,###,##0);0");
    EXPECT_EQ(field_of(exnumExpresion)->get_Format(), u"###,###,###,###,##0;(###,###,###,###,##0);0");
    EXPECT_EQ(field_of(exText)->get_Format(), u"");
}

TEST(FieldFormat, NumericFieldsRefuseAMinusSign) {
    auto f = field_of(exDouble);
    f->let_Format(u"#,##0.00");
    auto e = error_of([&] { f->let_Format(u"#,##0.00;-#,##0.00"); });
    EXPECT_EQ(e.number(), -2147221503);
    EXPECT_EQ(e.description(), u"Formato no valido");
    EXPECT_EQ(e.source(), u"Celdo");
    EXPECT_EQ(f->get_Format(), u"#,##0.00");
    auto text = field_of(exText);
    text->let_Format(u"-@");
    EXPECT_EQ(text->get_Format(), u"-@");
}

TEST(FieldTypeName, SpanishNamesWithDeliberateGaps) {
    EXPECT_EQ(field_of(exLong)->get_DataTypeName(), Variant(u"Entero Largo"));
    EXPECT_EQ(field_of(exMemo)->get_DataTypeName(), Variant(u"Bloque de Texto"));
    EXPECT_EQ(field_of(exdtmExpresion)->get_DataTypeName(), Variant(u"Date Expresion"));
    EXPECT_TRUE(field_of(exTime)->get_DataTypeName().is_empty());
    EXPECT_TRUE(field_of(exDateTime)->get_DataTypeName().is_empty());
    EXPECT_TRUE(field_of(static_cast<ExDataType>(4242))->get_DataTypeName().is_empty());
}

TEST(FieldDisplaySize, ByType) {
    auto text = field_of(exText);
    text->let_Size(40);
    EXPECT_EQ(text->get_DefaultDisplaySize(), 40);
    EXPECT_EQ(field_of(exLong)->get_DefaultDisplaySize(), 14);
    EXPECT_EQ(field_of(exDate)->get_DefaultDisplaySize(), 10);
    EXPECT_EQ(field_of(exBoolean)->get_DefaultDisplaySize(), 6);
    EXPECT_EQ(field_of(exDateTime)->get_DefaultDisplaySize(), 14);
}

TEST(Redondear, TiesGoToEvenAndNegativeLengthsRoundToTens) {
    auto f = field_of(exDouble);
    EXPECT_EQ(f->Redondear(Variant(2.5), 0), Variant(2.0));
    EXPECT_EQ(f->Redondear(Variant(3.5), 0), Variant(4.0));
    EXPECT_EQ(f->Redondear(Variant(1234), -2), Variant(1200));
    EXPECT_EQ(f->Redondear(Variant(1250.0), -2), Variant(1200.0)) << "a tie goes to the even hundred";
    EXPECT_EQ(f->Redondear(Variant(1350.0), -2), Variant(1400.0));
    EXPECT_EQ(f->Redondear(Variant(u"1234"), -1), Variant(1230.0)) << "text becomes Double";
    EXPECT_EQ(f->Redondear(Variant(Currency{12345678}), -2), Variant(Currency{12000000}));
    EXPECT_EQ(f->Redondear(Variant::null(), -1), Variant::null());
}

}  // namespace
}  // namespace celdo::fields

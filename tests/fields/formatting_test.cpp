// Formats, type names, display sizes and Redondear.
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

TEST(Field, FormatTypeNameAndDisplaySizeByType) {
    const std::u16string accounting = u"###,###,###,###,##0;(###,###,###,###,##0);0";
    for (auto [type, format] : {std::pair(exCurrency, accounting), {exnumExpresion, accounting}, {exText, u""}})
        EXPECT_EQ(field_of(type)->get_Format(), format) << type;
    // Spanish names, with deliberate gaps.
    const std::pair<ExDataType, Variant> names[] = {
        {exLong, u"Entero Largo"}, {exMemo, u"Bloque de Texto"}, {exdtmExpresion, u"Date Expresion"},
        {exTime, Variant()},       {exDateTime, Variant()},      {static_cast<ExDataType>(4242), Variant()}};
    for (const auto& [type, name] : names) EXPECT_EQ(field_of(type)->get_DataTypeName(), name) << type;
    // A text is as wide as its Size.
    for (auto [type, size] : {std::pair(exText, 40), {exLong, 14}, {exDate, 10}, {exBoolean, 6}, {exDateTime, 14}}) {
        auto f = field_of(type);
        f->let_Size(type == exText ? size : 0);  // 0: the type's own
        EXPECT_EQ(f->get_DefaultDisplaySize(), size) << type;
    }
}

TEST(Field, NumericFormatsRefuseAMinusSign) {
    auto f = field_of(exDouble);
    f->let_Format(u"#,##0.00");
    auto e = error_of([&] { f->let_Format(u"#,##0.00;-#,##0.00"); });
    EXPECT_EQ(std::tuple(e.number(), e.source(), e.description()),
              std::tuple(-2147221503, std::u16string(u"Celdo"), std::u16string(u"Formato no valido")));
    EXPECT_EQ(f->get_Format(), u"#,##0.00");
    auto text = field_of(exText);
    text->let_Format(u"-@");
    EXPECT_EQ(text->get_Format(), u"-@");
}

TEST(Field, RedondearTiesGoToEvenAndNegativeLengthsRoundToTens) {
    auto f = field_of(exDouble);
    expect_rows<Variant>({
        {f->Redondear(2.5, 0), 2.0}, {f->Redondear(3.5, 0), 4.0}, {f->Redondear(1234, -2), 1200},
        {f->Redondear(1250.0, -2), 1200.0}, {f->Redondear(1350.0, -2), 1400.0},  // a tie goes to the even hundred
        {f->Redondear(u"1234", -1), 1230.0},  // text becomes Double
        {f->Redondear(Currency{12345678}, -2), Currency{12000000}}, {f->Redondear(Variant::null(), -1), Variant::null()},
    });
}

}  // namespace
}  // namespace celdo::testing

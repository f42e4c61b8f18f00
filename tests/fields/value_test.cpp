// The field's value: coercion by type, the numeric text rules, what counts as a change, the
// old value, defaults and the states between them.
#include <gtest/gtest.h>

#include "automation/clock.hpp"
#include "automation/recognize.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "tests/fields/field_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::fields {
namespace {

using automation::Currency;
using automation::Variant;
using celdo::testing::ChangeCounter;
using celdo::testing::error_of;
using celdo::testing::field_of;

struct Coerced {
    ExDataType type;
    Variant given;
    Variant stored;
};

void check(std::initializer_list<Coerced> cases) {
    for (const auto& c : cases) {
        auto f = field_of(c.type);
        f->let_Value(c.given);
        EXPECT_EQ(f->get_Value(), c.stored) << "type " << c.type << ", " << debug_string(c.given);
    }
}

TEST(FieldValueCoercion, BooleansAndBytesReadWordsInBothLanguages) {
    check({
        {exBoolean, Variant(u"FALSO"), Variant(false)},
        {exBoolean, Variant(u"verdadero"), Variant(true)},
        {exBoolean, Variant(int16_t{1}), Variant(true)},
        {exBoolean, Variant(true), Variant(true)},
        {exBoolean, Variant(u"True"), Variant(u"True")},  // accepted, but no word of the coercion: kept
        {exByte, Variant(u"verdadero"), Variant(uint8_t{255})},
        {exByte, Variant(u"falso"), Variant(uint8_t{0})},
        {exByte, Variant(int16_t{200}), Variant(uint8_t{200})},
        {exByte, Variant(true), Variant(uint8_t{255})},
        {exByte, Variant(u"12"), Variant(uint8_t{12})},
    });
}

TEST(FieldValueCoercion, IntegersRoundWithTheFieldsRoundingFirst) {
    check({
        {exInteger, Variant(2.5), Variant(int16_t{2})},
        {exInteger, Variant(3.5), Variant(int16_t{4})},
        {exLong, Variant(u"1,234"), Variant(1234)},
        {exPositeveInteger, Variant(7.0), Variant(int16_t{7})},
        {exgYear, Variant(u"2024"), Variant(int16_t{2024})},
    });
}

TEST(FieldValueCoercion, NumericTextRules) {
    check({
        {exDouble, Variant(u"12,5%"), Variant(0.125)},
        {exDouble, Variant(u"5."), Variant(0.0)},
        {exDouble, Variant(u"."), Variant(0.0)},
        {exDouble, Variant(u"1.23456789123"), Variant(1.23456789)},
        {exCurrency, Variant(u"$1,234"), Variant(Currency{12340000})},
        {exCurrency, Variant(u"5."), Variant(Currency{0})},
        {exCurrency, Variant(u"12%"), Variant(Currency{1200})},
        {exCurrency, Variant(1.23456), Variant(Currency{12346})},
        {exSingle, Variant(u"2.5"), Variant(2.5f)},
        {exDecimal, Variant(u"(1,234.5)"), Variant(1234.5)},
        {exFloat, Variant(u"+12.5"), Variant(12.5)},
    });
}

TEST(FieldValueCoercion, CurrencyTextDropsTheSeparatorTheFormatGroupsWith) {
    auto f = field_of(exCurrency);
    f->let_Format(u"#.###.##0,00");  // more points than commas: points group thousands
    f->let_Value(Variant(u"$1.234"));
    EXPECT_EQ(f->get_Value(), Variant(Currency{12340000}));
}

TEST(FieldValueCoercion, TextIsTrimmedAndCharIsNot) {
    auto text = field_of(exText);
    text->let_UpperCase(true);
    text->let_Value(Variant(u"  abc  "));
    EXPECT_EQ(text->get_Value(), Variant(u"ABC"));
    check({{exChar, Variant(u"  abc  "), Variant(u"  abc  ")}});
    auto chr = field_of(exChar);
    chr->let_Format(u"@");
    chr->let_Value(Variant(u"  $1,0(0)  "));
    EXPECT_EQ(chr->get_Value(), Variant(u"100  ")) << "with a format: $,+() removed, then only a left trim";
    auto formatted = field_of(exText);
    formatted->let_Format(u"@");
    formatted->let_Value(Variant(u" (555) 12+34 "));
    EXPECT_EQ(formatted->get_Value(), Variant(u"555 1234"));
}

TEST(FieldValueCoercion, DatesJoinedByTGetABlankUnlessTheTextSaysOct) {
    check({
        {exDateTime, Variant(u"2024-05-17T09:30:00"), Variant(u"2024-05-17 09:30:00")},
        {exDate, Variant(u"05-OCT-2021"), Variant(u"05-OCT-2021")},
        {exDate, Variant(u"2024-05-17"), Variant(u"2024-05-17")},
    });
}

TEST(FieldValueCoercion, ExpressionsAndOtherTypesKeepTheValue) {
    check({
        {exnumExpresion, Variant(u"  x  "), Variant(u"  x  ")},
        {exMemo, Variant(int16_t{5}), Variant(int16_t{5})},
        {exTime, Variant(u"9:30"), Variant(u"9:30")},
    });
}

TEST(FieldValueRefusal, RaisesTheTypeErrorAndStoresNothing) {
    auto f = field_of(exLong, u"lngImporte");
    f->let_Caption(u"Importe");
    f->let_SourceName(u"IMPORTE");
    f->let_Value(Variant(10));
    auto e = error_of([&] { f->let_Value(Variant(u"diez")); });
    EXPECT_EQ(e.number(), -2147221504);
    EXPECT_EQ(e.source(), u"Celdo_lngImporte");
    EXPECT_EQ(e.description(), u"Tipo de dato no valido para : Importe (IMPORTE)");
    EXPECT_EQ(f->get_Value(), Variant(10));
    EXPECT_EQ(f->get_OldValue(), Variant(10));

    auto g = field_of(exBoolean);
    g->let_Caption(u"Activo");
    EXPECT_EQ(error_of([&] { g->let_Value(Variant(u"si")); }).description(), u"Tipo de dato no valido para : Activo")
        << "si is no word of the validation: the algorithm refuses it";
    EXPECT_EQ(error_of([&] { g->let_Value(Variant(false)); }).number(), -2147221504) << "a Boolean False is refused";
}

TEST(FieldValueRefusal, OverflowInsideTheCoercionIsTheConversionError) {
    auto f = field_of(exInteger);
    f->let_Value(Variant(5));
    auto e = error_of([&] { f->let_Value(Variant(40000)); });
    EXPECT_EQ(e.number(), 6);
    EXPECT_EQ(f->get_Value(), Variant(int16_t{5}));
}

TEST(FieldValueChanges, TheFirstValueIsAlsoTheOldValue) {
    auto f = field_of(exLong);
    ChangeCounter changes(*f);
    f->let_Value(Variant(1));
    f->let_Value(Variant(2));
    EXPECT_EQ(f->get_Value(), Variant(2));
    EXPECT_EQ(f->get_OldValue(), Variant(1));
    EXPECT_EQ(changes.count, 2);
    f->let_Value(Variant(u"2"));
    EXPECT_EQ(changes.count, 2) << "the same value is no change";
}

TEST(FieldValueChanges, ACaseChangeOfTextIsNoChange) {
    auto f = field_of(exText);
    ChangeCounter changes(*f);
    f->let_Value(Variant(u"abc"));
    f->let_Value(Variant(u"ABC"));
    EXPECT_EQ(f->get_Value(), Variant(u"abc"));
    EXPECT_EQ(changes.count, 1);
}

TEST(FieldValueChanges, ImagesAndObjectsAlwaysChange) {
    auto f = field_of(exImagen);
    ChangeCounter changes(*f);
    f->let_Value(Variant(u"foto.jpg"));
    f->let_Value(Variant(u"foto.jpg"));
    EXPECT_EQ(changes.count, 2);
}

TEST(FieldValueChanges, EmptyClearsBothValuesWithoutAnEvent) {
    auto f = field_of(exLong);
    f->let_Value(Variant(1));
    ChangeCounter changes(*f);
    f->let_Value(Variant());
    EXPECT_TRUE(f->get_Value().is_empty());
    EXPECT_TRUE(f->get_OldValue().is_empty());
    EXPECT_EQ(changes.count, 0);
}

TEST(FieldValueChanges, UndoReturnsToTheLoadedValueWithAnEvent) {
    auto f = field_of(exLong);
    f->let_Value(Variant(1));
    f->let_Value(Variant(2));
    f->let_Value(Variant(3));
    ChangeCounter changes(*f);
    f->Undo();
    EXPECT_EQ(f->get_Value(), Variant(1));
    EXPECT_EQ(changes.count, 1);
}

TEST(FieldValueChanges, SettingAnObjectStoresTheReference) {
    auto f = field_of(exObject);
    auto other = field_of(exText);
    ChangeCounter changes(*f);
    f->set_Value(Variant(automation::Ref<automation::Object>(other)));
    EXPECT_EQ(f->get_Value().as_object(), other.get());
    EXPECT_EQ(f->get_OldValue().as_object(), other.get()) << "on a field that held nothing it is the loaded value";
    EXPECT_EQ(changes.count, 1);
}

TEST(FieldNullValue, NullTakesTheDefaultUnlessRequired) {
    auto f = field_of(exLong);
    f->let_DefaultValue(Variant(7));
    f->let_Value(Variant(1));
    f->let_Value(Variant::null());
    EXPECT_EQ(f->get_Value(), Variant(7));
    f->let_Required(true);
    EXPECT_EQ(error_of([&] { f->let_Value(Variant::null()); }).number(), -2147221504);
}

struct NullCase {
    ExDataType type;
    Variant shown;
};

TEST(FieldNullValue, AStoredNullReadsAsTheTypesEmptyValue) {
    automation::ClockScope pinned(*automation::make_date(2024, 5, 17, 10, 0, 0));
    const NullCase cases[] = {
        {exBoolean, Variant(false)},      {exLong, Variant(int16_t{0})},    {exCurrency, Variant(int16_t{0})},
        {exText, Variant(u"")},           {exAttribute, Variant(u"")},      {exPositeveInteger, Variant(int16_t{1})},
        {exgYear, Variant(int16_t{2024})}, {exDate, Variant()},             {exDecimal, Variant()},
        {exDateTime, Variant(*automation::make_date(2024, 5, 17, 10, 0, 0))},
    };
    for (const auto& c : cases) {
        auto f = field_of(c.type);
        f->let_DefaultValue(Variant::null());
        f->SetNew();
        EXPECT_TRUE(f->get_OriginalValue().is_null()) << c.type;
        EXPECT_EQ(f->get_Value(), c.shown) << c.type;
    }
    auto fields = field_of(exFields);
    fields->let_DefaultValue(Variant::null());
    fields->SetNew();
    EXPECT_NE(fields->get_Value().object_as<collections::clsCeldos>(), nullptr);
}

TEST(FieldDefault, DateWordsAreKeptAndResolvedOnRead) {
    automation::ClockScope pinned(*automation::make_date(2024, 5, 17, 10, 30, 0));
    auto f = field_of(exDate);
    f->let_DefaultValue(Variant(u"date()"));
    EXPECT_EQ(f->get_DefaultValue(), Variant(*automation::make_date(2024, 5, 17)));
    f->let_DefaultValue(Variant(u"NOW()"));
    EXPECT_EQ(f->get_DefaultValue(), Variant(*automation::make_date(2024, 5, 17, 10, 30, 0)));
    auto text = field_of(exText);
    text->let_DefaultValue(Variant(u"Now()"));
    EXPECT_EQ(text->get_DefaultValue(), Variant(u"Now()")) << "only date types read the words";
}

TEST(FieldDefault, AnUnacceptableDefaultIsIgnored) {
    auto f = field_of(exLong);
    f->let_DefaultValue(Variant(5));
    f->let_DefaultValue(Variant(u"cinco"));
    EXPECT_EQ(f->get_DefaultValue(), Variant(5));
}

TEST(FieldStates, InitializeLoadsAndMissingEmpties) {
    auto f = field_of(exLong);
    f->Initialize(Variant(5));
    EXPECT_EQ(f->get_Value(), Variant(5));
    EXPECT_EQ(f->get_OldValue(), Variant(5));
    f->let_Value(Variant(6));
    f->Initialize(Variant(8));
    EXPECT_EQ(f->get_OldValue(), Variant(8));
    f->Initialize(Variant::missing());
    EXPECT_TRUE(f->get_Value().is_empty());
    EXPECT_TRUE(f->get_OldValue().is_empty());
}

TEST(FieldStates, EstablerceDefaultMakesTheValueTheDefaultToo) {
    auto f = field_of(exLong);
    f->EstablerceDefault(Variant(u"7"));
    EXPECT_EQ(f->get_Value(), Variant(7));
    EXPECT_EQ(f->get_DefaultValue(), Variant(7));
    EXPECT_EQ(f->get_OldValue(), Variant(7));
}

TEST(FieldStates, SetNewTakesTheDefaultWithoutEventOrCoercion) {
    auto f = field_of(exLong);
    f->let_DefaultValue(Variant(u"3"));
    ChangeCounter changes(*f);
    f->SetNew();
    EXPECT_EQ(f->get_Value(), Variant(u"3"));
    EXPECT_EQ(f->get_OldValue(), Variant(u"3"));
    EXPECT_EQ(changes.count, 0);
}

TEST(FieldStates, ClearRebuildsFromTheDefault) {
    auto f = field_of(exLong);
    f->let_Value(Variant(9));
    f->Clear();
    EXPECT_TRUE(f->get_Value().is_empty()) << "no default: empty";
    f->let_DefaultValue(Variant(u"4"));
    f->Clear();
    EXPECT_EQ(f->get_Value(), Variant(4)) << "a default is assigned as a value, coerced";
}

TEST(FieldStates, UpdatedAcceptsOrForgetsTheOldValue) {
    auto f = field_of(exLong);
    f->let_Value(Variant(1));
    EXPECT_FALSE(f->get_Updated());
    f->let_Value(Variant(2));
    EXPECT_TRUE(f->get_Updated());
    f->let_Updated(true);
    EXPECT_FALSE(f->get_Updated());
    EXPECT_EQ(f->get_OldValue(), Variant(2));
    f->let_Updated(false);
    EXPECT_TRUE(f->get_OldValue().is_empty());
    EXPECT_TRUE(f->get_Updated());
}

TEST(FieldStates, UpdatedComparesTextIgnoringCaseAndObjectsNever) {
    auto text = field_of(exText);
    text->Initialize(Variant(u"abc"));
    text->set_Value(Variant(u"ABC"));
    EXPECT_FALSE(text->get_Updated());
    auto object = field_of(exObject);
    object->Initialize(Variant(1));
    object->let_Value(Variant(2));
    EXPECT_FALSE(object->get_Updated());
}

TEST(FieldStates, CancelUpdateRestoresQuietly) {
    auto f = field_of(exLong);
    f->let_Value(Variant(1));
    f->let_Value(Variant(2));
    ChangeCounter changes(*f);
    f->cancel_update();
    EXPECT_EQ(f->get_Value(), Variant(1));
    EXPECT_EQ(changes.count, 0);
}

TEST(FieldValue, DateWordsAssignedAsAValueBecomeTheDate) {
    automation::ClockScope pinned(*automation::make_date(2024, 5, 17, 10, 30, 0));
    auto f = field_of(exDate);
    f->let_Value(Variant(u"Date()"));
    EXPECT_EQ(f->get_Value(), Variant(u"5/17/2024")) << "the current date, kept as date text like every date value";
}

}  // namespace
}  // namespace celdo::fields

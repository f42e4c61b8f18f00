// The field's value: coercion by type, the numeric text rules, what counts as a change, the
// old value, defaults and the states between them.
#include "tests/fields/field_support.hpp"

#include <functional>

namespace celdo::testing {
namespace {

TEST(FieldValue, EachTypeCoercesWhatItIsGiven) {
    struct Case {
        ExDataType type;
        Variant given, stored;
        const char16_t* format = u"";
    };
    const Case cases[] = {
        // Booleans and bytes read words in both languages; "True" is accepted but no word: kept.
        {exBoolean, u"FALSO", false}, {exBoolean, u"verdadero", true}, {exBoolean, int16_t{1}, true},
        {exBoolean, true, true}, {exBoolean, u"True", u"True"}, {exByte, u"verdadero", uint8_t{255}},
        {exByte, u"falso", uint8_t{0}}, {exByte, int16_t{200}, uint8_t{200}}, {exByte, true, uint8_t{255}},
        {exByte, u"12", uint8_t{12}},
        // Integers round with the field's rounding first.
        {exInteger, 2.5, int16_t{2}}, {exInteger, 3.5, int16_t{4}}, {exLong, u"1,234", 1234},
        {exPositeveInteger, 7.0, int16_t{7}}, {exgYear, u"2024", int16_t{2024}},
        // Numeric text: percent, a trailing point, groups, parentheses, signs, currency.
        {exDouble, u"12,5%", 0.125}, {exDouble, u"5.", 0.0}, {exDouble, u".", 0.0},
        {exDouble, u"1.23456789123", 1.23456789}, {exCurrency, u"$1,234", Currency{12340000}},
        {exCurrency, u"5.", Currency{0}}, {exCurrency, u"12%", Currency{1200}}, {exCurrency, 1.23456, Currency{12346}},
        {exSingle, u"2.5", 2.5f}, {exDecimal, u"(1,234.5)", 1234.5}, {exFloat, u"+12.5", 12.5},
        // More points than commas in the format: points group thousands.
        {exCurrency, u"$1.234", Currency{12340000}, u"#.###.##0,00"},
        // Text is trimmed, Char is not; with a format $,+() go, then only a left trim for Char.
        {exChar, u"  abc  ", u"  abc  "}, {exChar, u"  $1,0(0)  ", u"100  ", u"@"},
        {exText, u" (555) 12+34 ", u"555 1234", u"@"},
        // Dates joined by T get a blank unless the text says OCT.
        {exDateTime, u"2024-05-17T09:30:00", u"2024-05-17 09:30:00"}, {exDate, u"05-OCT-2021", u"05-OCT-2021"},
        {exDate, u"2024-05-17", u"2024-05-17"},
        // Expressions and other types keep the value.
        {exnumExpresion, u"  x  ", u"  x  "}, {exMemo, int16_t{5}, int16_t{5}}, {exTime, u"9:30", u"9:30"},
    };
    for (const Case& c : cases) {
        auto f = field_of(c.type);
        f->let_Format(c.format);
        f->let_Value(c.given);
        EXPECT_EQ(f->get_Value(), c.stored) << "type " << c.type << ", " << debug_string(c.given);
    }
    auto upper = field_of(exText);
    upper->let_UpperCase(true);
    upper->let_Value(u"  abc  ");
    EXPECT_EQ(upper->get_Value(), Variant(u"ABC"));
    automation::ClockScope pinned(*automation::make_date(2024, 5, 17, 10, 30, 0));
    auto date = field_of(exDate);
    date->let_Value(u"Date()");
    EXPECT_EQ(date->get_Value(), Variant(u"5/17/2024")) << "the date words become the date, kept as date text";
}

TEST(FieldValue, ARefusedValueRaisesTheTypeErrorAndStoresNothing) {
    struct Case {
        ExDataType type;
        Variant before, given;
        int32_t number;
        const char16_t* description;
    };
    const Case cases[] = {
        {exLong, 10, u"diez", -2147221504, u"Tipo de dato no valido para : Importe (IMPORTE)"},
        {exBoolean, true, u"si", -2147221504, u"Tipo de dato no valido para : Importe (IMPORTE)"},  // no word
        {exBoolean, true, false, -2147221504, nullptr},  // a Boolean False is refused
        {exInteger, int16_t{5}, 40000, 6, nullptr},      // overflow inside the coercion is the conversion's error
    };
    for (const Case& c : cases) {
        auto f = field_of(c.type, u"lngImporte");
        f->let_Caption(u"Importe");
        f->let_SourceName(u"IMPORTE");
        f->let_Value(c.before);
        const auto e = error_of([&] { f->let_Value(c.given); });
        EXPECT_EQ(e.number(), c.number) << debug_string(c.given);
        if (c.description) { EXPECT_EQ(e.description(), c.description); }
        if (c.number != 6) { EXPECT_EQ(e.source(), u"Celdo_lngImporte"); }
        EXPECT_EQ(std::tuple(f->get_Value(), f->get_OldValue()), std::tuple(c.before, c.before));
    }
}

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
    auto required = field_of(exLong);
    required->let_Required(true);
    EXPECT_EQ(error_of([&] { required->let_Value(Variant::null()); }).number(), -2147221504) << "Null when required";
    auto date = field_of(exDate);
    date->let_DefaultValue(u"date()");
    EXPECT_EQ(date->get_DefaultValue(), Variant(*automation::make_date(2024, 5, 17)));
    date->let_DefaultValue(u"NOW()");
    EXPECT_EQ(date->get_DefaultValue(), Variant(*automation::make_date(2024, 5, 17, 10, 30, 0)));
}

TEST(FieldValue, AStoredNullReadsAsTheTypesEmptyValue) {
    automation::ClockScope pinned(*automation::make_date(2024, 5, 17, 10, 0, 0));
    const std::pair<ExDataType, Variant> cases[] = {
        {exBoolean, false},      {exLong, int16_t{0}},    {exCurrency, int16_t{0}}, {exText, u""},
        {exAttribute, u""},      {exPositeveInteger, int16_t{1}}, {exgYear, int16_t{2024}}, {exDate, Variant()},
        {exDecimal, Variant()},  {exDateTime, *automation::make_date(2024, 5, 17, 10, 0, 0)},
    };
    for (const auto& [type, shown] : cases) {
        auto f = field_of(type);
        f->let_DefaultValue(Variant::null());
        f->SetNew();
        EXPECT_TRUE(f->get_OriginalValue().is_null()) << type;
        EXPECT_EQ(f->get_Value(), shown) << type;
    }
    auto fields = field_of(exFields);
    fields->let_DefaultValue(Variant::null());
    fields->SetNew();
    EXPECT_NE(fields->get_Value().object_as<clsCeldos>(), nullptr);
}

TEST(FieldValue, UpdatedAcceptsOrForgetsTheOldValueAndComparesTextIgnoringCase) {
    auto f = field_of(exLong);
    f->let_Value(1);
    EXPECT_FALSE(f->get_Updated());
    f->let_Value(2);
    EXPECT_EQ(props(*f, "Updated,OldValue"), "True|1");
    f->let_Updated(true);
    EXPECT_EQ(props(*f, "Updated,OldValue"), "False|2");
    f->let_Updated(false);
    EXPECT_EQ(props(*f, "Updated,OldValue"), "True|Empty");
    auto text = field_of(exText);
    text->Initialize(u"abc");
    text->set_Value(u"ABC");
    EXPECT_FALSE(text->get_Updated());
    auto object = field_of(exObject);
    object->Initialize(1);
    object->let_Value(2);
    EXPECT_FALSE(object->get_Updated()) << "objects are never updated";
}

}  // namespace
}  // namespace celdo::testing

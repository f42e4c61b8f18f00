// The field collection: insertion with keys and placement, lookup, removal, enumeration,
// sharing and copying.
#include "collections/clsCeldos.hpp"

#include <gtest/gtest.h>

#include "automation/enumerator.hpp"
#include "tests/collections/collection_support.hpp"
#include "tests/fields/field_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::collections {
namespace {

using automation::Ref;
using automation::Variant;
using celdo::testing::error_of;
using celdo::testing::field_of;
using fields::clsCeldo;

using celdo::testing::kNone;

Ref<clsCeldo> add(clsCeldos& c, std::u16string name, fields::ExDataType type = fields::exText) {
    return celdo::testing::add_field(c, std::move(name), type);
}

std::u16string names(const clsCeldos& c) { return celdo::testing::names_of(c); }

class Collection : public ::testing::Test {
protected:
    Ref<clsCeldos> row = automation::make_ref<clsCeldos>();
};

TEST_F(Collection, AddSetsNameTypeSourceAndPosition) {
    auto first = row->Add(u"Codigo", u"COD", fields::exLong, 0, -1, true, u"El código", u"Obligatorio",
                          Variant(u"12"), kNone, kNone, kNone);
    EXPECT_EQ(first->get_Name(), u"Codigo");
    EXPECT_EQ(first->get_DataType(), fields::exLong);
    EXPECT_EQ(first->get_SourceName(), u"COD");
    EXPECT_EQ(first->get_Position(), 0);
    EXPECT_TRUE(first->get_Required());
    EXPECT_EQ(first->get_Description(), u"El código");
    EXPECT_EQ(first->get_ValidationText(), u"Obligatorio");
    EXPECT_EQ(first->get_Value(), Variant(12));
    EXPECT_EQ(add(*row, u"Nombre")->get_Position(), 1);
    auto placed = row->Add(u"X", u"", fields::exText, 0, 9, false, u"", u"", kNone, kNone, kNone, kNone);
    EXPECT_EQ(placed->get_Position(), 9);
}

TEST_F(Collection, AddPutsTheSourceOfAnExpressionIntoExpresion) {
    auto f = row->Add(u"Total", u"Precio * Cantidad", fields::exnumExpresion, 0, -1, false, u"", u"", kNone, kNone,
                      kNone, kNone);
    EXPECT_EQ(f->get_Expresion(), u"Precio * Cantidad");
    EXPECT_EQ(f->get_SourceName(), u"");
}

TEST_F(Collection, AddWithAnOldValueNeedsAnObjectThere) {
    EXPECT_EQ(error_of([&] {
                  row->Add(u"X", u"", fields::exLong, 0, -1, false, u"", u"", Variant(1), Variant(2), kNone, kNone);
              }).number(),
              424);
    EXPECT_EQ(row->get_Count(), 0) << "the field is not added";
}

TEST_F(Collection, DuplicateNamesAreKeptButOnlyTheFirstIsKeyed) {
    auto first = add(*row, u"Codigo");
    auto second = add(*row, u"CODIGO");
    EXPECT_EQ(row->get_Count(), 2);
    Variant key(u"codigo");
    EXPECT_EQ(row->get_Item(key).get(), first.get());
    Variant position(int16_t{2});
    EXPECT_EQ(row->get_Item(position).get(), second.get());
}

TEST_F(Collection, ItemTrimsAKeyAndWritesItBack) {
    auto f = add(*row, u"Codigo");
    Variant key(u"  Codigo ");
    EXPECT_EQ(row->get_Item(key).get(), f.get());
    EXPECT_EQ(key, Variant(u"Codigo"));
}

TEST_F(Collection, ItemOfAMissingKeyOrPositionIsError5) {
    add(*row, u"A");
    for (Variant index : {Variant(u"B"), Variant(0), Variant(int16_t{2}), Variant(), Variant(u"1")}) {
        EXPECT_EQ(error_of([&] { row->get_Item(index); }).number(), 5) << debug_string(index);
    }
    Variant position(1.4);
    EXPECT_EQ(row->get_Item(position)->get_Name(), u"A") << "a Double position rounds";
}

TEST_F(Collection, AppendKeysByTheTrimmedNameOrTheGivenKey) {
    auto f = field_of(fields::exText, u" Total ");
    row->Append(f, kNone, kNone, u"");
    EXPECT_TRUE(row->Exist(u"Total"));
    auto g = field_of(fields::exText, u"Otro");
    row->Append(g, kNone, kNone, u" Clave ");
    EXPECT_TRUE(row->Exist(u" clave "));
    EXPECT_FALSE(row->Exist(u"Clave"));
    EXPECT_EQ(f->get_Position(), 0);
    EXPECT_EQ(g->get_Position(), 1);
}

TEST_F(Collection, BeforeAndAfterByPositionOrKey) {
    add(*row, u"A");
    add(*row, u"C");
    row->Append(field_of(fields::exText, u"B"), Variant(u"c"), kNone, u"");
    EXPECT_EQ(names(*row), u"A,B,C");
    row->Append(field_of(fields::exText, u"Z"), kNone, Variant(3), u"");
    EXPECT_EQ(names(*row), u"A,B,C,Z");
    row->Append(field_of(fields::exText, u"0"), Variant(int16_t{1}), Variant(u"Z"), u"");
    EXPECT_EQ(names(*row), u"0,A,B,C,Z") << "Before wins";
    row->Append(field_of(fields::exText, u"lost"), Variant(u"nobody"), kNone, u"");
    row->Append(field_of(fields::exText, u"lost"), Variant(99), kNone, u"");
    EXPECT_EQ(row->get_Count(), 5) << "an anchor that names nothing leaves the field out, silently";
    Variant z(u"Z");
    EXPECT_EQ(row->get_Item(z)->get_Name(), u"Z") << "keys still find their fields after inserts in front";
}

TEST_F(Collection, RemoveByIntegerPositionOrKeyOnly) {
    add(*row, u"A");
    add(*row, u"B");
    add(*row, u"C");
    Variant long_one(1);
    row->Remove(long_one);
    EXPECT_EQ(row->get_Count(), 3) << "a Long index removes nothing";
    Variant integer_one(int16_t{1});
    row->Remove(integer_one);
    EXPECT_EQ(names(*row), u"B,C");
    Variant beyond(int16_t{9});
    row->Remove(beyond);
    EXPECT_EQ(row->get_Count(), 2);
    Variant zero(int16_t{0});
    EXPECT_EQ(error_of([&] { row->Remove(zero); }).number(), 5);
    Variant key(u"c");
    row->Remove(key);
    EXPECT_EQ(names(*row), u"B");
    Variant missing(u"Q");
    EXPECT_EQ(error_of([&] { row->Remove(missing); }).number(), 5);
    EXPECT_EQ(row->at(0).get_Position(), 1) << "removal does not renumber";
    EXPECT_FALSE(row->Exist(u"A"));
}

TEST_F(Collection, EnumerationWalksInPositionOrder) {
    add(*row, u"A");
    add(*row, u"B");
    auto walk = row->get_NewEnum();
    auto* e = dynamic_cast<automation::Enumerator*>(walk.get());
    ASSERT_NE(e, nullptr);
    Variant item;
    std::u16string seen;
    while (e->next(item)) {
        auto* field = item.object_as<clsCeldo>();
        ASSERT_NE(field, nullptr);
        seen += field->get_Name();
    }
    EXPECT_EQ(seen, u"AB");
}

TEST_F(Collection, AppendsSharesTheSameFields) {
    auto other = automation::make_ref<clsCeldos>();
    auto a = add(*other, u"A", fields::exLong);
    add(*other, u"B");
    row->Appends(other, kNone, kNone, u"");
    EXPECT_EQ(row->get_Count(), 2);
    Variant key(u"A");
    row->get_Item(key)->let_Value(Variant(5));
    EXPECT_EQ(a->get_Value(), Variant(5)) << "one object, seen through both";
    EXPECT_EQ(a->get_Position(), 0);
}

TEST_F(Collection, AppendsWithAKeyKeysOnlyTheFirst) {
    auto other = automation::make_ref<clsCeldos>();
    add(*other, u"A");
    add(*other, u"B");
    row->Appends(other, kNone, kNone, u"K");
    EXPECT_TRUE(row->Exist(u"K"));
    EXPECT_FALSE(row->Exist(u"B"));
    EXPECT_EQ(row->get_Count(), 2);
}

TEST_F(Collection, DuplicateCopiesMetadataButNotAnEmptyValue) {
    auto original = row->Add(u"Precio", u"PRECIO", fields::exCurrency, 0, -1, true, u"d", u"v", kNone, kNone, kNone,
                             kNone);
    original->let_DefaultValue(Variant(5));
    original->let_Operator(u"LIKE");
    std::u16string no_name;
    Variant no_value = Variant::missing();
    auto copy = row->Duplicate(original, no_name, no_value);
    EXPECT_NE(copy.get(), original.get());
    EXPECT_EQ(copy->get_Name(), u"Precio");
    EXPECT_EQ(copy->get_SourceName(), u"PRECIO");
    EXPECT_EQ(copy->get_DataType(), fields::exCurrency);
    EXPECT_EQ(copy->get_Redondeo(), 4);
    EXPECT_EQ(copy->get_Operator(), u"LIKE");
    EXPECT_EQ(copy->get_DefaultValue(), Variant(5));
    EXPECT_TRUE(copy->get_Value().is_empty()) << "an Empty value is not copied, even with a default";
    EXPECT_FALSE(copy->get_Updated());
    EXPECT_EQ(row->get_Count(), 1) << "the copy is detached";
}

TEST_F(Collection, DuplicateTakesANewNameAndValue) {
    auto original = add(*row, u"Cantidad", fields::exLong);
    original->let_Value(Variant(3));
    std::u16string name(u"Otra");
    Variant value(9);
    auto copy = row->Duplicate(original, name, value);
    EXPECT_EQ(copy->get_Name(), u"Otra");
    EXPECT_EQ(copy->get_Value(), Variant(9));
    std::u16string empty;
    Variant none = Variant::missing();
    EXPECT_EQ(row->Duplicate(original, empty, none)->get_Value(), Variant(3));
}

TEST_F(Collection, DuplicateCopiesChildrenDeeply) {
    auto parent = add(*row, u"Padre");
    auto child = field_of(fields::exText, u"Hijo");
    parent->get_Children()->Append(child, kNone, kNone, u"");
    std::u16string name;
    Variant none = Variant::missing();
    auto copy = row->Duplicate(parent, name, none);
    ASSERT_EQ(copy->get_Children()->get_Count(), 1);
    EXPECT_NE(&copy->get_Children()->at(0), child.get());
    EXPECT_EQ(copy->get_Children()->at(0).get_Name(), u"Hijo");
}

TEST_F(Collection, AppendAsInsertsACopyUnderItsName) {
    auto original = add(*row, u"A");
    std::u16string name(u"B");
    Variant none = Variant::missing();
    row->AppendAs(original, name, none, kNone, kNone);
    EXPECT_EQ(names(*row), u"A,B");
    EXPECT_NE(&row->at(1), original.get());
}

TEST_F(Collection, AppendsAsCopiesAndRenumbers) {
    auto other = automation::make_ref<clsCeldos>();
    auto a = add(*other, u"A");
    add(*row, u"X");
    row->AppendsAs(other, kNone, kNone);
    EXPECT_NE(&row->at(1), a.get());
    EXPECT_EQ(row->at(1).get_Position(), 1);
    EXPECT_EQ(a->get_Position(), 0) << "the source's field is untouched";
}

TEST_F(Collection, AddParameterKeepsTheOperatorInDescription) {
    row->AddParameter(u"@desde", fields::exDate, Variant(u"2024-01-01"), u">=", 0, u"FECHA", fields::exParamInput, kNone,
                      kNone);
    Variant key(u"@desde");
    auto p = row->get_Item(key);
    EXPECT_EQ(p->get_Description(), u">=");
    EXPECT_EQ(p->get_Operator(), u"=");
    EXPECT_EQ(p->get_SourceName(), u"FECHA");
    EXPECT_EQ(p->get_Direction(), fields::exParamInput);
    EXPECT_EQ(p->get_Position(), 0);
}

TEST_F(Collection, ExistIgnoresCaseButNotBlanks) {
    add(*row, u"Codigo");
    EXPECT_TRUE(row->Exist(u"CODIGO"));
    EXPECT_FALSE(row->Exist(u" Codigo"));
}

}  // namespace
}  // namespace celdo::collections

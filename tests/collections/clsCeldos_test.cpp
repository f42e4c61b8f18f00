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

using automation::Currency;
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
    // An expression's source goes into Expresion.
    auto f = row->Add(u"Total", u"Precio * Cantidad", fields::exnumExpresion, 0, -1, false, u"", u"", kNone, kNone,
                      kNone, kNone);
    EXPECT_EQ(f->get_Expresion(), u"Precio * Cantidad");
    EXPECT_EQ(f->get_SourceName(), u"");
    // An old value needs an object there; the field is not added.
    EXPECT_EQ(error_of([&] {
                  row->Add(u"Y", u"", fields::exLong, 0, -1, false, u"", u"", Variant(1), Variant(2), kNone, kNone);
              }).number(),
              424);
    EXPECT_EQ(row->get_Count(), 4);
    // A parameter keeps its operator in Description.
    row->AddParameter(u"@desde", fields::exDate, Variant(u"2024-01-01"), u">=", 0, u"FECHA", fields::exParamInput, kNone,
                      kNone);
    Variant key(u"@desde");
    auto p = row->get_Item(key);
    EXPECT_EQ(p->get_Description(), u">=");
    EXPECT_EQ(p->get_Operator(), u"=");
    EXPECT_EQ(p->get_SourceName(), u"FECHA");
    EXPECT_EQ(p->get_Direction(), fields::exParamInput);
    EXPECT_EQ(p->get_Position(), 4);
}

TEST_F(Collection, ItemFindsTheFirstOfAKeyOrAPosition) {
    auto first = add(*row, u"Codigo");
    auto second = add(*row, u"CODIGO");  // a duplicate name is kept, unkeyed
    EXPECT_EQ(row->get_Count(), 2);
    Variant key(u"  codigo "), position(int16_t{2}), rounded(1.4);
    EXPECT_EQ(row->get_Item(key).get(), first.get());
    EXPECT_EQ(key, Variant(u"codigo")) << "the key is trimmed and written back";
    EXPECT_EQ(row->get_Item(position).get(), second.get());
    EXPECT_EQ(row->get_Item(rounded).get(), first.get()) << "a Double position rounds";
    for (Variant index : {Variant(u"B"), Variant(0), Variant(int16_t{3}), Variant(), Variant(u"1")}) {
        EXPECT_EQ(error_of([&] { row->get_Item(index); }).number(), 5) << debug_string(index);
    }
    EXPECT_TRUE(row->Exist(u"CODIGO"));
    EXPECT_FALSE(row->Exist(u" Codigo")) << "Exist ignores case but not blanks";
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

TEST_F(Collection, AppendsSharesTheSameFieldsAndEnumerationWalksThemInOrder) {
    auto other = automation::make_ref<clsCeldos>();
    auto a = add(*other, u"A", fields::exLong);
    add(*other, u"B");
    row->Appends(other, kNone, kNone, u"");
    Variant key(u"A");
    row->get_Item(key)->let_Value(Variant(5));
    EXPECT_EQ(a->get_Value(), Variant(5)) << "one object, seen through both";
    EXPECT_EQ(a->get_Position(), 0);
    auto walk = row->get_NewEnum();
    auto* e = dynamic_cast<automation::Enumerator*>(walk.get());
    ASSERT_NE(e, nullptr);
    std::u16string seen;
    for (Variant item; e->next(item);) seen += item.object_as<clsCeldo>()->get_Name();
    EXPECT_EQ(seen, u"AB");
    auto keyed = automation::make_ref<clsCeldos>();
    keyed->Appends(other, kNone, kNone, u"K");
    EXPECT_TRUE(keyed->Exist(u"K")) << "with a key, only the first is keyed";
    EXPECT_FALSE(keyed->Exist(u"B"));
    EXPECT_EQ(keyed->get_Count(), 2);
}

TEST_F(Collection, DuplicateCopiesMetadataAndChildrenButNotAnEmptyValue) {
    auto original = row->Add(u"Precio", u"PRECIO", fields::exCurrency, 0, -1, true, u"d", u"v", kNone, kNone, kNone,
                             kNone);
    original->let_DefaultValue(Variant(5));
    original->let_Operator(u"LIKE");
    auto child = field_of(fields::exText, u"Hijo");
    original->get_Children()->Append(child, kNone, kNone, u"");
    std::u16string no_name, name(u"Otra");
    Variant no_value = Variant::missing(), value(9);
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
    ASSERT_EQ(copy->get_Children()->get_Count(), 1);
    EXPECT_NE(&copy->get_Children()->at(0), child.get()) << "children are copied deeply";
    EXPECT_EQ(copy->get_Children()->at(0).get_Name(), u"Hijo");
    original->let_Value(Variant(3));
    EXPECT_EQ(row->Duplicate(original, no_name, no_value)->get_Value(), Variant(Currency{30000}));
    copy = row->Duplicate(original, name, value);
    EXPECT_EQ(copy->get_Name(), u"Otra");
    EXPECT_EQ(copy->get_Value(), Variant(Currency{90000}));
}

TEST_F(Collection, AppendAsAndAppendsAsInsertCopies) {
    auto original = add(*row, u"A");
    std::u16string name(u"B");
    Variant none = Variant::missing();
    row->AppendAs(original, name, none, kNone, kNone);
    EXPECT_EQ(names(*row), u"A,B");
    EXPECT_NE(&row->at(1), original.get());
    auto other = automation::make_ref<clsCeldos>();
    auto c = add(*other, u"C");
    row->AppendsAs(other, kNone, kNone);
    EXPECT_NE(&row->at(2), c.get());
    EXPECT_EQ(row->at(2).get_Position(), 2) << "copies are renumbered";
    EXPECT_EQ(c->get_Position(), 0) << "the source's field is untouched";
}

}  // namespace
}  // namespace celdo::collections

// The field collection where a row of collection_rules.tsv cannot reach it: arguments written
// back, placement, enumeration, sharing and copying.
#include "tests/fields/field_support.hpp"

#include "automation/enumerator.hpp"

namespace celdo::testing {
namespace {

Ref<clsCeldo> add(clsCeldos& c, std::u16string name, ExDataType type = exText) {
    return add_field(c, std::move(name), type);
}

class Collection : public ::testing::Test {
protected:
    Ref<clsCeldos> row = make_ref<clsCeldos>();
};

// What a table row cannot see: the arguments Item and ClipNames write back by reference.
TEST_F(Collection, ItemAndClipNamesWriteBackTheirByReferenceArguments) {
    add(*row, u"Codigo");
    Variant key(u"  codigo ");
    row->get_Item(key);
    EXPECT_EQ(key, Variant(u"codigo")) << "the key is trimmed and written back";
    std::u16string property, comma = u",";
    row->ClipNames(property, comma);
    EXPECT_EQ(property, u"Name") << "the default is written back";
}

TEST_F(Collection, AppendKeysByTheTrimmedNameOrTheGivenKeyBeforeOrAfterAnAnchor) {
    auto f = field_of(exText, u" Total "), g = field_of(exText, u"Otro");
    row->Append(f, kNone, kNone, u"");
    row->Append(g, kNone, kNone, u" Clave ");
    EXPECT_EQ(std::tuple(row->Exist(u"Total"), row->Exist(u" clave "), row->Exist(u"Clave"), f->get_Position(),
                         g->get_Position()),
              std::tuple(true, true, false, 0, 1));
    row = make_ref<clsCeldos>();
    add(*row, u"A");
    add(*row, u"C");
    row->Append(field_of(exText, u"B"), Variant(u"c"), kNone, u"");
    row->Append(field_of(exText, u"Z"), kNone, Variant(3), u"");
    EXPECT_EQ(names_of(*row), u"A,B,C,Z");
    row->Append(field_of(exText, u"0"), Variant(int16_t{1}), Variant(u"Z"), u"");
    EXPECT_EQ(names_of(*row), u"0,A,B,C,Z") << "Before wins";
    row->Append(field_of(exText, u"lost"), Variant(u"nobody"), kNone, u"");
    row->Append(field_of(exText, u"lost"), Variant(99), kNone, u"");
    EXPECT_EQ(row->get_Count(), 5) << "an anchor that names nothing leaves the field out, silently";
    EXPECT_EQ(item(*row, u"Z")->get_Name(), u"Z") << "keys still find their fields after inserts in front";
}

TEST_F(Collection, AppendsSharesTheSameFieldsAndEnumerationWalksThemInOrder) {
    auto other = make_ref<clsCeldos>();
    auto a = add(*other, u"A", exLong);
    add(*other, u"B");
    row->Appends(other, kNone, kNone, u"");
    item(*row, u"A")->let_Value(Variant(5));
    EXPECT_EQ(std::tuple(a->get_Value(), a->get_Position()), std::tuple(Variant(5), int16_t{0})) << "one object, seen through both";
    auto walk = row->get_NewEnum();
    auto* e = dynamic_cast<automation::Enumerator*>(walk.get());
    ASSERT_NE(e, nullptr);
    std::u16string seen;
    for (Variant v; e->next(v);) seen += v.object_as<clsCeldo>()->get_Name();
    EXPECT_EQ(seen, u"AB");
    auto keyed = make_ref<clsCeldos>();
    keyed->Appends(other, kNone, kNone, u"K");
    EXPECT_EQ(std::tuple(keyed->Exist(u"K"), keyed->Exist(u"B"), keyed->get_Count()), std::tuple(true, false, 2))
        << "with a key, only the first is keyed";
}

TEST_F(Collection, DuplicateCopiesMetadataAndChildrenButNotAnEmptyValue) {
    auto original = row->Add(u"Precio", u"PRECIO", exCurrency, 0, -1, true, u"d", u"v", kNone, kNone, kNone, kNone);
    original->let_DefaultValue(Variant(5));
    original->let_Operator(u"LIKE");
    auto child = field_of(exText, u"Hijo");
    original->get_Children()->Append(child, kNone, kNone, u"");
    std::u16string no_name, name(u"Otra");
    Variant no_value = Variant::missing(), value(9);
    auto copy = row->Duplicate(original, no_name, no_value);
    EXPECT_NE(copy.get(), original.get());
    // An Empty value is not copied, even with a default; the copy is detached.
    EXPECT_EQ(props(*copy, "Name,SourceName,DataType,Redondeo,Operator,DefaultValue,Value,Updated"),
              R"("Precio"|"PRECIO"|1005|4|"LIKE"|5|Empty|False)");
    EXPECT_EQ(row->get_Count(), 1);
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
    Variant none = Variant::missing();
    row->AppendAs(original, u"B", none, kNone, kNone);
    EXPECT_EQ(names_of(*row), u"A,B");
    EXPECT_NE(&row->at(1), original.get());
    auto other = make_ref<clsCeldos>();
    auto c = add(*other, u"C");
    row->AppendsAs(other, kNone, kNone);
    EXPECT_NE(&row->at(2), c.get());
    EXPECT_EQ(std::tuple(row->at(2).get_Position(), c->get_Position()), std::tuple(int16_t{2}, int16_t{0}))
        << "copies are renumbered, the source's field untouched";
}

}  // namespace
}  // namespace celdo::testing

// Rows kept by clsRegistro (shared or copied, keys, positions, errors) and the audit fields of
// CeldosSeguimiento.
#include <gtest/gtest.h>

#include "automation/clock.hpp"
#include "automation/enumerator.hpp"
#include "automation/recognize.hpp"
#include "collections/CeldosSeguimiento.hpp"
#include "collections/clsRegistro.hpp"
#include "tests/collections/collection_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::collections {
namespace {

using automation::Ref;
using automation::Variant;
using celdo::testing::error_of;

using celdo::testing::kNone;

Ref<clsCeldos> row_of(std::u16string value) {
    auto row = automation::make_ref<clsCeldos>();
    row->Add(u"Nombre", u"", fields::exText, 0, -1, false, u"", u"", Variant(value), kNone, kNone, kNone);
    return row;
}

class Records : public ::testing::Test {
protected:
    Ref<clsCeldos> item(Variant index) { return records->get_Item(index); }
    Ref<clsRegistro> records = automation::make_ref<clsRegistro>();
};

TEST_F(Records, AddSharesAndAppendAsCopies) {
    auto a = row_of(u"uno");
    records->AppendAs(a, u"r1");
    records->Add(a, u"r2");
    a->at(0).let_Value(Variant(u"cambiado"));
    EXPECT_EQ(item(Variant(u"r1"))->at(0).get_Value(), Variant(u"uno")) << "the copy keeps what it was";
    EXPECT_EQ(item(Variant(u"R2")).get(), a.get()) << "the shared row, found without regard to case";
    EXPECT_NE(&item(Variant(u"r1"))->at(0), &a->at(0));
    Variant name(u"Nombre");
    EXPECT_EQ(item(Variant(u"r1"))->get_Item(name).get(), &item(Variant(u"r1"))->at(0)) << "copies are keyed";
}

TEST_F(Records, KeysAreUniqueAndTakenAsGiven) {
    records->Add(row_of(u"a"), u"k");
    EXPECT_EQ(error_of([&] { records->Add(row_of(u"b"), u"K"); }).number(), 457);
    EXPECT_EQ(error_of([&] { records->AppendAs(row_of(u"b"), u"k"); }).number(), 457);
    EXPECT_EQ(records->get_Count(), 1);
    records->Add(row_of(u"c"), u"");
    records->Add(row_of(u"d"), u"");
    EXPECT_EQ(records->get_Count(), 3) << "rows without a key are all kept";
    EXPECT_TRUE(records->Exist(u"K"));
    EXPECT_FALSE(records->Exist(u" k")) << "no trimming";
    EXPECT_FALSE(records->Exist(u""));
    EXPECT_EQ(error_of([&] { item(Variant(u" k")); }).number(), 5);
}

TEST_F(Records, PositionsOfAnyNumericTypeAndErrorFive) {
    records->Add(row_of(u"a"), u"");
    records->Add(row_of(u"b"), u"");
    EXPECT_EQ(item(Variant(int16_t{2}))->at(0).get_Value(), Variant(u"b"));
    EXPECT_EQ(item(Variant(int32_t{1}))->at(0).get_Value(), Variant(u"a"));
    EXPECT_EQ(item(Variant(1.6))->at(0).get_Value(), Variant(u"b")) << "a Double rounds";
    for (Variant bad : {Variant(int32_t{0}), Variant(int32_t{3}), Variant(), Variant::null()})
        EXPECT_EQ(error_of([&] { item(bad); }).number(), 5) << automation::debug_string(bad);
    Variant position(int32_t{1});
    records->Remove(position);
    EXPECT_EQ(records->get_Count(), 1);
    EXPECT_EQ(item(Variant(int32_t{1}))->at(0).get_Value(), Variant(u"b"));
    EXPECT_EQ(error_of([&] { records->Remove(position = Variant(u"nada")); }).number(), 5);
    records->Clear();
    EXPECT_EQ(records->get_Count(), 0);
}

TEST_F(Records, EnumerationWalksTheRowsInOrder) {
    auto a = row_of(u"a");
    auto b = row_of(u"b");
    records->Add(a, u"");
    records->Add(b, u"x");
    auto walk = records->get_NewEnum();
    auto& e = dynamic_cast<automation::SnapshotEnumerator&>(*walk);
    Variant first, second, third;
    ASSERT_TRUE(e.next(first));
    ASSERT_TRUE(e.next(second));
    EXPECT_FALSE(e.next(third));
    EXPECT_EQ(first.as_object(), a.get());
    EXPECT_EQ(second.as_object(), b.get());
}

TEST(Audit, FieldsCarryTheirFixedMetadata) {
    auto audit = automation::make_ref<CeldosSeguimiento>();
    const auto n_profile = audit->get_NProfile();
    EXPECT_EQ(n_profile->get_Name(), u"NProfile");
    EXPECT_EQ(n_profile->get_SourceName(), u"strNProfile");
    EXPECT_EQ(n_profile->get_Size(), 15);
    EXPECT_TRUE(n_profile->get_Required());
    EXPECT_EQ(n_profile->get_DefaultValue(), Variant(u"Admin"));
    EXPECT_EQ(n_profile->get_DataType(), fields::exText) << "a new field's type";
    const auto u_fecha = audit->get_UFecha();
    EXPECT_EQ(u_fecha->get_SourceName(), u"dtmUFecha");
    EXPECT_EQ(u_fecha->get_DataType(), fields::exDateTime);
    const automation::Date noon = *automation::make_date(2024, 5, 17, 12, 0, 0);
    automation::ClockScope pinned(noon);
    EXPECT_EQ(u_fecha->get_DefaultValue(), Variant(noon)) << "the default text Now() reads as the moment";
    EXPECT_EQ(audit->get_UProfile()->get_Name(), u"UProfile");
    EXPECT_EQ(audit->get_NFecha()->get_Name(), u"NFecha");
}

TEST(Audit, RegistroBuildsANewCollectionOfTheSameFields) {
    auto audit = automation::make_ref<CeldosSeguimiento>();
    auto one = audit->Registro();
    auto two = audit->Registro();
    EXPECT_NE(one.get(), two.get());
    Variant key(u"NFecha");
    EXPECT_EQ(one->get_Item(key).get(), two->get_Item(key).get());
    EXPECT_EQ(one->get_Item(key).get(), audit->get_NFecha().get());

    auto other = automation::make_ref<fields::clsCeldo>();
    other->let_Name(u"Quien");
    audit->set_NProfile(other);
    auto three = audit->Registro();
    EXPECT_EQ(&three->at(0), other.get());
    Variant quien(u"quien");
    EXPECT_EQ(three->get_Item(quien).get(), other.get());

    // Assing into a row holding them leaves the audit values alone.
    auto row = audit->Registro();
    row->at(1).let_Value(Variant(u"Ana"));
    auto values = automation::make_ref<clsCeldos>();
    for (int i = 0; i < 4; ++i)
        values->Add(u"V", u"", fields::exText, 0, -1, false, u"", u"", Variant(u"x"), kNone, kNone, kNone);
    row->Assing(values);
    EXPECT_EQ(audit->get_UProfile()->get_Value(), Variant(u"Ana"));
    EXPECT_EQ(other->get_Value(), Variant(u"x")) << "a replaced field under another name is assigned";
}

}  // namespace
}  // namespace celdo::collections

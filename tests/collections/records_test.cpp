// Rows kept by clsRegistro (shared or copied, keys, positions, errors) and the audit fields of
// CeldosSeguimiento.
#include "tests/fields/field_support.hpp"

#include "automation/enumerator.hpp"
#include "collections/CeldosSeguimiento.hpp"
#include "collections/clsRegistro.hpp"

namespace celdo::testing {
namespace {

Ref<clsCeldos> row_of(std::u16string value) {
    auto row = make_ref<clsCeldos>();
    add_field(*row, u"Nombre", exText, Variant(value));
    return row;
}

class Records : public ::testing::Test {
protected:
    Ref<clsCeldos> item(Variant index) { return records->get_Item(index); }
    Variant name_in(Variant index) { return item(std::move(index))->at(0).get_Value(); }
    Ref<clsRegistro> records = make_ref<clsRegistro>();
};

TEST_F(Records, AddSharesAndAppendAsCopiesWhichAreKeyed) {
    auto a = row_of(u"uno");
    records->AppendAs(a, u"r1");
    records->Add(a, u"r2");
    a->at(0).let_Value(Variant(u"cambiado"));
    EXPECT_EQ(name_in(u"r1"), Variant(u"uno")) << "the copy keeps what it was";
    EXPECT_EQ(item(u"R2").get(), a.get()) << "the shared row, found without regard to case";
    Variant name(u"Nombre");
    EXPECT_EQ(item(u"r1")->get_Item(name).get(), &item(u"r1")->at(0));
}

TEST_F(Records, KeysAreUniqueAndTakenAsGivenAndPositionsCountFromOne) {
    records->Add(row_of(u"a"), u"k");
    EXPECT_EQ(error_of([&] { records->Add(row_of(u"b"), u"K"); }).number(), 457);
    EXPECT_EQ(error_of([&] { records->AppendAs(row_of(u"b"), u"k"); }).number(), 457);
    records->Add(row_of(u"c"), u"");
    records->Add(row_of(u"d"), u"");  // rows without a key are all kept
    EXPECT_EQ(records->get_Count(), 3);
    EXPECT_EQ(std::tuple(records->Exist(u"K"), records->Exist(u" k"), records->Exist(u"")),
              std::tuple(true, false, false));  // no trimming
    // A number of any type is a position (a Double rounds); anything not found is error 5.
    for (auto [index, name] : {std::pair(Variant(int16_t{2}), u"c"), {int32_t{1}, u"a"}, {1.6, u"c"}, {u"k", u"a"}})
        EXPECT_EQ(name_in(index), Variant(name)) << automation::debug_string(index);
    for (Variant bad : {Variant(int32_t{0}), Variant(int32_t{4}), Variant(), Variant::null(), Variant(u" k")})
        EXPECT_EQ(error_of([&] { item(bad); }).number(), 5) << automation::debug_string(bad);
    Variant position(int32_t{1}), unknown(u"nada");
    records->Remove(position);
    EXPECT_EQ(std::tuple(records->get_Count(), name_in(1)), std::tuple(2, Variant(u"c")));
    EXPECT_EQ(error_of([&] { records->Remove(unknown); }).number(), 5);
    auto walk = records->get_NewEnum();
    std::vector<automation::Object*> walked;
    auto& e = dynamic_cast<automation::SnapshotEnumerator&>(*walk);
    for (Variant row; e.next(row);) walked.push_back(row.as_object());
    EXPECT_EQ(walked, (std::vector<automation::Object*>{item(1).get(), item(2).get()})) << "the rows in order";
    records->Clear();
    EXPECT_EQ(records->get_Count(), 0);
}

TEST(Audit, FieldsCarryTheirFixedMetadata) {
    auto audit = make_ref<CeldosSeguimiento>();
    const auto who = audit->get_NProfile(), when = audit->get_UFecha();
    EXPECT_EQ(std::tuple(who->get_Name(), who->get_SourceName(), who->get_Size(), who->get_Required(),
                         who->get_DefaultValue(), who->get_DataType()),
              std::tuple(u"NProfile", u"strNProfile", 15, true, Variant(u"Admin"), exText));
    EXPECT_EQ(std::tuple(when->get_SourceName(), when->get_DataType()), std::tuple(u"dtmUFecha", exDateTime));
    const automation::Date noon = *automation::make_date(2024, 5, 17, 12, 0, 0);
    automation::ClockScope pinned(noon);
    EXPECT_EQ(when->get_DefaultValue(), Variant(noon)) << "the default text Now() reads as the moment";
    EXPECT_EQ(names_of(*audit->Registro()), u"NProfile,UProfile,NFecha,UFecha");
}

TEST(Audit, RegistroBuildsANewCollectionOfTheSameFields) {
    auto audit = make_ref<CeldosSeguimiento>();
    auto one = audit->Registro(), two = audit->Registro();
    EXPECT_NE(one.get(), two.get());
    for (size_t i = 0; i < 4; ++i) EXPECT_EQ(&one->at(i), &two->at(i));
    Variant key(u"NFecha");
    EXPECT_EQ(one->get_Item(key).get(), audit->get_NFecha().get());

    auto other = make_ref<clsCeldo>();
    other->let_Name(u"Quien");
    audit->set_NProfile(other);
    auto three = audit->Registro();
    Variant quien(u"quien");
    EXPECT_EQ(std::tuple(&three->at(0), three->get_Item(quien).get()), std::tuple(other.get(), other.get()));

    // Assing into a row holding them leaves the audit values alone.
    auto row = audit->Registro();
    row->at(1).let_Value(Variant(u"Ana"));
    auto values = make_ref<clsCeldos>();
    for (int i = 0; i < 4; ++i) add_field(*values, u"V", exText, Variant(u"x"));
    row->Assing(values);
    EXPECT_EQ(audit->get_UProfile()->get_Value(), Variant(u"Ana"));
    EXPECT_EQ(other->get_Value(), Variant(u"x")) << "a replaced field under another name is assigned";
}

}  // namespace
}  // namespace celdo::testing

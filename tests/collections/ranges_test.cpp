// Ranges: the name list cutter, and the named or other fields, shared or copied.
#include "tests/fields/field_support.hpp"

#include "xml/reader.hpp"

namespace celdo::testing {
namespace {

std::u16string joined(const std::vector<std::u16string>& items) {
    std::u16string out;
    for (const auto& item : items) out += u"[" + item + u"]";
    return out;
}

TEST(CutNames, TrimsSkipsEmptyItemsAndKeepsQuotedCommas) {
    const auto cut = [](std::u16string_view list) { return joined(xml::cut_names(list)); };
    expect_rows<std::u16string>({
        {cut(u"Codigo, Nombre"), u"[Codigo][Nombre]"}, {cut(u"Codigo,,  ,Nombre,"), u"[Codigo][Nombre]"},
        {cut(u" \"Total, neto\" ,A"), u"[Total, neto][A]"},
        {cut(u"\"a\"b\",c"), u"[a\"b][c]"},  // the quote that a comma follows closes,
        {cut(u"\"a\"b"), u"[a][b]"},          // else the next quote,
        {cut(u"\"abierto, x"), u"[abierto, x]"},  // else the end
        {cut(u""), u""}, {cut(u"  "), u""},
    });
}

class Ranges : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char16_t* name : {u"Nombre", u"Codigo", u"Total", u"NProfile", u"UFecha"})
            add_field(*row, name, exText, Variant(std::u16string(name) + u"!"));
    }
    Ref<clsCeldos> row = make_ref<clsCeldos>();
};

TEST_F(Ranges, RangeSharesTheNamedFieldsInTheListsOrder) {
    auto r = row->Range(u"codigo, Nombre, Ausente,,Codigo");
    EXPECT_EQ(names_of(*r), u"Codigo,Nombre,Codigo") << "a repeat is appended again";
    EXPECT_EQ(&r->at(0), &row->at(1)) << "the same object";
    EXPECT_EQ(r->at(0).get_Position(), 1) << "positions stay as they were";
    Variant key(u"Codigo");
    EXPECT_EQ(r->get_Item(key).get(), &r->at(0)) << "the first is keyed, the repeat not";
    EXPECT_EQ(row->Range(u" , ")->size(), 0u);
}

TEST_F(Ranges, RangeAsCopies) {
    auto r = row->RangeAs(u"Total");
    ASSERT_EQ(r->size(), 1u);
    EXPECT_NE(&r->at(0), &row->at(2));
    r->at(0).let_Value(Variant(u"changed"));
    EXPECT_EQ(row->at(2).get_Value(), Variant(u"Total!"));
    EXPECT_EQ(r->at(0).get_Position(), 0) << "a copy starts without a position and takes its place here";
}

TEST_F(Ranges, RangeExKeepsTheOthersInThisOrder) {
    auto r = row->RangeEx(u"NProfile,UProfile,NFecha,ufecha,ufecha");
    EXPECT_EQ(names_of(*r), u"Nombre,Codigo,Total");
    EXPECT_EQ(&r->at(2), &row->at(2));
    EXPECT_EQ(names_of(*row->RangeEx(u"")), names_of(*row));
    auto copies = row->RangeExAs(u"Nombre");
    EXPECT_EQ(names_of(*copies), u"Codigo,Total,NProfile,UFecha");
    EXPECT_NE(&copies->at(0), &row->at(1));
    EXPECT_EQ(copies->at(0).get_Value(), Variant(u"Codigo!"));
}

}  // namespace
}  // namespace celdo::testing

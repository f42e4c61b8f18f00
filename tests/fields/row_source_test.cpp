// Row sources: the derived kind, the parsed value list, the column settings.
#include <gtest/gtest.h>

#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "tests/fields/field_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::fields {
namespace {

using automation::Variant;
using celdo::testing::field_of;

TEST(RowSourceType, IsDerivedFromTheText) {
    auto f = field_of(exText);
    const std::pair<const char16_t*, exRowSourceType> cases[] = {
        {u"select * from t", exQuery}, {u"Exec sp_lista", exSPReturnValues}, {u"A;B;C", exValueList},
        {u"Clientes", exQuery},        {u"", exQuery},                       {u";A", exQuery},
        {u"1,Uno", exValueList},       {u"Executive;Manager", exValueList},
    };
    for (auto [text, kind] : cases) {
        f->let_RowSource(text);
        EXPECT_EQ(f->get_RowSourceType(), kind) << automation::utf16_to_utf8(text);
    }
    f->let_RowSource(u"Clientes");
    f->let_RowSourceType(exValueList);
    EXPECT_EQ(f->get_RowSourceType(), exQuery) << "the Let only records a wish";
}

TEST(GetRowSource, ParsesAValueListColumnByColumn) {
    auto f = field_of(exLong);
    f->let_ColumnCount(2);
    f->let_RowSource(u"1;Uno;2;Dos");
    Variant rows = f->get_GetRowSource();
    ASSERT_TRUE(rows.is_array());
    const automation::Array& a = rows.as_array();
    EXPECT_EQ(a.ubound(1), 1);
    EXPECT_EQ(a.ubound(2), 1);
    EXPECT_EQ(a.at(0, 0), Variant(u"1"));
    EXPECT_EQ(a.at(1, 0), Variant(u"Uno"));
    EXPECT_EQ(a.at(0, 1), Variant(u"2"));
    EXPECT_EQ(a.at(1, 1), Variant(u"Dos"));
}

TEST(GetRowSource, WithoutAColumnCountTheListIsOneColumn) {
    auto f = field_of(exText);
    f->let_RowSource(u" A ; B,C ");
    const automation::Array a = f->get_GetRowSource().as_array();
    EXPECT_EQ(a.ubound(1), 0);
    EXPECT_EQ(a.ubound(2), 2);
    EXPECT_EQ(a.at(0, 1), Variant(u"B"));
    EXPECT_EQ(a.at(0, 2), Variant(u"C"));
}

TEST(GetRowSource, HeadsBecomeTheColumnHeader) {
    auto f = field_of(exText);
    f->let_ColumnCount(3);
    f->let_ColumnHeads(true);
    f->let_RowSource(u"Codigo;Nombre");
    const automation::Array a = f->get_GetRowSource().as_array();
    auto header = f->GetColumnHeader();
    ASSERT_TRUE(header);
    ASSERT_EQ(header->get_Count(), 3);
    EXPECT_EQ(header->at(0).get_Name(), u"Codigo");
    EXPECT_EQ(header->at(1).get_Name(), u"Nombre");
    EXPECT_EQ(header->at(2).get_Name(), u"Celdo3") << "a column without a head is numbered from 1";
    EXPECT_TRUE(a.at(0, 0).is_empty());
}

TEST(GetRowSource, QueriesAreLeftToTheHost) {
    auto f = field_of(exText);
    f->let_RowSource(u"Select Codigo From Tallas");
    EXPECT_TRUE(f->get_GetRowSource().is_empty());
}

TEST(DisplayControlType, ListsTheChoosableControlsWithSpanishNames) {
    const automation::Array a = field_of(exText)->get_DisplayControlType().as_array();
    ASSERT_EQ(a.ubound(2), 5);
    EXPECT_EQ(a.at(0, 0), Variant(static_cast<int32_t>(exTextBox)));
    EXPECT_EQ(a.at(1, 0), Variant(u"Cuadro de texto"));
    EXPECT_EQ(a.at(0, 5), Variant(static_cast<int32_t>(exCheckBox)));
    EXPECT_EQ(a.at(1, 3), Variant(u"Botón de opciones"));
}

TEST(ColumnWidth, ComputedFromTheDisplaySizeUntilSet) {
    auto f = field_of(exLong);
    EXPECT_EQ(f->get_ColumnWidth(), 14 * 120);
    f->let_ColumnWidth(900);
    EXPECT_EQ(f->get_ColumnWidth(), 900);
    auto wide = field_of(exText);
    wide->let_Size(1000);
    EXPECT_EQ(wide->get_ColumnWidth(), 32767);
}

TEST(ColumnHeader, IsTheReferenceTheHostSets) {
    auto f = field_of(exText);
    auto header = automation::make_ref<collections::clsCeldos>();
    f->set_ColumnHeader(header);
    EXPECT_EQ(f->GetColumnHeader().get(), header.get());
}

}  // namespace
}  // namespace celdo::fields

// The field object: defaults at creation and the accessors whose work is more than storing.
#include "fields/clsCeldo.hpp"

#include <gtest/gtest.h>

#include "automation/lifetime.hpp"
#include "collections/clsCeldos.hpp"
#include "tests/fields/field_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::fields {
namespace {

using automation::Variant;
using celdo::testing::error_of;
using celdo::testing::field_of;

TEST(FieldDefaults, ANewFieldHasItsCreationDefaults) {
    auto f = automation::make_ref<clsCeldo>();
    EXPECT_EQ(f->get_DataType(), exText);
    EXPECT_EQ(f->get_Size(), 0);
    EXPECT_TRUE(f->get_Visible());
    EXPECT_EQ(f->get_Position(), -1);
    EXPECT_EQ(f->get_Operator(), u"=");
    EXPECT_EQ(f->get_Conjunction(), u"And");
    EXPECT_EQ(f->get_Direction(), exParamUndefined);
    EXPECT_EQ(f->get_RowSourceType(), exQuery) << "derived from the empty row source";
    EXPECT_EQ(f->get_DisplayControl(), exNoDisplayControl);
    EXPECT_EQ(f->get_NodeType(), xntNode);
    EXPECT_FALSE(f->get_HasChildren());
    EXPECT_TRUE(f->get_Value().is_empty());
    EXPECT_TRUE(f->get_OldValue().is_empty());
    EXPECT_FALSE(f->GetColumnHeader());
    ASSERT_TRUE(f->get_ExtendProperties());
    EXPECT_EQ(f->get_Children()->get_Count(), 0);
    EXPECT_NE(f->get_Children().get(), f->get_Attributes().get());
}

// The three collections are made when first asked for: a host sees the same object on every
// read, and a Nothing it set is not replaced by a new collection.
TEST(FieldSubCollections, AreMadeOnceOnDemandAndKeepWhatWasSet) {
    auto& registry = automation::ObjectRegistry::current();
    const size_t before = registry.live();
    auto f = field_of(exText);
    f->let_Value(Variant(u"x"));
    (void)f->XML(u"");
    std::u16string encoding, names;
    (void)f->XMLAttribute(encoding, names);
    (void)f->Clip();
    EXPECT_EQ(registry.live() - before, 1u) << "writing a plain field made no collections";
    EXPECT_EQ(f->get_Children().get(), f->get_Children().get());
    EXPECT_EQ(f->get_Attributes().get(), f->get_Attributes().get());
    EXPECT_EQ(f->get_ExtendProperties().get(), f->get_ExtendProperties().get());
    f->set_ExtendProperties(nullptr);
    EXPECT_FALSE(f->get_ExtendProperties());
    EXPECT_TRUE(f->Item(u"Mask").is_empty()) << "an extra property read without any";
}

TEST(FieldDataType, ResetsSizeAndRoundingByType) {
    auto f = field_of(exText);
    f->let_Size(50);
    f->let_DataType(exLong);
    EXPECT_EQ(f->get_Size(), 15) << "stored 0, default by type";
    EXPECT_EQ(f->get_Redondeo(), 0);
    f->let_DataType(exCurrency);
    EXPECT_EQ(f->get_Redondeo(), 4);
    EXPECT_EQ(f->get_Size(), 30);
    f->let_DataType(exDate);
    EXPECT_EQ(f->get_Redondeo(), 4) << "dates leave the rounding as it was";
    EXPECT_EQ(f->get_Size(), 5);
    f->let_DataType(exDouble);
    EXPECT_EQ(f->get_Redondeo(), 8);
}

TEST(FieldDataType, TextTypesKeepTheirSize) {
    auto f = field_of(exText);
    f->let_Size(50);
    f->let_DataType(exChar);
    EXPECT_EQ(f->get_Size(), 50);
    f->let_DataType(exExpresion);
    EXPECT_EQ(f->get_Size(), 50);
    f->let_DataType(exDataTime);
    EXPECT_EQ(f->get_DataType(), exDateTime) << "two names, one value";
    EXPECT_EQ(f->get_Size(), 5);
}

TEST(FieldSourceName, IsTrimmedAndSetOnceUnlessAnExpression) {
    auto f = field_of(exText);
    f->let_SourceName(u"  CODIGO  ");
    EXPECT_EQ(f->get_SourceName(), u"CODIGO");
    f->let_SourceName(u"OTRO");
    EXPECT_EQ(f->get_SourceName(), u"CODIGO");
    f->let_SourceName(u"");
    f->let_SourceName(u"OTRO");
    EXPECT_EQ(f->get_SourceName(), u"OTRO");
    f->let_DataType(exExpresion);
    f->let_SourceName(u"Precio * 2");
    EXPECT_EQ(f->get_SourceName(), u"Precio * 2");
}

TEST(FieldSourceName, TheTableIsSetOnceWhateverTheType) {
    auto f = field_of(exExpresion);
    f->let_SourceTableName(u" T ");
    f->let_SourceTableName(u"U");
    EXPECT_EQ(f->get_SourceTableName(), u"T");
    f->let_SourceTableName(u"");
    f->let_SourceTableName(u"U");
    EXPECT_EQ(f->get_SourceTableName(), u"U");
}

TEST(FieldNames, CorrelationalNameJoinsTableAndColumn) {
    auto f = field_of(exText);
    f->let_SourceTableName(u"T");
    EXPECT_EQ(f->get_CorrelationalName(), u"") << "no source name, nothing";
    f->let_SourceName(u"C");
    EXPECT_EQ(f->get_CorrelationalName(), u"T.C");
    auto g = field_of(exText);
    g->let_SourceName(u"C");
    EXPECT_EQ(g->get_CorrelationalName(), u"C");
}

TEST(FieldNames, AliasNameAddsACleanedCaptionWhenItDiffers) {
    auto f = field_of(exText);
    f->let_SourceName(u"C");
    f->let_Caption(u"C");
    EXPECT_EQ(f->get_AliasName(), u"C");
    f->let_Caption(u"c");
    EXPECT_EQ(f->get_AliasName(), u"C") << "case-insensitive";
    f->let_Caption(u"Valor total");
    EXPECT_EQ(f->get_AliasName(), u"C As Valortotal");
    f->let_Caption(u"Año: +/-#'*");
    EXPECT_EQ(f->get_AliasName(), u"C As Año");
    f->let_SourceTableName(u"T");
    EXPECT_EQ(f->get_AliasName(), u"T.C As Año");
    f->let_Caption(u"C");
    EXPECT_EQ(f->get_AliasName(), u"T.C");
}

TEST(FieldNames, AliasOfAnExpressionWithoutSourceIsItsDescription) {
    auto f = field_of(exnumExpresion);
    f->let_Caption(u"Total neto");
    f->let_Description(u"Sum(Precio)");
    EXPECT_EQ(f->get_AliasName(), u"Sum(Precio) As Totalneto");
    auto g = field_of(exText);
    g->let_Caption(u"X");
    EXPECT_EQ(g->get_AliasName(), u"");
}

TEST(FieldCaption, FallsBackToTheNameWithoutItsPrefix) {
    auto f = field_of(exText, u"strNombre");
    EXPECT_EQ(f->get_Caption(), u"Nombre");
    f->let_Name(u"TxtCodigo");
    EXPECT_EQ(f->get_Caption(), u"Codigo");
    f->let_Name(u"Codigo");
    EXPECT_EQ(f->get_Caption(), u"Codigo") << "no prefix, the name as it is";
    f->let_Name(u"icboLista");
    EXPECT_EQ(f->get_Caption(), u"icboLista") << "only three-letter prefixes are looked up";
    f->let_Caption(u"Mi campo");
    EXPECT_EQ(f->get_Caption(), u"Mi campo");
}

TEST(FieldNodeType, UnknownIsAnErrorWhenRead) {
    auto f = field_of(exText);
    f->let_NodeType(xntUnknown);
    auto e = error_of([&] { (void)f->get_NodeType(); });
    EXPECT_EQ(e.number(), -2147221504);
    EXPECT_EQ(e.source(), u"Celdo.NodeType");
    EXPECT_EQ(e.description(), u"Required property not initialized");
    f->let_NodeType(xntComment);
    EXPECT_EQ(f->get_NodeType(), xntComment);
}

TEST(FieldChildren, HasChildrenFollowsTheChildrenCollection) {
    auto f = field_of(exText);
    Variant none = Variant::missing();
    f->get_Children()->Append(field_of(exText, u"hijo"), none, none, u"");
    EXPECT_TRUE(f->get_HasChildren());
}

}  // namespace
}  // namespace celdo::fields

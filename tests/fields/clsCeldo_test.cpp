// The field object: defaults at creation and the accessors whose work is more than storing.
#include "tests/fields/field_support.hpp"

#include "automation/lifetime.hpp"

namespace celdo::testing {
namespace {

TEST(FieldDefaults, ANewFieldHasItsCreationDefaults) {
    auto f = make_ref<clsCeldo>();
    // The row source type is derived from the empty row source.
    EXPECT_EQ(props(*f, "DataType,Size,Visible,Position,Operator,Conjunction,Direction,RowSourceType,DisplayControl,"
                        "NodeType,HasChildren,Value,OldValue"),
              R"(1014|0|True|-1|"="|"And"|2004|5380|5396|1|False|Empty|Empty)");
    EXPECT_FALSE(f->GetColumnHeader());
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

TEST(FieldDataType, ResetsSizeAndRoundingByTypeButTextTypesKeepTheirSize) {
    // Each type set after the one before on one field, its size first set to 50: the stored
    // size becomes 0, read as the type's default; dates leave the rounding as it was.
    const std::tuple<ExDataType, int32_t, int16_t> steps[] = {
        {exLong, 15, 0}, {exCurrency, 30, 4}, {exDate, 5, 4}, {exDouble, 0, 8}, {exDataTime, 5, 8}};
    auto f = field_of(exText);
    f->let_Size(50);
    for (const auto& [type, size, rounding] : steps) {
        f->let_DataType(type);
        EXPECT_EQ(f->get_Size(), size) << type;
        EXPECT_EQ(f->get_Redondeo(), rounding) << type;
    }
    EXPECT_EQ(f->get_DataType(), exDateTime) << "two names, one value";
    for (ExDataType type : {exChar, exExpresion}) {
        f->let_Size(50);
        f->let_DataType(type);
        EXPECT_EQ(f->get_Size(), 50) << type;
    }
}

TEST(FieldNames, SourceNamesAreTrimmedAndSetOnceUnlessAnExpression) {
    auto f = field_of(exText);
    for (const char16_t* name : {u"  CODIGO  ", u"OTRO"}) f->let_SourceName(name), f->let_SourceTableName(name);
    EXPECT_EQ(props(*f, "SourceName,SourceTableName"), R"("CODIGO"|"CODIGO")");
    for (const char16_t* name : {u"", u"OTRO"}) f->let_SourceName(name), f->let_SourceTableName(name);
    EXPECT_EQ(props(*f, "SourceName,SourceTableName"), R"("OTRO"|"OTRO")");
    f->let_DataType(exExpresion);
    f->let_SourceName(u"Precio * 2");
    f->let_SourceTableName(u"U");
    EXPECT_EQ(props(*f, "SourceName,SourceTableName"), R"("Precio * 2"|"OTRO")") << "the table is set once whatever the type";
}

TEST(FieldNames, CorrelationalAliasAndCaption) {
    struct Case {
        ExDataType type;
        const char16_t *table, *source, *caption, *description, *correlational, *alias;
    };
    const Case cases[] = {
        {exText, u"T", u"", u"", u"", u"", u""},  // no source name, nothing
        {exText, u"", u"C", u"C", u"", u"C", u"C"},
        {exText, u"", u"C", u"c", u"", u"C", u"C"},  // case-insensitive
        {exText, u"", u"C", u"Valor total", u"", u"C", u"C As Valortotal"},
        {exText, u"", u"C", u"Año: +/-#'*", u"", u"C", u"C As Año"},
        {exText, u"T", u"C", u"Año", u"", u"T.C", u"T.C As Año"},
        {exText, u"T", u"C", u"C", u"", u"T.C", u"T.C"},
        {exnumExpresion, u"", u"", u"Total neto", u"Sum(Precio)", u"", u"Sum(Precio) As Totalneto"},
        {exText, u"", u"", u"X", u"Sum(Precio)", u"", u""},
    };
    for (const Case& c : cases) {
        auto f = field_of(c.type);
        f->let_SourceTableName(c.table);
        f->let_SourceName(c.source);
        f->let_Caption(c.caption);
        f->let_Description(c.description);
        EXPECT_EQ(f->get_CorrelationalName(), c.correlational);
        EXPECT_EQ(f->get_AliasName(), c.alias) << automation::utf16_to_utf8(c.caption);
    }
    // Without a caption, the name less a three-letter prefix.
    const std::pair<const char16_t*, const char16_t*> captions[] = {
        {u"strNombre", u"Nombre"}, {u"TxtCodigo", u"Codigo"}, {u"Codigo", u"Codigo"}, {u"icboLista", u"icboLista"}};
    for (const auto& [name, caption] : captions) EXPECT_EQ(field_of(exText, name)->get_Caption(), caption);
}

TEST(FieldNodeType, UnknownIsAnErrorWhenReadAndHasChildrenFollowsTheChildren) {
    auto f = field_of(exText);
    f->let_NodeType(xntUnknown);
    auto e = error_of([&] { (void)f->get_NodeType(); });
    EXPECT_EQ(std::tuple(e.number(), e.source(), e.description()),
              std::tuple(-2147221504, std::u16string(u"Celdo.NodeType"), std::u16string(u"Required property not initialized")));
    f->let_NodeType(xntComment);
    EXPECT_EQ(f->get_NodeType(), xntComment);
    f->get_Children()->Append(field_of(exText, u"hijo"), Variant::missing(), Variant::missing(), u"");
    EXPECT_TRUE(f->get_HasChildren());
}

}  // namespace
}  // namespace celdo::testing

// The collection's text forms: clip and XML joined from the fields, the value, caption and
// name lines, the attribute list and Parse with its errors, round trips and long texts.
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

class Row : public ::testing::Test {
protected:
    Ref<clsCeldo> add(std::u16string name, Variant value = Variant(), ExDataType type = exText) {
        return add_field(*row, std::move(name), type, value.is_empty() ? kNone : value);
    }
    std::u16string parse(std::u16string text, std::u16string encode = u"") {
        EXPECT_TRUE(row->Parse(encode, text));
        return text;
    }
    Ref<clsCeldos> row = make_ref<clsCeldos>();
};

TEST_F(Row, ClipXMLAndHeaderJoinTheFieldsFormsWithoutARoot) {
    add(u"A", Variant(1), exLong)->let_Caption(u"Código");
    add(u"B")->let_Caption(u"Nombre");
    add(u"C", Variant(u"x.y"));
    EXPECT_EQ(row->Clip(), u"1\t\tx.y\t");
    EXPECT_EQ(row->XML(u"UTF-8"), u"<A>1</A>\r\n<B></B>\r\n<C>x&#46;y</C>\r\n");
    EXPECT_EQ(row->get_ClipAttribute(), u"1\t\tx.y\t");
    row->at(2).load_value(Variant::null());
    EXPECT_EQ(row->get_ClipAttribute(), u"1\t\t\t") << "one tab per field";
    EXPECT_EQ(row->get_ClipHeader(), u"Código\tNombre\tC");
    clsCeldos none;
    EXPECT_EQ(none.XML(u"") + none.Clip() + none.get_ClipAttribute() + none.get_XMLAttribute(u""), u"");
    EXPECT_EQ(error_of([&] { none.get_ClipHeader(); }).number(), 5);
}

TEST_F(Row, ClipNamesJoinsOnePropertyAddingNumbersAsTheLanguagesPlusDoes) {
    add(u"A")->let_Caption(u"Alfa");
    add(u"B")->let_Caption(u"Beta");
    row->at(0).let_Size(10), row->at(1).let_Size(20);
    std::u16string property, comma = u",", semicolons = u";;", one = u"1", caption = u"Caption", size = u"Size";
    EXPECT_EQ(row->ClipNames(property, comma), u"A,B");
    EXPECT_EQ(property, u"Name") << "the default is written back";
    EXPECT_EQ(row->ClipNames(caption, semicolons), u"Alfa;;Beta");
    EXPECT_EQ(clsCeldos().ClipNames(caption, semicolons), u"");
    // ((10 + "1") + 20) + "1" = 32, and the last character is cut as the delimiter.
    EXPECT_EQ(row->ClipNames(size, one), u"3");
    EXPECT_EQ(error_of([&] { row->ClipNames(size, comma); }).number(), 13);
}

TEST_F(Row, XMLAttributeWritesValuedOrRequiredFields) {
    add(u"Codigo")->let_Required(true);
    add(u"Vacio");
    add(u"Nombre", Variant(u"Peña & \"hijos\""));
    add(u"Ciudad", Variant(u"Ávila"));
    EXPECT_EQ(row->get_XMLAttribute(u"UTF-8"), u" Codigo=\"\" Nombre=\"Pe&ntilde;a &amp; &quot;hijos&quot;\" Ciudad=\"Ávila\"");
    EXPECT_EQ(row->get_XMLAttribute(u"ISO-8859-1"),
              u" Codigo=\"\" Nombre=\"Pe&ntilde;a &amp; &quot;hijos&quot;\" Ciudad=\"\u00C3\u0081vila\"");
}

TEST_F(Row, ParseSetsExistingFieldsAndAddsTheRestAsText) {
    auto codigo = add(u"Codigo", Variant(1), exLong);
    parse(u" codigo=\"12\" Nombre=\"A&amp;B\" Nota='dijo \"no\"'");
    ASSERT_EQ(row->size(), 3u);
    EXPECT_EQ(codigo->get_Value(), Variant(int32_t{12})) << "an existing field takes the value through its Let";
    EXPECT_EQ(props(row->at(1), "Name,DataType,Value,Position") + props(row->at(2), "Value"),
              R"("Nombre"|1014|"A&B"|1"dijo "no"")");
    std::u16string nothing;
    EXPECT_TRUE(row->Parse(u"", nothing));
    EXPECT_EQ(row->size(), 3u);
}

TEST_F(Row, ParseRaisesAfterApplyingWhatCameBefore) {
    struct Case {
        const char16_t* text;
        const char16_t* description;
    } cases[] = {
        {u"A=\"1\" Codigo=12", u"Malformed quotation"},
        {u"A=\"1\" Co digo=\"1\"", u"Illegal element name: Co digo"},
        {u"A=\"1\" Codigo =\"1\"", u"Illegal element name: Codigo "},
        {u"A=\"1\" B=\"x<y\"", u"Bad attribute value encoding"},
        {u"A=\"1\" ", u"Illegal element name: "},
        {u"A=\"1\" B= \"2\"", u"Illegal element name: "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(automation::utf16_to_utf8(c.text));
        row = make_ref<clsCeldos>();
        std::u16string text = c.text;
        auto e = error_of([&] { row->Parse(u"", text); });
        EXPECT_EQ(std::tuple(e.number(), e.source(), e.description()),
                  std::tuple(-2147221504, std::u16string(u"Celdo.Parse"), std::u16string(c.description)));
        ASSERT_GE(row->size(), 1u);
        EXPECT_EQ(row->at(0).get_Value(), Variant(u"1")) << "the attribute before the error stays applied";
    }
}

// Every character the escapes, the entities and the byte form touch comes back, and texts
// beyond 32,767 characters work like short ones rather than overflowing.
TEST_F(Row, LongTextsGoThroughEveryForm) {
    std::u16string memo;
    for (int i = 0; i < 20000; ++i) memo += u"línea 1.5 & &amp; <b> \"'= /&#46; ÑÓ€\u1000\U0001F600\t[]!\r\n";
    ASSERT_GT(memo.size(), 300000u);
    add(u"Memo", Variant(memo), exMemo);
    add(u"Fin", Variant(u"x"));
    for (std::u16string encode : {u"", u"UTF-8", u"ISO-8859-1"}) {
        std::u16string attributes = row->get_XMLAttribute(encode);
        clsCeldos back;
        ASSERT_TRUE(back.Parse(encode, attributes));
        EXPECT_EQ(std::tuple(back.at(0).get_Value(), back.at(1).get_Value()), std::tuple(Variant(memo), Variant(u"x")));

        std::u16string elements = row->XML(encode);
        int32_t position = 0;
        auto loaded = make_ref<clsCeldo>();
        loaded->LoadElement(encode, position, elements);
        EXPECT_EQ(loaded->get_OriginalValue(), Variant(memo));
        loaded->LoadElement(encode, position, elements);
        EXPECT_EQ(std::tuple(loaded->get_Name(), position), std::tuple(u"Fin", static_cast<int32_t>(elements.size())));
    }
}

}  // namespace
}  // namespace celdo::testing

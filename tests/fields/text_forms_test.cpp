// The field's text forms: the value as XML text, the element writer at every nesting level,
// the clip line, the metadata attributes and their reading back, and by-name access.
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

Ref<clsCeldo> leaf(std::u16string name, Variant value, ExDataType type = exText) {
    auto f = field_of(type, std::move(name));
    if (!value.is_empty()) f->let_Value(value);
    return f;
}

Ref<clsCeldo> node_of(std::u16string name, XMLNodeTypes type, std::u16string value = u"") {
    auto f = field_of(exText, std::move(name));
    f->let_NodeType(type);
    if (!value.empty()) f->load_value(Variant(value));
    return f;
}

void append(clsCeldo& parent, const Ref<clsCeldo>& child) { parent.get_Children()->Append(child, kNone, kNone, u""); }

TEST(ValueText, EscapesAndUnderAnIso8859NameGivesTheByteForm) {
    auto f = leaf(u"T", Variant(u"Año 1.5 <Ó>"));
    EXPECT_EQ(f->value_text(u"UTF-8"), u"A&ntilde;o 1&#46;5 &lt;Ó&gt;");
    EXPECT_EQ(f->value_text(u""), u"A&ntilde;o 1&#46;5 &lt;Ó&gt;") << "an empty name escapes all the same";
    // Upper-case accents are not in the entity table: they reach the byte form as UTF-8.
    EXPECT_EQ(f->value_text(u"iso-8859-1"), u"A&ntilde;o 1&#46;5 &lt;\u00C3\u0093&gt;");
}

TEST(ElementWriter, IndentsStartLinesTwiceAndClosingLinesOnceAndWritesOnlyAttributesWithText) {
    EXPECT_EQ(leaf(u"Codigo", Variant(u"12"))->XML(u""), u"<Codigo>12</Codigo>\r\n");
    auto with_attributes = [](Ref<clsCeldo> f) {
        f->get_Attributes()->Add(u"tipo", u"", exText, 0, -1, false, u"", u"", Variant(u"a/b"), kNone, kNone, kNone);
        f->get_Attributes()->Add(u"sin", u"", exText, 0, -1, false, u"", u"", kNone, kNone, kNone, kNone);
        return f;
    };
    auto root = node_of(u"A", xntNode);
    append(*root, with_attributes(leaf(u"B", Variant(u"1"))));
    auto c = node_of(u"C", xntNode);
    append(*c, leaf(u"D", Variant(u"x")));
    append(*c, node_of(u"", xntCDATA, u"c<d"));
    append(*c, node_of(u"", xntComment, u"nota"));
    append(*c, node_of(u"", xntDOCTYPE, u"html <raw>"));
    append(*root, c);
    append(*root, node_of(u"", xntText, u"suelto"));
    append(*root, leaf(u"Vacio", Variant()));
    append(*root, with_attributes(node_of(u"E", xntEmpty)));
    EXPECT_EQ(root->XML(u"UTF-8"),
              u"<A>\r\n"
              u"    <B tipo=\"a&frasl;b\">1</B>\r\n"
              u"    <C>\r\n"
              u"        <D>x</D>\r\n"
              u"    <![CDATA[c&lt;d]]>\r\n"
              u"    <!--nota-->\r\n"
              u"    <!DOCTYPE html <raw>>\r\n"
              u"  </C>\r\n"
              u"suelto"
              u"    <Vacio></Vacio>\r\n"
              u"    <E tipo=\"a&frasl;b\"/>\r\n"
              u"</A>\r\n");
}

TEST(ClipWriter, GivesTabbedValuesAndOneLinePerRow) {
    auto row = node_of(u"Fila", xntNode);
    append(*row, leaf(u"A", Variant(u"1")));
    append(*row, node_of(u"", xntComment, u"no data"));
    append(*row, leaf(u"B", Variant()));
    append(*row, leaf(u"C", Variant(u"z")));
    EXPECT_EQ(row->Clip(), u"1\t\tz\r\n");

    auto table = node_of(u"Tabla", xntNode);
    append(*table, row);
    append(*table, row);
    EXPECT_EQ(table->Clip(), u"1\t\tz\r\n1\t\tz\r\n") << "rows end their own lines";

    auto odd = node_of(u"X", static_cast<XMLNodeTypes>(9));
    EXPECT_EQ(outcome([&] { odd->Clip(); }), u"Celdo.Clip: Illegal Node Type");
}

class Metadata : public ::testing::Test {
protected:
    void SetUp() override {
        f->let_Caption(u"Código");
        f->let_Size(10);
        f->let_Required(true);
        f->let_UpperCase(true);
        f->let_Redondeo(2);
        f->let_Value(Variant(u"ab/1"));
    }
    Ref<clsCeldo> f = field_of(exText, u"Codigo");
};

TEST_F(Metadata, AttributesFollowTheBuiltInOrderAndTheSelection) {
    std::u16string encode = u"UTF-8";
    std::u16string selection = u"Value, Caption,Name,Unknown";
    EXPECT_EQ(f->XMLAttribute(encode, selection), u" Name=\"Codigo\" Caption=\"C&oacute;digo\" Value=\"AB&frasl;1\"");
    std::u16string all = u"";
    const std::u16string every = f->XMLAttribute(encode, all);
    EXPECT_TRUE(every.starts_with(u" Name=\"Codigo\" Caption=\"C&oacute;digo\"")) << automation::utf16_to_utf8(every);
    EXPECT_NE(every.find(u" DataType=\"1014\" Size=\"10\" Required=\"True\""), std::u16string::npos);
    EXPECT_NE(every.find(u" Round=\"2\""), std::u16string::npos);
    EXPECT_EQ(every.find(u"Mask="), std::u16string::npos) << "no extended property Mask, nothing written";

    // Names without a property of their own come from the extended properties.
    auto extra = Ref<clsCeldos>(dynamic_cast<clsCeldos*>(f->get_ExtendProperties().get()));
    extra->Add(u"Mask", u"", exText, 0, -1, false, u"", u"", Variant(u"##-##"), kNone, kNone, kNone);
    std::u16string mask = u"Mask";
    EXPECT_EQ(f->XMLAttribute(encode, mask), u" Mask=\"##-##\"");
    // A Null object field reads as a new collection: no value text to write, and no error.
    const std::u16string text = field_of(exObject, u"Obj")->XMLAttribute(encode, all);
    EXPECT_EQ(std::tuple(text.find(u" Value="), text.find(u" Name=\"Obj\"")), std::tuple(std::u16string::npos, size_t{0}));
}

TEST_F(Metadata, ParseReadsBackWhatXMLAttributeWrote) {
    // Ó and € are outside the entity table, and U+1000's first byte is the code of "á".
    f->let_Caption(u"Código Ó € \u1000 \"x\" <y> & z.");
    for (std::u16string encode : {u"UTF-8", u"ISO-8859-1"}) {
        std::u16string all;
        std::u16string text = f->XMLAttribute(encode, all);
        auto copy = field_of(exLong, u"Otro");
        EXPECT_TRUE(copy->Parse(encode, text));
        EXPECT_EQ(copy->get_Caption(), u"Código Ó € \u1000 \"x\" <y> & z.") << automation::utf16_to_utf8(encode);
        EXPECT_EQ(props(*copy, "Name,DataType,Size,Required,Redondeo,Value,Position"), R"("Codigo"|1014|10|True|2|"AB/1"|-1)");
    }
}

TEST_F(Metadata, ParseReadsALongTextWithoutAttributesInOnePass) {
    std::u16string encode;
    // After the last attribute, two million characters with no "=": each one would otherwise
    // cost a search to the end.
    std::u16string text = u"Caption=\"fin\" " + std::u16string(2000000, u'y');
    ASSERT_NO_THROW(EXPECT_TRUE(f->Parse(encode, text)));
    EXPECT_EQ(f->get_Caption(), u"fin");
}

}  // namespace
}  // namespace celdo::testing

// The field's text forms where a tree is built (the value's text, the metadata attributes and
// their reading back are rows of field_rules.tsv): the element writer at every nesting level,
// the clip line, and Parse's pace on a long text.
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
}

TEST(Parse, ReadsALongTextWithoutAttributesInOnePass) {
    auto f = field_of(exText);
    std::u16string encode;
    // After the last attribute, two million characters with no "=": each one would otherwise
    // cost a search to the end.
    std::u16string text = u"Caption=\"fin\" " + std::u16string(2000000, u'y');
    ASSERT_NO_THROW(EXPECT_TRUE(f->Parse(encode, text)));
    EXPECT_EQ(f->get_Caption(), u"fin");
}

}  // namespace
}  // namespace celdo::testing

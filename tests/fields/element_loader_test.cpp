// The element loader: every node kind, the writer's indentation, declarations, the depth limit and
// the round trip of random field trees (malformed text is in field_rules.tsv).
#include "tests/fields/field_support.hpp"

#include <random>

namespace celdo::testing {
namespace {

// Loads `text` from `position` into a fresh field; returns the field and leaves the position
// where the loader put it.
Ref<clsCeldo> load(std::u16string text, int32_t& position, std::u16string encode = u"") {
    auto f = make_ref<clsCeldo>();
    const int32_t result = f->LoadElement(encode, position, text);
    EXPECT_EQ(result, position) << "the result is the new position";
    return f;
}

std::u16string value_of(const clsCeldo& f) { return automation::to_string(f.get_OriginalValue()); }

std::string shape(const clsCeldo& f);

// Each text read element after element from its start, every element as shape() writes it.
TEST(LoadElement, ReadsEveryNodeKindEntitiesAndEncodingsAndTakesTheLineEndAfterAnElement) {
    const std::tuple<const char16_t*, const char16_t*, const char*> cases[] = {
        {u"<Codigo tipo=\"a&frasl;b\" n='2'>12 &amp; 1&#46;5</Codigo>\r\n<Otro/>", u"",
         "1<Codigo tipo=[a/b] n=[2](12 & 1.5) 2<Otro/>"},
        // Only the indentation before <B> goes; DOCTYPE is read as written; C holds children.
        {u"<A>\r\n  texto      <B>1</B>\r\n  <![CDATA[c&lt;d]]>\r\n  <!--nota-->\r\n  <!DOCTYPE html &amp;>\r\n"
         u"    <C>\r\n        <D x=\"1\"/>\r\n  </C>\r\n fin</A>\r\n", u"",
         "1<A{3(  texto  ),1<B(1),4(c<d),5(nota),6(html &amp;),1<C{2<D x=[1]/>,},3( fin),}"},
        {u"  a&amp;b<A/>", u"", "3(  a&b) 2<A/>"},
        // "ñ" as UTF-8 bytes, one code unit each: decoded under an ISO-8859 name, the
        // declaration's or the caller's, and kept as they are otherwise.
        {u"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n<A>\u00C3\u00B1</A>", u"", "1<A(ñ)"},
        {u"<A>\u00C3\u00B1</A>", u"iso-8859-15", "1<A(ñ)"},
        {u"<A>\u00C3\u00B1</A>", u"UTF-8", "1<A(\u00C3\u00B1)"},
    };
    for (const auto& [text, encode, expected] : cases) {
        const std::u16string given = text;
        std::string shapes;
        for (int32_t position = 0; position < static_cast<int32_t>(given.size());)
            shapes += (shapes.empty() ? "" : " ") + shape(*load(given, position, encode));
        EXPECT_EQ(shapes, expected);
    }
    int32_t position = 0;
    EXPECT_TRUE(load(u"<A><B/></A>", position)->get_OriginalValue().is_empty()) << "a node with children holds no value";
    position = 4;
    auto nothing = load(u"<A/>", position);
    EXPECT_EQ(std::tuple(nothing->get_NodeType(), value_of(*nothing), position), std::tuple(xntText, u"", 4));
}

TEST(LoadElement, RefusesTreesDeeperThanTheWriterWrites) {
    auto f = make_ref<clsCeldo>();
    std::u16string encode;
    // A root and 256 levels under it load; one level more is refused, as the writer refuses it.
    for (int levels : {clsCeldo::kMaxNesting, clsCeldo::kMaxNesting + 1}) {
        std::u16string nested;
        for (int i = 0; i <= levels; ++i) nested = u"<a>" + nested + u"</a>";
        int32_t position = 0;
        if (levels == clsCeldo::kMaxNesting) EXPECT_EQ(load(nested, position)->get_Children()->size(), 1u);
        else EXPECT_EQ(error_of([&] { f->LoadElement(encode, position, nested); }).description(), u"Nesting too deep");
    }
}

// ---- round trips

// What the writer keeps of a tree, as text, to compare a tree with the one loaded back.
std::string shape(const clsCeldo& f) {
    const auto type = f.get_NodeType();
    std::string out = std::to_string(type);
    if (type == xntNode || type == xntEmpty) {
        out += "<" + automation::utf16_to_utf8(f.get_Name());
        const auto& attributes = *f.get_Attributes();
        for (size_t i = 0; i < attributes.size(); ++i)
            // The writer leaves out attributes without value text.
            if (const auto value = automation::to_string(attributes.at(i).get_XMLValue()); !value.empty())
                out += " " + automation::utf16_to_utf8(attributes.at(i).get_Name() + u"=[" + value + u"]");
    }
    if (type == xntEmpty) return out + "/>";
    const auto& children = *f.get_Children();
    if (type == xntNode && children.size() > 0) {
        out += "{";
        for (size_t i = 0; i < children.size(); ++i) out += shape(children.at(i)) + ",";
        return out + "}";
    }
    return out + "(" + automation::utf16_to_utf8(automation::to_string(f.get_XMLValue())) + ")";
}

class RandomTrees {
public:
    explicit RandomTrees(unsigned seed) : random_(seed) {}

    Ref<clsCeldo> tree(int depth) {
        const int kind = pick(depth > 0 ? 8 : 6);
        auto f = make_ref<clsCeldo>();
        switch (kind) {
        case 0: return leaf(xntText, text(true));
        case 1: return leaf(xntCDATA, text(false));
        case 2: return leaf(xntComment, text(false));
        case 3: return leaf(xntDOCTYPE, u"html" + std::u16string(pick(2) ? u" x" : u""));
        case 4: f->let_NodeType(xntEmpty); break;
        default: f->let_NodeType(xntNode); break;
        }
        f->let_Name(name());
        for (int n = pick(3); n > 0; --n) testing::add_field(*f->get_Attributes(), name(), exText, Variant(text(true)));
        if (kind >= 6) {
            // Children as the writer can tell them apart: some markup among them, text children
            // never side by side.
            bool last_text = false;
            const int count = 1 + pick(4);
            const int markup = pick(count);
            for (int i = 0; i < count; ++i) {
                Ref<clsCeldo> child = i == markup || last_text ? non_text(depth - 1) : tree(depth - 1);
                last_text = child->get_NodeType() == xntText;
                f->get_Children()->Append(child, kNone, kNone, u"");
            }
        } else if (kind == 5 && pick(4)) {
            f->load_value(Variant(text(false)));
        }
        return f;
    }

    Ref<clsCeldo> non_text(int depth) {
        for (;;) {
            auto f = tree(depth);
            if (f->get_NodeType() != xntText) return f;
        }
    }

private:
    static Ref<clsCeldo> leaf(XMLNodeTypes type, std::u16string value) {
        auto f = make_ref<clsCeldo>();
        f->let_NodeType(type);
        f->load_value(Variant(std::move(value)));
        return f;
    }

    std::u16string name() {
        static const char16_t* names[] = {u"A", u"Año", u"a:b", u"1x", u"a\tb", u"campo_1", u"Ñ.x", u"ns-x"};
        return names[pick(std::size(names))];
    }

    // Values with everything the escapes and the byte form touch, line ends and blanks
    // included; text children are never empty.
    std::u16string text(bool non_empty) {
        static const char16_t* pieces[] = {u"a",     u"Ñ",      u"á",       u"&",     u"&amp;", u"<",     u">",
                                           u"\"",    u"'",      u"/",       u".",     u"]]>",   u"!",     u"-->",
                                           u" ",     u"    ",   u"\r\n",    u"\t",    u"€",     u"\U0001F600", u"&#46;",
                                           u"Ó",     u"\u1000", u"&frasl;", u"1.5"};
        std::u16string out;
        for (int n = pick(5) + (non_empty ? 1 : 0); n > 0; --n) out += pieces[pick(std::size(pieces))];
        return out;
    }

    int pick(size_t n) { return static_cast<int>(std::uniform_int_distribution<size_t>(0, n - 1)(random_)); }

    std::mt19937 random_;
};

// Rows of random trees written in each encoding read back element after element. Text fields
// side by side would read back as one, so a row holds markup only.
TEST(LoadElement, RebuildsEveryTreeTheWriterWrites) {
    RandomTrees trees(20261122);
    for (int i = 0; i < 200; ++i) {
        clsCeldos row;
        row.Append(i % 2 ? trees.non_text(3) : trees.tree(3), kNone, kNone, u"");
        for (int n = i % 2 ? 3 : 0; n > 0; --n) row.Append(trees.non_text(3), kNone, kNone, u"");
        for (std::u16string encode : {u"", u"UTF-8", u"ISO-8859-1"}) {
            const std::u16string text = row.XML(encode);
            int32_t position = 0;
            for (size_t n = 0; n < row.size(); ++n) {
                auto loaded = load(text, position, encode);
                ASSERT_EQ(shape(*loaded), shape(row.at(n))) << automation::utf16_to_utf8(text);
            }
            EXPECT_EQ(position, static_cast<int32_t>(text.size()));
        }
    }
}

}  // namespace
}  // namespace celdo::testing

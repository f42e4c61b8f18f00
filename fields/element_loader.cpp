// The element loader: reads back what the element writer produces (a start and end tag with
// attributes, empty elements, nested children, text, CDATA, comments and DOCTYPE) and rebuilds
// the field tree from it.
//
// What the writer leaves ambiguous is settled this way:
// - the indentation the writer puts before a child's line (four spaces a level before an
//   element, two before CDATA, a comment or DOCTYPE and before the closing tag) is removed
//   from the text run it ends, exactly that much and only when it is there, so a text child
//   keeps its own blanks;
// - content without markup is the value of a leaf, even when it starts with a line end, so a
//   node whose only children are text reads back as a leaf holding their text;
// - adjacent text children read back as one, and an empty text child (which writes nothing)
//   does not come back;
// - text, CDATA, comments and DOCTYPE carry no name in the text, so they come back unnamed;
// - values come back as text, stored as read (no coercion to the field's data type).
#include "automation/error.hpp"
#include "automation/textops.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "xml/reader.hpp"

namespace celdo::fields {

using automation::Variant;

namespace {

constexpr std::u16string_view kSource = u"Celdo.eat";
constexpr std::u16string_view kLineEnd = u"\r\n";

[[noreturn]] void fail(std::u16string description) { xml::raise(kSource, std::move(description)); }

bool is_blank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

class ElementLoader {
public:
    ElementLoader(std::u16string_view text, std::u16string_view encoding) : text_(text), encoding_(encoding) {}

    // Loads the document's next node at `at` (an index) into `field` and returns the index
    // after it. Declarations before it are read for their encoding; blanks before markup are
    // passed over; a line end after markup is taken with it.
    size_t top(clsCeldo& field, size_t at) {
        for (;;) {
            size_t first = at;
            while (first < text_.size() && is_blank(text_[first])) ++first;
            if (first < text_.size() && text_[first] == u'<') at = first;
            if (!starts(at, u"<?")) break;
            at = declaration(at);
        }
        const bool markup = at < text_.size() && text_[at] == u'<';
        at = node(field, at, 0);
        return markup ? after_line_end(at) : at;
    }

private:
    bool starts(size_t at, std::u16string_view what) const {
        return at <= text_.size() && text_.substr(at).starts_with(what);
    }

    size_t after_line_end(size_t at) const { return starts(at, kLineEnd) ? at + kLineEnd.size() : at; }

    // <?xml version="1.0" encoding="..."?>: an encoding given there decodes the rest.
    size_t declaration(size_t at) {
        const size_t end = text_.find(u"?>", at + 2);
        if (end == std::u16string_view::npos) fail(u"Tag not closed @ " + number(at + 1));
        const std::u16string_view body = text_.substr(at + 2, end - at - 2);
        size_t name_end = body.find_first_of(u" \r\n");
        if (name_end == std::u16string_view::npos) name_end = body.size();
        const std::u16string_view attributes = body.substr(name_end);
        for (size_t p = 0; p < attributes.size() && attributes.find(u'=', p) != std::u16string_view::npos;) {
            const xml::Attribute a = xml::read_raw_attribute(u"XMLReadAttribute", p, attributes);
            if (!automation::equal_text(a.name, u"encoding")) continue;
            if (a.value.empty()) fail(u"Illegal encoding");
            encoding_ = a.value;
        }
        return end + 2;
    }

    size_t node(clsCeldo& field, size_t at, int level) {
        if (level > clsCeldo::kMaxNesting) fail(u"Nesting too deep");
        if (at >= text_.size() || text_[at] != u'<') {
            size_t end = text_.find(u'<', at < text_.size() ? at : text_.size());
            if (end == std::u16string_view::npos) end = text_.size();
            const std::u16string_view run = at < end ? text_.substr(at, end - at) : std::u16string_view();
            leaf(field, xntText, clsCeldo::decode_text(encoding_, run));
            return end;
        }
        if (starts(at, u"<!--")) return enclosed(field, at, u"<!--", u"-->", xntComment, u"Comment not closed");
        if (starts(at, u"<![CDATA[")) return enclosed(field, at, u"<![CDATA[", u"]]>", xntCDATA, u"CDATA node not closed");
        if (starts(at, u"<!DOCTYPE ")) {
            constexpr std::u16string_view open = u"<!DOCTYPE ";
            const size_t end = text_.find(u'>', at + open.size());
            if (end == std::u16string_view::npos) fail(u"DOCTYPE node not closed");
            // Written as it is, so read as it is.
            leaf(field, xntDOCTYPE, std::u16string(text_.substr(at + open.size(), end - at - open.size())));
            return end + 1;
        }
        if (starts(at, u"<!")) fail(u"Unsupported <! node type");
        if (starts(at, u"</")) fail(u"Badly nested tags");
        return element(field, at, level);
    }

    size_t enclosed(clsCeldo& field, size_t at, std::u16string_view open, std::u16string_view close, XMLNodeTypes type,
                    std::u16string_view not_closed) {
        const size_t end = text_.find(close, at + open.size());
        if (end == std::u16string_view::npos) fail(std::u16string(not_closed));
        leaf(field, type, clsCeldo::decode_text(encoding_, text_.substr(at + open.size(), end - at - open.size())));
        return end + close.size();
    }

    void leaf(clsCeldo& field, XMLNodeTypes type, std::u16string value) {
        field.let_NodeType(type);
        field.load_value(Variant(std::move(value)));
    }

    size_t element(clsCeldo& field, size_t at, int level) {
        // The tag ends at the first ">"; a "<" before it means it never closed.
        const size_t tag_end = text_.find_first_of(u"<>", at + 1);
        if (tag_end == std::u16string_view::npos || text_[tag_end] != u'>') fail(u"Tag not closed @ " + number(at + 1));
        size_t name_end = text_.find_first_of(u" \r\n/>", at + 1);
        const std::u16string name(text_.substr(at + 1, name_end - at - 1));
        if (name.empty()) fail(u"Node name required");
        if (!xml::is_valid_name(name)) fail(u"Illegal element name");
        const bool empty = text_[tag_end - 1] == u'/' && tag_end - 1 >= name_end;
        field.let_Name(name);
        attributes(field, text_.substr(name_end, (empty ? tag_end - 1 : tag_end) - name_end));
        if (empty) {
            field.let_NodeType(xntEmpty);
            return tag_end + 1;
        }
        field.let_NodeType(xntNode);
        size_t at_content = tag_end + 1;
        const size_t next = text_.find(u'<', at_content);
        if (next == std::u16string_view::npos) fail(u"Node not closed");
        if (starts(next, u"</")) {
            field.load_value(Variant(clsCeldo::decode_text(encoding_, text_.substr(at_content, next - at_content))));
            return closing(next, name);
        }
        return children(field, after_line_end(at_content), name, level);
    }

    void attributes(clsCeldo& field, std::u16string_view text) {
        // (Past the last "=" nothing more is read, as in the field's Parse.)
        for (size_t p = 0; p < text.size() && text.find(u'=', p) != std::u16string_view::npos;) {
            const xml::Attribute a = xml::read_raw_attribute(u"XMLReadAttribute", p, text);
            if (a.name.empty()) continue;
            field.get_Attributes()->Add(a.name, u"", exText, 0, -1, false, u"", u"", Variant(clsCeldo::decode_text(encoding_, a.value)),
                     Variant::missing(), Variant::missing(), Variant::missing());
        }
    }

    size_t children(clsCeldo& field, size_t at, const std::u16string& name, int level) {
        auto& into = *field.get_Children();
        for (;;) {
            const size_t next = text_.find(u'<', at);
            if (next == std::u16string_view::npos) fail(u"Node not closed");
            const bool closes = starts(next, u"</");
            // The writer's indentation before what follows.
            const size_t indent = closes ? 2 * level : starts(next, u"<!") ? 2 * (level + 1) : 4 * (level + 1);
            std::u16string_view run = text_.substr(at, next - at);
            if (run.size() >= indent && run.substr(run.size() - indent).find_first_not_of(u' ') == std::u16string_view::npos)
                run.remove_suffix(indent);
            if (!run.empty()) {
                auto text = automation::make_ref<clsCeldo>();
                leaf(*text, xntText, clsCeldo::decode_text(encoding_, run));
                append(into, text);
            }
            if (closes) return closing(next, name);
            auto child = automation::make_ref<clsCeldo>();
            at = after_line_end(node(*child, next, level + 1));
            append(into, child);
        }
    }

    static void append(collections::clsCeldos& into, const automation::Ref<clsCeldo>& field) {
        into.Append(field, Variant::missing(), Variant::missing(), u"");
    }

    // </name>, blanks allowed before ">".
    size_t closing(size_t at, const std::u16string& name) {
        const size_t end = text_.find_first_of(u"<>", at + 2);
        if (end == std::u16string_view::npos || text_[end] != u'>') fail(u"Tag not closed");
        if (automation::rtrim(text_.substr(at + 2, end - at - 2)) != name) fail(u"Badly nested tags");
        return end + 1;
    }

    static std::u16string number(size_t n) {
        std::u16string out;
        do {
            out.insert(out.begin(), static_cast<char16_t>(u'0' + n % 10));
            n /= 10;
        } while (n);
        return out;
    }

    std::u16string_view text_;
    std::u16string encoding_;
};

}  // namespace

// Loads the node after rlPos (the count of characters already read, as the readers take it)
// into this field, moves rlPos past it and returns the new position. The tree is built apart
// and taken over only when the whole node read well, so a malformed text leaves the field and
// rlPos as they were.
int32_t clsCeldo::LoadElement(const std::u16string& Encode, int32_t& rlPos, std::u16string& rstrXML) {
    if (rlPos < 0 || static_cast<size_t>(rlPos) > rstrXML.size())
        throw automation::AutomationError(automation::StdError::InvalidCall);
    const std::u16string text = rstrXML;
    ElementLoader loader(text, Encode);
    auto loaded = automation::make_ref<clsCeldo>();
    const size_t end = loader.top(*loaded, static_cast<size_t>(rlPos));
    adopt_element(*loaded);
    rlPos = static_cast<int32_t>(end);
    return rlPos;
}

void clsCeldo::adopt_element(clsCeldo& loaded) {
    name_ = loaded.name_;
    node_type_ = loaded.node_type_;
    load_value(loaded.value_);
    for (auto [mine, theirs] : {std::pair{&attributes_, loaded.attributes_.get()}, std::pair{&children_, loaded.children_.get()}}) {
        if (!*mine && !theirs) continue;
        Fields& target = made(*mine);
        target.clear();
        for (size_t i = 0; theirs && i < theirs->size(); ++i)
            target.Append(automation::Ref<clsCeldo>(&theirs->at(i)), Variant::missing(), Variant::missing(), u"");
    }
}

}  // namespace celdo::fields

// The field's text forms: its XML element with nested children and attributes, its value as
// XML text, its metadata as attributes and back, and its clip line.
#include <algorithm>
#include <array>

#include "automation/convert.hpp"
#include "automation/format.hpp"
#include "automation/operators.hpp"
#include "automation/textops.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "fields/errors.hpp"
#include "xml/entities.hpp"
#include "xml/reader.hpp"

namespace celdo::fields {

using automation::Variant;

namespace {

// The metadata the attribute form writes, in its order. Names the field has no property for
// (ValueTo, Mask, Skin...) are read from the extended properties of that name.
constexpr std::array<std::u16string_view, 34> kWrittenProperties{
    u"Name",        u"Caption",     u"SourceName", u"SourceTableName", u"DataType",     u"Size",
    u"Required",    u"Expresion",   u"DefaultValue", u"Description",   u"Operator",     u"Conjunction",
    u"Direction",   u"RowSource",   u"ColumnCount", u"DisplayControl", u"ColumnWidth",  u"ValidationText",
    u"ValidationRule", u"NodeType", u"Round",       u"HelpContexID",   u"Value",        u"ValueTo",
    u"Mask",        u"DisplayColumn", u"Skin",      u"AlingHeader",    u"AlingBody",    u"AlingFooter",
    u"Visible",     u"ControlLeft", u"IsSum",       u"Position"};

// The names Parse reads back.
constexpr std::array<std::u16string_view, 24> kReadProperties{
    u"Name",        u"Caption",     u"SourceName", u"SourceTableName", u"DataType",      u"Size",
    u"Required",    u"Expresion",   u"DefaultValue", u"Description",   u"Operator",      u"Conjunction",
    u"Direction",   u"RowSource",   u"ColumnCount", u"DisplayControl", u"ColumnWidth",   u"ValidationText",
    u"ValidationRule", u"NodeType", u"Round",       u"Value",          u"Visible",       u"Position"};

bool known(std::u16string_view name, auto&& list) {
    return std::any_of(std::begin(list), std::end(list), [&](std::u16string_view n) { return automation::equal_text(n, name); });
}

constexpr std::u16string_view kLineEnd = u"\r\n";

[[noreturn]] void illegal_node(std::u16string_view source) { xml::raise(source, u"Illegal Node Type"); }

}  // namespace

Variant clsCeldo::get_XMLValue() const {
    if (value_.is_empty() || value_.is_null()) return Variant(u"");
    switch (data_type_) {
    case exBoolean: return Variant(automation::to_bool(value_) ? u"true" : u"false");
    case exDate: return automation::format(value_, u"YYYY-MM-DD");
    case exTime: return automation::format(value_, u"hh:mm:ss");
    case exDateTime: return automation::format(value_, u"YYYY-MM-DD\\Thh:mm:ss");
    default: return Variant(automation::to_string(value_));
    }
}

std::u16string clsCeldo::value_text(std::u16string_view encoding) const {
    // Without an encoding name the value is escaped all the same, so the element stays XML.
    std::u16string text = xml::encode_entities(automation::to_string(get_XMLValue()));
    return xml::is_8859(encoding) ? xml::utf8_encode(text) : text;
}

std::u16string clsCeldo::element(std::u16string_view encoding, int level) const {
    if (level > kMaxNesting) xml::raise(u"Celdo.XML", u"Nesting too deep");
    const std::u16string indent(static_cast<size_t>(level) * 2, u' ');
    switch (get_NodeType()) {
    case xntNode:
    case xntEmpty: {
        // The start line carries the indentation twice and a closing line once, as the dialect
        // has always been written; readers ignore the blanks.
        std::u16string start = indent + u"<" + name_ + (attributes_ ? attributes_->get_XMLAttribute(std::u16string(encoding)) : u"");
        if (node_type_ == xntEmpty) return indent + start + u"/>" + std::u16string(kLineEnd);
        if (!get_HasChildren()) return indent + start + u">" + value_text(encoding) + u"</" + name_ + u">" + std::u16string(kLineEnd);
        return indent + start + u">" + std::u16string(kLineEnd) + children_->elements(encoding, level + 1) + indent +
               u"</" + name_ + u">" + std::u16string(kLineEnd);
    }
    case xntText: return value_text(encoding);
    case xntCDATA: return indent + u"<![CDATA[" + value_text(encoding) + u"]]>" + std::u16string(kLineEnd);
    case xntComment: return indent + u"<!--" + value_text(encoding) + u"-->" + std::u16string(kLineEnd);
    case xntDOCTYPE:
        return indent + u"<!DOCTYPE " + automation::concat(Variant(u""), get_Value()).as_string() + u">" +
               std::u16string(kLineEnd);
    default: illegal_node(u"Celdo.XML");
    }
}

// A field's clip text, the tab-separated form a grid pastes: a leaf gives its value and a tab;
// a node with children gives its children's text as one line, without the last tab, and ends
// it (a node of lines ends none of its own, so a table gives one line per row). Comments and
// DOCTYPE carry no data. Tabs and line ends inside values are written as they are.
std::u16string clsCeldo::clip(int level) const {
    if (level > kMaxNesting) xml::raise(u"Celdo.Clip", u"Nesting too deep");
    switch (get_NodeType()) {
    case xntNode:
        if (get_HasChildren()) {
            std::u16string line = children_->clips(level + 1);
            if (!line.empty() && line.back() == u'\t') line.pop_back();
            if (!line.ends_with(kLineEnd)) line += kLineEnd;
            return line;
        }
        [[fallthrough]];
    case xntEmpty:
    case xntText:
    case xntCDATA:
        return automation::concat(get_Value(), Variant(u"\t")).as_string();
    case xntComment:
    case xntDOCTYPE: return {};
    default: illegal_node(u"Celdo.Clip");
    }
}

// FieldAttributes, a comma-separated list of names, selects which of the written properties
// appear, in the built-in order (names outside it are passed over); an empty selection writes
// them all. A property is written only when it has text.
std::u16string clsCeldo::XMLAttribute(std::u16string& Encode, std::u16string& FieldAttributes) const {
    std::vector<std::u16string> selection;
    for (size_t start = 0; start <= FieldAttributes.size();) {
        size_t comma = FieldAttributes.find(u',', start);
        if (comma == std::u16string::npos) comma = FieldAttributes.size();
        std::u16string name(automation::trim(std::u16string_view(FieldAttributes).substr(start, comma - start)));
        if (!name.empty()) selection.push_back(std::move(name));
        start = comma + 1;
    }
    std::u16string out;
    for (std::u16string_view name : kWrittenProperties) {
        if (!selection.empty() && !known(name, selection)) continue;
        const Variant value = Item(std::u16string(name));
        if (value.is_empty() || value.is_null() || value.is_object()) continue;  // objects have no text
        const std::u16string text = automation::to_string(value);
        if (text.empty()) continue;
        // Written for the attribute reader, which decodes entities before the byte form: so
        // under an ISO-8859 name the bytes come first and are then escaped.
        const std::u16string written = xml::encode_entities(xml::is_8859(Encode) ? xml::utf8_encode(text) : text);
        out += u" " + std::u16string(name) + u"=\"" + written + u"\"";
    }
    return out;
}

// The exact inverse of the value text: the UTF-8 byte form first (under an ISO-8859 name), then
// each entity once, so whatever a value held (entity names included) comes back as it was.
std::u16string clsCeldo::decode_text(std::u16string_view encoding, std::u16string_view text) {
    return xml::unescape_entities(xml::is_8859(encoding) ? xml::utf8_decode(text) : std::u16string(text));
}

std::u16string clsCeldo::Decondign(const std::u16string& Encode, std::u16string& rstrUtf) const {
    return decode_text(Encode, rstrUtf);
}

// Reads the names it knows with the dialect's attribute reader; other names are passed over.
bool clsCeldo::Parse(std::u16string& Encode, std::u16string& rstrXML) {
    size_t position = 0;
    // Past the last "=" every reading is empty and only steps on: stopping there keeps a long
    // text without attributes from costing a search per character.
    while (position < rstrXML.size() && rstrXML.find(u'=', position) != std::u16string::npos) {
        xml::Attribute a = xml::read_attribute(Encode, position, rstrXML);
        if (a.name.empty() || !known(a.name, kReadProperties)) continue;
        std::u16string name = a.name;
        Variant value(a.value);
        SetItem(name, value);
    }
    return true;
}

// By-name access to the metadata. "Ucase" is the upper-case flag and "Round" the rounding;
// names without a property read from the extended properties, and unknown names read Empty.
Variant clsCeldo::Item(const std::u16string& Index) const {
    using automation::equal_text;
    const std::u16string_view n = Index;
    if (equal_text(n, u"Name")) return Variant(name_);
    if (equal_text(n, u"Caption")) return Variant(get_Caption());
    if (equal_text(n, u"SourceName")) return Variant(source_name_);
    if (equal_text(n, u"SourceTableName")) return Variant(source_table_name_);
    if (equal_text(n, u"DataType")) return Variant(static_cast<int32_t>(data_type_));
    if (equal_text(n, u"Size")) return Variant(get_Size());
    if (equal_text(n, u"Required")) return Variant(required_);
    if (equal_text(n, u"Ucase")) return Variant(upper_case_);
    if (equal_text(n, u"Position")) return Variant(position_);
    if (equal_text(n, u"DefaultValue")) return get_DefaultValue();
    if (equal_text(n, u"ValidationText")) return Variant(validation_text_);
    if (equal_text(n, u"ValidationRule")) return Variant(validation_rule_);
    if (equal_text(n, u"Description")) return Variant(description_);
    if (equal_text(n, u"Value")) return get_Value();
    if (equal_text(n, u"Expresion")) return Variant(expression_);
    if (equal_text(n, u"OldValue")) return old_value_;
    if (equal_text(n, u"Operator")) return Variant(operator_);
    if (equal_text(n, u"Conjunction")) return Variant(conjunction_);
    if (equal_text(n, u"Direction")) return Variant(static_cast<int32_t>(direction_));
    if (equal_text(n, u"RowSource")) return Variant(row_source_);
    if (equal_text(n, u"RowSourceType")) return Variant(static_cast<int32_t>(get_RowSourceType()));
    if (equal_text(n, u"Visible")) return Variant(visible_);
    if (equal_text(n, u"DisplayControl")) return Variant(static_cast<int32_t>(display_control_));
    if (equal_text(n, u"ColumnCount")) return Variant(column_count_);
    if (equal_text(n, u"ColumnWidth")) return Variant(column_width_);
    if (equal_text(n, u"NodeType")) return Variant(static_cast<int32_t>(get_NodeType()));
    if (equal_text(n, u"Round")) return Variant(rounding_);
    if (equal_text(n, u"HelpContexID")) return Variant(help_context_id_);
    if (auto* extra = dynamic_cast<collections::clsCeldos*>(extend_properties_.get())) {
        if (clsCeldo* found = extra->find(n)) return found->get_Value();
    }
    return Variant();
}

namespace {

// "TRUE" and "1" are True, "FALSE" and "0" False; anything else reads as the language does.
bool flag_of(const Variant& value) {
    if (value.is_string()) {
        const std::u16string& t = value.as_string();
        if (automation::equal_text(t, u"TRUE") || t == u"1") return true;
        if (automation::equal_text(t, u"FALSE") || t == u"0") return false;
    }
    return automation::to_bool(value);
}

}  // namespace

// Assigns through each property's Let; names it does not know are passed over.
void clsCeldo::SetItem(std::u16string& Index, Variant& Value) {
    using automation::equal_text;
    const std::u16string_view n = Index;
    auto text = [&] { return automation::to_string(Value); };
    if (equal_text(n, u"Name")) let_Name(text());
    else if (equal_text(n, u"Caption")) let_Caption(text());
    else if (equal_text(n, u"SourceName")) let_SourceName(text());
    else if (equal_text(n, u"SourceTableName")) let_SourceTableName(text());
    else if (equal_text(n, u"DataType")) let_DataType(static_cast<ExDataType>(automation::to_long(Value)));
    else if (equal_text(n, u"Size")) let_Size(automation::to_long(Value));
    else if (equal_text(n, u"Required")) let_Required(flag_of(Value));
    else if (equal_text(n, u"Ucase")) let_UpperCase(flag_of(Value));
    else if (equal_text(n, u"ColumnWidth")) let_ColumnWidth(automation::to_integer(Value));
    else if (equal_text(n, u"Position")) let_Position(automation::to_integer(Value));
    else if (equal_text(n, u"DefaultValue")) let_DefaultValue(Value);
    else if (equal_text(n, u"ValidationText")) let_ValidationText(text());
    else if (equal_text(n, u"ValidationRule")) let_ValidationRule(text());
    else if (equal_text(n, u"Expresion")) let_Expresion(text());
    else if (equal_text(n, u"Description")) let_Description(text());
    else if (equal_text(n, u"Value")) let_Value(Value);
    else if (equal_text(n, u"Operator")) let_Operator(text());
    else if (equal_text(n, u"Conjunction")) let_Conjunction(text());
    else if (equal_text(n, u"Direction")) let_Direction(static_cast<exDirection>(automation::to_long(Value)));
    else if (equal_text(n, u"RowSource")) let_RowSource(text());
    else if (equal_text(n, u"ColumnCount")) let_ColumnCount(automation::to_byte(Value));
    else if (equal_text(n, u"Visible")) let_Visible(flag_of(Value));
    else if (equal_text(n, u"DisplayControl")) let_DisplayControl(static_cast<ExDisplayControl>(automation::to_long(Value)));
    else if (equal_text(n, u"Round")) let_Redondeo(automation::to_integer(Value));
    else if (equal_text(n, u"NodeType")) let_NodeType(static_cast<XMLNodeTypes>(automation::to_long(Value)));
}

}  // namespace celdo::fields

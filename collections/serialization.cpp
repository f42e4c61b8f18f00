// The collection's text forms: the fields' clip and XML forms joined, the value, caption and
// name lines, and the attribute list with its reader.
#include "automation/convert.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "automation/textops.hpp"
#include "collections/clsCeldos.hpp"
#include "xml/reader.hpp"

namespace celdo::collections {

using automation::Variant;

std::u16string clsCeldos::elements(std::u16string_view encoding, int level) const {
    std::u16string out;
    for (size_t i = 0; i < items_.size(); ++i) out += items_.at(i)->element(encoding, level);
    return out;
}

std::u16string clsCeldos::clips(int level) const {
    std::u16string out;
    for (size_t i = 0; i < items_.size(); ++i) out += items_.at(i)->clip(level);
    return out;
}

std::u16string clsCeldos::ClipNames(std::u16string& Propertie, std::u16string& Delimiter) const {
    if (Propertie.empty()) Propertie = u"Name";
    const std::u16string& property = Propertie;
    const Variant delimiter(Delimiter);
    // Joined with the language's "+": a numeric property meeting a numeric text adds up, and
    // one meeting any other text is a type mismatch, as hosts have always seen.
    Variant joined;
    for (size_t i = 0; i < items_.size(); ++i)
        joined = automation::add(automation::add(joined, items_.at(i)->Item(property)), delimiter);
    const std::u16string text = automation::to_string(joined);
    if (text.empty()) return text;
    return automation::to_string(automation::lang::Left(Variant(text), static_cast<int32_t>(text.size() - Delimiter.size())));
}

std::u16string clsCeldos::get_ClipAttribute() const {
    Variant line(u"");
    for (size_t i = 0; i < items_.size(); ++i) {
        // "&" joins, so a Null value gives an empty cell like an Empty one.
        line = automation::concat(automation::concat(line, items_.at(i)->get_Value()), Variant(u"\t"));
    }
    return line.as_string();
}

std::u16string clsCeldos::get_ClipHeader() const {
    std::u16string line;
    for (size_t i = 0; i < items_.size(); ++i) line += items_.at(i)->get_Caption() + u"\t";
    // The last tab goes; an empty collection has none to cut, which is error 5.
    return automation::to_string(automation::lang::Left(Variant(line), static_cast<int32_t>(line.size()) - 1));
}

std::u16string clsCeldos::get_XMLAttribute(const std::u16string& Encode) const {
    std::u16string out;
    for (size_t i = 0; i < items_.size(); ++i) {
        const Field& field = *items_.at(i);
        const std::u16string value = field.value_text(Encode);
        if (value.empty() && !field.get_Required()) continue;
        out += u" ";
        out += field.get_Name();
        out += u"=\"";
        out += value;
        out += u"\"";
    }
    return out;
}

bool clsCeldos::Parse(const std::u16string& Encode, std::u16string& rstrXML) {
    constexpr std::u16string_view source = u"Celdo.Parse";
    const Field scratch;
    const std::u16string text = rstrXML;  // a value assignment may not change what is read
    size_t position = 0;
    while (position < text.size()) {
        const std::u16string raw_name = xml::text_up_to(text, u"=", position, false);
        const std::u16string name(automation::ltrim(raw_name));
        if (!xml::is_valid_name(name)) xml::raise(source, u"Illegal element name: " + name);
        // p stands on the character after "=", where the opening quote belongs.
        const size_t p = position + raw_name.size() + 1;
        const char16_t quote = xml::first_quote(text, p);
        if (quote == 0) xml::raise(source, u"Malformed quotation");
        std::u16string value = xml::text_up_to(text, std::u16string_view(&quote, 1), p + 1, true);
        position = p + 1 + value.size() + 1;
        if (!xml::is_valid_attribute_value(value, quote)) xml::raise(source, u"Bad attribute value encoding");
        Variant decoded(scratch.Decondign(Encode, value));
        if (Field* field = find(name)) {
            field->let_Value(decoded);
        } else {
            Add(name, u"", fields::exText, 0, -1, false, u"", u"", decoded, Variant::missing(), Variant::missing(),
                Variant::missing());
        }
    }
    return true;
}

}  // namespace celdo::collections

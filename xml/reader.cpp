#include "xml/reader.hpp"

#include "automation/textops.hpp"
#include "xml/entities.hpp"
#include "xml/text.hpp"

namespace celdo::xml {

void raise(std::u16string_view source, std::u16string description) {
    throw automation::AutomationError(kXmlError, std::u16string(source), std::move(description));
}

std::u16string text_up_to(std::u16string_view text, std::u16string_view delimiter, size_t position, bool to_end) {
    if (position >= text.size()) return {};
    const size_t at = text.find(delimiter, position);
    if (at == std::u16string_view::npos) return to_end ? std::u16string(text.substr(position)) : std::u16string();
    return std::u16string(text.substr(position, at - position));
}

bool is_valid_name(std::u16string_view name) {
    return !name.empty() && name.find_first_of(u" \n\r/\"&<>'") == std::u16string_view::npos;
}

bool is_valid_attribute_value(std::u16string_view value, char16_t quote) {
    return value.find(quote) == std::u16string_view::npos && value.find_first_of(u"<>") == std::u16string_view::npos;
}

std::u16string strip_blanks(std::u16string_view text) {
    std::u16string out = remove_all(text, u"\n");
    out = std::u16string(automation::trim(remove_all(out, u"\r")));
    return remove_all(out, u" ");
}

char16_t first_quote(std::u16string_view text, size_t position) {
    const size_t double_quote = text.find(u'"', position);
    const size_t single_quote = text.find(u'\'', position);
    if (double_quote == std::u16string_view::npos && single_quote == std::u16string_view::npos) return 0;
    return double_quote < single_quote ? u'"' : u'\'';
}

Attribute read_raw_attribute(std::u16string_view source, size_t& position, std::u16string_view text) {
    Attribute a;
    const std::u16string raw_name = text_up_to(text, u"=", position, false);
    if (raw_name.empty()) {
        ++position;
        return a;
    }
    // Past the name and "=": the opening quote must follow "=" at once, so a blank there
    // makes the blank's quote the value's first character and the value reads as empty.
    position += raw_name.size() + 2;
    a.name = std::u16string(automation::trim(raw_name));
    if (!is_valid_name(a.name)) raise(source, u"Illegal element name: " + a.name);
    const char16_t quote = first_quote(text, position);
    if (!quote) raise(source, u"Malformed quotation");
    a.value = text_up_to(text, std::u16string_view(&quote, 1), position, true);
    position += a.value.size() + 1;
    if (!is_valid_attribute_value(a.value, quote)) raise(source, u"Bad attribute value encoding");
    return a;
}

Attribute read_attribute(std::u16string_view encoding, size_t& position, std::u16string_view text) {
    Attribute a = read_raw_attribute(u"XMLReadAttribute", position, text);
    if (a.name.empty()) return a;
    // Under an ISO-8859 name, entities are decoded twice before the bytes, as always.
    a.value = is_8859(encoding) ? xml_decode(encoding, decode_entities(a.value)) : xml_decode(encoding, a.value);
    return a;
}

std::vector<std::u16string> cut_names(std::u16string_view list) {
    std::vector<std::u16string> names;
    size_t at = 0;
    while (at < list.size()) {
        while (at < list.size() && list[at] == u' ') ++at;
        std::u16string_view item;
        if (at < list.size() && list[at] == u'"') {
            const size_t open = at + 1;
            size_t close = list.find(u"\",", open);
            if (close == std::u16string_view::npos) close = list.find(u'"', open);
            if (close == std::u16string_view::npos) close = list.size();  // an unclosed quote runs to the end
            item = list.substr(open, close - open);
            at = close + 1;
            if (at < list.size() && list[at] == u',') ++at;
        } else {
            size_t comma = list.find(u',', at);
            if (comma == std::u16string_view::npos) comma = list.size();
            item = list.substr(at, comma - at);
            at = comma + 1;
        }
        item = automation::trim(item);
        if (!item.empty()) names.emplace_back(item);
    }
    return names;
}

}  // namespace celdo::xml

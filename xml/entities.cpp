#include "xml/entities.hpp"

#include <array>

#include "automation/textops.hpp"

namespace celdo::xml {

namespace {

struct Entity {
    std::u16string_view name;  // with its & and ;
    char16_t character;
};

// The decoding rows after "&amp;": text that "&amp;" turns into one of these decodes again.
constexpr std::array<Entity, 14> kAfterAmp{{
    {u"&#46;", u'.'},     {u"&aacute;", u'á'}, {u"&eacute;", u'é'}, {u"&iacute;", u'í'}, {u"&oacute;", u'ó'},
    {u"&uacute;", u'ú'},  {u"&ntilde;", u'ñ'}, {u"&agrave;", u'à'}, {u"&egrave;", u'è'}, {u"&ograve;", u'ò'},
    {u"&#91;", u'['},     {u"&#93;", u']'},    {u"&#33;", u'!'},    {u"&frasl;", u'/'},
}};
// The rows before it, which never decode twice.
constexpr std::array<Entity, 5> kBeforeAmp{{
    {u"&ensp;", u' '}, {u"&apos;", u'\''}, {u"&quot;", u'"'}, {u"&gt;", u'>'}, {u"&lt;", u'<'},
}};
constexpr std::u16string_view kAmp = u"&amp;";

const Entity* match(std::u16string_view text, size_t at, const Entity* first, const Entity* last) {
    for (const Entity* e = first; e != last; ++e) {
        if (text.substr(at, e->name.size()) == e->name) return e;
    }
    return nullptr;
}

// An entity whose "&" is the one "&amp;" just produced and whose rest follows in the text.
const Entity* match_after_amp(std::u16string_view text, size_t at) {
    for (const Entity& e : kAfterAmp) {
        const std::u16string_view rest = e.name.substr(1);
        if (text.substr(at, rest.size()) == rest) return &e;
    }
    return nullptr;
}

std::u16string_view escape_of(char16_t c) {
    switch (c) {
    case u'&': return u"&amp;";
    case u'<': return u"&lt;";
    case u'>': return u"&gt;";
    case u'"': return u"&quot;";
    case u'\'': return u"&apos;";
    case u'/': return u"&frasl;";
    case u'.': return u"&#46;";
    case u'á': return u"&aacute;";
    case u'é': return u"&eacute;";
    case u'í': return u"&iacute;";
    case u'ó': return u"&oacute;";
    case u'ú': return u"&uacute;";
    case u'ñ': return u"&ntilde;";
    case u'à': return u"&agrave;";
    case u'è': return u"&egrave;";
    case u'ò': return u"&ograve;";
    case u'[': return u"&#91;";
    case u']': return u"&#93;";
    case u'!': return u"&#33;";
    default: return {};
    }
}

}  // namespace

std::u16string encode_entities(std::u16string_view text) {
    std::u16string out;
    out.reserve(text.size() + text.size() / 4);
    for (char16_t c : text) {
        const std::u16string_view escape = escape_of(c);
        if (escape.empty()) out.push_back(c);
        else out += escape;
    }
    return out;
}

std::u16string decode_entities(std::u16string_view text) {
    std::u16string out;
    out.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        const char16_t c = text[i];
        if (c != u'&') {
            out.push_back(c);
            ++i;
            continue;
        }
        if (const Entity* e = match(text, i, kBeforeAmp.begin(), kBeforeAmp.end())) {
            out.push_back(e->character);
            i += e->name.size();
        } else if (text.substr(i, kAmp.size()) == kAmp) {
            i += kAmp.size();
            if (const Entity* again = match_after_amp(text, i)) {
                out.push_back(again->character);
                i += again->name.size() - 1;
            } else {
                out.push_back(u'&');
            }
        } else if (const Entity* later = match(text, i, kAfterAmp.begin(), kAfterAmp.end())) {
            out.push_back(later->character);
            i += later->name.size();
        } else {
            out.push_back(u'&');
            ++i;
        }
    }
    return out;
}

std::u16string unescape_entities(std::u16string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        const Entity* e = nullptr;
        if (text[i] == u'&') {
            if (text.substr(i, kAmp.size()) == kAmp) {
                static constexpr Entity amp{kAmp, u'&'};
                e = &amp;
            } else if (!(e = match(text, i, kBeforeAmp.begin(), kBeforeAmp.end()))) {
                e = match(text, i, kAfterAmp.begin(), kAfterAmp.end());
            }
        }
        if (e) {
            out.push_back(e->character);
            i += e->name.size();
        } else {
            out.push_back(text[i++]);
        }
    }
    return out;
}

std::u16string utf8_encode(std::u16string_view text) {
    std::u16string out;
    out.reserve(text.size() * 3);
    for (char16_t c : text) {
        if (c < 0x80) {
            out.push_back(c);
        } else if (c < 0x800) {
            out.push_back(static_cast<char16_t>(0xC0 | ((c >> 6) & 0x1F)));
            out.push_back(static_cast<char16_t>(0x80 | (c & 0x3F)));
        } else {
            out.push_back(static_cast<char16_t>(0xE0 | ((c >> 12) & 0x0F)));
            out.push_back(static_cast<char16_t>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char16_t>(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

std::u16string utf8_decode(std::u16string_view text) {
    std::u16string out;
    out.reserve(text.size());
    auto continuation = [&](size_t at) { return at < text.size() && (text[at] & 0xC0) == 0x80; };
    size_t i = 0;
    while (i < text.size()) {
        const char16_t u = text[i];
        if (u > 239) return std::u16string(text);  // a four-byte lead
        if ((u & 0xF0) == 0xE0) {
            if (!continuation(i + 1) || !continuation(i + 2)) return std::u16string(text);
            out.push_back(static_cast<char16_t>(((u & 0x0F) << 12) | ((text[i + 1] & 0x3F) << 6) | (text[i + 2] & 0x3F)));
            i += 3;
        } else if ((u & 0xE0) == 0xC0) {
            if (!continuation(i + 1)) return std::u16string(text);
            out.push_back(static_cast<char16_t>(((u & 0x1F) << 6) | (text[i + 1] & 0x3F)));
            i += 2;
        } else {
            out.push_back(u);  // ASCII, or a stray continuation byte kept as it is
            ++i;
        }
    }
    return out;
}

bool is_8859(std::u16string_view encoding) {
    return automation::upper_case(encoding).find(u"8859") != std::u16string::npos;
}

std::u16string xml_encode(std::u16string_view encoding, std::u16string_view text) {
    return is_8859(encoding) ? utf8_encode(text) : encode_entities(text);
}

std::u16string xml_decode(std::u16string_view encoding, std::u16string_view text) {
    std::u16string decoded = decode_entities(text);
    return is_8859(encoding) ? utf8_decode(decoded) : decoded;
}

}  // namespace celdo::xml

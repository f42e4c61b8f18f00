#include "xml/entities.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "automation/textops.hpp"

namespace celdo::xml {

namespace {

struct Entity {
    std::u16string_view name;  // with its & and ;
    char16_t character;
    bool decodes_after_amp;    // its row comes after "&amp;", so "&amp;" + its rest decodes again
};

// The twenty decodings. Rows 1 to 5 come before "&amp;" in the table and never decode twice.
constexpr std::array<Entity, 20> kEntities{{
    {u"&ensp;", u' ', false},   {u"&apos;", u'\'', false}, {u"&quot;", u'"', false},   {u"&gt;", u'>', false},
    {u"&lt;", u'<', false},     {u"&amp;", u'&', false},    {u"&#46;", u'.', true},     {u"&aacute;", u'á', true},
    {u"&eacute;", u'é', true},  {u"&iacute;", u'í', true},  {u"&oacute;", u'ó', true},  {u"&uacute;", u'ú', true},
    {u"&ntilde;", u'ñ', true},  {u"&agrave;", u'à', true},  {u"&egrave;", u'è', true},  {u"&ograve;", u'ò', true},
    {u"&#91;", u'[', true},     {u"&#93;", u']', true},     {u"&#33;", u'!', true},     {u"&frasl;", u'/', true},
}};
constexpr size_t kAmp = 5;

// Each name as two 64-bit words of four code units (padded), with masks for its length, so
// that a name is compared with the text in two word operations.
struct Pattern {
    uint64_t word[2] = {0, 0};
    uint64_t mask[2] = {0, 0};
};
static_assert(std::endian::native == std::endian::little, "the word layout of the patterns");
constexpr std::array<Pattern, kEntities.size()> kPatterns = [] {
    std::array<Pattern, kEntities.size()> patterns{};
    for (size_t i = 0; i < kEntities.size(); ++i) {
        const std::u16string_view name = kEntities[i].name;
        for (size_t k = 0; k < name.size(); ++k) {
            patterns[i].word[k / 4] |= uint64_t{name[k]} << (16 * (k % 4));
            patterns[i].mask[k / 4] |= uint64_t{0xFFFF} << (16 * (k % 4));
        }
    }
    return patterns;
}();

// The entities by the character after "&": the first candidate, and each one's next (kNone
// ends a chain). No name is a prefix of another, so at most one candidate matches.
constexpr uint8_t kNone = 0xFF;
struct Chains {
    std::array<uint8_t, 128> first{};
    std::array<uint8_t, kEntities.size()> next{};
};
constexpr Chains kChains = [] {
    Chains chains{};
    chains.first.fill(kNone);
    chains.next.fill(kNone);
    for (size_t i = kEntities.size(); i-- > 0;) {
        const char16_t key = kEntities[i].name[1];
        chains.next[i] = chains.first[key];
        chains.first[key] = static_cast<uint8_t>(i);
    }
    return chains;
}();

// The entity whose name starts at text[at] (an "&"), if any.
const Entity* entity_at(std::u16string_view text, size_t at) {
    if (at + 1 >= text.size() || text[at + 1] >= 128) return nullptr;
    uint8_t i = kChains.first[text[at + 1]];
    if (i == kNone) return nullptr;
    if (text.size() - at >= 8) {
        uint64_t words[2];
        std::memcpy(words, text.data() + at, sizeof words);
        for (; i != kNone; i = kChains.next[i]) {
            const Pattern& p = kPatterns[i];
            if ((((words[0] ^ p.word[0]) & p.mask[0]) | ((words[1] ^ p.word[1]) & p.mask[1])) == 0) return &kEntities[i];
        }
        return nullptr;
    }
    for (; i != kNone; i = kChains.next[i]) {  // near the end of the text
        if (text.substr(at).starts_with(kEntities[i].name)) return &kEntities[i];
    }
    return nullptr;
}

// What the encoder writes for each character below 256 (every escaping character is there),
// padded to eight code units, the longest name: the character itself, or its entity. The
// encoder copies the whole block and moves on by its size, without a branch per character.
struct Escape {
    std::array<char16_t, 8> text{};
    uint8_t size = 1;
};
constexpr std::array<Escape, 256> kEscapes = [] {
    std::array<Escape, 256> escapes{};
    for (size_t c = 0; c < escapes.size(); ++c) escapes[c].text[0] = static_cast<char16_t>(c);
    for (size_t i = 1; i < kEntities.size(); ++i) {
        Escape& e = escapes[kEntities[i].character];
        std::copy(kEntities[i].name.begin(), kEntities[i].name.end(), e.text.begin());
        e.size = static_cast<uint8_t>(kEntities[i].name.size());
    }
    return escapes;
}();

}  // namespace

std::u16string encode_entities(std::u16string_view text) {
    // Sized first, then filled: one allocation.
    size_t size = 0;
    for (char16_t c : text) size += c < 256 ? kEscapes[c].size : 1;
    if (size == text.size()) return std::u16string(text);
    constexpr size_t kSlack = 8;  // room for the padding of the last block
    std::u16string out(size + kSlack, u'\0');
    char16_t* p = out.data();
    for (char16_t c : text) {
        if (c < 256) {
            std::memcpy(p, kEscapes[c].text.data(), sizeof kEscapes[c].text);
            p += kEscapes[c].size;
        } else {
            *p++ = c;
        }
    }
    out.resize(size);
    return out;
}

namespace {

// Whether any of the four code units in a word is "&" (the zero-lane test on word XOR "&&&&").
constexpr bool has_ampersand(uint64_t word) {
    const uint64_t x = word ^ 0x0026002600260026u;
    return ((x - 0x0001000100010001u) & ~x & 0x8000800080008000u) != 0;
}

// Both decoders walk the text once; `twice` says whether "&amp;" followed by the rest of a
// later row's name decodes that too, as applying the rows in their order does.
template <bool twice>
std::u16string decode(std::u16string_view text) {
    std::u16string out(text.size(), u'\0');  // decoding never lengthens a text
    char16_t* p = out.data();
    for (size_t at = 0; at < text.size();) {
        // Runs without "&" go four code units at a time.
        while (at + 4 <= text.size()) {
            uint64_t word;
            std::memcpy(&word, text.data() + at, sizeof word);
            if (has_ampersand(word)) break;
            std::memcpy(p, &word, sizeof word);
            p += 4;
            at += 4;
        }
        if (at == text.size()) break;
        const char16_t c = text[at];
        const Entity* e = c == u'&' ? entity_at(text, at) : nullptr;
        if (!e) {
            *p++ = c;
            ++at;
            continue;
        }
        at += e->name.size();
        if (twice && e == &kEntities[kAmp] && at < text.size()) {
            // The "&" just produced and the text after it may make a later row's name.
            for (const Entity& later : kEntities) {
                if (later.decodes_after_amp && text.substr(at).starts_with(later.name.substr(1))) {
                    e = &later;
                    at += later.name.size() - 1;
                    break;
                }
            }
        }
        *p++ = e->character;
    }
    out.resize(static_cast<size_t>(p - out.data()));
    return out;
}

}  // namespace

std::u16string decode_entities(std::u16string_view text) { return decode<true>(text); }

std::u16string unescape_entities(std::u16string_view text) { return decode<false>(text); }

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

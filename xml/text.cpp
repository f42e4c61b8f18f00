#include "xml/text.hpp"

namespace celdo::xml {

namespace {

std::u16string replace_one(std::u16string text, std::u16string_view find, std::u16string_view replacement) {
    if (find.empty()) return text;
    size_t at = 0;
    while ((at = text.find(find, at)) != std::u16string::npos) {
        text.replace(at, find.size(), replacement);
        at += replacement.size();
    }
    return text;
}

}  // namespace

std::u16string replace_all(std::u16string_view text, std::u16string_view find, std::u16string_view replacement,
                           bool each_character) {
    if (!each_character) return replace_one(std::u16string(text), find, replacement);
    std::u16string out(text);
    for (char16_t c : find) out = replace_one(std::move(out), std::u16string_view(&c, 1), replacement);
    return out;
}

std::u16string remove_all(std::u16string_view text, std::u16string_view what) {
    return replace_one(std::u16string(text), what, u"");
}

}  // namespace celdo::xml

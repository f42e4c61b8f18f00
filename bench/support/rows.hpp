#pragma once
// Rows of plain text fields named Campo0, Campo1, ..., for the benchmarks.
#include <string>

#include "collections/clsCeldos.hpp"

namespace celdo::bench {

inline std::u16string field_name(int i) {
    std::u16string name = u"Campo";
    for (char c : std::to_string(i)) name.push_back(static_cast<char16_t>(c));
    return name;
}

inline automation::Ref<collections::clsCeldos> text_row(int fields) {
    auto row = automation::make_ref<collections::clsCeldos>();
    const automation::Variant none = automation::Variant::missing();
    for (int i = 0; i < fields; ++i)
        row->Add(field_name(i), u"", fields::exText, 0, -1, false, u"", u"", none, none, none, none);
    return row;
}

}  // namespace celdo::bench

#pragma once
// Helpers for the collection tests: an argument left out, a field added with only the
// arguments a test cares about, and Item given a value.

#include <string>

#include "collections/clsCeldos.hpp"

namespace celdo::testing {

inline const automation::Variant kNone = automation::Variant::missing();

inline automation::Ref<fields::clsCeldo> add_field(collections::clsCeldos& c, std::u16string name,
                                                   fields::ExDataType type = fields::exText,
                                                   automation::Variant value = kNone, bool required = false) {
    return c.Add(name, u"", static_cast<int16_t>(type), 0, -1, required, u"", u"", value, kNone, kNone, kNone);
}

// Item takes its index by reference, as the language passes a variable.
inline automation::Ref<fields::clsCeldo> item(const collections::clsCeldos& c, automation::Variant key) {
    return c.get_Item(key);
}

}  // namespace celdo::testing

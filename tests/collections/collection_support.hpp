#pragma once
// Helpers for the collection tests: an argument left out, a field added with only the
// arguments a test cares about, Item and Remove given a value, and the names of a
// collection's fields in order.

#include <string>

#include "collections/clsCeldos.hpp"

namespace celdo::testing {

inline const automation::Variant kNone = automation::Variant::missing();

inline automation::Ref<fields::clsCeldo> add_field(collections::clsCeldos& c, std::u16string name,
                                                   fields::ExDataType type = fields::exText,
                                                   automation::Variant value = kNone, bool required = false) {
    return c.Add(name, u"", static_cast<int16_t>(type), 0, -1, required, u"", u"", value, kNone, kNone, kNone);
}

// Item and Remove take their index by reference, as the language passes a variable.
inline automation::Ref<fields::clsCeldo> item(const collections::clsCeldos& c, automation::Variant key) {
    return c.get_Item(key);
}
inline void remove(collections::clsCeldos& c, automation::Variant key) { c.Remove(key); }

inline std::u16string names_of(const collections::clsCeldos& c) {
    std::u16string out;
    for (size_t i = 0; i < c.size(); ++i) out += (i ? u"," : u"") + c.at(i).get_Name();
    return out;
}

}  // namespace celdo::testing

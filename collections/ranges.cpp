// Subsets of a collection chosen by a list of names: the named fields in the list's order, or
// every other field in this collection's order; shared, or as copies.
#include <unordered_set>

#include "automation/error.hpp"
#include "automation/textops.hpp"
#include "collections/clsCeldos.hpp"
#include "xml/reader.hpp"

namespace celdo::collections {

using automation::Variant;

namespace {

// A set of names compared without regard to case.
struct NameSet {
    std::unordered_set<std::u16string> upper;
    explicit NameSet(const std::vector<std::u16string>& names) {
        for (const std::u16string& n : names) upper.insert(automation::upper_case(n));
    }
    bool has(std::u16string_view name) const { return upper.count(automation::upper_case(name)) != 0; }
};

}  // namespace

// Shared fields are appended as they are (Append keys each by its name, a repeat unkeyed);
// copies go through AppendAs, which duplicates. A field that cannot be added is passed over.
void clsCeldos::add_to(clsCeldos& result, Ref<Field> field, bool copy) {
    const Variant none = Variant::missing();
    automation::resume_next([&] {
        if (copy) {
            Variant value = none;
            result.AppendAs(field, u"", value, none, none);
        } else {
            result.Append(std::move(field), none, none, u"");
        }
    });
}

automation::Ref<clsCeldos> clsCeldos::named(const std::u16string& list, bool copy) const {
    auto result = automation::make_ref<clsCeldos>();
    for (const std::u16string& name : xml::cut_names(list)) {
        if (Field* field = find(name)) add_to(*result, Ref<Field>(field), copy);
    }
    return result;
}

automation::Ref<clsCeldos> clsCeldos::others(const std::u16string& list, bool copy) const {
    const NameSet left_out(xml::cut_names(list));
    auto result = automation::make_ref<clsCeldos>();
    for (const Ref<Field>& field : items_.snapshot()) {
        if (!left_out.has(field->get_Name())) add_to(*result, field, copy);
    }
    return result;
}

automation::Ref<clsCeldos> clsCeldos::Range(const std::u16string& vCeldos) const { return named(vCeldos, false); }
automation::Ref<clsCeldos> clsCeldos::RangeAs(const std::u16string& vCeldos) const { return named(vCeldos, true); }
automation::Ref<clsCeldos> clsCeldos::RangeEx(const std::u16string& vCeldos) const { return others(vCeldos, false); }
automation::Ref<clsCeldos> clsCeldos::RangeExAs(const std::u16string& vCeldos) const { return others(vCeldos, true); }

}  // namespace celdo::collections

#include "services/service_support.hpp"

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/format.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"

namespace celdo::services {

using automation::Variant;

std::u16string build_format(const Variant& value, const std::u16string& format) {
    if (!format.empty()) {
        return automation::to_string(automation::format(value, format, automation::FirstDayOfWeek::Sunday,
                                                        automation::FirstWeekOfYear::January1));
    }
    if (value.is_null()) return {};
    return automation::to_string(value);
}

size_t instr(size_t start, const std::u16string& text, const std::u16string& find) {
    return static_cast<size_t>(automation::to_long(
        automation::lang::InStr(static_cast<int32_t>(start), Variant(text), Variant(find))));
}

int16_t list_last_index(automation::LateBound& list) {
    return automation::to_integer(Variant(automation::to_long(list.get(u"ListCount")) - 1));
}

Fields fields_in(const Variant& value) {
    if (value.is_object()) {
        automation::Object* object = value.as_object();
        if (!object) return nullptr;
        if (auto* fields = dynamic_cast<collections::clsCeldos*>(object)) return Fields(fields);
    }
    throw automation::AutomationError(automation::StdError::TypeMismatch);
}

std::vector<Field> fields_of(const Fields& header) {
    std::vector<Field> result;
    if (!header) return result;
    result.reserve(header->size());
    for (size_t i = 0; i < header->size(); ++i) result.emplace_back(&header->at(i));
    return result;
}

Variant shown_for_null(const fields::clsCeldo&) { return Variant(std::u16string()); }

std::u16string text_of(const Variant& value) { return value.is_null() ? std::u16string() : automation::to_string(value); }

Variant element_key(const std::u16string& key) {
    if (key.empty()) return Variant::missing();
    if (automation::lang::IsNumeric(Variant(key))) return Variant(u"K" + key);
    return Variant(key);
}

std::u16string key_given(const std::u16string& key) {
    if (!key.empty() && key[0] == u'K') {
        const std::u16string rest = key.substr(1);
        if (rest.empty() || automation::lang::IsNumeric(Variant(rest))) return rest;
    }
    return key;
}

bool at_least_zero(const Variant& index) {
    const automation::Ordering order = automation::compare_to_typed(index, Variant(0));
    return order == automation::Ordering::Greater || order == automation::Ordering::Equal;
}

const automation::Array* matrix_of(const Variant& value) {
    if (!value.is_array()) return nullptr;
    const automation::Array& array = value.as_array();
    return array.dimensions() == 2 ? &array : nullptr;
}

}  // namespace celdo::services

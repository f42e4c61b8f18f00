#include "automation/late_binding.hpp"

#include <vector>

#include "automation/enumerator.hpp"
#include "automation/error.hpp"

namespace celdo::automation {

Variant late_call(Object& object, std::u16string_view member, uint16_t call, std::initializer_list<Arg> args) {
    auto id = object.member_id(member);
    if (!id) throw AutomationError(StdError::MemberNotFound);
    return invoke_with(object, *id, call, args);
}

Variant invoke_with(Object& object, int32_t member, uint16_t call, std::initializer_list<Arg> args) {
    std::vector<Argument> arguments;
    arguments.reserve(args.size());
    for (const Arg& a : args) arguments.push_back({a.value_, a.ref_ != nullptr});
    Variant result = object.invoke(member, call, arguments);
    size_t i = 0;
    for (const Arg& a : args) {
        if (a.ref_) *a.ref_ = std::move(arguments[i].value);
        ++i;
    }
    return result;
}

std::vector<Variant> items_of(const Variant& collection) {
    std::vector<Variant> items;
    if (collection.is_array()) {
        const auto elements = collection.as_array().elements();
        return {elements.begin(), elements.end()};
    }
    if (!collection.is_object()) throw AutomationError(StdError::NotACollection);
    if (!collection.as_object()) throw AutomationError(StdError::ObjectVariableNotSet);
    const Variant walker = invoke_with(*collection.as_object(), kNewEnumMember, kMethod | kGet, {});
    auto* enumerator = dynamic_cast<Enumerator*>(walker.as_object());
    if (!enumerator) throw AutomationError(StdError::NotACollection);
    for (Variant item; enumerator->next(item);) items.push_back(std::move(item));
    return items;
}

Object& LateBound::target() const {
    if (!object_) throw AutomationError(StdError::ObjectVariableNotSet);
    return *object_;
}

std::optional<int32_t> LateBound::lookup(std::u16string_view member) {
    for (const auto& [name, id] : ids_) {
        if (name == member) return id;
    }
    auto id = target().member_id(member);
    if (id) ids_.emplace_back(member, *id);
    return id;
}

int32_t LateBound::id_of(std::u16string_view member) {
    auto id = lookup(member);
    if (!id) throw AutomationError(StdError::MemberNotFound);
    return *id;
}

bool LateBound::has(std::u16string_view member) { return object_ && lookup(member).has_value(); }

}  // namespace celdo::automation

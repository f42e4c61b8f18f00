#include "automation/late_binding.hpp"

#include <vector>

#include "automation/error.hpp"

namespace celdo::automation {

Variant late_call(Object& object, std::u16string_view member, uint16_t call, std::initializer_list<Arg> args) {
    auto id = object.member_id(member);
    if (!id) throw AutomationError(StdError::MemberNotFound);
    std::vector<Argument> arguments;
    arguments.reserve(args.size());
    for (const Arg& a : args) arguments.push_back({a.value_, a.ref_ != nullptr});
    Variant result = object.invoke(*id, call, arguments);
    size_t i = 0;
    for (const Arg& a : args) {
        if (a.ref_) *a.ref_ = std::move(arguments[i].value);
        ++i;
    }
    return result;
}

}  // namespace celdo::automation

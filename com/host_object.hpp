#pragma once
// Host objects (controls, the data-access object) seen through the core's late-bound
// interface: member names resolve through IDispatch, or IDispatchEx where a script object
// does not implement GetIDsOfNames.

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <utility>
#include <vector>

#include "automation/object.hpp"
#include "automation/variant.hpp"
#include "com/owners.hpp"

namespace celdo::com {

class HostObject final : public automation::Object {
public:
    explicit HostObject(IUnknown* unknown);

    IUnknown* unknown() const noexcept { return unknown_.get(); }

    std::u16string type_name() const override;
    std::optional<int32_t> member_id(std::u16string_view name) override;
    automation::Variant invoke(int32_t member, uint16_t call,
                               std::span<automation::Argument> args) override;
    // Through the connection point of the object's default source interface, whose type
    // information names the events.
    std::unique_ptr<automation::Subscription> listen(automation::EventSink& sink) override;

private:
    // How each parameter of a member is declared (VT_EMPTY when the object has no type
    // information), so that by-reference arguments reach typed ByRef parameters typed and
    // script objects as references to Variants.
    const std::vector<VARTYPE>& parameter_types(DISPID member, uint16_t call);

    com_ptr<IUnknown> unknown_;
    com_ptr<IDispatch> dispatch_;
    std::vector<std::pair<std::u16string, DISPID>> names_;
    std::vector<std::pair<std::pair<DISPID, uint16_t>, std::vector<VARTYPE>>> parameters_;
};

}  // namespace celdo::com

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

namespace celdo::com {

class HostObject final : public automation::Object {
public:
    explicit HostObject(IUnknown* unknown);
    ~HostObject() override;

    IUnknown* unknown() const noexcept { return unknown_; }

    std::u16string type_name() const override;
    std::optional<int32_t> member_id(std::u16string_view name) override;
    automation::Variant invoke(int32_t member, uint16_t call,
                               std::span<automation::Argument> args) override;

private:
    IUnknown* unknown_;
    IDispatch* dispatch_;
    std::vector<std::pair<std::u16string, DISPID>> names_;
};

}  // namespace celdo::com

#pragma once
// Helpers for the field tests: a field of a given type, and a recorder of its change events.

#include <span>

#include "automation/component.hpp"
#include "fields/clsCeldo.hpp"

namespace celdo::testing {

inline automation::Ref<fields::clsCeldo> field_of(fields::ExDataType type, std::u16string name = u"Campo") {
    auto f = automation::make_ref<fields::clsCeldo>();
    f->let_Name(name);
    f->let_DataType(type);
    return f;
}

// Counts the change events a field raises while attached.
class ChangeCounter final : public automation::Peer {
public:
    explicit ChangeCounter(automation::Component& field) : field_(field) { field_.attach_peer(this); }
    ~ChangeCounter() { field_.detach_peer(this); }
    void raise_event(int32_t, std::span<automation::Argument>) override { ++count; }
    int count = 0;

private:
    automation::Component& field_;
};

}  // namespace celdo::testing

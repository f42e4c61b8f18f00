#pragma once
// A host's call into the library, for as long as it lasts. The outermost one on a thread first
// collects the reference cycles that have come due: at that point no library code is running
// on the thread, so every object still in use is held by a counted reference.

#include "automation/lifetime.hpp"

namespace celdo::com {

class HostCall {
public:
    HostCall() noexcept {
        if (automation::OutsideCall::outermost()) automation::ObjectRegistry::current().collect_if_due();
    }

private:
    automation::OutsideCall call_;  // entered before the body above runs
};

}  // namespace celdo::com

#pragma once
// The private interface by which the library recognises its own objects when a host hands
// them back, so that a field given to a collection is the same field, not a late-bound copy.
// It is never registered or marshalled: across apartments the QueryInterface simply fails and
// the object is treated as any host object.

#include <windows.h>
#include <unknwn.h>

namespace celdo::automation {
class Component;
}

namespace celdo::com {

extern const IID IID_ICeldoCore;

struct ICeldoCore : public IUnknown {
    // The core object, without a reference added, when the caller is the same module
    // (`module` is its &IID_ICeldoCore); null for another module, such as a second copy of
    // the library loaded side by side, whose objects it must call as any host's.
    virtual automation::Component* STDMETHODCALLTYPE core(const void* module) = 0;
};

}  // namespace celdo::com

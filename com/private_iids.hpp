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
    // The core object, without a reference added.
    virtual automation::Component* STDMETHODCALLTYPE core() = 0;
};

}  // namespace celdo::com

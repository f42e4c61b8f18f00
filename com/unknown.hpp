#pragma once
// Reference counting and QueryInterface for the small COM objects that answer to one interface
// besides IUnknown (class factories, enumerators). They count as live objects for
// DllCanUnloadNow.

#include <windows.h>
#include <unknwn.h>

#include "com/class_registry.hpp"

namespace celdo::com {

// QueryInterface of an object that answers to IUnknown and `iid` alone, through `self`.
template <class I>
HRESULT query_single(I* self, REFIID iid, REFIID riid, void** out) {
    if (!out) return E_POINTER;
    if (riid != IID_IUnknown && riid != iid) {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    *out = self;
    self->AddRef();
    return S_OK;
}

template <class I>
class SingleInterface : public I {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        return query_single(static_cast<I*>(this), iid_, riid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++refs_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG n = --refs_;
        if (n == 0) {
            delete this;
            object_released();
        }
        return n;
    }

protected:
    explicit SingleInterface(REFIID iid) : iid_(iid) { object_created(); }
    virtual ~SingleInterface() { object_destroyed(); }

private:
    ULONG refs_ = 0;
    IID iid_;
};

}  // namespace celdo::com

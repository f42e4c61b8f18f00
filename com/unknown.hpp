#pragma once
// Reference counting and QueryInterface for the small COM objects that answer to one interface
// besides IUnknown (class factories, enumerators). They count as live objects for
// DllCanUnloadNow.

#include <windows.h>
#include <unknwn.h>

#include "com/class_registry.hpp"

namespace celdo::com {

template <class I>
class SingleInterface : public I {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        if (!out) return E_POINTER;
        if (riid == IID_IUnknown || riid == iid_) {
            *out = static_cast<I*>(this);
            AddRef();
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
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

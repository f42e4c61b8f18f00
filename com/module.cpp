// Entry points of the in-process server: class objects and unloading.

#include <windows.h>
#include <objbase.h>

#include "automation/component.hpp"
#include "automation/dispatch.hpp"
#include "com/class_registry.hpp"
#include "com/errors.hpp"
#include "com/unknown.hpp"

namespace celdo::com {
namespace {

class ClassFactory final : public SingleInterface<IClassFactory> {
public:
    explicit ClassFactory(const ComClass& cls) : SingleInterface(IID_IClassFactory), class_(cls) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        const automation::ClassInfo& info = class_.info();
        if (!info.create) return CLASS_E_CLASSNOTAVAILABLE;
        IUnknown* object = nullptr;
        HRESULT hr = guarded(*class_.iid, [&] { object = class_.make(info.create()); });
        if (FAILED(hr)) return hr;
        if (!object) return E_UNEXPECTED;
        object->AddRef();
        hr = object->QueryInterface(riid, out);
        object->Release();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        lock_module(lock != FALSE);
        return S_OK;
    }

private:
    const ComClass& class_;
};

}  // namespace
}  // namespace celdo::com

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        celdo::com::set_module_handle(instance);
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    const celdo::com::ComClass* cls = celdo::com::find_class(clsid);
    if (!cls) return CLASS_E_CLASSNOTAVAILABLE;
    auto* factory = new (std::nothrow) celdo::com::ClassFactory(*cls);
    if (!factory) return E_OUTOFMEMORY;
    factory->AddRef();
    HRESULT hr = factory->QueryInterface(riid, out);
    factory->Release();
    return hr;
}

STDAPI DllCanUnloadNow() { return celdo::com::module_in_use() ? S_FALSE : S_OK; }

// Entry points of the in-process server: class objects and unloading.

#include <windows.h>
#include <objbase.h>

#include <atomic>
#include <memory>
#include <vector>

#include "automation/component.hpp"
#include "automation/dispatch.hpp"
#include "automation/lifetime.hpp"
#include "com/class_registry.hpp"
#include "com/errors.hpp"
#include "com/pictures.hpp"
#include "com/unknown.hpp"
#include "services/ISService.hpp"

namespace celdo::com {
namespace {

// One class object per class, for the life of the module. As COM's rules for in-process servers
// have it, references to class objects do not keep the module loaded (a client that keeps one
// calls LockServer): script engines hold on to the class objects of what they created.
class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(const ComClass& cls) : class_(cls) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        return query_single(static_cast<IClassFactory*>(this), IID_IClassFactory, riid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        const automation::ClassInfo& info = class_.info();
        if (!info.create) return CLASS_E_CLASSNOTAVAILABLE;
        com_ptr<IUnknown> object;
        const HRESULT hr = guarded(*class_.iid, [&] { object = com_ptr<IUnknown>::copy(class_.make(info.create())); });
        if (FAILED(hr)) return hr;
        if (!object) return E_UNEXPECTED;
        return object->QueryInterface(riid, out);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        lock_module(lock != FALSE);
        return S_OK;
    }

private:
    const ComClass& class_;
};

ClassFactory& class_object(const ComClass& cls) {
    // Made on first need, never destroyed: the module's lifetime is theirs. Threads of several
    // apartments may ask at once: one factory is kept, any other made meanwhile is dropped.
    static auto* factories = new std::vector<std::atomic<ClassFactory*>>(classes().size());
    std::atomic<ClassFactory*>& slot = (*factories)[static_cast<size_t>(&cls - classes().data())];
    if (ClassFactory* kept = slot.load()) return *kept;
    auto made = std::make_unique<ClassFactory>(cls);
    ClassFactory* expected = nullptr;
    if (!slot.compare_exchange_strong(expected, made.get())) return *expected;
    return *made.release();
}

}  // namespace
}  // namespace celdo::com

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        celdo::com::set_module_handle(instance);
        celdo::services::install_picture_loader(&celdo::com::load_picture);
    } else if (reason == DLL_THREAD_DETACH) {
        celdo::automation::ObjectRegistry::thread_ending();
    } else if (reason == DLL_PROCESS_DETACH) {
        celdo::com::report_lifetime();
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    const celdo::com::ComClass* cls = celdo::com::find_class(clsid);
    if (!cls) return CLASS_E_CLASSNOTAVAILABLE;
    // The class object is made on first need, which may find no memory.
    HRESULT hr = E_NOINTERFACE;
    const HRESULT made = celdo::com::guarded(IID_IClassFactory, [&] { hr = celdo::com::class_object(*cls).QueryInterface(riid, out); });
    return FAILED(made) ? made : hr;
}

STDAPI DllCanUnloadNow() { return celdo::com::can_unload(); }

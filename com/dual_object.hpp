#pragma once
// The COM identity of a library object: its dual interface (the vtable shims are generated per
// class; IDispatch is shared), error info, class info and, for classes with events, a
// connection point. Every call ends in the class's member table.

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>

#include <memory>
#include <span>
#include <vector>

#include "automation/dispatch.hpp"
#include "com/class_registry.hpp"
#include "com/errors.hpp"
#include "com/private_iids.hpp"

namespace celdo::com {

class DualObjectBase : public automation::Peer {
public:
    // The canonical IUnknown of the object.
    virtual IUnknown* identity() = 0;
    automation::Component& core_object() noexcept { return *core_; }
    const ComClass& com_class() const noexcept { return *class_; }

    ULONG add_ref() noexcept { return ++refs_; }
    ULONG release() noexcept;

    // Shared IDispatch, ISupportErrorInfo, IProvideClassInfo2 and IConnectionPointContainer.
    HRESULT type_info(UINT index, ITypeInfo** info) noexcept;
    HRESULT ids_of_names(REFIID riid, LPOLESTR* names, UINT count, DISPID* ids) noexcept;
    HRESULT invoke(DISPID member, REFIID riid, WORD flags, DISPPARAMS* params, VARIANT* result,
                   EXCEPINFO* exception, UINT* arg_error) noexcept;
    HRESULT supports_error_info(REFIID riid) noexcept;
    HRESULT class_info(ITypeInfo** info) noexcept;
    HRESULT guid(DWORD kind, GUID* out) noexcept;
    HRESULT enum_connection_points(IEnumConnectionPoints** out) noexcept;
    HRESULT find_connection_point(REFIID riid, IConnectionPoint** out) noexcept;

    void raise_event(int32_t event, std::span<automation::Argument> args) override;

    // Used by the generated vtable shims.
    static automation::Variant invoke_on(automation::Component& core, int32_t member, uint16_t call,
                                         std::span<automation::Argument> args);
    template <class F>
    HRESULT call(F&& body) noexcept {
        return guarded(*class_->iid, [&] { body(*core_); });
    }

protected:
    explicit DualObjectBase(automation::Ref<automation::Component> core);
    virtual ~DualObjectBase();

private:
    class ConnectionPoint;
    friend class ConnectionPoint;

    ULONG refs_ = 0;
    automation::Ref<automation::Component> core_;
    const ComClass* class_;
    std::unique_ptr<ConnectionPoint> point_;
};

template <class I>
class DualObject : public I,
                   public ISupportErrorInfo,
                   public IProvideClassInfo2,
                   public IConnectionPointContainer,
                   public ICeldoCore,
                   public DualObjectBase {
public:
    explicit DualObject(automation::Ref<automation::Component> core) : DualObjectBase(std::move(core)) {}

    IUnknown* identity() override { return static_cast<I*>(this); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        if (!out) return E_POINTER;
        void* p = nullptr;
        if (riid == IID_IUnknown || riid == IID_IDispatch || riid == *com_class().iid)
            p = static_cast<I*>(this);
        else if (riid == IID_ISupportErrorInfo)
            p = static_cast<ISupportErrorInfo*>(this);
        else if (riid == IID_IProvideClassInfo || riid == IID_IProvideClassInfo2)
            p = static_cast<IProvideClassInfo2*>(this);
        else if (riid == IID_IConnectionPointContainer && com_class().events_iid)
            p = static_cast<IConnectionPointContainer*>(this);
        else if (riid == IID_ICeldoCore)
            p = static_cast<ICeldoCore*>(this);
        *out = p;
        if (!p) return E_NOINTERFACE;
        add_ref();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return add_ref(); }
    ULONG STDMETHODCALLTYPE Release() override { return release(); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        return type_info(index, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override {
        return ids_of_names(riid, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID riid, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* arg_error) override {
        return invoke(member, riid, flags, params, result, exception, arg_error);
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) override {
        return supports_error_info(riid);
    }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override { return class_info(info); }
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* out) override { return guid(kind, out); }
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** out) override {
        return enum_connection_points(out);
    }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID riid, IConnectionPoint** out) override {
        return find_connection_point(riid, out);
    }
    automation::Component* STDMETHODCALLTYPE core(const void* module) override {
        return module == &IID_ICeldoCore ? &core_object() : nullptr;
    }
};

}  // namespace celdo::com

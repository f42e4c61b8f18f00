#include "com/host_object.hpp"

#include <dispex.h>
#include <ocidl.h>

#include "automation/error.hpp"
#include "automation/textops.hpp"
#include "com/bridge.hpp"
#include "com/errors.hpp"
#include "com/unknown.hpp"

namespace celdo::com {

using automation::Argument;
using automation::AutomationError;
using automation::StdError;
using automation::Variant;

HostObject::HostObject(IUnknown* unknown)
    : unknown_(com_ptr<IUnknown>::copy(unknown)), dispatch_(query<IDispatch>(unknown, IID_IDispatch)) {}

namespace {

// Not in every import library: {A6EF9860-C720-11D0-9337-00A0C90DCAA9}.
const IID kDispatchEx = {0xa6ef9860, 0xc720, 0x11d0, {0x93, 0x37, 0x00, 0xa0, 0xc9, 0x0d, 0xca, 0xa9}};

std::u16string type_info_name(ITypeInfo* info) {
    unique_bstr name;
    if (FAILED(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr))) return {};
    return text_of(name.get());
}

// A by-reference argument refers to a slot that owns its value: typed as the parameter is
// declared when the object says how, otherwise a Variant, which script objects write through.
void bind_reference(VARIANTARG* arg, VARIANT* slot, VARTYPE declared, const Variant& value) {
    const auto type = static_cast<VARTYPE>(declared & ~VT_BYREF);
    if (!(declared & VT_BYREF) || !is_language_type(type)) {
        to_variant(value, slot);
        V_VT(arg) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(arg) = slot;
        return;
    }
    to_variant_as(type, value, slot);
    V_VT(arg) = static_cast<VARTYPE>(VT_BYREF | type);
    V_BYREF(arg) = data_of(slot);
}

// The dispinterface through which an object raises its events: its class's default source
// when it tells its class (as controls do), otherwise the first of its connection points that
// its own type library describes.
com_ptr<ITypeInfo> event_interface(IUnknown* object, IDispatch* dispatch, IConnectionPointContainer* container) {
    if (auto provide = query<IProvideClassInfo>(object, IID_IProvideClassInfo)) {
        com_ptr<ITypeInfo> coclass;
        if (SUCCEEDED(provide->GetClassInfo(coclass.put())) && coclass) {
            type_attr attr(coclass.get());
            const WORD count = SUCCEEDED(coclass->GetTypeAttr(attr.put())) && attr.get() ? attr.get()->cImplTypes : 0;
            for (WORD i = 0; i < count; ++i) {
                INT flags = 0;
                HREFTYPE ref = 0;
                com_ptr<ITypeInfo> source;
                const INT wanted = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;
                if (SUCCEEDED(coclass->GetImplTypeFlags(i, &flags)) && (flags & wanted) == wanted &&
                    SUCCEEDED(coclass->GetRefTypeOfImplType(i, &ref)) &&
                    SUCCEEDED(coclass->GetRefTypeInfo(ref, source.put())))
                    return source;
            }
        }
    }
    com_ptr<ITypeInfo> own;
    com_ptr<ITypeLib> library;
    UINT index = 0;
    com_ptr<IEnumConnectionPoints> points;
    if (!dispatch || FAILED(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, own.put())) || !own ||
        FAILED(own->GetContainingTypeLib(library.put(), &index)) || FAILED(container->EnumConnectionPoints(points.put())) ||
        !points)
        return nullptr;
    for (com_ptr<IConnectionPoint> point; points->Next(1, point.put(), nullptr) == S_OK;) {
        IID iid;
        com_ptr<ITypeInfo> source;
        if (SUCCEEDED(point->GetConnectionInterface(&iid)) && SUCCEEDED(library->GetTypeInfoOfGuid(iid, source.put())))
            return source;
    }
    return nullptr;
}

// Receives a host object's events and hands them on by the names its type information gives.
class EventForwarder final : public SingleInterface<IDispatch> {
public:
    EventForwarder(REFIID source, com_ptr<ITypeInfo> names, automation::EventSink& sink)
        : SingleInterface<IDispatch>(source), names_(std::move(names)), sink_(&sink) {}

    // Called when the subscription ends: events still on their way are dropped.
    void detach() noexcept { sink_ = nullptr; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        if (out && riid == IID_IDispatch) {
            *out = static_cast<IDispatch*>(this);
            AddRef();
            return S_OK;
        }
        return SingleInterface<IDispatch>::QueryInterface(riid, out);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* exception,
                                     UINT*) override {
        // The sink may end the subscription, and with it this object's last reference.
        const com_ptr<IDispatch> keep = com_ptr<IDispatch>::copy(this);
        unique_bstr name;
        UINT found = 0;
        if (!sink_ || FAILED(names_->GetNames(event, name.put(), 1, &found)) || found == 0) return S_OK;
        HostCall call;
        try {
            sink_->on_event(text_of(name.get()));
            return S_OK;
        } catch (...) {
            return caught_error(IID_IDispatch, Boundary::Dispatch, exception);
        }
    }

private:
    com_ptr<ITypeInfo> names_;
    automation::EventSink* sink_;
};

// A forwarder advised on a connection point, unadvised when it goes. Made before it advises,
// so that nothing can fail between advising and owning the cookie.
class Advised final : public automation::Subscription {
public:
    Advised(com_ptr<IConnectionPoint> point, com_ptr<EventForwarder> forwarder)
        : point_(std::move(point)), forwarder_(std::move(forwarder)) {}
    ~Advised() override {
        forwarder_->detach();
        if (advised_) point_->Unadvise(cookie_);
    }
    HRESULT advise() noexcept {
        const HRESULT hr = point_->Advise(forwarder_.get(), &cookie_);
        advised_ = SUCCEEDED(hr);
        return hr;
    }

private:
    com_ptr<IConnectionPoint> point_;
    com_ptr<EventForwarder> forwarder_;
    DWORD cookie_ = 0;
    bool advised_ = false;
};

}  // namespace

std::unique_ptr<automation::Subscription> HostObject::listen(automation::EventSink& sink) {
    auto container = query<IConnectionPointContainer>(unknown_.get(), IID_IConnectionPointContainer);
    if (!container) return nullptr;
    com_ptr<ITypeInfo> source = event_interface(unknown_.get(), dispatch_.get(), container.get());
    if (!source) return nullptr;
    type_attr attr(source.get());
    com_ptr<IConnectionPoint> point;
    if (FAILED(source->GetTypeAttr(attr.put())) || !attr.get() ||
        FAILED(container->FindConnectionPoint(attr.get()->guid, point.put())) || !point)
        return nullptr;
    auto forwarder = com_ptr<EventForwarder>::copy(new EventForwarder(attr.get()->guid, source, sink));
    auto subscription = std::make_unique<Advised>(std::move(point), std::move(forwarder));
    if (const HRESULT hr = subscription->advise(); FAILED(hr)) throw error_from_call(hr, nullptr);
    return subscription;
}

std::u16string HostObject::type_name() const {
    // The class name when the object tells it, otherwise its interface's name without the
    // underscore that default interfaces carry.
    if (auto provide = query<IProvideClassInfo>(unknown_.get(), IID_IProvideClassInfo)) {
        com_ptr<ITypeInfo> info;
        if (SUCCEEDED(provide->GetClassInfo(info.put())) && info) {
            std::u16string name = type_info_name(info.get());
            if (!name.empty()) return name;
        }
    }
    com_ptr<ITypeInfo> info;
    if (dispatch_ && SUCCEEDED(dispatch_->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put())) && info) {
        std::u16string name = type_info_name(info.get());
        if (!name.empty() && name[0] == u'_') name.erase(0, 1);
        if (!name.empty()) return name;
    }
    return u"Object";
}

std::optional<int32_t> HostObject::member_id(std::u16string_view name) {
    if (!dispatch_) return std::nullopt;
    std::u16string key = automation::lower_case(name);
    for (const auto& [known, id] : names_) {
        if (known == key) return id;
    }
    std::u16string text(name);
    LPOLESTR names[] = {reinterpret_cast<LPOLESTR>(text.data())};
    DISPID id = DISPID_UNKNOWN;
    HRESULT hr = dispatch_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) {
        if (auto ex = query<IDispatchEx>(dispatch_.get(), kDispatchEx))
            hr = ex->GetDispID(unique_bstr::from(name).get(), fdexNameCaseInsensitive, &id);
    }
    if (FAILED(hr)) return std::nullopt;
    names_.emplace_back(std::move(key), id);
    return id;
}

const std::vector<VARTYPE>& HostObject::parameter_types(DISPID member, uint16_t call) {
    for (const auto& [key, types] : parameters_) {
        if (key.first == member && key.second == call) return types;
    }
    std::vector<VARTYPE> types;
    UINT count = 0;
    com_ptr<ITypeInfo> info;
    if (SUCCEEDED(dispatch_->GetTypeInfoCount(&count)) && count > 0 &&
        SUCCEEDED(dispatch_->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put())) && info) {
        const INVOKEKIND wanted = (call & automation::kSet)   ? INVOKE_PROPERTYPUTREF
                                  : (call & automation::kLet) ? INVOKE_PROPERTYPUT
                                                              : INVOKE_FUNC;
        type_attr attr(info.get());
        const WORD functions = SUCCEEDED(info->GetTypeAttr(attr.put())) && attr.get() ? attr.get()->cFuncs : 0;
        for (WORD f = 0; f < functions; ++f) {
            func_desc desc(info.get());
            if (FAILED(info->GetFuncDesc(f, desc.put()))) continue;
            const FUNCDESC* d = desc.get();
            const bool reading = wanted == INVOKE_FUNC && d->invkind == INVOKE_PROPERTYGET;
            if (d->memid != member || (d->invkind != wanted && !reading)) continue;
            for (SHORT i = 0; i < d->cParams; ++i) {
                const TYPEDESC& t = d->lprgelemdescParam[i].tdesc;
                types.push_back(t.vt == VT_PTR ? static_cast<VARTYPE>(VT_BYREF | t.lptdesc->vt) : t.vt);
            }
            break;
        }
    }
    parameters_.push_back({{member, call}, std::move(types)});
    return parameters_.back().second;
}

Variant HostObject::invoke(int32_t member, uint16_t call, std::span<Argument> args) {
    if (!dispatch_) throw AutomationError(StdError::MemberNotFound);
    const size_t n = args.size();
    bool any_by_ref = false;
    for (const Argument& a : args) any_by_ref = any_by_ref || a.by_ref;
    static const std::vector<VARTYPE> undeclared;
    const std::vector<VARTYPE>& declared = any_by_ref ? parameter_types(member, call) : undeclared;

    OutgoingArguments outgoing(n);
    for (size_t i = 0; i < n; ++i) {
        if (!args[i].by_ref) outgoing.by_value(i, args[i].value);
        else bind_reference(outgoing.arg(i), outgoing.slot(i), i < declared.size() ? declared[i] : VARTYPE{VT_EMPTY}, args[i].value);
    }

    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params = outgoing.params();
    if ((call & (automation::kLet | automation::kSet)) && n > 0) {
        params.rgdispidNamedArgs = &put;
        params.cNamedArgs = 1;
    }
    unique_variant result;
    EXCEPINFO info{};
    UINT arg_error = 0;
    const HRESULT hr = dispatch_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, call_kinds(call), &params,
                                         result.get(), &info, &arg_error);
    if (FAILED(hr)) {
        // A host that failed may also have left an error object on the thread. It is taken off
        // here, with what it says kept in the error raised: an error the library then deals
        // with (a fill that stops quietly) leaves nothing pending for the host to misread.
        com_ptr<IErrorInfo> pending;
        GetErrorInfo(0, pending.put());
        throw error_from_call(hr, &info, pending.get());
    }
    for (size_t i = 0; i < n; ++i) {
        if (args[i].by_ref) args[i].value = from_variant(outgoing.arg(i));
    }
    return from_variant(result.get());
}

}  // namespace celdo::com

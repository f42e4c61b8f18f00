#include "com/dual_object.hpp"

#include <olectl.h>

#include <algorithm>
#include <memory>

#include "automation/error.hpp"
#include "com/bridge.hpp"
#include "com/type_library.hpp"
#include "com/unknown.hpp"

namespace celdo::com {

using automation::Argument;
using automation::AutomationError;
using automation::StdError;
using automation::Variant;

// ------------------------------------------------------------------------- connection point

namespace {

struct Sink {
    DWORD cookie;
    com_ptr<IDispatch> sink;
};

// What an enumerator hands out: a new reference the caller releases.
IConnectionPoint* hand_out(const com_ptr<IConnectionPoint>& point) {
    return com_ptr<IConnectionPoint>(point).detach();
}
CONNECTDATA hand_out(const Sink& s) { return {com_ptr<IDispatch>(s.sink).detach(), s.cookie}; }

// A one-shot enumerator over a fixed list, for EnumConnectionPoints and EnumConnections.
template <class Enum, class Item, class Held>
class ListEnum final : public SingleInterface<Enum> {
public:
    ListEnum(std::vector<Held> items, REFIID iid) : SingleInterface<Enum>(iid), items_(std::move(items)), iid_(iid) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Item* out, ULONG* fetched) override {
        if (!out || (count > 1 && !fetched)) return E_POINTER;
        ULONG got = 0;
        while (got < count && at_ < items_.size()) out[got++] = hand_out(items_[at_++]);
        if (fetched) *fetched = got;
        return got == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        at_ = std::min<size_t>(items_.size(), at_ + count);
        return at_ < items_.size() ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        at_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Enum** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        return guarded(iid_, [&] {
            auto* clone = new ListEnum(items_, iid_);
            clone->at_ = at_;
            *out = com_ptr<Enum>::copy(clone).detach();
        });
    }

    static com_ptr<Enum> make(std::vector<Held> items, REFIID iid) {
        return com_ptr<Enum>::copy(new ListEnum(std::move(items), iid));
    }

private:
    std::vector<Held> items_;
    size_t at_ = 0;
    IID iid_;
};

}  // namespace

// Lives inside its container: its references are the container's.
class DualObjectBase::ConnectionPoint final : public IConnectionPoint {
public:
    explicit ConnectionPoint(DualObjectBase& owner) : owner_(owner) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        return query_single(static_cast<IConnectionPoint*>(this), IID_IConnectionPoint, riid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return owner_.add_ref(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner_.release(); }

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
        if (!iid) return E_POINTER;
        *iid = *owner_.class_->events_iid;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** out) override {
        if (!out) return E_POINTER;
        return owner_.identity()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(out));
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
        if (!sink || !cookie) return E_POINTER;
        com_ptr<IDispatch> d = query<IDispatch>(sink, *owner_.class_->events_iid);
        if (!d) d = query<IDispatch>(sink, IID_IDispatch);
        if (!d) return CONNECT_E_CANNOTCONNECT;
        return guarded(IID_IConnectionPoint, [&] {
            sinks_.push_back({last_cookie_ + 1, std::move(d)});
            *cookie = ++last_cookie_;
        });
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
        auto it = std::find_if(sinks_.begin(), sinks_.end(), [&](const Sink& s) { return s.cookie == cookie; });
        if (it == sinks_.end()) return CONNECT_E_NOCONNECTION;
        // Released after it has left the list: the sink may call back while it goes.
        com_ptr<IDispatch> gone = std::move(it->sink);
        sinks_.erase(it);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        return guarded(IID_IConnectionPoint, [&] {
            *out = ListEnum<IEnumConnections, CONNECTDATA, Sink>::make(sinks_, IID_IEnumConnections).detach();
        });
    }

    void fire(int32_t event, std::span<Argument> args) {
        if (sinks_.empty()) return;
        // Sinks may disconnect while handling the event: call a copy of the list.
        const std::vector<Sink> targets = sinks_;
        OutgoingArguments outgoing(args.size());
        for (size_t i = 0; i < args.size(); ++i) outgoing.by_value(i, args[i].value);
        DISPPARAMS params = outgoing.params();
        for (const Sink& s : targets)
            s.sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr);
    }

private:
    DualObjectBase& owner_;
    std::vector<Sink> sinks_;
    DWORD last_cookie_ = 0;
};

// ------------------------------------------------------------------------------ the object

DualObjectBase::DualObjectBase(automation::Ref<automation::Component> core)
    : core_(std::move(core)), class_(find_class(core_->class_info())) {
    if (class_->events_iid) point_ = std::make_unique<ConnectionPoint>(*this);
    // Last, once nothing can fail: a core must never point at a peer that was not made.
    core_->attach_peer(this);
    object_created();
}

DualObjectBase::~DualObjectBase() {
    point_.reset();
    core_->detach_peer(this);
    object_destroyed();
}

ULONG DualObjectBase::release() noexcept {
    ULONG n = --refs_;
    if (n == 0) {
        delete this;
        object_released();
    }
    return n;
}

HRESULT DualObjectBase::type_info(UINT index, ITypeInfo** info) noexcept {
    if (!info) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    ITypeLib* library = module_type_library();
    if (!library) return TYPE_E_CANTLOADLIBRARY;
    return library->GetTypeInfoOfGuid(*class_->iid, info);
}

HRESULT DualObjectBase::ids_of_names(REFIID riid, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
    if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!names || !ids || count == 0) return E_INVALIDARG;
    const automation::ClassInfo& info = core_->class_info();
    auto name_of = [](LPOLESTR s) { return std::u16string_view(reinterpret_cast<const char16_t*>(s)); };
    HRESULT hr = S_OK;
    const automation::MemberInfo* member = automation::find_member(info, name_of(names[0]));
    ids[0] = member ? member->id : DISPID_UNKNOWN;
    if (!member) hr = DISP_E_UNKNOWNNAME;
    for (UINT i = 1; i < count; ++i) {
        auto index = member ? automation::find_param(*member, name_of(names[i])) : std::nullopt;
        ids[i] = index ? *index : DISPID_UNKNOWN;
        if (!index) hr = DISP_E_UNKNOWNNAME;
    }
    return hr;
}

HRESULT DualObjectBase::invoke(DISPID id, REFIID riid, WORD flags, DISPPARAMS* params, VARIANT* result,
                               EXCEPINFO* exception, UINT* arg_error) noexcept {
    if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    HostCall host_call;
    const automation::MemberInfo* member = automation::find_member(core_->class_info(), id);
    if (!member) return DISP_E_MEMBERNOTFOUND;
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    if (!params) params = &none;
    const UINT total = params->cArgs;
    const UINT named = params->cNamedArgs;
    if (named > total) return E_INVALIDARG;
    const uint16_t call = call_kinds(flags);
    const bool assigning = (call & (automation::kLet | automation::kSet)) != 0;

    try {
        // Source order: positional arguments come last-first in rgvarg after the named ones.
        std::vector<Argument> args;
        std::vector<VARIANTARG*> origin;  // where each argument came from, for write-back
        const UINT positional = total - named;
        for (UINT i = 0; i < positional; ++i) {
            VARIANTARG* v = &params->rgvarg[total - 1 - i];
            args.push_back({from_variant(v), (V_VT(v) & VT_BYREF) != 0});
            origin.push_back(v);
        }
        VARIANTARG* assigned = nullptr;
        for (UINT n = 0; n < named; ++n) {
            const DISPID name = params->rgdispidNamedArgs[n];
            VARIANTARG* v = &params->rgvarg[n];
            if (name == DISPID_PROPERTYPUT && assigning) {
                assigned = v;
                continue;
            }
            if (name < 0 || static_cast<size_t>(name) >= member->params.size()) {
                if (arg_error) *arg_error = n;
                return DISP_E_PARAMNOTFOUND;
            }
            if (static_cast<size_t>(name) >= args.size()) {
                args.resize(name + 1, Argument{Variant::missing(), false});
                origin.resize(name + 1, nullptr);
            }
            args[name] = {from_variant(v), (V_VT(v) & VT_BYREF) != 0};
            origin[name] = v;
        }
        if (assigning) {
            if (!assigned) {
                // Some hosts pass the assigned value as the last positional argument.
                if (args.empty()) return DISP_E_PARAMNOTOPTIONAL;
            } else {
                args.push_back({from_variant(assigned), false});
                origin.push_back(assigned);
            }
        }

        Variant value;
        try {
            value = automation::invoke_member(*core_, *member, call, args);
        } catch (const automation::ArgumentError& e) {
            const int index = e.index();
            if (arg_error && index >= 0 && static_cast<size_t>(index) < origin.size() && origin[index])
                *arg_error = static_cast<UINT>(origin[index] - params->rgvarg);
            throw;
        }
        for (size_t i = 0; i < args.size(); ++i) {
            if (args[i].by_ref && origin[i]) replace_variant(origin[i], args[i].value);
        }
        if (result) {
            VariantInit(result);
            if (member->has_result || !(call & automation::kMethod)) to_variant(value, result);
        }
        return S_OK;
    } catch (...) {
        return caught_error(*class_->iid, Boundary::Dispatch, exception);
    }
}

HRESULT DualObjectBase::supports_error_info(REFIID riid) noexcept {
    return (riid == *class_->iid || riid == IID_IDispatch) ? S_OK : S_FALSE;
}

HRESULT DualObjectBase::class_info(ITypeInfo** info) noexcept {
    if (!info) return E_POINTER;
    *info = nullptr;
    ITypeLib* library = module_type_library();
    if (!library) return TYPE_E_CANTLOADLIBRARY;
    return library->GetTypeInfoOfGuid(*class_->clsid, info);
}

HRESULT DualObjectBase::guid(DWORD kind, GUID* out) noexcept {
    if (!out) return E_POINTER;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || !class_->events_iid) {
        *out = GUID_NULL;
        return E_INVALIDARG;
    }
    *out = *class_->events_iid;
    return S_OK;
}

HRESULT DualObjectBase::enum_connection_points(IEnumConnectionPoints** out) noexcept {
    if (!out) return E_POINTER;
    *out = nullptr;
    return guarded(IID_IConnectionPointContainer, [&] {
        std::vector<com_ptr<IConnectionPoint>> points;
        if (point_) points.push_back(com_ptr<IConnectionPoint>::copy(point_.get()));
        *out = ListEnum<IEnumConnectionPoints, IConnectionPoint*, com_ptr<IConnectionPoint>>::make(
                   std::move(points), IID_IEnumConnectionPoints)
                   .detach();
    });
}

HRESULT DualObjectBase::find_connection_point(REFIID riid, IConnectionPoint** out) noexcept {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (!point_ || riid != *class_->events_iid) return CONNECT_E_NOCONNECTION;
    *out = com_ptr<IConnectionPoint>::copy(point_.get()).detach();
    return S_OK;
}

void DualObjectBase::raise_event(int32_t event, std::span<Argument> args) {
    if (point_) point_->fire(event, args);
}

Variant DualObjectBase::invoke_on(automation::Component& core, int32_t member, uint16_t call,
                                  std::span<Argument> args) {
    const automation::MemberInfo* m = automation::find_member(core.class_info(), member);
    if (!m) throw AutomationError(StdError::MemberNotFound);
    return automation::invoke_member(core, *m, call, args);
}

}  // namespace celdo::com

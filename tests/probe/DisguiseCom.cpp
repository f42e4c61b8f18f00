// The probe's disguise as COM objects (Windows only, linked into CeldoProbe.dll): an IDispatch
// in front of a script object that answers for it as a control would.
//
// - Type information: one ITypeInfo, a dispinterface without members that carries the name.
// - Optional parameters: a method call or property read that the script object refuses for
//   its argument count is tried again with omitted arguments appended, up to kMostArguments.
// - Default members: a read or call with arguments that is still refused reads the member
//   without arguments and, when that gives an object, calls its default member with them.
// - Objects handed back are disguised the same way (without type information), so all of the
//   above holds down a chain like lv.ListItems.Add(...) or grid.Columns(2).Caption.
// Every object here counts as a COM object of the server, so a script that keeps one keeps
// the DLL loaded, and one left alive shows in the lifetime report.

#include <windows.h>
#include <oaidl.h>
#include <dispex.h>

#include <algorithm>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "automation/error.hpp"
#include "com/bridge.hpp"
#include "com/host_object.hpp"
#include "com/owners.hpp"
#include "com/unknown.hpp"
#include "tests/probe/Disguise.hpp"

namespace celdo::tests::probe {
namespace {

using com::com_ptr;

// Not in every import library: {A6EF9860-C720-11D0-9337-00A0C90DCAA9}.
const IID kDispatchEx = {0xa6ef9860, 0xc720, 0x11d0, {0x93, 0x37, 0x00, 0xa0, 0xc9, 0x0d, 0xca, 0xa9}};

// Positional arguments a short call is padded up to.
constexpr UINT kMostArguments = 10;
// Default members followed one inside another (an object may answer with itself).
constexpr int kMostChained = 8;

// The arguments did not fit the member. Wine's script classes answer E_FAIL for too few or too
// many, before the body runs, so trying again with others runs nothing twice. An error the
// body raises comes as its own HRESULT (Err.Raise 1235 as 0x800A04D3, a division by zero as
// DISP_E_DIVBYZERO) and is handed on as it is; one that raises E_FAIL itself is tried again
// only with more arguments, which are refused before anything runs, and its error stands.
bool misfit(HRESULT hr) noexcept { return hr == E_FAIL || hr == DISP_E_BADPARAMCOUNT; }

// A dispinterface with a name and no members.
class NamedTypeInfo final : public com::SingleInterface<ITypeInfo> {
public:
    explicit NamedTypeInfo(std::u16string name) : SingleInterface(IID_ITypeInfo), name_(std::move(name)) {}

    HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** out) override {
        if (!out) return E_POINTER;
        *out = new (std::nothrow) TYPEATTR{};
        if (!*out) return E_OUTOFMEMORY;
        TYPEATTR& a = **out;
        a.lcid = LOCALE_NEUTRAL;
        a.memidConstructor = MEMBERID_NIL;
        a.memidDestructor = MEMBERID_NIL;
        a.cbSizeInstance = sizeof(void*);
        a.typekind = TKIND_DISPATCH;
        a.cbSizeVft = 7 * sizeof(void*);  // IDispatch's entries
        a.cbAlignment = alignof(void*);
        a.wTypeFlags = TYPEFLAG_FDISPATCHABLE;
        return S_OK;
    }
    void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* attr) override { delete attr; }

    HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID member, BSTR* name, BSTR* doc, DWORD* context,
                                               BSTR* file) override {
        if (name) *name = nullptr;
        if (doc) *doc = nullptr;
        if (context) *context = 0;
        if (file) *file = nullptr;
        if (member != MEMBERID_NIL) return TYPE_E_ELEMENTNOTFOUND;
        if (name) {
            *name = com::unique_bstr::try_from(name_).release();
            if (!*name) return E_OUTOFMEMORY;
        }
        return S_OK;
    }

    // There are no members to describe.
    HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT, FUNCDESC** out) override { return none(out); }
    HRESULT STDMETHODCALLTYPE GetVarDesc(UINT, VARDESC** out) override { return none(out); }
    HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT, HREFTYPE* out) override { return none(out); }
    HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT, INT* out) override { return none(out); }
    HRESULT STDMETHODCALLTYPE GetNames(MEMBERID, BSTR*, UINT, UINT* count) override { return none(count); }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR*, UINT, MEMBERID*) override { return DISP_E_UNKNOWNNAME; }
    void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC*) override {}
    void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC*) override {}

    HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** out) override { return unsupported(out); }
    HRESULT STDMETHODCALLTYPE Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE, ITypeInfo** out) override { return unsupported(out); }
    HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID, INVOKEKIND, PVOID* out) override { return unsupported(out); }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, PVOID* out) override { return unsupported(out); }
    HRESULT STDMETHODCALLTYPE GetMops(MEMBERID, BSTR* out) override { return unsupported(out); }
    HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** out, UINT*) override { return unsupported(out); }

private:
    template <class T>
    static HRESULT none(T* out) noexcept {
        if (out) *out = T{};
        return TYPE_E_ELEMENTNOTFOUND;
    }
    template <class T>
    static HRESULT unsupported(T* out) noexcept {
        if (out) *out = T{};
        return E_NOTIMPL;
    }

    std::u16string name_;
};

// What one call answered, owned until it goes to the caller or is dropped.
class Outcome {
public:
    Outcome() = default;
    Outcome(const Outcome&) = delete;
    Outcome& operator=(const Outcome&) = delete;
    ~Outcome() { clear_exception(); }

    HRESULT hr = E_FAIL;
    com::unique_variant result;
    EXCEPINFO exception{};
    UINT arg_error = 0;

    // Takes the answer of a later try in place of this one.
    void take(Outcome& other) noexcept {
        hr = other.hr;
        *result.put() = other.result.release();
        clear_exception();
        exception = std::exchange(other.exception, EXCEPINFO{});
        arg_error = other.arg_error;
    }
    HRESULT deliver(VARIANT* to_result, EXCEPINFO* to_exception, UINT* to_arg_error) noexcept {
        if (to_result) *to_result = result.release();
        if (to_exception) *to_exception = std::exchange(exception, EXCEPINFO{});
        if (to_arg_error) *to_arg_error = arg_error;
        return hr;
    }

private:
    void clear_exception() noexcept {
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
        exception = EXCEPINFO{};
    }
};

thread_local int chained_now = 0;  // default members being followed on this thread

class DisguisedDispatch final : public com::SingleInterface<IDispatch> {
public:
    // Without a type name (null), no type information: the parts a control hands out need none.
    DisguisedDispatch(com_ptr<IDispatch> target, const std::u16string* type_name)
        : SingleInterface(IID_IDispatch), target_(std::move(target)) {
        if (type_name) info_ = com_ptr<ITypeInfo>::copy(new NamedTypeInfo(*type_name));
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = info_ ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!info_ || index != 0) return DISP_E_BADINDEX;
        *out = com_ptr<ITypeInfo>(info_).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID lcid,
                                            DISPID* ids) override {
        HRESULT hr = target_->GetIDsOfNames(riid, names, count, lcid, ids);
        // Script objects that resolve names only through IDispatchEx.
        if (FAILED(hr) && count == 1 && names && ids) {
            if (auto ex = com::query<IDispatchEx>(target_.get(), kDispatchEx)) {
                com::unique_bstr name(SysAllocString(names[0]));
                if (!name) return E_OUTOFMEMORY;
                hr = ex->GetDispID(name.get(), fdexNameCaseInsensitive, ids);
            }
        }
        return hr;
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* arg_error) override {
        if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        if (!params) return E_INVALIDARG;
        try {
            Outcome out;
            call(out, member, lcid, flags, *params, result != nullptr, exception != nullptr);
            return out.deliver(result, exception, arg_error);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_UNEXPECTED;
        }
    }

private:
    // Asks the target as the caller asked: a result and an EXCEPINFO only where the caller
    // wants them, since some objects answer differently without.
    void attempt(Outcome& out, DISPID member, LCID lcid, WORD flags, DISPPARAMS& params, bool want_result,
                 bool want_exception) {
        out.hr = target_->Invoke(member, IID_NULL, lcid, flags, &params, want_result ? out.result.get() : nullptr,
                                 want_exception ? &out.exception : nullptr, &out.arg_error);
        if (SUCCEEDED(out.hr)) disguise(out.result.get());
    }

    void call(Outcome& out, DISPID member, LCID lcid, WORD flags, DISPPARAMS& params, bool want_result,
              bool want_exception) {
        attempt(out, member, lcid, flags, params, want_result, want_exception);
        if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) || params.cNamedArgs) return;

        // The optional parameters a control would have: arguments come last first, so the
        // omitted ones go in front.
        for (UINT count = params.cArgs + 1; misfit(out.hr) && count <= kMostArguments; ++count) {
            const UINT added = count - params.cArgs;
            std::vector<VARIANTARG> padded(count);
            for (UINT i = 0; i < added; ++i) {
                V_VT(&padded[i]) = VT_ERROR;
                V_ERROR(&padded[i]) = DISP_E_PARAMNOTFOUND;
            }
            std::copy(params.rgvarg, params.rgvarg + params.cArgs, padded.begin() + added);
            DISPPARAMS longer{padded.data(), nullptr, count, 0};
            Outcome retry;
            attempt(retry, member, lcid, flags, longer, want_result, want_exception);
            if (!misfit(retry.hr)) {
                if (retry.arg_error >= added) retry.arg_error -= added;
                out.take(retry);
                return;
            }
        }

        // A property without parameters given some: the control indexes its value, by calling
        // the value's default member with them. The first refusal stands if that cannot be done.
        // (Wine refuses arguments to a public variable as a member it does not have, and reads
        // only properties and variables, never functions, for DISPATCH_PROPERTYGET alone, so
        // a wrongly called Sub is not run here.)
        const bool refused = misfit(out.hr) || out.hr == DISP_E_MEMBERNOTFOUND;
        if (!refused || params.cArgs == 0 || chained_now >= kMostChained) return;
        Outcome read;
        DISPPARAMS none{};
        attempt(read, member, lcid, DISPATCH_PROPERTYGET, none, true, false);
        if (FAILED(read.hr) || V_VT(read.result.get()) != VT_DISPATCH || !V_DISPATCH(read.result.get())) return;
        Outcome chained;
        ++chained_now;
        chained.hr = V_DISPATCH(read.result.get())
                         ->Invoke(DISPID_VALUE, IID_NULL, lcid, flags, &params,
                                  want_result ? chained.result.get() : nullptr,
                                  want_exception ? &chained.exception : nullptr, &chained.arg_error);
        --chained_now;
        if (!misfit(chained.hr) && chained.hr != DISP_E_MEMBERNOTFOUND) out.take(chained);
    }

    // An object handed back stands for a control's part, with the same habits.
    static void disguise(VARIANT* value) {
        if (V_VT(value) != VT_DISPATCH || !V_DISPATCH(value)) return;
        auto wrapped = com_ptr<IDispatch>::copy(
            new DisguisedDispatch(com_ptr<IDispatch>::copy(V_DISPATCH(value)), nullptr));
        V_DISPATCH(value)->Release();
        V_DISPATCH(value) = wrapped.detach();
    }

    com_ptr<IDispatch> target_;
    com_ptr<ITypeInfo> info_;
};

automation::Ref<automation::Object> com_disguise(automation::Object& target, const std::u16string& type_name) {
    com_ptr<IUnknown> unknown = com::unknown_of(automation::Variant(automation::Ref<automation::Object>(&target)));
    auto dispatch = com::query<IDispatch>(unknown.get(), IID_IDispatch);
    if (!dispatch) throw automation::AutomationError(automation::StdError::TypeMismatch);
    auto made = com_ptr<IUnknown>::copy(new DisguisedDispatch(std::move(dispatch), &type_name));
    return automation::Ref<automation::Object>(new com::HostObject(made.get()));
}

[[maybe_unused]] const bool installed = (platform_disguise = &com_disguise, true);

}  // namespace
}  // namespace celdo::tests::probe

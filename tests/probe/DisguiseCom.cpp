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
// Every disguise counts as a COM object of the server, so a script that keeps one keeps
// the DLL loaded, and one left alive shows in the lifetime report.

#include <windows.h>
#include <oaidl.h>
#include <dispex.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "automation/error.hpp"
#include "com/bridge.hpp"
#include "com/errors.hpp"
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

// A dispinterface with a name and no members, built by the platform in a library of its own.
com_ptr<ITypeInfo> named_type_info(const std::u16string& name) {
    std::wstring text(name.begin(), name.end());
    com_ptr<ICreateTypeLib2> library;
    com_ptr<ICreateTypeInfo> made;
    HRESULT hr = CreateTypeLib2(sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32, L"disguise.tlb", library.put());
    if (SUCCEEDED(hr)) hr = library->CreateTypeInfo(text.data(), TKIND_DISPATCH, made.put());
    if (FAILED(hr)) throw com::error_from_call(hr, nullptr);
    return com::query<ITypeInfo>(made.get(), IID_ITypeInfo);
}

// What one call answered, owned until it goes to the caller or is dropped.
struct Outcome {
    HRESULT hr = E_FAIL;
    com::unique_variant result;
    EXCEPINFO exception{};
    UINT arg_error = 0;
    ~Outcome() {
        for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) SysFreeString(text);
    }
};
using Answer = std::unique_ptr<Outcome>;

thread_local int chained_now = 0;  // default members being followed on this thread

class DisguisedDispatch final : public com::SingleInterface<IDispatch> {
public:
    // Without type information (null) for the parts a control hands out, which need none.
    DisguisedDispatch(com_ptr<IDispatch> target, com_ptr<ITypeInfo> info)
        : SingleInterface(IID_IDispatch), target_(std::move(target)), info_(std::move(info)) {}

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
            Answer out = call(member, lcid, flags, *params, result != nullptr, exception != nullptr);
            if (result) *result = out->result.release();
            if (exception) *exception = std::exchange(out->exception, EXCEPINFO{});
            if (arg_error) *arg_error = out->arg_error;
            return out->hr;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_UNEXPECTED;
        }
    }

private:
    // Asks the target as the caller asked: a result and an EXCEPINFO only where the caller
    // wants them, since some objects answer differently without.
    Answer attempt(DISPID member, LCID lcid, WORD flags, DISPPARAMS& params, bool want_result, bool want_exception) {
        auto out = std::make_unique<Outcome>();
        out->hr = target_->Invoke(member, IID_NULL, lcid, flags, &params, want_result ? out->result.get() : nullptr,
                                  want_exception ? &out->exception : nullptr, &out->arg_error);
        if (SUCCEEDED(out->hr)) disguise(out->result.get());
        return out;
    }

    Answer call(DISPID member, LCID lcid, WORD flags, DISPPARAMS& params, bool want_result, bool want_exception) {
        Answer out = attempt(member, lcid, flags, params, want_result, want_exception);
        if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) || params.cNamedArgs) return out;

        // The optional parameters a control would have: arguments come last first, so the
        // omitted ones go in front.
        for (UINT count = params.cArgs + 1; misfit(out->hr) && count <= kMostArguments; ++count) {
            const UINT added = count - params.cArgs;
            std::vector<VARIANTARG> padded(count);
            for (UINT i = 0; i < added; ++i) {
                V_VT(&padded[i]) = VT_ERROR;
                V_ERROR(&padded[i]) = DISP_E_PARAMNOTFOUND;
            }
            std::copy(params.rgvarg, params.rgvarg + params.cArgs, padded.begin() + added);
            DISPPARAMS longer{padded.data(), nullptr, count, 0};
            Answer retry = attempt(member, lcid, flags, longer, want_result, want_exception);
            if (!misfit(retry->hr)) {
                if (retry->arg_error >= added) retry->arg_error -= added;
                return retry;
            }
        }

        // A property without parameters given some: the control indexes its value, by calling
        // the value's default member with them. The first refusal stands if that cannot be done.
        // (Wine refuses arguments to a public variable as a member it does not have, and reads
        // only properties and variables, never functions, for DISPATCH_PROPERTYGET alone, so
        // a wrongly called Sub is not run here.)
        const bool refused = misfit(out->hr) || out->hr == DISP_E_MEMBERNOTFOUND;
        if (!refused || params.cArgs == 0 || chained_now >= kMostChained) return out;
        DISPPARAMS none{};
        Answer read = attempt(member, lcid, DISPATCH_PROPERTYGET, none, true, false);
        if (FAILED(read->hr) || V_VT(read->result.get()) != VT_DISPATCH || !V_DISPATCH(read->result.get())) return out;
        auto chained = std::make_unique<Outcome>();
        ++chained_now;
        chained->hr = V_DISPATCH(read->result.get())
                          ->Invoke(DISPID_VALUE, IID_NULL, lcid, flags, &params,
                                   want_result ? chained->result.get() : nullptr,
                                   want_exception ? &chained->exception : nullptr, &chained->arg_error);
        --chained_now;
        return misfit(chained->hr) || chained->hr == DISP_E_MEMBERNOTFOUND ? std::move(out) : std::move(chained);
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
    auto made = com_ptr<IUnknown>::copy(new DisguisedDispatch(std::move(dispatch), named_type_info(type_name)));
    return automation::Ref<automation::Object>(new com::HostObject(made.get()));
}

[[maybe_unused]] const bool installed = (platform_disguise = &com_disguise, true);

}  // namespace
}  // namespace celdo::tests::probe

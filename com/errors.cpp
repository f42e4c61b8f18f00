#include "com/errors.hpp"

#include <new>
#include <utility>

#include "com/bridge.hpp"
#include "com/owners.hpp"

namespace celdo::com {

using automation::AutomationError;
using automation::StdError;

HRESULT hresult_of(int32_t number) noexcept {
    if (number > 0 && number <= 0xFFFF) return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
    return static_cast<HRESULT>(number);
}

int32_t number_of(HRESULT hr) noexcept {
    if (HRESULT_FACILITY(hr) == FACILITY_CONTROL && (hr & 0x80000000)) return HRESULT_CODE(hr);
    switch (hr) {
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME: return static_cast<int32_t>(StdError::MemberNotFound);
    case DISP_E_TYPEMISMATCH: return static_cast<int32_t>(StdError::TypeMismatch);
    case DISP_E_OVERFLOW: return static_cast<int32_t>(StdError::Overflow);
    case DISP_E_PARAMNOTOPTIONAL: return static_cast<int32_t>(StdError::ArgumentNotOptional);
    case DISP_E_BADPARAMCOUNT: return static_cast<int32_t>(StdError::WrongArgumentCount);
    case DISP_E_BADINDEX: return static_cast<int32_t>(StdError::SubscriptOutOfRange);
    case E_OUTOFMEMORY: return static_cast<int32_t>(StdError::OutOfMemory);
    case E_INVALIDARG: return static_cast<int32_t>(StdError::InvalidCall);
    default: return static_cast<int32_t>(hr);
    }
}

namespace {

// An error as the host receives it, described without allocating.
struct Report {
    HRESULT hr;  // what a vtable call returns, and EXCEPINFO's scode
    std::u16string_view source;
    std::u16string_view description;
};

// Error info the host reads after the call. When it cannot be made, any stale one is cleared
// so that the host does not read an earlier error's text.
void set_error_info(const Report& report, REFIID iid) noexcept {
    com_ptr<ICreateErrorInfo> create;
    unique_bstr source = unique_bstr::try_from(report.source);
    unique_bstr description = unique_bstr::try_from(report.description);
    if (!source || !description || allocation_refused() || FAILED(CreateErrorInfo(create.put()))) {
        SetErrorInfo(0, nullptr);
        return;
    }
    create->SetGUID(iid);
    create->SetSource(source.get());
    create->SetDescription(description.get());
    SetErrorInfo(0, query<IErrorInfo>(create.get(), IID_IErrorInfo).get());
}

// The number travels in scode; texts that cannot be allocated are left out.
void fill_excepinfo(EXCEPINFO* info, const Report& report) noexcept {
    ZeroMemory(info, sizeof *info);
    info->scode = report.hr;
    info->bstrSource = unique_bstr::try_from(report.source).release();
    info->bstrDescription = unique_bstr::try_from(report.description).release();
}

// Without an EXCEPINFO to carry the error, Invoke answers with the error's own HRESULT.
HRESULT deliver(const Report& report, REFIID iid, Boundary boundary, EXCEPINFO* excepinfo) noexcept {
    set_error_info(report, iid);
    if (boundary == Boundary::Vtable || !excepinfo) return report.hr;
    fill_excepinfo(excepinfo, report);
    return DISP_E_EXCEPTION;
}

}  // namespace

HRESULT caught_error(REFIID iid, Boundary boundary, EXCEPINFO* excepinfo) noexcept {
    try {
        throw;
    } catch (const AutomationError& e) {
        // Only a member that has no such accessor is "not found" to a late-bound host; every
        // other failure travels as an exception carrying the language's error number, which
        // both script engines and compiled clients report as Err.Number.
        if (boundary == Boundary::Dispatch && dynamic_cast<const automation::BindError*>(&e) &&
            e.is(StdError::MemberNotFound))
            return DISP_E_MEMBERNOTFOUND;
        return deliver({hresult_of(e.number()), e.source(), e.description()}, iid, boundary, excepinfo);
    } catch (const std::bad_alloc&) {
        return deliver({E_OUTOFMEMORY, automation::kComponentName, automation::describe(StdError::OutOfMemory)}, iid,
                       boundary, excepinfo);
    } catch (...) {
        return deliver({E_UNEXPECTED, automation::kComponentName, u"Catastrophic failure"}, iid, boundary, excepinfo);
    }
}

AutomationError error_from_call(HRESULT hr, EXCEPINFO* info, IErrorInfo* pending) {
    if (hr == DISP_E_EXCEPTION && info) {
        if (info->pfnDeferredFillIn) info->pfnDeferredFillIn(info);
        // The texts are ours to free, whatever happens next.
        unique_bstr source(std::exchange(info->bstrSource, nullptr));
        unique_bstr description(std::exchange(info->bstrDescription, nullptr));
        unique_bstr help(std::exchange(info->bstrHelpFile, nullptr));
        // Out of memory in the host is out of memory here: no step may go on past it.
        if (info->scode == E_OUTOFMEMORY) throw std::bad_alloc();
        const int32_t number = info->wCode ? info->wCode : number_of(info->scode);
        if (SysStringLen(description.get()) == 0 && number > 0 && number <= 0xFFFF) {
            return AutomationError(number, text_of(source.get()),
                                   std::u16string(automation::describe(static_cast<StdError>(number))));
        }
        return AutomationError(number, text_of(source.get()), text_of(description.get()));
    }
    if (hr == E_OUTOFMEMORY) throw std::bad_alloc();
    const int32_t number = number_of(hr);
    if (pending) {
        unique_bstr source, description;
        if (SUCCEEDED(pending->GetDescription(description.put())) && SysStringLen(description.get()) > 0) {
            pending->GetSource(source.put());
            return AutomationError(number, text_of(source.get()), text_of(description.get()));
        }
    }
    if (number > 0 && number <= 0xFFFF) return AutomationError(static_cast<StdError>(number));
    return AutomationError(number, automation::kComponentName, u"Automation error");
}

}  // namespace celdo::com

#include "com/errors.hpp"

#include "com/bridge.hpp"

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

void set_error_info(const AutomationError& error, REFIID iid) noexcept {
    ICreateErrorInfo* create = nullptr;
    if (FAILED(CreateErrorInfo(&create))) return;
    BSTR source = make_bstr(error.source());
    BSTR description = make_bstr(error.description());
    create->SetGUID(iid);
    create->SetSource(source);
    create->SetDescription(description);
    SysFreeString(source);
    SysFreeString(description);
    IErrorInfo* info = nullptr;
    if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
        SetErrorInfo(0, info);
        info->Release();
    }
    create->Release();
}

void fill_excepinfo(EXCEPINFO* info, const AutomationError& error) noexcept {
    if (!info) return;
    ZeroMemory(info, sizeof *info);
    info->scode = hresult_of(error.number());
    info->bstrSource = make_bstr(error.source());
    info->bstrDescription = make_bstr(error.description());
}

AutomationError error_from_call(HRESULT hr, EXCEPINFO* info) {
    if (hr == DISP_E_EXCEPTION && info) {
        if (info->pfnDeferredFillIn) info->pfnDeferredFillIn(info);
        const int32_t number = info->wCode ? info->wCode : number_of(info->scode);
        std::u16string source = info->bstrSource ? text_of(info->bstrSource) : u"";
        std::u16string description = info->bstrDescription ? text_of(info->bstrDescription) : u"";
        SysFreeString(info->bstrSource);
        SysFreeString(info->bstrDescription);
        SysFreeString(info->bstrHelpFile);
        if (description.empty() && number > 0 && number <= 0xFFFF) {
            return AutomationError(number, std::move(source),
                                   std::u16string(automation::describe(static_cast<StdError>(number))));
        }
        return AutomationError(number, std::move(source), std::move(description));
    }
    const int32_t number = number_of(hr);
    if (number > 0 && number <= 0xFFFF) return AutomationError(static_cast<StdError>(number));
    return AutomationError(number, automation::kComponentName, u"Automation error");
}

}  // namespace celdo::com

#include "com/host_object.hpp"

#include <dispex.h>

#include <memory>

#include "automation/error.hpp"
#include "automation/textops.hpp"
#include "com/bridge.hpp"
#include "com/errors.hpp"

namespace celdo::com {

using automation::Argument;
using automation::AutomationError;
using automation::StdError;
using automation::Variant;
using automation::VarType;

HostObject::HostObject(IUnknown* unknown) : unknown_(unknown), dispatch_(nullptr) {
    unknown_->AddRef();
    if (FAILED(unknown_->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch_)))) dispatch_ = nullptr;
}

HostObject::~HostObject() {
    if (dispatch_) dispatch_->Release();
    unknown_->Release();
}

namespace {

// Not in every import library: {A6EF9860-C720-11D0-9337-00A0C90DCAA9}.
const IID kDispatchEx = {0xa6ef9860, 0xc720, 0x11d0, {0x93, 0x37, 0x00, 0xa0, 0xc9, 0x0d, 0xca, 0xa9}};

std::u16string type_info_name(ITypeInfo* info) {
    BSTR name = nullptr;
    std::u16string result;
    if (SUCCEEDED(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)) && name) {
        result = text_of(name);
        SysFreeString(name);
    }
    return result;
}

}  // namespace

std::u16string HostObject::type_name() const {
    // The class name when the object tells it, otherwise its interface's name without the
    // underscore that default interfaces carry.
    IProvideClassInfo* provide = nullptr;
    if (SUCCEEDED(unknown_->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&provide)))) {
        ITypeInfo* info = nullptr;
        std::u16string name;
        if (SUCCEEDED(provide->GetClassInfo(&info)) && info) {
            name = type_info_name(info);
            info->Release();
        }
        provide->Release();
        if (!name.empty()) return name;
    }
    if (dispatch_) {
        ITypeInfo* info = nullptr;
        if (SUCCEEDED(dispatch_->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info)) && info) {
            std::u16string name = type_info_name(info);
            info->Release();
            if (!name.empty() && name[0] == u'_') name.erase(0, 1);
            if (!name.empty()) return name;
        }
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
        IDispatchEx* ex = nullptr;
        if (SUCCEEDED(dispatch_->QueryInterface(kDispatchEx, reinterpret_cast<void**>(&ex)))) {
            BSTR b = make_bstr(name);
            hr = ex->GetDispID(b, fdexNameCaseInsensitive, &id);
            SysFreeString(b);
            ex->Release();
        }
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
    ITypeInfo* info = nullptr;
    UINT count = 0;
    if (SUCCEEDED(dispatch_->GetTypeInfoCount(&count)) && count > 0 &&
        SUCCEEDED(dispatch_->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info)) && info) {
        TYPEATTR* attr = nullptr;
        if (SUCCEEDED(info->GetTypeAttr(&attr))) {
            const INVOKEKIND wanted = (call & automation::kSet)   ? INVOKE_PROPERTYPUTREF
                                      : (call & automation::kLet) ? INVOKE_PROPERTYPUT
                                                                  : INVOKE_FUNC;
            for (WORD f = 0; f < attr->cFuncs; ++f) {
                FUNCDESC* desc = nullptr;
                if (FAILED(info->GetFuncDesc(f, &desc))) continue;
                const bool reading = wanted == INVOKE_FUNC && desc->invkind == INVOKE_PROPERTYGET;
                if (desc->memid == member && (desc->invkind == wanted || reading)) {
                    for (SHORT i = 0; i < desc->cParams; ++i) {
                        const TYPEDESC& t = desc->lprgelemdescParam[i].tdesc;
                        types.push_back(t.vt == VT_PTR ? static_cast<VARTYPE>(VT_BYREF | t.lptdesc->vt) : t.vt);
                    }
                    info->ReleaseFuncDesc(desc);
                    break;
                }
                info->ReleaseFuncDesc(desc);
            }
            info->ReleaseTypeAttr(attr);
        }
        info->Release();
    }
    parameters_.push_back({{member, call}, std::move(types)});
    return parameters_.back().second;
}

namespace {

// Storage for one by-reference argument: typed as the parameter is declared when the object
// says how, otherwise a reference to a Variant, which script objects write through.
struct RefSlot {
    VARIANT holder;  // Variant slots keep their value here
    union {
        BSTR bstr;
        VARIANT_BOOL boolean;
        unsigned char byte;
        short integer;
        long long_;
        float single;
        double double_;
        CY currency;
        DATE date;
        IDispatch* dispatch;
    } u;
    VARTYPE vt = VT_VARIANT;

    void bind(const Variant& value, VARTYPE declared, VARIANTARG* arg) {
        VariantInit(&holder);
        u.long_ = 0;
        vt = (declared & VT_BYREF) ? static_cast<VARTYPE>(declared & ~VT_BYREF) : static_cast<VARTYPE>(VT_VARIANT);
        switch (vt) {
        case VT_BSTR: store_bstr(&u.bstr, value); V_BSTRREF(arg) = &u.bstr; break;
        case VT_BOOL: store_bool(&u.boolean, value); V_BOOLREF(arg) = &u.boolean; break;
        case VT_UI1: store_byte(&u.byte, value); V_UI1REF(arg) = &u.byte; break;
        case VT_I2: store_integer(&u.integer, value); V_I2REF(arg) = &u.integer; break;
        case VT_I4: store_long(&u.long_, value); V_I4REF(arg) = &u.long_; break;
        case VT_R4: store_single(&u.single, value); V_R4REF(arg) = &u.single; break;
        case VT_R8: store_double(&u.double_, value); V_R8REF(arg) = &u.double_; break;
        case VT_CY: store_currency(&u.currency, value); V_CYREF(arg) = &u.currency; break;
        case VT_DATE: store_date(&u.date, value); V_DATEREF(arg) = &u.date; break;
        case VT_DISPATCH: store_dispatch(&u.dispatch, value); V_DISPATCHREF(arg) = &u.dispatch; break;
        default: vt = VT_VARIANT; to_variant(value, &holder); V_VARIANTREF(arg) = &holder; break;
        }
        V_VT(arg) = static_cast<VARTYPE>(VT_BYREF | vt);
    }

    void release() {
        switch (vt) {
        case VT_BSTR: SysFreeString(u.bstr); break;
        case VT_DISPATCH: if (u.dispatch) u.dispatch->Release(); break;
        case VT_VARIANT: VariantClear(&holder); break;
        default: break;
        }
    }
};

}  // namespace

Variant HostObject::invoke(int32_t member, uint16_t call, std::span<Argument> args) {
    if (!dispatch_) throw AutomationError(StdError::MemberNotFound);
    const size_t n = args.size();
    bool any_by_ref = false;
    for (const Argument& a : args) any_by_ref = any_by_ref || a.by_ref;
    static const std::vector<VARTYPE> undeclared;
    const std::vector<VARTYPE>& declared = any_by_ref ? parameter_types(member, call) : undeclared;
    std::unique_ptr<VARIANTARG[]> rgvarg(new VARIANTARG[n ? n : 1]);
    std::unique_ptr<RefSlot[]> slots(new RefSlot[n ? n : 1]);
    size_t built = 0;
    auto cleanup = [&] {
        for (size_t i = 0; i < built; ++i) {
            if (args[i].by_ref) slots[i].release();
            else VariantClear(&rgvarg[n - 1 - i]);
        }
    };
    try {
        for (; built < n; ++built) {
            VARIANTARG* arg = &rgvarg[n - 1 - built];
            VariantInit(arg);
            if (args[built].by_ref) slots[built].bind(args[built].value, built < declared.size() ? declared[built] : static_cast<VARTYPE>(VT_EMPTY), arg);
            else to_variant(args[built].value, arg);
        }
    } catch (...) {
        cleanup();
        throw;
    }

    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{rgvarg.get(), nullptr, static_cast<UINT>(n), 0};
    if ((call & (automation::kLet | automation::kSet)) && n > 0) {
        params.rgdispidNamedArgs = &put;
        params.cNamedArgs = 1;
    }
    WORD flags = 0;
    if (call & automation::kMethod) flags |= DISPATCH_METHOD;
    if (call & automation::kGet) flags |= DISPATCH_PROPERTYGET;
    if (call & automation::kLet) flags |= DISPATCH_PROPERTYPUT;
    if (call & automation::kSet) flags |= DISPATCH_PROPERTYPUTREF;

    VARIANT result;
    VariantInit(&result);
    EXCEPINFO info{};
    UINT arg_error = 0;
    HRESULT hr = dispatch_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &result, &info, &arg_error);
    if (FAILED(hr)) {
        cleanup();
        throw error_from_call(hr, &info);
    }
    try {
        for (size_t i = 0; i < n; ++i) {
            if (args[i].by_ref) args[i].value = from_variant(&rgvarg[n - 1 - i]);
        }
        Variant value = from_variant(&result);
        VariantClear(&result);
        cleanup();
        return value;
    } catch (...) {
        VariantClear(&result);
        cleanup();
        throw;
    }
}

}  // namespace celdo::com

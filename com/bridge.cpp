#include "com/bridge.hpp"

#include <vector>

#include "automation/component.hpp"
#include "automation/convert.hpp"
#include "automation/enumerator.hpp"
#include "automation/error.hpp"
#include "com/class_registry.hpp"
#include "com/enum_variant.hpp"
#include "com/errors.hpp"
#include "com/host_object.hpp"
#include "com/private_iids.hpp"

namespace celdo::com {

using automation::Array;
using automation::AutomationError;
using automation::Ref;
using automation::StdError;
using automation::VarType;

namespace {

[[noreturn]] void mismatch() { throw AutomationError(StdError::TypeMismatch); }

void check(HRESULT hr) {
    if (hr == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(hr)) throw error_from_call(hr, nullptr);
}

}  // namespace

BSTR make_bstr(std::u16string_view text) {
    BSTR b = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
    if (!b) throw std::bad_alloc();
    return b;
}

std::u16string text_of(BSTR text) {
    if (!text) return {};
    return std::u16string(reinterpret_cast<const char16_t*>(text), SysStringLen(text));
}

// ------------------------------------------------------------------------------- from COM

namespace {

VarType element_type_of(VARTYPE vt) {
    switch (vt) {
    case VT_BOOL: return VarType::Boolean;
    case VT_UI1: return VarType::Byte;
    case VT_I2: return VarType::Integer;
    case VT_I4: return VarType::Long;
    case VT_R4: return VarType::Single;
    case VT_R8: return VarType::Double;
    case VT_CY: return VarType::Currency;
    case VT_DATE: return VarType::Date;
    case VT_BSTR: return VarType::String;
    case VT_DISPATCH:
    case VT_UNKNOWN: return VarType::Object;
    default: return VarType::Variant;
    }
}

Variant from_array(SAFEARRAY* sa) {
    if (!sa) return Variant(Array(VarType::Variant));
    VARTYPE vt = VT_EMPTY;
    check(SafeArrayGetVartype(sa, &vt));
    const UINT dims = SafeArrayGetDim(sa);
    std::vector<Array::Bound> bounds;
    for (UINT d = 1; d <= dims; ++d) {
        LONG lower = 0, upper = -1;
        check(SafeArrayGetLBound(sa, d, &lower));
        check(SafeArrayGetUBound(sa, d, &upper));
        bounds.push_back({lower, upper - lower + 1});
    }
    Array array(element_type_of(vt), std::move(bounds));
    if (array.size() == 0) return Variant(std::move(array));
    void* data = nullptr;
    check(SafeArrayAccessData(sa, &data));
    auto elements = array.elements_mut();
    const ULONG size = SafeArrayGetElemsize(sa);
    auto* bytes = static_cast<const unsigned char*>(data);
    try {
        for (size_t i = 0; i < elements.size(); ++i) {
            const void* at = bytes + i * size;
            switch (vt) {
            case VT_VARIANT: elements[i] = from_variant(static_cast<const VARIANT*>(at)); break;
            case VT_BSTR: elements[i] = from_bstr(*static_cast<const BSTR*>(at)); break;
            case VT_BOOL: elements[i] = from_bool(*static_cast<const VARIANT_BOOL*>(at)); break;
            case VT_UI1: elements[i] = from_byte(*static_cast<const unsigned char*>(at)); break;
            case VT_I2: elements[i] = from_integer(*static_cast<const short*>(at)); break;
            case VT_I4: elements[i] = from_long(*static_cast<const long*>(at)); break;
            case VT_R4: elements[i] = from_single(*static_cast<const float*>(at)); break;
            case VT_R8: elements[i] = from_double(*static_cast<const double*>(at)); break;
            case VT_CY: elements[i] = from_currency(*static_cast<const CY*>(at)); break;
            case VT_DATE: elements[i] = from_date(*static_cast<const DATE*>(at)); break;
            case VT_DISPATCH:
            case VT_UNKNOWN: elements[i] = from_object(*static_cast<IUnknown* const*>(at)); break;
            default: {
                VARIANT v;
                VariantInit(&v);
                V_VT(&v) = static_cast<VARTYPE>(vt | VT_BYREF);
                V_BYREF(&v) = const_cast<void*>(at);
                elements[i] = from_variant(&v);
            }
            }
        }
    } catch (...) {
        SafeArrayUnaccessData(sa);
        throw;
    }
    SafeArrayUnaccessData(sa);
    return Variant(std::move(array));
}

// Integers outside Long become Double, as the language has no wider integer.
Variant from_wide_integer(double value) {
    if (value >= INT32_MIN && value <= INT32_MAX) return Variant(static_cast<int32_t>(value));
    return Variant(value);
}

}  // namespace

Variant from_variant(const VARIANT* value) {
    if (!value) return Variant::missing();
    const VARTYPE vt = V_VT(value);
    if (vt == (VT_BYREF | VT_VARIANT)) return from_variant(V_VARIANTREF(value));
    const bool ref = (vt & VT_BYREF) != 0;
    const VARTYPE base = static_cast<VARTYPE>(vt & ~VT_BYREF);
    if (base & VT_ARRAY) return from_array(ref ? *V_ARRAYREF(value) : V_ARRAY(value));
    switch (base) {
    case VT_EMPTY: return Variant();
    case VT_NULL: return Variant::null();
    case VT_BOOL: return from_bool(ref ? *V_BOOLREF(value) : V_BOOL(value));
    case VT_UI1: return from_byte(ref ? *V_UI1REF(value) : V_UI1(value));
    case VT_I2: return from_integer(ref ? *V_I2REF(value) : V_I2(value));
    case VT_I4: return from_long(ref ? *V_I4REF(value) : V_I4(value));
    case VT_R4: return from_single(ref ? *V_R4REF(value) : V_R4(value));
    case VT_R8: return from_double(ref ? *V_R8REF(value) : V_R8(value));
    case VT_CY: return from_currency(ref ? *V_CYREF(value) : V_CY(value));
    case VT_DATE: return from_date(ref ? *V_DATEREF(value) : V_DATE(value));
    case VT_BSTR: return from_bstr(ref ? *V_BSTRREF(value) : V_BSTR(value));
    case VT_ERROR: return Variant::error(ref ? *V_ERRORREF(value) : V_ERROR(value));
    case VT_DISPATCH: return from_object(ref ? *V_DISPATCHREF(value) : V_DISPATCH(value));
    case VT_UNKNOWN: return from_object(ref ? *V_UNKNOWNREF(value) : V_UNKNOWN(value));
    case VT_I1: return Variant(static_cast<int16_t>(ref ? *V_I1REF(value) : V_I1(value)));
    case VT_UI2: return Variant(static_cast<int32_t>(ref ? *V_UI2REF(value) : V_UI2(value)));
    case VT_UI4: return from_wide_integer(ref ? *V_UI4REF(value) : V_UI4(value));
    case VT_INT: return from_wide_integer(ref ? *V_INTREF(value) : V_INT(value));
    case VT_UINT: return from_wide_integer(ref ? *V_UINTREF(value) : V_UINT(value));
    case VT_I8: return from_wide_integer(static_cast<double>(ref ? *V_I8REF(value) : V_I8(value)));
    case VT_UI8: return from_wide_integer(static_cast<double>(ref ? *V_UI8REF(value) : V_UI8(value)));
    case VT_DECIMAL: {
        double d = 0;
        DECIMAL copy = ref ? *V_DECIMALREF(value) : V_DECIMAL(value);
        check(VarR8FromDec(&copy, &d));
        return Variant(d);
    }
    default: mismatch();
    }
}

Variant from_bstr(BSTR value) { return Variant(text_of(value)); }
Variant from_integer(short value) { return Variant(static_cast<int16_t>(value)); }
Variant from_long(long value) { return Variant(static_cast<int32_t>(value)); }
Variant from_byte(unsigned char value) { return Variant(static_cast<uint8_t>(value)); }
Variant from_bool(VARIANT_BOOL value) { return Variant(value != VARIANT_FALSE); }
Variant from_single(float value) { return Variant(value); }
Variant from_double(double value) { return Variant(value); }
Variant from_currency(CY value) { return Variant(automation::Currency{value.int64}); }
Variant from_date(DATE value) { return Variant(automation::Date{value}); }

Variant from_object(IUnknown* value) {
    if (!value) return Variant::nothing();
    ICeldoCore* own = nullptr;
    if (SUCCEEDED(value->QueryInterface(IID_ICeldoCore, reinterpret_cast<void**>(&own)))) {
        Ref<automation::Component> core(own->core());
        own->Release();
        return Variant(std::move(core));
    }
    return Variant(Ref<automation::Object>(new HostObject(value)));
}

// --------------------------------------------------------------------------------- to COM

IUnknown* unknown_of(const Variant& value) {
    automation::Object* o = value.as_object();
    if (!o) return nullptr;
    if (auto* c = dynamic_cast<automation::Component*>(o)) return com_object_for(*c);
    if (auto* h = dynamic_cast<HostObject*>(o)) {
        h->unknown()->AddRef();
        return h->unknown();
    }
    if (auto* e = dynamic_cast<automation::Enumerator*>(o)) {
        IUnknown* u = make_enum_variant(Ref<automation::Enumerator>(e));
        u->AddRef();
        return u;
    }
    mismatch();
}

namespace {

VARTYPE vartype_of_element(VarType element) {
    switch (element) {
    case VarType::Boolean: return VT_BOOL;
    case VarType::Byte: return VT_UI1;
    case VarType::Integer: return VT_I2;
    case VarType::Long: return VT_I4;
    case VarType::Single: return VT_R4;
    case VarType::Double: return VT_R8;
    case VarType::Currency: return VT_CY;
    case VarType::Date: return VT_DATE;
    case VarType::String: return VT_BSTR;
    case VarType::Object: return VT_DISPATCH;
    default: return VT_VARIANT;
    }
}

SAFEARRAY* to_array(const Array& array) {
    const VARTYPE vt = vartype_of_element(array.element_type());
    std::vector<SAFEARRAYBOUND> bounds;
    for (const auto& b : array.bounds()) bounds.push_back({static_cast<ULONG>(b.count), b.lower});
    if (bounds.empty()) bounds.push_back({0, 0});
    SAFEARRAY* sa = SafeArrayCreate(vt, static_cast<UINT>(bounds.size()), bounds.data());
    if (!sa) throw std::bad_alloc();
    if (array.size() == 0) return sa;
    void* data = nullptr;
    if (FAILED(SafeArrayAccessData(sa, &data))) {
        SafeArrayDestroy(sa);
        throw std::bad_alloc();
    }
    const ULONG size = SafeArrayGetElemsize(sa);
    auto* bytes = static_cast<unsigned char*>(data);
    try {
        auto elements = array.elements();
        for (size_t i = 0; i < elements.size(); ++i) {
            void* at = bytes + i * size;
            switch (vt) {
            case VT_VARIANT: to_variant(elements[i], static_cast<VARIANT*>(at)); break;
            case VT_BSTR: store_bstr(static_cast<BSTR*>(at), elements[i]); break;
            case VT_BOOL: store_bool(static_cast<VARIANT_BOOL*>(at), elements[i]); break;
            case VT_UI1: store_byte(static_cast<unsigned char*>(at), elements[i]); break;
            case VT_I2: store_integer(static_cast<short*>(at), elements[i]); break;
            case VT_I4: store_long(static_cast<long*>(at), elements[i]); break;
            case VT_R4: store_single(static_cast<float*>(at), elements[i]); break;
            case VT_R8: store_double(static_cast<double*>(at), elements[i]); break;
            case VT_CY: store_currency(static_cast<CY*>(at), elements[i]); break;
            case VT_DATE: store_date(static_cast<DATE*>(at), elements[i]); break;
            case VT_DISPATCH: store_dispatch(static_cast<IDispatch**>(at), elements[i]); break;
            default: break;
            }
        }
    } catch (...) {
        SafeArrayUnaccessData(sa);
        SafeArrayDestroy(sa);
        throw;
    }
    SafeArrayUnaccessData(sa);
    return sa;
}

}  // namespace

void to_variant(const Variant& value, VARIANT* out) {
    VariantInit(out);
    if (value.is_array()) {
        SAFEARRAY* sa = to_array(value.as_array());
        V_VT(out) = static_cast<VARTYPE>(VT_ARRAY | vartype_of_element(value.as_array().element_type()));
        V_ARRAY(out) = sa;
        return;
    }
    switch (value.type()) {
    case VarType::Empty: return;
    case VarType::Null: V_VT(out) = VT_NULL; return;
    case VarType::Boolean: V_VT(out) = VT_BOOL; V_BOOL(out) = value.as_bool() ? VARIANT_TRUE : VARIANT_FALSE; return;
    case VarType::Byte: V_VT(out) = VT_UI1; V_UI1(out) = value.as_byte(); return;
    case VarType::Integer: V_VT(out) = VT_I2; V_I2(out) = value.as_integer(); return;
    case VarType::Long: V_VT(out) = VT_I4; V_I4(out) = value.as_long(); return;
    case VarType::Single: V_VT(out) = VT_R4; V_R4(out) = value.as_single(); return;
    case VarType::Double: V_VT(out) = VT_R8; V_R8(out) = value.as_double(); return;
    case VarType::Currency: V_VT(out) = VT_CY; V_CY(out).int64 = value.as_currency().scaled; return;
    case VarType::Date: V_VT(out) = VT_DATE; V_DATE(out) = value.as_date().serial; return;
    case VarType::Error: V_VT(out) = VT_ERROR; V_ERROR(out) = value.as_error(); return;
    case VarType::String: V_BSTR(out) = make_bstr(value.as_string()); V_VT(out) = VT_BSTR; return;
    case VarType::Object: {
        IUnknown* u = unknown_of(value);
        if (!u) {
            V_VT(out) = VT_DISPATCH;
            V_DISPATCH(out) = nullptr;
            return;
        }
        IDispatch* d = nullptr;
        if (SUCCEEDED(u->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&d)))) {
            u->Release();
            V_VT(out) = VT_DISPATCH;
            V_DISPATCH(out) = d;
        } else {
            V_VT(out) = VT_UNKNOWN;
            V_UNKNOWN(out) = u;
        }
        return;
    }
    default: mismatch();
    }
}

// ------------------------------------------------------------------------ results and refs

void store_bstr(BSTR* target, const Variant& value) {
    *target = make_bstr(automation::change_type(value, VarType::String).as_string());
}
void store_integer(short* target, const Variant& value) {
    *target = automation::change_type(value, VarType::Integer).as_integer();
}
void store_long(long* target, const Variant& value) {
    *target = automation::change_type(value, VarType::Long).as_long();
}
void store_byte(unsigned char* target, const Variant& value) {
    *target = automation::change_type(value, VarType::Byte).as_byte();
}
void store_bool(VARIANT_BOOL* target, const Variant& value) {
    *target = automation::change_type(value, VarType::Boolean).as_bool() ? VARIANT_TRUE : VARIANT_FALSE;
}
void store_single(float* target, const Variant& value) {
    *target = automation::change_type(value, VarType::Single).as_single();
}
void store_double(double* target, const Variant& value) {
    *target = automation::change_type(value, VarType::Double).as_double();
}
void store_currency(CY* target, const Variant& value) {
    target->int64 = automation::change_type(value, VarType::Currency).as_currency().scaled;
}
void store_date(DATE* target, const Variant& value) {
    *target = automation::change_type(value, VarType::Date).as_date().serial;
}
void store_variant(VARIANT* target, const Variant& value) { to_variant(value, target); }

void store_object(void** target, REFIID iid, const Variant& value) {
    if (!value.is_object()) mismatch();
    *target = nullptr;
    IUnknown* u = unknown_of(value);
    if (!u) return;
    HRESULT hr = u->QueryInterface(iid, target);
    u->Release();
    if (FAILED(hr)) mismatch();
}
void store_dispatch(IDispatch** target, const Variant& value) {
    store_object(reinterpret_cast<void**>(target), IID_IDispatch, value);
}
void store_unknown(IUnknown** target, const Variant& value) {
    if (!value.is_object()) mismatch();
    *target = unknown_of(value);
}

void replace_bstr(BSTR* target, const Variant& value) {
    BSTR fresh = make_bstr(automation::change_type(value, VarType::String).as_string());
    SysFreeString(*target);
    *target = fresh;
}

// A by-reference VARIANT may itself point at the caller's typed variable: write through it,
// converting to that variable's type.
void replace_variant(VARIANT* target, const Variant& value) {
    const VARTYPE vt = V_VT(target);
    if (!(vt & VT_BYREF)) {
        VARIANT fresh;
        to_variant(value, &fresh);
        VariantClear(target);
        *target = fresh;
        return;
    }
    switch (vt & ~VT_BYREF) {
    case VT_VARIANT: replace_variant(V_VARIANTREF(target), value); return;
    case VT_BSTR: replace_bstr(V_BSTRREF(target), value); return;
    case VT_BOOL: store_bool(V_BOOLREF(target), value); return;
    case VT_UI1: store_byte(V_UI1REF(target), value); return;
    case VT_I2: store_integer(V_I2REF(target), value); return;
    case VT_I4: store_long(V_I4REF(target), value); return;
    case VT_R4: store_single(V_R4REF(target), value); return;
    case VT_R8: store_double(V_R8REF(target), value); return;
    case VT_CY: store_currency(V_CYREF(target), value); return;
    case VT_DATE: store_date(V_DATEREF(target), value); return;
    case VT_DISPATCH: replace_dispatch(V_DISPATCHREF(target), value); return;
    case VT_UNKNOWN: replace_unknown(V_UNKNOWNREF(target), value); return;
    default:
        if (vt & VT_ARRAY) {
            if (!value.is_array()) mismatch();
            SAFEARRAY* fresh = to_array(value.as_array());
            if (*V_ARRAYREF(target)) SafeArrayDestroy(*V_ARRAYREF(target));
            *V_ARRAYREF(target) = fresh;
            return;
        }
        mismatch();
    }
}

void replace_object(void** target, REFIID iid, const Variant& value) {
    void* fresh = nullptr;
    store_object(&fresh, iid, value);
    if (*target) static_cast<IUnknown*>(*target)->Release();
    *target = fresh;
}
void replace_dispatch(IDispatch** target, const Variant& value) {
    replace_object(reinterpret_cast<void**>(target), IID_IDispatch, value);
}
void replace_unknown(IUnknown** target, const Variant& value) {
    IUnknown* fresh = nullptr;
    store_unknown(&fresh, value);
    if (*target) (*target)->Release();
    *target = fresh;
}

}  // namespace celdo::com

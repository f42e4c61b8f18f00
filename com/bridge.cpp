#include "com/bridge.hpp"

#include <array>
#include <cstring>
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

// The language's subtype codes are the platform's: a value crosses with its number unchanged.
static_assert(static_cast<VARTYPE>(VarType::Integer) == VT_I2 && static_cast<VARTYPE>(VarType::Long) == VT_I4 &&
              static_cast<VARTYPE>(VarType::Single) == VT_R4 && static_cast<VARTYPE>(VarType::Double) == VT_R8 &&
              static_cast<VARTYPE>(VarType::Currency) == VT_CY && static_cast<VARTYPE>(VarType::Date) == VT_DATE &&
              static_cast<VARTYPE>(VarType::String) == VT_BSTR && static_cast<VARTYPE>(VarType::Object) == VT_DISPATCH &&
              static_cast<VARTYPE>(VarType::Error) == VT_ERROR && static_cast<VARTYPE>(VarType::Boolean) == VT_BOOL &&
              static_cast<VARTYPE>(VarType::Variant) == VT_VARIANT && static_cast<VARTYPE>(VarType::Byte) == VT_UI1 &&
              static_cast<VARTYPE>(VarType::Empty) == VT_EMPTY && static_cast<VARTYPE>(VarType::Null) == VT_NULL &&
              static_cast<VARTYPE>(VarType::Array) == VT_ARRAY);

namespace {

[[noreturn]] void mismatch() { throw AutomationError(StdError::TypeMismatch); }

void check(HRESULT hr) {
    if (FAILED(hr)) throw error_from_call(hr, nullptr);
}

template <class C>
const C& at(const void* storage) {
    return *static_cast<const C*>(storage);
}
template <class C>
C& at(void* storage) {
    return *static_cast<C*>(storage);
}

// Integers outside Long become Double, as the language has no wider integer.
Variant wide_integer(double value) {
    if (value >= INT32_MIN && value <= INT32_MAX) return Variant(static_cast<int32_t>(value));
    return Variant(value);
}

Variant as(const Variant& value, VarType type) { return automation::change_type(value, type); }

// One automation type: the element type an array of it becomes in the language, how a value
// is read from its storage, written into uninitialised storage with the language's conversion,
// and released. A type without `write` is read only: the language never produces it.
struct TypeRow {
    VarType element = VarType::Variant;
    size_t size = 0;
    Variant (*read)(const void* storage) = nullptr;
    void (*write)(void* storage, const Variant& value) = nullptr;
    void (*free)(void* storage) = nullptr;
};

// Indexed by VARTYPE.
constexpr std::array<TypeRow, VT_UINT + 1> kTypes = [] {
    std::array<TypeRow, VT_UINT + 1> t{};
    t[VT_EMPTY] = {VarType::Variant, 0, [](const void*) { return Variant(); }};
    t[VT_NULL] = {VarType::Variant, 0, [](const void*) { return Variant::null(); }};
    t[VT_I2] = {VarType::Integer, sizeof(SHORT),
                [](const void* p) { return Variant(static_cast<int16_t>(at<SHORT>(p))); },
                [](void* p, const Variant& v) { at<SHORT>(p) = as(v, VarType::Integer).as_integer(); }};
    t[VT_I4] = {VarType::Long, sizeof(LONG),
                [](const void* p) { return Variant(static_cast<int32_t>(at<LONG>(p))); },
                [](void* p, const Variant& v) { at<LONG>(p) = as(v, VarType::Long).as_long(); }};
    t[VT_R4] = {VarType::Single, sizeof(FLOAT), [](const void* p) { return Variant(at<FLOAT>(p)); },
                [](void* p, const Variant& v) { at<FLOAT>(p) = as(v, VarType::Single).as_single(); }};
    t[VT_R8] = {VarType::Double, sizeof(DOUBLE), [](const void* p) { return Variant(at<DOUBLE>(p)); },
                [](void* p, const Variant& v) { at<DOUBLE>(p) = as(v, VarType::Double).as_double(); }};
    t[VT_CY] = {VarType::Currency, sizeof(CY),
                [](const void* p) { return Variant(automation::Currency{at<CY>(p).int64}); },
                [](void* p, const Variant& v) { at<CY>(p).int64 = as(v, VarType::Currency).as_currency().scaled; }};
    t[VT_DATE] = {VarType::Date, sizeof(DATE), [](const void* p) { return Variant(automation::Date{at<DATE>(p)}); },
                  [](void* p, const Variant& v) { at<DATE>(p) = as(v, VarType::Date).as_date().serial; }};
    t[VT_BSTR] = {VarType::String, sizeof(BSTR), [](const void* p) { return Variant(text_of(at<BSTR>(p))); },
                  [](void* p, const Variant& v) {
                      at<BSTR>(p) = unique_bstr::from(v.is_string() ? v.as_string() : as(v, VarType::String).as_string())
                                        .release();
                  },
                  [](void* p) { SysFreeString(at<BSTR>(p)); }};
    t[VT_DISPATCH] = {VarType::Object, sizeof(IDispatch*), [](const void* p) { return from_object(at<IUnknown*>(p)); },
                      [](void* p, const Variant& v) { store_interface(p, IID_IDispatch, v); },
                      [](void* p) {
                          if (IUnknown* u = at<IUnknown*>(p)) u->Release();
                      }};
    t[VT_ERROR] = {VarType::Variant, sizeof(SCODE), [](const void* p) { return Variant::error(at<SCODE>(p)); },
                   [](void* p, const Variant& v) { at<SCODE>(p) = v.as_error(); }};
    t[VT_BOOL] = {VarType::Boolean, sizeof(VARIANT_BOOL),
                  [](const void* p) { return Variant(at<VARIANT_BOOL>(p) != VARIANT_FALSE); },
                  [](void* p, const Variant& v) {
                      at<VARIANT_BOOL>(p) = as(v, VarType::Boolean).as_bool() ? VARIANT_TRUE : VARIANT_FALSE;
                  }};
    t[VT_VARIANT] = {VarType::Variant, sizeof(VARIANT), [](const void* p) { return from_variant(&at<VARIANT>(p)); },
                     [](void* p, const Variant& v) { to_variant(v, &at<VARIANT>(p)); },
                     [](void* p) { VariantClear(&at<VARIANT>(p)); }};
    t[VT_UNKNOWN] = {VarType::Object, sizeof(IUnknown*), t[VT_DISPATCH].read,
                     [](void* p, const Variant& v) {
                         if (!v.is_object()) mismatch();
                         at<IUnknown*>(p) = unknown_of(v).detach();
                     },
                     t[VT_DISPATCH].free};
    t[VT_DECIMAL] = {VarType::Variant, sizeof(DECIMAL), [](const void* p) {
                         double d = 0;
                         DECIMAL copy = at<DECIMAL>(p);
                         check(VarR8FromDec(&copy, &d));
                         return Variant(d);
                     }};
    t[VT_I1] = {VarType::Variant, sizeof(CHAR), [](const void* p) { return Variant(static_cast<int16_t>(at<CHAR>(p))); }};
    t[VT_UI1] = {VarType::Byte, sizeof(BYTE), [](const void* p) { return Variant(static_cast<uint8_t>(at<BYTE>(p))); },
                 [](void* p, const Variant& v) { at<BYTE>(p) = as(v, VarType::Byte).as_byte(); }};
    t[VT_UI2] = {VarType::Variant, sizeof(USHORT), [](const void* p) { return Variant(static_cast<int32_t>(at<USHORT>(p))); }};
    t[VT_UI4] = {VarType::Variant, sizeof(ULONG), [](const void* p) { return wide_integer(at<ULONG>(p)); }};
    t[VT_I8] = {VarType::Variant, sizeof(LONGLONG), [](const void* p) { return wide_integer(static_cast<double>(at<LONGLONG>(p))); }};
    t[VT_UI8] = {VarType::Variant, sizeof(ULONGLONG), [](const void* p) { return wide_integer(static_cast<double>(at<ULONGLONG>(p))); }};
    t[VT_INT] = {VarType::Variant, sizeof(INT), [](const void* p) { return wide_integer(at<INT>(p)); }};
    t[VT_UINT] = {VarType::Variant, sizeof(UINT), [](const void* p) { return wide_integer(at<UINT>(p)); }};
    return t;
}();

const TypeRow* row_of(VARTYPE vt) noexcept { return vt < kTypes.size() && kTypes[vt].read ? &kTypes[vt] : nullptr; }

const TypeRow& readable(VARTYPE vt) {
    const TypeRow* row = row_of(vt);
    if (!row) mismatch();
    return *row;
}

const TypeRow& writable(VARTYPE vt) {
    const TypeRow* row = row_of(vt);
    if (!row || !row->write) mismatch();
    return *row;
}

// The SAFEARRAY element type that holds a language type: itself where it is one of the
// language's own, otherwise Variant.
VARTYPE array_vartype(VarType element) {
    const auto vt = static_cast<VARTYPE>(element);
    return is_language_type(vt) ? vt : static_cast<VARTYPE>(VT_VARIANT);
}

Variant from_array(SAFEARRAY* sa) {
    if (!sa) return Variant(Array(VarType::Variant));
    VARTYPE vt = VT_EMPTY;
    check(SafeArrayGetVartype(sa, &vt));
    const TypeRow* element = row_of(vt);
    const UINT dims = SafeArrayGetDim(sa);
    std::vector<Array::Bound> bounds;
    for (UINT d = 1; d <= dims; ++d) {
        LONG lower = 0, upper = -1;
        check(SafeArrayGetLBound(sa, d, &lower));
        check(SafeArrayGetUBound(sa, d, &upper));
        bounds.push_back({lower, upper - lower + 1});
    }
    Array array(element ? element->element : VarType::Variant, std::move(bounds));
    if (array.size() == 0) return Variant(std::move(array));
    if (!element) mismatch();
    safearray_data data(sa);
    auto elements = array.elements_mut();
    const ULONG size = SafeArrayGetElemsize(sa);
    for (size_t i = 0; i < elements.size(); ++i) elements[i] = element->read(data.bytes() + i * size);
    return Variant(std::move(array));
}

unique_safearray to_array(const Array& array) {
    const VARTYPE vt = array_vartype(array.element_type());
    std::vector<SAFEARRAYBOUND> bounds;
    for (const auto& b : array.bounds()) bounds.push_back({static_cast<ULONG>(b.count), b.lower});
    if (bounds.empty()) bounds.push_back({0, 0});
    unique_safearray sa = unique_safearray::create(vt, bounds);
    if (array.size() == 0) return sa;
    // SafeArrayCreate zeroes the elements, and destroying the array frees whatever was written.
    safearray_data data(sa.get());
    const TypeRow& element = writable(vt);
    const ULONG size = SafeArrayGetElemsize(sa.get());
    auto elements = array.elements();
    for (size_t i = 0; i < elements.size(); ++i) element.write(data.bytes() + i * size, elements[i]);
    return sa;
}

}  // namespace

std::u16string text_of(BSTR text) {
    if (!text) return {};
    return std::u16string(reinterpret_cast<const char16_t*>(text), SysStringLen(text));
}

bool is_language_type(VARTYPE vt) noexcept {
    const TypeRow* row = row_of(vt);
    return vt != VT_VARIANT && row && row->write && static_cast<VARTYPE>(row->element) == vt;
}

const void* data_of(const VARIANT* v) noexcept {
    if (V_VT(v) == VT_DECIMAL) return &V_DECIMAL(v);
    return &V_I4(v);
}
void* data_of(VARIANT* v) noexcept { return const_cast<void*>(data_of(static_cast<const VARIANT*>(v))); }

Variant read_value(VARTYPE vt, const void* storage) { return readable(vt).read(storage); }

void store_value(VARTYPE vt, void* storage, const Variant& value) { writable(vt).write(storage, value); }

void replace_value(VARTYPE vt, void* storage, const Variant& value) {
    // A reference to a Variant may itself refer to the caller's typed variable.
    if (vt == VT_VARIANT) return replace_variant(static_cast<VARIANT*>(storage), value);
    const TypeRow& row = writable(vt);
    alignas(8) unsigned char fresh[sizeof(VARIANT)];
    row.write(fresh, value);
    if (row.free) row.free(storage);
    std::memcpy(storage, fresh, row.size);
}

void store_interface(void* target, REFIID iid, const Variant& value) {
    if (!value.is_object()) mismatch();
    at<void*>(target) = nullptr;
    com_ptr<IUnknown> u = unknown_of(value);
    if (u && FAILED(u->QueryInterface(iid, static_cast<void**>(target)))) mismatch();
}

void replace_interface(void* target, REFIID iid, const Variant& value) {
    void* fresh = nullptr;
    store_interface(&fresh, iid, value);
    com_ptr<IUnknown>::adopt(at<IUnknown*>(target)).reset();
    at<void*>(target) = fresh;
}

Variant from_variant(const VARIANT* value) {
    if (!value) return Variant::missing();
    const VARTYPE vt = V_VT(value);
    const bool ref = (vt & VT_BYREF) != 0;
    const VARTYPE base = static_cast<VARTYPE>(vt & ~VT_BYREF);
    if (base & VT_ARRAY) return from_array(ref ? *V_ARRAYREF(value) : V_ARRAY(value));
    // A VARIANT by value holds no VARIANT: only a reference can point at one.
    if (base == VT_VARIANT && !ref) mismatch();
    return read_value(base, ref ? V_BYREF(value) : data_of(value));
}

Variant from_object(IUnknown* value) {
    if (!value) return Variant::nothing();
    if (com_ptr<ICeldoCore> own = query<ICeldoCore>(value, IID_ICeldoCore)) {
        if (automation::Component* core = own->core(&IID_ICeldoCore)) return Variant(Ref<automation::Component>(core));
    }
    // An enumerator handed out by a host collection: walked, never called by name.
    if (!query<IDispatch>(value, IID_IDispatch)) {
        if (com_ptr<IEnumVARIANT> items = query<IEnumVARIANT>(value, IID_IEnumVARIANT))
            return Variant(Ref<automation::Object>(host_enumerator(std::move(items))));
    }
    return Variant(Ref<automation::Object>(new HostObject(value)));
}

com_ptr<IUnknown> unknown_of(const Variant& value) {
    automation::Object* o = value.as_object();
    if (!o) return nullptr;
    if (auto* c = dynamic_cast<automation::Component*>(o)) return com_object_for(*c);
    if (auto* h = dynamic_cast<HostObject*>(o)) return com_ptr<IUnknown>::copy(h->unknown());
    if (auto* e = dynamic_cast<automation::Enumerator*>(o)) return make_enum_variant(Ref<automation::Enumerator>(e));
    mismatch();
}

void to_variant(const Variant& value, VARIANT* out) {
    VariantInit(out);
    if (value.is_array()) {
        unique_safearray sa = to_array(value.as_array());
        V_VT(out) = static_cast<VARTYPE>(VT_ARRAY | array_vartype(value.as_array().element_type()));
        V_ARRAY(out) = sa.release();
        return;
    }
    if (value.is_object()) {
        // Dispatch where the object has it, as hosts expect of objects; otherwise IUnknown.
        com_ptr<IUnknown> u = unknown_of(value);
        com_ptr<IDispatch> d = query<IDispatch>(u.get(), IID_IDispatch);
        if (d || !u) {
            V_VT(out) = VT_DISPATCH;
            V_DISPATCH(out) = d.detach();
        } else {
            V_VT(out) = VT_UNKNOWN;
            V_UNKNOWN(out) = u.detach();
        }
        return;
    }
    if (value.is_empty()) return;
    const auto vt = static_cast<VARTYPE>(value.type());
    if (vt == VT_NULL) V_VT(out) = vt;
    else to_variant_as(vt, value, out);
}

void to_variant_as(VARTYPE vt, const Variant& value, VARIANT* out) {
    // A VARIANT holds no VARIANT: as a Variant, the value keeps its own type.
    if (vt == VT_VARIANT) return to_variant(value, out);
    writable(vt).write(data_of(out), value);
    V_VT(out) = vt;
}

void replace_variant(VARIANT* target, const Variant& value) {
    const VARTYPE vt = V_VT(target);
    if (!(vt & VT_BYREF)) {
        unique_variant fresh;
        to_variant(value, fresh.get());
        VariantClear(target);
        *target = fresh.release();
        return;
    }
    if (vt & VT_ARRAY) {
        if (!value.is_array()) mismatch();
        unique_safearray fresh = to_array(value.as_array());
        unique_safearray old(*V_ARRAYREF(target));
        *V_ARRAYREF(target) = fresh.release();
        return;
    }
    replace_value(static_cast<VARTYPE>(vt & ~VT_BYREF), V_BYREF(target), value);
}

}  // namespace celdo::com

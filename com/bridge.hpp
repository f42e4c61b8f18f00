#pragma once
// Conversions between the platform's VARIANT, BSTR and SAFEARRAY and the core's Variant. Only
// the COM layer sees platform types; the core works on Variant alone.

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <string_view>

#include "automation/variant.hpp"

namespace celdo::com {

using automation::Variant;

BSTR make_bstr(std::u16string_view text);
std::u16string text_of(BSTR text);

// Reads a VARIANT, following by-reference content. Subtypes the language lacks become the
// nearest one it has (small integers Long, 64-bit integers and decimals Double).
Variant from_variant(const VARIANT* value);
Variant from_bstr(BSTR value);
Variant from_integer(short value);
Variant from_long(long value);
Variant from_byte(unsigned char value);
Variant from_bool(VARIANT_BOOL value);
Variant from_single(float value);
Variant from_double(double value);
Variant from_currency(CY value);
Variant from_date(DATE value);
// Library objects come back as themselves; host objects are wrapped for late binding.
Variant from_object(IUnknown* value);

// Writes a Variant into an empty VARIANT the caller owns.
void to_variant(const Variant& value, VARIANT* out);

// Results: the target is uninitialised. Each converts with the language's rules first.
void store_bstr(BSTR* target, const Variant& value);
void store_integer(short* target, const Variant& value);
void store_long(long* target, const Variant& value);
void store_byte(unsigned char* target, const Variant& value);
void store_bool(VARIANT_BOOL* target, const Variant& value);
void store_single(float* target, const Variant& value);
void store_double(double* target, const Variant& value);
void store_currency(CY* target, const Variant& value);
void store_date(DATE* target, const Variant& value);
void store_variant(VARIANT* target, const Variant& value);
void store_dispatch(IDispatch** target, const Variant& value);
void store_unknown(IUnknown** target, const Variant& value);
void store_object(void** target, REFIID iid, const Variant& value);
template <class I>
void store_interface(I** target, REFIID iid, const Variant& value) {
    store_object(reinterpret_cast<void**>(target), iid, value);
}

// By-reference arguments: the old content is released before the new one is written.
void replace_bstr(BSTR* target, const Variant& value);
inline void replace_integer(short* t, const Variant& v) { store_integer(t, v); }
inline void replace_long(long* t, const Variant& v) { store_long(t, v); }
inline void replace_byte(unsigned char* t, const Variant& v) { store_byte(t, v); }
inline void replace_bool(VARIANT_BOOL* t, const Variant& v) { store_bool(t, v); }
inline void replace_single(float* t, const Variant& v) { store_single(t, v); }
inline void replace_double(double* t, const Variant& v) { store_double(t, v); }
inline void replace_currency(CY* t, const Variant& v) { store_currency(t, v); }
inline void replace_date(DATE* t, const Variant& v) { store_date(t, v); }
void replace_variant(VARIANT* target, const Variant& value);
void replace_dispatch(IDispatch** target, const Variant& value);
void replace_unknown(IUnknown** target, const Variant& value);
void replace_object(void** target, REFIID iid, const Variant& value);
template <class I>
void replace_interface(I** target, REFIID iid, const Variant& value) {
    replace_object(reinterpret_cast<void**>(target), iid, value);
}

// The IUnknown that stands for an object Variant (null for Nothing), with a reference added.
IUnknown* unknown_of(const Variant& value);

}  // namespace celdo::com

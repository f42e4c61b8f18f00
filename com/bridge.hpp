#pragma once
// Conversions between the platform's VARIANT, BSTR and SAFEARRAY and the core's Variant. Only
// the COM layer sees platform types; the core works on Variant alone.
//
// Every automation type is described once, in one table indexed by its VARTYPE (bridge.cpp):
// how a value of it is read from its storage (a VARIANT's data, a by-reference argument's
// target, an array element, a typed vtable argument) and written back with the language's
// conversions. Everything below goes through that table.

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <string_view>
#include <vector>

#include "automation/object.hpp"
#include "automation/variant.hpp"
#include "com/owners.hpp"

namespace celdo::com {

using automation::Variant;

// The kinds of a late-bound call are IDispatch's own flags, so a call crosses unchanged.
static_assert(automation::kMethod == DISPATCH_METHOD && automation::kGet == DISPATCH_PROPERTYGET &&
              automation::kLet == DISPATCH_PROPERTYPUT && automation::kSet == DISPATCH_PROPERTYPUTREF);
inline constexpr WORD kCallKinds = DISPATCH_METHOD | DISPATCH_PROPERTYGET | DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
// Only the call kinds of a set of flags (IDispatch has other bits that are not the language's).
inline uint16_t call_kinds(WORD flags) noexcept { return flags & kCallKinds; }

std::u16string text_of(BSTR text);

// Reads the value of type `vt` held at `storage` (VT_VARIANT: a VARIANT, followed through
// references). Subtypes the language lacks become the nearest one it has (small integers
// Integer or Long, wider integers and decimals Double); a type it cannot hold is a mismatch.
Variant read_value(VARTYPE vt, const void* storage);
// Whether `vt` is one of the language's own typed values (Integer ... Byte, String, Object):
// arrays of it and typed references to it hold them as they are. Variant is not one: a
// reference to a Variant points at a whole VARIANT.
bool is_language_type(VARTYPE vt) noexcept;
// Writes `value` converted to `vt` into uninitialised storage of that type.
void store_value(VARTYPE vt, void* storage, const Variant& value);
// The same into storage that holds a value already (a by-reference argument): the old value
// is released once the new one is made, so a failed conversion leaves it as it was.
void replace_value(VARTYPE vt, void* storage, const Variant& value);
// An interface of a library class: the object must offer `iid` (Nothing stores null).
void store_interface(void* target, REFIID iid, const Variant& value);
void replace_interface(void* target, REFIID iid, const Variant& value);

// Reads a VARIANT, following by-reference content.
Variant from_variant(const VARIANT* value);
// Library objects come back as themselves; host objects are wrapped for late binding.
Variant from_object(IUnknown* value);
// Writes a Variant into a VARIANT that holds nothing the caller owns.
void to_variant(const Variant& value, VARIANT* out);
// The same, converted to `vt` with the language's rules.
void to_variant_as(VARTYPE vt, const Variant& value, VARIANT* out);
// Where a VARIANT keeps its value (a by-reference argument to it points there): a DECIMAL
// fills the whole VARIANT, every other type the union that follows the type code.
const void* data_of(const VARIANT* v) noexcept;
void* data_of(VARIANT* v) noexcept;
// A by-reference VARIANT argument: a VARIANT that points at the caller's typed variable is
// written through, converting to that variable's type.
void replace_variant(VARIANT* target, const Variant& value);

// The IUnknown that stands for an object Variant (null for Nothing).
com_ptr<IUnknown> unknown_of(const Variant& value);

// The arguments of a call the library makes through IDispatch, owned until they go, and laid
// out last first as DISPPARAMS wants them.
class OutgoingArguments {
public:
    explicit OutgoingArguments(size_t count) : values_(count), rgvarg_(count) {}
    OutgoingArguments(const OutgoingArguments&) = delete;
    OutgoingArguments& operator=(const OutgoingArguments&) = delete;

    // The argument at `index` in source order.
    VARIANTARG* arg(size_t index) noexcept { return &rgvarg_[rgvarg_.size() - 1 - index]; }
    // Where the value of that argument lives: the argument itself, or what it refers to.
    VARIANT* slot(size_t index) noexcept { return values_[index].get(); }
    void by_value(size_t index, const Variant& value) {
        to_variant(value, slot(index));
        *arg(index) = *slot(index);
    }
    DISPPARAMS params() noexcept { return {rgvarg_.data(), nullptr, static_cast<UINT>(rgvarg_.size()), 0}; }

private:
    std::vector<unique_variant> values_;
    std::vector<VARIANTARG> rgvarg_;
};

}  // namespace celdo::com

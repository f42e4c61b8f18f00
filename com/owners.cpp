#include "com/owners.hpp"

#include <new>

#include "com/errors.hpp"

namespace celdo::com {

bool (*allocation_hook)() noexcept = nullptr;

unique_bstr unique_bstr::try_from(std::u16string_view text) noexcept {
    if (allocation_refused()) return {};
    return unique_bstr(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size())));
}

unique_bstr unique_bstr::from(std::u16string_view text) {
    unique_bstr b = try_from(text);
    if (!b) throw std::bad_alloc();
    return b;
}

unique_safearray unique_safearray::create(VARTYPE vt, std::span<SAFEARRAYBOUND> bounds) {
    SAFEARRAY* sa = allocation_refused() ? nullptr : SafeArrayCreate(vt, static_cast<UINT>(bounds.size()), bounds.data());
    if (!sa) throw std::bad_alloc();
    return unique_safearray(sa);
}

safearray_data::safearray_data(SAFEARRAY* sa) : sa_(sa) {
    const HRESULT hr = SafeArrayAccessData(sa, &data_);
    if (FAILED(hr)) throw error_from_call(hr, nullptr);
}

}  // namespace celdo::com

#pragma once
// Automation errors at the COM boundary: HRESULT plus IErrorInfo on vtable calls, EXCEPINFO on
// IDispatch::Invoke, and the reverse for errors that host objects raise.

#include <windows.h>
#include <oaidl.h>

#include <new>

#include "automation/error.hpp"
#include "com/host_call.hpp"

namespace celdo::com {

// The HRESULT that carries an automation error number: the language's own errors travel in
// FACILITY_CONTROL, numbers that already are HRESULTs (the object-error range) as they stand.
HRESULT hresult_of(int32_t number) noexcept;
// The automation error number an HRESULT stands for (the reverse of hresult_of).
int32_t number_of(HRESULT hr) noexcept;

void set_error_info(const automation::AutomationError& error, REFIID iid) noexcept;
void fill_excepinfo(EXCEPINFO* info, const automation::AutomationError& error) noexcept;

// The error that a failed call into a host object reported.
automation::AutomationError error_from_call(HRESULT hr, EXCEPINFO* info);

// Runs `body`, turning every failure into an HRESULT with error info: no exception crosses the
// COM boundary.
template <class F>
HRESULT guarded(REFIID iid, F&& body) noexcept {
    HostCall call;
    try {
        body();
        return S_OK;
    } catch (const automation::AutomationError& e) {
        set_error_info(e, iid);
        return hresult_of(e.number());
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        set_error_info(automation::AutomationError(automation::StdError::InvalidCall), iid);
        return E_UNEXPECTED;
    }
}

}  // namespace celdo::com

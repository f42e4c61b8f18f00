#pragma once
// Automation errors at the COM boundary: HRESULT plus IErrorInfo on vtable calls, EXCEPINFO on
// IDispatch::Invoke, and the reverse for errors that host objects raise.

#include <windows.h>
#include <oaidl.h>

#include "automation/error.hpp"
#include "com/host_call.hpp"

namespace celdo::com {

// The HRESULT that carries an automation error number: the language's own errors travel in
// FACILITY_CONTROL, numbers that already are HRESULTs (the object-error range) as they stand.
HRESULT hresult_of(int32_t number) noexcept;
// The automation error number an HRESULT stands for (the reverse of hresult_of).
int32_t number_of(HRESULT hr) noexcept;

// How a failure leaves the library.
enum class Boundary {
    Vtable,    // the HRESULT itself, with IErrorInfo
    Dispatch,  // IDispatch::Invoke: DISP_E_EXCEPTION with EXCEPINFO and IErrorInfo
};

// The one translation of the exception being handled into what the host receives: its
// HRESULT, with the error info of `iid` set and, at the Dispatch boundary, `excepinfo` filled
// (DISP_E_EXCEPTION; the HRESULT itself when there is no EXCEPINFO). Out of memory is
// E_OUTOFMEMORY, error 7 to the host, even when nothing more can be allocated to describe it.
// Call it only from inside a catch block.
HRESULT caught_error(REFIID iid, Boundary boundary, EXCEPINFO* excepinfo = nullptr) noexcept;

// The error that a failed call into a host object reported (its out of memory is thrown as
// std::bad_alloc, so that nothing absorbs it): EXCEPINFO when the host filled it, else the
// error object it left on the thread (`pending`), else the HRESULT alone.
automation::AutomationError error_from_call(HRESULT hr, EXCEPINFO* info, IErrorInfo* pending = nullptr);

// Runs `body` for a vtable entry: no exception crosses the COM boundary.
template <class F>
HRESULT guarded(REFIID iid, F&& body) noexcept {
    HostCall call;
    try {
        body();
        return S_OK;
    } catch (...) {
        return caught_error(iid, Boundary::Vtable);
    }
}

}  // namespace celdo::com

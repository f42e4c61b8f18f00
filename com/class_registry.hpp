#pragma once
// The COM classes of the component, module-wide counts, and the one COM identity of each
// library object.

#include <windows.h>
#include <oaidl.h>

#include <span>

#include "automation/component.hpp"
#include "com/owners.hpp"

namespace celdo::automation {
struct ClassInfo;
}

namespace celdo::com {

struct ComClass {
    const wchar_t* name;
    const CLSID* clsid;
    const IID* iid;         // the default dual interface
    const IID* events_iid;  // the outgoing dispinterface, or null
    const wchar_t* iface_name;
    const wchar_t* events_name;
    const automation::ClassInfo& (*info)();
    // Wraps a core object in a new COM object (reference count zero).
    IUnknown* (*make)(automation::Ref<automation::Component> core);
};

// Generated from the declarations.
std::span<const ComClass> classes();
const GUID& library_id();
unsigned short library_major();
unsigned short library_minor();
const wchar_t* library_name();
const wchar_t* library_help();

const ComClass* find_class(REFCLSID clsid);
const ComClass* find_class(const automation::ClassInfo& info);

// The COM object of a library object, created on first need and reused while it lives, so that
// the same object reached twice is the same to the host.
com_ptr<IUnknown> com_object_for(automation::Component& core);

// Module state for DllCanUnloadNow: COM objects, locks, and the library's own objects.
void object_created() noexcept;
void object_destroyed() noexcept;
// After a host released a COM object for the last time: outside every call, the cycles left
// unreachable are collected (all of them once the host holds no COM object at all).
void object_released() noexcept;
void lock_module(bool lock) noexcept;
bool module_in_use() noexcept;
// DllCanUnloadNow's answer, after collecting what can be.
HRESULT can_unload() noexcept;
// One line of counts appended to the file named by CELDO_LIFETIME_REPORT, if set.
void report_lifetime() noexcept;

HMODULE module_handle() noexcept;
void set_module_handle(HMODULE module) noexcept;

}  // namespace celdo::com

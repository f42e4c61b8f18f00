#pragma once
// Shared by the C++ clients that run under Wine against the built DLLs: owners for interface
// pointers, BSTRs and VARIANTs, arguments as a script passes them, a late-bound call, host
// objects and event sinks.

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "Celdo_h.h"
#include "com/owners.hpp"

namespace celdo::testing {

// Full Windows path of the DLL under test (the program's last argument).
const std::wstring& dll_path();

// The DLL under test, loaded once and kept for the rest of the run.
inline HMODULE dll_module() {
    static const HMODULE module = LoadLibraryW(dll_path().c_str());
    return module;
}

// An entry point of a DLL, by default the DLL under test; null when either is missing.
template <class F>
F* entry_point(const char* name, HMODULE module = dll_module()) {
    return module ? reinterpret_cast<F*>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
}

// What the DLL's DllCanUnloadNow answers.
inline HRESULT can_unload_now() {
    auto entry = entry_point<HRESULT STDAPICALLTYPE()>("DllCanUnloadNow");
    return entry ? entry() : E_FAIL;
}

// Every creatable class, by the name that follows "Celdo." in its ProgID.
inline const std::pair<const wchar_t*, const CLSID*> kClasses[] = {
    {L"clsCeldo", &CLSID_clsCeldo},   {L"clsCeldos", &CLSID_clsCeldos},   {L"Constants", &CLSID_Constants},
    {L"clsRegistro", &CLSID_clsRegistro}, {L"CeldosSeguimiento", &CLSID_CeldosSeguimiento},
    {L"ISService", &CLSID_ISService}, {L"Apuntador", &CLSID_Apuntador}, {L"Apuntadores", &CLSID_Apuntadores}};

// Owns one COM reference; put() and put_void() hand out its slot for an out parameter.
template <class I>
using ComPtr = com::com_ptr<I>;

// An object of the registered class `clsid` through its interface I.
template <class I = IDispatch>
ComPtr<I> create(REFCLSID clsid) {
    ComPtr<I> made;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(I), made.put_void()), S_OK);
    return made;
}

// Owns one BSTR; passes as the BSTR itself.
class Bstr {
public:
    explicit Bstr(const wchar_t* s = nullptr) : b_(s ? SysAllocString(s) : nullptr) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(b_); }
    operator BSTR() const { return b_; }
    BSTR* ref() { return &b_; }  // in and out, as ByRef passes it
    BSTR* put() { return SysFreeString(std::exchange(b_, nullptr)), &b_; }
    std::wstring str() const { return b_ ? std::wstring(b_, SysStringLen(b_)) : std::wstring(); }

private:
    BSTR b_;
};

// Owns one VARIANT (it takes over the one it is made from).
struct Var : VARIANT {
    Var() { VariantInit(this); }
    Var(const VARIANT& v) : VARIANT(v) {}
    Var(const Var&) = delete;
    Var& operator=(const Var&) = delete;
    ~Var() { VariantClear(this); }
};

// Arguments as a script passes them: the receiver owns what they hold.
inline VARIANT text(const wchar_t* s) { VARIANT v; V_VT(&v) = VT_BSTR; V_BSTR(&v) = SysAllocString(s); return v; }
inline VARIANT number(long n) { VARIANT v; V_VT(&v) = VT_I4; V_I4(&v) = n; return v; }
// A String variable by reference, as compiled hosts pass one; it is written back in place.
inline VARIANT by_ref(Bstr& s) { VARIANT v; V_VT(&v) = VT_BYREF | VT_BSTR; V_BSTRREF(&v) = s.ref(); return v; }
inline VARIANT missing() { VARIANT v; V_VT(&v) = VT_ERROR; V_ERROR(&v) = DISP_E_PARAMNOTFOUND; return v; }  // left out
inline VARIANT object(IDispatch* d) {  // a new reference to d (Nothing for null)
    if (d) d->AddRef();
    VARIANT v; V_VT(&v) = VT_DISPATCH; V_DISPATCH(&v) = d; return v;
}

// A late-bound call as a script makes it: arguments in source order, cleared by the call; a
// property put passes its value as the named argument DISPID_PROPERTYPUT. `refused` is told
// which argument a failed call refused.
inline HRESULT invoke(IDispatch* object, const wchar_t* name, std::vector<VARIANT> args, WORD flags, VARIANT* result,
                      EXCEPINFO* error, UINT* refused = nullptr) {
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    DISPID id = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
    HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
    if (SUCCEEDED(hr)) {
        std::vector<VARIANT> reversed(args.rbegin(), args.rend());
        const bool puts = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
        DISPPARAMS params{reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()), puts ? 1u : 0u};
        hr = object->Invoke(id, IID_NULL, 0, flags, &params, result, error, refused);
    }
    for (VARIANT& a : args) VariantClear(&a);
    return hr;
}

// The name of a type or of its member `id` (or, with `help`, its help string).
inline std::wstring doc(ITypeInfo* info, MEMBERID id = MEMBERID_NIL, bool help = false) {
    Bstr text;
    if (info) info->GetDocumentation(id, help ? nullptr : text.put(), help ? text.put() : nullptr, nullptr, nullptr);
    return text.str();
}

// "source|description" of the error object the last call left on this thread; empty for none.
inline std::wstring error_info() {
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) != S_OK) return L"";
    Bstr source, description;
    info->GetSource(source.put());
    info->GetDescription(description.put());
    return source.str() + L"|" + description.str();
}

// A field added to `row` through the vtable, as compiled hosts add it: a Long holding `value`.
inline HRESULT add_field(_clsCeldos* row, const wchar_t* name, VARIANT value, ComPtr<_clsCeldo>* added = nullptr) {
    Bstr field_name(name), none(L"");
    ComPtr<_clsCeldo> field;
    return row->Add(field_name, none, exLong, 0, -1, VARIANT_FALSE, none, none, value, missing(), missing(), missing(),
                    (added ? *added : field).put());
}

// The IUnknown and IDispatch plumbing of a host object written in a test. It lives on the
// test's stack: `refs` starts at 1 for that, and what the library took must be given back.
class TestDispatch : public IDispatch {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        *out = riid == IID_IUnknown || riid == IID_IDispatch || answers(riid) ? this : nullptr;
        if (*out) AddRef();
        return *out ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++refs; }
    ULONG STDMETHODCALLTYPE Release() override { return --refs; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override { *n = 0; return S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

    ULONG refs = 1;

protected:
    ~TestDispatch() = default;
    virtual bool answers(REFIID) const { return false; }  // another interface, such as events
};

// An event sink as a WithEvents variable builds one: it records each event's number, how it
// came (as a method call or not) and a copy of its first argument.
class RecordingSink final : public TestDispatch {
public:
    explicit RecordingSink(REFIID events) : events_(events) {}
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        ids.push_back(id);
        methods += flags == DISPATCH_METHOD;
        Var& first = firsts.emplace_back();
        if (params->cArgs) kinds.push_back(V_VT(&params->rgvarg[params->cArgs - 1]));
        if (params->cArgs) VariantCopyInd(&first, &params->rgvarg[params->cArgs - 1]);
        return S_OK;
    }
    std::vector<DISPID> ids;
    std::vector<VARTYPE> kinds;  // of the first argument as it arrived, for events that have one
    std::deque<Var> firsts;      // Empty for events without arguments
    size_t methods = 0;

private:
    bool answers(REFIID riid) const override { return riid == events_; }
    IID events_;
};

// The connection point for `events` of `source` into `point`.
inline HRESULT find_point(IUnknown* source, REFIID events, ComPtr<IConnectionPoint>& point) {
    ComPtr<IConnectionPointContainer> container;
    const HRESULT hr = source->QueryInterface(IID_IConnectionPointContainer, container.put_void());
    return hr == S_OK ? container->FindConnectionPoint(events, point.put()) : hr;
}

// `sink` advised on the connection point for `events` of `source` for as long as this lives.
struct Connection {
    Connection(IUnknown* source, REFIID events, IUnknown* sink)
        : advised(find_point(source, events, point) == S_OK && point->Advise(sink, &cookie) == S_OK) {}
    ~Connection() { if (advised) point->Unadvise(cookie); }
    HRESULT unadvise() { return advised = false, point->Unadvise(cookie); }
    ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
    bool advised = false;
};

}  // namespace celdo::testing

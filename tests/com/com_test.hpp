#pragma once
// Shared by the C++ clients that run under Wine against the built DLL.

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>

#include <string>
#include <vector>

namespace celdo::testing {

// Full Windows path of the Celdo.dll under test (the program's first argument).
const std::wstring& dll_path();

// What the loaded Celdo.dll's DllCanUnloadNow answers. COM loaded the module from its registered
// path; it is known by its file name.
inline HRESULT can_unload_now() {
    HMODULE module = GetModuleHandleW(L"Celdo.dll");
    if (!module) return E_FAIL;
    auto can_unload = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
    return can_unload ? can_unload() : E_FAIL;
}

// Owns one COM reference.
template <class I>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    ComPtr(ComPtr&& other) noexcept : p_(other.p_) { other.p_ = nullptr; }
    ~ComPtr() { reset(); }
    I** out() {
        reset();
        return &p_;
    }
    void** out_void() { return reinterpret_cast<void**>(out()); }
    I* get() const { return p_; }
    I* operator->() const { return p_; }
    explicit operator bool() const { return p_ != nullptr; }
    void reset() {
        if (p_) p_->Release();
        p_ = nullptr;
    }

private:
    I* p_ = nullptr;
};

// The IUnknown and IDispatch plumbing of a host object written in a test. It lives on the
// test's stack: `refs` starts at 1 for that, and what the library took must be given back.
class TestDispatch : public IDispatch {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
        if (riid == IID_IUnknown || riid == IID_IDispatch || answers(riid)) {
            *out = this;
            AddRef();
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++refs; }
    ULONG STDMETHODCALLTYPE Release() override { return --refs; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
        *n = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

    ULONG refs = 1;

protected:
    ~TestDispatch() = default;
    // Another interface the object answers to, such as an events interface.
    virtual bool answers(REFIID) const { return false; }
};

// An event sink as a WithEvents variable builds one: a dispatch object that records each event
// it receives (its number and, when it is a Long, its first argument).
class RecordingSink final : public TestDispatch {
public:
    explicit RecordingSink(REFIID events) : events_(events) {}
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        ids.push_back(id);
        method_calls += flags == DISPATCH_METHOD;
        argument_counts.push_back(params->cArgs);
        if (params->cArgs >= 1 && V_VT(&params->rgvarg[params->cArgs - 1]) == VT_I4)
            first_longs.push_back(V_I4(&params->rgvarg[params->cArgs - 1]));
        return S_OK;
    }

    std::vector<DISPID> ids;
    std::vector<UINT> argument_counts;
    std::vector<long> first_longs;
    size_t method_calls = 0;

private:
    bool answers(REFIID riid) const override { return riid == events_; }
    IID events_;
};

// Arguments as a script passes them: the receiver owns what they hold.
inline VARIANT text(const wchar_t* s) {
    VARIANT v;
    V_VT(&v) = VT_BSTR;
    V_BSTR(&v) = SysAllocString(s);
    return v;
}
inline VARIANT number(long n) {
    VARIANT v;
    V_VT(&v) = VT_I4;
    V_I4(&v) = n;
    return v;
}
// A new reference to `d` (Nothing for null).
inline VARIANT object(IDispatch* d) {
    VARIANT v;
    V_VT(&v) = VT_DISPATCH;
    V_DISPATCH(&v) = d;
    if (d) d->AddRef();
    return v;
}

// Reads a registry string value; empty when the key or value is missing.
std::wstring registry_text(HKEY root, const std::wstring& path, const wchar_t* name = nullptr);
bool registry_key_exists(HKEY root, const std::wstring& path);
std::wstring guid_text(REFGUID guid);

}  // namespace celdo::testing

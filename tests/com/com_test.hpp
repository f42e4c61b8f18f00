#pragma once
// Shared by the C++ clients that run under Wine against the built DLL.

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>

#include <string>

namespace celdo::testing {

// Full Windows path of the Celdo.dll under test (the program's first argument).
const std::wstring& dll_path();

// Owns one COM reference.
template <class I>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
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

// Reads a registry string value; empty when the key or value is missing.
std::wstring registry_text(HKEY root, const std::wstring& path, const wchar_t* name = nullptr);
bool registry_key_exists(HKEY root, const std::wstring& path);
std::wstring guid_text(REFGUID guid);

}  // namespace celdo::testing

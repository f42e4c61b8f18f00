#pragma once
// Owners of the platform's automation resources: each BSTR, VARIANT, SAFEARRAY and interface
// pointer the COM layer holds is freed by its owner on every path out, so that no exit can
// forget a Release or a SysFreeString.

#include <windows.h>
#include <oaidl.h>

#include <span>
#include <string_view>
#include <utility>

namespace celdo::com {

// Set only by the build that tests out-of-memory paths: every allocation the COM layer asks
// of the platform (BSTRs, SAFEARRAYs, error objects) asks the hook first and fails when it
// answers true, as operator new fails in that build.
extern bool (*allocation_hook)() noexcept;
inline bool allocation_refused() noexcept { return allocation_hook && allocation_hook(); }

// One reference to a COM interface.
template <class I>
class com_ptr {
public:
    com_ptr() noexcept = default;
    com_ptr(std::nullptr_t) noexcept {}
    // Adds a reference of its own: the caller keeps the one it has.
    static com_ptr copy(I* p) noexcept {
        if (p) p->AddRef();
        return com_ptr(p);
    }
    // Takes over a reference the caller owned.
    static com_ptr adopt(I* p) noexcept { return com_ptr(p); }

    com_ptr(const com_ptr& other) noexcept : p_(other.p_) {
        if (p_) p_->AddRef();
    }
    com_ptr(com_ptr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    com_ptr& operator=(com_ptr other) noexcept {
        std::swap(p_, other.p_);
        return *this;
    }
    ~com_ptr() { reset(); }

    I* get() const noexcept { return p_; }
    I* operator->() const noexcept { return p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }
    void reset() noexcept {
        if (I* p = std::exchange(p_, nullptr)) p->Release();
    }
    // For an out parameter: releases what is held and hands out the slot.
    I** put() noexcept {
        reset();
        return &p_;
    }
    void** put_void() noexcept { return reinterpret_cast<void**>(put()); }
    // Hands the reference to the caller.
    I* detach() noexcept { return std::exchange(p_, nullptr); }

private:
    explicit com_ptr(I* p) noexcept : p_(p) {}
    I* p_ = nullptr;
};

// Another interface of an object, or null when it has none.
template <class J>
com_ptr<J> query(IUnknown* object, REFIID iid) noexcept {
    com_ptr<J> out;
    if (object) object->QueryInterface(iid, out.put_void());
    return out;
}

class unique_bstr {
public:
    unique_bstr() noexcept = default;
    explicit unique_bstr(BSTR b) noexcept : b_(b) {}
    unique_bstr(unique_bstr&& other) noexcept : b_(other.release()) {}
    unique_bstr& operator=(unique_bstr&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~unique_bstr() { reset(); }

    // A copy of `text`, or null when it cannot be allocated (for paths that must not throw).
    static unique_bstr try_from(std::u16string_view text) noexcept;
    // A copy of `text`; throws std::bad_alloc when it cannot be allocated.
    static unique_bstr from(std::u16string_view text);

    BSTR get() const noexcept { return b_; }
    explicit operator bool() const noexcept { return b_ != nullptr; }
    BSTR* put() noexcept {
        reset();
        return &b_;
    }
    BSTR release() noexcept { return std::exchange(b_, nullptr); }
    void reset(BSTR b = nullptr) noexcept { SysFreeString(std::exchange(b_, b)); }

private:
    BSTR b_ = nullptr;
};

// A VARIANT that is cleared when it goes.
class unique_variant {
public:
    unique_variant() noexcept { VariantInit(&v_); }
    unique_variant(unique_variant&& other) noexcept : v_(other.release()) {}
    unique_variant& operator=(unique_variant&&) = delete;
    ~unique_variant() { VariantClear(&v_); }

    VARIANT* get() noexcept { return &v_; }
    const VARIANT* get() const noexcept { return &v_; }
    // Clears it for a new value.
    VARIANT* put() noexcept {
        VariantClear(&v_);
        return &v_;
    }
    // Hands the content to the caller and stays empty.
    VARIANT release() noexcept {
        VARIANT out = v_;
        VariantInit(&v_);
        return out;
    }

private:
    VARIANT v_;
};

class unique_safearray {
public:
    unique_safearray() noexcept = default;
    explicit unique_safearray(SAFEARRAY* sa) noexcept : sa_(sa) {}
    unique_safearray(unique_safearray&& other) noexcept : sa_(other.release()) {}
    unique_safearray& operator=(unique_safearray&&) = delete;
    ~unique_safearray() {
        if (sa_) SafeArrayDestroy(sa_);
    }
    // A new array with zeroed elements; throws std::bad_alloc when it cannot be made.
    static unique_safearray create(VARTYPE vt, std::span<SAFEARRAYBOUND> bounds);
    SAFEARRAY* get() const noexcept { return sa_; }
    SAFEARRAY* release() noexcept { return std::exchange(sa_, nullptr); }

private:
    SAFEARRAY* sa_ = nullptr;
};

// A SAFEARRAY's elements, locked for as long as this lives.
class safearray_data {
public:
    // Throws the call's error when the array cannot be locked.
    explicit safearray_data(SAFEARRAY* sa);
    safearray_data(const safearray_data&) = delete;
    safearray_data& operator=(const safearray_data&) = delete;
    ~safearray_data() { SafeArrayUnaccessData(sa_); }

    unsigned char* bytes() const noexcept { return static_cast<unsigned char*>(data_); }

private:
    SAFEARRAY* sa_;
    void* data_ = nullptr;
};

// A description borrowed from an ITypeInfo (its TYPEATTR, a FUNCDESC), handed back when it goes.
template <class T, auto Release>
class type_info_part {
public:
    explicit type_info_part(ITypeInfo* info) noexcept : info_(info) {}
    type_info_part(const type_info_part&) = delete;
    type_info_part& operator=(const type_info_part&) = delete;
    ~type_info_part() {
        if (part_) (info_->*Release)(part_);
    }
    T** put() noexcept { return &part_; }
    const T* get() const noexcept { return part_; }

private:
    ITypeInfo* info_;
    T* part_ = nullptr;
};
using type_attr = type_info_part<TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using func_desc = type_info_part<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;

}  // namespace celdo::com

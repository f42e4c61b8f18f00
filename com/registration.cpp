// Self-registration: machine-wide (regsvr32) under HKLM\Software\Classes, or per user
// (regsvr32 /n /i:user) under HKCU\Software\Classes for people without administrator rights.
// The x86 and x64 builds share identities: each registers its own platform's type library path,
// and unregistering one leaves what the other still needs.

#include <windows.h>
#include <olectl.h>

#include <new>
#include <string>

#include "com/class_registry.hpp"
#include "com/type_library.hpp"

namespace celdo::com {
namespace {

#ifdef _WIN64
constexpr wchar_t kPlatform[] = L"win64";
#else
constexpr wchar_t kPlatform[] = L"win32";
#endif
// The standard marshallers for dual interfaces and dispinterfaces.
constexpr wchar_t kDualMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr wchar_t kDispatchMarshaller[] = L"{00020420-0000-0000-C000-000000000046}";

enum class Scope { Machine, User };

std::wstring text_of(REFGUID guid) {
    wchar_t buffer[40];
    StringFromGUID2(guid, buffer, 40);
    return buffer;
}

class Key {
public:
    Key() = default;
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (key_) RegCloseKey(key_);
    }
    HKEY* out() { return &key_; }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

struct Registry {
    HKEY root;  // the Classes key of the scope

    void set(const std::wstring& path, const wchar_t* name, const std::wstring& value) const {
        Key key;
        LSTATUS s = RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.out(), nullptr);
        if (s != ERROR_SUCCESS) throw HRESULT_FROM_WIN32(s);
        s = RegSetValueExW(key.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
        if (s != ERROR_SUCCESS) throw HRESULT_FROM_WIN32(s);
    }
    void create(const std::wstring& path) const {
        Key key;
        LSTATUS s = RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.out(), nullptr);
        if (s != ERROR_SUCCESS) throw HRESULT_FROM_WIN32(s);
    }
    std::wstring get(const std::wstring& path) const {
        wchar_t buffer[256];
        DWORD size = sizeof buffer;
        if (RegGetValueW(root, path.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, buffer, &size) != ERROR_SUCCESS)
            return {};
        return buffer;
    }
    bool has_subkeys(const std::wstring& path) const {
        Key key;
        if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.out()) != ERROR_SUCCESS) return false;
        DWORD count = 0;
        RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr, nullptr);
        return count > 0;
    }
    void remove(const std::wstring& path) const { RegDeleteTreeW(root, path.c_str()); }
};

std::wstring library_key() { return L"TypeLib\\" + text_of(library_id()); }

std::wstring version_text() {
    return std::to_wstring(library_major()) + L"." + std::to_wstring(library_minor());
}

void write_interface(const Registry& r, const IID& iid, const wchar_t* name, const wchar_t* marshaller) {
    const std::wstring key = L"Interface\\" + text_of(iid);
    r.set(key, nullptr, name);
    r.set(key + L"\\ProxyStubClsid32", nullptr, marshaller);
    r.set(key + L"\\ProxyStubClsid", nullptr, marshaller);
    r.set(key + L"\\TypeLib", nullptr, text_of(library_id()));
    r.set(key + L"\\TypeLib", L"Version", version_text());
}

void write_all(const Registry& r) {
    const std::wstring path = module_path();
    const std::wstring folder = path.substr(0, path.find_last_of(L"\\/"));
    const std::wstring libid = text_of(library_id());
    const std::wstring version = library_key() + L"\\" + version_text();
    r.set(version, nullptr, library_help());
    r.set(version + L"\\0\\" + kPlatform, nullptr, path);
    r.set(version + L"\\FLAGS", nullptr, L"0");
    r.set(version + L"\\HELPDIR", nullptr, folder);

    for (const ComClass& c : classes()) {
        const std::wstring progid = std::wstring(library_name()) + L"." + c.name;
        const std::wstring key = L"CLSID\\" + text_of(*c.clsid);
        r.set(key, nullptr, progid);
        r.set(key + L"\\InprocServer32", nullptr, path);
        r.set(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
        r.set(key + L"\\ProgID", nullptr, progid);
        r.set(key + L"\\VersionIndependentProgID", nullptr, progid);
        r.set(key + L"\\TypeLib", nullptr, libid);
        r.set(key + L"\\Version", nullptr, version_text());
        r.create(key + L"\\Programmable");
        r.set(progid, nullptr, progid);
        r.set(progid + L"\\CLSID", nullptr, text_of(*c.clsid));
        write_interface(r, *c.iid, c.iface_name, kDualMarshaller);
        if (c.events_iid) write_interface(r, *c.events_iid, c.events_name, kDispatchMarshaller);
    }
}

void remove_all(const Registry& r) {
    for (const ComClass& c : classes()) {
        const std::wstring clsid = text_of(*c.clsid);
        r.remove(L"CLSID\\" + clsid);
        const std::wstring progid = std::wstring(library_name()) + L"." + c.name;
        if (_wcsicmp(r.get(progid + L"\\CLSID").c_str(), clsid.c_str()) == 0) r.remove(progid);
    }
    const std::wstring version = library_key() + L"\\" + version_text();
    r.remove(version + L"\\0\\" + kPlatform);
    if (r.has_subkeys(version + L"\\0")) return;  // the other platform's build is still registered
    r.remove(version);
    if (!r.has_subkeys(library_key())) r.remove(library_key());
    for (const ComClass& c : classes()) {
        r.remove(L"Interface\\" + text_of(*c.iid));
        if (c.events_iid) r.remove(L"Interface\\" + text_of(*c.events_iid));
    }
}

HRESULT with_classes_root(Scope scope, bool install) noexcept try {
    Key classes;
    HKEY base = scope == Scope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    LSTATUS s = RegCreateKeyExW(base, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                classes.out(), nullptr);
    if (s != ERROR_SUCCESS) return install ? SELFREG_E_CLASS : S_OK;
    Registry r{classes.get()};
    if (!install) {
        remove_all(r);
        return S_OK;
    }
    if (!module_type_library()) return SELFREG_E_TYPELIB;
    try {
        write_all(r);
    } catch (HRESULT hr) {
        remove_all(r);
        return hr == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED) ? E_ACCESSDENIED : SELFREG_E_CLASS;
    }
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

}  // namespace
}  // namespace celdo::com

STDAPI DllRegisterServer() {
    return celdo::com::with_classes_root(celdo::com::Scope::Machine, true);
}

STDAPI DllUnregisterServer() {
    return celdo::com::with_classes_root(celdo::com::Scope::Machine, false);
}

// regsvr32 /i:user registers for the current user only; no command line means machine-wide.
STDAPI DllInstall(BOOL install, LPCWSTR command) {
    using celdo::com::Scope;
    Scope scope = Scope::Machine;
    if (command && *command) {
        if (_wcsicmp(command, L"user") == 0) scope = Scope::User;
        else if (_wcsicmp(command, L"machine") != 0) return E_INVALIDARG;
    }
    return celdo::com::with_classes_root(scope, install != FALSE);
}

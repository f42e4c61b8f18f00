// Registration and activation as hosts meet them: each class's ProgID, server, apartment
// threading model and type library, per-user registration for people without administrator
// rights, what every object answers to, and when the module may be unloaded.
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// This build's platform, then the other's.
constexpr const wchar_t* kPlatforms[] = {sizeof(void*) == 8 ? L"win64" : L"win32", sizeof(void*) == 8 ? L"win32" : L"win64"};

std::wstring guid_text(REFGUID guid) {
    wchar_t buffer[40];
    StringFromGUID2(guid, buffer, 40);
    return buffer;
}
// A registry string value; empty when the key or value is missing.
std::wstring registry_text(HKEY root, const std::wstring& path, const wchar_t* name = nullptr) {
    wchar_t buffer[1024];
    DWORD size = sizeof buffer;
    return RegGetValueW(root, path.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) == ERROR_SUCCESS ? buffer : L"";
}
bool key_exists(const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}
bool same_file(const std::wstring& a, const std::wstring& b) { return _wcsicmp(a.c_str(), b.c_str()) == 0; }

const std::wstring kLibrary = L"TypeLib\\" + guid_text(LIBID_Celdo), kUser = L"Software\\Classes\\";
const std::wstring kConstants = L"CLSID\\" + guid_text(CLSID_Constants);
const std::wstring kDual = L"Interface\\" + guid_text(IID__Constants);

TEST(Registration, EachProgIdLeadsToAnApartmentClassOfThisDllThatTheTypeLibraryDescribes) {
    ComPtr<ITypeLib> library;
    ASSERT_EQ(LoadRegTypeLib(LIBID_Celdo, 1, 0, 0, library.put()), S_OK);
    EXPECT_TRUE(same_file(registry_text(HKEY_CLASSES_ROOT, kLibrary + L"\\1.0\\0\\" + kPlatforms[0]), dll_path()));
    for (const auto& [name, expected] : kClasses) {
        const std::wstring progid = L"Celdo." + std::wstring(name), key = L"CLSID\\" + guid_text(*expected);
        CLSID clsid{};
        EXPECT_TRUE(CLSIDFromProgID(progid.c_str(), &clsid) == S_OK && IsEqualGUID(clsid, *expected)) << name;
        EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment") << name;
        EXPECT_TRUE(same_file(registry_text(HKEY_CLASSES_ROOT, key + L"\\InprocServer32"), dll_path())) << name;
        EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key + L"\\ProgID") + registry_text(HKEY_CLASSES_ROOT, key + L"\\TypeLib"),
                  progid + guid_text(LIBID_Celdo));
        ComPtr<ITypeInfo> coclass;
        TYPEATTR* attr = nullptr;
        ASSERT_EQ(library->GetTypeInfoOfGuid(*expected, coclass.put()), S_OK) << name;
        ASSERT_EQ(coclass->GetTypeAttr(&attr), S_OK);
        EXPECT_EQ(doc(coclass.get()), name);
        EXPECT_TRUE(attr->typekind == TKIND_COCLASS && (attr->wTypeFlags & TYPEFLAG_FCANCREATE)) << "creatable " << name;
        coclass->ReleaseTypeAttr(attr);
    }
    // The dual interfaces go through the automation marshaller.
    EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, kDual), L"_Constants");
    EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, kDual + L"\\ProxyStubClsid32"), L"{00020424-0000-0000-C000-000000000046}");
}

TEST(Activation, AnObjectAnswersToItsInterfacesAndRefusesAggregation) {
    auto object = create(CLSID_Constants);
    ComPtr<_Constants> dual;
    ComPtr<ISupportErrorInfo> errors;
    ComPtr<IConnectionPoint> events;
    ComPtr<IProvideClassInfo> provide;
    ComPtr<ITypeInfo> cls;
    ASSERT_EQ(object->QueryInterface(IID__Constants, dual.put_void()), S_OK);
    ASSERT_EQ(object->QueryInterface(IID_ISupportErrorInfo, errors.put_void()), S_OK);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID__Constants), S_OK);
    EXPECT_EQ(find_point(object.get(), IID_IDispatch, events), E_NOINTERFACE)
        << "a class without events offers no connection points";
    ASSERT_EQ(object->QueryInterface(IID_IProvideClassInfo, provide.put_void()), S_OK);
    ASSERT_EQ(provide->GetClassInfo(cls.put()), S_OK);
    UINT count = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(doc(cls.get()) + L" " + std::to_wstring(count), L"Constants 1");
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"exText")};  // a constant, not a member
    DISPID id = 0;
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, 0, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
    EXPECT_EQ(object->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), DISP_E_MEMBERNOTFOUND);

    ComPtr<IClassFactory> factory;
    ComPtr<IUnknown> aggregated;
    ASSERT_EQ(CoGetClassObject(CLSID_Constants, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.put_void()), S_OK);
    EXPECT_EQ(factory->CreateInstance(dual.get(), IID_IUnknown, aggregated.put_void()), CLASS_E_NOAGGREGATION);
}

// Class objects do not hold the module, as COM's rules for in-process servers have it: a
// client that keeps one locks the server.
TEST(Activation, TheModuleMayUnloadWhenNoObjectOrLockIsLeft) {
    { auto warm = create(CLSID_clsCeldo); }  // loads the module
    ASSERT_EQ(can_unload_now(), S_OK);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(CoGetClassObject(CLSID_clsCeldo, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.put_void()), S_OK);
    EXPECT_EQ(can_unload_now(), S_OK) << "a class object alone does not hold the module";
    ASSERT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(can_unload_now(), S_FALSE);
    ASSERT_EQ(factory->LockServer(FALSE), S_OK);
    EXPECT_EQ(can_unload_now(), S_OK);
    ComPtr<IDispatch> made;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, made.put_void()), S_OK);
    EXPECT_EQ(can_unload_now(), S_FALSE) << "what it made does";
    made.reset();
    EXPECT_EQ(can_unload_now(), S_OK);
}

HRESULT install(BOOL on, const wchar_t* command) {
    auto entry = entry_point<HRESULT STDAPICALLTYPE(BOOL, LPCWSTR)>("DllInstall");
    return entry ? entry(on, command) : E_FAIL;
}

// Per user, everything goes under the user's classes and comes out again, except what the other
// platform's build, registered beside this one, still needs; an unknown command is refused.
TEST(Module, ExportsTheServerEntryPointsAndRegistersPerUserOnlyUnderTheUsersClasses) {
    for (const char* name : {"DllGetClassObject", "DllCanUnloadNow", "DllRegisterServer", "DllUnregisterServer", "DllInstall"})
        EXPECT_NE(entry_point<void()>(name), nullptr) << name;
    EXPECT_EQ(install(TRUE, L"everyone"), E_INVALIDARG);
    const std::wstring platform = kUser + kLibrary + L"\\1.0\\0\\", other = platform + kPlatforms[1];
    ASSERT_EQ(install(TRUE, L"user"), S_OK);
    EXPECT_EQ(registry_text(HKEY_CURRENT_USER, kUser + kConstants + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(registry_text(HKEY_CURRENT_USER, kUser + L"Celdo.Constants\\CLSID"), guid_text(CLSID_Constants));
    EXPECT_TRUE(same_file(registry_text(HKEY_CURRENT_USER, platform + kPlatforms[0]), dll_path()));
    ASSERT_EQ(install(FALSE, L"user"), S_OK);
    for (const std::wstring& gone : {kConstants, std::wstring(L"Celdo.Constants"), kLibrary, kDual})
        EXPECT_FALSE(key_exists(kUser + gone)) << std::string(gone.begin(), gone.end());
    EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, kConstants + L"\\ProgID"), L"Celdo.Constants") << "machine-wide stays";

    ASSERT_EQ(install(TRUE, L"user"), S_OK);
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, other.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr), ERROR_SUCCESS);
    RegCloseKey(key);
    ASSERT_EQ(install(FALSE, L"user"), S_OK);
    EXPECT_FALSE(key_exists(platform + kPlatforms[0]));
    EXPECT_TRUE(key_exists(other));
    EXPECT_TRUE(key_exists(kUser + kDual));
    RegDeleteTreeW(HKEY_CURRENT_USER, (kUser + kLibrary).c_str());
    RegDeleteTreeW(HKEY_CURRENT_USER, (kUser + kDual).c_str());
}

}  // namespace
}  // namespace celdo::testing

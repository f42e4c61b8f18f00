// Registration and activation as hosts meet them: ProgIDs, the apartment threading model, the
// type library entry, per-user registration for people without administrator rights, and the
// interfaces every object answers to.
#include <gtest/gtest.h>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

#ifdef _WIN64
constexpr wchar_t kPlatform[] = L"win64";
#else
constexpr wchar_t kPlatform[] = L"win32";
#endif

std::wstring clsid_key(REFCLSID clsid) { return L"CLSID\\" + guid_text(clsid); }
std::wstring library_key() { return L"TypeLib\\" + guid_text(LIBID_Celdo); }

// Every creatable class: its ProgID leads to it, and the type library lists it as creatable.
TEST(Registration, EachProgIdLeadsToItsClassInTheTypeLibrary) {
    ComPtr<ITypeLib> library;
    ASSERT_EQ(LoadRegTypeLib(LIBID_Celdo, 1, 0, 0, library.out()), S_OK);
    const std::pair<const wchar_t*, const CLSID*> classes[] = {
        {L"clsCeldo", &CLSID_clsCeldo},       {L"clsCeldos", &CLSID_clsCeldos},
        {L"Constants", &CLSID_Constants},     {L"clsRegistro", &CLSID_clsRegistro},
        {L"CeldosSeguimiento", &CLSID_CeldosSeguimiento}, {L"ISService", &CLSID_ISService},
        {L"Apuntador", &CLSID_Apuntador},     {L"Apuntadores", &CLSID_Apuntadores}};
    for (const auto& [name, expected] : classes) {
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID((L"Celdo." + std::wstring(name)).c_str(), &clsid), S_OK) << name;
        EXPECT_TRUE(IsEqualGUID(clsid, *expected)) << name;
        ComPtr<ITypeInfo> coclass;
        ASSERT_EQ(library->GetTypeInfoOfGuid(*expected, coclass.out()), S_OK) << name;
        TYPEATTR* attr = nullptr;
        ASSERT_EQ(coclass->GetTypeAttr(&attr), S_OK);
        EXPECT_EQ(attr->typekind, TKIND_COCLASS) << name;
        EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FCANCREATE) << name;
        coclass->ReleaseTypeAttr(attr);
        BSTR shown = nullptr;
        coclass->GetDocumentation(MEMBERID_NIL, &shown, nullptr, nullptr, nullptr);
        EXPECT_STREQ(shown, name);
        SysFreeString(shown);
    }
}

TEST(Registration, ClassIsAnApartmentServerInThisDll) {
    const std::wstring key = clsid_key(CLSID_Constants);
    EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    std::wstring server = registry_text(HKEY_CLASSES_ROOT, key + L"\\InprocServer32");
    EXPECT_EQ(_wcsicmp(server.c_str(), dll_path().c_str()), 0) << std::string(server.begin(), server.end());
    EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key + L"\\ProgID"), L"Celdo.Constants");
    EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key + L"\\TypeLib"), guid_text(LIBID_Celdo));
}

TEST(Registration, TypeLibraryIsRegisteredForThisPlatform) {
    std::wstring path = registry_text(HKEY_CLASSES_ROOT, library_key() + L"\\1.0\\0\\" + kPlatform);
    EXPECT_EQ(_wcsicmp(path.c_str(), dll_path().c_str()), 0);
    ComPtr<ITypeLib> library;
    EXPECT_EQ(LoadRegTypeLib(LIBID_Celdo, 1, 0, 0, library.out()), S_OK);
}

TEST(Registration, DualInterfaceUsesTheAutomationMarshaller) {
    const std::wstring key = L"Interface\\" + guid_text(IID__Constants);
    EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key), L"_Constants");
    EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key + L"\\ProxyStubClsid32"),
              L"{00020424-0000-0000-C000-000000000046}");
}

TEST(Activation, ConstantsAnswersToItsInterfaces) {
    ComPtr<IDispatch> object;
    ASSERT_EQ(CoCreateInstance(CLSID_Constants, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.out_void()), S_OK);
    ComPtr<_Constants> dual;
    EXPECT_EQ(object->QueryInterface(IID__Constants, dual.out_void()), S_OK);
    ComPtr<ISupportErrorInfo> errors;
    ASSERT_EQ(object->QueryInterface(IID_ISupportErrorInfo, errors.out_void()), S_OK);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID__Constants), S_OK);
    ComPtr<IConnectionPointContainer> events;
    EXPECT_EQ(object->QueryInterface(IID_IConnectionPointContainer, events.out_void()), E_NOINTERFACE)
        << "a class without events offers no connection points";

    // Both identities are the same object.
    ComPtr<IUnknown> a, b;
    object->QueryInterface(IID_IUnknown, a.out_void());
    dual->QueryInterface(IID_IUnknown, b.out_void());
    EXPECT_EQ(a.get(), b.get());
}

TEST(Activation, TypeInformationNamesInterfaceAndClass) {
    ComPtr<IDispatch> object;
    ASSERT_EQ(CoCreateInstance(CLSID_Constants, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.out_void()), S_OK);
    UINT count = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(object->GetTypeInfo(0, 0, info.out()), S_OK);
    BSTR name = nullptr;
    info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    EXPECT_STREQ(name, L"_Constants");
    SysFreeString(name);

    ComPtr<IProvideClassInfo> provide;
    ASSERT_EQ(object->QueryInterface(IID_IProvideClassInfo, provide.out_void()), S_OK);
    ComPtr<ITypeInfo> cls;
    ASSERT_EQ(provide->GetClassInfo(cls.out()), S_OK);
    cls->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    EXPECT_STREQ(name, L"Constants");
    SysFreeString(name);
}

TEST(Activation, UnknownMembersAreNotFound) {
    ComPtr<IDispatch> object;
    ASSERT_EQ(CoCreateInstance(CLSID_Constants, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.out_void()), S_OK);
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"exText")};
    DISPID id = 0;
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, 0, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    EXPECT_EQ(object->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), DISP_E_MEMBERNOTFOUND);
}

TEST(Activation, AggregationIsRefused) {
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(CoGetClassObject(CLSID_Constants, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.out_void()), S_OK);
    ComPtr<IUnknown> object;
    ComPtr<IUnknown> outer;
    factory->CreateInstance(nullptr, IID_IUnknown, outer.out_void());
    EXPECT_EQ(factory->CreateInstance(outer.get(), IID_IUnknown, object.out_void()), CLASS_E_NOAGGREGATION);
}

class Module : public ::testing::Test {
protected:
    void SetUp() override {
        module_ = LoadLibraryW(dll_path().c_str());
        ASSERT_NE(module_, nullptr);
    }
    void TearDown() override { FreeLibrary(module_); }
    template <class F>
    F* entry(const char* name) {
        return reinterpret_cast<F*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }
    HMODULE module_ = nullptr;
};

using DllInstallFn = HRESULT STDAPICALLTYPE(BOOL, LPCWSTR);
using DllCanUnloadNowFn = HRESULT STDAPICALLTYPE();

TEST_F(Module, ExportsTheServerEntryPoints) {
    for (const char* name : {"DllGetClassObject", "DllCanUnloadNow", "DllRegisterServer", "DllUnregisterServer", "DllInstall"})
        EXPECT_NE(GetProcAddress(module_, name), nullptr) << name;
}

TEST_F(Module, CanUnloadOnlyWhenNoObjectLives) {
    auto can_unload = entry<DllCanUnloadNowFn>("DllCanUnloadNow");
    ASSERT_NE(can_unload, nullptr);
    CoFreeUnusedLibraries();
    {
        ComPtr<IDispatch> object;
        ASSERT_EQ(CoCreateInstance(CLSID_Constants, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.out_void()), S_OK);
        EXPECT_EQ(can_unload(), S_FALSE);
    }
    EXPECT_EQ(can_unload(), S_OK);
}

TEST_F(Module, PerUserRegistrationWritesOnlyUnderTheUsersClasses) {
    auto install = entry<DllInstallFn>("DllInstall");
    ASSERT_NE(install, nullptr);
    const std::wstring user = L"Software\\Classes\\";
    ASSERT_EQ(install(TRUE, L"user"), S_OK);
    EXPECT_EQ(registry_text(HKEY_CURRENT_USER, user + clsid_key(CLSID_Constants) + L"\\InprocServer32", L"ThreadingModel"),
              L"Apartment");
    EXPECT_EQ(registry_text(HKEY_CURRENT_USER, user + L"Celdo.Constants\\CLSID"), guid_text(CLSID_Constants));
    EXPECT_FALSE(registry_text(HKEY_CURRENT_USER, user + library_key() + L"\\1.0\\0\\" + kPlatform).empty());

    ASSERT_EQ(install(FALSE, L"user"), S_OK);
    EXPECT_FALSE(registry_key_exists(HKEY_CURRENT_USER, user + clsid_key(CLSID_Constants)));
    EXPECT_FALSE(registry_key_exists(HKEY_CURRENT_USER, user + L"Celdo.Constants"));
    EXPECT_FALSE(registry_key_exists(HKEY_CURRENT_USER, user + library_key()));
    EXPECT_FALSE(registry_key_exists(HKEY_CURRENT_USER, user + L"Interface\\" + guid_text(IID__Constants)));
    // Machine-wide registration is untouched.
    EXPECT_TRUE(registry_key_exists(HKEY_CLASSES_ROOT, clsid_key(CLSID_Constants)));
}

TEST_F(Module, UnregisteringOnePlatformKeepsWhatTheOtherNeeds) {
    auto install = entry<DllInstallFn>("DllInstall");
    const std::wstring user = L"Software\\Classes\\";
    ASSERT_EQ(install(TRUE, L"user"), S_OK);
    // Stand in for the other platform's build registered beside this one.
    const wchar_t* other = wcscmp(kPlatform, L"win64") == 0 ? L"win32" : L"win64";
    const std::wstring other_key = user + library_key() + L"\\1.0\\0\\" + other;
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, other_key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);

    ASSERT_EQ(install(FALSE, L"user"), S_OK);
    EXPECT_FALSE(registry_key_exists(HKEY_CURRENT_USER, user + library_key() + L"\\1.0\\0\\" + kPlatform));
    EXPECT_TRUE(registry_key_exists(HKEY_CURRENT_USER, other_key));
    EXPECT_TRUE(registry_key_exists(HKEY_CURRENT_USER, user + L"Interface\\" + guid_text(IID__Constants)));

    RegDeleteTreeW(HKEY_CURRENT_USER, (user + library_key()).c_str());
    RegDeleteTreeW(HKEY_CURRENT_USER, (user + L"Interface\\" + guid_text(IID__Constants)).c_str());
}

TEST_F(Module, UnknownInstallCommandIsRefused) {
    auto install = entry<DllInstallFn>("DllInstall");
    EXPECT_EQ(install(TRUE, L"everyone"), E_INVALIDARG);
}

}  // namespace
}  // namespace celdo::testing

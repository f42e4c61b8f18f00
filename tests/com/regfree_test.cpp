// Registration-free activation: in a prefix where nothing is registered, an activation context
// made from the shipped manifest (alone, or through an application manifest that depends on
// it) lets a client create every class by CLSID and by ProgID and call it.
#include <gtest/gtest.h>

#include <fstream>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

std::wstring folder_of(const std::wstring& path) { return path.substr(0, path.find_last_of(L"\\/")); }

// An activation context made from `manifest`, active for as long as this lives.
class ActiveContext {
public:
    explicit ActiveContext(const std::wstring& manifest) {
        const std::wstring folder = folder_of(manifest);
        ACTCTXW context{};
        context.cbSize = sizeof context;
        context.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
        context.lpSource = manifest.c_str();
        context.lpAssemblyDirectory = folder.c_str();
        handle_ = CreateActCtxW(&context);
        if (handle_ != INVALID_HANDLE_VALUE) ActivateActCtx(handle_, &cookie_);
    }
    ~ActiveContext() {
        if (handle_ == INVALID_HANDLE_VALUE) return;
        DeactivateActCtx(0, cookie_);
        ReleaseActCtx(handle_);
    }
    bool made() const { return handle_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
};

const std::pair<const wchar_t*, const CLSID*> kClasses[] = {
    {L"clsCeldo", &CLSID_clsCeldo},       {L"clsCeldos", &CLSID_clsCeldos},
    {L"Constants", &CLSID_Constants},     {L"clsRegistro", &CLSID_clsRegistro},
    {L"CeldosSeguimiento", &CLSID_CeldosSeguimiento}, {L"ISService", &CLSID_ISService},
    {L"Apuntador", &CLSID_Apuntador},     {L"Apuntadores", &CLSID_Apuntadores}};

// Every class by ProgID and CLSID, each answering through its type information.
void creates_every_class() {
    for (const auto& [name, clsid] : kClasses) {
        CLSID found{};
        EXPECT_EQ(CLSIDFromProgID((L"Celdo." + std::wstring(name)).c_str(), &found), S_OK) << name;
        ComPtr<IDispatch> by_progid;
        EXPECT_EQ(CoCreateInstance(found, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, by_progid.out_void()), S_OK)
            << name;
        ComPtr<ITypeInfo> progid_info;
        if (by_progid) by_progid->GetTypeInfo(0, LOCALE_USER_DEFAULT, progid_info.out());
        BSTR shown = nullptr;
        if (progid_info) progid_info->GetDocumentation(MEMBERID_NIL, &shown, nullptr, nullptr, nullptr);
        EXPECT_EQ(std::wstring(shown ? shown : L""), L"_" + std::wstring(name)) << "the ProgID's class";
        SysFreeString(shown);
        ComPtr<IDispatch> object;
        ASSERT_EQ(CoCreateInstance(*clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.out_void()), S_OK)
            << name;
        ComPtr<ITypeInfo> info;
        EXPECT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.out()), S_OK) << name;
    }
    ComPtr<_clsCeldos> row;
    ASSERT_EQ(CoCreateInstance(CLSID_clsCeldos, nullptr, CLSCTX_INPROC_SERVER, IID__clsCeldos, row.out_void()), S_OK);
    BSTR name = SysAllocString(L"Codigo"), none = SysAllocString(L"");
    VARIANT missing;
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    ComPtr<_clsCeldo> field;
    EXPECT_EQ(row->Add(name, none, 1004, 0, -1, VARIANT_FALSE, none, none, missing, missing, missing, missing, field.out()),
              S_OK);
    SysFreeString(name), SysFreeString(none);
    long count = 0;
    EXPECT_EQ(row->get_Count(&count), S_OK);
    EXPECT_EQ(count, 1);
}

TEST(RegistrationFree, NothingIsRegisteredHere) {
    CLSID clsid{};
    EXPECT_NE(CLSIDFromProgID(L"Celdo.clsCeldo", &clsid), S_OK);
    ComPtr<IUnknown> object;
    EXPECT_EQ(CoCreateInstance(CLSID_clsCeldo, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.out_void()),
              REGDB_E_CLASSNOTREG);
}

TEST(RegistrationFree, TheAssemblyManifestAloneActivatesEveryClass) {
    ActiveContext context(folder_of(dll_path()) + L"\\Celdo.manifest");
    ASSERT_TRUE(context.made()) << "error " << GetLastError();
    creates_every_class();
}

// As an application does it: its own manifest names Celdo as a dependency, found beside it.
TEST(RegistrationFree, AnApplicationManifestThatDependsOnCeldoActivatesEveryClass) {
    const std::wstring manifest = folder_of(dll_path()) + L"\\client.manifest";
    std::ofstream(manifest.c_str())
        << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        << "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
        << "  <assemblyIdentity type=\"win32\" name=\"Client\" version=\"1.0.0.0\"/>\n"
        << "  <dependency><dependentAssembly>\n"
#ifdef _WIN64
        << "    <assemblyIdentity type=\"win32\" name=\"Celdo\" version=\"" CELDO_ASSEMBLY_VERSION
           "\" processorArchitecture=\"amd64\"/>\n"
#else
        << "    <assemblyIdentity type=\"win32\" name=\"Celdo\" version=\"" CELDO_ASSEMBLY_VERSION
           "\" processorArchitecture=\"x86\"/>\n"
#endif
        << "  </dependentAssembly></dependency>\n"
        << "</assembly>\n";
    ActiveContext context(manifest);
    ASSERT_TRUE(context.made()) << "error " << GetLastError();
    creates_every_class();
}

}  // namespace
}  // namespace celdo::testing

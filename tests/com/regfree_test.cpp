// Registration-free activation: in a prefix where nothing is registered, an activation context
// made from the shipped manifest (alone, or through an application manifest that depends on
// it) lets a client create every class by CLSID and by ProgID and call it.
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// A file in the folder that holds the DLL under test.
std::wstring beside_dll(const wchar_t* file) { return dll_path().substr(0, dll_path().find_last_of(L"\\/") + 1) + file; }

// Every class by ProgID and by CLSID, each answering through its type information, and a call.
// (In an activation context Wine answers a ProgID with a CLSID of its own that leads to the class.)
void creates_every_class() {
    for (const auto& [name, clsid] : kClasses) {
        CLSID found{};
        EXPECT_EQ(CLSIDFromProgID((L"Celdo." + std::wstring(name)).c_str(), &found), S_OK) << name;
        for (const CLSID* way : std::initializer_list<const CLSID*>{&found, clsid}) {
            auto object = create(*way);
            ComPtr<ITypeInfo> info;
            if (object) object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put());
            EXPECT_EQ(doc(info.get()), L"_" + std::wstring(name));
        }
    }
    auto row = create<_clsCeldos>(CLSID_clsCeldos);
    long count = 0;
    ASSERT_TRUE(row);
    EXPECT_EQ(add_field(row.get(), L"Codigo", number(7)), S_OK);
    EXPECT_EQ(row->get_Count(&count), S_OK);
    EXPECT_EQ(count, 1);
}

// With an activation context made from `manifest` active, every class is there.
void creates_every_class_through(const std::wstring& manifest) {
    const std::wstring folder = manifest.substr(0, manifest.find_last_of(L"\\/"));
    ACTCTXW context{};
    context.cbSize = sizeof context;
    context.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
    context.lpSource = manifest.c_str();
    context.lpAssemblyDirectory = folder.c_str();
    const HANDLE handle = CreateActCtxW(&context);
    ULONG_PTR cookie = 0;
    ASSERT_NE(handle, INVALID_HANDLE_VALUE) << "error " << GetLastError();
    ASSERT_TRUE(ActivateActCtx(handle, &cookie));
    creates_every_class();
    DeactivateActCtx(0, cookie);
    ReleaseActCtx(handle);
}

TEST(RegistrationFree, NothingIsRegisteredHere) {
    CLSID clsid{};
    ComPtr<IUnknown> object;
    EXPECT_NE(CLSIDFromProgID(L"Celdo.clsCeldo", &clsid), S_OK);
    EXPECT_EQ(CoCreateInstance(CLSID_clsCeldo, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.put_void()),
              REGDB_E_CLASSNOTREG);
}

TEST(RegistrationFree, TheAssemblyManifestAloneActivatesEveryClass) {
    creates_every_class_through(beside_dll(L"Celdo.manifest"));
}

// As an application does it: its own manifest (client.manifest.in) names Celdo as a
// dependency, found beside it.
TEST(RegistrationFree, AnApplicationManifestThatDependsOnCeldoActivatesEveryClass) {
    creates_every_class_through(beside_dll(L"client.manifest"));
}

}  // namespace
}  // namespace celdo::testing

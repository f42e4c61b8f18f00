// Entry point of the COM client tests: the DLL under test comes as the first argument, and
// every test runs in a single-threaded apartment, as script hosts do.
#include <gtest/gtest.h>

#include <objbase.h>
#include <shellapi.h>

#include "tests/com/com_test.hpp"

namespace celdo::testing {

namespace {
std::wstring g_dll;
}

const std::wstring& dll_path() { return g_dll; }

std::wstring registry_text(HKEY root, const std::wstring& path, const wchar_t* name) {
    wchar_t buffer[1024];
    DWORD size = sizeof buffer;
    if (RegGetValueW(root, path.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) != ERROR_SUCCESS)
        return {};
    return buffer;
}

bool registry_key_exists(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

std::wstring guid_text(REFGUID guid) {
    wchar_t buffer[40];
    StringFromGUID2(guid, buffer, 40);
    return buffer;
}

}  // namespace celdo::testing

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    int wargc = 0;
    LPWSTR* wargv = CommandLineToArgvW(GetCommandLineW(), &wargc);
    if (wargc < 2) {
        fprintf(stderr, "usage: %s <path of Celdo.dll>\n", argv[0]);
        return 2;
    }
    wchar_t full[MAX_PATH];
    GetFullPathNameW(wargv[wargc - 1], MAX_PATH, full, nullptr);
    celdo::testing::g_dll = full;
    LocalFree(wargv);
    CoInitialize(nullptr);
    int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}

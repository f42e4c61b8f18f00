// Entry point of the COM client tests: the DLL under test comes as the last argument, and every
// test runs in a single-threaded apartment, as script hosts do.
#include <gtest/gtest.h>

#include <objbase.h>
#include <shellapi.h>

#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {
std::wstring g_dll;
}
const std::wstring& dll_path() { return g_dll; }
}  // namespace celdo::testing

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    int wargc = 0;
    LPWSTR* wargv = CommandLineToArgvW(GetCommandLineW(), &wargc);
    if (wargc < 2) {
        fprintf(stderr, "usage: %s <path of the DLL>\n", argv[0]);
        return 2;
    }
    wchar_t full[MAX_PATH];
    GetFullPathNameW(wargv[wargc - 1], MAX_PATH, full, nullptr);
    celdo::testing::g_dll = full;
    LocalFree(wargv);
    CoInitialize(nullptr);
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}

// Entry point of the COM client tests: the DLL under test comes as the last argument, and every
// test runs in a single-threaded apartment, as script hosts do.
#include <gtest/gtest.h>

#include <objbase.h>

#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {
std::wstring g_dll;
}
const std::wstring& dll_path() { return g_dll; }
}  // namespace celdo::testing

int wmain(int argc, wchar_t** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (argc < 2) {
        fwprintf(stderr, L"usage: %ls <path of the DLL>\n", argv[0]);
        return 2;
    }
    wchar_t full[MAX_PATH];
    GetFullPathNameW(argv[argc - 1], MAX_PATH, full, nullptr);
    celdo::testing::g_dll = full;
    CoInitialize(nullptr);
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}

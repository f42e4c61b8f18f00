// Apartments and threads: objects of two single-threaded apartments at work at the same time,
// an object called from another apartment through a marshalled interface, and one created and
// called from the multithreaded apartment, which COM serves from an apartment of its own.
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// A row of `n` fields with values, its XML written, and a field made its own child: what a
// busy host does, cycles included. Returns the row's field count as the row saw it.
long busy_row(int n) {
    ComPtr<_clsCeldos> row;
    if (CoCreateInstance(CLSID_clsCeldos, nullptr, CLSCTX_INPROC_SERVER, IID__clsCeldos, row.out_void()) != S_OK)
        return -1;
    VARIANT missing;
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    BSTR none = SysAllocString(L"");
    for (int i = 0; i < n; ++i) {
        BSTR name = SysAllocString((L"F" + std::to_wstring(i)).c_str());
        VARIANT value = number(i);
        ComPtr<_clsCeldo> field;
        row->Add(name, none, 1004, 0, -1, VARIANT_FALSE, none, none, value, missing, missing, missing, field.out());
        ComPtr<_clsCeldos> children;
        if (field && i % 10 == 0 && field->get_Children(children.out()) == S_OK)
            children->Append(field.get(), missing, missing, none);  // a field among its own children
        SysFreeString(name);
    }
    BSTR xml = nullptr;
    row->XML(none, &xml);
    SysFreeString(xml);
    SysFreeString(none);
    long count = 0;
    row->get_Count(&count);
    return count;
}

// Runs `body` on a new thread in an apartment of the given kind and waits for it, pumping this
// (single-threaded) apartment's messages meanwhile, as a waiting apartment must to be called.
// The thread signals an event when done: std::thread's native handle is not a Win32 handle
// with every runtime (winpthreads gives a pthread_t).
template <class F>
void on_thread(DWORD apartment, F body) {
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ASSERT_NE(done, nullptr);
    std::thread thread([&] {
        CoInitializeEx(nullptr, apartment);
        body();
        CoUninitialize();
        SetEvent(done);
    });
    DWORD index = 0;
    HRESULT waited;
    do waited = CoWaitForMultipleHandles(0, INFINITE, 1, &done, &index);
    while (waited == RPC_S_CALLPENDING);
    thread.join();
    CloseHandle(done);
    EXPECT_EQ(waited, S_OK);
}

TEST(Apartments, TwoSingleThreadedApartmentsWorkAtOnceAndFreeEverything) {
    long counts[2] = {0, 0};
    std::thread workers[2];
    for (int t = 0; t < 2; ++t) {
        workers[t] = std::thread([&counts, t] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            for (int round = 0; round < 20; ++round) counts[t] += busy_row(300);
            CoUninitialize();
        });
    }
    for (std::thread& w : workers) w.join();
    EXPECT_EQ(counts[0], 20 * 300);
    EXPECT_EQ(counts[1], 20 * 300);
    EXPECT_EQ(can_unload_now(), S_OK) << "every object of both apartments is freed";
}

TEST(Apartments, AnObjectIsCalledFromAnotherApartmentThroughAMarshalledInterface) {
    ComPtr<_clsCeldos> row;
    ASSERT_EQ(CoCreateInstance(CLSID_clsCeldos, nullptr, CLSCTX_INPROC_SERVER, IID__clsCeldos, row.out_void()), S_OK);
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__clsCeldos, row.get(), &stream), S_OK);
    HRESULT added = E_FAIL, foreign = S_OK;
    long count = 0;
    std::wstring name;
    on_thread(COINIT_APARTMENTTHREADED, [&] {
        ComPtr<_clsCeldos> proxy;
        if (CoGetInterfaceAndReleaseStream(stream, IID__clsCeldos, proxy.out_void()) != S_OK) return;
        VARIANT missing;
        V_VT(&missing) = VT_ERROR;
        V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
        BSTR field_name = SysAllocString(L"Codigo"), none = SysAllocString(L"");
        ComPtr<_clsCeldo> field;
        added = proxy->Add(field_name, none, 1004, 0, -1, VARIANT_FALSE, none, none, number(7), missing, missing,
                           missing, field.out());
        proxy->get_Count(&count);
        BSTR read = nullptr;
        if (field && field->get_Name(&read) == S_OK) name.assign(read, SysStringLen(read));
        // A field of this apartment reaches the row as a proxy: a foreign object it refuses.
        ComPtr<_clsCeldo> local;
        if (CoCreateInstance(CLSID_clsCeldo, nullptr, CLSCTX_INPROC_SERVER, IID__clsCeldo, local.out_void()) == S_OK)
            foreign = proxy->Append(local.get(), missing, missing, none);
        SysFreeString(read), SysFreeString(field_name), SysFreeString(none);
    });
    EXPECT_EQ(foreign, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 13));
    EXPECT_EQ(added, S_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(name, L"Codigo");
    long here = 0;
    ASSERT_EQ(row->get_Count(&here), S_OK);
    EXPECT_EQ(here, 1) << "the call reached the object in its own apartment";
}

TEST(Apartments, AMultithreadedClientIsServedThroughAnApartmentOfItsOwn) {
    HRESULT made = E_FAIL, set = E_FAIL;
    VARIANT read;
    VariantInit(&read);
    on_thread(COINIT_MULTITHREADED, [&] {
        ComPtr<_clsCeldo> field;
        made = CoCreateInstance(CLSID_clsCeldo, nullptr, CLSCTX_INPROC_SERVER, IID__clsCeldo, field.out_void());
        if (made != S_OK) return;
        field->put_DataType(exLong);
        VARIANT text = celdo::testing::text(L"1,234");
        set = field->put_Value(text);
        VariantClear(&text);
        field->get_Value(&read);
    });
    EXPECT_EQ(made, S_OK);
    EXPECT_EQ(set, S_OK);
    EXPECT_EQ(V_VT(&read), VT_I4);
    EXPECT_EQ(V_I4(&read), 1234);
}

}  // namespace
}  // namespace celdo::testing

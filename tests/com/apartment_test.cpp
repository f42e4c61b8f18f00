// Apartments and threads: objects of two single-threaded apartments at work at the same time,
// an object called from another apartment through a marshalled interface, and one created and
// called from the multithreaded apartment, which COM serves from an apartment of its own.
#include <thread>

#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// A row of `n` fields with values, its XML written, and every tenth field made its own child:
// what a busy host does, cycles included. Returns the row's field count as the row saw it.
long busy_row(int n) {
    auto row = create<_clsCeldos>(CLSID_clsCeldos);
    Bstr none(L""), xml;
    long count = 0;
    for (int i = 0; row && i < n; ++i) {
        ComPtr<_clsCeldo> field;
        ComPtr<_clsCeldos> children;
        add_field(row.get(), (L"F" + std::to_wstring(i)).c_str(), number(i), &field);
        if (field && i % 10 == 0 && field->get_Children(children.put()) == S_OK)
            children->Append(field.get(), missing(), missing(), none);
    }
    if (row) row->XML(none, xml.put()), row->get_Count(&count);
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
    EXPECT_EQ(std::pair(counts[0], counts[1]), std::pair(20L * 300, 20L * 300));
    EXPECT_EQ(can_unload_now(), S_OK) << "every object of both apartments is freed";
}

TEST(Apartments, AnObjectIsCalledFromAnotherApartmentThroughAMarshalledInterface) {
    auto row = create<_clsCeldos>(CLSID_clsCeldos);
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__clsCeldos, row.get(), &stream), S_OK);
    HRESULT added = E_FAIL, foreign = S_OK;
    long count = 0, here = 0;
    Bstr name;
    on_thread(COINIT_APARTMENTTHREADED, [&] {
        ComPtr<_clsCeldos> proxy;
        ComPtr<_clsCeldo> field;
        if (CoGetInterfaceAndReleaseStream(stream, IID__clsCeldos, proxy.put_void()) != S_OK) return;
        added = add_field(proxy.get(), L"Codigo", number(7), &field);
        proxy->get_Count(&count);
        if (field) field->get_Name(name.put());
        // A field of this apartment reaches the row as a proxy: a foreign object it refuses.
        if (auto local = create<_clsCeldo>(CLSID_clsCeldo))
            foreign = proxy->Append(local.get(), missing(), missing(), Bstr(L""));
    });
    EXPECT_EQ(foreign, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 13));
    EXPECT_EQ(added, S_OK);
    EXPECT_EQ(std::to_wstring(count) + name.str(), L"1Codigo");
    ASSERT_EQ(row->get_Count(&here), S_OK);
    EXPECT_EQ(here, 1) << "the call reached the object in its own apartment";
}

TEST(Apartments, AMultithreadedClientIsServedThroughAnApartmentOfItsOwn) {
    HRESULT set = E_FAIL;
    Var read;
    on_thread(COINIT_MULTITHREADED, [&] {
        auto field = create<_clsCeldo>(CLSID_clsCeldo);
        if (!field) return;
        field->put_DataType(exLong);
        set = field->put_Value(Var(text(L"1,234")));
        field->get_Value(&read);
    });
    EXPECT_EQ(set, S_OK);
    EXPECT_EQ(std::pair(V_VT(&read), V_I4(&read)), std::pair(VARTYPE(VT_I4), 1234L));
}

}  // namespace
}  // namespace celdo::testing

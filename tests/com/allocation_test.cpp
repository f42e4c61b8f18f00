// Out of memory at every allocation: each scenario runs once with the Nth allocation of
// CeldoFaults.dll failing, for every N until one run goes through untouched, once with only
// that allocation failing and once with it and all after it failing. A run either ends with
// the result of a clean run or fails with error 7, and leaves no object and no block behind.
#include <climits>
#include <functional>

#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// The component built with counted allocations, loaded from its file (it is never registered)
// for as long as this lives, with its entry points.
struct Faults {
    Faults() = default;
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;
    ~Faults() { if (module) FreeLibrary(module); }
    bool loaded() const { return get_class && can_unload && fail && made && live; }

    const HMODULE module = LoadLibraryW(dll_path().c_str());
    decltype(&DllGetClassObject) const get_class = entry_point<decltype(DllGetClassObject)>("DllGetClassObject", module);
    decltype(&DllCanUnloadNow) const can_unload = entry_point<decltype(DllCanUnloadNow)>("DllCanUnloadNow", module);
    // Arms the walk: the nth allocation from now fails (with `after`, every one after it too); 0 disarms.
    void (*const fail)(long n, BOOL after) = entry_point<void(long, BOOL)>("CeldoFailAllocation", module);
    long (*const made)() = entry_point<long()>("CeldoAllocationsMade", module);  // since armed
    long (*const live)() = entry_point<long()>("CeldoLiveAllocations", module);  // blocks from operator new
};

// One run of a scenario. Calls stop at the first failure, which is kept with its error.
class Session {
public:
    explicit Session(const Faults& dll) : dll_(dll) {}
    bool failed() const { return FAILED(hr); }

    ComPtr<IDispatch> create(REFCLSID clsid) {
        ComPtr<IDispatch> object;
        ComPtr<IClassFactory> factory;
        if (!failed()) vtable(dll_.get_class(clsid, IID_IClassFactory, factory.put_void()));
        if (!failed()) vtable(factory->CreateInstance(nullptr, IID_IDispatch, object.put_void()));
        return object;
    }

    // What a vtable call answered, with its error info when it failed.
    void vtable(HRESULT answer) {
        hr = answer;
        const std::wstring info = failed() ? error_info() : L"";
        if (!info.empty()) description = info.substr(info.find(L'|') + 1);
    }

    // A late-bound call, as a script makes it; the arguments are the call's to clear. The
    // result comes back as text: a text as it is, an array as its size.
    std::wstring call(IDispatch* object, const wchar_t* name, std::vector<VARIANT> args = {},
                      WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET, ComPtr<IDispatch>* returned = nullptr) {
        Var value;
        EXCEPINFO error{};
        if (failed() || !object) flags = 0;  // no call: the arguments are cleared all the same
        const HRESULT answer = flags ? invoke(object, name, std::move(args), flags, &value, &error) : S_OK;
        for (VARIANT& a : args) VariantClear(&a);
        if (!flags) return L"";
        last_call = name;
        hr = answer == DISP_E_EXCEPTION ? error.scode : answer;
        if (answer == DISP_E_EXCEPTION) description = error.bstrDescription ? error.bstrDescription : L"";
        for (BSTR b : {error.bstrSource, error.bstrDescription, error.bstrHelpFile}) SysFreeString(b);
        if (V_VT(&value) == VT_DISPATCH && returned) *returned->put() = std::exchange(V_DISPATCH(&value), nullptr);
        if (V_VT(&value) & VT_ARRAY) return L"array of " + std::to_wstring(V_ARRAY(&value)->rgsabound[0].cElements);
        return V_VT(&value) == VT_BSTR ? V_BSTR(&value) : L"";
    }
    void put(IDispatch* object, const wchar_t* name, VARIANT value) { call(object, name, {value}, DISPATCH_PROPERTYPUT); }

    HRESULT hr = S_OK;
    std::wstring description;
    std::wstring last_call;  // the member called last, for failure messages

private:
    const Faults& dll_;
};

// A few members of each class, each run from fresh objects; the texts it returns stand for
// the run's result.
using Scenario = std::function<std::wstring(Session&)>;

std::wstring field_scenario(Session& run) {
    ComPtr<IDispatch> field = run.create(CLSID_clsCeldo);
    ComPtr<_clsCeldo> early;
    run.put(field.get(), L"Name", text(L"Importe"));
    // Through the vtable, as compiled hosts call.
    if (!run.failed() && field->QueryInterface(IID__clsCeldo, early.put_void()) == S_OK)
        run.vtable(early->put_Caption(Bstr(L"Importe total")));
    run.put(field.get(), L"DataType", number(exCurrency));
    run.put(field.get(), L"Value", text(L"1234.5"));
    run.put(field.get(), L"RowSource", text(L"1;2;1234.5"));
    // By-reference texts are written back into the host's variables.
    Bstr encoding(L""), names(L"Name,Caption");
    const std::wstring attributes = run.call(field.get(), L"XMLAttribute", {by_ref(encoding), by_ref(names)});
    return run.call(field.get(), L"XML", {text(L"")}) + run.call(field.get(), L"Clip") + attributes + names.str() +
           run.call(field.get(), L"GetRowSource");
}

std::wstring collections_scenario(Session& run) {
    ComPtr<IDispatch> row = run.create(CLSID_clsCeldos), records = run.create(CLSID_clsRegistro),
                      audit = run.create(CLSID_CeldosSeguimiento), code, copy, kept, trail;
    run.create(CLSID_Constants);
    run.call(row.get(), L"Add", {text(L"Codigo"), text(L"cod"), number(exLong)}, DISPATCH_METHOD, &code);
    run.call(row.get(), L"Add", {text(L"Nombre"), text(L"nom"), number(exText), number(30)});
    run.put(code.get(), L"Value", number(7));
    run.call(row.get(), L"Duplicate", {object(code.get()), text(L"Copia")}, DISPATCH_METHOD, &copy);
    run.call(records.get(), L"Add", {object(row.get()), text(L"a")});
    run.call(records.get(), L"Item", {text(L"a")}, DISPATCH_PROPERTYGET, &kept);
    run.call(audit.get(), L"Registro", {}, DISPATCH_METHOD, &trail);
    return run.call(kept.get(), L"XML", {text(L"")}) + run.call(row.get(), L"Clip") + run.call(trail.get(), L"Clip");
}

// Runs `run_once` for N = 1, 2, ... with the Nth allocation failing alone, then again with
// every one from the Nth on failing, each until it answers that no allocation failed (the run
// went through untouched) or a check failed.
void for_each_failure(const std::function<bool(long n, bool after)>& run_once) {
    for (bool after : {false, true})
        for (long n = 1; run_once(n, after) && !::testing::Test::HasFailure(); ++n) {}
}

std::string where(long n, bool after, const std::wstring& last_call = L"") {
    return (after ? "from allocation " : "at allocation ") + std::to_string(n) + ", last call " +
           std::string(last_call.begin(), last_call.end());
}

void expect_out_of_memory(const Session& run, long n, bool after) {
    EXPECT_EQ(run.hr, E_OUTOFMEMORY) << where(n, after, run.last_call);
    // While memory is left, the host is also told what happened.
    if (!after) {
        EXPECT_EQ(run.description, L"Out of memory") << where(n, after);
    }
}

void walk(const Scenario& scenario) {
    Faults dll;
    ASSERT_TRUE(dll.loaded()) << "CeldoFaults.dll or its test entry points are missing";
    // A clean run, counted: a hook that counted nothing would let every walk pass untouched.
    dll.fail(LONG_MAX, false);
    std::wstring expected;
    {
        Session run(dll);
        expected = scenario(run);
        ASSERT_EQ(run.hr, S_OK);
    }
    ASSERT_GT(dll.made(), 0);
    dll.fail(0, false);
    ASSERT_EQ(dll.can_unload(), S_OK);
    // What the clean run made once for the module (class objects, caches) stays allocated.
    const long baseline = dll.live();
    for_each_failure([&](long n, bool after) {
        dll.fail(n, after);
        Session run(dll);
        const std::wstring got = scenario(run);
        const bool fired = dll.made() >= n;
        dll.fail(0, false);
        if (run.failed()) expect_out_of_memory(run, n, after);
        // A failure the library absorbed along the way must not change the result.
        else EXPECT_EQ(got, expected) << where(n, after);
        EXPECT_EQ(dll.can_unload(), S_OK) << where(n, after);
        EXPECT_EQ(dll.live(), baseline) << where(n, after, run.last_call);
        return fired;
    });
}

TEST(OutOfMemory, AFieldSurvivesEveryFailedAllocation) { walk(field_scenario); }
TEST(OutOfMemory, RowsRecordsAuditFieldsAndConstantsSurviveEveryFailedAllocation) { walk(collections_scenario); }

// What is made once for the module is walked on a freshly loaded DLL each time: the class
// object, the first object and, behind GetTypeInfo, the type library. A failed load of the
// type library is not kept: once memory is back, it loads.
TEST(OutOfMemory, WhatIsMadeOnceSurvivesEveryFailedAllocation) {
    for_each_failure([&](long n, bool after) {
        // Unloaded after each run, or nothing would be made for the first time again.
        EXPECT_EQ(GetModuleHandleW(L"CeldoFaults.dll"), nullptr) << where(n, after);
        Faults dll;
        EXPECT_TRUE(dll.loaded());
        if (!dll.loaded()) return false;
        dll.fail(n, after);
        Session run(dll);
        ComPtr<IDispatch> field = run.create(CLSID_clsCeldo);
        ComPtr<ITypeInfo> info;
        const HRESULT described = field ? field->GetTypeInfo(0, 0, info.put()) : S_OK;
        run.put(field.get(), L"Name", text(L"Importe"));
        const bool fired = dll.made() >= n;
        dll.fail(0, false);
        if (run.failed()) expect_out_of_memory(run, n, after);
        if (field && FAILED(described)) {
            EXPECT_EQ(field->GetTypeInfo(0, 0, info.put()), S_OK) << where(n, after);
        }
        field.reset(), info.reset();
        EXPECT_EQ(dll.can_unload(), S_OK) << where(n, after);
        return fired;
    });
}

}  // namespace
}  // namespace celdo::testing

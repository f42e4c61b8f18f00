// Out of memory at every allocation: each scenario runs once with the Nth allocation of
// CeldoFaults.dll failing, for every N until one run goes through untouched, once with only
// that allocation failing and once with it and all after it failing. A run either ends with
// the result of a clean run or fails with error 7, and leaves no object and no block behind.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// The component built with counted allocations, loaded from its file (it is never registered)
// for as long as this lives.
class Faults {
public:
    Faults() : module_(LoadLibraryW(dll_path().c_str())) {
        if (!module_) return;
        get_class_ = entry<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
        can_unload_ = entry<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow");
        fail_ = entry<void (*)(long, BOOL)>("CeldoFailAllocation");
        made_ = entry<long (*)()>("CeldoAllocationsMade");
        live_ = entry<long (*)()>("CeldoLiveAllocations");
    }
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;
    ~Faults() {
        if (module_) FreeLibrary(module_);
    }
    bool loaded() const { return get_class_ && can_unload_ && fail_ && made_ && live_; }

    HRESULT create(REFCLSID clsid, ComPtr<IDispatch>& out) const {
        ComPtr<IClassFactory> factory;
        const HRESULT hr = get_class_(clsid, IID_IClassFactory, factory.out_void());
        return FAILED(hr) ? hr : factory->CreateInstance(nullptr, IID_IDispatch, out.out_void());
    }
    void fail(long n, bool after) const { fail_(n, after); }
    long made() const { return made_(); }
    long live() const { return live_(); }
    HRESULT can_unload() const { return can_unload_(); }

private:
    template <class F>
    F entry(const char* name) {
        return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }
    HMODULE module_;
    HRESULT(STDAPICALLTYPE* get_class_)(REFCLSID, REFIID, void**) = nullptr;
    HRESULT(STDAPICALLTYPE* can_unload_)() = nullptr;
    void (*fail_)(long, BOOL) = nullptr;
    long (*made_)() = nullptr;
    long (*live_)() = nullptr;
};

// A text variable the host passes by reference, freed when it goes.
struct TextVariable {
    explicit TextVariable(const wchar_t* s) : value(SysAllocString(s)) {}
    ~TextVariable() { SysFreeString(value); }
    VARIANT ref() {
        VARIANT v;
        V_VT(&v) = VT_BYREF | VT_BSTR;
        V_BSTRREF(&v) = &value;
        return v;
    }
    BSTR value;
};

// One run of a scenario. Calls stop at the first failure, which is kept with its error.
class Session {
public:
    explicit Session(const Faults& dll) : dll_(dll) {}
    bool failed() const { return FAILED(hr); }

    ComPtr<IDispatch> create(REFCLSID clsid) {
        ComPtr<IDispatch> object;
        if (!failed()) vtable(dll_.create(clsid, object));
        return object;
    }

    // What a vtable call answered, with its error info when it failed.
    void vtable(HRESULT answer) {
        hr = answer;
        if (!failed()) return;
        ComPtr<IErrorInfo> info;
        BSTR text = nullptr;
        if (GetErrorInfo(0, info.out()) == S_OK && SUCCEEDED(info->GetDescription(&text)) && text) description = text;
        SysFreeString(text);
    }

    // A late-bound call, as a script makes it; the arguments are the call's to clear. The
    // result comes back as text: a text as it is, an array as its size.
    std::wstring call(IDispatch* object, const wchar_t* name, std::vector<VARIANT> args = {},
                      WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET, ComPtr<IDispatch>* returned = nullptr) {
        std::wstring result;
        if (!failed() && object) {
            LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
            DISPID id = DISPID_UNKNOWN;
            object->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
            std::vector<VARIANT> reversed(args.rbegin(), args.rend());
            DISPID put = DISPID_PROPERTYPUT;
            DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
            if (flags & DISPATCH_PROPERTYPUT) {
                params.rgdispidNamedArgs = &put;
                params.cNamedArgs = 1;
            }
            VARIANT value;
            VariantInit(&value);
            EXCEPINFO error{};
            hr = object->Invoke(id, IID_NULL, 0, flags, &params, &value, &error, nullptr);
            last_call = name;
            if (hr == DISP_E_EXCEPTION) {
                hr = error.scode;
                description = error.bstrDescription ? error.bstrDescription : L"";
            }
            SysFreeString(error.bstrSource);
            SysFreeString(error.bstrDescription);
            SysFreeString(error.bstrHelpFile);
            if (V_VT(&value) == VT_BSTR) result = V_BSTR(&value);
            if (V_VT(&value) & VT_ARRAY) result = L"array of " + std::to_wstring(V_ARRAY(&value)->rgsabound[0].cElements);
            if (V_VT(&value) == VT_DISPATCH && returned) *returned->out() = V_DISPATCH(&value);
            else VariantClear(&value);
        }
        for (VARIANT& a : args) VariantClear(&a);
        return result;
    }

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
    run.call(field.get(), L"Name", {text(L"Importe")}, DISPATCH_PROPERTYPUT);
    if (!run.failed()) {
        // Through the vtable, as compiled hosts call.
        ComPtr<_clsCeldo> early;
        field->QueryInterface(IID__clsCeldo, early.out_void());
        BSTR caption = SysAllocString(L"Importe total");
        run.vtable(early->put_Caption(caption));
        SysFreeString(caption);
    }
    run.call(field.get(), L"DataType", {number(exCurrency)}, DISPATCH_PROPERTYPUT);
    run.call(field.get(), L"Value", {text(L"1234.5")}, DISPATCH_PROPERTYPUT);
    run.call(field.get(), L"RowSource", {text(L"1;2;1234.5")}, DISPATCH_PROPERTYPUT);
    // By-reference texts are written back into the host's variables.
    TextVariable encoding(L""), names(L"Name,Caption");
    const std::wstring attributes = run.call(field.get(), L"XMLAttribute", {encoding.ref(), names.ref()});
    return run.call(field.get(), L"XML", {text(L"")}) + run.call(field.get(), L"Clip") + attributes + names.value +
           run.call(field.get(), L"GetRowSource");
}

std::wstring row_scenario(Session& run) {
    ComPtr<IDispatch> row = run.create(CLSID_clsCeldos), code, copy;
    run.call(row.get(), L"Add", {text(L"Codigo"), text(L"cod"), number(exLong)}, DISPATCH_METHOD, &code);
    run.call(row.get(), L"Add", {text(L"Nombre"), text(L"nom"), number(exText), number(30)});
    run.call(code.get(), L"Value", {number(7)}, DISPATCH_PROPERTYPUT);
    run.call(row.get(), L"Duplicate", {object(code.get()), text(L"Copia")}, DISPATCH_METHOD, &copy);
    return run.call(row.get(), L"XML", {text(L"")}) + run.call(row.get(), L"Clip");
}

std::wstring records_scenario(Session& run) {
    ComPtr<IDispatch> records = run.create(CLSID_clsRegistro), row = run.create(CLSID_clsCeldos), kept;
    run.call(row.get(), L"Add", {text(L"Codigo"), text(L"cod"), number(exLong)});
    run.call(records.get(), L"Add", {object(row.get()), text(L"a")});
    run.call(records.get(), L"Item", {text(L"a")}, DISPATCH_PROPERTYGET, &kept);
    return run.call(kept.get(), L"XML", {text(L"")});
}

std::wstring audit_scenario(Session& run) {
    ComPtr<IDispatch> audit = run.create(CLSID_CeldosSeguimiento), row;
    run.create(CLSID_Constants);
    run.call(audit.get(), L"Registro", {}, DISPATCH_METHOD, &row);
    return run.call(row.get(), L"Clip");
}

// Runs `run_once` for N = 1, 2, ... with the Nth allocation failing alone, then again with
// every one from the Nth on failing, each until it answers that no allocation failed (the run
// went through untouched) or a check failed.
void for_each_failure(const std::function<bool(long n, bool after)>& run_once) {
    for (bool after : {false, true}) {
        for (long n = 1;; ++n) {
            if (!run_once(n, after) || ::testing::Test::HasFailure()) break;
        }
    }
}

std::string narrow(const std::wstring& name) { return std::string(name.begin(), name.end()); }

std::string where(long n, bool after) { return (after ? "from allocation " : "at allocation ") + std::to_string(n); }

void expect_out_of_memory(const Session& run, long n, bool after) {
    EXPECT_EQ(run.hr, E_OUTOFMEMORY) << where(n, after) << ", last call " << narrow(run.last_call);
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
        EXPECT_EQ(dll.live(), baseline) << where(n, after) << ", last call " << narrow(run.last_call);
        return fired;
    });
}

TEST(OutOfMemory, FieldSurvivesEveryFailedAllocation) { walk(field_scenario); }
TEST(OutOfMemory, RowSurvivesEveryFailedAllocation) { walk(row_scenario); }
TEST(OutOfMemory, RecordsSurviveEveryFailedAllocation) { walk(records_scenario); }
TEST(OutOfMemory, AuditFieldsAndConstantsSurviveEveryFailedAllocation) { walk(audit_scenario); }

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
        const HRESULT described = field ? field->GetTypeInfo(0, 0, info.out()) : S_OK;
        run.call(field.get(), L"Name", {text(L"Importe")}, DISPATCH_PROPERTYPUT);
        const bool fired = dll.made() >= n;
        dll.fail(0, false);
        if (run.failed()) expect_out_of_memory(run, n, after);
        if (field && FAILED(described)) {
            EXPECT_EQ(field->GetTypeInfo(0, 0, info.out()), S_OK) << where(n, after);
        }
        field.reset();
        info.reset();
        EXPECT_EQ(dll.can_unload(), S_OK) << where(n, after);
        return fired;
    });
}

}  // namespace
}  // namespace celdo::testing

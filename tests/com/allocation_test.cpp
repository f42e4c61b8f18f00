// Out of memory at every allocation: each scenario runs once with the Nth allocation of
// CeldoFaults.dll failing, for every N until one run goes through untouched, once with only
// that allocation failing and once with it and all after it failing. A run either ends with
// the result of a clean run or fails with error 7, and leaves no object and no block behind.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// The component built with counted allocations, loaded from its file (it is never registered).
class Faults {
public:
    Faults() : module_(LoadLibraryW(dll_path().c_str())) {
        if (!module_) return;
        get_class_ = entry<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
        can_unload_ = entry<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow");
        fail_ = entry<void(WINAPI*)(long, BOOL)>("CeldoFailAllocation");
        made_ = entry<long(WINAPI*)()>("CeldoAllocationsMade");
        live_ = entry<long(WINAPI*)()>("CeldoLiveAllocations");
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
    void(WINAPI* fail_)(long, BOOL) = nullptr;
    long(WINAPI* made_)() = nullptr;
    long(WINAPI* live_)() = nullptr;
};

const Faults& faults() {
    static const Faults* dll = new Faults;
    return *dll;
}

// One run of a scenario. Calls stop at the first failure, which is kept with its error.
class Run {
public:
    bool failed() const { return FAILED(hr); }

    ComPtr<IDispatch> create(REFCLSID clsid) {
        ComPtr<IDispatch> object;
        if (failed()) return object;
        hr = faults().create(clsid, object);
        if (failed()) read_error_info();
        return object;
    }

    // A late-bound call, as a script makes it; the arguments are the call's to clear.
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
            if (hr == DISP_E_EXCEPTION) {
                hr = error.scode;
                description = error.bstrDescription ? error.bstrDescription : L"";
            }
            SysFreeString(error.bstrSource);
            SysFreeString(error.bstrDescription);
            SysFreeString(error.bstrHelpFile);
            if (V_VT(&value) == VT_BSTR) result = V_BSTR(&value);
            if (V_VT(&value) == VT_DISPATCH && returned) *returned->out() = V_DISPATCH(&value);
            else VariantClear(&value);
        }
        for (VARIANT& a : args) VariantClear(&a);
        return result;
    }

    HRESULT hr = S_OK;
    std::wstring description;

private:
    void read_error_info() {
        ComPtr<IErrorInfo> info;
        BSTR text = nullptr;
        if (GetErrorInfo(0, info.out()) == S_OK && SUCCEEDED(info->GetDescription(&text)) && text) description = text;
        SysFreeString(text);
    }
};

// A few members of each class, each run from fresh objects; the texts it returns stand for
// the run's result.
using Scenario = std::function<std::wstring(Run&)>;

std::wstring field_scenario(Run& run) {
    ComPtr<IDispatch> field = run.create(CLSID_clsCeldo);
    run.call(field.get(), L"Name", {text(L"Importe")}, DISPATCH_PROPERTYPUT);
    run.call(field.get(), L"DataType", {number(exCurrency)}, DISPATCH_PROPERTYPUT);
    run.call(field.get(), L"Value", {text(L"1234.5")}, DISPATCH_PROPERTYPUT);
    return run.call(field.get(), L"XML", {text(L"")}) + run.call(field.get(), L"Clip");
}

std::wstring row_scenario(Run& run) {
    ComPtr<IDispatch> row = run.create(CLSID_clsCeldos), code, copy;
    run.call(row.get(), L"Add", {text(L"Codigo"), text(L"cod"), number(exLong)}, DISPATCH_METHOD, &code);
    run.call(row.get(), L"Add", {text(L"Nombre"), text(L"nom"), number(exText), number(30)});
    run.call(code.get(), L"Value", {number(7)}, DISPATCH_PROPERTYPUT);
    run.call(row.get(), L"Duplicate", {object(code.get()), text(L"Copia")}, DISPATCH_METHOD, &copy);
    return run.call(row.get(), L"XML", {text(L"")}) + run.call(row.get(), L"Clip");
}

std::wstring records_scenario(Run& run) {
    ComPtr<IDispatch> records = run.create(CLSID_clsRegistro), row = run.create(CLSID_clsCeldos), kept;
    run.call(row.get(), L"Add", {text(L"Codigo"), text(L"cod"), number(exLong)});
    run.call(records.get(), L"Add", {object(row.get()), text(L"a")});
    run.call(records.get(), L"Item", {text(L"a")}, DISPATCH_PROPERTYGET, &kept);
    return run.call(kept.get(), L"XML", {text(L"")});
}

std::wstring audit_scenario(Run& run) {
    ComPtr<IDispatch> audit = run.create(CLSID_CeldosSeguimiento), row;
    run.create(CLSID_Constants);
    run.call(audit.get(), L"Registro", {}, DISPATCH_METHOD, &row);
    return run.call(row.get(), L"Clip");
}

void walk(const Scenario& scenario) {
    const Faults& dll = faults();
    ASSERT_TRUE(dll.loaded()) << "CeldoFaults.dll or its test entry points are missing";
    // A clean run, counted: a hook that counted nothing would let every walk pass untouched.
    dll.fail(LONG_MAX, false);
    std::wstring expected;
    {
        Run run;
        expected = scenario(run);
        ASSERT_EQ(run.hr, S_OK);
    }
    ASSERT_GT(dll.made(), 0);
    dll.fail(0, false);
    ASSERT_EQ(dll.can_unload(), S_OK);
    // What the clean run left allocated (caches made on first use) stays allocated.
    const long baseline = dll.live();
    for (bool after : {false, true}) {
        for (long n = 1;; ++n) {
            dll.fail(n, after);
            Run run;
            const std::wstring got = scenario(run);
            const bool fired = dll.made() >= n;
            dll.fail(0, false);
            const std::string where = (after ? "from allocation " : "at allocation ") + std::to_string(n);
            if (run.failed()) {
                EXPECT_EQ(run.hr, E_OUTOFMEMORY) << where;
                // While memory is left, the host is also told what happened.
                if (!after) {
                    EXPECT_EQ(run.description, L"Out of memory") << where;
                }
            } else {
                // A failure the library absorbed along the way must not change the result.
                EXPECT_EQ(got, expected) << where;
            }
            EXPECT_EQ(dll.can_unload(), S_OK) << where;
            EXPECT_EQ(dll.live(), baseline) << where;
            if (!fired) break;
            if (::testing::Test::HasFailure()) return;
        }
    }
}

TEST(OutOfMemory, FieldSurvivesEveryFailedAllocation) { walk(field_scenario); }
TEST(OutOfMemory, RowSurvivesEveryFailedAllocation) { walk(row_scenario); }
TEST(OutOfMemory, RecordsSurviveEveryFailedAllocation) { walk(records_scenario); }
TEST(OutOfMemory, AuditFieldsAndConstantsSurviveEveryFailedAllocation) { walk(audit_scenario); }

}  // namespace
}  // namespace celdo::testing

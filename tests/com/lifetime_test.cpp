// Object lifetime as the module reports it: after a client drops everything it made, cycles
// included, nothing of the library is left alive and DllCanUnloadNow answers S_OK.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// A late-bound call as a script makes it: arguments in source order (owned by the call, which
// clears them), the result as a VARIANT.
class Late {
public:
    explicit Late(IDispatch* object) : object_(object) {}

    VARIANT call(const wchar_t* name, std::vector<VARIANT> args = {}, WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET) {
        LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
        DISPID id = DISPID_UNKNOWN;
        VARIANT result;
        VariantInit(&result);
        if (object_->GetIDsOfNames(IID_NULL, names, 1, 0, &id) != S_OK) {
            ADD_FAILURE() << "no member " << std::string(name, name + wcslen(name));
            for (VARIANT& a : args) VariantClear(&a);
            return result;
        }
        std::vector<VARIANT> reversed(args.rbegin(), args.rend());
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
            params.rgdispidNamedArgs = &put;
            params.cNamedArgs = 1;
        }
        EXCEPINFO error{};
        const HRESULT hr = object_->Invoke(id, IID_NULL, 0, flags, &params, &result, &error, nullptr);
        EXPECT_EQ(hr, S_OK) << std::string(name, name + wcslen(name));
        for (VARIANT& a : args) VariantClear(&a);
        SysFreeString(error.bstrSource);
        SysFreeString(error.bstrDescription);
        SysFreeString(error.bstrHelpFile);
        return result;
    }

private:
    IDispatch* object_;
};

ComPtr<IDispatch> create(REFCLSID clsid) {
    ComPtr<IDispatch> d;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, d.out_void()), S_OK);
    return d;
}

// Takes over the object a call returned.
ComPtr<IDispatch> take(VARIANT v) {
    ComPtr<IDispatch> d;
    if (V_VT(&v) == VT_DISPATCH) *d.out() = V_DISPATCH(&v);
    else VariantClear(&v);
    return d;
}

TEST(Lifetime, ClassObjectsKeepTheModuleOnlyWhenLocked) {
    { auto warm = create(CLSID_clsCeldo); }  // loads the module
    ASSERT_EQ(can_unload_now(), S_OK);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(CoGetClassObject(CLSID_clsCeldo, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.out_void()), S_OK);
    EXPECT_EQ(can_unload_now(), S_OK) << "a class object alone does not hold the module";
    ASSERT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(can_unload_now(), S_FALSE);
    ASSERT_EQ(factory->LockServer(FALSE), S_OK);
    EXPECT_EQ(can_unload_now(), S_OK);
    ComPtr<IDispatch> made;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, made.out_void()), S_OK);
    EXPECT_EQ(can_unload_now(), S_FALSE) << "what it made does";
    made.reset();
    EXPECT_EQ(can_unload_now(), S_OK);
}

TEST(Lifetime, NothingIsLeftAfterHundredsOfThousandsOfObjectsWithCycles) {
    {
        auto records = create(CLSID_clsRegistro);
        Late registro(records.get());
        for (int r = 0; r < 1000; ++r) {
            auto row = create(CLSID_clsCeldos);
            Late celdos(row.get());
            for (int i = 0; i < 25; ++i) {
                std::wstring name = L"F" + std::to_wstring(i);
                auto field = take(celdos.call(L"Add", {text(name.c_str()), text(L""), number(1014)}));
                Late f(field.get());
                if (i == 0) {
                    // The row inside its first field's children, and the field among them.
                    auto children = take(f.call(L"Children"));
                    Late(children.get()).call(L"Appends", {object(row.get())});
                } else if (i == 1) {
                    // A field as its own extended properties.
                    f.call(L"ExtendProperties", {object(field.get())}, DISPATCH_PROPERTYPUTREF);
                }
                f.call(L"Value", {text(L"valor")}, DISPATCH_PROPERTYPUT);
            }
            registro.call(L"Add", {object(row.get())});
        }
        EXPECT_EQ(can_unload_now(), S_FALSE) << "still held";
    }
    EXPECT_EQ(can_unload_now(), S_OK);
}

}  // namespace
}  // namespace celdo::testing

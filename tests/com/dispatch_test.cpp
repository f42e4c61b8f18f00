// The member machinery as only compiled hosts meet it, on the test probe: early binding through
// the vtable, error info, named arguments, typed by-reference variables, and calls into a host
// object that has type information.
#include "CeldoProbe_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

class ProbeClient : public ::testing::Test {
protected:
    ComPtr<_Probe> probe = create<_Probe>(CLSID_Probe);
};

TEST_F(ProbeClient, EarlyBoundCallsPassEachTypeAndWriteBackByReference) {
    Bstr back, label(L"!"), tidy(L"  padded  ");
    CY amount{}, read{};
    amount.int64 = 12345678;
    ASSERT_EQ(probe->put_Amount(amount), S_OK);
    ASSERT_EQ(probe->get_Amount(&read), S_OK);
    EXPECT_EQ(read.int64, 12345678);

    long count = 41;
    Var first(number(1)), second(text(L"two"));
    ASSERT_EQ(probe->Tidy(tidy.ref()), S_OK);
    ASSERT_EQ(probe->Bump(&count), S_OK);
    ASSERT_EQ(probe->Swap(&first, &second), S_OK);
    EXPECT_EQ(tidy.str() + L"," + std::to_wstring(count), L"padded,42");
    EXPECT_EQ(std::pair(V_VT(&first), V_VT(&second)), std::pair(VARTYPE(VT_BSTR), VARTYPE(VT_I4)));
    ASSERT_EQ(probe->Describe(0, -1, label, missing(), pmSecond, VARIANT_TRUE, back.put()), S_OK);
    EXPECT_EQ(back.str(), L"Size=0;Position=-1;Label=!;Extra=Missing;Mode=2;Flag=True");
}

TEST_F(ProbeClient, ErrorsComeWithErrorInfoAndTheRefusedArgument) {
    EXPECT_EQ(probe->Raise(-2147221504, Bstr(L"Celdo_Codigo"), Bstr(L"Tipo de dato no v\u00e1lido")),
              static_cast<HRESULT>(0x80040000));
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.put()), S_OK);
    GUID guid{};
    info->GetGUID(&guid);
    EXPECT_TRUE(IsEqualGUID(guid, IID__Probe));
    SetErrorInfo(0, info.get());  // put back for error_info to read
    EXPECT_EQ(error_info(), L"Celdo_Codigo|Tipo de dato no v\u00e1lido");

    // Overflow's number and text reach scripts too (dispatch.vbs); only a compiled host is told
    // which argument was refused.
    UINT bad = 99;
    EXCEPINFO failure{};
    EXPECT_EQ(invoke(probe.get(), L"Small", {number(40000)}, DISPATCH_PROPERTYPUT, nullptr, &failure, &bad), DISP_E_EXCEPTION);
    EXPECT_EQ(bad, 0u) << "the refused argument is named";
    for (BSTR b : {failure.bstrSource, failure.bstrDescription, failure.bstrHelpFile}) SysFreeString(b);
}

TEST_F(ProbeClient, NamedArgumentsAndTypedVariablesByReference) {
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"Describe"), const_cast<LPOLESTR>(L"label"),
                        const_cast<LPOLESTR>(L"Size")};
    DISPID ids[3] = {};
    ASSERT_EQ(probe->GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
    EXPECT_EQ(std::pair(ids[1], ids[2]), std::pair(2L, 0L));
    VARIANT args[2] = {text(L"n"), number(3)};
    DISPPARAMS params{args, &ids[1], 2, 2};
    Var result;
    ASSERT_EQ(probe->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &params, &result, nullptr, nullptr), S_OK);
    EXPECT_STREQ(V_BSTR(&result), L"Size=3;Position=-1;Label=n;Extra=Missing;Mode=2;Flag=True");
    VariantClear(&args[0]);

    // VB6 passes a String variable as VT_BYREF|VT_BSTR (a Variant one, as scripts do, is dispatch.vbs's).
    Bstr typed(L"  typed  ");
    ASSERT_EQ(invoke(probe.get(), L"Tidy", {by_ref(typed)}, DISPATCH_METHOD, nullptr, nullptr), S_OK);
    EXPECT_EQ(typed.str(), L"typed");
}

// A host object as compiled hosts build them, dispatching through type information (the
// probe's own interface stands in for theirs); it records how its argument arrived.
class TypedHost final : public TestDispatch {
public:
    explicit TypedHost(ITypeInfo* info) : info_(info) {}
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override { *n = 1; return S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** out) override { info_->AddRef(); *out = info_; return S_OK; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return info_->GetIDsOfNames(names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) override {
        received = V_VT(&params->rgvarg[0]);
        if (received == (VT_BYREF | VT_I4)) ++*V_I4REF(&params->rgvarg[0]);
        return S_OK;
    }
    VARTYPE received = VT_EMPTY;

private:
    ITypeInfo* info_;
};

TEST_F(ProbeClient, ArgumentsToAHostTakeTheTypesItsTypeInformationDeclares) {
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> probe_info;
    ASSERT_EQ(LoadRegTypeLib(LIBID_CeldoProbe, 1, 0, 0, library.put()), S_OK);
    ASSERT_EQ(library->GetTypeInfoOfGuid(IID__Probe, probe_info.put()), S_OK);
    TypedHost host(probe_info.get());
    Var value, result;
    V_VT(&value) = VT_I2;
    V_I2(&value) = 41;
    EXPECT_EQ(probe->Call(&host, Bstr(L"Bump"), &value, &result), S_OK);
    EXPECT_EQ(host.received, VT_BYREF | VT_I4) << "Bump declares ByRef Number As Long";
    EXPECT_EQ(std::pair(V_VT(&value), V_I4(&value)), std::pair(VARTYPE(VT_I4), 42L));
}

}  // namespace
}  // namespace celdo::testing

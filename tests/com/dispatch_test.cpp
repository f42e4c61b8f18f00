// The member machinery as compiled hosts meet it, on the test probe: early binding through the
// vtable with typed by-reference parameters and error info, IDispatch with named arguments and
// typed by-reference variables, the enumerator, identity, and events through a connection point.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <olectl.h>

#include "CeldoProbe_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

std::wstring take(BSTR b) {
    std::wstring s = b ? std::wstring(b, SysStringLen(b)) : std::wstring();
    SysFreeString(b);
    return s;
}

class Bstr {
public:
    explicit Bstr(const wchar_t* text) : b_(SysAllocString(text)) {}
    ~Bstr() { SysFreeString(b_); }
    BSTR get() const { return b_; }
    BSTR* out() { return &b_; }

private:
    BSTR b_;
};

class ProbeClient : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(CoCreateInstance(CLSID_Probe, nullptr, CLSCTX_INPROC_SERVER, IID__Probe, probe.out_void()), S_OK);
    }

    DISPID id_of(const wchar_t* name) {
        LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
        DISPID id = DISPID_UNKNOWN;
        EXPECT_EQ(probe->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK) << name;
        return id;
    }

    ComPtr<_Probe> probe;
};

TEST_F(ProbeClient, EarlyBoundPropertiesRoundTrip) {
    Bstr text(L"hola");
    ASSERT_EQ(probe->put_Text(text.get()), S_OK);
    BSTR back = nullptr;
    ASSERT_EQ(probe->get_Text(&back), S_OK);
    EXPECT_EQ(take(back), L"hola");

    ASSERT_EQ(probe->put_Mode(pmThird), S_OK);
    ProbeMode mode = pmFirst;
    ASSERT_EQ(probe->get_Mode(&mode), S_OK);
    EXPECT_EQ(mode, pmThird);

    CY amount;
    amount.int64 = 12345678;
    ASSERT_EQ(probe->put_Amount(amount), S_OK);
    CY read{};
    ASSERT_EQ(probe->get_Amount(&read), S_OK);
    EXPECT_EQ(read.int64, 12345678);
}

TEST_F(ProbeClient, EarlyBoundByReferenceParametersAreWrittenBack) {
    Bstr text(L"  padded  ");
    ASSERT_EQ(probe->Tidy(text.out()), S_OK);
    EXPECT_STREQ(text.get(), L"padded");
    long number = 41;
    ASSERT_EQ(probe->Bump(&number), S_OK);
    EXPECT_EQ(number, 42);
}

TEST_F(ProbeClient, EarlyBoundOptionalParametersGetWhatTheCallerPasses) {
    VARIANT missing;
    VariantInit(&missing);
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    Bstr label(L"!");
    BSTR result = nullptr;
    ASSERT_EQ(probe->Describe(0, -1, label.get(), missing, pmSecond, VARIANT_TRUE, &result), S_OK);
    EXPECT_EQ(take(result), L"Size=0;Position=-1;Label=!;Extra=Missing;Mode=2;Flag=True");
}

TEST_F(ProbeClient, EarlyBoundErrorsComeWithErrorInfo) {
    Bstr source(L"Celdo_Codigo");
    Bstr description(L"Tipo de dato no v\u00e1lido");
    EXPECT_EQ(probe->Raise(-2147221504, source.get(), description.get()), static_cast<HRESULT>(0x80040000));
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.out()), S_OK);
    BSTR text = nullptr;
    info->GetSource(&text);
    EXPECT_EQ(take(text), L"Celdo_Codigo");
    info->GetDescription(&text);
    EXPECT_EQ(take(text), L"Tipo de dato no v\u00e1lido");
    GUID guid{};
    info->GetGUID(&guid);
    EXPECT_TRUE(IsEqualGUID(guid, IID__Probe));

    EXPECT_EQ(probe->put_Small(0), S_OK);
    VARIANT huge;
    VariantInit(&huge);
    V_VT(&huge) = VT_I4;
    V_I4(&huge) = 40000;
    // The language's own errors travel as FACILITY_CONTROL HRESULTs: 6 is Overflow.
    ComPtr<IDispatch> dispatch;
    probe->QueryInterface(IID_IDispatch, dispatch.out_void());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{&huge, &put, 1, 1};
    UINT bad = 99;
    EXCEPINFO failure{};
    EXPECT_EQ(dispatch->Invoke(id_of(L"Small"), IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, &failure, &bad),
              DISP_E_EXCEPTION);
    EXPECT_EQ(failure.scode, static_cast<HRESULT>(0x800A0006));
    EXPECT_EQ(take(failure.bstrDescription), L"Overflow");
    SysFreeString(failure.bstrSource);
    EXPECT_EQ(bad, 0u) << "the refused argument is named";
}

TEST_F(ProbeClient, NamedArgumentsFindTheirParameters) {
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"Describe"), const_cast<LPOLESTR>(L"label"),
                        const_cast<LPOLESTR>(L"Size")};
    DISPID ids[3] = {};
    ASSERT_EQ(probe->GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
    EXPECT_EQ(ids[1], 2);
    EXPECT_EQ(ids[2], 0);
    VARIANT args[2];
    VariantInit(&args[0]);
    VariantInit(&args[1]);
    V_VT(&args[0]) = VT_BSTR;
    V_BSTR(&args[0]) = SysAllocString(L"n");
    V_VT(&args[1]) = VT_I4;
    V_I4(&args[1]) = 3;
    DISPID named[2] = {ids[1], ids[2]};
    DISPPARAMS params{args, named, 2, 2};
    VARIANT result;
    VariantInit(&result);
    ASSERT_EQ(probe->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &params, &result, nullptr, nullptr), S_OK);
    EXPECT_EQ(take(V_BSTR(&result)), L"Size=3;Position=-1;Label=n;Extra=Missing;Mode=2;Flag=True");
    VariantClear(&args[0]);
}

TEST_F(ProbeClient, TypedVariablesPassedByReferenceAreWrittenBackInTheirType) {
    // VB6 passes a String variable as VT_BYREF|VT_BSTR, a Variant variable as VT_BYREF|VT_VARIANT.
    BSTR text = SysAllocString(L"  typed  ");
    VARIANT arg;
    V_VT(&arg) = VT_BYREF | VT_BSTR;
    V_BSTRREF(&arg) = &text;
    DISPPARAMS params{&arg, nullptr, 1, 0};
    ASSERT_EQ(probe->Invoke(id_of(L"Tidy"), IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr), S_OK);
    EXPECT_STREQ(text, L"typed");
    SysFreeString(text);

    VARIANT variable;
    VariantInit(&variable);
    V_VT(&variable) = VT_BSTR;
    V_BSTR(&variable) = SysAllocString(L"41");
    V_VT(&arg) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&arg) = &variable;
    ASSERT_EQ(probe->Invoke(id_of(L"Bump"), IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(V_VT(&variable), VT_I4);
    EXPECT_EQ(V_I4(&variable), 42);
    VariantClear(&variable);
}

TEST_F(ProbeClient, PropertiesReadWithMethodFlagsAsJScriptDoes) {
    Bstr text(L"x");
    probe->put_Text(text.get());
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    VARIANT result;
    VariantInit(&result);
    ASSERT_EQ(probe->Invoke(id_of(L"Text"), IID_NULL, 0, DISPATCH_METHOD, &none, &result, nullptr, nullptr), S_OK);
    EXPECT_EQ(take(V_BSTR(&result)), L"x");
}

TEST_F(ProbeClient, TheSameObjectHasOneIdentity) {
    ComPtr<_Probe> self;
    ASSERT_EQ(probe->Itself(self.out()), S_OK);
    ComPtr<IUnknown> a, b;
    probe->QueryInterface(IID_IUnknown, a.out_void());
    self->QueryInterface(IID_IUnknown, b.out_void());
    EXPECT_EQ(a.get(), b.get());

    ComPtr<_Probe> other;
    ASSERT_EQ(CoCreateInstance(CLSID_Probe, nullptr, CLSCTX_INPROC_SERVER, IID__Probe, other.out_void()), S_OK);
    ASSERT_EQ(probe->putref_Partner(other.get()), S_OK);
    ComPtr<_Probe> back;
    ASSERT_EQ(probe->get_Partner(back.out()), S_OK);
    EXPECT_EQ(back.get(), other.get());
    probe->putref_Partner(nullptr);
}

TEST_F(ProbeClient, NewEnumHandsOutAVariantEnumerator) {
    VARIANT item;
    VariantInit(&item);
    V_VT(&item) = VT_I4;
    V_I4(&item) = 7;
    probe->Add(item);
    ComPtr<IUnknown> unknown;
    ASSERT_EQ(probe->get_Items(unknown.out()), S_OK);
    ComPtr<IEnumVARIANT> walk;
    ASSERT_EQ(unknown->QueryInterface(IID_IEnumVARIANT, walk.out_void()), S_OK);
    VARIANT got[2];
    ULONG fetched = 0;
    EXPECT_EQ(walk->Next(2, got, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 1u);
    EXPECT_EQ(V_VT(&got[0]), VT_I4);
    EXPECT_EQ(V_I4(&got[0]), 7);
}

TEST_F(ProbeClient, EventsReachAdvisedSinksUntilTheyLeave) {
    ComPtr<IProvideClassInfo2> info;
    ASSERT_EQ(probe->QueryInterface(IID_IProvideClassInfo2, info.out_void()), S_OK);
    GUID source{};
    ASSERT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source), S_OK);
    EXPECT_TRUE(IsEqualGUID(source, DIID___Probe));

    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(probe->QueryInterface(IID_IConnectionPointContainer, container.out_void()), S_OK);
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(DIID___Probe, point.out()), S_OK);
    ComPtr<IConnectionPoint> none;
    EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, none.out()), CONNECT_E_NOCONNECTION);

    RecordingSink sink(DIID___Probe);
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(probe->Ring(3), S_OK);
    EXPECT_EQ(sink.ids, (std::vector<DISPID>{1, 1, 1}));
    EXPECT_EQ(sink.first_longs, (std::vector<long>{1, 2, 3}));
    EXPECT_EQ(sink.method_calls, 3u);
    ASSERT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(point->Unadvise(cookie), CONNECT_E_NOCONNECTION);
    probe->Ring(1);
    EXPECT_EQ(sink.ids.size(), 3u);
    EXPECT_EQ(sink.refs, 1u) << "the connection point released the sink";
}

}  // namespace
}  // namespace celdo::testing

namespace celdo::testing {
namespace {

// A host object as compiled hosts build them: dispatch through type information (the probe's
// own interface stands in for it), recording what arrives; or without type information, as
// script objects are.
class FakeHost final : public TestDispatch {
public:
    explicit FakeHost(ITypeInfo* info) : info_(info) {
        if (info_) info_->AddRef();
    }
    ~FakeHost() {
        if (info_) info_->Release();
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
        *n = info_ ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** out) override {
        if (!info_) return E_NOTIMPL;
        info_->AddRef();
        *out = info_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        if (_wcsicmp(names[0], L"Refuse") == 0) {
            ids[0] = 900;
            return S_OK;
        }
        if (info_) return info_->GetIDsOfNames(names, count, ids);
        if (_wcsicmp(names[0], L"Bump") == 0) {
            ids[0] = 901;
            return S_OK;
        }
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO* failure,
                                     UINT*) override {
        if (id == 900) {
            failure->wCode = 0;
            failure->scode = static_cast<HRESULT>(0x800A04D2);
            failure->bstrSource = SysAllocString(L"HostSource");
            failure->bstrDescription = SysAllocString(L"the host said no");
            return DISP_E_EXCEPTION;
        }
        for (UINT i = 0; i < params->cArgs; ++i) received.push_back(V_VT(&params->rgvarg[i]));
        VARIANT& arg = params->rgvarg[0];
        if (V_VT(&arg) == (VT_BYREF | VT_I4)) ++*V_I4REF(&arg);
        else if (V_VT(&arg) == (VT_BYREF | VT_VARIANT)) {
            VariantClear(V_VARIANTREF(&arg));
            V_VT(V_VARIANTREF(&arg)) = VT_BSTR;
            V_BSTR(V_VARIANTREF(&arg)) = SysAllocString(L"through a Variant");
        }
        return S_OK;
    }
    std::vector<VARTYPE> received;

private:
    ITypeInfo* info_;
};

class HostCalls : public ProbeClient {
protected:
    void SetUp() override {
        ProbeClient::SetUp();
        ComPtr<ITypeLib> library;
        ASSERT_EQ(LoadRegTypeLib(LIBID_CeldoProbe, 1, 0, 0, library.out()), S_OK);
        ASSERT_EQ(library->GetTypeInfoOfGuid(IID__Probe, probe_info.out()), S_OK);
    }
    VARIANT call_bump(FakeHost& host, VARIANT value) {
        Bstr member(L"Bump");
        VARIANT result;
        VariantInit(&result);
        EXPECT_EQ(probe->Call(&host, member.get(), &value, &result), S_OK);
        VariantClear(&result);
        return value;
    }
    ComPtr<ITypeInfo> probe_info;
};

TEST_F(HostCalls, ByReferenceArgumentsTakeTheTypeTheHostDeclares) {
    FakeHost typed(probe_info.get());
    VARIANT value;
    V_VT(&value) = VT_I2;
    V_I2(&value) = 41;
    value = call_bump(typed, value);
    ASSERT_EQ(typed.received.size(), 1u);
    EXPECT_EQ(typed.received[0], VT_BYREF | VT_I4) << "Bump declares ByRef Number As Long";
    EXPECT_EQ(V_VT(&value), VT_I4);
    EXPECT_EQ(V_I4(&value), 42);
}

TEST_F(HostCalls, WithoutTypeInformationArgumentsGoAsReferencesToVariants) {
    FakeHost untyped(nullptr);
    VARIANT value;
    V_VT(&value) = VT_I2;
    V_I2(&value) = 41;
    value = call_bump(untyped, value);
    ASSERT_EQ(untyped.received.size(), 1u);
    EXPECT_EQ(untyped.received[0], VT_BYREF | VT_VARIANT);
    EXPECT_EQ(V_VT(&value), VT_BSTR);
    EXPECT_STREQ(V_BSTR(&value), L"through a Variant");
    VariantClear(&value);
}

TEST_F(HostCalls, ErrorsRaisedByTheHostKeepNumberSourceAndDescription) {
    FakeHost host(nullptr);
    Bstr member(L"Refuse");
    VARIANT value, result;
    VariantInit(&value);
    VariantInit(&result);
    EXPECT_EQ(probe->Call(&host, member.get(), &value, &result), static_cast<HRESULT>(0x800A04D2));
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.out()), S_OK);
    BSTR text = nullptr;
    info->GetSource(&text);
    EXPECT_EQ(take(text), L"HostSource");
    info->GetDescription(&text);
    EXPECT_EQ(take(text), L"the host said no");
}

}  // namespace
}  // namespace celdo::testing

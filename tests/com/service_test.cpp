// The service against a control that fails as compiled controls do: EXCEPINFO filled and an
// error object left on the thread. Whether the service stops quietly or lets the error reach
// its caller, no stale error object may stay behind for the host to misread.
#include <gtest/gtest.h>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

constexpr HRESULT kRefused = static_cast<HRESULT>(0x800A017C);  // error 380

class RefusingControl final : public TestDispatch {
public:
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override {
        ids[0] = 7;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* failure,
                                     UINT*) override {
        ++calls;
        ComPtr<ICreateErrorInfo> create;
        if (SUCCEEDED(CreateErrorInfo(create.out()))) {
            create->SetDescription(const_cast<LPOLESTR>(L"the control said no"));
            ComPtr<IErrorInfo> info;
            create->QueryInterface(IID_IErrorInfo, info.out_void());
            SetErrorInfo(0, info.get());
        }
        failure->scode = kRefused;
        failure->bstrSource = SysAllocString(L"Control");
        failure->bstrDescription = SysAllocString(L"the control said no");
        return DISP_E_EXCEPTION;
    }
    int calls = 0;
};

class ServiceClient : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(CoCreateInstance(CLSID_ISService, nullptr, CLSCTX_INPROC_SERVER, IID__ISService, service.out_void()),
                  S_OK);
    }
    ComPtr<_ISService> service;
    RefusingControl control;
};

TEST_F(ServiceClient, AnErrorTheServiceStopsAtLeavesNoErrorObjectBehind) {
    IDispatch* view = &control;
    VARIANT icon;
    V_VT(&icon) = VT_I4;
    V_I4(&icon) = -1;
    BSTR key = SysAllocString(L"1"), info = SysAllocString(L"a!b"), separator = SysAllocString(L"!"),
         tag = SysAllocString(L"");
    EXPECT_EQ(service->AddListItem(&view, key, icon, icon, info, separator, tag), S_OK);
    for (BSTR b : {key, info, separator, tag}) SysFreeString(b);
    EXPECT_EQ(control.calls, 1);
    ComPtr<IErrorInfo> stale;
    EXPECT_EQ(GetErrorInfo(0, stale.out()), S_FALSE);
    EXPECT_EQ(control.refs, 1u);
}

TEST_F(ServiceClient, AnErrorAHelperLetsThroughKeepsTheControlsNumberAndText) {
    IDispatch* list = &control;
    EXPECT_EQ(service->FindItemData(1, &list), kRefused);
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.out()), S_OK);
    BSTR text = nullptr;
    info->GetDescription(&text);
    EXPECT_STREQ(text, L"the control said no");
    SysFreeString(text);
    EXPECT_EQ(control.refs, 1u);
}

}  // namespace
}  // namespace celdo::testing

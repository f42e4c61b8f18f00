// The service against a control that fails as compiled controls do: EXCEPINFO filled and an
// error object left on the thread. Whether the service stops quietly or lets the error reach
// its caller, no stale error object may stay behind for the host to misread.
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

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
        ComPtr<IErrorInfo> info;
        if (SUCCEEDED(CreateErrorInfo(create.put()))) {
            create->SetDescription(const_cast<LPOLESTR>(L"the control said no"));
            create->QueryInterface(IID_IErrorInfo, info.put_void());
            SetErrorInfo(0, info.get());
        }
        failure->scode = static_cast<HRESULT>(0x800A017C);  // error 380
        failure->bstrSource = SysAllocString(L"Control");
        failure->bstrDescription = SysAllocString(L"the control said no");
        return DISP_E_EXCEPTION;
    }
    int calls = 0;
};

TEST(ServiceClient, AControlsErrorIsSwallowedWithoutATraceOrPassedOnWithItsNumberAndText) {
    auto service = create<_ISService>(CLSID_ISService);
    RefusingControl control;
    IDispatch* view = &control;
    EXPECT_EQ(service->AddListItem(&view, Bstr(L"1"), number(-1), number(-1), Bstr(L"a!b"), Bstr(L"!"), Bstr(L"")), S_OK);
    EXPECT_EQ(control.calls, 1);
    EXPECT_EQ(error_info(), L"") << "no stale error object";
    EXPECT_EQ(service->FindItemData(1, &view), static_cast<HRESULT>(0x800A017C));
    EXPECT_EQ(error_info(), L"Control|the control said no");
    EXPECT_EQ(control.refs, 1u);
}

}  // namespace
}  // namespace celdo::testing

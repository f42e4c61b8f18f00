// Keyset paging from a C++ client, the way a VB6 form with WithEvents meets it: Requery reaches
// an event sink through the connection point, with the key to fetch from as a clsCeldos, and
// the cell events of the control shown come back as EnterCell.
#include <gtest/gtest.h>

#include "CeldoProbe_h.h"
#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

// Keeps the PK of every Requery (event 2; EnterCell is 1).
class PagingSink final : public TestDispatch {
public:
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        ids.push_back(id);
        if (params->cArgs != 1) return S_OK;
        const VARIANT* pk = &params->rgvarg[0];
        if (V_VT(pk) == (VT_BYREF | VT_VARIANT)) pk = V_VARIANTREF(pk);
        kinds.push_back(V_VT(pk));
        IDispatch* d = V_VT(pk) == (VT_BYREF | VT_DISPATCH) ? *V_DISPATCHREF(pk)
                       : V_VT(pk) == VT_DISPATCH        ? V_DISPATCH(pk)
                                                        : nullptr;
        ComPtr<_clsCeldos> fields;
        if (d) d->QueryInterface(IID__clsCeldos, fields.out_void());
        keys.push_back(std::move(fields));
        return S_OK;
    }
    std::vector<DISPID> ids;
    std::vector<VARTYPE> kinds;
    std::vector<ComPtr<_clsCeldos>> keys;

private:
    bool answers(REFIID riid) const override { return riid == DIID___Apuntadores; }
};

// A row of one field, Id, holding `id`.
ComPtr<_clsCeldos> row(long id) {
    ComPtr<_clsCeldos> fields;
    EXPECT_EQ(CoCreateInstance(CLSID_clsCeldos, nullptr, CLSCTX_INPROC_SERVER, IID__clsCeldos, fields.out_void()), S_OK);
    VARIANT missing;
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    BSTR name = SysAllocString(L"Id"), op = SysAllocString(L"="), none = SysAllocString(L"");
    EXPECT_EQ(fields->AddParameter(name, exLong, number(id), op, 0, none, exParamInput, missing, missing), S_OK);
    SysFreeString(name), SysFreeString(op), SysFreeString(none);
    return fields;
}

TEST(PagingClient, RequeryCarriesTheKeyToFetchFromToAnEventSink) {
    ComPtr<_Apuntadores> pages;
    ASSERT_EQ(CoCreateInstance(CLSID_Apuntadores, nullptr, CLSCTX_INPROC_SERVER, IID__Apuntadores, pages.out_void()),
              S_OK);
    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(pages->QueryInterface(IID_IConnectionPointContainer, container.out_void()), S_OK);
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(DIID___Apuntadores, point.out()), S_OK);
    PagingSink sink;
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);

    BSTR key = SysAllocString(L"Id");
    ASSERT_EQ(pages->put_PrimaryKey(key), S_OK);
    SysFreeString(key);
    ASSERT_EQ(pages->put_MaxRows(2), S_OK);
    VARIANT_BOOL asked = VARIANT_FALSE;
    ASSERT_EQ(pages->Avanzar(&asked), S_OK);
    EXPECT_EQ(asked, VARIANT_TRUE);
    ComPtr<_Apuntador> page;
    BSTR none = SysAllocString(L"");
    ASSERT_EQ(pages->Add(row(1).get(), row(2).get(), 2, none, page.out()), S_OK);
    ASSERT_EQ(pages->Avanzar(&asked), S_OK);
    SysFreeString(none);

    ASSERT_EQ(sink.ids, (std::vector<DISPID>{2, 2}));
    EXPECT_EQ(sink.kinds, (std::vector<VARTYPE>{VT_DISPATCH, VT_DISPATCH})) << "PK goes by value, as declared";
    ASSERT_TRUE(sink.keys[0] && sink.keys[1]);
    long count = -1;
    ASSERT_EQ(sink.keys[0]->get_Count(&count), S_OK);
    EXPECT_EQ(count, 0) << "the first page is asked for with an empty key";
    ComPtr<_clsCeldo> id;
    VARIANT name = text(L"Id");
    ASSERT_EQ(sink.keys[1]->get_Item(&name, id.out()), S_OK);
    VariantClear(&name);
    VARIANT value;
    VariantInit(&value);
    ASSERT_EQ(id->get_Value(&value), S_OK);
    EXPECT_EQ(V_I4(&value), 2) << "the next page starts after the last key shown";
    BSTR op = nullptr;
    ASSERT_EQ(id->get_Operator(&op), S_OK);
    EXPECT_STREQ(op, L">");
    SysFreeString(op);

    sink.keys.clear();
    ASSERT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink.refs, 1u);
}

// The probe from its own DLL stands for a flex grid: its Enter raises EnterCell, as a grid
// does when the user enters a cell.
TEST(PagingClient, TheControlsCellEventsComeBackAsEnterCell) {
    ComPtr<_Apuntadores> pages;
    ASSERT_EQ(CoCreateInstance(CLSID_Apuntadores, nullptr, CLSCTX_INPROC_SERVER, IID__Apuntadores, pages.out_void()),
              S_OK);
    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(pages->QueryInterface(IID_IConnectionPointContainer, container.out_void()), S_OK);
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(DIID___Apuntadores, point.out()), S_OK);
    PagingSink sink;
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    ComPtr<_Probe> grid;
    ASSERT_EQ(CoCreateInstance(CLSID_Probe, nullptr, CLSCTX_INPROC_SERVER, IID__Probe, grid.out_void()), S_OK);

    const auto listeners = [&] {
        ComPtr<IConnectionPointContainer> grid_points;
        ComPtr<IConnectionPoint> grid_point;
        ComPtr<IEnumConnections> each;
        CONNECTDATA data;
        int n = 0;
        if (grid->QueryInterface(IID_IConnectionPointContainer, grid_points.out_void()) == S_OK &&
            grid_points->FindConnectionPoint(DIID___Probe, grid_point.out()) == S_OK &&
            grid_point->EnumConnections(each.out()) == S_OK)
            for (; each->Next(1, &data, nullptr) == S_OK; ++n) data.pUnk->Release();
        return n;
    };

    ASSERT_EQ(pages->putref_Control(grid.get()), S_OK);
    EXPECT_EQ(listeners(), 1);
    ComPtr<IDispatch> shown;
    ASSERT_EQ(pages->get_Control(shown.out()), S_OK);
    EXPECT_EQ(shown.get(), static_cast<IDispatch*>(grid.get()));
    EXPECT_EQ(grid->Enter(), S_OK);
    EXPECT_EQ(grid->Ring(1), S_OK);  // another event of the grid: not a cell entered
    EXPECT_EQ(sink.ids, std::vector<DISPID>{1});
    ASSERT_EQ(pages->putref_Control(nullptr), S_OK);
    EXPECT_EQ(grid->Enter(), S_OK);
    EXPECT_EQ(sink.ids.size(), 1u);
    EXPECT_EQ(listeners(), 0) << "a control no longer shown is no longer listened to";

    // Released while listening: the grid's connection goes with the pages.
    ASSERT_EQ(pages->putref_Control(grid.get()), S_OK);
    ASSERT_EQ(point->Unadvise(cookie), S_OK);
    point.reset(), container.reset(), pages.reset();
    EXPECT_EQ(listeners(), 0);
    EXPECT_EQ(sink.refs, 1u);
}

}  // namespace
}  // namespace celdo::testing

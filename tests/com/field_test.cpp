// clsCeldo and clsCeldos as compiled hosts meet them: the Chance event through a connection
// point, early-bound calls through the vtables, error info, one identity per object.
#include <gtest/gtest.h>

#include <olectl.h>

#include <vector>

#include "Celdo_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

VARIANT missing() {
    VARIANT out;
    VariantInit(&out);
    V_VT(&out) = VT_ERROR;
    V_ERROR(&out) = DISP_E_PARAMNOTFOUND;
    return out;
}

class FieldClient : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(CoCreateInstance(CLSID_clsCeldo, nullptr, CLSCTX_INPROC_SERVER, IID__clsCeldo, field.out_void()), S_OK);
    }
    ComPtr<_clsCeldo> field;
};

TEST_F(FieldClient, ChanceIsRaisedWhenTheValueChanges) {
    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(field->QueryInterface(IID_IConnectionPointContainer, container.out_void()), S_OK);
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(DIID___clsCeldo, point.out()), S_OK);
    RecordingSink sink(DIID___clsCeldo);
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);

    ASSERT_EQ(field->put_DataType(exLong), S_OK);
    EXPECT_EQ(field->put_Value(number(1)), S_OK);
    EXPECT_EQ(sink.ids.size(), 1u);
    EXPECT_EQ(field->put_Value(number(1)), S_OK);
    EXPECT_EQ(sink.ids.size(), 1u) << "the same value is no change";
    EXPECT_EQ(field->put_Value(number(2)), S_OK);
    EXPECT_EQ(field->Undo(), S_OK);
    EXPECT_EQ(sink.ids, (std::vector<DISPID>{1, 1, 1})) << "Chance is event number 1";
    EXPECT_EQ(sink.argument_counts, (std::vector<UINT>{0, 0, 0})) << "Chance has no arguments";
    VARIANT empty;
    VariantInit(&empty);
    EXPECT_EQ(field->put_Value(empty), S_OK);
    EXPECT_EQ(sink.ids.size(), 3u) << "clearing raises nothing";

    ASSERT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink.refs, 1u);
}

TEST_F(FieldClient, VtableCallsReadAndWriteMetadata) {
    BSTR name = SysAllocString(L"strNombre");
    ASSERT_EQ(field->put_Name(name), S_OK);
    SysFreeString(name);
    BSTR caption = nullptr;
    ASSERT_EQ(field->get_Caption(&caption), S_OK);
    EXPECT_STREQ(caption, L"Nombre");
    SysFreeString(caption);
    ASSERT_EQ(field->put_DataType(exCurrency), S_OK);
    long size = 0;
    ASSERT_EQ(field->get_Size(&size), S_OK);
    EXPECT_EQ(size, 30);
    short rounding = 0;
    field->get_Redondeo(&rounding);
    EXPECT_EQ(rounding, 4);
}

TEST_F(FieldClient, ARefusedValueReturnsTheErrorWithItsInfo) {
    BSTR name = SysAllocString(L"Codigo");
    field->put_Name(name);
    SysFreeString(name);
    field->put_DataType(exLong);
    VARIANT text;
    VariantInit(&text);
    V_VT(&text) = VT_BSTR;
    V_BSTR(&text) = SysAllocString(L"diez");
    EXPECT_EQ(field->put_Value(text), static_cast<HRESULT>(0x80040000));
    VariantClear(&text);
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.out()), S_OK);
    BSTR source = nullptr, description = nullptr;
    info->GetSource(&source);
    info->GetDescription(&description);
    EXPECT_STREQ(source, L"Celdo_Codigo");
    EXPECT_STREQ(description, L"Tipo de dato no valido para : Codigo");
    SysFreeString(source);
    SysFreeString(description);
}

TEST_F(FieldClient, ValidateRequiredWritesTheMessageBack) {
    field->put_Required(VARIANT_TRUE);
    BSTR caption = SysAllocString(L"Nombre");
    field->put_Caption(caption);
    SysFreeString(caption);
    VARIANT empty_text;
    VariantInit(&empty_text);
    V_VT(&empty_text) = VT_BSTR;
    V_BSTR(&empty_text) = SysAllocString(L"");
    field->put_Value(empty_text);
    VariantClear(&empty_text);
    BSTR msg = SysAllocString(L"");
    VARIANT ok;
    VariantInit(&ok);
    ASSERT_EQ(field->ValidateRequired(&msg, exInsert, &ok), S_OK);
    EXPECT_EQ(V_VT(&ok), VT_BOOL);
    EXPECT_EQ(V_BOOL(&ok), VARIANT_FALSE);
    EXPECT_STREQ(msg, L"El campo Nombre no puede contener un valor nulo. Escriba un valor en este campo.\r\n");
    SysFreeString(msg);
}

TEST_F(FieldClient, CollectionsHandOutTheSameFieldObjects) {
    ComPtr<_clsCeldos> children;
    ASSERT_EQ(field->get_Children(children.out()), S_OK);
    ComPtr<_clsCeldos> again;
    field->get_Children(again.out());
    EXPECT_EQ(children.get(), again.get());

    BSTR name = SysAllocString(L"Hijo");
    BSTR source = SysAllocString(L"");
    BSTR empty = SysAllocString(L"");
    VARIANT none = missing();
    ComPtr<_clsCeldo> added;
    ASSERT_EQ(children->Add(name, source, exText, 0, -1, VARIANT_FALSE, empty, empty, none, none, none, none, added.out()),
              S_OK);
    VARIANT key;
    VariantInit(&key);
    V_VT(&key) = VT_BSTR;
    V_BSTR(&key) = SysAllocString(L" hijo ");
    ComPtr<_clsCeldo> found;
    ASSERT_EQ(children->get_Item(&key, found.out()), S_OK);
    EXPECT_EQ(found.get(), added.get());
    EXPECT_STREQ(V_BSTR(&key), L"hijo") << "the trimmed key is written back";
    VariantClear(&key);
    SysFreeString(name);
    SysFreeString(source);
    SysFreeString(empty);

    VARIANT_BOOL has = VARIANT_FALSE;
    field->get_HasChildren(&has);
    EXPECT_EQ(has, VARIANT_TRUE);
}

}  // namespace
}  // namespace celdo::testing

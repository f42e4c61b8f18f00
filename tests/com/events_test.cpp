// The library's events as a compiled host with WithEvents receives them through connection
// points (Wine's script host cannot sink events): a field's Chance, and the pages' Requery, with
// the key to fetch from, and EnterCell, from the cell events of the control shown.
#include <olectl.h>

#include "CeldoProbe_h.h"
#include "tests/com/com_test.hpp"

namespace celdo::testing {
namespace {

TEST(Events, ChanceIsRaisedWhenTheValueChangesToAdvisedSinksUntilTheyLeave) {
    auto field = create<_clsCeldo>(CLSID_clsCeldo);
    ComPtr<IProvideClassInfo2> info;
    ComPtr<IConnectionPoint> none;
    GUID source{};
    ASSERT_EQ(field->QueryInterface(IID_IProvideClassInfo2, info.put_void()), S_OK);
    ASSERT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source), S_OK);
    EXPECT_TRUE(IsEqualGUID(source, DIID___clsCeldo));
    EXPECT_EQ(find_point(field.get(), IID_IDispatch, none), CONNECT_E_NOCONNECTION);
    RecordingSink sink(DIID___clsCeldo);
    Connection connection(field.get(), DIID___clsCeldo, &sink);
    ASSERT_TRUE(connection.advised);
    // Which changes raise it is the native tests' (the rows of tests/fields/field_rules.tsv).
    ASSERT_EQ(field->put_DataType(exLong), S_OK);
    EXPECT_EQ(field->put_Value(number(1)), S_OK);
    EXPECT_EQ(sink.ids, (std::vector<DISPID>{1})) << "Chance is event 1";
    EXPECT_TRUE(sink.kinds.empty()) << "Chance has no arguments";
    EXPECT_EQ(sink.methods, 1u) << "events come as method calls";
    ASSERT_EQ(connection.unadvise(), S_OK);
    EXPECT_EQ(connection.point->Unadvise(connection.cookie), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(field->put_Value(number(5)), S_OK);
    EXPECT_EQ(sink.ids.size(), 1u) << "nothing reaches a sink that left";
    EXPECT_EQ(sink.refs, 1u) << "the connection point released the sink";
}

// A row of one field, Id, holding `id`.
ComPtr<_clsCeldos> key_row(long id) {
    auto fields = create<_clsCeldos>(CLSID_clsCeldos);
    EXPECT_EQ(add_field(fields.get(), L"Id", number(id)), S_OK);
    return fields;
}

// The probe from its own DLL stands for a flex grid: its Enter raises EnterCell, as a grid does
// when the user enters a cell.
TEST(Events, PagesAskForTheirRowsAndTellWhenACellOfTheirControlIsEntered) {
    auto pages = create<_Apuntadores>(CLSID_Apuntadores);
    auto grid = create<_Probe>(CLSID_Probe);
    RecordingSink sink(DIID___Apuntadores);
    Connection connection(pages.get(), DIID___Apuntadores, &sink);
    ASSERT_TRUE(connection.advised);
    ComPtr<IConnectionPoint> grid_point;
    ASSERT_EQ(find_point(grid.get(), DIID___Probe, grid_point), S_OK);
    const auto listening = [&] {
        ComPtr<IEnumConnections> each;
        CONNECTDATA data;
        int n = 0;
        if (grid_point->EnumConnections(each.put()) == S_OK)
            for (; each->Next(1, &data, nullptr) == S_OK; ++n) data.pUnk->Release();
        return n;
    };

    ASSERT_EQ(pages->put_PrimaryKey(Bstr(L"Id")), S_OK);
    ASSERT_EQ(pages->put_MaxRows(2), S_OK);
    VARIANT_BOOL asked = VARIANT_FALSE;
    ComPtr<_Apuntador> page;
    ASSERT_EQ(pages->Avanzar(&asked), S_OK);
    ASSERT_EQ(pages->Add(key_row(1).get(), key_row(2).get(), 2, Bstr(L""), page.put()), S_OK);
    ASSERT_EQ(pages->Avanzar(&asked), S_OK);
    EXPECT_EQ(asked, VARIANT_TRUE);
    ASSERT_EQ(sink.ids, (std::vector<DISPID>{2, 2})) << "Requery is event 2";
    EXPECT_EQ(sink.kinds, (std::vector<VARTYPE>{VT_DISPATCH, VT_DISPATCH})) << "PK goes by value, as declared";
    // Each key reaches the host as a row it can read: empty for the first page, the last key shown
    // for the next (which key is the native tests' concern, tests/paging).
    const auto fields_in = [&](size_t i) {
        ComPtr<_clsCeldos> key;
        long count = -1;
        if (V_DISPATCH(&sink.firsts[i])->QueryInterface(IID__clsCeldos, key.put_void()) == S_OK) key->get_Count(&count);
        return count;
    };
    EXPECT_EQ(std::pair(fields_in(0), fields_in(1)), std::pair(0L, 1L));

    ASSERT_EQ(pages->putref_Control(grid.get()), S_OK);
    EXPECT_EQ(listening(), 1);
    EXPECT_EQ(grid->Enter(), S_OK);
    EXPECT_EQ(sink.ids.back(), 1) << "EnterCell is event 1";
    ASSERT_EQ(pages->putref_Control(nullptr), S_OK);
    EXPECT_EQ(grid->Enter(), S_OK);
    EXPECT_EQ(sink.ids.size(), 3u);
    EXPECT_EQ(listening(), 0) << "a control no longer shown is no longer listened to";
}

}  // namespace
}  // namespace celdo::testing

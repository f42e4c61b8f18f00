// Row sources: the parsed value list, its column header and the choosable controls.
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

TEST(RowSource, AValueListIsCutIntoColumnsByRowsAndQueriesAreLeftToTheHost) {
    const std::tuple<uint8_t, const char16_t*, std::u16string> cases[] = {
        // column count, row source: the cells, row by row (without a count, one column)
        {2, u"1;Uno;2;Dos", u"1|Uno;2|Dos"}, {0, u" A ; B,C ", u"A;B;C"}, {0, u"Select Codigo From Tallas", u"Empty"}};
    for (const auto& [columns, source, expected] : cases) {
        auto f = field_of(exText);
        f->let_ColumnCount(columns);
        f->let_RowSource(source);
        const Variant list = f->get_GetRowSource();
        std::u16string cells = list.is_empty() ? u"Empty" : u"";
        for (int32_t r = 0; list.is_array() && r <= list.as_array().ubound(2); ++r)
            for (int32_t c = 0; c <= list.as_array().ubound(1); ++c)
                cells += (c ? u"|" : r ? u";" : u"") + automation::to_string(list.as_array().at(c, r));
        EXPECT_EQ(cells, expected) << automation::utf16_to_utf8(source);
    }
}

TEST(RowSource, HeadsBecomeTheColumnHeaderWhichIsTheReferenceTheHostSets) {
    auto f = field_of(exText);
    f->let_ColumnCount(3);
    f->let_ColumnHeads(true);
    f->let_RowSource(u"Codigo;Nombre");
    EXPECT_TRUE(f->get_GetRowSource().as_array().at(0, 0).is_empty());
    // A column without a head is numbered from 1.
    EXPECT_EQ(names_of(*f->GetColumnHeader()), u"Codigo,Nombre,Celdo3");
    auto header = make_ref<clsCeldos>();
    f->set_ColumnHeader(header);
    EXPECT_EQ(f->GetColumnHeader().get(), header.get());
}

TEST(RowSource, DisplayControlTypeListsTheChoosableControlsWithSpanishNames) {
    const automation::Array a = field_of(exText)->get_DisplayControlType().as_array();
    ASSERT_EQ(a.ubound(2), 5);
    EXPECT_EQ(std::tuple(a.at(0, 0), a.at(1, 0), a.at(0, 5), a.at(1, 3)),
              std::tuple(Variant(static_cast<int32_t>(exTextBox)), Variant(u"Cuadro de texto"),
                         Variant(static_cast<int32_t>(exCheckBox)), Variant(u"Botón de opciones")));
}

}  // namespace
}  // namespace celdo::testing

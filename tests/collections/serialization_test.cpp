// The collection's text forms with long texts (the forms' rules are rows of collection_rules.tsv).
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

// Every character the escapes, the entities and the byte form touch comes back, and texts
// beyond 32,767 characters work like short ones rather than overflowing.
TEST(Row, LongTextsGoThroughEveryForm) {
    auto row = make_ref<clsCeldos>();
    std::u16string memo;
    for (int i = 0; i < 20000; ++i) memo += u"línea 1.5 & &amp; <b> \"'= /&#46; ÑÓ€\u1000\U0001F600\t[]!\r\n";
    ASSERT_GT(memo.size(), 300000u);
    add_field(*row, u"Memo", exMemo, Variant(memo));
    add_field(*row, u"Fin", exText, Variant(u"x"));
    for (std::u16string encode : {u"", u"UTF-8", u"ISO-8859-1"}) {
        std::u16string attributes = row->get_XMLAttribute(encode);
        clsCeldos back;
        ASSERT_TRUE(back.Parse(encode, attributes));
        EXPECT_EQ(std::tuple(back.at(0).get_Value(), back.at(1).get_Value()), std::tuple(Variant(memo), Variant(u"x")));

        std::u16string elements = row->XML(encode);
        int32_t position = 0;
        auto loaded = make_ref<clsCeldo>();
        loaded->LoadElement(encode, position, elements);
        EXPECT_EQ(loaded->get_OriginalValue(), Variant(memo));
        loaded->LoadElement(encode, position, elements);
        EXPECT_EQ(std::tuple(loaded->get_Name(), position), std::tuple(u"Fin", static_cast<int32_t>(elements.size())));
    }
}

}  // namespace
}  // namespace celdo::testing

// The name list cutter that ranges read their lists with (the ranges themselves are rows of
// collection_rules.tsv).
#include "tests/fields/field_support.hpp"

#include "xml/reader.hpp"

namespace celdo::testing {
namespace {

std::u16string joined(const std::vector<std::u16string>& items) {
    std::u16string out;
    for (const auto& item : items) out += u"[" + item + u"]";
    return out;
}

TEST(CutNames, TrimsSkipsEmptyItemsAndKeepsQuotedCommas) {
    const auto cut = [](std::u16string_view list) { return joined(xml::cut_names(list)); };
    expect_rows<std::u16string>({
        {cut(u"Codigo, Nombre"), u"[Codigo][Nombre]"}, {cut(u"Codigo,,  ,Nombre,"), u"[Codigo][Nombre]"},
        {cut(u" \"Total, neto\" ,A"), u"[Total, neto][A]"},
        {cut(u"\"a\"b\",c"), u"[a\"b][c]"},  // the quote that a comma follows closes,
        {cut(u"\"a\"b"), u"[a][b]"},          // else the next quote,
        {cut(u"\"abierto, x"), u"[abierto, x]"},  // else the end
        {cut(u""), u""}, {cut(u"  "), u""},
    });
}

}  // namespace
}  // namespace celdo::testing

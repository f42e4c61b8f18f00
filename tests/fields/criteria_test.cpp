// Operators and conjunctions of search criteria.
#include "tests/fields/field_support.hpp"

namespace celdo::testing {
namespace {

// Each value given in turn: what is kept, or "!" and the refusal's description (the old value stays).
void check(void (clsCeldo::*let)(const std::u16string&), std::u16string (clsCeldo::*get)() const,
           std::initializer_list<std::pair<std::u16string, std::u16string>> cases) {
    auto made = field_of(exText);
    clsCeldo& f = *made;
    f.let_Caption(u"Nombre");
    for (const auto& [given, kept] : cases) {
        const std::u16string before = (f.*get)();
        if (kept[0] != u'!') {
            (f.*let)(given);
            EXPECT_EQ((f.*get)(), kept) << automation::utf16_to_utf8(given);
            continue;
        }
        const auto e = error_of([&] { (f.*let)(given); });
        EXPECT_EQ(std::tuple(e.number(), e.source(), e.description(), (f.*get)()),
                  std::tuple(-2147221504, std::u16string(u"Celdo"), kept.substr(1), before));
    }
}

TEST(Field, OperatorsAreStoredByGroupAndUnknownWordsRefused) {
    check(&clsCeldo::let_Operator, &clsCeldo::get_Operator, {
        {u" like ", u" LIKE "}, {u"not likes", u"NOT LIKES"}, {u" >= ", u" >= "}, {u"<>", u"<>"},
        {u"isnull", u"IS NULL"}, {u"Is Null", u"IS NULL"}, {u"notisnull", u"NOT IS NULL"},
        {u"NOT ISNULL", u"NOT IS NULL"}, {u"in likes", u"IN LIKES"}, {u"between", u"BETWEEN"}, {u"LIKE", u"LIKE"},
        {u"CONTAINS", u"!Operator no valido para el campo Nombre"}, {u"", u"!Operator no valido para el campo Nombre"},
        {u"==", u"!Operator no valido para el campo Nombre"},
    });
}

TEST(Field, ConjunctionsKeepTheCallersSpellingOfAndOrAndEmpty) {
    check(&clsCeldo::let_Conjunction, &clsCeldo::get_Conjunction, {
        {u"or", u"or"}, {u" AND ", u" AND "}, {u"", u""}, {u"XOR", u"!Conjunción no valida Nombre"},
    });
}

}  // namespace
}  // namespace celdo::testing

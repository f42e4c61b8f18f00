// Operators and conjunctions of search criteria.
#include <gtest/gtest.h>

#include "fields/clsCeldo.hpp"
#include "tests/fields/field_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::fields {
namespace {

using celdo::testing::error_of;
using celdo::testing::field_of;

struct OperatorCase {
    const char16_t* given;
    const char16_t* stored;
};

TEST(FieldOperator, StoresEachGroupItsOwnWay) {
    const OperatorCase cases[] = {
        {u" like ", u" LIKE "},        {u"not likes", u"NOT LIKES"}, {u" >= ", u" >= "},
        {u"<>", u"<>"},                {u"isnull", u"IS NULL"},      {u"Is Null", u"IS NULL"},
        {u"notisnull", u"NOT IS NULL"}, {u"NOT ISNULL", u"NOT IS NULL"}, {u"in likes", u"IN LIKES"},
        {u"between", u"BETWEEN"},
    };
    for (const auto& c : cases) {
        auto f = field_of(exText);
        f->let_Operator(c.given);
        EXPECT_EQ(f->get_Operator(), c.stored) << automation::utf16_to_utf8(c.given);
    }
}

TEST(FieldOperator, UnknownWordsAreRefusedAndTheOldOperatorStays) {
    auto f = field_of(exText);
    f->let_Caption(u"Nombre");
    f->let_Operator(u"LIKE");
    for (const char16_t* bad : {u"CONTAINS", u"", u"=="}) {
        auto e = error_of([&] { f->let_Operator(bad); });
        EXPECT_EQ(e.number(), -2147221504);
        EXPECT_EQ(e.source(), u"Celdo");
        EXPECT_EQ(e.description(), u"Operator no valido para el campo Nombre");
    }
    EXPECT_EQ(f->get_Operator(), u"LIKE");
}

TEST(FieldConjunction, KeepsTheCallersSpellingOfAndOrAndEmpty) {
    auto f = field_of(exText);
    f->let_Caption(u"Nombre");
    f->let_Conjunction(u"or");
    EXPECT_EQ(f->get_Conjunction(), u"or");
    f->let_Conjunction(u" AND ");
    EXPECT_EQ(f->get_Conjunction(), u" AND ");
    f->let_Conjunction(u"");
    EXPECT_EQ(f->get_Conjunction(), u"");
    auto e = error_of([&] { f->let_Conjunction(u"XOR"); });
    EXPECT_EQ(e.description(), u"Conjunción no valida Nombre");
    EXPECT_EQ(f->get_Conjunction(), u"");
}

}  // namespace
}  // namespace celdo::fields

// The rows of field_rules.tsv and collection_rules.tsv, each on a new field or collection.
#include "tests/fields/field_support.hpp"

#include "tests/support/rules.hpp"

namespace celdo::testing {
namespace {

constexpr std::string_view kFieldRules =
#include "field_rules.inc"
    ;
constexpr std::string_view kCollectionRules =
#include "collection_rules.inc"
    ;

// A field named Campo, of type Text, as the table's header says.
TEST(FieldRules, EveryRowOfTheTable) {
    expect_every_row<clsCeldo>(kFieldRules, [](clsCeldo& f) { f.let_Name(u"Campo"); });
}
TEST(CollectionRules, EveryRowOfTheTable) { expect_every_row<clsCeldos>(kCollectionRules); }

}  // namespace
}  // namespace celdo::testing

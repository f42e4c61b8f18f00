// The rows of field_rules.tsv and collection_rules.tsv, each on a new field or collection.
#include "tests/fields/field_support.hpp"

#include "collections/CeldosSeguimiento.hpp"
#include "collections/clsRegistro.hpp"
#include "tests/support/rules.hpp"

namespace celdo::testing {
namespace {

constexpr std::string_view kFieldRules =
#include "field_rules.inc"
    ;
constexpr std::string_view kCollectionRules =
#include "collection_rules.inc"
    ;

// The classes a row makes with New.
Ref<automation::Object> make(std::string_view class_name) {
    if (class_name == "clsCeldo") return make_ref<clsCeldo>();
    if (class_name == "clsCeldos") return make_ref<clsCeldos>();
    if (class_name == "clsRegistro") return make_ref<clsRegistro>();
    if (class_name == "CeldosSeguimiento") return make_ref<CeldosSeguimiento>();
    return no_class(class_name);
}

// A field named Campo, of type Text, as the table's header says.
TEST(FieldRules, EveryRowOfTheTable) {
    expect_every_row<clsCeldo>(kFieldRules, [](clsCeldo& f) { f.let_Name(u"Campo"); }, make);
}
TEST(CollectionRules, EveryRowOfTheTable) { expect_every_row<clsCeldos>(kCollectionRules, [](clsCeldos&) {}, make); }

}  // namespace
}  // namespace celdo::testing

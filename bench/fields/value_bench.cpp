// Value Let per data type: validation, coercion and storage of one assignment.
#include <benchmark/benchmark.h>

#include "fields/clsCeldo.hpp"

namespace celdo::fields {
namespace {

using automation::Variant;

void AssignValue(benchmark::State& state, ExDataType type, Variant first, Variant second) {
    auto field = automation::make_ref<clsCeldo>();
    field->let_DataType(type);
    bool flip = false;
    for (auto _ : state) {
        field->let_Value(flip ? first : second);
        flip = !flip;
    }
}

BENCHMARK_CAPTURE(AssignValue, Text, exText, Variant(u"  Juan Pérez  "), Variant(u"Ana"));
BENCHMARK_CAPTURE(AssignValue, Long, exLong, Variant(u"1234"), Variant(5678));
BENCHMARK_CAPTURE(AssignValue, Currency, exCurrency, Variant(u"$1,234.50"), Variant(99.5));
BENCHMARK_CAPTURE(AssignValue, Date, exDate, Variant(u"2024-05-17"), Variant(u"17/05/2024"));

}  // namespace
}  // namespace celdo::fields

// The conversions every assigned value goes through.
#include <benchmark/benchmark.h>

#include "automation/convert.hpp"

namespace celdo::automation {
namespace {

void TextToDouble(benchmark::State& state) {
    const Variant text(u"1,234,567.891");
    for (auto _ : state) benchmark::DoNotOptimize(change_type(text, VarType::Double));
}
BENCHMARK(TextToDouble);

void TextToCurrency(benchmark::State& state) {
    const Variant text(u"$1,234.5678");
    for (auto _ : state) benchmark::DoNotOptimize(change_type(text, VarType::Currency));
}
BENCHMARK(TextToCurrency);

void TextToDate(benchmark::State& state) {
    const Variant text(u"2024-05-17 09:30:00");
    for (auto _ : state) benchmark::DoNotOptimize(change_type(text, VarType::Date));
}
BENCHMARK(TextToDate);

void DoubleToText(benchmark::State& state) {
    const Variant number(1234567.891);
    for (auto _ : state) benchmark::DoNotOptimize(change_type(number, VarType::String));
}
BENCHMARK(DoubleToText);

void CopyStringVariant(benchmark::State& state) {
    const Variant text(u"a text long enough to live outside the small-string buffer");
    for (auto _ : state) {
        Variant copy = text;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(CopyStringVariant);

}  // namespace
}  // namespace celdo::automation

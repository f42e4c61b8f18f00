// The conversions every assigned value goes through.
#include <benchmark/benchmark.h>

#include "automation/convert.hpp"
#include "automation/language.hpp"

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

// IsNumeric and IsDate over texts as people type them into numeric and date fields, in both
// conventions; half of them are refused.
void RecognizeTypedNumbers(benchmark::State& state) {
    const Variant texts[] = {Variant(u"1234"), Variant(u" -12.5 "), Variant(u"(1,234.50)"), Variant(u"$99"),
                             Variant(u"1.5E+3"), Variant(u"&HFF"), Variant(u"12abc"), Variant(u"1.234,5"),
                             Variant(u""), Variant(u"1 2")};
    for (auto _ : state) {
        for (const Variant& t : texts) benchmark::DoNotOptimize(is_numeric(t));
    }
}
BENCHMARK(RecognizeTypedNumbers);

void RecognizeTypedDates(benchmark::State& state) {
    const Variant texts[] = {Variant(u"5/17/2024"), Variant(u"17/05/2024"), Variant(u"May 17, 2024"),
                             Variant(u"2024-05-17 09:30"), Variant(u"9:30 PM"), Variant(u"17.05.2024"),
                             Variant(u"1 2 3"), Variant(u"0.0"), Variant(u"abc"), Variant(u"31/02/2024")};
    for (auto _ : state) {
        for (const Variant& t : texts) benchmark::DoNotOptimize(is_date(t));
    }
}
BENCHMARK(RecognizeTypedDates);

void RoundToDigits(benchmark::State& state) {
    const Variant value(1234.56785);
    for (auto _ : state) benchmark::DoNotOptimize(lang::Round(value, 4));
}
BENCHMARK(RoundToDigits);

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

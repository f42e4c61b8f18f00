// The single-pass entity coders against the row-by-row reference, on short and long texts,
// and a 50-field row written as an attribute list and parsed back.
#include <benchmark/benchmark.h>

#include <random>

#include "automation/text.hpp"
#include "collections/clsCeldos.hpp"
#include "tests/xml/entity_reference.hpp"
#include "xml/entities.hpp"

namespace {

using namespace celdo;

// Business text: words with accents, numbers with full stops, a few escapes.
std::u16string sample(size_t length) {
    static const char16_t* words[] = {u"Peña ", u"código ", u"1.250,50 ", u"S.A. ", u"Núñez ", u"<b> ", u"& ",
                                      u"Ávila ", u"dirección ", u"01/02/2003 ", u"texto ", u"¡sí! "};
    std::mt19937 random(42);
    std::u16string out;
    while (out.size() < length) out += words[random() % std::size(words)];
    out.resize(length);
    return out;
}

void encode_args(benchmark::internal::Benchmark* b) { b->Arg(100)->Arg(10 * 1024); }

void BM_EncodeSinglePass(benchmark::State& state) {
    const std::u16string text = sample(static_cast<size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(xml::encode_entities(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size() * 2));
}
BENCHMARK(BM_EncodeSinglePass)->Apply(encode_args);

void BM_EncodeRowByRow(benchmark::State& state) {
    const std::u16string text = sample(static_cast<size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(xml::reference::encode(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size() * 2));
}
BENCHMARK(BM_EncodeRowByRow)->Apply(encode_args);

void BM_DecodeSinglePass(benchmark::State& state) {
    const std::u16string text = xml::encode_entities(sample(static_cast<size_t>(state.range(0))));
    for (auto _ : state) benchmark::DoNotOptimize(xml::decode_entities(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size() * 2));
}
BENCHMARK(BM_DecodeSinglePass)->Apply(encode_args);

void BM_DecodeRowByRow(benchmark::State& state) {
    const std::u16string text = xml::encode_entities(sample(static_cast<size_t>(state.range(0))));
    for (auto _ : state) benchmark::DoNotOptimize(xml::reference::decode(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size() * 2));
}
BENCHMARK(BM_DecodeRowByRow)->Apply(encode_args);

// A 50-field row of short business values: XMLAttribute, then Parse into an empty row.
void BM_RowAttributesRoundTrip(benchmark::State& state) {
    collections::clsCeldos row;
    const automation::Variant none = automation::Variant::missing();
    for (int i = 0; i < 50; ++i) {
        row.Add(automation::utf8_to_utf16("Campo" + std::to_string(i)), u"", fields::exText, 0, -1, false, u"", u"",
                automation::Variant(sample(20 + static_cast<size_t>(i % 20))), none, none, none);
    }
    for (auto _ : state) {
        std::u16string text = row.get_XMLAttribute(u"UTF-8");
        collections::clsCeldos back;
        back.Parse(u"UTF-8", text);
        benchmark::DoNotOptimize(back.size());
    }
}
BENCHMARK(BM_RowAttributesRoundTrip);

}  // namespace

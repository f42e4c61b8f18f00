// Item by key and by position on small and large collections: the cost per call must not grow
// with the collection.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "bench/support/rows.hpp"

namespace celdo::collections {
namespace {

using automation::Variant;

// A fixed random walk over `distinct` fields spread evenly across the collection (all of them
// when distinct is 0). A small working set measures the cost of the lookup itself; a walk over
// every field of a large collection mostly measures memory latency.
std::vector<int> walk(int count, int distinct) {
    const int spread = distinct > 0 ? std::min(distinct, count) : count;
    std::vector<int> order(4096);
    std::mt19937 random(12345);
    std::uniform_int_distribution<int> pick(0, spread - 1);
    for (int& i : order) i = static_cast<int>(static_cast<int64_t>(pick(random)) * count / spread);
    return order;
}

void ItemByKey(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    auto row = bench::text_row(count);
    std::vector<Variant> keys;
    for (int i : walk(count, static_cast<int>(state.range(1)))) keys.emplace_back(bench::field_name(i));
    size_t at = 0;
    for (auto _ : state) {
        Variant key = keys[at++ & 4095];
        benchmark::DoNotOptimize(row->get_Item(key));
    }
}
BENCHMARK(ItemByKey)->ArgNames({"fields", "working_set"})->Args({1000, 256})->Args({100000, 256})
    ->Args({1000, 0})->Args({100000, 0});

void ItemByPosition(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    auto row = bench::text_row(count);
    std::vector<Variant> positions;
    for (int i : walk(count, static_cast<int>(state.range(1)))) positions.emplace_back(i + 1);
    size_t at = 0;
    for (auto _ : state) {
        Variant position = positions[at++ & 4095];
        benchmark::DoNotOptimize(row->get_Item(position));
    }
}
BENCHMARK(ItemByPosition)->ArgNames({"fields", "working_set"})->Args({1000, 256})->Args({100000, 256})
    ->Args({1000, 0})->Args({100000, 0});

}  // namespace
}  // namespace celdo::collections

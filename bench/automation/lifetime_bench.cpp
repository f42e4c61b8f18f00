// What object lifetime costs: making and releasing fields (every object joins its thread's
// registry), a collection pass over objects that are all still held (the price a host pays for
// cycles it never makes), and a pass that frees rows caught in cycles. Passes must stay linear
// in the objects alive.
#include <benchmark/benchmark.h>

#include <vector>

#include "automation/lifetime.hpp"
#include "bench/support/rows.hpp"

namespace celdo::collections {
namespace {

using automation::ObjectRegistry;
using automation::Ref;
using automation::Variant;

const Variant kNone = Variant::missing();

// A row of 20 fields made and dropped: the registry's bookkeeping is on every object made.
void MakeAndReleaseRow(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(bench::text_row(20));
    ObjectRegistry::current().collect();
    state.SetItemsProcessed(state.iterations() * 21);
}
BENCHMARK(MakeAndReleaseRow);

// A pass over rows that are all held: nothing to free, every object visited.
void CollectHeld(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    std::vector<Ref<clsCeldos>> held;
    for (int i = 0; i < rows; ++i) held.push_back(bench::text_row(20));
    auto& registry = ObjectRegistry::current();
    registry.collect();
    for (auto _ : state) benchmark::DoNotOptimize(registry.collect());
    state.counters["objects"] = static_cast<double>(registry.live());
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(registry.live()));
}
BENCHMARK(CollectHeld)->Arg(50)->Arg(5000)->Unit(benchmark::kMicrosecond);

// Rows that hold themselves through a field's children, dropped and then freed by one pass.
void CollectCycles(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    auto& registry = ObjectRegistry::current();
    size_t freed = 0;
    for (auto _ : state) {
        state.PauseTiming();
        for (int i = 0; i < rows; ++i) {
            auto row = bench::text_row(20);
            Variant first(int32_t{1});
            row->get_Item(first)->get_Children()->Appends(row, kNone, kNone, u"");
        }
        state.ResumeTiming();
        freed += registry.collect();
    }
    state.SetItemsProcessed(static_cast<int64_t>(freed));
}
BENCHMARK(CollectCycles)->Arg(50)->Arg(5000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace celdo::collections

// Filling a tree view from rows that name their parents: the rows are placed parent first
// through one index by key, so the cost grows with the rows, never with rows times parents.
// Rows come children before parents (the worst order for a naive fill), in a tree four wide.
#include <benchmark/benchmark.h>

#include "automation/convert.hpp"
#include "services/ISService.hpp"

namespace celdo::services {
namespace {

using automation::Argument;
using automation::Variant;

// A tree view whose Nodes collection accepts every node and counts them.
class TreeDouble final : public automation::Object {
public:
    int64_t added = 0;
    std::u16string type_name() const override { return u"TreeView"; }
    std::optional<int32_t> member_id(std::u16string_view name) override {
        if (name == u"Nodes") return 1;
        if (name == u"Add") return 2;
        return 3;
    }
    Variant invoke(int32_t member, uint16_t, std::span<Argument>) override {
        if (member == 1) return Variant(automation::Ref<automation::Object>(this));
        if (member == 2) {
            ++added;
            return Variant(automation::Ref<automation::Object>(this));
        }
        return {};
    }
};

Variant tree_rows(int32_t rows) {
    auto cells = automation::Array::matrix(3, rows);
    for (int32_t r = 0; r < rows; ++r) {
        const int32_t key = rows - r;  // children first
        cells.at(0, r) = Variant(key);
        cells.at(1, r) = key == 1 ? Variant(u"") : Variant((key + 2) / 4);
        cells.at(2, r) = Variant(u"Nodo");
    }
    return Variant(std::move(cells));
}

void FillTreeView(benchmark::State& state) {
    const auto rows = static_cast<int32_t>(state.range(0));
    const Variant data = tree_rows(rows);
    ISService service;
    auto tree = automation::make_ref<TreeDouble>();
    ISService::Object control = tree;
    for (auto _ : state) service.FillTreeView(control, data, Variant::missing(), Variant::missing(), u"");
    if (tree->added != static_cast<int64_t>(rows) * state.iterations()) state.SkipWithError("nodes were lost");
    state.SetComplexityN(rows);
    state.SetItemsProcessed(static_cast<int64_t>(rows) * state.iterations());
}
BENCHMARK(FillTreeView)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);

}  // namespace
}  // namespace celdo::services

// Filling a flex grid of 30,000 rows x 10 columns through late binding: every call crosses into
// the host's control, so what counts is how many calls a fill makes (one TextMatrix per cell,
// a constant number per row) and that no member name is looked up per cell.
#include <benchmark/benchmark.h>

#include <map>

#include "automation/convert.hpp"
#include "collections/clsCeldos.hpp"
#include "services/ISService.hpp"

namespace celdo::services {
namespace {

using automation::Argument;
using automation::Variant;

constexpr int32_t kRows = 30000;
constexpr int32_t kColumns = 10;

// A grid that keeps its scalar properties and counts cells, name look-ups (GetIDsOfNames) and
// calls (Invoke), as a control behind IDispatch would see them.
class GridDouble final : public automation::Object {
public:
    int64_t lookups = 0, calls = 0, cells = 0;

    std::u16string type_name() const override { return u"MSFlexGrid"; }
    std::optional<int32_t> member_id(std::u16string_view name) override {
        ++lookups;
        auto [it, added] = ids_.emplace(std::u16string(name), static_cast<int32_t>(ids_.size() + 1));
        if (added && name == u"TextMatrix") text_matrix_ = it->second;
        return it->second;
    }
    Variant invoke(int32_t member, uint16_t call, std::span<Argument> args) override {
        ++calls;
        if (member == text_matrix_) {
            ++cells;
            return {};
        }
        if (call & automation::kLet) {
            properties_[member] = args.back().value;
            return {};
        }
        auto found = properties_.find(member);
        return found == properties_.end() ? Variant(1) : found->second;
    }

private:
    std::map<std::u16string, int32_t> ids_;
    std::map<int32_t, Variant> properties_;
    int32_t text_matrix_ = -1;
};

Variant data_array() {
    auto cells = automation::Array::matrix(kColumns, kRows);
    for (int32_t r = 0; r < kRows; ++r) {
        for (int32_t c = 0; c < kColumns; ++c) {
            cells.at(c, r) = c % 2 ? Variant(r * 0.25 + c) : Variant(u"Texto " + std::u16string(1, char16_t(u'A' + c)));
        }
    }
    return Variant(std::move(cells));
}

// Ten fields: texts and numbers with formats, as a host's grid header has them.
automation::Ref<collections::clsCeldos> header() {
    auto fields = automation::make_ref<collections::clsCeldos>();
    for (int32_t c = 0; c < kColumns; ++c) {
        auto field = automation::make_ref<fields::clsCeldo>();
        field->let_Name(u"Columna" + std::u16string(1, char16_t(u'A' + c)));
        field->let_DataType(c % 2 ? fields::exDouble : fields::exText);
        field->let_Format(c % 2 ? u"#,##0.00" : u"");
        fields->Append(field, Variant::missing(), Variant::missing(), u"");
    }
    return fields;
}

void FillFlexGrid(benchmark::State& state) {
    const bool formatted = state.range(0) != 0;
    ISService service;
    Variant data = data_array();
    auto fields = formatted ? header() : nullptr;
    auto grid = automation::make_ref<GridDouble>();
    for (auto _ : state) service.FillFlexGrid(grid, data, fields);
    const double fills = static_cast<double>(state.iterations());
    const double cells = double{kRows} * kColumns;
    state.counters["TextMatrix_per_cell"] = static_cast<double>(grid->cells) / fills / cells;
    state.counters["calls_per_cell"] = static_cast<double>(grid->calls) / fills / cells;
    state.counters["calls_per_row_besides_cells"] = static_cast<double>(grid->calls - grid->cells) / fills / kRows;
    state.counters["name_lookups_per_fill"] = static_cast<double>(grid->lookups) / fills;
    state.counters["time_per_cell"] =
        benchmark::Counter(cells, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(FillFlexGrid)->ArgName("formatted")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace celdo::services

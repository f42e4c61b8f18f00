// Trees: tree views filled from rows that name their parents, and the same rows shown as an
// outline in a flex grid.

#include <unordered_map>
#include <vector>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "services/ISService.hpp"
#include "services/service_support.hpp"

namespace celdo::services {

using automation::LateBound;
using automation::resume_next;
using automation::Variant;

namespace {

// Columns of a tree row.
constexpr int32_t kKey = 0, kParent = 1, kText = 2, kImage = 3, kSelectedImage = 4, kTag = 5;
// TreeView's Relationship for a node added under its relative.
constexpr int16_t kTvwChild = 4;
constexpr size_t kIndentPerLevel = 4;

Variant cell(const automation::Array& cells, int32_t column, int32_t row) {
    return column <= cells.ubound(1) ? cells.at(column, row) : Variant::missing();
}

std::u16string text_cell(const automation::Array& cells, int32_t column, int32_t row) {
    const Variant value = cell(cells, column, row);
    return value.is_missing() ? std::u16string() : text_of(value);
}

// An image for Nodes.Add: what the row or the caller gives, omitted when there is none.
Variant tree_image(const Variant& given, const Variant& fallback) {
    for (const Variant* v : {&given, &fallback}) {
        if (v->is_missing() || v->is_empty() || v->is_null()) continue;
        if (automation::lang::IsNumeric(*v) && automation::to_double(*v) < 0) continue;
        return *v;
    }
    return Variant::missing();
}

// A row placed in the tree: its row in the array, its depth, and the row it hangs under (-1 for
// a top row).
struct Placed {
    int32_t row;
    int32_t level;
    int32_t parent;
};

// The rows of a tree array, parent first, each followed by its descendants, siblings in data
// order. Top rows: an empty parent or `top`, or a parent no row has. A row without a key and a
// repeated key are left out; a cycle is broken at its first row in data order. Linear in the
// rows and without recursion, whatever the depth.
std::vector<Placed> place_tree(const automation::Array& cells, const std::u16string& top) {
    const int32_t rows = cells.ubound(2) + 1;
    std::unordered_map<std::u16string, int32_t> by_key;
    std::vector<bool> kept(static_cast<size_t>(rows), false);
    for (int32_t r = 0; r < rows; ++r) {
        const std::u16string key = text_cell(cells, kKey, r);
        if (!key.empty() && by_key.emplace(key, r).second) kept[static_cast<size_t>(r)] = true;
    }
    std::vector<std::vector<int32_t>> children(static_cast<size_t>(rows));
    std::vector<int32_t> tops, parent_of(static_cast<size_t>(rows), -1);
    for (int32_t r = 0; r < rows; ++r) {
        if (!kept[static_cast<size_t>(r)]) continue;
        const std::u16string parent = text_cell(cells, kParent, r);
        const auto found = parent.empty() || parent == top ? by_key.end() : by_key.find(parent);
        if (found == by_key.end()) {
            tops.push_back(r);
            continue;
        }
        parent_of[static_cast<size_t>(r)] = found->second;
        // A row that is its own parent is reached by no one: it is a cycle of one.
        if (found->second != r) children[static_cast<size_t>(found->second)].push_back(r);
    }
    std::vector<Placed> order;
    order.reserve(static_cast<size_t>(rows));
    std::vector<bool> placed(static_cast<size_t>(rows), false);
    std::vector<Placed> pending;
    const auto walk = [&](int32_t start) {
        pending.push_back({start, 0, -1});
        while (!pending.empty()) {
            const Placed p = pending.back();
            pending.pop_back();
            if (placed[static_cast<size_t>(p.row)]) continue;
            placed[static_cast<size_t>(p.row)] = true;
            order.push_back(p);
            const auto& under = children[static_cast<size_t>(p.row)];
            for (auto c = under.rbegin(); c != under.rend(); ++c) pending.push_back({*c, p.level + 1, p.row});
        }
    };
    for (int32_t r : tops) walk(r);
    // What no root reaches hangs under a cycle. The chase up from such a row meets the cycle;
    // the cycle's first row in data order becomes a root and everything under it follows, so
    // each row is chased at most once before it is placed.
    std::vector<int32_t> chased(static_cast<size_t>(rows), -1);
    for (int32_t r = 0; r < rows; ++r) {
        if (!kept[static_cast<size_t>(r)] || placed[static_cast<size_t>(r)]) continue;
        int32_t x = r;
        while (chased[static_cast<size_t>(x)] != r) {
            chased[static_cast<size_t>(x)] = r;
            x = parent_of[static_cast<size_t>(x)];
        }
        int32_t first = x;
        for (int32_t y = parent_of[static_cast<size_t>(x)]; y != x; y = parent_of[static_cast<size_t>(y)]) first = std::min(first, y);
        walk(first);
    }
    return order;
}

}  // namespace

// ---- Tree views -----------------------------------------------------------------------------------

ISService::Object ISService::AddRootNode(Object& rtvwTree, const std::u16string& vstrClave, const std::u16string& vstrText,
                                         const Variant& vImage, const Variant& vSelImage, const std::u16string& oTag) {
    LateBound tree(rtvwTree);
    LateBound nodes(tree.get(u"Nodes"));
    LateBound node(nodes.call(u"Add", {Variant::missing(), Variant::missing(), element_key(vstrClave), vstrText,
                                       tree_image(vImage, {}), tree_image(vSelImage, {})}));
    node.let(u"Tag", {oTag});
    return node.ref();
}

ISService::Object ISService::AddNode(Object& rtvwTree, const std::u16string& vstrParent, const std::u16string& vstrClave,
                                     const std::u16string& vstrText, const Variant& vImage, const Variant& vSelImage,
                                     const std::u16string& oTag) {
    LateBound tree(rtvwTree);
    LateBound nodes(tree.get(u"Nodes"));
    LateBound node(nodes.call(u"Add", {element_key(vstrParent), kTvwChild, element_key(vstrClave), vstrText,
                                       tree_image(vImage, {}), tree_image(vSelImage, {})}));
    node.let(u"Tag", {oTag});
    return node.ref();
}

void ISService::FillTreeView(Object& rtvwTree, const Variant& vData, const Variant& Imagen, const Variant& ImagenSelect,
                             const std::u16string& vstrParent) {
    resume_next([&] {
        LateBound tree(rtvwTree);
        LateBound nodes(tree.get(u"Nodes"));
        if (vstrParent.empty()) nodes.call(u"Clear");
        const automation::Array* cells = matrix_of(vData);
        if (!cells) return;
        const bool tagged = cells->ubound(1) >= kTag;
        std::vector<bool> added(static_cast<size_t>(cells->ubound(2) + 1), false);
        for (const Placed& p : place_tree(*cells, vstrParent)) {
            // A node the tree refused takes its descendants with it: their parent is missing.
            if (p.parent >= 0 && !added[static_cast<size_t>(p.parent)]) continue;
            const Variant relative = p.parent >= 0 ? element_key(text_cell(*cells, kKey, p.parent)) : element_key(vstrParent);
            const Variant relationship = relative.is_missing() ? Variant::missing() : Variant(kTvwChild);
            resume_next([&] {
                LateBound node(nodes.call(u"Add", {relative, relationship, element_key(text_cell(*cells, kKey, p.row)),
                                                   text_cell(*cells, kText, p.row),
                                                   tree_image(cell(*cells, kImage, p.row), Imagen),
                                                   tree_image(cell(*cells, kSelectedImage, p.row), ImagenSelect)}));
                added[static_cast<size_t>(p.row)] = true;
                const Variant tag = cell(*cells, kTag, p.row);
                if (tagged && !tag.is_empty() && !tag.is_null()) node.let(u"Tag", {tag});
            });
        }
    });
}

void ISService::ExecFillTreeView(Object& rtvwTree, const std::u16string& vstrQuery, fields::exTypeRs Mode,
                                 const Variant& Imagen, const Variant& ImagenSelect, Fields& oarrParametros) {
    resume_next([&] {
        if (!connected()) return;
        Variant parameters{automation::Ref<automation::Object>(oarrParametros)};
        const std::optional<Variant> rows =
            fetch_short(vstrQuery, static_cast<int32_t>(Mode), Variant::nothing(), oarrParametros ? &parameters : nullptr,
                        nullptr);
        if (oarrParametros) oarrParametros = fields_in(parameters);
        if (rows) FillTreeView(rtvwTree, *rows, Imagen, ImagenSelect, u"");
    });
}

// The keys as the host gave them, in the tree's order: of the ticked nodes, or of every node.
Variant ISService::GetNodes(Object rtvwTree, bool obolChecked) {
    LateBound tree(rtvwTree);
    LateBound nodes(tree.get(u"Nodes"));
    const int32_t count = automation::to_long(nodes.get(u"Count"));
    std::vector<Variant> keys;
    for (int32_t i = 1; i <= count; ++i) {
        LateBound node(nodes.get(u"Item", {i}));
        if (obolChecked && !automation::to_bool(node.get(u"Checked"))) continue;
        keys.emplace_back(key_given(text_of(node.get(u"Key"))));
    }
    automation::Array list(automation::VarType::Variant, {{0, static_cast<int32_t>(keys.size())}});
    for (size_t i = 0; i < keys.size(); ++i) list.at(static_cast<int32_t>(i)) = std::move(keys[i]);
    return Variant(std::move(list));
}

// ---- The flex-grid tree ---------------------------------------------------------------------------

// The rows are laid out parent first as a grid of the shown columns (the text, indented, and
// the columns after it) and filled as FillFlexGrid fills an array; then each row gets its level
// in RowData, and rows below the first level are hidden.
void ISService::FillFlexGridTree(Object rdbgSource, Variant& vData, Fields& rHeader) {
    resume_next([&] {
        LateBound grid(rdbgSource);
        open_grid_fill(grid);
        if (automation::Array* cells = vData.is_array() && matrix_of(vData) ? &vData.array_mut() : nullptr) {
            const std::vector<Placed> order = place_tree(*cells, u"");
            std::vector<bool> parent(static_cast<size_t>(cells->ubound(2) + 1), false);
            for (const Placed& p : order) {
                if (p.parent >= 0) parent[static_cast<size_t>(p.parent)] = true;
            }
            const int32_t shown = std::max(1, cells->ubound(1) - kText + 1);
            automation::Array outline = automation::Array::matrix(shown, static_cast<int32_t>(order.size()));
            for (size_t i = 0; i < order.size(); ++i) {
                const Placed& p = order[i];
                const auto r = static_cast<int32_t>(i);
                if (cells->ubound(1) >= kText && cells->at(kText, p.row).is_null()) cells->at(kText, p.row) = Variant(std::u16string());
                outline.at(0, r) = Variant(std::u16string(static_cast<size_t>(p.level) * kIndentPerLevel, u' ') +
                                           (parent[static_cast<size_t>(p.row)] ? u"+ " : u"  ") +
                                           text_cell(*cells, kText, p.row));
                for (int32_t c = 1; c < shown; ++c) {
                    // A Null cell shows empty, in the caller's array too, as FillFlexGrid leaves it.
                    Variant& value = cells->at(kText + c, p.row);
                    if (value.is_null()) value = Variant(std::u16string());
                    outline.at(c, r) = value;
                }
            }
            fill_grid_matrix(grid, outline, rHeader);
            const int32_t fixed_rows = automation::to_long(grid.get(u"FixedRows"));
            for (size_t i = 0; i < order.size(); ++i) {
                const int32_t row = fixed_rows + static_cast<int32_t>(i);
                grid.let(u"RowData", {row, order[i].level});
                if (order[i].level > 0) grid.let(u"RowHeight", {row, 0});
            }
        }
        close_grid_fill(grid);
    });
}

void ISService::ExecFillFlexGridTree(Object rdbgSource, const std::u16string& vstrQuery, fields::exTypeRs Mode,
                                     Fields& oarrParametros, Fields oHeader) {
    resume_next([&] {
        if (!connected()) return;
        Variant parameters{automation::Ref<automation::Object>(oarrParametros)};
        Fields header;
        std::optional<Variant> rows = fetch_short(vstrQuery, static_cast<int32_t>(Mode), Variant::nothing(),
                                                  oarrParametros ? &parameters : nullptr, &header);
        if (oarrParametros) oarrParametros = fields_in(parameters);
        if (!rows) return;
        // The host's header describes every column, key and parent included; the grid shows
        // the columns from the text on.
        Fields described = oHeader;
        if (!described && header) {
            described = automation::make_ref<collections::clsCeldos>();
            for (size_t i = kText; i < header->size(); ++i)
                described->Append(automation::Ref<fields::clsCeldo>(&header->at(i)), Variant::missing(), Variant::missing(), u"");
        }
        if (described) {
            Variant layout{automation::Ref<automation::Object>(described)};
            FlexGridHeader(rdbgSource, layout);
        }
        FillFlexGridTree(rdbgSource, *rows, described);
    });
}

}  // namespace celdo::services

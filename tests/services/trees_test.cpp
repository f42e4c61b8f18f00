// Trees: rows placed parent first whatever their order, tree views and the flex-grid outline.
#include "automation/lifetime.hpp"
#include "tests/services/doubles.hpp"

#include <pthread.h>

namespace celdo::services {
namespace {

using namespace testing;
using ServiceTrees = Service;

// A tree view whose Nodes.Add writes "Key" or "Key<Relative" (and "/image" when one is given)
// into `added`, refusing the keys in `refused`.
struct TreeDouble {
    Ref<Fake> tree = make_ref<Fake>(u"TreeView", "tvw");
    std::string added;
    std::set<std::string> refused;
    TreeDouble() {
        tree->kid("Nodes", "nodes").on["Add"] = [this](std::span<Argument> a) {
            const std::string key = automation::utf16_to_utf8(automation::to_string(a[2].value));
            if (refused.count(key)) throw automation::AutomationError(35602, u"TreeView", u"Key is not unique");
            const std::string relative = a[0].value.is_missing() ? "" : automation::utf16_to_utf8(automation::to_string(a[0].value));
            added += (added.empty() ? "" : " ") + key + (relative.empty() ? "" : "<" + relative);
            if (!a[4].value.is_missing()) added += "/" + render(a[4].value);
            return Variant(make_ref<Fake>(u"Node", "node", tree->log));
        };
    }
};

TEST_F(ServiceTrees, RowsArePlacedParentFirstWhateverTheirOrder) {
    for_each_case("ParentFirst", [&](const std::string& where, const auto& row) {
        TreeDouble t;
        Control tree = t.tree;
        const std::u16string parent = data(row[1]).as_string();
        s.FillTreeView(tree, data(row[0]), Variant::missing(), Variant::missing(), parent);
        EXPECT_EQ(t.added, row[2]) << where;
        EXPECT_EQ(t.tree->count("nodes: Call Clear()"), parent.empty() ? 1 : 0) << where;
    });
}

TEST_F(ServiceTrees, ARefusedNodeTakesItsDescendantsImagesFallBackAndTagsAreSet) {
    TreeDouble t;
    t.refused = {"K2"};
    Control tree = t.tree;
    s.FillTreeView(tree, matrix({{1, u"", u"a", 5, 6, u"t1"}, {2, 1, u"b", -1, 6, u"t2"}, {3, 2, u"c", 7, 6, u""},
                                 {4, 1, u"d", Variant(), 6, u"t4"}}),
                   9, 8, u"");
    EXPECT_EQ(t.added, "K1/5 K4<K1/9");
    EXPECT_EQ(t.tree->lines("node: Let Tag"), R"(node: Let Tag = "t1"; node: Let Tag = "t4")");
}

// Runs `body` on a thread with a small stack, where a fill that recursed once per level would
// overflow long before 10,000 levels. The thread ends as the DLL sees threads end. (MinGW's
// posix thread model gives Windows the same threads.)
template <class F>
void on_small_stack(F body) {
    pthread_attr_t attr;
    pthread_attr_init(&attr);
    pthread_attr_setstacksize(&attr, 512 * 1024);
    pthread_t thread;
    const auto run = [](void* f) -> void* {
        (*static_cast<F*>(f))();
        automation::ObjectRegistry::thread_ending();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attr, run, &body), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attr);
}

TEST_F(ServiceTrees, ATenThousandLevelTreeIsFilledWithoutRecursion) {
    std::vector<std::vector<Variant>> rows;
    for (int32_t i = 10000; i >= 1; --i) rows.push_back({i, i - 1, u"n"});
    const Variant data = matrix(rows);
    TreeDouble t;
    Control tree = t.tree;
    on_small_stack([&] { s.FillTreeView(tree, data, Variant::missing(), Variant::missing(), u""); });
    EXPECT_EQ(std::count(t.added.begin(), t.added.end(), '<'), 9999);
    EXPECT_EQ(t.added.substr(0, 9), "K1 K2<K1 ");
}

TEST_F(ServiceTrees, SingleNodesAreAddedAndGetNodesGivesTheKeysAsTheHostGaveThem) {
    TreeDouble t;
    Control tree = t.tree;
    s.AddRootNode(tree, u"7", u"a", 1, Variant::missing(), u"t");
    s.AddNode(tree, u"7", u"x", u"b", -1, Variant::missing(), u"");
    EXPECT_EQ(t.added, "K7/1 x<K7");
    t.refused = {"K7"};
    EXPECT_EQ(error_of([&] { s.AddRootNode(tree, u"7", u"a", {}, {}, u""); }).number(), 35602);

    Fake& nodes = holder(*t.tree, "Nodes", "nodes");
    for (auto [key, checked] : {std::pair(u"K12", true), {u"K", false}, {u"Kilo", true}})
        add(nodes, "n", {{"Key", key}, {"Checked", checked}});
    const auto keys = [&](bool checked) {
        std::string out;
        const Variant answer = s.GetNodes(tree, checked);
        for (const Variant& k : answer.as_array().elements()) out += render(k);
        return out;
    };
    EXPECT_EQ(keys(true), R"("12""Kilo")");
    EXPECT_EQ(keys(false), R"("12""""Kilo")");
    nodes.items->clear();
    EXPECT_EQ(s.GetNodes(tree, true).as_array().ubound(1), -1);

}

TEST_F(ServiceTrees, TheFlexGridOutlineIndentsHidesDeeperRowsAndKeepsTheirLevels) {
    auto grid = make_ref<Fake>(u"MSFlexGrid", "grid");
    grid->props = {{"FixedRows", 1}, {"FixedCols", 1}};
    Variant rows = matrix({{2, 1, u"b", Variant::null()}, {1, u"", u"a", 10}, {3, u"", u"c", 30}, {4, 2, u"d", 40}});
    Fields described = header(R"(Name exText; Amount exLong "0.0")");
    Control shown = grid;
    s.FillFlexGridTree(shown, rows, described);
    std::string cells;
    for (int r = 1; r <= 4; ++r) {
        cells += "[" + render(grid->props["TextMatrix(" + std::to_string(r) + ", 1)"]) + " " +
                 render(grid->props["TextMatrix(" + std::to_string(r) + ", 2)"]) + " " +
                 render(grid->props["RowData(" + std::to_string(r) + ")"]) + "]";
    }
    EXPECT_EQ(cells, R"(["+ a" "10.0" 0]["    + b" "" 1]["          d" "40.0" 2]["  c" "30.0" 0])");
    EXPECT_EQ(grid->lines("RowHeight("), "grid: Let RowHeight(2) = 0; grid: Let RowHeight(3) = 0");
    EXPECT_EQ(render(rows.as_array().at(3, 0)), R"("")");  // the caller's Null, as shown
    EXPECT_EQ(grid->count("Redraw"), 2);

    // From the data-access object: its header's key and parent fields are not shown columns.
    grid->log->clear();
    const Fields answered = header(R"(Id exLong; Parent exLong; Name exText; Amount exLong "0.0")");
    data_access(true, matrix({{1, u"", u"a", 10}}), answered);
    Fields none;
    s.ExecFillFlexGridTree(shown, u"Select", exOpenStatic, none, nullptr);
    EXPECT_EQ(render(grid->props["FormatString"]) + " " + render(grid->props["TextMatrix(1, 2)"]), R"("|Name|Amount" "10.0")");
}

}  // namespace
}  // namespace celdo::services

// Object lifetime: the cycles the object model lets a host form are collected once nothing
// outside holds them, what is still held is left alone, long chains are released without deep
// recursion, and the walks that follow Children stop on a cycle instead of running forever.
#include "tests/fields/field_support.hpp"

#include "automation/lifetime.hpp"
#include "collections/CeldosSeguimiento.hpp"
#include "collections/clsRegistro.hpp"

namespace celdo::testing {
namespace {

Ref<clsCeldo> field(std::u16string name = u"F") {
    auto f = make_ref<clsCeldo>();
    f->let_Name(name);
    return f;
}

// A field and `levels` more under it, each the only child of the one before.
Ref<clsCeldo> chain(int levels) {
    auto root = field();
    for (Ref<clsCeldo> at = root; levels-- > 0;) {
        auto next = field();
        at->get_Children()->Append(next, kNone, kNone, u"");
        at = next;
    }
    return root;
}

class Lifetime : public ::testing::Test {
protected:
    void SetUp() override {
        registry.collect();
        before = registry.live();
    }
    // Objects made by the test and still alive.
    size_t alive() const { return registry.live() - before; }

    automation::ObjectRegistry& registry = automation::ObjectRegistry::current();
    size_t before = 0;
};

TEST_F(Lifetime, EveryCycleTheModelCanFormIsCollected) {
    {
        // A field among its own children.
        auto f = field();
        f->get_Children()->Append(f, kNone, kNone, u"");
        // A row appended into the children of one of its own fields.
        auto row = make_ref<clsCeldos>();
        auto g = add_field(*row, u"G");
        g->get_Children()->Appends(row, kNone, kNone, u"");
        // A field holding itself as its value, and as its extended properties.
        auto h = field(u"H");
        h->let_DataType(exObject);
        h->set_Value(Variant(Ref<automation::Object>(h)));
        h->set_ExtendProperties(h);
        // A row of rows that holds itself through a field's value.
        auto records = make_ref<clsRegistro>();
        records->Add(row, u"");
        auto k = add_field(*row, u"K", exObject);
        k->set_Value(Variant(Ref<automation::Object>(records)));
        // The audit fields, whose own children hold the row they are in.
        auto audit = make_ref<CeldosSeguimiento>();
        auto with_audit = audit->Registro();
        audit->get_NFecha()->get_Children()->Appends(with_audit, kNone, kNone, u"");
        ASSERT_GT(alive(), 0u);
    }
    const size_t garbage = alive();
    EXPECT_EQ(registry.collect(), garbage);
    EXPECT_EQ(alive(), 0u);
}

TEST_F(Lifetime, WhatIsStillHeldSurvivesWithItsValues) {
    auto row = make_ref<clsCeldos>();
    Ref<clsCeldo> kept;
    {
        auto f = add_field(*row, u"A", exText, Variant(u"x"));
        f->get_Children()->Appends(row, kNone, kNone, u"");  // a cycle, but held through `row`
        kept = field(u"Suelto");
        kept->get_Children()->Append(kept, kNone, kNone, u"");
        kept->let_Value(Variant(u"sigue"));
    }
    EXPECT_EQ(registry.collect(), 0u);
    EXPECT_EQ(row->at(0).get_Value(), Variant(u"x"));
    EXPECT_EQ(&row->at(0).get_Children()->at(0), &row->at(0));
    EXPECT_EQ(kept->get_Value(), Variant(u"sigue"));
    row = nullptr;
    // The row goes with its last reference; its field and the children holding it are a cycle.
    EXPECT_EQ(registry.collect(), 2u) << "the row's field and its children";
    kept = nullptr;
    EXPECT_GT(registry.collect(), 0u);
    EXPECT_EQ(alive(), 0u);
}

TEST_F(Lifetime, CollectionsComeDueAsObjectsAreMade) {
    for (size_t i = 0; i < automation::ObjectRegistry::kMinimumRound; ++i) {
        auto f = field();
        f->get_Children()->Append(f, kNone, kNone, u"");
    }
    const size_t garbage = alive();
    EXPECT_GE(garbage, automation::ObjectRegistry::kMinimumRound);
    EXPECT_EQ(registry.collect_if_due(), garbage);
    EXPECT_EQ(registry.collect_if_due(), 0u) << "not due again until as many are made";
}

TEST_F(Lifetime, LongChainsAreReleasedWithoutRecursion) {
    auto head = chain(200000);
    head = nullptr;
    EXPECT_EQ(alive(), 0u);
}

// Duplicate, XML and Clip on a tree 256 levels under its root, one level deeper, and a cycle
// (reached twice: a copy must not branch without end); RangeAs passes over what it cannot copy.
TEST_F(Lifetime, WalksTakeTreesUpTo256LevelsUnderTheirRootAndStopAtACycle) {
    auto cycle = field(u"Ciclo"), child = field(u"Hijo");
    cycle->get_Children()->Append(child, kNone, kNone, u"");
    for (int twice = 0; twice < 2; ++twice) child->get_Children()->Append(cycle, kNone, kNone, u"");
    const std::u16string refused = u"Celdo.Duplicate: Nesting too deep|Celdo.XML: Nesting too deep|Celdo.Clip: Nesting too deep";
    const std::pair<Ref<clsCeldo>, std::u16string> trees[] = {
        {chain(clsCeldo::kMaxNesting), u"ok|ok|ok"}, {chain(clsCeldo::kMaxNesting + 1), refused}, {cycle, refused}};
    for (auto [tree, expected] : trees) {
        auto row = make_ref<clsCeldos>();
        std::u16string name;
        Variant value = kNone;
        EXPECT_EQ(outcome([&] { row->Duplicate(tree, name, value); }) + u"|" + outcome([&] { tree->XML(u""); }) + u"|" +
                      outcome([&] { tree->Clip(); }),
                  expected);
        EXPECT_EQ(row->size(), 0u) << "a copy is not added";
    }
    auto row = make_ref<clsCeldos>();
    row->Append(cycle, kNone, kNone, u"");
    EXPECT_EQ(std::tuple(row->RangeAs(u"Ciclo")->size(), row->Range(u"Ciclo")->size()), std::tuple(size_t{0}, size_t{1}));
}

}  // namespace
}  // namespace celdo::testing

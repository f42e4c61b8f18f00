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
    auto f = automation::make_ref<clsCeldo>();
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
        auto row = automation::make_ref<clsCeldos>();
        auto g = add_field(*row, u"G");
        g->get_Children()->Appends(row, kNone, kNone, u"");
        // A field holding itself as its value, and as its extended properties.
        auto h = field(u"H");
        h->let_DataType(fields::exObject);
        h->set_Value(Variant(Ref<automation::Object>(h)));
        h->set_ExtendProperties(h);
        // A row of rows that holds itself through a field's value.
        auto records = automation::make_ref<clsRegistro>();
        records->Add(row, u"");
        auto k = add_field(*row, u"K", fields::exObject);
        k->set_Value(Variant(Ref<automation::Object>(records)));
        // The audit fields, whose own children hold the row they are in.
        auto audit = automation::make_ref<CeldosSeguimiento>();
        auto with_audit = audit->Registro();
        audit->get_NFecha()->get_Children()->Appends(with_audit, kNone, kNone, u"");
        ASSERT_GT(alive(), 0u);
    }
    const size_t garbage = alive();
    EXPECT_EQ(registry.collect(), garbage);
    EXPECT_EQ(alive(), 0u);
}

TEST_F(Lifetime, WhatIsStillHeldSurvivesWithItsValues) {
    auto row = automation::make_ref<clsCeldos>();
    Ref<clsCeldo> kept;
    {
        auto f = add_field(*row, u"A", fields::exText, Variant(u"x"));
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

TEST_F(Lifetime, WalksOverChildrenStopAtACycle) {
    auto f = field(u"Ciclo");
    auto child = field(u"Hijo");
    f->get_Children()->Append(child, kNone, kNone, u"");
    child->get_Children()->Append(f, kNone, kNone, u"");
    child->get_Children()->Append(f, kNone, kNone, u"");  // twice: a copy must not branch without end

    auto row = automation::make_ref<clsCeldos>();
    std::u16string name;
    Variant value = kNone;
    auto e = error_of([&] { row->Duplicate(f, name, value); });
    EXPECT_EQ(e.source(), u"Celdo.Duplicate");
    EXPECT_EQ(e.description(), u"Nesting too deep");
    EXPECT_EQ(row->size(), 0u);
    EXPECT_EQ(error_of([&] { f->XML(u""); }).description(), u"Nesting too deep");
    EXPECT_EQ(error_of([&] { f->Clip(); }).description(), u"Nesting too deep");
    row->Append(f, kNone, kNone, u"");
    EXPECT_EQ(row->RangeAs(u"Ciclo")->size(), 0u) << "RangeAs passes over what it cannot copy";
    EXPECT_EQ(row->Range(u"Ciclo")->size(), 1u);
}

TEST_F(Lifetime, WalksTakeTreesUpTo256LevelsUnderTheirRoot) {
    auto row = automation::make_ref<clsCeldos>();
    std::u16string name;
    Variant value = kNone;
    auto shallow = chain(clsCeldo::kMaxNesting), deep = chain(clsCeldo::kMaxNesting + 1);
    EXPECT_NE(row->Duplicate(shallow, name, value).get(), shallow.get());
    EXPECT_NO_THROW(shallow->XML(u""));
    EXPECT_NO_THROW(shallow->Clip());
    EXPECT_EQ(error_of([&] { row->Duplicate(deep, name, value); }).description(), u"Nesting too deep");
    EXPECT_EQ(error_of([&] { deep->XML(u""); }).description(), u"Nesting too deep");
    EXPECT_EQ(error_of([&] { deep->Clip(); }).description(), u"Nesting too deep");
}

}  // namespace
}  // namespace celdo::testing

// Late binding through the generated member tables, on the test probe: names, defaults, counts,
// coercions, indexes and errors as rows of probe_rules.tsv; here accessor choice, by-reference
// write-back, default members, enumerators, identity and events.
#include "automation/dispatch.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "automation/enumerator.hpp"
#include "automation/late_binding.hpp"
#include "tests/probe/Probe.hpp"
#include "tests/support/fake_host.hpp"
#include "tests/support/rules.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;
using celdo::testing::Fake;
using tests::probe::Probe;

constexpr std::string_view kProbeRules =
#include "probe_rules.inc"
    ;

// Names, defaults, counts, coercions, indexes and errors: rows of probe_rules.tsv.
TEST(ProbeRules, EveryRowOfTheTable) { celdo::testing::expect_every_row<Probe>(kProbeRules); }

class Dispatch : public ::testing::Test {
protected:
    Ref<Probe> probe = make_ref<Probe>();
    Object& obj() { return *probe; }
};

TEST_F(Dispatch, DefaultAndEnumeratorMembersHaveTheirIdsAndEachAccessorAnswersItsKind) {
    EXPECT_EQ(std::tuple(obj().member_id(u"Value"), obj().member_id(u"Items"), obj().member_id(u"Nonexistent")),
              std::tuple(std::optional<int32_t>(kDefaultMember), std::optional<int32_t>(kNewEnumMember), std::nullopt));
    EXPECT_EQ(obj().type_name(), u"Probe");
    let(obj(), u"Text", {u"hola"});
    const int32_t text = *obj().member_id(u"Text"), describe = *obj().member_id(u"Describe");
    EXPECT_EQ(obj().invoke(text, kMethod, {}), Variant(u"hola"));  // how JScript reads
    EXPECT_FALSE(obj().invoke(describe, kGet, {}).is_empty());  // how VBScript reads x = o.F
}

TEST_F(Dispatch, ARefusedArgumentNamesItsPosition) {
    try {
        call(obj(), u"Grid", {2, u"many"});
        FAIL() << "no error";
    } catch (const ArgumentError& e) {
        EXPECT_EQ(std::tuple(e.number(), e.index()), std::tuple(13, 1));
    }
}

TEST_F(Dispatch, ByReferenceArgumentsComeBackChangedAndValuesAreLeftAlone) {
    Variant text(u"  padded  "), kept(u"  padded  ");
    call(obj(), u"Tidy", {ByRef{text}});
    call(obj(), u"Tidy", {kept});
    EXPECT_EQ(std::tuple(text, kept), std::tuple(Variant(u"padded"), Variant(u"  padded  ")));
    Variant count(u"41");  // coerced on the way in, and comes back as the declared type
    call(obj(), u"Bump", {ByRef{count}});
    EXPECT_EQ(count, Variant(42));
    Variant a(1), b(u"two");
    call(obj(), u"Swap", {ByRef{a}, ByRef{b}});
    EXPECT_EQ(std::tuple(a, b), std::tuple(Variant(u"two"), Variant(1)));
    auto original = make_ref<Probe>();
    original->let_Text(u"old");
    Variant target{Ref<Object>(original)};
    call(obj(), u"Renew", {ByRef{target}});
    ASSERT_TRUE(target.is_object());
    EXPECT_NE(target.as_object(), original.get()) << "an object by reference can be replaced";
    EXPECT_EQ(get(*target.as_object(), u"Text"), Variant(u"renewed old"));
}

TEST_F(Dispatch, ObjectPropertiesTakeOnlyTheirClass) {
    auto partner = make_ref<Probe>();
    set(obj(), u"Partner", {Variant(Ref<Object>(partner))});
    EXPECT_EQ(get(obj(), u"Partner").as_object(), partner.get());
    set(obj(), u"Partner", {Variant::nothing()});
    EXPECT_EQ(get(obj(), u"Partner").as_object(), nullptr);
    auto stranger = make_ref<SnapshotEnumerator>(std::vector<Variant>{});
    EXPECT_EQ(error_of([&] { set(obj(), u"Partner", {Variant(Ref<Object>(stranger))}); }).number(), 13);
    EXPECT_EQ(error_of([&] { set(obj(), u"Partner", {5}); }).number(), 424);
}

TEST_F(Dispatch, LetAndSetReachTheRightAccessorOfTheDefaultMember) {
    auto other = make_ref<Probe>();
    set(obj(), u"Value", {Variant(Ref<Object>(other))});
    EXPECT_EQ(get(obj(), u"Value").as_object(), other.get());
    // JScript assigns objects with Let and Set together: Set wins when the member has it.
    std::vector<Argument> assigned{{Variant(Ref<Object>(probe))}};
    obj().invoke(kDefaultMember, kLet | kSet, assigned);
    EXPECT_EQ(get(obj(), u"Value").as_object(), probe.get());
    let(obj(), u"Value", {u"plain"});
    EXPECT_EQ(get(obj(), u"Value"), Variant(u"plain"));
    // Break the cycle the test made (the probe held itself).
    let(obj(), u"Value", {Variant()});
}

TEST_F(Dispatch, ExtraArgumentsIndexWhatAPropertyReturns) {
    auto partner = make_ref<Probe>();
    partner->let_Value(Variant(Array::vector({Variant(u"a"), Variant(u"b")})));
    set(obj(), u"Partner", {Variant(Ref<Object>(partner))});
    // o.Partner(1): the partner's default member is an array, indexed by the argument.
    EXPECT_EQ(get(obj(), u"Partner", {1}), Variant(u"b"));
    EXPECT_EQ(error_of([&] { get(obj(), u"Partner", {5}); }).number(), 9);
}

TEST_F(Dispatch, TheEnumeratorWalksTheItemsInOrderAndObjectsComeBackThemselves) {
    EXPECT_EQ(call(obj(), u"Itself").as_object(), probe.get());
    call(obj(), u"Add", {u"a"});
    call(obj(), u"Add", {2});
    Variant items = obj().invoke(kNewEnumMember, kGet | kMethod, {});
    auto* walk = items.object_as<Enumerator>();
    ASSERT_NE(walk, nullptr);
    Variant item;
    std::vector<Variant> seen;
    while (walk->next(item)) seen.push_back(item);
    EXPECT_EQ(seen, (std::vector<Variant>{Variant(u"a"), Variant(2)}));
    walk->reset();
    ASSERT_TRUE(walk->next(item));
    EXPECT_EQ(item, Variant(u"a"));
}

class Recorder final : public Peer {
public:
    void raise_event(int32_t event, std::span<Argument> args) override {
        events.push_back(event);
        for (auto& a : args) values.push_back(a.value);
    }
    std::vector<int32_t> events;
    std::vector<Variant> values;
};

TEST_F(Dispatch, EventsReachThePeer) {
    Recorder recorder;
    probe->attach_peer(&recorder);
    call(obj(), u"Ring", {2});
    probe->detach_peer(&recorder);
    call(obj(), u"Ring", {1});
    constexpr int32_t rang = tests::probe::events::Probe::Rang;
    EXPECT_EQ(recorder.events, (std::vector<int32_t>{rang, rang}));
    EXPECT_EQ(recorder.values, (std::vector<Variant>{Variant(1), Variant(2)}));
}

TEST(LateBinding, EachKindOfCallReachesTheObjectAsSuch) {
    auto host = make_ref<Fake>(u"TextBox", "tb");
    host->props["Text"] = u"hola";
    EXPECT_EQ(get(*host, u"Text"), Variant(u"hola"));
    let(*host, u"Text", {u"adiós"});
    set(*host, u"Font", {Variant(Ref<Object>(make_ref<Fake>(u"Font")))});
    call(*host, u"Cell", {1, 2});
    EXPECT_EQ(host->lines(), R"(tb: Get Text; tb: Let Text = "adiós"; tb: Set Font = Object; tb: Call Cell(1, 2))");
    EXPECT_EQ(host->props["Text"], Variant(u"adiós"));
}

TEST(LateBinding, ByReferenceArgumentsComeBackAndValuesStayTheCallers) {
    auto data = make_ref<Fake>(u"DataAccess");
    data->on["ExecFillArray"] = [](std::span<Argument> args) {
        EXPECT_EQ(std::tuple(args[0].by_ref, args[1].by_ref), std::tuple(false, true));
        args[0].value = Variant(99);
        args[1].value = Variant(-1);  // the host reports a failure through its status
        return Variant(u"rows");
    };
    Variant kept(1), status(0);
    EXPECT_EQ(call(*data, u"ExecFillArray", {kept, ByRef{status}}), Variant(u"rows"));
    EXPECT_EQ(std::tuple(kept, status), std::tuple(Variant(1), Variant(-1)));
}

TEST(ClassTables, DeclarationOrderGivesMemberIdsAndTheDefaultsAreSpecial) {
    const ClassInfo& info = class_info_of<Probe>();
    EXPECT_EQ(std::u16string(info.name), u"Probe");
    ASSERT_FALSE(info.members.empty());
    EXPECT_EQ(info.members[0].id, kDefaultMember);
    EXPECT_EQ(info.members[1].id, 1);  // Text, the first ordinary member
    EXPECT_NE(info.create, nullptr);
    auto created = info.create();
    EXPECT_EQ(&created->class_info(), &info);
}

}  // namespace
}  // namespace celdo::automation

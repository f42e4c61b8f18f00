// Late binding through the generated member tables, on the test probe: accessor choice,
// optional arguments and defaults, coercion to declared types, by-reference write-back, default
// members, enumerators, identity and events.
#include "automation/dispatch.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "automation/enumerator.hpp"
#include "automation/late_binding.hpp"
#include "tests/probe/Probe.hpp"
#include "tests/support/fake_host.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;
using celdo::testing::Fake;
using tests::probe::Probe;

class Dispatch : public ::testing::Test {
protected:
    Ref<Probe> probe = make_ref<Probe>();
    Object& obj() { return *probe; }
};

TEST_F(Dispatch, MembersResolveByNameInAnyCaseAndEachAccessorAnswersItsKind) {
    EXPECT_EQ(obj().member_id(u"Text"), obj().member_id(u"tEXT"));
    EXPECT_EQ(std::tuple(obj().member_id(u"Value"), obj().member_id(u"Items"), obj().member_id(u"Nonexistent")),
              std::tuple(std::optional<int32_t>(kDefaultMember), std::optional<int32_t>(kNewEnumMember), std::nullopt));
    EXPECT_EQ(obj().type_name(), u"Probe");
    let(obj(), u"Text", {u"hola"});
    const int32_t text = *obj().member_id(u"Text"), describe = *obj().member_id(u"Describe");
    EXPECT_EQ(obj().invoke(text, kMethod, {}), Variant(u"hola"));  // how JScript reads
    EXPECT_EQ(obj().invoke(text, kGet, {}), Variant(u"hola"));
    EXPECT_FALSE(obj().invoke(describe, kGet, {}).is_empty());  // how VBScript reads x = o.F
    const AutomationError unknown = error_of([&] { get(obj(), u"Nonexistent"); });
    EXPECT_EQ(std::tuple(unknown.number(), unknown.description()),
              std::tuple(438, std::u16string(u"Object doesn't support this property or method")));
    EXPECT_EQ(error_of([&] { let(obj(), u"Count", {5}); }).number(), 438);  // read-only
    EXPECT_EQ(error_of([&] { get(obj(), u"Ring"); }).number(), 449) << "a Sub read as a property needs its argument";
}

TEST_F(Dispatch, OmittedOptionalArgumentsTakeTheirDeclaredDefaults) {
    EXPECT_EQ(call(obj(), u"Describe"), Variant(u"Size=0;Position=-1;Label=!;Extra=Missing;Mode=2;Flag=True"));
    EXPECT_EQ(call(obj(), u"Describe", {7, Variant::missing(), u"x"}),
              Variant(u"Size=7;Position=-1;Label=x;Extra=Missing;Mode=2;Flag=True"));
    EXPECT_EQ(call(obj(), u"Describe", {1, int16_t{2}, u"y", u"z", 30, false}),
              Variant(u"Size=1;Position=2;Label=y;Extra=z;Mode=30;Flag=False"));
    // An omitted object is Nothing, which NameOf refuses as an unset object.
    EXPECT_EQ(error_of([&] { call(obj(), u"NameOf"); }).number(), 91);
}

TEST_F(Dispatch, ArgumentsAreCountedAndCoercedAsTheLanguageDoes) {
    EXPECT_EQ(error_of([&] { call(obj(), u"Echo"); }).number(), 449);
    EXPECT_EQ(error_of([&] { call(obj(), u"Echo", {1, 2}); }).number(), 450);
    EXPECT_EQ(error_of([&] { call(obj(), u"Echo", {Variant::missing()}); }).number(), 449);
    // Variant parameters keep the subtype.
    for (const Variant& v : {Variant(int16_t{1}), Variant(1), Variant::null(), Variant()}) {
        EXPECT_EQ(call(obj(), u"Echo", {v}), v);
    }
    const std::tuple<const char16_t*, Variant, Variant> typed[] = {
        {u"Number", u"12", 12},    {u"Small", 2.5, int16_t{2}},     {u"Flag", u"True", true},
        {u"Amount", u"1,234.5678", Currency{12345678}}, {u"When", u"2024-05-17", Date{45429}},
        {u"Mode", int16_t{30}, 30}, {u"Text", 12.5, u"12.5"},
    };
    for (const auto& [member, given, stored] : typed) {
        let(obj(), member, {given});
        EXPECT_EQ(get(obj(), member), stored) << utf16_to_utf8(member);
    }
    try {
        call(obj(), u"Grid", {2, u"many"});
        FAIL() << "no error";
    } catch (const ArgumentError& e) {
        EXPECT_EQ(std::tuple(e.number(), e.index()), std::tuple(13, 1)) << "a refused argument names its position";
    }
    EXPECT_EQ(error_of([&] { let(obj(), u"Small", {40000}); }).number(), 6);
    EXPECT_EQ(error_of([&] { let(obj(), u"Number", {Variant::null()}); }).number(), 13);
    EXPECT_EQ(get(obj(), u"Number"), Variant(12)) << "a refused assignment stores nothing";
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

TEST_F(Dispatch, IndexedPropertiesTakeIndexesThenTheValue) {
    let(obj(), u"Cell", {1, 2, u"x"});
    EXPECT_EQ(get(obj(), u"Cell", {1, 2}), Variant(u"x"));
    EXPECT_TRUE(get(obj(), u"Cell", {2, 1}).is_empty());
    EXPECT_EQ(error_of([&] { get(obj(), u"Cell", {1}); }).number(), 449);
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

TEST_F(Dispatch, ErrorsKeepNumberSourceAndDescription) {
    auto e = error_of([&] { call(obj(), u"Raise", {-2147221504, u"Celdo_Codigo", u"Tipo de dato no válido"}); });
    EXPECT_EQ(std::tuple(e.number(), e.source(), e.description()),
              std::tuple(-2147221504, std::u16string(u"Celdo_Codigo"), std::u16string(u"Tipo de dato no válido")));
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

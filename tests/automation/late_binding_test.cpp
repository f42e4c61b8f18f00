// Late-bound calls on host objects, through the native test double.
#include "automation/late_binding.hpp"

#include <gtest/gtest.h>

#include "tests/support/fake_host.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;
using celdo::testing::FakeHost;

TEST(LateBinding, PropertiesReadAndWriteByNameInAnyCase) {
    auto host = make_ref<FakeHost>(u"TextBox");
    host->property(u"Text") = Variant(u"hola");
    EXPECT_EQ(get(*host, u"TEXT"), Variant(u"hola"));
    let(*host, u"text", {u"adiós"});
    EXPECT_EQ(host->property(u"Text"), Variant(u"adiós"));
    EXPECT_EQ(host->log, (std::vector<std::string>{"Get Text", "Let Text"}));
}

TEST(LateBinding, ObjectsAreAssignedWithSet) {
    auto host = make_ref<FakeHost>(u"Label");
    auto font = make_ref<FakeHost>(u"Font");
    host->property(u"Font");
    set(*host, u"Font", {Variant(Ref<Object>(font))});
    EXPECT_EQ(host->property(u"Font").as_object(), font.get());
    EXPECT_EQ(host->log.back(), "Set Font");
}

TEST(LateBinding, ByReferenceArgumentsComeBackFromTheHost) {
    auto data = make_ref<FakeHost>(u"DataAccess");
    data->method(u"ExecFillArray", [](std::span<Argument> args) {
        EXPECT_TRUE(args[1].by_ref);
        args[1].value = Variant(-1);  // the host reports a failure through its status
        return Variant(u"rows");
    });
    Variant status(0);
    EXPECT_EQ(call(*data, u"ExecFillArray", {u"Select 1", ByRef{status}}), Variant(u"rows"));
    EXPECT_EQ(status, Variant(-1));
}

TEST(LateBinding, ValuesPassedByValueStayTheCallers) {
    auto data = make_ref<FakeHost>(u"DataAccess");
    data->method(u"Touch", [](std::span<Argument> args) {
        EXPECT_FALSE(args[0].by_ref);
        args[0].value = Variant(99);
        return Variant();
    });
    Variant kept(1);
    call(*data, u"Touch", {kept});
    EXPECT_EQ(kept, Variant(1));
}

TEST(LateBinding, UnknownMembersAreError438) {
    auto host = make_ref<FakeHost>(u"ListBox");
    auto e = error_of([&] { get(*host, u"Missing"); });
    EXPECT_EQ(e.number(), 438);
    EXPECT_EQ(e.description(), u"Object doesn't support this property or method");
    EXPECT_EQ(host->type_name(), u"ListBox");
}

}  // namespace
}  // namespace celdo::automation

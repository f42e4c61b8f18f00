// Late-bound calls on host objects, through the native test double.
#include "automation/late_binding.hpp"

#include <gtest/gtest.h>

#include "tests/support/fake_host.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::error_of;
using celdo::testing::Fake;

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

TEST(LateBinding, UnknownMembersAreError438) {
    auto host = make_ref<Fake>(u"ListBox");
    host->absent.insert("Missing");
    auto e = error_of([&] { get(*host, u"Missing"); });
    EXPECT_EQ(std::tuple(e.number(), e.description()),
              std::tuple(438, std::u16string(u"Object doesn't support this property or method")));
}

}  // namespace
}  // namespace celdo::automation

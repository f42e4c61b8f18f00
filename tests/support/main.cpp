// Entry point of the unit tests: every test runs with the locale pinned to English (United
// States) unless it sets another, whatever the machine's (or Wine's) user locale is; and every
// test must leave no object alive behind it once cycles are collected, which is how leaks and
// cycles the collector misses show up.
#include <gtest/gtest.h>

#include "automation/lifetime.hpp"
#include "automation/locale.hpp"

namespace {

class NoObjectLeftBehind final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        celdo::automation::ObjectRegistry::current().collect();
        before_ = celdo::automation::ObjectRegistry::current().live();
    }
    void OnTestEnd(const testing::TestInfo& test) override {
        auto& registry = celdo::automation::ObjectRegistry::current();
        registry.collect();
        if (registry.live() != before_) {
            ADD_FAILURE_AT(test.file(), test.line())
                << registry.live() - before_ << " object(s) still alive after the test";
        }
    }
    size_t before_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    celdo::automation::Locale::set_current(celdo::automation::Locale::english_united_states());
    testing::UnitTest::GetInstance()->listeners().Append(new NoObjectLeftBehind);
    return RUN_ALL_TESTS();
}

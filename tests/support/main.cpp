// Entry point of the unit tests: every test runs with the locale pinned to English (United
// States) unless it sets another, whatever the machine's (or Wine's) user locale is.
#include <gtest/gtest.h>

#include "automation/locale.hpp"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    celdo::automation::Locale::set_current(celdo::automation::Locale::english_united_states());
    return RUN_ALL_TESTS();
}

#pragma once
// Shared helpers for the unit tests: readable Variants in failure messages and checks of
// automation errors by number, source and description.

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>
#include <string>
#include <utility>

#include "automation/error.hpp"
#include "automation/text.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

inline void PrintTo(const Variant& value, std::ostream* out) { *out << debug_string(value); }

}  // namespace celdo::automation

namespace celdo::testing {

// Runs `body` and reports the automation error it raised, or fails when it raised none.
template <class F>
automation::AutomationError error_of(F&& body) {
    try {
        body();
    } catch (const automation::AutomationError& e) {
        return e;
    }
    ADD_FAILURE() << "no automation error was raised";
    return automation::AutomationError(0, u"", u"");
}

// Rows of a call already made and the answer it must have given; a failure names its row.
template <class T>
void expect_rows(std::initializer_list<std::pair<T, T>> rows) {
    int row = 0;
    for (const auto& [got, expected] : rows) EXPECT_EQ(got, expected) << "row " << row++;
}

}  // namespace celdo::testing

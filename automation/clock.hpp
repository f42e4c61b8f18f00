#pragma once
// The current date and time as the language reads them (Now, Date, Time), with a way for tests
// to pin them.

#include <optional>

#include "automation/variant.hpp"

namespace celdo::automation {

// Local date and time, to the second.
Date now();

// Pins what now() answers for a scope.
class ClockScope {
public:
    explicit ClockScope(Date fixed);
    ~ClockScope();
    ClockScope(const ClockScope&) = delete;
    ClockScope& operator=(const ClockScope&) = delete;

private:
    std::optional<Date> saved_;
};

}  // namespace celdo::automation

#include "automation/clock.hpp"

#include <ctime>

#include "automation/recognize.hpp"

namespace celdo::automation {

namespace {
std::optional<Date>& pinned() {
    static std::optional<Date> value;
    return value;
}
}  // namespace

Date now() {
    if (pinned()) return *pinned();
    std::time_t t = std::time(nullptr);
    std::tm parts{};
#ifdef _WIN32
    localtime_s(&parts, &t);
#else
    localtime_r(&t, &parts);
#endif
    return make_date(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min,
                     parts.tm_sec)
        .value_or(Date{});
}

ClockScope::ClockScope(Date fixed) : saved_(pinned()) { pinned() = fixed; }

ClockScope::~ClockScope() { pinned() = saved_; }

}  // namespace celdo::automation

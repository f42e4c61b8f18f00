#pragma once
// Shared helpers for the unit tests: readable Variants in failure messages and checks of
// automation errors by number, source and description.

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <ostream>
#include <span>
#include <string>
#include <utility>

#include "automation/component.hpp"
#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/late_binding.hpp"
#include "automation/text.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

inline void PrintTo(const Variant& value, std::ostream* out) { *out << debug_string(value); }

}  // namespace celdo::automation

namespace celdo::testing {

// A value as a check reads it: texts quoted, the other subtypes in the language's text.
inline std::string render(const automation::Variant& v) {
    if (v.is_missing()) return "Missing";
    if (v.is_array()) return "Array";
    switch (v.type()) {
        case automation::VarType::Empty: return "Empty";
        case automation::VarType::Null: return "Null";
        case automation::VarType::String: return "\"" + automation::utf16_to_utf8(v.as_string()) + "\"";
        case automation::VarType::Object: return v.as_object() ? "Object" : "Nothing";
        default: return automation::utf16_to_utf8(automation::to_string(v));
    }
}

// Properties of an object read late-bound by name ("Name,Size"), rendered and joined by "|",
// so that one check reads a whole state.
inline std::string props(automation::Object& object, std::string_view names) {
    std::string out;
    for (size_t at = 0, end; at <= names.size(); at = end + 1) {
        end = std::min(names.find(',', at), names.size());
        out += (at ? "|" : "") + render(automation::get(object, automation::utf8_to_utf16(names.substr(at, end - at))));
    }
    return out;
}

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

// What `body` raised as "source: description", or "ok" when it raised nothing.
template <class F>
std::u16string outcome(F&& body) {
    try {
        body();
    } catch (const automation::AutomationError& e) {
        return e.source() + u": " + e.description();
    }
    return u"ok";
}

// Rows of a call already made and the answer it must have given; a failure names its row.
template <class T>
void expect_rows(std::initializer_list<std::pair<T, T>> rows) {
    int row = 0;
    for (const auto& [got, expected] : rows) EXPECT_EQ(got, expected) << "row " << row++;
}

// Counts the events an object raises while attached.
class ChangeCounter final : public automation::Peer {
public:
    explicit ChangeCounter(automation::Component& object) : object_(object) { object_.attach_peer(this); }
    ~ChangeCounter() { object_.detach_peer(this); }
    void raise_event(int32_t, std::span<automation::Argument>) override { ++count; }
    int count = 0;

private:
    automation::Component& object_;
};

}  // namespace celdo::testing

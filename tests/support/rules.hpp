#pragma once
// The runner of the rule tables (field_rules.tsv, collection_rules.tsv, probe_rules.tsv,
// service_helpers.tsv): each row's steps are given to a new object by member name, as a host's
// late-bound calls give them, and its reads are compared with what the row expects. The tables'
// first lines say how a row is written.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "automation/clock.hpp"
#include "automation/error.hpp"
#include "automation/late_binding.hpp"
#include "automation/component.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::testing {

// The published enumerations, whose members the table names.
inline constexpr std::string_view kConstants =
#include "Constants.inc"
    ;

inline std::string error_text(const automation::AutomationError& e) {
    return "error " + std::to_string(e.number()) + " " + automation::utf16_to_utf8(e.source() + u": " + e.description());
}

// A cell, Missing, Nothing, or an enumeration's member by name, as a Long.
inline Variant value_of(std::string_view text) {
    if (text == "Missing") return Variant::missing();
    if (text == "Nothing") return Variant::nothing();
    const std::string member = "\n    " + std::string(text) + " = ";
    const size_t at = kConstants.find(member);
    return at == std::string_view::npos ? cell(text, u".") : Variant(number<int32_t>(kConstants.substr(at + member.size())));
}

// Makes the object a row names with New.
using Maker = automation::Ref<automation::Object> (*)(std::string_view class_name);

// One row's calls. A row may keep values under names (Set X=New clsCeldos, Set X=Item("A"),
// Set X="text"), reach members through them (X.Name) and pass them as arguments, by reference as
// a host passes a variable, so that what a member writes back reads in the name.
class RowRun {
public:
    explicit RowRun(Maker make) : make_(make) {}

    // A kept name's value, or the value a cell writes.
    Variant value_of(std::string_view text) const {
        const auto kept = names_.find(text);
        return kept != names_.end() ? kept->second : testing::value_of(text);
    }

    // Set X=value keeps a value, Set A.B=value sets an object property; Name=value assigns,
    // Name(index, ...)=value too; Name(value, ...) calls; Name alone reads; A.B reaches B on what
    // A gives.
    Variant step(automation::Object& subject, std::string_view step) {
        if (!step.starts_with("Set ")) return run(subject, step);
        const size_t equals = step.find('=');
        const std::string_view name = step.substr(4, equals - 4), given = step.substr(equals + 1);
        // As in a class module, a name the subject has is its property.
        if (name.find('.') != std::string_view::npos || subject.member_id(automation::utf8_to_utf16(name)))
            return run(subject, step.substr(4), automation::kSet);
        Variant value = given.starts_with("New ") ? Variant(make_(given.substr(4)))
                        : literal(given)          ? value_of(given)
                                                  : run(subject, given);
        return names_[std::string(name)] = std::move(value);
    }

private:
    static bool literal(std::string_view text) {
        static constexpr std::string_view kTypes[] = {"Boolean ", "Byte ", "Integer ", "Long ",    "Single ",
                                                      "Double ",  "Date ", "Currency ", "Empty", "Null", "Nothing"};
        return text.starts_with('"') || std::ranges::any_of(kTypes, [&](auto type) { return text.starts_with(type); });
    }

    Variant run(automation::Object& object, std::string_view step, automation::Call assign = automation::kLet) {
        bool quoted = false;
        int depth = 0;
        size_t equals = 0;
        for (; equals < step.size() && (quoted || depth || step[equals] != '='); ++equals) {
            const char c = step[equals];
            if (c == '"' && (equals == 0 || step[equals - 1] != '\\')) quoted = !quoted;
            if (quoted) continue;
            depth += c == '(' ? 1 : c == ')' ? -1 : 0;
            if (depth || c != '.') continue;
            const Variant on = run(object, step.substr(0, equals));  // a kept name gives its value
            if (!on.is_object() || !on.as_object()) throw automation::AutomationError(424, u"table", u"Object required");
            return run(*on.as_object(), step.substr(equals + 1), assign);
        }
        const std::string_view target = step.substr(0, equals);
        const size_t open = target.find('(');
        const std::string_view name = target.substr(0, open);
        if (equals == step.size() && open == std::string_view::npos && names_.contains(name)) return value_of(name);
        const auto id = object.member_id(automation::utf8_to_utf16(name));
        if (!id) return automation::get(object, automation::utf8_to_utf16(name));  // raises what a host gets
        std::vector<automation::Argument> args;
        std::vector<std::string_view> passed;  // the names given by reference, in order
        if (const std::string_view inside = open == std::string_view::npos ? "" : target.substr(open + 1, target.size() - open - 2);
            !inside.empty())
            for (std::string_view arg : split_cells(inside, ", ")) {
                const bool kept = names_.contains(arg);
                passed.push_back(kept ? arg : "");
                args.push_back({value_of(arg), kept});
            }
        if (equals < step.size()) {
            args.push_back({value_of(step.substr(equals + 1))});
            return object.invoke(*id, assign, args);
        }
        Variant result =
            object.invoke(*id, open == std::string_view::npos ? automation::kGet : automation::kMethod | automation::kGet, args);
        for (size_t i = 0; i < passed.size(); ++i)
            if (!passed[i].empty()) names_.find(passed[i])->second = args[i].value;
        return result;
    }

    Maker make_;
    std::map<std::string, Variant, std::less<>> names_;
};

// A row that names no class with New.
inline automation::Ref<automation::Object> no_class(std::string_view) {
    throw automation::AutomationError(429, u"table", u"ActiveX component can't create object");
}

// Each row of `table` on a new `Subject`, readied by `prepare` before the row's steps; `make`
// makes what the row names with New.
template <class Subject, class Prepare = void (*)(Subject&)>
void expect_every_row(std::string_view table, Prepare prepare = [](Subject&) {}, Maker make = no_class) {
    automation::ClockScope pinned(*automation::make_date(2024, 5, 17, 10, 30, 0));
    int rows = 0;
    for_each_row(table, "rule\t", [&](int line_number, const std::vector<std::string_view>& row) {
        ASSERT_EQ(row.size(), 4u) << "line " << line_number;
        auto subject = automation::make_ref<Subject>();
        prepare(*subject);
        ChangeCounter changes(*subject);
        RowRun calls(make);
        std::string got, expected;
        try {
            for (std::string_view step : split_cells(row[1], "; "))
                if (!step.empty()) calls.step(*subject, step);
        } catch (const automation::AutomationError& e) {
            got = error_text(e) + " | ";
        }
        for (std::string_view read : split_cells(row[2], "; ")) {
            if (read.empty()) continue;
            try {
                got += typed(read == "(Chance)" ? Variant(changes.count) : calls.step(*subject, read)) + " | ";
            } catch (const automation::AutomationError& e) {
                got += error_text(e) + " | ";
            }
        }
        for (std::string_view answer : split_cells(row[3], " | "))
            expected += (answer.starts_with("error ") || answer.starts_with("Object ")
                             ? std::string(answer)
                             : typed(calls.value_of(answer))) + " | ";
        EXPECT_EQ(got, expected) << "line " << line_number << ": " << row[0];
        ++rows;
    });
    EXPECT_GT(rows, 10) << "the table was read";
}

}  // namespace celdo::testing

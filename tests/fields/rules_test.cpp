// The rows of field_rules.tsv and collection_rules.tsv: each row's steps given to a new field or
// collection by member name, as a host's late-bound calls give them, and its reads compared
// with what the row expects.
#include "tests/fields/field_support.hpp"

#include "tests/support/cells.hpp"

namespace celdo::testing {
namespace {

constexpr std::string_view kFieldRules =
#include "field_rules.inc"
    ;
constexpr std::string_view kCollectionRules =
#include "collection_rules.inc"
    ;
// The published enumerations, whose members the table names.
constexpr std::string_view kConstants =
#include "Constants.inc"
    ;

// A cell, Missing, or an enumeration's member by name, as a Long.
Variant value_of(std::string_view text) {
    if (text == "Missing") return Variant::missing();
    const std::string member = "\n    " + std::string(text) + " = ";
    const size_t at = kConstants.find(member);
    return at == std::string_view::npos ? cell(text, u".") : Variant(number<int32_t>(kConstants.substr(at + member.size())));
}

std::string error_text(const automation::AutomationError& e) {
    return "error " + std::to_string(e.number()) + " " + automation::utf16_to_utf8(e.source() + u": " + e.description());
}

// Name=value assigns; Name(value, ...) calls; Name alone reads; A.B reaches B on what A gives.
Variant run(automation::Object& object, std::string_view step) {
    bool quoted = false;
    int depth = 0;
    for (size_t i = 0; i < step.size() && (quoted || depth || step[i] != '='); ++i) {
        if (step[i] == '"' && (i == 0 || step[i - 1] != '\\')) quoted = !quoted;
        if (quoted) continue;
        depth += step[i] == '(' ? 1 : step[i] == ')' ? -1 : 0;
        if (depth || step[i] != '.') continue;
        const Variant on = run(object, step.substr(0, i));
        if (!on.is_object() || !on.as_object()) throw automation::AutomationError(424, u"table", u"Object required");
        return run(*on.as_object(), step.substr(i + 1));
    }
    const size_t equals = step.find('='), open = step.find('(');
    const std::string_view name = step.substr(0, std::min(equals, open));
    const auto id = object.member_id(automation::utf8_to_utf16(name));
    if (!id) throw automation::AutomationError(438, u"table", u"no member " + automation::utf8_to_utf16(name));
    std::vector<automation::Argument> args;
    if (equals < open) {
        args.push_back({value_of(step.substr(equals + 1))});
        return object.invoke(*id, automation::kLet, args);
    }
    if (open == std::string_view::npos) return object.invoke(*id, automation::kGet, args);
    if (const std::string_view inside = step.substr(open + 1, step.size() - open - 2); !inside.empty())
        for (std::string_view arg : split_cells(inside, ", ")) args.push_back({value_of(arg)});
    return object.invoke(*id, automation::kMethod | automation::kGet, args);
}

// Each row of `table` on a new `Subject` (a field: named Campo, of type Text).
template <class Subject>
void expect_every_row(std::string_view table) {
    automation::ClockScope pinned(*automation::make_date(2024, 5, 17, 10, 30, 0));
    int line_number = 0, rows = 0;
    for (std::string_view rest = table; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        ++line_number;
        if (line.empty() || line[0] == '#' || line.starts_with("rule\t")) continue;
        const std::vector<std::string_view> row = split_cells(line, "\t");
        ASSERT_EQ(row.size(), 4u) << "line " << line_number;
        auto subject = make_ref<Subject>();
        if constexpr (std::is_same_v<Subject, clsCeldo>) subject->let_Name(u"Campo");
        ChangeCounter changes(*subject);
        std::string got, expected;
        try {
            for (std::string_view step : split_cells(row[1], "; "))
                if (!step.empty()) run(*subject, step);
        } catch (const automation::AutomationError& e) {
            got = error_text(e) + " | ";
        }
        for (std::string_view read : split_cells(row[2], "; ")) {
            try {
                got += typed(read == "(Chance)" ? Variant(changes.count) : run(*subject, read)) + " | ";
            } catch (const automation::AutomationError& e) {
                got += error_text(e) + " | ";
            }
        }
        for (std::string_view answer : split_cells(row[3], " | "))
            expected += (answer.starts_with("error ") || answer.starts_with("Object ") || answer.starts_with("Array(") ||
                                 answer == "Nothing"
                             ? std::string(answer)
                             : typed(value_of(answer))) + " | ";
        EXPECT_EQ(got, expected) << "line " << line_number << ": " << row[0];
        ++rows;
    }
    EXPECT_GT(rows, 30) << "the table was read";
}

TEST(FieldRules, EveryRowOfTheTable) { expect_every_row<clsCeldo>(kFieldRules); }
TEST(CollectionRules, EveryRowOfTheTable) { expect_every_row<clsCeldos>(kCollectionRules); }

}  // namespace
}  // namespace celdo::testing

// The platform's recorded conversions (platform_record.tsv, built into the test): every row in
// the settings it names, through the coercion to its subtype or Round, with IsNumeric and
// IsDate answering as the Double and Date conversions do.
#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "automation/clock.hpp"
#include "automation/convert.hpp"
#include "automation/language.hpp"
#include "automation/recognize.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::automation {
namespace {

using celdo::testing::cell;
using celdo::testing::kThisYear;
using celdo::testing::number;

constexpr std::string_view kRecord =
#include "platform_record.inc"
    ;
bool same(const Variant& got, const Variant& want) {
    if (got.type() != want.type()) return false;
    if (want.type() == VarType::Double)
        return std::fabs(got.as_double() - want.as_double()) <= 1e-14 * std::fabs(want.as_double());
    if (want.type() == VarType::Date) return std::fabs(got.as_date().serial - want.as_date().serial) < 1e-9;
    return got == want;
}

Variant convert(std::string_view conversion, const Variant& input, const Locale& locale) {
    if (conversion.starts_with("Round ")) return lang::Round(input, number<int>(conversion.substr(6)));
    const std::pair<std::string_view, VarType> types[] = {
        {"Byte", VarType::Byte},     {"Integer", VarType::Integer}, {"Long", VarType::Long},
        {"Single", VarType::Single}, {"Double", VarType::Double},   {"Currency", VarType::Currency},
        {"Boolean", VarType::Boolean}, {"Date", VarType::Date},   {"String", VarType::String}};
    for (const auto& [name, type] : types) {
        if (name == conversion) return change_type(input, type, locale);
    }
    ADD_FAILURE() << "no conversion " << conversion;
    return {};
}

TEST(PlatformRecord, EveryRowAgreesInItsSettings) {
    ClockScope this_year(*make_date(kThisYear, 11, 22));
    // The record's German rows need only its separators and order: Spanish, with points in dates.
    const std::pair<std::string_view, Locale> settings[] = {{"en-US", Locale::english_united_states()},
        {"es-ES", Locale::spanish_spain()}, {"de-DE", [] { Locale l = Locale::spanish_spain(); l.date_separator = u"."; return l; }()}};
    int runs = 0;
    celdo::testing::for_each_row(kRecord, "settings\t", [&](int line_number, const std::vector<std::string_view>& row) {
        ASSERT_GE(row.size(), 4u) << "line " << line_number;
        for (const auto& [name, locale] : settings) {
            if (row[0] != name && !((row[0] == "any" || row[0] == "local") && name != "de-DE")) continue;
            LocaleScope scope(locale);
            const std::u16string_view point = row[0] == "local" ? std::u16string_view(locale.decimal) : u".";
            const Variant input = cell(row[2], point);
            Variant got;
            int error = 0;
            try {
                got = convert(row[1], input, locale);
            } catch (const AutomationError& e) {
                error = e.number();
            }
            const bool refused = row[3].starts_with("error ");
            const std::string where = "line " + std::to_string(line_number) + " in " + std::string(name);
            if (refused) EXPECT_EQ(error, number<int>(row[3].substr(6))) << where << " gave " << debug_string(got);
            else EXPECT_TRUE(!error && same(got, cell(row[3], point))) << where << " gave " << (error ? "error " + std::to_string(error) : debug_string(got));
            const bool recognised = row[1] == "Double" ? is_numeric(input, locale) : row[1] == "Date" ? is_date(input, locale) : !refused;
            EXPECT_TRUE(!input.is_string() || recognised == !refused) << "IsNumeric or IsDate, " << where;
            ++runs;
        }
    });
    EXPECT_GT(runs, 1000);
}

}  // namespace
}  // namespace celdo::automation

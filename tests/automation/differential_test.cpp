// The runtime against the platform's own automation library (oleaut32) at the same fixed
// locale, English (United States): conversions (VariantChangeTypeEx), Format (VarFormat),
// Round (VarRound) and the operators (VarCmp, VarAdd, VarCat), over the few hundred inputs of
// differential_cases.tsv. Runs on Windows builds, under Wine in the test suite. Date recognition
// is checked against the platform's recorded results instead (record_test.cpp), which Wine's
// own differ from.
//
// Every disagreement is a decision, listed with its reason in differential_decisions.tsv; a
// disagreement that is not listed fails, and so does a listed one that no longer occurs.
#include <windows.h>
#include <oleauto.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "automation/format.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "com/bridge.hpp"
#include "com/class_registry.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/test_support.hpp"

// The bridge looks library objects up in the classes a server declares; this test serves none.
std::span<const celdo::com::ComClass> celdo::com::classes() { return {}; }

namespace celdo::automation {
namespace {

constexpr LCID kEnglishUS = 0x0409;

// ------------------------------------------------------------------- the decided differences

// Wine's 32-bit oleaut32 computes in the x87 unit's extended precision, its 64-bit one in
// doubles, so some of the platform's answers depend on the architecture. Ours do not: the x86
// build does its arithmetic in SSE2 doubles as x64 does.
#if defined(__i386__) || defined(_M_IX86)
constexpr bool kPlatformX87 = true;
#else
constexpr bool kPlatformX87 = false;
#endif

// The cases, and the differences that are decisions, each with its reason.
constexpr std::string_view kCases =
#include "differential_cases.inc"
    ;
constexpr std::string_view kDecisions =
#include "differential_decisions.inc"
    ;

// The cases whose difference is decided on this architecture's platform.
const std::set<std::string>& decided() {
    static const std::set<std::string> ids = [] {
        std::set<std::string> on_this_platform;
        celdo::testing::for_each_row(kDecisions, "platform\t", [&](int, const std::vector<std::string_view>& row) {
            if (row[0] == "any" || row[0] == (kPlatformX87 ? "x87" : "x64")) on_this_platform.emplace(row[1]);
        });
        return on_this_platform;
    }();
    return ids;
}

// The values of one kind of case, each with its "with" cell (empty when it has none).
std::vector<std::pair<Variant, std::string>> cases_of(std::string_view kind) {
    std::vector<std::pair<Variant, std::string>> cases;
    celdo::testing::for_each_row(kCases, "kind\t", [&](int, const std::vector<std::string_view>& row) {
        if (row[0] == kind) cases.emplace_back(celdo::testing::cell(row[1], u"."), row.size() > 2 ? row[2] : "");
    });
    return cases;
}

// --------------------------------------------------------------------------- plumbing

// One side's answer: a value or an error number.
struct Answer {
    Variant value;
    int error = 0;
    std::string text() const { return error ? "error " + std::to_string(error) : debug_string(value); }
    bool operator==(const Answer& other) const { return error == other.error && (error || value == other.value); }
};

template <class F>
Answer ours(F&& f) {
    try {
        return {f(), 0};
    } catch (const AutomationError& e) {
        return {Variant(), e.number()};
    }
}

// The platform's answer to a call that writes a VARIANT: the value (a type the language lacks
// by its code, so that it matches nothing of ours), or the language's number for the failure.
template <class F>
Answer theirs(F&& call) {
    com::unique_variant out;
    const HRESULT hr = call(out.get());
    switch (hr) {
    case DISP_E_TYPEMISMATCH: return {Variant(), 13};
    case DISP_E_OVERFLOW: return {Variant(), 6};
    case E_INVALIDARG: return {Variant(), 5};
    default: break;
    }
    if (FAILED(hr)) return {Variant(), static_cast<int>(hr)};
    const VARTYPE vt = V_VT(out.get());
    if (vt > VT_NULL && !com::is_language_type(vt)) return {Variant(u"<vartype " + ascii(std::to_string(vt)) + u">"), 0};
    return {com::from_variant(out.get()), 0};
}

com::unique_variant platform(const Variant& v) {
    com::unique_variant out;
    com::to_variant(v, out.get());
    return out;
}

class Differential : public ::testing::Test {
protected:
    LocaleScope english{Locale::english_united_states()};

    void compare(const std::string& id, const Answer& mine, const Answer& platform) {
        ++cases_;
        if (mine == platform) {
            if (decided().count(id)) stale_.push_back(id);
            return;
        }
        const std::string line = id + ": ours " + mine.text() + ", platform " + platform.text();
        if (decided().count(id)) known_.push_back(line);
        else unexplained_.push_back(line);
    }

    void TearDown() override {
        for (const auto& line : known_) std::printf("decided difference  %s\n", line.c_str());
        for (const auto& line : unexplained_) ADD_FAILURE() << "unexplained difference  " << line;
        for (const auto& id : stale_) ADD_FAILURE() << "listed difference no longer occurs: " << id;
        std::printf("%zu cases compared\n", cases_);
    }

    size_t cases_ = 0;
    std::vector<std::string> known_, unexplained_, stale_;
};

// ------------------------------------------------------------------------------ the cases

TEST_F(Differential, ConversionsAgreeWithVariantChangeTypeEx) {
    const std::pair<VarType, const char*> targets[] = {
        {VarType::Boolean, "Boolean"}, {VarType::Byte, "Byte"},     {VarType::Integer, "Integer"},
        {VarType::Long, "Long"},       {VarType::Single, "Single"}, {VarType::Double, "Double"},
        {VarType::Currency, "Currency"}, {VarType::Date, "Date"},  {VarType::String, "String"}};
    for (const auto& [input, with] : cases_of("change")) {
        com::unique_variant in = platform(input);
        for (const auto& [target, name] : targets) {
            const auto vt = static_cast<VARTYPE>(target);  // the language's type codes are the platform's
            compare("change " + debug_string(input) + " to " + name, ours([&] { return change_type(input, target); }),
                    theirs([&](VARIANT* out) { return VariantChangeTypeEx(out, in.get(), kEnglishUS, VARIANT_ALPHABOOL, vt); }));
        }
    }
}

TEST_F(Differential, FormatAgreesWithVarFormat) {
    for (const auto& [value, with] : cases_of("format")) {
        const std::u16string pattern = celdo::testing::text_of(with, u".");
        com::unique_variant in = platform(value);
        com::unique_bstr fmt(SysAllocString(reinterpret_cast<const OLECHAR*>(pattern.c_str())));
        compare("format " + debug_string(value) + " with \"" + utf16_to_utf8(pattern) + "\"",
                ours([&] { return format(value, pattern); }), theirs([&](VARIANT* out) {
                    V_VT(out) = VT_BSTR;
                    V_BSTR(out) = nullptr;
                    return VarFormat(in.get(), fmt.get(), 1, 1, 0, &V_BSTR(out));
                }));
    }
}

TEST_F(Differential, RoundAgreesWithVarRound) {
    for (const auto& [value, with] : cases_of("round")) {
        const int digits = std::stoi(with);
        com::unique_variant in = platform(value);
        compare("round " + debug_string(value) + " to " + with, ours([&] { return lang::Round(value, digits); }),
                theirs([&](VARIANT* out) { return VarRound(in.get(), digits, out); }));
    }
}

TEST_F(Differential, OperatorsAgreeWithVarCmpVarAddAndVarCat) {
    std::vector<Variant> operands;
    for (const auto& [value, with] : cases_of("operand")) operands.push_back(value);
    for (const Variant& a : operands) {
        for (const Variant& b : operands) {
            const std::string pair = debug_string(a) + ", " + debug_string(b);
            com::unique_variant x = platform(a);
            com::unique_variant y = platform(b);
            // The ordering as VarCmp's result: less, equal, greater, Null.
            compare("compare " + pair, ours([&] { return Variant(static_cast<int32_t>(automation::compare(a, b))); }),
                    theirs([&](VARIANT* out) {
                        V_VT(out) = VT_I4;
                        return V_I4(out) = VarCmp(x.get(), y.get(), kEnglishUS, 0);
                    }));
            compare("add " + pair, ours([&] { return add(a, b); }),
                    theirs([&](VARIANT* out) { return VarAdd(x.get(), y.get(), out); }));
            compare("concat " + pair, ours([&] { return concat(a, b); }),
                    theirs([&](VARIANT* out) { return VarCat(x.get(), y.get(), out); }));
        }
    }
}

}  // namespace
}  // namespace celdo::automation

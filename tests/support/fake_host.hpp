#pragma once
// A host object for native tests: what the library reaches late-bound on Windows (a control,
// the data-access object) as a plain C++ double. Properties live in a map, methods are
// functions, and every call is logged, so that the library's calls can be checked exactly.

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "automation/error.hpp"
#include "automation/object.hpp"
#include "automation/text.hpp"
#include "automation/textops.hpp"
#include "automation/variant.hpp"

namespace celdo::testing {

class FakeHost final : public automation::Object {
public:
    using Method = std::function<automation::Variant(std::span<automation::Argument>)>;

    explicit FakeHost(std::u16string type_name) : type_name_(std::move(type_name)) {}

    // A property, created Empty on first mention.
    automation::Variant& property(std::u16string_view name) { return properties_[id_of(name)]; }
    // A method; its arguments arrive in source order and by-reference ones can be assigned.
    void method(std::u16string_view name, Method body) { methods_[id_of(name)] = std::move(body); }

    // "Get Text", "Let Text", "Set Font", "Call AddItem", in the order they came.
    std::vector<std::string> log;

    std::u16string type_name() const override { return type_name_; }

    std::optional<int32_t> member_id(std::u16string_view name) override {
        auto it = ids_.find(automation::lower_case(name));
        if (it == ids_.end()) return std::nullopt;
        return it->second;
    }

    automation::Variant invoke(int32_t member, uint16_t call, std::span<automation::Argument> args) override {
        const std::string name = name_of(member);
        if (call & (automation::kLet | automation::kSet)) {
            if (args.empty()) throw automation::AutomationError(automation::StdError::WrongArgumentCount);
            log.push_back(((call & automation::kSet) ? "Set " : "Let ") + name);
            properties_[member] = args.back().value;
            return {};
        }
        if (auto m = methods_.find(member); m != methods_.end()) {
            log.push_back("Call " + name);
            return m->second(args);
        }
        log.push_back("Get " + name);
        return properties_[member];
    }

private:
    int32_t id_of(std::u16string_view name) {
        auto key = automation::lower_case(name);
        auto [it, added] = ids_.emplace(key, static_cast<int32_t>(ids_.size() + 1));
        if (added) names_[it->second] = automation::utf16_to_utf8(name);
        return it->second;
    }
    std::string name_of(int32_t id) const {
        auto it = names_.find(id);
        return it == names_.end() ? "?" : it->second;
    }

    std::u16string type_name_;
    std::map<std::u16string, int32_t> ids_;
    std::map<int32_t, std::string> names_;
    std::map<int32_t, automation::Variant> properties_;
    std::map<int32_t, Method> methods_;
};

}  // namespace celdo::testing

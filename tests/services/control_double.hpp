#pragma once
// Host controls for the service's tests: objects that answer any member, keep properties by
// name and index, and record every call in one log shared by a control and the objects it
// hands out, so a test reads exactly what the service did, in order:
//   lv: Get ListItems / items: Call Add(Missing, "K12", "a") / item1: Let SubItems(1) = "b"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/object.hpp"
#include "automation/text.hpp"
#include "automation/textops.hpp"
#include "automation/variant.hpp"

namespace celdo::testing {

using automation::Argument;
using automation::Ref;
using automation::Variant;

using Log = std::shared_ptr<std::vector<std::string>>;

inline std::string render(const Variant& v) {
    using automation::VarType;
    if (v.is_missing()) return "Missing";
    switch (v.type()) {
        case VarType::Empty: return "Empty";
        case VarType::Null: return "Null";
        case VarType::Boolean: return v.as_bool() ? "True" : "False";
        case VarType::String: return "\"" + automation::utf16_to_utf8(v.as_string()) + "\"";
        case VarType::Object: return v.as_object() ? "Object" : "Nothing";
        default: return automation::utf16_to_utf8(automation::to_string(v));
    }
}

class ControlDouble final : public automation::Object {
public:
    using Behaviour = std::function<Variant(uint16_t call, std::span<Argument> args)>;

    ControlDouble(std::u16string type, std::string label, Log log = std::make_shared<std::vector<std::string>>())
        : type_(std::move(type)), label_(std::move(label)), log_(std::move(log)) {}

    // A double sharing this one's log.
    Ref<ControlDouble> child(std::u16string type, std::string label) const {
        return Ref<ControlDouble>(new ControlDouble(std::move(type), std::move(label), log_));
    }

    // The stored value of a property, by name (any case) and index.
    Variant& property(std::u16string_view name, std::vector<Variant> index = {}) {
        return properties_[key(name, index)];
    }
    // A member answered by code: methods, and properties whose value is computed.
    void on(std::u16string_view name, Behaviour behaviour) { behaviours_[automation::lower_case(name)] = behaviour; }
    // A member the object does not have (438 when called, absent for GetIDsOfNames).
    void lacks(std::u16string_view name) { absent_.insert(automation::lower_case(name)); }
    // Makes a member raise an automation error.
    void fails(std::u16string_view name, int32_t number) {
        on(name, [number](uint16_t, std::span<Argument>) -> Variant {
            throw automation::AutomationError(number, u"Control", u"refused");
        });
    }

    std::vector<std::string>& log() const { return *log_; }
    // Name look-ups (GetIDsOfNames) and calls (Invoke) made on this object.
    size_t lookups = 0;
    size_t calls = 0;

    std::u16string type_name() const override { return type_; }

    std::optional<int32_t> member_id(std::u16string_view name) override {
        ++lookups;
        std::u16string lower = automation::lower_case(name);
        if (absent_.count(lower)) return std::nullopt;
        auto [it, added] = ids_.emplace(lower, static_cast<int32_t>(ids_.size() + 1));
        if (added) names_[it->second] = automation::utf16_to_utf8(name);
        return it->second;
    }

    Variant invoke(int32_t member, uint16_t call, std::span<Argument> args) override {
        ++calls;
        const std::string name = member == automation::kDefaultMember ? default_member_ : names_.at(member);
        const std::u16string lower = automation::lower_case(automation::utf8_to_utf16(name));
        const bool assigning = (call & (automation::kLet | automation::kSet)) != 0;
        const size_t index_count = assigning ? args.size() - 1 : args.size();
        std::string line = label_ + ": " + (assigning ? "Let " : (call & automation::kMethod) ? "Call " : "Get ") + name;
        if (index_count > 0 || (!assigning && call & automation::kMethod)) {
            line += "(";
            for (size_t i = 0; i < index_count; ++i) line += (i ? ", " : "") + render(args[i].value);
            line += ")";
        }
        if (assigning) line += " = " + render(args.back().value);
        if (!quiet_.count(lower)) log_->push_back(line);
        if (auto b = behaviours_.find(lower); b != behaviours_.end()) return b->second(call, args);
        std::vector<Variant> index;
        for (size_t i = 0; i < index_count; ++i) index.push_back(args[i].value);
        Variant& slot = properties_[key(automation::utf8_to_utf16(name), index)];
        if (assigning) slot = args.back().value;
        return slot;
    }

    // What the default member (id 0) stands for.
    void default_member(std::string name) { default_member_ = std::move(name); }
    // Calls of this member are not logged (cells of a large grid).
    void quiet(std::u16string_view name) { quiet_.insert(automation::lower_case(name)); }

private:
    static std::string key(std::u16string_view name, const std::vector<Variant>& index) {
        std::string k = automation::utf16_to_utf8(automation::lower_case(name));
        for (const Variant& v : index) k += "|" + render(v);
        return k;
    }

    std::u16string type_;
    std::string label_;
    Log log_;
    std::map<std::u16string, int32_t> ids_;
    std::map<int32_t, std::string> names_;
    std::map<std::string, Variant> properties_;
    std::map<std::u16string, Behaviour> behaviours_;
    std::set<std::u16string> absent_;
    std::set<std::u16string> quiet_;
    std::string default_member_ = "Value";
};

inline Variant object(const Ref<ControlDouble>& d) { return Variant(Ref<automation::Object>(d)); }

}  // namespace celdo::testing

#pragma once
// A host object for native tests: what the library reaches late-bound (a control, the
// data-access object) as a plain C++ double. A Fake answers any member, keeps properties under
// their rendered name ("ColWidth(0)") and writes every call to one log shared with the objects
// it hands out, so a test reads what the library did, in order:
//   lv: Get ListItems; items: Call Add(Missing, "K12", "a"); item1: Let SubItems(1) = "b"
// With `items` set it is also a collection: Count, Item from `base` (error 9 outside), Remove,
// Clear, and Add, whose new item keeps its arguments as Index, Key, Text, Width and Alignment.
// It raises the events a test tells it to, to whoever listens.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "automation/convert.hpp"
#include "automation/enumerator.hpp"
#include "automation/error.hpp"
#include "automation/text.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::testing {

using automation::Argument, automation::make_ref, automation::Ref, automation::Variant;
using Log = std::shared_ptr<std::vector<std::string>>;

inline Variant refuse(std::span<Argument>) { throw automation::AutomationError(380, u"Control", u"refused"); }

class Fake final : public automation::Object {
public:
    explicit Fake(std::u16string type, std::string label = "c", Log shared = std::make_shared<std::vector<std::string>>())
        : log(std::move(shared)), type_(std::move(type)), label_(std::move(label)) {}

    Log log;
    std::map<std::string, Variant> props;
    std::map<std::string, std::function<Variant(std::span<Argument>)>> on;  // members answered by code
    std::set<std::string> absent;
    std::optional<std::vector<Variant>> items;
    int32_t base = 1;
    automation::EventSink* sink = nullptr;  // while one listens

    // An object-valued property: a Fake on the same log, made on first use.
    Fake& kid(const std::string& name, std::string label = "") {
        if (!props[name].is_object()) props[name] = make_ref<Fake>(u"Object", std::move(label), log);
        return static_cast<Fake&>(*props[name].as_object());
    }
    // The log lines containing `part` (`from` it: every line after the first such), by "; ".
    std::string lines(const std::string& part = "", bool from = false) const {
        std::string out;
        bool in = false;
        for (const std::string& line : *log) {
            if ((in = (from && in) || line.find(part) != std::string::npos)) out += (out.empty() ? "" : "; ") + line;
        }
        return out;
    }
    long count(const std::string& part) const {
        return std::count_if(log->begin(), log->end(), [&](auto& line) { return line.find(part) != std::string::npos; });
    }

    void raise(std::u16string_view event) {
        if (sink) sink->on_event(event);
    }

    std::u16string type_name() const override { return type_; }
    std::optional<int32_t> member_id(std::u16string_view name) override {
        names_.push_back(automation::utf16_to_utf8(name));
        return absent.count(names_.back()) ? std::nullopt : std::optional(static_cast<int32_t>(names_.size()));
    }
    Variant invoke(int32_t member, uint16_t call, std::span<Argument> args) override {
        if (member == automation::kNewEnumMember && items) return make_ref<automation::SnapshotEnumerator>(*items);
        const std::string name = member == automation::kDefaultMember ? "Value" : names_.at(member - 1);
        const bool let = (call & (automation::kLet | automation::kSet)) != 0;
        std::string key = name;
        for (size_t i = 0; i + let < args.size(); ++i) key += (i ? ", " : "(") + render(args[i].value);
        if (args.size() > let || (!let && call & automation::kMethod)) key += args.size() > let ? ")" : "()";
        const char* kind = call & automation::kSet ? "Set " : let ? "Let " : call & automation::kMethod ? "Call " : "Get ";
        log->push_back(label_ + ": " + kind + key +
                       (let ? " = " + render(args.back().value) : ""));
        if (auto b = on.find(name); b != on.end()) return b->second(args);
        const auto at = [&] {
            if (args[0].value.is_string()) {  // by key
                auto keyed = std::find_if(items->begin(), items->end(), [&](const Variant& v) {
                    return static_cast<Fake&>(*v.as_object()).props["Key"] == args[0].value;
                });
                if (keyed == items->end()) throw automation::AutomationError(35601, u"", u"Element not found");
                return keyed;
            }
            const size_t i = static_cast<size_t>(automation::to_long(args[0].value) - base);
            if (i >= items->size()) throw automation::AutomationError(9, u"", u"");
            return items->begin() + static_cast<ptrdiff_t>(i);
        };
        if (items && name == "Count") return static_cast<int32_t>(items->size());
        if (items && name == "Item") return *at();
        if (items && name == "Remove") return items->erase(at()), Variant();
        if (items && name == "Clear") return items->clear(), Variant();
        if (items && name == "Add") {
            auto item = make_ref<Fake>(u"Object", "item" + std::to_string(items->size() + 1), log);
            const char* names[] = {"Index", "Key", "Text", "Width", "Alignment"};
            for (size_t i = 0; i < std::min<size_t>(args.size(), 5); ++i) item->props[names[i]] = args[i].value;
            return items->emplace_back(item);
        }
        if (let) props[key] = args.back().value;
        return props[key];
    }

    std::unique_ptr<automation::Subscription> listen(automation::EventSink& s) override {
        struct Stop final : automation::Subscription {
            Fake* fake;
            explicit Stop(Fake* f) : fake(f) {}
            ~Stop() override { fake->sink = nullptr; }
        };
        sink = &s;
        return std::make_unique<Stop>(this);
    }

private:
    std::u16string type_;
    std::string label_;
    std::vector<std::string> names_;
};

inline Fake& fake(const Ref<automation::Object>& o) { return static_cast<Fake&>(*o); }

}  // namespace celdo::testing

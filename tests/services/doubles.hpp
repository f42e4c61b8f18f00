#pragma once
// Host objects for the service's tests. A Fake answers any member, keeps properties under their
// rendered name ("ColWidth(0)") and writes every call to one log shared with the objects it hands
// out, so a test reads what the service did, in order:
//   lv: Get ListItems; items: Call Add(Missing, "K12", "a"); item1: Let SubItems(1) = "b"
// With `items` set it is also a collection: Count, Item from `base` (error 9 outside), Remove,
// Clear, and Add, whose new item keeps its arguments as Index, Key, Text, Width and Alignment.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>

#include "automation/convert.hpp"
#include "automation/enumerator.hpp"
#include "automation/text.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "services/ISService.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::testing {

using namespace fields;
using automation::Argument, automation::make_ref, automation::Ref, automation::Variant;
using Control = Ref<automation::Object>;
using Fields = Ref<collections::clsCeldos>;
using Log = std::shared_ptr<std::vector<std::string>>;

inline std::string render(const Variant& v) {
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

private:
    std::u16string type_;
    std::string label_;
    std::vector<std::string> names_;
};

inline Fake& fake(const Control& o) { return static_cast<Fake&>(*o); }

inline Variant collection(std::vector<Variant> items, int32_t base = 1) {
    auto c = make_ref<Fake>(u"Collection", "coll");
    std::tie(c->items, c->base) = std::tuple(std::move(items), base);
    return c;
}

// A list view in report view, 6330 twips wide (6000 to share), with `columns` headers "C".
inline Control list_view(int columns = 0) {
    auto lv = make_ref<Fake>(u"ListView", "lv");
    lv->props["Width"] = 6330.0;
    lv->kid("ListItems", "items").items.emplace();
    Fake& headers = lv->kid("ColumnHeaders", "headers");
    headers.items.emplace();
    for (int i = 0; i < columns; ++i) fake(headers.items->emplace_back(collection({})).object()).props["Text"] = u"C";
    return lv;
}

// A list's items ("Key: Text|SubItems(1)|...") or columns ("Key: Text/Width/Alignment"), by "; ".
inline std::string shown(const Control& lv, const std::string& collection) {
    const auto text = [](const Variant& v) { return automation::utf16_to_utf8(automation::to_string(v)); };
    std::string out;
    for (const Variant& item : *fake(lv).kid(collection).items) {
        auto& p = fake(item.object()).props;
        out += (out.empty() ? "" : "; ") + (p["Key"].is_missing() || p["Key"].is_empty() ? "" : text(p["Key"]) + ": ") +
               text(p["Text"]) + (p.count("Width") ? "/" + text(p["Width"]) + "/" + text(p["Alignment"]) : "");
        for (std::string sub = "SubItems(1)"; p.count(sub); ++sub[9]) out += "|" + text(p[sub]);
    }
    return out;
}

struct FieldDef {
    const char16_t* name;
    fields::ExDataType type;
    const char16_t* format = u"";
    Variant value = {};
};

inline Fields header(std::initializer_list<FieldDef> defs) {
    auto fields = make_ref<collections::clsCeldos>();
    for (const FieldDef& s : defs) {
        auto field = make_ref<fields::clsCeldo>();
        field->let_Name(s.name);
        field->let_DataType(s.type);
        field->let_Format(s.format);
        if (!s.value.is_empty()) field->let_Value(s.value);
        fields->Append(field, Variant::missing(), Variant::missing(), u"");
    }
    return fields;
}

// A data array from rows of cells: matrix({{a, b}, {c, d}}) has two columns and two rows.
inline Variant matrix(std::vector<std::vector<Variant>> rows) {
    auto cells = automation::Array::matrix(static_cast<int32_t>(rows.at(0).size()), static_cast<int32_t>(rows.size()));
    for (size_t r = 0; r < rows.size(); ++r)
        for (size_t c = 0; c < rows[r].size(); ++c) cells.at(static_cast<int32_t>(c), static_cast<int32_t>(r)) = rows[r][c];
    return cells;
}

// A data-access object whose ExecFillArray, every argument by reference, leaves `status`,
// `header` and `parameters` (when given) and answers `data`.
inline Ref<Fake> data_access(bool connected, Variant data = {}, Fields header = {}, int32_t status = 0, Fields parameters = {}) {
    auto ex = make_ref<Fake>(u"DataAccess", "ex");
    ex->props["HayConexion"] = connected;
    ex->on["ExecFillArray"] = [=](std::span<Argument> a) {
        for (const Argument& arg : a) EXPECT_TRUE(arg.by_ref);
        std::tie(a[2].value, a[3].value) = std::tuple(Variant(status), Variant(header));
        if (parameters) a[5].value = parameters;
        return data;
    };
    return ex;
}

// A form control named `name` on `log`, bound through DataField and DataMember when given.
inline Ref<Fake> control(const char16_t* type, const std::string& name, const Log& log, const char16_t* field = u"",
                         const char16_t* member = u"") {
    auto c = make_ref<Fake>(type, name, log);
    std::tie(c->props["Name"], c->props["DataField"], c->props["DataMember"]) =
        std::tuple(Variant(automation::ascii(name)), Variant(field), Variant(member));
    return c;
}

// A form whose Controls collection walks `controls`, sharing their log.
inline Control form(const std::vector<Ref<Fake>>& controls, const Log& log) {
    auto f = make_ref<Fake>(u"Form", "frm", log);
    auto& walked = f->kid("Controls", "controls").items.emplace();
    for (const auto& c : controls) walked.push_back(Variant(Ref<automation::Object>(c)));
    return f;
}

// Makes `list` keep its items as a list or combo box does: AddItem, Clear, ListCount,
// NewIndex, ItemData(i), ListIndex, and Text (also its default member) for the chosen item.
inline void keeps_items(Fake& list) {
    struct Items { std::vector<Variant> texts, data; int32_t index = -1; };
    auto st = std::make_shared<Items>();
    const auto at = [st](const Argument& a) { return static_cast<size_t>(automation::to_long(a.value)); };
    list.on["AddItem"] = [st](std::span<Argument> a) { st->texts.push_back(a[0].value), st->data.push_back(0); return Variant(); };
    list.on["Clear"] = [st](std::span<Argument>) { *st = {}; return Variant(); };
    list.on["ListCount"] = [st](std::span<Argument>) { return Variant(static_cast<int32_t>(st->texts.size())); };
    list.on["NewIndex"] = [st](std::span<Argument>) { return Variant(static_cast<int32_t>(st->texts.size()) - 1); };
    list.on["ItemData"] = [st, at](std::span<Argument> a) {
        if (a.size() == 2) st->data.at(at(a[0])) = automation::to_long(a[1].value);  // a Long, as a list keeps it
        return st->data.at(at(a[0]));
    };
    list.on["ListIndex"] = [st](std::span<Argument> a) {
        if (!a.empty()) st->index = automation::to_long(a[0].value);
        return Variant(st->index);
    };
    list.on["Text"] = list.on["Value"] = [st](std::span<Argument>) {
        return st->index >= 0 ? st->texts.at(static_cast<size_t>(st->index)) : Variant(u"");
    };
}

struct Service : ::testing::Test {
    services::ISService s;
};

}  // namespace celdo::testing

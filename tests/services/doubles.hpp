#pragma once
// Host objects for the service's tests, made of the Fake of tests/support/fake_host.hpp: list
// views, forms and their controls, lists that keep their items, the data-access object.

#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "services/ISService.hpp"
#include "tests/collections/collection_support.hpp"
#include "tests/fields/field_support.hpp"
#include "tests/support/fake_host.hpp"
#include "tests/support/rules.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::testing {

using namespace fields;
using Control = Ref<automation::Object>;
using Fields = Ref<collections::clsCeldos>;

inline Variant collection(std::vector<Variant> items, int32_t base = 1) {
    auto c = make_ref<Fake>(u"Collection", "coll");
    std::tie(c->items, c->base) = std::tuple(std::move(items), base);
    return c;
}

// An object-valued property of `owner` that is an empty collection counted from `base`.
inline Fake& holder(Fake& owner, const std::string& name, std::string label, int32_t base = 1) {
    Fake& kept = owner.kid(name, std::move(label));
    kept.items.emplace();
    kept.base = base;
    return kept;
}

// A new item of `holder`'s collection, on its log, holding `props`.
inline Fake& add(Fake& holder, std::string label, std::map<std::string, Variant> props = {}) {
    auto item = make_ref<Fake>(u"Object", std::move(label), holder.log);
    item->props = std::move(props);
    holder.items->push_back(item);
    return *item;
}

// A list view in report view, 6330 twips wide (6000 to share), with `columns` headers "C".
inline Control list_view(int columns = 0) {
    auto lv = make_ref<Fake>(u"ListView", "lv");
    lv->props["Width"] = 6330.0;
    holder(*lv, "ListItems", "items");
    Fake& headers = holder(*lv, "ColumnHeaders", "headers");
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

// The cases of the fill tests, one table of rows for each, in service_cases.tsv.
inline constexpr std::string_view kCases =
#include "service_cases.inc"
    ;

// A header of fields written "Name exType "format" value; ...", each field's format and value
// when given: header(R"(Id exLong; Price exDouble "0.00" Double 2.5)").
inline Fields header(std::string_view list) {
    auto fields = make_ref<collections::clsCeldos>();
    for (std::string_view written : split_cells(list, "; ")) {
        if (written.empty()) continue;
        const std::vector<std::string_view> part = split_cells(written, " ");
        auto field = make_ref<fields::clsCeldo>();
        field->let_Name(automation::utf8_to_utf16(part[0]));
        field->let_DataType(static_cast<fields::ExDataType>(value_of(part[1]).as_long()));
        field->let_Format(part.size() > 2 ? value_of(part[2]).as_string() : u"");
        if (part.size() > 3) field->let_Value(value_of(written.substr(static_cast<size_t>(part[3].data() - written.data()))));
        fields->Append(field, Variant::missing(), Variant::missing(), u"");
    }
    return fields;
}

// A table's header cell, Fields(...) around what header() reads, or Nothing.
inline Fields fields_in(std::string_view cell) { return cell == "Nothing" ? Fields() : header(cell.substr(7, cell.size() - 8)); }

// A cell of the table (a data array among them, Array(a, b; c, d) with two columns and two rows),
// a collection of cells written Collection(a, b), or a header written Fields(...) as header() reads it.
inline Variant data(std::string_view text) {
    const std::string_view inside = text.substr(text.find('(') + 1, text.size() - text.find('(') - 2);
    if (text.starts_with("Fields(")) return header(inside);
    if (!text.starts_with("Collection(")) return value_of(text);
    std::vector<Variant> items;
    for (std::string_view item : split_cells(inside, ", ")) items.push_back(data(item));
    return collection(items);
}

// Calls `visit(where, cells)` for each row of `table` in service_cases.tsv, the table's name left
// out of its cells; `where` names the row's line for failure messages.
template <class F>
void for_each_case(std::string_view table, F visit) {
    int rows = 0;
    for_each_row(kCases, "table\t", [&](int line, const std::vector<std::string_view>& row) {
        if (row[0] != table) return;
        ++rows;
        visit("service_cases.tsv line " + std::to_string(line), std::vector(row.begin() + 1, row.end()));
    });
    EXPECT_GT(rows, 1) << table;
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
    f->kid("Controls", "controls").items.emplace(controls.begin(), controls.end());
    return f;
}

// Makes `list` keep its items as a list or combo box does: AddItem, Clear, ListCount,
// NewIndex, ItemData(i), ListIndex, and Text (also its default member) for the chosen item.
inline Ref<Fake> keeps_items(Ref<Fake> list) {
    struct Items { std::vector<Variant> texts, data; int32_t index = -1; };
    auto st = std::make_shared<Items>();
    using Args = std::span<Argument>;
    const auto at = [st](const Argument& a) { return static_cast<size_t>(automation::to_long(a.value)); };
    list->on["AddItem"] = [st](Args a) { st->texts.push_back(a[0].value), st->data.push_back(0); return Variant(); };
    list->on["Clear"] = [st](Args) { *st = {}; return Variant(); };
    list->on["ListCount"] = [st](Args) { return Variant(static_cast<int32_t>(st->texts.size())); };
    list->on["NewIndex"] = [st](Args) { return Variant(static_cast<int32_t>(st->texts.size()) - 1); };
    list->on["ItemData"] = [st, at](Args a) {
        if (a.size() == 2) st->data.at(at(a[0])) = automation::to_long(a[1].value);  // a Long, as a list keeps it
        return st->data.at(at(a[0]));
    };
    list->on["ListIndex"] = [st](Args a) {
        if (!a.empty()) st->index = automation::to_long(a[0].value);
        return Variant(st->index);
    };
    list->on["Text"] = list->on["Value"] = [st](Args) {
        return st->index >= 0 ? st->texts.at(static_cast<size_t>(st->index)) : Variant(u"");
    };
    return list;
}

// What was done to the objects whose labels start with `label`, in order, without their labels,
// reads, "Let " or "Call ": "Add(Missing, "K1", "a"); Tag = "t"; Refresh(); Set Picture = ...".
inline std::string writes(const Fake& f, const std::string& label) {
    std::string out;
    for (const std::string& line : *f.log) {
        size_t at = line.find(": ") + 2;
        if (line.rfind(label, 0) != 0 || line.compare(at, 4, "Get ") == 0) continue;
        at += line.compare(at, 4, "Let ") == 0 ? 4 : line.compare(at, 5, "Call ") == 0 ? 5 : 0;
        out += (out.empty() ? "" : "; ") + line.substr(at);
    }
    return out;
}

struct Service : ::testing::Test {
    services::ISService s;

    // Gives the service a data-access object whose ExecFillArray, every argument by reference,
    // leaves `status`, and `header` and `parameters` when given, and answers `data`. Its log
    // shows what it was asked.
    Ref<Fake> data_access(bool connected, Variant data = {}, Fields header = {}, int32_t status = 0, Variant parameters = {}) {
        auto ex = make_ref<Fake>(u"DataAccess", "ex");
        ex->props["HayConexion"] = connected;
        ex->on["ExecFillArray"] = [=](std::span<Argument> a) {
            for (const Argument& arg : a) EXPECT_TRUE(arg.by_ref);
            a[2].value = status;
            if (header) a[3].value = header;
            if (!parameters.is_empty() && a.size() > 5) a[5].value = parameters;
            return data;
        };
        s.set_Ex(ex);
        return ex;
    }
};

}  // namespace celdo::testing

#pragma once
// The host's side of the service tests: a list view with its items and column headers, a
// data-access object, plain collections, headers and data arrays.

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "tests/services/control_double.hpp"

namespace celdo::testing {

inline Variant object_of(const Ref<collections::clsCeldos>& fields) { return Variant(Ref<automation::Object>(fields)); }

struct FieldSpec {
    const char16_t* name;
    fields::ExDataType type;
    const char16_t* format;
};

// A field collection describing columns.
inline Ref<collections::clsCeldos> header(std::initializer_list<FieldSpec> specs) {
    auto fields = automation::make_ref<collections::clsCeldos>();
    for (const FieldSpec& s : specs) {
        auto field = automation::make_ref<fields::clsCeldo>();
        field->let_Name(s.name);
        field->let_DataType(s.type);
        field->let_Format(s.format);
        fields->Append(field, Variant::missing(), Variant::missing(), u"");
    }
    return fields;
}

// A data array from rows of cells: matrix({{a, b}, {c, d}}) has two columns and two rows.
inline Variant matrix(std::vector<std::vector<Variant>> rows) {
    const int32_t columns = rows.empty() ? 0 : static_cast<int32_t>(rows.front().size());
    auto cells = automation::Array::matrix(columns, static_cast<int32_t>(rows.size()));
    for (size_t r = 0; r < rows.size(); ++r) {
        for (size_t c = 0; c < rows[r].size(); ++c) cells.at(static_cast<int32_t>(c), static_cast<int32_t>(r)) = rows[r][c];
    }
    return Variant(std::move(cells));
}

// A collection as the language's Collection: Count, and Item from `base` (1), error 9 outside.
inline Variant collection(std::vector<Variant> items, int32_t base = 1) {
    auto c = automation::make_ref<ControlDouble>(u"Collection", "collection");
    c->property(u"Count") = Variant(static_cast<int32_t>(items.size()));
    c->on(u"Item", [items, base](uint16_t, std::span<Argument> a) {
        const int32_t i = automation::to_long(a[0].value) - base;
        if (i < 0 || i >= static_cast<int32_t>(items.size())) throw automation::AutomationError(automation::StdError::SubscriptOutOfRange);
        return items[static_cast<size_t>(i)];
    });
    return object(c);
}

inline Ref<ControlDouble> data_access(bool connected) {
    auto ex = automation::make_ref<ControlDouble>(u"DataAccess", "ex");
    ex->property(u"HayConexion") = Variant(connected);
    return ex;
}

// A list view in report view: items with sub-items, column headers with widths.
class ListView {
public:
    explicit ListView(double width = 6330) {
        view_ = automation::make_ref<ControlDouble>(u"ListView", "lv");
        control = view_;
        items_ = view_->child(u"ListItems", "items");
        headers_ = view_->child(u"ColumnHeaders", "headers");
        view_->property(u"ListItems") = object(items_);
        view_->property(u"ColumnHeaders") = object(headers_);
        view_->property(u"Width") = Variant(width);
        items_->on(u"Add", [this](uint16_t, std::span<Argument> a) {
            auto item = view_->child(u"ListItem", "item" + std::to_string(++added_));
            item->property(u"Text") = a[2].value;
            auto texts = std::make_shared<std::vector<std::string>>(1, render(a[2].value));
            item->on(u"SubItems", [texts](uint16_t call, std::span<Argument> s) {
                const size_t i = static_cast<size_t>(automation::to_long(s[0].value));
                if (texts->size() <= i) texts->resize(i + 1, "\"\"");
                if (call & automation::kLet) (*texts)[i] = render(s.back().value);
                return Variant();
            });
            if (on_item) on_item(*item);
            rows_.push_back({item, texts});
            return object(item);
        });
        items_->on(u"Clear", [this](uint16_t, std::span<Argument>) {
            rows_.clear();
            return Variant();
        });
        headers_->on(u"Count", [this](uint16_t, std::span<Argument>) { return Variant(static_cast<int32_t>(columns_.size())); });
        headers_->on(u"Add", [this](uint16_t, std::span<Argument> a) {
            auto column = view_->child(u"ColumnHeader", "column");
            column->property(u"Caption") = a.size() > 2 ? a[2].value : Variant();
            column->property(u"Width") = a.size() > 3 ? a[3].value : Variant();
            column->property(u"Alignment") = a.size() > 4 ? a[4].value : Variant(0);
            columns_.push_back(column);
            return object(column);
        });
        headers_->on(u"Remove", [this](uint16_t, std::span<Argument> a) {
            columns_.erase(columns_.begin() + (automation::to_long(a[0].value) - 1));
            return Variant();
        });
        headers_->on(u"Clear", [this](uint16_t, std::span<Argument>) {
            columns_.clear();
            return Variant();
        });
        headers_->on(u"Item", [this](uint16_t, std::span<Argument> a) {
            return object(columns_.at(static_cast<size_t>(automation::to_long(a[0].value) - 1)));
        });
    }
    ListView(const ListView&) = delete;
    ListView& operator=(const ListView&) = delete;

    Ref<automation::Object> control;
    std::function<void(ControlDouble&)> on_item;

    void add_column(const char16_t* caption) {
        auto column = view_->child(u"ColumnHeader", "column");
        column->property(u"Caption") = Variant(caption);
        columns_.push_back(column);
    }
    // What the service did to the items, from the first call starting with `first`.
    std::vector<std::string> calls_after(const std::string& first) const {
        std::vector<std::string> lines;
        bool started = false;
        for (const std::string& line : view_->log()) {
            started = started || line.rfind(first, 0) == 0;
            if (started && line.rfind("item", 0) == 0) lines.push_back(line);
        }
        return lines;
    }
    std::vector<std::string> control_log() const {
        std::vector<std::string> lines;
        for (const std::string& line : view_->log()) {
            if (line.rfind("lv:", 0) == 0) lines.push_back(line);
        }
        return lines;
    }
    int count(const std::string& part) const {
        int n = 0;
        for (const std::string& line : view_->log()) n += line.find(part) != std::string::npos;
        return n;
    }
    // Each item's text and sub-items, rendered and joined by a space.
    std::vector<std::string> item_texts() const {
        std::vector<std::string> texts;
        for (const Row& row : rows_) {
            std::string joined;
            for (const std::string& t : *row.texts) joined += (joined.empty() ? "" : " ") + t;
            texts.push_back(joined);
        }
        return texts;
    }
    std::vector<std::string> column_captions() const {
        std::vector<std::string> captions;
        for (const auto& c : columns_) captions.push_back(automation::utf16_to_utf8(automation::to_string(c->property(u"Caption"))));
        return captions;
    }
    // "caption/width/alignment" of each column.
    std::vector<std::string> column_layout() const {
        std::vector<std::string> layout;
        for (const auto& c : columns_) {
            layout.push_back(automation::utf16_to_utf8(automation::to_string(c->property(u"Caption"))) + "/" +
                             render(c->property(u"Width")) + "/" + render(c->property(u"Alignment")));
        }
        return layout;
    }

private:
    struct Row {
        Ref<ControlDouble> item;
        std::shared_ptr<std::vector<std::string>> texts;
    };
    Ref<ControlDouble> view_, items_, headers_;
    std::vector<Row> rows_;
    std::vector<Ref<ControlDouble>> columns_;
    int added_ = 0;
};

}  // namespace celdo::testing

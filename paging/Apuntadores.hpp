#pragma once
// Apuntadores: keyset paging. The host shows a page of at most MaxRows rows in primary-key
// order and records it (Add, AddRows); Avanzar and Retroceder then raise Requery with the
// primary key to fetch from, so that the host asks its database for the rows after the last
// key shown (or from a kept page's first key) rather than for rows by position, which inserts
// and deletes between two pages would shift.

#include <string>
#include <vector>

#include "automation/component.hpp"
#include "automation/variant.hpp"
#include "collections/clsCeldos.hpp"
#include "paging/Apuntador.hpp"
#include "paging/Apuntadores.gen.hpp"

namespace celdo::paging {

class Apuntadores final : public automation::Declared<Apuntadores>, private automation::EventSink {
public:
    using Variant = automation::Variant;
    using Fields = automation::Ref<collections::clsCeldos>;
    using Page = automation::Ref<Apuntador>;

    std::u16string get_PrimaryKey() const { return primary_key_; }
    void let_PrimaryKey(const std::u16string& value);
    int32_t get_MaxRows() const { return max_rows_; }
    void let_MaxRows(int32_t value);
    std::u16string get_Filter() const { return filter_; }
    void let_Filter(const std::u16string& value);
    automation::Ref<automation::Object> get_Control() const { return control_; }
    void set_Control(automation::Ref<automation::Object> value);
    Page Add(Fields First, Fields Last, int32_t Rows, const std::u16string& Key);
    Page AddRows(const Variant& vData, Fields oHeader, const std::u16string& Key);
    bool Avanzar();
    bool Retroceder();
    Page get_Current() const { return current_ ? pages_[current_ - 1] : nullptr; }
    Page get_Item(Variant& Index) const { return pages_[position_of(Index)]; }
    int32_t get_Count() const { return static_cast<int32_t>(pages_.size()); }
    void Remove(Variant& Index);
    void Clear();
    automation::Ref<automation::Object> get_NewEnum() const;

    void visit_references(automation::ReferenceVisitor& visitor) const override {
        for (const Page& p : pages_) visitor.visit(p.get());
        visitor.visit(control_.get());
    }
    void drop_references() override {
        listening_.reset();
        control_ = nullptr;
        pages_.clear();
        current_ = 0;
    }

private:
    // What the last Requery asked for, which tells Add where the page it records goes.
    enum class Asked { Nothing, Next, Previous };

    size_t position_of(const Variant& index) const;
    // The primary-key fields of a row, copied with their values and given `op` as operator.
    Fields key_of(const Fields& row, const std::u16string& op) const;
    void requery(Fields pk, Asked asked);
    void renumber();
    void on_event(std::u16string_view name) override;

    std::u16string primary_key_;
    int32_t max_rows_ = 100;
    std::u16string filter_;
    std::vector<Page> pages_;
    size_t current_ = 0;  // from 1; 0 before the first page
    Asked asked_ = Asked::Nothing;
    bool at_end_ = false;  // the page after the current one came back empty
    automation::Ref<automation::Object> control_;
    std::unique_ptr<automation::Subscription> listening_;  // to control_'s events; goes first
};

}  // namespace celdo::paging

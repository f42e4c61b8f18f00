#pragma once
// clsRegistro: rows kept in order and optionally by key. Unlike a field collection's Append, a
// key already in use is an error (457), and keys are taken as given.

#include "automation/component.hpp"
#include "automation/variant.hpp"
#include "collections/clsCeldos.hpp"
#include "collections/clsRegistro.gen.hpp"
#include "collections/keyed_list.hpp"

namespace celdo::collections {

class clsRegistro final : public automation::Declared<clsRegistro> {
public:
    using Variant = automation::Variant;
    using Row = automation::Ref<clsCeldos>;

    // The row itself, shared with the caller.
    void Add(Row Celdos, const std::u16string& oKey);
    // A new row of copies of Celdos' fields: later changes to Celdos do not reach it.
    void AppendAs(Row Celdos, const std::u16string& oKey);
    // A text is a key; a number (of any numeric type) a position from 1. Neither found: error 5.
    Row get_Item(Variant& vntIndexKey) const;
    int32_t get_Count() const { return static_cast<int32_t>(rows_.size()); }
    void Remove(Variant& vntIndexKey);
    automation::Ref<automation::Object> get_NewEnum() const;
    void Clear() { rows_.clear(); }
    bool Exist(const std::u16string& Name) const { return rows_.find(Name) != nullptr; }

    // Not published: the rows it holds, for the cycle collector.
    void visit_references(automation::ReferenceVisitor& visitor) const override {
        rows_.for_each_copy([&](const Row& r) { visitor.visit(r.get()); });
    }
    void drop_references() override { rows_.clear(); }

private:
    size_t position_of(const Variant& index) const;

    KeyedList<Row> rows_;
};

}  // namespace celdo::collections

#pragma once
// Apuntador: one page of a paged list, known by the primary key of its first and last rows, as
// Apuntadores keeps it.

#include <string>

#include "automation/component.hpp"
#include "collections/clsCeldos.hpp"
#include "paging/Apuntador.gen.hpp"

namespace celdo::paging {

class Apuntador final : public automation::Declared<Apuntador> {
public:
    using Fields = automation::Ref<collections::clsCeldos>;

    Fields get_First() const { return first_; }
    void set_First(Fields value) { first_ = std::move(value); }
    Fields get_Last() const { return last_; }
    void set_Last(Fields value) { last_ = std::move(value); }
    int32_t get_Rows() const { return rows_; }
    void let_Rows(int32_t value) { rows_ = value; }
    std::u16string get_Key() const { return key_; }
    void let_Key(const std::u16string& value) { key_ = value; }
    int32_t get_Index() const { return index_; }

    // Not published: where its Apuntadores holds it (0: nowhere).
    void place(int32_t index) noexcept { index_ = index; }

    void visit_references(automation::ReferenceVisitor& visitor) const override {
        if (first_) visitor.visit(first_.get());
        if (last_) visitor.visit(last_.get());
    }
    void drop_references() override {
        first_ = nullptr;
        last_ = nullptr;
    }

private:
    Fields first_, last_;
    int32_t rows_ = 0;
    std::u16string key_;
    int32_t index_ = 0;
};

}  // namespace celdo::paging

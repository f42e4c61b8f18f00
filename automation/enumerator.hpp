#pragma once
// Enumerators: what NewEnum hands out so that hosts can walk a collection with For Each.

#include <cstddef>
#include <memory>
#include <vector>

#include "automation/error.hpp"
#include "automation/object.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

class Enumerator : public Object {
public:
    // Moves to the next item; false at the end.
    virtual bool next(Variant& item) = 0;
    virtual void reset() = 0;
    virtual Ref<Enumerator> clone() const = 0;

    // Enumerators are walked, never called by name.
    std::u16string type_name() const override { return u"Object"; }
    std::optional<int32_t> member_id(std::u16string_view) override { return std::nullopt; }
    Variant invoke(int32_t, uint16_t, std::span<Argument>) override {
        throw AutomationError(StdError::MemberNotFound);
    }
};

// Walks the items as they were when the walk began, so that a loop that changes the
// collection neither skips nor repeats items.
class SnapshotEnumerator final : public Enumerator {
public:
    explicit SnapshotEnumerator(std::vector<Variant> items)
        : items_(std::make_shared<const std::vector<Variant>>(std::move(items))) {}

    bool next(Variant& item) override {
        if (at_ >= items_->size()) return false;
        item = (*items_)[at_++];
        return true;
    }
    void reset() override { at_ = 0; }
    Ref<Enumerator> clone() const override {
        auto copy = make_ref<SnapshotEnumerator>(items_);
        copy->at_ = at_;
        return copy;
    }

    explicit SnapshotEnumerator(std::shared_ptr<const std::vector<Variant>> items)
        : items_(std::move(items)) {}

private:
    std::shared_ptr<const std::vector<Variant>> items_;
    size_t at_ = 0;
};

}  // namespace celdo::automation

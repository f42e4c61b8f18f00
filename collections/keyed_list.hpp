#pragma once
// An ordered list with optional, unique, case-insensitive keys: the semantics of the automation
// language's Collection, with constant-time access by position and (on average) by key, also
// after inserts in the middle and removals.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "automation/textops.hpp"

namespace celdo::collections {

template <class T>
class KeyedList {
public:
    enum class Result { Inserted, DuplicateKey };

    size_t size() const noexcept { return items_.size(); }
    bool empty() const noexcept { return items_.empty(); }

    // Position counts from 0 here; the collections' members translate from 1.
    const T& at(size_t index) const { return items_[index]->item; }

    // The item filed under a key, or null.
    const T* find(std::u16string_view key) const {
        auto it = index_.find(fold(key));
        return it == index_.end() ? nullptr : &it->second->item;
    }

    std::optional<size_t> position_of_key(std::u16string_view key) const {
        auto it = index_.find(fold(key));
        if (it == index_.end()) return std::nullopt;
        return position_of(it->second);
    }

    // Inserts at `index` (0 to size); a key already in use refuses the insertion.
    Result insert(size_t index, T item, std::optional<std::u16string_view> key) {
        auto node = std::make_unique<Node>(Node{std::move(item), std::nullopt});
        if (key) {
            node->key = fold(*key);
            if (index_.count(*node->key)) return Result::DuplicateKey;
            index_.emplace(*node->key, node.get());
        }
        items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::move(node));
        return Result::Inserted;
    }

    void erase(size_t index) {
        const Node* node = items_[index].get();
        if (node->key) index_.erase(*node->key);
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    }

    void clear() {
        index_.clear();
        items_.clear();
    }

    std::vector<T> snapshot() const {
        std::vector<T> out;
        out.reserve(items_.size());
        for (const auto& node : items_) out.push_back(node->item);
        return out;
    }

private:
    struct Node {
        T item;
        std::optional<std::u16string> key;  // folded; an empty text is a key too
    };

    static std::u16string fold(std::u16string_view key) { return automation::upper_case(key); }

    size_t position_of(const Node* node) const {
        for (size_t i = 0; i < items_.size(); ++i) {
            if (items_[i].get() == node) return i;
        }
        return items_.size();
    }

    std::vector<std::unique_ptr<Node>> items_;
    std::unordered_map<std::u16string, Node*> index_;
};

}  // namespace celdo::collections

#pragma once
// An ordered list with optional, unique, case-insensitive keys: the semantics of the automation
// language's Collection, with constant-time access by position and (on average) by key, also
// after inserts in the middle and removals.
//
// The key index is an open-addressing table of (hash, entry) pairs; an entry keeps its folded
// key beside the item, so a lookup touches the table slot and the entry and nothing else, and
// folds the looked-up key on the fly without allocating.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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
    const T& at(size_t index) const { return items_[index].item; }

    // The item filed under a key, or null.
    const T* find(std::u16string_view key) const {
        const Entry* entry = lookup(key);
        return entry ? &entry->item : nullptr;
    }

    std::optional<size_t> position_of_key(std::u16string_view key) const {
        const Entry* entry = lookup(key);
        if (!entry) return std::nullopt;
        for (size_t i = 0; i < items_.size(); ++i) {
            if (items_[i].entry.get() == entry) return i;
        }
        return std::nullopt;
    }

    // Inserts at `index` (0 to size); a key already in use refuses the insertion.
    Result insert(size_t index, T item, std::optional<std::u16string_view> key) {
        std::unique_ptr<Entry> entry;
        if (key) {
            if (lookup(*key)) return Result::DuplicateKey;
            entry = std::make_unique<Entry>(item);
            entry->set_key(*key);
            entry->hash = hash_of(*key);
            add_to_index(entry.get());
        }
        items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), Position{std::move(item), std::move(entry)});
        return Result::Inserted;
    }

    void erase(size_t index) {
        if (items_[index].entry) remove_from_index(items_[index].entry.get());
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    }

    void clear() {
        slots_.clear();
        used_ = 0;
        live_ = 0;
        items_.clear();
    }

    // Calls `f` on every stored copy of the items: a keyed item is held twice, in its position
    // and in its index entry (for whoever counts references).
    template <class F>
    void for_each_copy(F&& f) const {
        for (const auto& position : items_) {
            f(position.item);
            if (position.entry) f(position.entry->item);
        }
    }

    std::vector<T> snapshot() const {
        std::vector<T> out;
        out.reserve(items_.size());
        for (const auto& position : items_) out.push_back(position.item);
        return out;
    }

private:
    // A keyed item's index entry. The item is held here too, so that a lookup by key needs no
    // position; the position vector holds the item beside its entry for reads by position.
    struct Entry {
        explicit Entry(T i) : item(std::move(i)) {}

        // The key folded to upper case; an empty text is a key too. Short keys (most field
        // names) live inside the entry, so a lookup reads no further memory.
        void set_key(std::u16string_view key) {
            length = key.size();
            if (length > kInline) long_key.resize(length);
            char16_t* out = length > kInline ? long_key.data() : short_key;
            for (size_t i = 0; i < length; ++i) out[i] = automation::upper_char(key[i]);
        }
        std::u16string_view key() const { return {length > kInline ? long_key.data() : short_key, length}; }

        static constexpr size_t kInline = 23;
        T item;
        uint64_t hash = 0;
        size_t length = 0;
        char16_t short_key[kInline] = {};
        std::u16string long_key;
    };

    struct Position {
        T item;
        std::unique_ptr<Entry> entry;  // null for an unkeyed item
    };

    struct Slot {
        uint64_t hash = 0;
        Entry* entry = nullptr;  // null: never used; kRemoved: used once, probe on
    };

    static Entry* removed() { return reinterpret_cast<Entry*>(alignof(Entry)); }

    // FNV-1a over the upper-cased code units, so that keys differing only in case collide.
    static uint64_t hash_of(std::u16string_view key) noexcept {
        uint64_t h = 1469598103934665603ull;
        for (char16_t c : key) {
            h ^= automation::upper_char(c);
            h *= 1099511628211ull;
        }
        return h | 1;  // never 0, the mark of an unused slot's hash
    }

    static bool same_key(const Entry& e, std::u16string_view key) noexcept {
        const std::u16string_view stored = e.key();
        if (stored.size() != key.size()) return false;
        for (size_t i = 0; i < key.size(); ++i) {
            if (stored[i] != automation::upper_char(key[i])) return false;
        }
        return true;
    }

    const Entry* lookup(std::u16string_view key) const {
        if (slots_.empty()) return nullptr;
        const uint64_t h = hash_of(key);
        const size_t mask = slots_.size() - 1;
        for (size_t i = h & mask;; i = (i + 1) & mask) {
            const Slot& s = slots_[i];
            if (!s.entry) return nullptr;
            if (s.entry != removed() && s.hash == h && same_key(*s.entry, key)) return s.entry;
        }
    }

    void add_to_index(Entry* entry) {
        // At most half the slots in use, removal marks included; a rehash drops the marks.
        if ((used_ + 1) * 2 > slots_.size()) rehash(std::max<size_t>(16, std::bit_ceil((live_ + 1) * 4)));
        place(entry);
        ++used_;
        ++live_;
    }

    void place(Entry* entry) {
        const size_t mask = slots_.size() - 1;
        for (size_t i = entry->hash & mask;; i = (i + 1) & mask) {
            Slot& s = slots_[i];
            if (!s.entry || s.entry == removed()) {
                s = {entry->hash, entry};
                return;
            }
        }
    }

    void remove_from_index(const Entry* entry) {
        const size_t mask = slots_.size() - 1;
        for (size_t i = entry->hash & mask;; i = (i + 1) & mask) {
            Slot& s = slots_[i];
            if (!s.entry) return;
            if (s.entry == entry) {
                s.entry = removed();
                --live_;
                return;  // the slot stays used until the next rehash
            }
        }
    }

    void rehash(size_t capacity) {
        std::vector<Slot> old = std::move(slots_);
        slots_.assign(capacity, Slot{});
        used_ = 0;
        for (const Slot& s : old) {
            if (s.entry && s.entry != removed()) {
                place(s.entry);
                ++used_;
            }
        }
    }

    std::vector<Position> items_;
    std::vector<Slot> slots_;
    size_t used_ = 0;  // slots holding an entry or a removal mark
    size_t live_ = 0;  // slots holding an entry
};

}  // namespace celdo::collections

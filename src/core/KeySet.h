// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Keys.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace relay {

// Finds the numbers of items by their keys, without regard to case. One flat table holds the hash of each key
// beside the number, so growing and skipping other keys never touch an item; that keeps a hundred thousand of
// them fast. `KeyOf` gives the key for an item number; the key of an item in the set must not change.
class KeySet final {
  public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    // kNone when no item has the key.
    template <typename KeyOf>
    std::uint32_t find(std::string_view key, KeyOf&& keyOf) const noexcept {
        return m_slots.empty() ? kNone : m_slots[slotFor(key, hashOf(key), keyOf)].item;
    }

    // Does nothing and returns false when the key is taken. The item itself need not exist yet.
    template <typename KeyOf>
    bool insert(std::uint32_t item, std::string_view key, KeyOf&& keyOf) {
        reserve(m_count + 1);
        const std::uint32_t hash = hashOf(key);
        Slot& slot = m_slots[slotFor(key, hash, keyOf)];
        if (slot.item != kNone) return false;
        slot = {item, hash};
        ++m_count;
        return true;
    }

    // Prefetches the key's place for an insert that follows.
    void expect(std::string_view key) const noexcept {
        if (!m_slots.empty()) __builtin_prefetch(&m_slots[home(hashOf(key))], 1);
    }

    // Makes room for `count` items in all.
    void reserve(std::size_t count) {
        std::size_t slots = m_slots.empty() ? 16 : m_slots.size();
        while (count * 8 > slots * 7) slots *= 2;
        if (slots > m_slots.size()) resize(slots);
    }

    void clear() noexcept {
        m_slots = {};
        m_count = 0;
    }

    std::size_t size() const noexcept { return m_count; }

  private:
    struct Slot final {
        std::uint32_t item = kNone;
        std::uint32_t hash = 0;
    };

    static std::uint32_t hashOf(std::string_view key) noexcept {
        return static_cast<std::uint32_t>(KeyHash()(key));
    }
    std::size_t home(std::uint32_t hash) const noexcept { return hash & (m_slots.size() - 1); }
    std::size_t next(std::size_t slot) const noexcept { return (slot + 1) & (m_slots.size() - 1); }

    // The slot of the key, or the free one where it would go.
    template <typename KeyOf>
    std::size_t slotFor(std::string_view key, std::uint32_t hash, KeyOf&& keyOf) const noexcept {
        std::size_t slot = home(hash);
        for (; m_slots[slot].item != kNone; slot = next(slot)) {
            if (m_slots[slot].hash == hash && equalsNoCase(key, keyOf(m_slots[slot].item))) break;
        }
        return slot;
    }

    void resize(std::size_t slots) {
        std::vector<Slot> old(slots);
        old.swap(m_slots);
        for (const Slot& moved : old) {
            if (moved.item == kNone) continue;
            std::size_t slot = home(moved.hash);
            while (m_slots[slot].item != kNone) slot = next(slot);
            m_slots[slot] = moved;
        }
    }

    std::vector<Slot> m_slots;  // the size is a power of two; at most seven eighths are taken
    std::size_t m_count = 0;
};

}  // namespace relay

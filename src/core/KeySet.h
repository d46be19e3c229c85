// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Keys.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace relay {

// Pointers to items, found by their key without regard to case. One flat table that holds each key's hash
// beside the pointer: neither growing nor passing over a stranger touches an item, which is what makes a
// hundred thousand of them quick. Items stay where they are, and keep their key, while they are in the set.
// KeyOf turns an item into its key.
template <typename Item, typename KeyOf>
class KeySet final {
  public:
    // nullptr when no item has the key.
    Item* find(std::string_view key) const noexcept {
        if (m_slots.empty()) return nullptr;
        const std::uint32_t hash = hashOf(key);
        for (std::size_t slot = home(hash); m_slots[slot].item != nullptr; slot = next(slot)) {
            if (m_slots[slot].hash == hash && equalsNoCase(key, KeyOf()(*m_slots[slot].item))) {
                return m_slots[slot].item;
            }
        }
        return nullptr;
    }

    // Makes room for so many items in all.
    void reserve(std::size_t count) {
        std::size_t slots = m_slots.empty() ? 16 : m_slots.size();
        while (count * 8 > slots * 7) slots *= 2;
        if (slots > m_slots.size()) resize(slots);
    }

    // A hint that the key will be added a little later: has its place fetched from memory in the
    // meantime.
    void expect(std::string_view key) const noexcept {
        if (!m_slots.empty()) __builtin_prefetch(&m_slots[home(hashOf(key))], 1);
    }

    // False, and nothing happens, when the key is taken.
    bool insert(Item* item) {
        reserve(m_count + 1);
        const std::string_view key = KeyOf()(*item);
        const std::uint32_t hash = hashOf(key);
        std::size_t slot = home(hash);
        for (; m_slots[slot].item != nullptr; slot = next(slot)) {
            if (m_slots[slot].hash == hash && equalsNoCase(key, KeyOf()(*m_slots[slot].item))) return false;
        }
        m_slots[slot] = {item, hash};
        ++m_count;
        return true;
    }

    // Takes this very item out, if it is there.
    void erase(const Item* item) noexcept {
        if (m_slots.empty()) return;
        std::size_t hole = home(hashOf(KeyOf()(*item)));
        while (m_slots[hole].item != item) {
            if (m_slots[hole].item == nullptr) return;
            hole = next(hole);
        }
        // Items behind the hole move up, unless their own place lies behind it.
        for (std::size_t slot = next(hole); m_slots[slot].item != nullptr; slot = next(slot)) {
            const std::size_t mask = m_slots.size() - 1;
            const std::size_t travelled = (slot - home(m_slots[slot].hash)) & mask;
            if (travelled < ((slot - hole) & mask)) continue;
            m_slots[hole] = m_slots[slot];
            hole = slot;
        }
        m_slots[hole] = {};
        --m_count;
    }

    void clear() noexcept {
        m_slots = {};
        m_count = 0;
    }

    std::size_t size() const noexcept { return m_count; }

  private:
    struct Slot final {
        Item* item = nullptr;
        std::uint32_t hash = 0;
    };

    static std::uint32_t hashOf(std::string_view key) noexcept {
        return static_cast<std::uint32_t>(KeyHash()(key));
    }
    std::size_t home(std::uint32_t hash) const noexcept { return hash & (m_slots.size() - 1); }
    std::size_t next(std::size_t slot) const noexcept { return (slot + 1) & (m_slots.size() - 1); }

    void resize(std::size_t slots) {
        std::vector<Slot> old(slots);
        old.swap(m_slots);
        for (const Slot& moved : old) {
            if (moved.item == nullptr) continue;
            std::size_t slot = home(moved.hash);
            while (m_slots[slot].item != nullptr) slot = next(slot);
            m_slots[slot] = moved;
        }
    }

    std::vector<Slot> m_slots;  // a power of two of them, at most seven eighths taken
    std::size_t m_count = 0;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/clsEngines.h"
#include "core/Keys.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace relay {

// The loaded engines in the order of the file, keyed by name without regard to case. Look-up does not depend
// on their number.
class EngineCollection final {
  public:
    // Adds a record; false when the name is already there. The record's texts must live in storage handed to
    // keep() or in static storage.
    bool add(const clsEngines& engine);
    // Keeps storage alive until clear().
    void keep(std::shared_ptr<const void> storage);
    void clear();

    std::size_t count() const noexcept { return m_engines.size(); }
    clsEngines* find(std::string_view name) noexcept;
    const clsEngines* find(std::string_view name) const noexcept;
    auto begin() noexcept { return m_engines.begin(); }
    auto end() noexcept { return m_engines.end(); }
    auto begin() const noexcept { return m_engines.begin(); }
    auto end() const noexcept { return m_engines.end(); }

  private:
    // Engines and bare names hash and compare alike, so the set holds one pointer for each engine.
    struct NameHash final {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const noexcept { return KeyHash()(name); }
        std::size_t operator()(const clsEngines* engine) const noexcept { return KeyHash()(engine->name); }
    };
    struct NameEqual final {
        using is_transparent = void;
        static std::string_view name(std::string_view text) noexcept { return text; }
        static std::string_view name(const clsEngines* engine) noexcept { return engine->name; }
        template <typename A, typename B>
        bool operator()(const A& a, const B& b) const noexcept {
            return equalsNoCase(name(a), name(b));
        }
    };

    std::deque<clsEngines> m_engines;
    std::unordered_set<clsEngines*, NameHash, NameEqual> m_byName;
    std::vector<std::shared_ptr<const void>> m_storage;
};

}  // namespace relay

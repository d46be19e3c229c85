// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/clsEngines.h"
#include "core/KeySet.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <string_view>
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
    // Makes room for so many engines in all, ahead of adding them.
    void reserve(std::size_t count) { m_byName.reserve(count); }
    // A hint that an engine with the name will be added a little later.
    void expect(std::string_view name) const noexcept { m_byName.expect(name); }

    std::size_t count() const noexcept { return m_engines.size(); }
    clsEngines* find(std::string_view name) noexcept { return m_byName.find(name); }
    const clsEngines* find(std::string_view name) const noexcept { return m_byName.find(name); }
    auto begin() noexcept { return m_engines.begin(); }
    auto end() noexcept { return m_engines.end(); }
    auto begin() const noexcept { return m_engines.begin(); }
    auto end() const noexcept { return m_engines.end(); }

  private:
    struct NameOf final {
        std::string_view operator()(const clsEngines& engine) const noexcept { return engine.name; }
    };

    std::deque<clsEngines> m_engines;
    KeySet<clsEngines, NameOf> m_byName;
    std::vector<std::shared_ptr<const void>> m_storage;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/clsEngines.h"
#include "core/KeySet.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <utility>

namespace relay {

// The loaded engines in file order, keyed by name without regard to case. The cost of a look-up does not
// depend on their number; records do not move.
class EngineCollection final {
  public:
    // Drops all engines and stores the texts that the next ones point into: the engine file and the category
    // tables.
    void start(std::string file, std::shared_ptr<const std::string> tables);
    std::string& file() noexcept { return m_store->file; }
    const EngineTexts& texts() const noexcept { return m_store->texts; }
    // The same, valid for as long as this is kept, even after another load: for work in another thread.
    std::shared_ptr<const EngineTexts> keptTexts() const noexcept { return {m_store, &m_store->texts}; }
    // Call when a record's name was read, ahead of add(): prefetches its place in the index.
    void expect(std::string_view name) const noexcept { m_store->byName.expect(name); }
    // Adds a record of texts(); false when the name is taken.
    bool add(const clsEngines& engine);

    std::size_t count() const noexcept { return m_store->engines.size(); }
    clsEngines* find(std::string_view name) noexcept {
        return const_cast<clsEngines*>(std::as_const(*this).find(name));
    }
    const clsEngines* find(std::string_view name) const noexcept;
    auto begin() noexcept { return m_store->engines.begin(); }
    auto end() noexcept { return m_store->engines.end(); }
    auto begin() const noexcept { return m_store->engines.begin(); }
    auto end() const noexcept { return m_store->engines.end(); }

  private:
    auto names() const {
        return [this](std::uint32_t place) { return m_store->engines[place].name(); };
    }

    struct Store final {
        std::string file;
        std::shared_ptr<const std::string> tables;
        EngineTexts texts{};
        std::pmr::monotonic_buffer_resource memory{};
        std::pmr::deque<clsEngines> engines{&memory};
        KeySet byName{};
    };
    std::shared_ptr<Store> m_store = std::make_shared<Store>();
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/Categories.h"
#include "catalogue/Countries.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineLists.h"
#include "catalogue/EngineLoader.h"
#include "catalogue/EngineSelection.h"

#include <functional>
#include <memory>
#include <string_view>

namespace relay {

struct Services;

// Shown when the engines' data files are missing: at the start, and by the command line.
extern const std::string_view kMissingDataNotice;

// Everything read from the catalogue's files, and the selection made from it.
class Catalogue final {
  public:
    explicit Catalogue(const Services& services);

    Countries countries;
    Categories categories;              // the program's own tree
    EngineCategories engineCategories;  // each engine's own categories
    EngineLists lists;
    EngineLoader engineLoader;
    EngineSelection selection;

    // Called before the message about a failed load (the window closes its splash).
    std::function<void()> beforeFailure;
    // Called after a load (the window updates what is not a list).
    std::function<void()> afterLoad;

    // True if both data files of the engines exist.
    bool engineDataPresent() const;
    // Loads the engines' category tables, then the engines. Shows a message and returns false when a file is
    // missing, empty or unreadable, or while a run holds the engines; data loaded before stays.
    bool loadEngineData();
    // Loads the files again with a status text and the busy pointer, or does nothing when one is missing.
    void RefreshEngineData();
    // Adds the columns "Last Success" and "Failures" to lsvEngines, filled from the history, or removes them.
    // Throws Failure when the history cannot be read.
    void showEngineHealth(bool on);
    bool showsEngineHealth() const noexcept { return m_showsHealth; }
    // Unselects the engines that failed in each of their last runs. Throws Failure when the history cannot be
    // read.
    void dropFailingEngines();
    // Drops the engines, as when no data file is there.
    void forgetEngines();
    bool loadEngineCategory();
    bool loadEngines();
    // Throws Failure when there is no engine of that name.
    const clsEngines& engine(std::string_view name) const;

    // A run keeps this while it uses the engines; until then loading is refused.
    using Hold = std::shared_ptr<const void>;
    Hold hold() const { return m_held; }
    bool isHeld() const noexcept { return m_held.use_count() > 1; }

  private:
    template <typename Load>
    bool load(std::string_view words, std::string_view title, Load&& load);

    const Services& m_services;
    std::shared_ptr<const void> m_held;
    bool m_showsHealth = false;
};

}  // namespace relay

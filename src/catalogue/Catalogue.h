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

// Told where the engines' data files are not there: at the start, and by the command line.
extern const std::string_view kMissingDataNotice;

// Everything that is read from the catalogue's files, and the selection made from it.
class Catalogue final {
  public:
    explicit Catalogue(const Services& services);

    Countries countries;
    Categories categories;              // the program's own tree
    EngineCategories engineCategories;  // each engine's own words for it
    EngineLists lists;
    EngineLoader engineLoader;
    EngineSelection selection;

    // Called before the user is told of a failed load (the window puts its splash away).
    std::function<void()> beforeFailure;
    // Called after a load (the window brings up to date what follows no list).
    std::function<void()> afterLoad;

    // Both data files of the engines are there.
    bool engineDataPresent() const;
    // The engines' category tables and then the engines. False when a file is missing, empty or unreadable,
    // and while a run holds the engines; the user was told, and what stood before the failing step stays.
    bool loadEngineData();
    // Puts the starter catalogue that is installed with the program into the home and loads it. Asks before
    // it replaces a file that differs; false when the user would not have it, or when it failed, which was
    // shown.
    bool installStarterCatalogue();
    bool loadEngineCategory();
    bool loadEngines();
    // The engine with the name. Throws Failure when there is none.
    const clsEngines& engine(std::string_view name) const;

    // A run reads the engines for as long as it keeps this: until then nothing is loaded anew.
    using Hold = std::shared_ptr<const void>;
    Hold hold() const { return m_held; }
    bool isHeld() const noexcept { return m_held.use_count() > 1; }

  private:
    template <typename Load>
    bool load(std::string_view words, std::string_view title, Load&& load);

    const Services& m_services;
    std::shared_ptr<const void> m_held;
};

}  // namespace relay

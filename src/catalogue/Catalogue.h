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

    // Both data files of the engines are there.
    bool engineDataPresent() const;
    // The engines' category tables and then the engines. False when a file is missing, empty or unreadable,
    // and while a run holds the engines; the user was told, and what stood before the failing step stays.
    bool loadEngineData();
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

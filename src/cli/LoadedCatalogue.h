// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/Countries.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineLists.h"
#include "catalogue/EngineLoader.h"
#include "catalogue/EngineSelection.h"

#include <string_view>

namespace relay {

class CommandLineContext;

// The home's engine catalogue, read as at the start of the window program.
class LoadedCatalogue final {
  public:
    explicit LoadedCatalogue(CommandLineContext& context);

    // False when the files are missing or unusable; the user was told, and what to do about it.
    bool load();
    // The category tables alone, with the same answer.
    bool loadCategories();
    // The engine with the name. Throws Failure when there is none.
    const clsEngines& engine(std::string_view name) const;

    Countries countries;
    EngineCategories categories;
    EngineLists lists;
    EngineLoader loader;
    EngineSelection selection;

  private:
    bool tellHowToInstall();  // false

    CommandLineContext& m_context;
};

}  // namespace relay

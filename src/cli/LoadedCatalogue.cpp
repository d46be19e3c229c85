// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LoadedCatalogue.h"

#include "cli/CommandLineContext.h"
#include "core/Failure.h"

namespace relay {

LoadedCatalogue::LoadedCatalogue(CommandLineContext& context)
    : countries(context.home().paths),
      categories(context.home().paths, context.prompts()),
      loader(lists, categories, countries, context.home().paths, context.home().preference,
             context.home().log, context.prompts()),
      selection(lists, context.home().paths, context.prompts()),
      m_context(context) {}

bool LoadedCatalogue::load() {
    return loadCategories() && (loader.loadEngines() || tellHowToInstall());
}

bool LoadedCatalogue::loadCategories() {
    return categories.loadEngineCategory() || tellHowToInstall();
}

bool LoadedCatalogue::tellHowToInstall() {
    m_context.warn("No engines could be loaded from " + m_context.home().paths.WindowsPath +
                   "\nThe catalogue that comes with the program is put there by: engines install");
    return false;
}

const clsEngines& LoadedCatalogue::engine(std::string_view name) const {
    const clsEngines* found = lists.engines.find(name);
    if (found == nullptr) throw Failure("There is no engine \"" + std::string(name) + "\" in the catalogue.");
    return *found;
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LoadEngines.h"

#include "catalogue/Catalogue.h"
#include "cli/CommandLineContext.h"
#include "core/Prompts.h"

namespace relay {

namespace {
// The data files must both be there, as at the start of the window.
template <typename Load>
bool loadOrTell(CommandLineContext& context, Load&& load) {
    Catalogue& catalogue = context.home().catalogue;
    if (catalogue.engineDataPresent() && load(catalogue)) return true;
    if (!catalogue.engineDataPresent())
        context.prompts().message(kMissingDataNotice, kApplication, Icon::Information);
    context.warn(
        "No engines could be loaded from " + context.home().paths.WindowsPath +
        "\nThe catalogue that comes with the program is put there by: korvel-relay-cli engines install");
    return false;
}
}  // namespace

bool loadEngines(CommandLineContext& context) {
    return loadOrTell(context, [](Catalogue& catalogue) { return catalogue.loadEngineData(); });
}

bool loadEngineCategories(CommandLineContext& context) {
    return loadOrTell(context, [](Catalogue& catalogue) { return catalogue.loadEngineCategory(); });
}

}  // namespace relay

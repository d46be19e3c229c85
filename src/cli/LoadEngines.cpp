// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LoadEngines.h"

#include "cli/CommandLineContext.h"

namespace relay {

namespace {
bool toldHowToInstall(CommandLineContext& context, bool loaded) {
    if (!loaded)
        context.warn("No engines could be loaded from " + context.home().paths.WindowsPath +
                     "\nTo install the program's catalogue, run: engines install");
    return loaded;
}
}  // namespace

bool loadEngines(CommandLineContext& context) {
    return toldHowToInstall(context, context.home().catalogue.loadEngineData());
}

bool loadEngineCategories(CommandLineContext& context) {
    return toldHowToInstall(context, context.home().catalogue.loadEngineCategory());
}

}  // namespace relay

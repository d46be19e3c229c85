// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DataFolder.h"

#include "cli/Console.h"
#include "core/Paths.h"

namespace relay {

std::string installedDataFolder(const Console& console) {
    const std::optional<std::string> chosen = console.environment("KORVEL_RELAY_DATA");
    if (chosen && !chosen->empty()) return *chosen;
    const std::string places[] = {console.programFolder + "/../share/korvel-relay", RELAY_SOURCE_DATA_FOLDER,
                                  RELAY_INSTALLED_DATA_FOLDER};
    for (const std::string& place : places) {
        if (fileExists(place + "/country.kws")) return place;
    }
    return {};
}

}  // namespace relay

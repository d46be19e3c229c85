// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

struct Paths;

// The folder of the files installed with the programs: $KORVEL_RELAY_DATA if set, else
// "../share/korvel-relay" beside the program (`programFolder` has no trailing separator), the source tree it
// was built from, or the configured installation folder. Empty if none of them exists.
std::string installedDataFolder(std::string_view programFolder,
                                const std::function<std::optional<std::string>(const char*)>& environment);

// The folder of the guide: "guide" in the installed data, or the source tree's. Empty if there is none.
std::string installedGuideFolder(const std::string& installedData);

// Makes the home's folders and copies country.kws and cat.kws from `installedData` if they are missing; never
// overwrites. Throws Failure when the home cannot be written.
void prepareHome(const Paths& paths, std::string_view installedData);

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

struct Paths;

// The folder of the files that are installed with the programs: $KORVEL_RELAY_DATA where it is set, else
// "../share/korvel-relay" beside the program (whose folder comes without a trailing separator), the source
// tree that it was built from, or the folder it was configured to be installed to. Empty when none of them is
// there.
std::string installedDataFolder(std::string_view programFolder,
                                const std::function<std::optional<std::string>(const char*)>& environment);

// Makes the home's folders and copies country.kws and cat.kws from `installedData` if they are missing; never
// overwrites. Throws Failure when the home cannot be written.
void prepareHome(const Paths& paths, std::string_view installedData);

}  // namespace relay

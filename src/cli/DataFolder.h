// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace relay {

struct Console;

// The folder of the files that are installed with the program: $KORVEL_RELAY_DATA where it is set, else
// "../share/korvel-relay" beside the program, the source tree that the program was built from, or the folder
// it was configured to be installed to. Empty when none of them is there.
std::string installedDataFolder(const Console& console);

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandTree.h"

#include <string>
#include <vector>

namespace relay {

struct Console;

// Runs the program and returns its exit code. `arguments` are without the program's name. Throws nothing.
int runCommandLine(const std::vector<std::string>& arguments, Console& console);

// The commands and options that it knows; nothing runs.
CommandNode describeCommands(Console& console);

}  // namespace relay

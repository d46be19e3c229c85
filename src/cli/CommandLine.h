// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace relay {

struct Console;

// Runs the program: `arguments` without the program's name. Gives its exit code; throws nothing.
int runCommandLine(const std::vector<std::string>& arguments, Console& console);

}  // namespace relay

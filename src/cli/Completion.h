// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandTree.h"

#include <string>

namespace relay {

// Scripts with which a shell completes the words of the command line, made from the tree of commands.
std::string bashCompletion(const CommandNode& root);
std::string zshCompletion(const CommandNode& root);
std::string fishCompletion(const CommandNode& root);

}  // namespace relay

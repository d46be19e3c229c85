// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace relay {

class Prompts;
enum class NodeKind;

// The rules for the names of projects and websites.

// Says so in a message when the name holds a character that no name may hold.
bool refusesName(Prompts& prompts, std::string_view name);
// The same for a name that comes from a file: in the index a pipe ends it.
bool refusesFileName(Prompts& prompts, std::string_view name);
// Throws Failure where the text cannot stand on one line of the index.
void requireOneLine(std::string_view text);
// Asks for the name of a new project or website, and again while it is taken; empty when the user steps back
// or the name is refused. Only the first answer is tested for forbidden characters.
std::string askNewName(Prompts& prompts, NodeKind kind,
                       const std::function<bool(const std::string& name)>& isTaken);

}  // namespace relay

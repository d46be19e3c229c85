// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace relay {

class Prompts;
enum class NodeKind;

// The rules for the names of projects and websites.

// True, after a message, when the name contains a forbidden character.
bool refusesName(Prompts& prompts, std::string_view name);
// The same for a name from a file; also refuses a pipe, which would end the name in the index.
bool refusesFileName(Prompts& prompts, std::string_view name);
// Throws Failure when the text does not fit on one line of the index.
void requireOneLine(std::string_view text);
// Asks for the name of a new project or website, again while it is taken; empty when the user cancels or the
// name is refused. Only the first answer is checked for forbidden characters.
std::string askNewName(Prompts& prompts, NodeKind kind,
                       const std::function<bool(const std::string& name)>& isTaken);

}  // namespace relay

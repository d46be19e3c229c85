// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace relay {

// What a value is, for those who complete it.
enum class ValueKind { None, Text, File, Folder, Choice };

// An option, or an argument without a name.
struct OptionNode final {
    std::vector<std::string> names;  // "-h", "--help"; of an argument its word in the help: "FILE"
    std::string description;
    ValueKind kind = ValueKind::None;
    std::string valueName;             // "DIR"; empty for a flag
    std::vector<std::string> choices;  // of a Choice
};

// A command with its own options and its sub-commands. The root has the program's name.
struct CommandNode final {
    std::string name;
    std::string description;
    std::vector<OptionNode> options;
    std::vector<OptionNode> arguments;
    std::vector<CommandNode> commands;
};

// The tree as the parser knows it.
CommandNode commandTree(const CLI::App& app);

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandTree.h"

#include "core/Text.h"

namespace relay {

namespace {

std::vector<std::string> splitChoices(std::string_view text) {
    std::vector<std::string> words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('|'), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

OptionNode describe(const CLI::Option& option) {
    OptionNode node;
    for (const std::string& name : option.get_snames()) node.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) node.names.push_back("--" + name);
    node.description = option.get_description();
    node.valueName = option.get_type_name();
    if (option.get_positional()) {
        node.names = {option.get_name(true)};
        if (node.valueName.empty()) node.valueName = node.names.front();
    }
    if (option.get_items_expected_max() == 0) {
        node.valueName.clear();
        return node;
    }
    const std::string& value = node.valueName;
    const bool isFile = value.find("FILE") != npos || value.find("SITEMAP") != npos;
    node.kind = value == "DIR"            ? ValueKind::Folder
                : isFile                  ? ValueKind::File
                : value.find('|') != npos ? ValueKind::Choice
                                          : ValueKind::Text;
    if (node.kind == ValueKind::Choice) node.choices = splitChoices(value);
    return node;
}

}  // namespace

CommandNode commandTree(const CLI::App& app) {
    CommandNode node;
    node.name = app.get_name();
    node.description = app.get_description();
    for (const CLI::Option* option : app.get_options())
        (option->get_positional() ? node.arguments : node.options).push_back(describe(*option));
    for (const CLI::App* command : app.get_subcommands({})) node.commands.push_back(commandTree(*command));
    return node;
}

}  // namespace relay

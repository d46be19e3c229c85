// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Command.h"

#include <sstream>

namespace relay {

std::string exampleText(const std::string& examples) {
    std::istringstream lines(examples);
    std::string text = "\nExamples:\n";
    for (std::string line; std::getline(lines, line);) text += "  korvel-relay-cli " + line + "\n";
    if (text.find("--home try") != std::string::npos)
        text +=
            "\nThe home \"try\" has the practice catalogue: korvel-relay-cli --home try engines install "
            "--practice";
    return text + "\nOptions for every command: see korvel-relay-cli --help";
}

Command::Command(CLI::App& parent, CommandLineContext& context, const std::string& name,
                 const std::string& description, const std::string& examples)
    : m_context(context), m_app(*parent.add_subcommand(name, description)) {
    m_app.footer(exampleText(examples));
}

}  // namespace relay

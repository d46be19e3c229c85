// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <CLI/App.hpp>
#include <string>

namespace relay {

class CommandLineContext;

// "Examples:" and the command lines, one per line and without the program's name, for the help.
std::string exampleText(const std::string& examples);

// One command of the program: its options, its help and its operation.
class Command {
  public:
    // `examples`: command lines for the help, one per line, without the program's name.
    Command(CLI::App& parent, CommandLineContext& context, const std::string& name,
            const std::string& description, const std::string& examples);
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    bool isChosen() const { return m_app.parsed(); }
    // Returns an ExitCode. Throws UsageError, or Failure when the command could not run.
    virtual int execute() = 0;

  protected:
    CommandLineContext& context() noexcept { return m_context; }
    CLI::App& app() noexcept { return m_app; }

  private:
    CommandLineContext& m_context;
    CLI::App& m_app;
};

}  // namespace relay

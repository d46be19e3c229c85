// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>

namespace relay {

// news [--check [--server HOST[:PORT]]]
class NewsCommand final : public Command {
  public:
    NewsCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    int check(bool& isNew);

    bool m_check = false;
    std::string m_server;
};

// addins list
class AddInsListCommand final : public Command {
  public:
    AddInsListCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "cli/SelectionOptions.h"

namespace relay {

// engines list [SELECTION]
class EnginesListCommand final : public Command {
  public:
    EnginesListCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    SelectionOptions m_selection;
};

// engines check
class EnginesCheckCommand final : public Command {
  public:
    EnginesCheckCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;
};

// engines health
class EnginesHealthCommand final : public Command {
  public:
    EnginesHealthCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;
};

}  // namespace relay

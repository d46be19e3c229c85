// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>

namespace relay {

// completion bash|zsh|fish
class CompletionCommand final : public Command {
  public:
    CompletionCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    const CLI::App& m_root;
    std::string m_shell;
};

}  // namespace relay

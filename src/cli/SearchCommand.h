// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>

namespace relay {

// search ENGINE TEXT [--type general, url or link] [--print]
class SearchCommand final : public Command {
  public:
    SearchCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_engine;
    std::string m_text;
    std::string m_type = "general";
    bool m_print = false;
};

}  // namespace relay

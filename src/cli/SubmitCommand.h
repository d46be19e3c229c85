// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "cli/SelectionOptions.h"

#include <cstdint>
#include <string>
#include <vector>

namespace relay {

class Catalogue;

// submit --website FILE... [SELECTION] [--connections N]
class SubmitCommand final : public Command {
  public:
    SubmitCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    int run(Catalogue& catalogue);

    std::vector<std::string> m_websites;
    SelectionOptions m_selection;
    std::int16_t m_connections = 0;  // 0: from the settings
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>
#include <vector>

namespace relay {

// engines install [--practice]
class EnginesInstallCommand final : public Command {
  public:
    EnginesInstallCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    struct File final {
        std::string target;
        std::string bytes;
        const char* state = "installed";  // or "unchanged", "replaced"
    };

    std::string practiceAddress();
    std::vector<File> collect();
    // Sets the state of each file; throws Failure for files that may not be replaced.
    void compare(std::vector<File>& files) const;

    bool m_practice = false;
    bool m_replace = false;
    std::string m_practiceAddress;
};

}  // namespace relay

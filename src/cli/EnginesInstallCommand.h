// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CatalogueFiles.h"
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
    std::string practiceAddress();
    std::vector<CatalogueFile> collect();
    // Sets the state of each file; throws Failure for files that may not be replaced.
    void compare(std::vector<CatalogueFile>& files) const;

    bool m_practice = false;
    bool m_replace = false;
    std::string m_practiceAddress;
};

}  // namespace relay

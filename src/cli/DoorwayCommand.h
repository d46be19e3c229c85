// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>
#include <vector>

namespace relay {

class Doorway;

// doorway --set KEY=VALUE... [--profile NAME] [--out DIR] [--save NAME]
class DoorwayCommand final : public Command {
  public:
    DoorwayCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void setFields(Doorway& doorway) const;
    void checkFields(const Doorway& doorway) const;

    std::vector<std::string> m_values;
    std::string m_profile;
    std::string m_folder;
    std::string m_save;
};

}  // namespace relay

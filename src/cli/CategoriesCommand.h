// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>
#include <vector>

namespace relay {

class CategoryWalk;
struct WebsiteFields;

// categories walk ENGINE [LABEL...]
class CategoriesWalkCommand final : public Command {
  public:
    CategoriesWalkCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void show(const CategoryWalk& walk, const WebsiteFields& fields);

    std::string m_engine;
    std::vector<std::string> m_labels;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>

namespace relay {

// preview --website FILE --engine NAME [--url URL] [--show-password]
class PreviewCommand final : public Command {
  public:
    PreviewCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_website;
    std::string m_engine;
    std::string m_url;
    bool m_showPassword = false;
};

}  // namespace relay

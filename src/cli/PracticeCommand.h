// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <cstdint>

namespace relay {

// practice [--port N]
class PracticeCommand final : public Command {
  public:
    PracticeCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void writeAddress(const std::string& address);

    std::uint16_t m_port = 0;
};

}  // namespace relay

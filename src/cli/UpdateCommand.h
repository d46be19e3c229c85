// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineUpdate.h"
#include "cli/Command.h"

#include <string>
#include <vector>

namespace relay {

// update [--server HOST[:PORT]] [--undo]
class UpdateCommand final : public Command {
  public:
    UpdateCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    int fetch(EngineUpdate& update);
    void report(const UpdatedFile& file);
    void reportEnd(const EngineUpdate& update, bool updated);

    std::string m_server;
    bool m_undo = false;
    std::vector<UpdatedFile> m_files;
};

}  // namespace relay

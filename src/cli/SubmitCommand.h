// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "cli/SelectionOptions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace relay {

class Catalogue;
class SubmissionController;
class SubmissionWatcher;
struct CutOffRun;

// submit --website FILE... [SELECTION] [--connections N] [--csv FILE]
// submit --resume [--connections N] [--csv FILE]
class SubmitCommand final : public Command {
  public:
    SubmitCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void checkUsage() const;
    bool prepare(SubmissionController& controller, std::optional<CutOffRun>& cutOff);
    int run(Catalogue& catalogue, std::optional<CutOffRun> cutOff);
    int watch(SubmissionController& controller, SubmissionWatcher& watcher);
    int saveTable(const SubmissionController& controller, int exitCode);

    std::vector<std::string> m_websites;
    SelectionOptions m_selection;
    std::int16_t m_connections = 0;  // 0: from the settings
    bool m_resume = false;
    std::string m_csv;  // empty: none
};

}  // namespace relay

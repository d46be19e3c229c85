// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "pagetools/FindingRules.h"

#include <map>
#include <string>
#include <vector>

namespace relay {

// optimize FILE-or-URL... [--fail-on error|warning|notice] [--sarif FILE]
class OptimizeCommand final : public Command {
  public:
    OptimizeCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void optimize(const std::string& name, std::string_view html);
    void show(const std::string& address, const PageFinding& finding);

    std::vector<std::string> m_names;
    std::string m_failOn;
    std::string m_sarif;
    RuleSettings m_settings;
    std::vector<FindingsOfPage> m_pages;
    std::map<std::string, std::string> m_reports;  // by path: the address
    bool m_met = false;                            // a finding of --fail-on
};

}  // namespace relay

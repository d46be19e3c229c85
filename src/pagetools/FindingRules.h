// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/FindingRule.h"

#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Paths;

// All rules, in the order of the findings of a line.
const Rules& findingRules();
// nullptr for an unknown name; in any case.
const FindingRule* findRule(std::string_view name);

// What the user set of every rule; at first, what the rules say themselves.
class RuleSettings final {
  public:
    RuleSettings();

    const RuleSetting& of(const FindingRule& rule) const { return m_settings.at(rule.about().name); }
    RuleSetting& of(const FindingRule& rule) { return m_settings.at(rule.about().name); }

  private:
    std::map<std::string_view, RuleSetting> m_settings;
};

// A line of a rules file that was passed over. At most a hundred are listed; a last one counts the others.
struct RuleProblem final {
    std::size_t line = 0;  // 0 for that last one
    std::string text;      // with the file's name and the line
};
// Takes the settings of a text: a section for each rule, with the keys Severity and the rule's bounds. What
// is wrong changes nothing; the rest holds.
std::vector<RuleProblem> readRules(std::string_view text, RuleSettings& settings);
// Reads optimizer.rules of the home's data folder or, if there is none, the installed one. No file: no
// change. Throws Failure when it cannot be read.
std::vector<RuleProblem> loadRules(const Paths& paths, RuleSettings& settings);

// The findings on a page in the order of its lines.
std::vector<PageFinding> checkPage(std::string_view html, std::string_view address,
                                   const RuleSettings& settings);

}  // namespace relay

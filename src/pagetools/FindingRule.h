// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/Findings.h"

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class HtmlPage;

// A number of a rule that the user may change.
struct RuleBound final {
    std::string_view name;  // its key in optimizer.rules
    int usual = 0;
    int least = 0;
    int most = 10000;
};

// What the user set of one rule.
struct RuleSetting final {
    Severity severity = Severity::Notice;
    std::map<std::string_view, int> bounds;  // by name
};

struct CheckedPage final {
    const HtmlPage& html;
    std::string_view address;  // a web address or the path of a local file
};

// Takes the findings of one rule. Those beyond the first hundred are only counted, in one finding at the end.
class FindingSink final {
  public:
    FindingSink(std::vector<PageFinding>& findings, std::string_view rule, const RuleSetting& setting)
        : m_findings(findings), m_rule(rule), m_setting(setting) {}
    ~FindingSink();
    FindingSink(const FindingSink&) = delete;
    FindingSink& operator=(const FindingSink&) = delete;

    // Texts of the page in `found` should pass through inQuotes().
    void add(std::size_t line, std::string found);
    int bound(std::string_view name) const { return m_setting.bounds.at(name); }

  private:
    static constexpr std::size_t kKept = 100;

    std::vector<PageFinding>& m_findings;
    std::string_view m_rule;
    const RuleSetting& m_setting;
    std::size_t m_count = 0;
};

// A text of the page in quotes, on one line, cut where it has more bytes than kQuoted.
inline constexpr std::size_t kQuoted = 120;
std::string inQuotes(std::string_view text);

// One thing that is looked for on a page.
class FindingRule {
  public:
    // All of them words and numbers of the program.
    struct About final {
        std::string_view name;
        Severity severity;      // unless the user sets another
        std::string_view why;   // why it matters
        std::string_view what;  // what to do
        std::vector<RuleBound> bounds = {};
    };

    explicit FindingRule(About about) : m_about(std::move(about)) {}
    virtual ~FindingRule() = default;
    FindingRule(const FindingRule&) = delete;
    FindingRule& operator=(const FindingRule&) = delete;

    const About& about() const noexcept { return m_about; }
    virtual void check(const CheckedPage& page, FindingSink& sink) const = 0;

  private:
    About m_about;
};

using Rules = std::vector<std::unique_ptr<const FindingRule>>;

// The rules on a page's texts, its head, and the rest of it.
void addTextRules(Rules& rules);
void addHeadRules(Rules& rules);
void addContentRules(Rules& rules);

template <typename... Kinds>
void addRules(Rules& rules) {
    (rules.push_back(std::make_unique<const Kinds>()), ...);
}

}  // namespace relay

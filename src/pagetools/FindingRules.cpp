// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/FindingRules.h"

#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "pagetools/HtmlPage.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace relay {

namespace {

constexpr std::array<std::string_view, 4> kSeverities = {"off", "notice", "warning", "error"};
constexpr std::string_view kFile = "optimizer.rules";
constexpr std::string_view kSeverityKey = "Severity";

// Not a rule on what a page says, but on whether it can be looked at.
class Unreadable final : public FindingRule {
  public:
    Unreadable()
        : FindingRule({"page-unreadable", Severity::Error,
                       "A page that nests without end or is very large is given up by search engines, too.",
                       "Look for tags that are never closed, and split the page."}) {}
    void check(const CheckedPage& page, FindingSink& sink) const override {
        if (!page.html.problem().empty()) sink.add(1, page.html.problem());
    }
};

Rules makeRules() {
    Rules rules;
    addRules<Unreadable>(rules);
    addTextRules(rules);
    addHeadRules(rules);
    addContentRules(rules);
    return rules;
}

const RuleBound* findBound(const FindingRule& rule, std::string_view name) {
    const std::vector<RuleBound>& bounds = rule.about().bounds;
    const auto same = [name](const RuleBound& bound) { return equalsNoCase(bound.name, name); };
    const auto found = std::find_if(bounds.begin(), bounds.end(), same);
    return found == bounds.end() ? nullptr : &*found;
}

// Takes the lines of a rules file one after the other.
class RulesReader final {
  public:
    RulesReader(const IniFile& file, RuleSettings& settings) : m_file(file), m_settings(settings) {}

    std::vector<RuleProblem> read() {
        const std::vector<IniFile::StrayLine> stray = m_file.strayLines();
        auto next = stray.begin();
        bool lost = false;  // behind a header that cannot be read
        for (const IniFile::Place& place : m_file.places()) {
            for (; next != stray.end() && next->line < place.line; ++next) lost |= tellStray(*next);
            lost = lost && !place.key.empty();
            if (lost) continue;
            m_place = &place;
            const FindingRule* const rule = findRule(place.section);
            if (!place.counts)
                tell("it has been set before");
            else if (place.key.empty() && rule == nullptr)
                tell("there is no such rule");
            else if (place.section.empty())
                tell("it belongs to no rule");
            else if (!place.key.empty() && rule != nullptr)
                take(*rule);
        }
        for (; next != stray.end(); ++next) tellStray(*next);
        checkOrder();
        if (m_untold > 0)
            m_problems.push_back(
                {0, std::string(kFile) + ": and " + std::to_string(m_untold) + " lines more"});
        return std::move(m_problems);
    }

  private:
    void tell(std::string_view words) {
        tell(m_place->line, m_place->key.empty() ? m_place->section : m_place->key, words);
    }
    void tell(std::size_t line, std::string_view name, std::string_view words) {
        constexpr std::size_t kMostTold = 100;
        if (m_problems.size() == kMostTold) {
            ++m_untold;
            return;
        }
        std::string text(kFile);
        text.append(", line ").append(std::to_string(line)).append(": ").append(inQuotes(name));
        m_problems.push_back({line, text.append(": ").append(words)});
    }

    // Whether it was meant to begin a section.
    bool tellStray(const IniFile::StrayLine& stray) {
        const bool isHeader = stray.text.front() == '[';
        tell(stray.line, stray.text,
             isHeader ? "the \"]\" is missing, so the lines below are passed over up to the next rule"
                      : "it is neither [rule] nor KEY=VALUE");
        return isHeader;
    }

    void take(const FindingRule& rule) {
        const std::string value = m_file.value(m_place->section, m_place->key);
        RuleSetting& setting = m_settings.of(rule);
        if (equalsNoCase(m_place->key, kSeverityKey)) {
            const auto severity = severityOf(value);
            if (severity)
                setting.severity = *severity;
            else
                tell("the severity is error, warning, notice or off, not " + inQuotes(value));
            return;
        }
        const RuleBound* const bound = findBound(rule, m_place->key);
        if (bound == nullptr) {
            tell("the rule has no such bound");
            return;
        }
        int number = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
        if (error != std::errc() || end != value.data() + value.size() || number < bound->least ||
            number > bound->most) {
            tell("a whole number from " + std::to_string(bound->least) + " to " +
                 std::to_string(bound->most) + " is needed, not " + inQuotes(value));
            return;
        }
        setting.bounds[bound->name] = number;
    }

    void checkOrder() {
        for (const IniFile::Place& place : m_file.places()) {
            const FindingRule* const rule = findRule(place.section);
            if (!place.counts || !place.key.empty() || rule == nullptr) continue;
            RuleSetting& setting = m_settings.of(*rule);
            const auto minimum = setting.bounds.find("Minimum");
            const auto maximum = setting.bounds.find("Maximum");
            if (minimum == setting.bounds.end() || maximum == setting.bounds.end() ||
                minimum->second <= maximum->second)
                continue;
            m_place = &place;
            tell("its minimum is above its maximum, so both stay as they were");
            for (const RuleBound& bound : rule->about().bounds) setting.bounds[bound.name] = bound.usual;
        }
    }

    const IniFile& m_file;
    RuleSettings& m_settings;
    const IniFile::Place* m_place = nullptr;
    std::vector<RuleProblem> m_problems;
    std::size_t m_untold = 0;
};

}  // namespace

std::string_view severityName(Severity severity) noexcept {
    return kSeverities[static_cast<std::size_t>(severity)];
}

std::optional<Severity> severityOf(std::string_view name) noexcept {
    for (std::size_t i = 0; i < kSeverities.size(); ++i)
        if (equalsNoCase(kSeverities[i], name)) return static_cast<Severity>(i);
    return std::nullopt;
}

std::string inQuotes(std::string_view text) {
    std::size_t end = std::min(text.size(), kQuoted);
    while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return "\"" + escapeControlCharacters(text.substr(0, end)) + (end < text.size() ? "..." : "") + "\"";
}

void FindingSink::add(std::size_t line, std::string found) {
    if (++m_count > kKept) return;
    m_findings.push_back({m_setting.severity, m_rule, line, std::move(found)});
}

FindingSink::~FindingSink() {
    if (m_count > kKept)
        m_findings.back().found += " (and " + std::to_string(m_count - kKept) + " more further down)";
}

const Rules& findingRules() {
    static const Rules rules = makeRules();
    return rules;
}

const FindingRule* findRule(std::string_view name) {
    for (const auto& rule : findingRules())
        if (equalsNoCase(rule->about().name, name)) return rule.get();
    return nullptr;
}

RuleSettings::RuleSettings() {
    for (const auto& rule : findingRules()) {
        RuleSetting& setting = m_settings[rule->about().name];
        setting.severity = rule->about().severity;
        for (const RuleBound& bound : rule->about().bounds) setting.bounds[bound.name] = bound.usual;
    }
}

std::vector<RuleProblem> readRules(std::string_view text, RuleSettings& settings) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    return RulesReader(IniFile::parse(text), settings).read();
}

std::vector<RuleProblem> loadRules(const Paths& paths, RuleSettings& settings) {
    std::string file = paths.inWindows(kFile);
    if (!fileExists(file)) file = paths.installedData + "/" + std::string(kFile);
    if (!fileExists(file)) return {};
    return readRules(readFile(file, IniFile::kLargestFile), settings);
}

std::vector<PageFinding> checkPage(std::string_view html, std::string_view address,
                                   const RuleSettings& settings) {
    std::vector<PageFinding> findings;
    const HtmlPage parsed(html);
    const CheckedPage page{parsed, address};
    for (const auto& rule : findingRules()) {
        const RuleSetting& setting = settings.of(*rule);
        if (setting.severity == Severity::Off) continue;
        FindingSink sink(findings, rule->about().name, setting);
        rule->check(page, sink);
        // Nothing can be said of a page that was not read.
        if (!parsed.problem().empty()) break;
    }
    std::stable_sort(findings.begin(), findings.end(),
                     [](const PageFinding& a, const PageFinding& b) { return a.line < b.line; });
    return findings;
}

}  // namespace relay

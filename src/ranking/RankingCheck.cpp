// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingCheck.h"

#include "core/Failure.h"
#include "core/IniFile.h"
#include "core/Keys.h"
#include "core/Text.h"
#include "ranking/RankFields.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace relay {

namespace {

constexpr std::size_t kShownLength = 80;
constexpr std::size_t kRecordLength = 200;  // longest section name shown
constexpr std::size_t kMostOfAKind = 1000;
constexpr std::size_t kKinds = static_cast<std::size_t>(RankFindingKind::SharedFiles) + 1;

using Names = std::unordered_set<std::string_view, KeyHash, KeyEqual>;

// The number of a list's key, or 0 for any other key.
std::size_t listNumber(std::string_view key) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    const bool whole = error == std::errc() && end == key.data() + key.size();
    return whole && key.front() != '0' ? number : 0;
}

// The text between quotes, cut to fit on a line.
std::string shownWord(std::string_view words) {
    std::string text = "\"" + std::string(left(words, kShownLength));
    return text.append(words.size() > kShownLength ? "...\"" : "\"");
}

// A section's header and keys, with their lines.
struct Section final {
    std::size_t line = 0;
    std::vector<IniFile::Place> keys;
};

// The check of one file.
class RankingCheck final {
  public:
    explicit RankingCheck(std::string_view text) : m_file(IniFile::parse(text)) {}

    std::vector<RankFinding> check();

  private:
    void readPlaces();
    // The names of a numbered list, as far as it is read.
    std::vector<std::string> checkList(std::string_view section);
    void checkListKeys(std::string_view section);
    void checkNames(const std::vector<std::string>& engines);
    void checkEngine(const std::string& name);
    void checkKeywordEngine(const std::string& name);
    void checkKeys(std::string_view section);
    void checkMarkers(const RankEngine& engine);
    void checkNested(const RankEngine& engine);
    void checkAddress(const RankEngine& engine);
    void checkNumber(std::string_view section, std::string_view key);
    // One marker inside another one; both must have text.
    void checkInside(const RankEngine& engine, std::string_view key, std::string_view marker,
                     std::string_view outerKey, std::string_view outer, std::string_view effect);
    void checkNotEmpty(std::string_view section, std::string_view key, std::string_view effect);

    // The key's line, or that of its section's header.
    std::size_t lineOf(std::string_view section, std::string_view key) const;
    bool holds(std::string_view section) const { return m_sections.contains(section); }
    void report(std::size_t line, std::string_view record, RankFindingKind kind, std::string text);
    void reportTheRest();

    IniFile m_file;
    std::unordered_map<std::string_view, Section, KeyHash, KeyEqual> m_sections;  // those that count
    std::vector<std::string_view> m_order;
    std::vector<RankFinding> m_findings;
    std::array<std::size_t, kKinds> m_counts{};
    std::array<std::size_t, kKinds> m_firstCounted{};  // line of the first finding that is only counted
};

std::vector<RankFinding> RankingCheck::check() {
    readPlaces();
    const std::vector<std::string> engines = checkList(kEnginesSection);
    if (engines.empty())
        report(std::max<std::size_t>(lineOf(kEnginesSection, {}), 1), kEnginesSection,
               RankFindingKind::NoEngines, "The section Engines lists no engine");
    checkListKeys(kEnginesSection);
    checkNames(engines);

    const std::vector<std::string> keywordEngines = checkList(kKeywordSection);
    checkListKeys(kKeywordSection);
    Names listed;
    for (const std::string& name : engines)
        if (listed.insert(name).second && holds(name)) checkEngine(name);
    Names offered;
    for (const std::string& name : keywordEngines)
        if (offered.insert(name).second && holds(name)) checkKeywordEngine(name);

    const std::string first = m_file.value(kKeywordSection, kFirstEngineKey);
    if (!first.empty() && !offered.contains(first))
        report(lineOf(kKeywordSection, kFirstEngineKey), kKeywordSection, RankFindingKind::NotListed,
               "The first engine " + shownWord(first) + " is not among those offered");
    for (const std::string_view section : m_order) {
        if (listed.contains(section) || offered.contains(section) || equalsNoCase(section, kEnginesSection) ||
            equalsNoCase(section, kKeywordSection))
            continue;
        report(m_sections.at(section).line, section, RankFindingKind::NotListed,
               "No list names this section; it is never read");
    }
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](const RankFinding& a, const RankFinding& b) { return a.line < b.line; });
    reportTheRest();
    return std::move(m_findings);
}

void RankingCheck::readPlaces() {
    bool read = true;  // the section that the keys stand in
    for (const IniFile::Place& place : m_file.places()) {
        if (place.key.empty()) {
            read = place.counts;
            if (read) {
                m_sections[place.section].line = place.line;
                m_order.push_back(place.section);
            } else {
                report(place.line, place.section, RankFindingKind::Duplicate,
                       "An earlier section has this name; this one is never read");
            }
        } else if (m_order.empty() && read) {
            report(place.line, {}, RankFindingKind::UnknownKey,
                   "The key " + shownWord(place.key) + " stands before the first section");
        } else if (place.counts) {
            m_sections[place.section].keys.push_back(place);
        } else if (read) {
            report(place.line, place.section, RankFindingKind::Duplicate,
                   "An earlier key is named " + shownWord(place.key) + "; this one is never read");
        }
    }
}

std::vector<std::string> RankingCheck::checkList(std::string_view section) {
    std::vector<std::string> names;
    Names seen;
    for (std::size_t number = 1;; ++number) {
        const std::string key = std::to_string(number);
        std::string name = m_file.value(section, key);
        if (name.empty()) break;
        if (!holds(name))
            report(lineOf(section, key), section, RankFindingKind::MissingSection,
                   "The engine " + shownWord(name) + " has no section");
        names.push_back(std::move(name));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!seen.insert(names[i]).second)
            report(lineOf(section, std::to_string(i + 1)), section, RankFindingKind::Duplicate,
                   "The engine " + shownWord(names[i]) + " is listed already");
    }
    if (!holds(section)) return names;
    std::size_t hidden = 0;
    std::size_t line = 0;
    for (const IniFile::Place& place : m_sections.at(section).keys) {
        if (listNumber(place.key) <= names.size() || m_file.value(section, place.key).empty()) continue;
        if (hidden++ == 0) line = place.line;
    }
    if (hidden > 0)
        report(line, section, RankFindingKind::Gap,
               "The number " + std::to_string(names.size() + 1) + " is missing; " + std::to_string(hidden) +
                   (hidden == 1 ? " engine" : " engines") + " behind it cannot be seen");
    return names;
}

void RankingCheck::checkListKeys(std::string_view section) {
    if (!holds(section)) return;
    const bool keywords = equalsNoCase(section, kKeywordSection);
    for (const IniFile::Place& place : m_sections.at(section).keys) {
        const bool known =
            keywords && (equalsNoCase(place.key, kNumOfURLsKey) || equalsNoCase(place.key, kFirstEngineKey));
        if (listNumber(place.key) == 0 && !known)
            report(place.line, section, RankFindingKind::UnknownKey,
                   "The key " + shownWord(place.key) + " is unknown");
    }
    if (keywords) checkNumber(section, kNumOfURLsKey);
}

// The page 1 of "Go1" and page 11 of "Go" are both "go11.html".
void RankingCheck::checkNames(const std::vector<std::string>& engines) {
    const Names names(engines.begin(), engines.end());
    for (std::size_t i = 0; i < engines.size(); ++i) {
        std::string_view stem = engines[i];
        while (!stem.empty() && stem.back() >= '0' && stem.back() <= '9') {
            stem.remove_suffix(1);
            if (!names.contains(stem)) continue;
            report(lineOf(kEnginesSection, std::to_string(i + 1)), kEnginesSection,
                   RankFindingKind::SharedFiles,
                   "Saved pages of " + shownWord(engines[i]) + " and " + shownWord(stem) +
                       " can have the same names");
            break;
        }
    }
}

void RankingCheck::checkEngine(const std::string& name) {
    RankEngine engine;
    engine.EngineName = name;
    for (const RankTextField& field : kRankTextFields) engine.*field.text = m_file.value(name, field.key);
    checkKeys(name);
    for (const RankNumberField& field : kRankNumberFields) checkNumber(name, field.key);
    if (engine.isButton() && leadingNumber(m_file.value(name, "Start")) == 0)
        report(lineOf(name, "Start"), name, RankFindingKind::BadNumber,
               "With Start 0, every next page is the first one again");
    checkAddress(engine);
    checkMarkers(engine);
    checkNested(engine);
}

void RankingCheck::checkKeywordEngine(const std::string& name) {
    for (const std::string_view key : {kURLStartKey, kURLEndKey})
        checkNotEmpty(name, key, "the keyword builder finds no address in a result");
}

void RankingCheck::checkKeys(std::string_view section) {
    const auto isText = [](std::string_view key) {
        return std::any_of(std::begin(kRankTextFields), std::end(kRankTextFields),
                           [key](const RankTextField& field) { return equalsNoCase(field.key, key); });
    };
    const auto isNumber = [](std::string_view key) {
        return std::any_of(std::begin(kRankNumberFields), std::end(kRankNumberFields),
                           [key](const RankNumberField& field) { return equalsNoCase(field.key, key); });
    };
    for (const IniFile::Place& place : m_sections.at(section).keys) {
        const bool known = isText(place.key) || isNumber(place.key) ||
                           equalsNoCase(place.key, kURLStartKey) || equalsNoCase(place.key, kURLEndKey);
        if (!known)
            report(place.line, section, RankFindingKind::UnknownKey,
                   "The key " + shownWord(place.key) + " is unknown");
        else if (m_file.value(section, place.key, npos).size() > IniFile::kShortLimit)
            report(place.line, section, RankFindingKind::CutValue,
                   "The value of " + std::string(place.key) + " is longer than " +
                       std::to_string(IniFile::kShortLimit) + " characters; the rest is not read");
    }
}

void RankingCheck::checkMarkers(const RankEngine& engine) {
    const std::string& name = engine.EngineName;
    checkNotEmpty(name, "EngineKey", "every link counts as the engine's own");
    checkNotEmpty(name, "NoFoundString", "every page counts as one without results");
    checkNotEmpty(name, "ResultEndString", "the result list ends after its first character");
    checkNotEmpty(name, "ResultStartString", "a changed page looks like one without the site");
    if (!engine.isButton()) checkNotEmpty(name, "NextPage1", "no next page is found");
}

void RankingCheck::checkNested(const RankEngine& engine) {
    const std::string_view opener1 = engine.linkOpener1();
    const std::string_view opener2 = engine.linkOpener2();
    constexpr std::string_view k1 = "HREF_KEYWORD1";
    constexpr std::string_view k2 = "HREF_KEYWORD2";
    constexpr std::string_view kStart = "ResultStartString";
    constexpr std::string_view kEnd = "ResultEndString";
    constexpr std::string_view kSkipped = "every such link is skipped";
    constexpr std::string_view kHidden = "the longer one is never needed";
    checkInside(engine, k1, opener1, k2, opener2, kHidden);
    for (const auto& [key, opener] : {std::pair(k1, opener1), std::pair(k2, opener2)}) {
        checkInside(engine, "EngineKey", engine.EngineKey, key, opener, kSkipped);
        checkInside(engine, "FilterKeyword1", engine.FilterKeyword1, key, opener, kSkipped);
        checkInside(engine, "FilterKeyword2", engine.FilterKeyword2, key, opener, kSkipped);
        checkInside(engine, kEnd, engine.ResultEndString, key, opener, "the list ends at its first link");
    }
    checkInside(engine, kEnd, engine.ResultEndString, "the end of a link", "</A>",
                "the list ends at its first link");
    for (const auto& [key, marker] :
         {std::pair(kStart, &engine.ResultStartString), std::pair(kEnd, &engine.ResultEndString)})
        checkInside(engine, "NoFoundString", engine.NoFoundString, key, *marker,
                    "a page with results counts as one without");
    if (engine.isButton()) return;
    checkInside(engine, "NextPage1", engine.NextPage1, "NextPage2", engine.NextPage2, kHidden);
    checkInside(engine, "NextPage1", engine.NextPage1, "NextPage3", engine.NextPage3, kHidden);
    checkInside(engine, "NextPage2", engine.NextPage2, "NextPage3", engine.NextPage3, kHidden);
}

void RankingCheck::checkInside(const RankEngine& engine, std::string_view key, std::string_view marker,
                               std::string_view outerKey, std::string_view outer, std::string_view effect) {
    if (marker.empty() || outer.empty() || !containsNoCase(outer, marker)) return;
    std::string text(key);
    text.append(" ").append(shownWord(marker)).append(" is inside ").append(outerKey).append(" ");
    text.append(shownWord(outer)).append("; ").append(effect);
    report(lineOf(engine.EngineName, key), engine.EngineName, RankFindingKind::NestedMarker, std::move(text));
}

void RankingCheck::checkAddress(const RankEngine& engine) {
    const std::size_t line = lineOf(engine.EngineName, "EngineURL");
    const bool secure = startsWithNoCase(engine.EngineURL, "https://");
    if (!secure && !startsWithNoCase(engine.EngineURL, "http://"))
        report(line, engine.EngineName, RankFindingKind::BadAddress,
               "The address " + shownWord(engine.EngineURL) + " does not begin with http:// or https://");
    else if (secure && !engine.isButton())
        report(line, engine.EngineName, RankFindingKind::BadAddress,
               "The next page of an https address must be computed: LinkType=Button");
}

void RankingCheck::checkNumber(std::string_view section, std::string_view key) {
    const std::string value = m_file.value(section, key);
    if (value.empty()) return;
    const double number = leadingNumber(value);
    std::string problem;
    try {
        if (toInt16(number) == 0 && trimLeft(value).front() != '0') problem = " is no number and counts as 0";
        if (number < 0) problem = " is negative";
    } catch (const Failure&) {
        problem = " is too large; the loading ends there";
    }
    if (!problem.empty())
        report(lineOf(section, key), section, RankFindingKind::BadNumber,
               std::string(key) + " " + shownWord(value) + problem);
}

void RankingCheck::checkNotEmpty(std::string_view section, std::string_view key, std::string_view effect) {
    if (!m_file.value(section, key).empty()) return;
    report(lineOf(section, key), section, RankFindingKind::EmptyMarker,
           std::string(key) + " is empty: " + std::string(effect));
}

std::size_t RankingCheck::lineOf(std::string_view section, std::string_view key) const {
    const auto found = m_sections.find(section);
    if (found == m_sections.end()) return 0;
    const auto& keys = found->second.keys;
    const auto place = std::find_if(keys.begin(), keys.end(), [key](const IniFile::Place& candidate) {
        return equalsNoCase(candidate.key, key);
    });
    return place == keys.end() ? found->second.line : place->line;
}

void RankingCheck::report(std::size_t line, std::string_view record, RankFindingKind kind, std::string text) {
    const auto index = static_cast<std::size_t>(kind);
    if (++m_counts[index] == kMostOfAKind + 1) m_firstCounted[index] = line;
    if (m_counts[index] > kMostOfAKind) return;
    m_findings.push_back({line, std::string(left(record, kRecordLength)), kind, std::move(text)});
}

void RankingCheck::reportTheRest() {
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        if (m_counts[kind] <= kMostOfAKind) continue;
        m_findings.push_back({m_firstCounted[kind],
                              {},
                              static_cast<RankFindingKind>(kind),
                              std::to_string(m_counts[kind] - kMostOfAKind) + " more of this kind"});
    }
}

}  // namespace

std::string_view rankFindingName(RankFindingKind kind) noexcept {
    // In the order of RankFindingKind.
    static constexpr std::string_view kNames[] = {
        "no engines",    "gap",         "duplicate",  "missing section", "not listed", "empty marker",
        "nested marker", "unknown key", "bad number", "bad address",     "cut value",  "shared files"};
    static_assert(std::size(kNames) == kKinds);
    return kNames[static_cast<std::size_t>(kind)];
}

std::vector<RankFinding> checkRankingCatalogue(std::string_view text) {
    return RankingCheck(text).check();
}

}  // namespace relay

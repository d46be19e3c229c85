// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueCheck.h"

#include "catalogue/CatalogueReader.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineFields.h"
#include "catalogue/EngineTypes.h"
#include "catalogue/Macros.h"
#include "core/Failure.h"
#include "core/KeySet.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>

namespace relay {

namespace {

constexpr std::size_t kShownLength = 80;
constexpr std::size_t kRecordLength = 200;  // longest record name shown
constexpr std::size_t kMostOfAKind = 1000;
constexpr std::size_t kKinds = static_cast<std::size_t>(FindingKind::NotForGet) + 1;

// The faulty text, cut to fit on a line.
std::string shown(std::string_view words) {
    std::string text(left(firstLine(words), kShownLength));
    if (text.size() < words.size()) text += "...";
    return text;
}

bool isLetter(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The check of one file.
class CatalogueCheck final {
  public:
    CatalogueCheck(const EngineCategories& categories, bool refusesAdultSites)
        : m_rule(categories),
          m_refusesAdultSites(refusesAdultSites),
          m_tables(categories.storage()),
          m_texts{{}, *m_tables} {}

    std::vector<Finding> check(std::string_view text);

  private:
    void readItem(CatalogueReader& reader);
    void checkField(EngineKey key, std::string_view value, std::size_t line);
    void checkQuery(std::string_view query, std::size_t line);
    void checkCategory(std::size_t line);
    void checkGet();
    void noteCut(CatalogueReader& reader);
    void closeRecord();
    void reportTheRest();
    // The message is `before`, `words` cut to fit a line, and `behind`.
    void report(std::size_t line, FindingKind kind, std::string_view before, std::string_view words = {},
                std::string_view behind = {});

    // The findings of one kind.
    struct Tally final {
        std::size_t count = 0;
        std::size_t firstCounted = 0;  // line of the first finding that is only counted
    };

    CategoryRule m_rule;
    const bool m_refusesAdultSites;
    const std::shared_ptr<const std::string> m_tables;
    std::vector<Finding> m_findings;
    std::array<Tally, kKinds> m_tallies{};
    std::vector<std::string_view> m_names;  // of the records that would be loaded
    KeySet m_byName;
    EngineTexts m_texts;
    clsEngines m_engine{m_texts};
    std::size_t m_recordLine = 0;  // 0 until a key is read
    std::size_t m_actionLine = 0;  // of the action in force
    std::size_t m_queryLine = 0;   // of the query in force
    std::string_view m_cutItem;    // the last item, if a comma ended it
    std::size_t m_cutLine = 0;
};

std::vector<Finding> CatalogueCheck::check(std::string_view text) {
    m_texts.file = text;
    CatalogueReader reader(text);
    while (reader.next()) {
        noteCut(reader);
        readItem(reader);
    }
    closeRecord();
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    reportTheRest();
    return std::move(m_findings);
}

// Several items on one line are fine as long as each is a key; anything else after a comma was meant to be
// part of the value before it.
void CatalogueCheck::noteCut(CatalogueReader& reader) {
    const std::string_view item = reader.item();
    if (!m_cutItem.empty()) {
        const char* end = m_cutItem.data() + m_cutItem.size();
        const std::string_view between(end, static_cast<std::size_t>(item.data() - end));
        const bool sameLine = between.find_first_of("\r\n") == npos;
        const bool isKey = reader.key() != EngineKey::None && reader.key() != EngineKey::Unknown;
        if (sameLine && !isKey) {
            report(m_cutLine, FindingKind::CutValue, "A comma cuts \"" + shown(m_cutItem) + "\" before \"",
                   item, "\"");
        }
        m_cutItem = {};
    }
    if (reader.key() < EngineKey::None && reader.closedByComma() && !reader.quoted()) {
        m_cutItem = item;
        m_cutLine = reader.line();
    }
}

void CatalogueCheck::readItem(CatalogueReader& reader) {
    const EngineKey key = reader.key();
    const std::size_t line = reader.line();
    if (key == EngineKey::None) return;
    if (key == EngineKey::Unknown) {
        // Merged engines have this key, with nothing behind it.
        if (!equalsNoCase(reader.keyText(), "WebType") || !reader.value().empty())
            report(line, FindingKind::UnknownKey, "The key \"", reader.keyText(), "\" is unknown");
        return;
    }
    if (key == EngineKey::Name) {
        closeRecord();
        m_engine = clsEngines(m_texts);
    }
    if (key == EngineKey::Name || m_recordLine == 0) m_recordLine = line;
    m_engine.set(key, reader.value());
    checkField(key, reader.value(), line);
}

void CatalogueCheck::checkField(EngineKey key, std::string_view value, std::size_t line) {
    switch (key) {
        case EngineKey::Action:
            m_actionLine = line;
            if (!value.empty() && !startsWithNoCase(value, "http://") && !startsWithNoCase(value, "https://"))
                report(line, FindingKind::ActionWithoutScheme, "The action \"", value,
                       "\" does not begin with http:// or https://");
            break;
        case EngineKey::Query:
            m_queryLine = line;
            checkQuery(value, line);
            break;
        case EngineKey::Category:
            checkCategory(line);
            break;
        case EngineKey::EngineType:
            if (!equalsNoCase(EngineTypes[engineTypeIndex(value)].code, value))
                report(line, FindingKind::UnknownType, "The type \"", value,
                       "\" is unknown and counts as MIS");
            break;
        case EngineKey::Country:
            if (!value.empty() && (value.size() != 2 || !isLetter(value[0]) || !isLetter(value[1])))
                report(line, FindingKind::BadCountry, "The country \"", value, "\" is not two letters");
            break;
        case EngineKey::Method:
            if (!equalsNoCase(value, "GET") && !equalsNoCase(value, "POST"))
                report(line, FindingKind::BadMethod, "The method \"", value, "\" is neither GET nor POST");
            break;
        default:
            break;
    }
}

void CatalogueCheck::checkQuery(std::string_view query, std::size_t line) {
    if (query.empty()) return;
    std::size_t open = query.find('<');
    if (open == npos)
        report(line, FindingKind::QueryWithoutMacro, "The query \"", query,
               "\" holds no macro, so the engine cannot be submitted to");
    while (open != npos) {
        const std::size_t close = query.find('>', open);
        if (close == npos || close == open + 1) {
            report(line, FindingKind::BrokenMacro, "The macro at \"", query.substr(open),
                   "\" has no name or no \">\"");
            return;
        }
        const std::string_view macro = query.substr(open + 1, close - open - 1);
        if (!macroOf(macro))
            report(line, FindingKind::UnknownMacro, "The macro \"", macro, "\" is unknown; its name is sent");
        open = query.find('<', close);
    }
}

// Run when the record is complete, as the method is known only then.
void CatalogueCheck::checkGet() {
    if (!equalsNoCase(m_engine.Method(), "GET")) return;
    for (const auto& [text, line] :
         {std::pair(m_engine.Action(), m_actionLine), {m_engine.Query(), m_queryLine}}) {
        if (const std::size_t hash = text.find('#'); hash != npos)
            report(line, FindingKind::NotForGet, "A GET loses everything from \"", text.substr(hash),
                   "\" on; write # as %23");
        if (text.find(' ') != npos)
            report(line, FindingKind::NotForGet, "A GET sends the blanks in \"", text,
                   "\" as %20; a form sends +");
    }
}

void CatalogueCheck::checkCategory(std::size_t line) {
    try {
        m_rule.resolve(m_engine);
    } catch (const Failure&) {
        // The file has no tables at all, so the load would end here; the table of this record is missing too.
    }
    if (missesCategoryData(m_engine))
        report(line, FindingKind::MissingTable, "The category rule \"", m_engine.Category(),
               "\" finds no table");
}

void CatalogueCheck::closeRecord() {
    if (m_recordLine == 0) return;
    if (m_engine.name().empty()) {
        report(m_recordLine, FindingKind::NoName, "The record has no name and is not loaded");
        return;
    }
    if (m_engine.Action().empty()) report(m_recordLine, FindingKind::NoAction, "The record has no action");
    if (m_engine.Query().empty()) report(m_recordLine, FindingKind::NoQuery, "The record has no query");
    checkGet();
    if (isAdultOnly(m_engine) && m_refusesAdultSites) return;
    const std::string_view name = m_engine.name();
    if (m_byName.insert(static_cast<std::uint32_t>(m_names.size()), name,
                        [this](std::uint32_t place) { return m_names[place]; }))
        m_names.push_back(name);
    else
        report(m_recordLine, FindingKind::Duplicate, "An earlier record is named \"", name,
               "\"; this one is not loaded");
}

void CatalogueCheck::reportTheRest() {
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        const Tally& tally = m_tallies[kind];
        if (tally.count <= kMostOfAKind) continue;
        m_findings.push_back({tally.firstCounted,
                              {},
                              static_cast<FindingKind>(kind),
                              std::to_string(tally.count - kMostOfAKind) + " more of this kind"});
    }
}

void CatalogueCheck::report(std::size_t line, FindingKind kind, std::string_view before,
                            std::string_view words, std::string_view behind) {
    Tally& tally = m_tallies[static_cast<std::size_t>(kind)];
    if (++tally.count == kMostOfAKind + 1) tally.firstCounted = line;
    if (tally.count > kMostOfAKind) return;
    m_findings.push_back({line, std::string(left(m_engine.name(), kRecordLength)), kind,
                          std::string(before).append(shown(words)).append(behind)});
}

}  // namespace

std::string_view findingName(FindingKind kind) noexcept {
    // In the order of FindingKind.
    static constexpr std::string_view kNames[] = {"no name",
                                                  "duplicate",
                                                  "no action",
                                                  "action without a scheme",
                                                  "no query",
                                                  "query without a macro",
                                                  "unknown macro",
                                                  "broken macro",
                                                  "missing category table",
                                                  "unknown type",
                                                  "unknown key",
                                                  "cut value",
                                                  "bad country",
                                                  "bad method",
                                                  "not for GET"};
    static_assert(std::size(kNames) == kKinds);
    return kNames[static_cast<std::size_t>(kind)];
}

std::vector<Finding> checkCatalogue(std::string_view text, const EngineCategories& categories,
                                    bool refusesAdultSites) {
    return CatalogueCheck(categories, refusesAdultSites).check(text);
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueCheck.h"

#include "catalogue/CatalogueReader.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineFields.h"
#include "catalogue/EngineTypes.h"
#include "catalogue/Macros.h"
#include "core/Failure.h"
#include "core/Keys.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
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
    void reportDuplicates();
    void reportTheRest();
    // `text` makes the message; it is not called for a finding that is only counted.
    template <typename Text>
    void report(std::size_t line, std::string_view record, FindingKind kind, Text&& text);
    template <typename Text>
    void report(std::size_t line, FindingKind kind, Text&& text) {
        report(line, m_engine.name(), kind, std::forward<Text>(text));
    }

    // The findings of one kind.
    struct Tally final {
        std::size_t count = 0;
        std::size_t firstUntold = 0;  // line of the first finding that is only counted
    };
    // The name of a record that would be loaded. Kept small, as a file may hold millions.
    struct Name final {
        std::string_view text;  // in the file
        std::uint32_t hash;
        std::uint32_t line;
    };

    CategoryRule m_rule;
    const bool m_refusesAdultSites;
    const std::shared_ptr<const std::string> m_tables;
    std::vector<Finding> m_findings;
    std::array<Tally, kKinds> m_tallies{};
    std::deque<Name> m_names;
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
    reportDuplicates();
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
            report(m_cutLine, FindingKind::CutValue, [&] {
                return "A comma cuts \"" + shown(m_cutItem) + "\" before \"" + shown(item) + "\"";
            });
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
        report(line, FindingKind::UnknownKey,
               [&] { return "The key \"" + shown(reader.keyText()) + "\" is unknown"; });
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
            if (!value.empty() && !startsWithNoCase(value, "http://") &&
                !startsWithNoCase(value, "https://")) {
                report(line, FindingKind::ActionWithoutScheme, [&] {
                    return "The action \"" + shown(value) + "\" does not begin with http:// or https://";
                });
            }
            break;
        case EngineKey::Query:
            m_queryLine = line;
            checkQuery(value, line);
            break;
        case EngineKey::Category:
            checkCategory(line);
            break;
        case EngineKey::EngineType:
            if (!equalsNoCase(EngineTypes[engineTypeIndex(value)].code, value)) {
                report(line, FindingKind::UnknownType,
                       [&] { return "The type \"" + shown(value) + "\" is unknown and counts as MIS"; });
            }
            break;
        case EngineKey::Country:
            if (!value.empty() && (value.size() != 2 || !isLetter(value[0]) || !isLetter(value[1]))) {
                report(line, FindingKind::BadCountry,
                       [&] { return "The country \"" + shown(value) + "\" is not two letters"; });
            }
            break;
        case EngineKey::Method:
            if (!equalsNoCase(value, "GET") && !equalsNoCase(value, "POST")) {
                report(line, FindingKind::BadMethod,
                       [&] { return "The method \"" + shown(value) + "\" is neither GET nor POST"; });
            }
            break;
        default:
            break;
    }
}

void CatalogueCheck::checkQuery(std::string_view query, std::size_t line) {
    if (query.empty()) return;
    std::size_t open = query.find('<');
    if (open == npos) {
        report(line, FindingKind::QueryWithoutMacro, [&] {
            return "The query \"" + shown(query) + "\" holds no macro, so the engine cannot be submitted to";
        });
    }
    while (open != npos) {
        const std::size_t close = query.find('>', open);
        if (close == npos || close == open + 1) {
            report(line, FindingKind::BrokenMacro, [&] {
                return "The macro at \"" + shown(query.substr(open)) + "\" has no name or no \">\"";
            });
            return;
        }
        const std::string_view macro = query.substr(open + 1, close - open - 1);
        if (!macroOf(macro)) {
            report(line, FindingKind::UnknownMacro,
                   [&] { return "The macro \"" + shown(macro) + "\" is unknown; its name is sent"; });
        }
        open = query.find('<', close);
    }
}

// Run when the record is complete, as the method is known only then.
void CatalogueCheck::checkGet() {
    if (!equalsNoCase(m_engine.Method(), "GET")) return;
    for (const auto& [text, line] :
         {std::pair(m_engine.Action(), m_actionLine), {m_engine.Query(), m_queryLine}}) {
        if (const std::size_t hash = text.find('#'); hash != npos)
            report(line, FindingKind::NotForGet, [&, text = text] {
                return "A GET loses everything from \"" + shown(text.substr(hash)) + "\" on; write # as %23";
            });
        if (text.find(' ') != npos)
            report(line, FindingKind::NotForGet, [&, text = text] {
                return "A GET sends the blanks in \"" + shown(text) + "\" as %20; a form sends +";
            });
    }
}

void CatalogueCheck::checkCategory(std::size_t line) {
    try {
        m_rule.resolve(m_engine);
    } catch (const Failure&) {
        // The file has no tables at all, so the load would end here; the table of this record is missing too.
    }
    if (missesCategoryData(m_engine)) {
        report(line, FindingKind::MissingTable,
               [&] { return "The category rule \"" + shown(m_engine.Category()) + "\" finds no table"; });
    }
}

void CatalogueCheck::closeRecord() {
    if (m_recordLine == 0) return;
    if (m_engine.name().empty()) {
        report(m_recordLine, FindingKind::NoName, [&] { return "The record has no name and is not loaded"; });
        return;
    }
    if (m_engine.Action().empty()) {
        report(m_recordLine, FindingKind::NoAction, [&] { return "The record has no action"; });
    }
    if (m_engine.Query().empty())
        report(m_recordLine, FindingKind::NoQuery, [&] { return "The record has no query"; });
    checkGet();
    if (isAdultOnly(m_engine) && m_refusesAdultSites) return;
    m_names.push_back({m_engine.name(), static_cast<std::uint32_t>(KeyHash()(m_engine.name())),
                       static_cast<std::uint32_t>(m_recordLine)});
}

// Sorts equal names together, in file order, and reports all but the first of each.
void CatalogueCheck::reportDuplicates() {
    const auto before = [](const Name& a, const Name& b) { return a.text.data() < b.text.data(); };
    std::sort(m_names.begin(), m_names.end(), [&](const Name& a, const Name& b) {
        if (a.hash != b.hash) return a.hash < b.hash;
        const int order = compareNoCase(a.text, b.text);
        return order != 0 ? order < 0 : before(a, b);
    });
    std::string_view first;
    const auto isFirst = [&first](const Name& name) {
        if (equalsNoCase(first, name.text)) return false;
        first = name.text;
        return true;
    };
    m_names.erase(std::remove_if(m_names.begin(), m_names.end(), isFirst), m_names.end());
    std::sort(m_names.begin(), m_names.end(), before);
    for (const Name& name : m_names) {
        report(name.line, name.text, FindingKind::Duplicate, [&] {
            return "An earlier record is named \"" + shown(name.text) + "\"; this one is not loaded";
        });
    }
}

void CatalogueCheck::reportTheRest() {
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        const Tally& tally = m_tallies[kind];
        if (tally.count <= kMostOfAKind) continue;
        m_findings.push_back({tally.firstUntold,
                              {},
                              static_cast<FindingKind>(kind),
                              std::to_string(tally.count - kMostOfAKind) + " more of this kind"});
    }
}

template <typename Text>
void CatalogueCheck::report(std::size_t line, std::string_view record, FindingKind kind, Text&& text) {
    Tally& tally = m_tallies[static_cast<std::size_t>(kind)];
    if (++tally.count <= kMostOfAKind)
        m_findings.push_back({line, std::string(left(record, kRecordLength)), kind, text()});
    else if (tally.count == kMostOfAKind + 1)
        tally.firstUntold = line;
}

}  // namespace

std::string_view findingName(FindingKind kind) noexcept {
    switch (kind) {
        case FindingKind::NoName:
            return "no name";
        case FindingKind::Duplicate:
            return "duplicate";
        case FindingKind::NoAction:
            return "no action";
        case FindingKind::ActionWithoutScheme:
            return "action without a scheme";
        case FindingKind::NoQuery:
            return "no query";
        case FindingKind::QueryWithoutMacro:
            return "query without a macro";
        case FindingKind::UnknownMacro:
            return "unknown macro";
        case FindingKind::BrokenMacro:
            return "broken macro";
        case FindingKind::MissingTable:
            return "missing category table";
        case FindingKind::UnknownType:
            return "unknown type";
        case FindingKind::UnknownKey:
            return "unknown key";
        case FindingKind::CutValue:
            return "cut value";
        case FindingKind::BadCountry:
            return "bad country";
        case FindingKind::BadMethod:
            return "bad method";
        case FindingKind::NotForGet:
            return "not for GET";
    }
    return {};
}

std::vector<Finding> checkCatalogue(std::string_view text, const EngineCategories& categories,
                                    bool refusesAdultSites) {
    return CatalogueCheck(categories, refusesAdultSites).check(text);
}

}  // namespace relay

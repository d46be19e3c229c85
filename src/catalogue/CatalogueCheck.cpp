// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueCheck.h"

#include "catalogue/CatalogueReader.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineCollection.h"
#include "catalogue/EngineFields.h"
#include "catalogue/EngineTypes.h"
#include "catalogue/Macros.h"
#include "core/Failure.h"
#include "core/Text.h"

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr std::size_t kShownLength = 80;

// The words at fault, cut to what fits a line.
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
        : m_categories(categories), m_refusesAdultSites(refusesAdultSites) {}

    std::vector<Finding> check(std::string_view text);

  private:
    void readItem(CatalogueReader& reader);
    void checkField(EngineKey key, std::string_view value, std::size_t line);
    void checkQuery(std::string_view query, std::size_t line);
    void checkCategory(std::size_t line);
    void noteCut(CatalogueReader& reader);
    void closeRecord();
    void report(std::size_t line, FindingKind kind, std::string text);

    const EngineCategories& m_categories;
    const bool m_refusesAdultSites;
    std::vector<Finding> m_findings;
    EngineCollection m_names;
    UpperCaseTexts m_upperCase;
    clsEngines m_engine;
    std::size_t m_recordLine = 0;  // 0 while no key was read
    std::string_view m_cutItem;    // the last item, when a comma closed it
    std::size_t m_cutLine = 0;
};

std::vector<Finding> CatalogueCheck::check(std::string_view text) {
    CatalogueReader reader(text);
    while (reader.next()) {
        noteCut(reader);
        readItem(reader);
    }
    closeRecord();
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    return std::move(m_findings);
}

// Several items on one line are in order as long as each is a key; anything else behind a comma was meant to
// belong to the value in front of it.
void CatalogueCheck::noteCut(CatalogueReader& reader) {
    const std::string_view item = reader.item();
    if (!m_cutItem.empty()) {
        const char* end = m_cutItem.data() + m_cutItem.size();
        const std::string_view between(end, static_cast<std::size_t>(item.data() - end));
        const bool sameLine = between.find_first_of("\r\n") == npos;
        const bool isKey = reader.key() != EngineKey::None && reader.key() != EngineKey::Unknown;
        if (sameLine && !isKey) {
            report(m_cutLine, FindingKind::CutValue,
                   "A comma cuts \"" + shown(m_cutItem) + "\" before \"" + shown(item) + "\"");
        }
        m_cutItem = {};
    }
    if (reader.key() > EngineKey::Unknown && reader.closedByComma() && !reader.quoted()) {
        m_cutItem = item;
        m_cutLine = reader.line();
    }
}

void CatalogueCheck::readItem(CatalogueReader& reader) {
    const EngineKey key = reader.key();
    const std::size_t line = reader.line();
    if (key == EngineKey::None) return;
    if (key == EngineKey::Unknown) {
        report(line, FindingKind::UnknownKey, "Nobody knows the key \"" + shown(reader.keyText()) + "\"");
        return;
    }
    if (key == EngineKey::Name) {
        closeRecord();
        m_engine = {};
    }
    if (key == EngineKey::Name || m_recordLine == 0) m_recordLine = line;
    storeField(m_engine, key, reader.value(), m_upperCase);
    checkField(key, reader.value(), line);
}

void CatalogueCheck::checkField(EngineKey key, std::string_view value, std::size_t line) {
    switch (key) {
        case EngineKey::Action:
            if (!value.empty() && !startsWithNoCase(value, "http://") &&
                !startsWithNoCase(value, "https://")) {
                report(line, FindingKind::ActionWithoutScheme,
                       "The action \"" + shown(value) + "\" begins with neither http:// nor https://");
            }
            break;
        case EngineKey::Query:
            checkQuery(value, line);
            break;
        case EngineKey::Category:
            checkCategory(line);
            break;
        case EngineKey::EngineType:
            if (!equalsNoCase(EngineTypes[engineTypeIndex(value)].code, value)) {
                report(line, FindingKind::UnknownType,
                       "The type \"" + shown(value) + "\" is unknown and counts as MIS");
            }
            break;
        case EngineKey::Country:
            if (!value.empty() && (value.size() != 2 || !isLetter(value[0]) || !isLetter(value[1]))) {
                report(line, FindingKind::BadCountry,
                       "The country \"" + shown(value) + "\" is no two letters");
            }
            break;
        case EngineKey::Method:
            if (!equalsNoCase(value, "GET") && !equalsNoCase(value, "POST")) {
                report(line, FindingKind::BadMethod,
                       "The method \"" + shown(value) + "\" is neither GET nor POST");
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
        report(line, FindingKind::QueryWithoutMacro,
               "The query \"" + shown(query) + "\" holds no macro, so the engine cannot be submitted to");
    }
    while (open != npos) {
        const std::size_t close = query.find('>', open);
        if (close == npos || close == open + 1) {
            report(line, FindingKind::BrokenMacro,
                   "The macro at \"" + shown(query.substr(open)) + "\" has no name or no end");
            return;
        }
        const std::string_view macro = query.substr(open + 1, close - open - 1);
        if (!isKnownMacro(macro)) {
            report(line, FindingKind::UnknownMacro,
                   "The macro \"" + shown(macro) + "\" is unknown and stands for itself");
        }
        open = query.find('<', close);
    }
}

void CatalogueCheck::checkCategory(std::size_t line) {
    try {
        resolveCategoryData(m_engine, m_categories);
    } catch (const Failure&) {
        // No table at all: the load ends here, and the record's table is missing just the same.
    }
    if (missesCategoryData(m_engine)) {
        report(line, FindingKind::MissingTable,
               "The category rule \"" + shown(m_engine.Category) + "\" finds no table");
    }
}

void CatalogueCheck::closeRecord() {
    if (m_recordLine == 0) return;
    if (m_engine.name.empty()) {
        report(m_recordLine, FindingKind::NoName, "The record has no name and is not loaded");
        return;
    }
    if (m_engine.Action.empty()) {
        report(m_recordLine, FindingKind::NoAction, "The record has no action");
    }
    if (m_engine.Query.empty()) report(m_recordLine, FindingKind::NoQuery, "The record has no query");
    if (isAdultOnly(m_engine) && m_refusesAdultSites) return;
    if (!m_names.add(m_engine)) {
        report(m_recordLine, FindingKind::Duplicate,
               "An earlier record is named \"" + shown(m_engine.name) + "\"; this one is not loaded");
    }
}

void CatalogueCheck::report(std::size_t line, FindingKind kind, std::string text) {
    m_findings.push_back({line, std::string(m_engine.name), kind, std::move(text)});
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
    }
    return {};
}

std::vector<Finding> checkCatalogue(std::string_view text, const EngineCategories& categories,
                                    bool refusesAdultSites) {
    return CatalogueCheck(categories, refusesAdultSites).check(text);
}

}  // namespace relay

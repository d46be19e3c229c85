// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CatalogueCheck.h"
#include "catalogue/clsEngines.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class EngineCategories;
struct ScrapedForm;

inline constexpr std::string_view kEndMarker = "END:Version 6.0";  // of the engine file

// One engine of the user's own. The values are those of a new record.
struct CustomEngineRecord final {
    std::string Name;
    std::string Home;
    std::string AddURL;  // the page with the form
    std::string Country;
    std::string CountryOnly = "No";
    std::string EngineType = "ENG";
    std::string Category = "Y";  // Y: it wants a category; N; F: the shared table of free-for-all pages
    std::string CategoryData;    // label=value entries with ">" between
    std::string Method = "Get";
    std::string Action;
    std::string Query;
    std::string WebType;  // never filled
    std::string Adults = "No";
    std::string AdultOnlySites = "No";
    std::string Language;
    std::int32_t MaxTitle = 0;
    std::int32_t MaxKeywords = 0;
    std::int32_t MaxDescription = 0;
    std::int16_t SiteLevel = 3;

    bool operator==(const CustomEngineRecord&) const = default;
};

// A key of the record: a text or a number.
struct CustomEngineKey final {
    std::string_view name;  // as in the file; CategoryData lies in the file of the categories
    EngineKey key = EngineKey::Unknown;
    std::string CustomEngineRecord::*text = nullptr;
    std::int32_t CustomEngineRecord::*number = nullptr;  // SiteLevel has neither
};
// All keys in the order of the file, CategoryData after Category.
inline constexpr CustomEngineKey kCustomEngineKeys[] = {
    {"Name", EngineKey::Name, &CustomEngineRecord::Name},
    {"Home", EngineKey::Home, &CustomEngineRecord::Home},
    {"AddURL", EngineKey::AddURL, &CustomEngineRecord::AddURL},
    {"Country", EngineKey::Country, &CustomEngineRecord::Country},
    {"CountryOnly", EngineKey::CountryOnly, &CustomEngineRecord::CountryOnly},
    {"Type", EngineKey::EngineType, &CustomEngineRecord::EngineType},
    {"Category", EngineKey::Category, &CustomEngineRecord::Category},
    {"CategoryData", EngineKey::CategoryData, &CustomEngineRecord::CategoryData},
    {"Method", EngineKey::Method, &CustomEngineRecord::Method},
    {"Action", EngineKey::Action, &CustomEngineRecord::Action},
    {"Query", EngineKey::Query, &CustomEngineRecord::Query},
    {"WebType", EngineKey::Unknown, &CustomEngineRecord::WebType},
    {"Adults", EngineKey::Adults, &CustomEngineRecord::Adults},
    {"AdultOnlySites", EngineKey::AdultOnlySites, &CustomEngineRecord::AdultOnlySites},
    {"Language", EngineKey::Language, &CustomEngineRecord::Language},
    {"MaxTitle", EngineKey::MaxTitle, nullptr, &CustomEngineRecord::MaxTitle},
    {"MaxKeywords", EngineKey::MaxKeywords, nullptr, &CustomEngineRecord::MaxKeywords},
    {"MaxDescription", EngineKey::MaxDescriptions, nullptr, &CustomEngineRecord::MaxDescription},
    {"SiteLevel", EngineKey::SiteLevel},
};
std::int32_t numberOf(const CustomEngineRecord& record, const CustomEngineKey& key);

// The site level that comes with a type.
std::int16_t usualSiteLevel(std::string_view engineType) noexcept;
// The records of a file of custom engines. Their categories come from `categories`, their own file. Throws
// Failure 9 "Subscript out of range" for a file with a key in front of its first name.
std::vector<CustomEngineRecord> readCustomEngines(std::string_view text, const EngineCategories& categories);
// As in the file of custom engines, without blank lines. Line breaks in a value become blanks.
std::string recordText(const CustomEngineRecord& record);
// The record's table for the file of the categories; empty when it has none.
std::string recordTable(const CustomEngineRecord& record);

// A form that was read replaces everything but name and addresses.
void takeForm(CustomEngineRecord& record, const ScrapedForm& form);
// What a user fills in wrong. `control` is the name of the field.
struct RecordProblem final {
    std::string words;  // empty: none
    std::string_view control;
};
// Checks a record that is about to be stored, and derives its category rule; the addresses get a scheme.
RecordProblem completeRecord(CustomEngineRecord& record);
// What `engines check` would say about the record; `shared` has the shared tables.
std::vector<Finding> checkRecord(const CustomEngineRecord& record, const EngineCategories& shared,
                                 bool refusesAdultSites);

}  // namespace relay

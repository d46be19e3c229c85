// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/clsEngines.h"

#include <array>
#include <string_view>

namespace relay {

class EngineCategories;

// A field of the record: its name for people and programs, and the spellings of its key in the engine file,
// the first of which is used for writing. A spelling has 4 to 16 letters and nothing else. To add a field,
// add a row here and its key and accessor in clsEngines.
struct EngineField final {
    EngineKey key;
    std::string_view name;
    std::array<std::string_view, 4> spellings;
};

inline constexpr EngineField EngineFields[] = {
    {EngineKey::Name, "name", {"Name"}},
    {EngineKey::Home, "Home", {"Home"}},
    {EngineKey::AddURL, "AddURL", {"AddURL"}},
    {EngineKey::Country, "Country", {"Country"}},
    {EngineKey::CountryOnly, "CountryOnly", {"CountryOnly"}},
    {EngineKey::EngineType, "EngineType", {"Type", "EngineType"}},
    {EngineKey::Category, "Category", {"Category", "CategoryType"}},
    {EngineKey::CategoryData, "CategoryData", {}},
    {EngineKey::Method, "Method", {"Method"}},
    {EngineKey::Action, "Action", {"Action"}},
    {EngineKey::Query, "Query", {"Query"}},
    {EngineKey::AdultOnlySites, "AdultOnlySites", {"AdultOnlySites", "AdultOnlySite"}},
    {EngineKey::Adults, "Adults", {"Adults", "Adult", "AdultSite", "AdultSites"}},
    {EngineKey::Language, "Language", {"Language"}},
    {EngineKey::MaxTitle, "MaxTitle", {"MaxTitle"}},
    {EngineKey::MaxKeywords, "MaxKeywords", {"MaxKeywords", "MaxKeyword"}},
    {EngineKey::MaxDescriptions, "MaxDescriptions", {"MaxDescription", "MaxDescr"}},
    {EngineKey::SiteLevel, "SiteLevel", {"SiteLevel"}},
};
static_assert(std::size(EngineFields) == static_cast<std::size_t>(EngineKey::None), "a row for each key");

// The key, without regard to case; a blank makes it Unknown, as does any other text.
EngineKey engineKey(std::string_view text) noexcept;

// Looks up CategoryData by a record's category rule. It remembers the last name, so repeating the rule in a
// record costs no further search.
class CategoryRule final {
  public:
    explicit CategoryRule(const EngineCategories& categories) : m_categories(categories) {}
    // Throws as getEngineCategoryData does.
    void resolve(clsEngines& engine);

  private:
    const EngineCategories& m_categories;
    std::string_view m_name = "none yet";  // compared by its address in the file
    std::string_view m_ownData;
};

// True if the rule needs a table and none was found.
bool missesCategoryData(const clsEngines& engine) noexcept;
// True for an engine that takes adult sites only; users who refuse them never see it.
bool isAdultOnly(const clsEngines& engine) noexcept;

}  // namespace relay

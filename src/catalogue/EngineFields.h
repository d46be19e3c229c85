// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/clsEngines.h"

#include <array>
#include <string_view>

namespace relay {

class EngineCategories;

// A field of the record: its name where a person or a program reads it, and its key in the engine file in all
// spellings, the first of which is written. A spelling has 4 to 16 letters, and nothing else. A new field is
// a row here, and its key and accessor in clsEngines.
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

// The key without regard to case, with no blank forgiven; Unknown when it is none.
EngineKey engineKey(std::string_view text) noexcept;

// Looks up CategoryData by a record's category rule. It remembers the last name, so that a record that gives
// its rule a million times does not have its name searched for as often.
class CategoryRule final {
  public:
    explicit CategoryRule(const EngineCategories& categories) : m_categories(categories) {}
    // Fails as getEngineCategoryData does.
    void resolve(clsEngines& engine);

  private:
    const EngineCategories& m_categories;
    std::string_view m_name = "none yet";  // told by its place in the file
    std::string_view m_ownData;
};

// The rule asks for a table and none was found.
bool missesCategoryData(const clsEngines& engine) noexcept;
// An engine for adult sites only, which a user who refuses them never sees.
bool isAdultOnly(const clsEngines& engine) noexcept;

}  // namespace relay

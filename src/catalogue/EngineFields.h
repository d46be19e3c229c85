// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CatalogueReader.h"
#include "catalogue/clsEngines.h"

#include <string_view>

namespace relay {

class EngineCategories;

// The rules by which an item of the engine file becomes a field of its record.
//
// Stores the value under its key; a key of another kind changes nothing. The texts point into the value or
// into static storage; Country and EngineType are not in upper case yet.
void storeField(clsEngines& engine, EngineKey key, std::string_view value);

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

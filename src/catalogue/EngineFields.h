// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CatalogueReader.h"
#include "catalogue/clsEngines.h"
#include "core/Keys.h"

#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>

namespace relay {

class EngineCategories;

// Keeps one upper-case copy of each text that was not upper case already.
class UpperCaseTexts final {
  public:
    std::string_view upper(std::string_view text);

  private:
    std::deque<std::string> m_texts;
    std::unordered_set<std::string_view, KeyHash, KeyEqual> m_known;
};

// The rules by which an item of the engine file becomes a field of its record.
//
// Stores the value under its key; a key of another kind changes nothing. The texts point into the value, into
// `upperCase` or into static storage.
void storeField(clsEngines& engine, EngineKey key, std::string_view value, UpperCaseTexts& upperCase);
// Looks up CategoryData by the record's category rule; fails as getEngineCategoryData does.
void resolveCategoryData(clsEngines& engine, const EngineCategories& categories);
// The rule asks for a table and none was found.
bool missesCategoryData(const clsEngines& engine) noexcept;
// An engine for adult sites only, which a user who refuses them never sees.
bool isAdultOnly(const clsEngines& engine) noexcept;

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineFields.h"

#include "catalogue/EngineCategories.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <limits>

namespace relay {

namespace {

constexpr std::string_view kSharedFFA = "Free For All Links";
constexpr std::string_view kSharedGeneral = "General For All Links";

// Every byte once, A to Z for the small letters, as storage for one-letter fields.
constexpr auto kUpperBytes = [] {
    std::array<char, 256> bytes{};
    for (std::size_t code = 0; code < bytes.size(); ++code) {
        bytes[code] = static_cast<char>(code >= 'a' && code <= 'z' ? code - 'a' + 'A' : code);
    }
    return bytes;
}();

std::string_view firstLetter(std::string_view value) noexcept {
    if (value.empty()) return {};
    return {&kUpperBytes[static_cast<unsigned char>(value.front())], 1};
}

// Whole numbers of a few digits are what the file is full of; all else takes the long way.
int number(std::string_view value) noexcept {
    constexpr std::size_t kSafeDigits = 9;
    int sum = 0;
    for (const char c : value.substr(0, kSafeDigits)) {
        if (c < '0' || c > '9') return leadingInteger(value);
        sum = sum * 10 + (c - '0');
    }
    return value.size() > kSafeDigits ? leadingInteger(value) : sum;
}

std::int16_t siteLevel(std::string_view value) noexcept {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<int>(number(value), Limits::min(), Limits::max()));
}

}  // namespace

void storeField(clsEngines& engine, EngineKey key, std::string_view value) {
    switch (key) {
        case EngineKey::Name:
            engine.name = value;
            break;
        case EngineKey::Home:
            engine.Home = value;
            break;
        case EngineKey::AddURL:
            engine.AddURL = value;
            break;
        case EngineKey::Country:
            engine.Country = equalsNoCase(value, "NN") ? std::string_view("US") : value;
            break;
        case EngineKey::CountryOnly:
            engine.CountryOnly = value;
            break;
        case EngineKey::EngineType:
            engine.EngineType = value;
            break;
        case EngineKey::Category:
            engine.Category = value;
            break;
        case EngineKey::Method:
            engine.Method = value;
            break;
        case EngineKey::Action:
            engine.Action = value;
            break;
        case EngineKey::Query:
            engine.Query = value;
            break;
        case EngineKey::AdultOnlySites:
            engine.AdultOnlySites = firstLetter(value);
            break;
        case EngineKey::Adults:
            engine.Adults = firstLetter(value);
            break;
        case EngineKey::Language:
            engine.Language = value;
            break;
        case EngineKey::MaxTitle:
            engine.MaxTitle = number(value);
            break;
        case EngineKey::MaxKeywords:
            engine.MaxKeywords = number(value);
            break;
        case EngineKey::MaxDescriptions:
            engine.MaxDescriptions = number(value);
            break;
        case EngineKey::SiteLevel:
            engine.SiteLevel = siteLevel(value);
            break;
        case EngineKey::None:
        case EngineKey::Unknown:
            break;
    }
}

void CategoryRule::resolve(clsEngines& engine) {
    const std::string_view rule = engine.Category;
    if (equalsNoCase(rule, "F") || (equalsNoCase(rule, "N") && equalsNoCase(engine.EngineType, "FFA"))) {
        engine.CategoryData = m_categories.getEngineCategoryData(kSharedFFA);
    } else if (equalsNoCase(rule, "G")) {
        engine.CategoryData = m_categories.getEngineCategoryData(kSharedGeneral);
    } else if (equalsNoCase(rule, "Y") || equalsNoCase(rule, "C")) {
        if (engine.name.data() != m_name.data()) {
            m_ownData = m_categories.getEngineCategoryData(engine.name);
            m_name = engine.name;
        }
        engine.CategoryData = m_ownData;
    }
}

bool missesCategoryData(const clsEngines& engine) noexcept {
    return engine.CategoryData.empty() && !equalsNoCase(engine.Category, "N");
}

bool isAdultOnly(const clsEngines& engine) noexcept {
    return engine.AdultOnlySites == "Y";
}

}  // namespace relay

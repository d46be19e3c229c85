// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace relay {

// One engine: a plain record. The texts are views into storage that the EngineCollection keeps for as long as
// its records live (the catalogue file itself and the category tables), so a hundred thousand records stay
// small.
struct clsEngines final {
    std::string_view name;  // key in the collection, in the lists and in selection files
    std::string_view Home;
    std::string_view AddURL;
    std::string_view Country;  // two letters, upper case
    std::string_view CountryOnly;
    std::string_view EngineType;    // ENG, DIR, FFA, NEWS, MALL, HOT, MIS, or other text as it stood
    std::string_view Category;      // category rule, as written: F, G, Y, C, N
    std::string_view CategoryData;  // label=value entries, each ended by ">"
    std::string_view Method;
    std::string_view Action;
    std::string_view Query;           // template with macros in angle brackets
    std::string_view AdultOnlySites;  // "Y", "N" or empty
    std::string_view Adults;
    std::string_view WebType;  // no key of the file fills it
    std::string_view Language;
    std::int32_t MaxTitle = 0;
    std::int32_t MaxKeywords = 0;
    std::int32_t MaxDescriptions = 0;
    std::int16_t SiteLevel = 0;  // 1: a major site
    bool Selected = false;       // stands in the selected list; never in the file
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace relay {

// What limits a ranking: pages or links per engine. The numbers are those of the profile's key Type.
enum class RankLimit { Pages = 0, Links = 1 };

// The fields of the screen that a run, an analysis and a report need.
struct RankingSetup final {
    std::string profile;
    std::vector<std::string> sites;  // without a scheme, in the order of the list
    std::string keywords;            // as typed
    RankLimit limit = RankLimit::Pages;
    std::string pageLinks;  // the number of pages or links, as typed

    // The number in pageLinks; 0 when it has none. Throws Failure "Overflow" beyond 16 bits.
    std::int16_t number() const;
    // The pages to fetch per engine: number() for pages, and for links the number that the first character
    // alone makes ("30" and "300" are 3 pages, "100" is 1).
    std::int16_t pagesOfRun() const;
};

// A row of the engine list: its check mark and the columns "Pages", "Position" and "Status".
struct RankRow final {
    bool checked = false;
    std::string pages;
    std::string position;
    std::string status;
};

}  // namespace relay

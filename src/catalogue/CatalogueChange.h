// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace relay {

// The texts of a krveng5.dat and its catkws.dat; empty for a missing file.
struct EngineDataTexts final {
    std::string engines;
    std::string categories;
};

// What distinguishes one catalogue from an earlier one, by the engines' names in file order. A changed engine
// has the same name without regard to case, and another value in one of its fields, its own category table
// included.
struct CatalogueChange final {
    std::vector<std::string> added;
    std::vector<std::string> removed;
    std::vector<std::string> changed;

    bool empty() const noexcept { return added.empty() && removed.empty() && changed.empty(); }
    // "Engines added: 2, removed: 0, changed: 1."
    std::string counts() const;
    // The counts, then the names of each kind on lines of their own, at most `mostNames` of a kind.
    std::string report(std::size_t mostNames = 500) const;
};

// Engines for adult sites only are left out on both sides where they are refused.
CatalogueChange compareCatalogues(EngineDataTexts before, EngineDataTexts after, bool refusesAdultSites);

}  // namespace relay

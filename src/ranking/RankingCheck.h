// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// What can be wrong with the ranking catalogue.
enum class RankFindingKind : std::uint8_t {
    NoEngines,       // no section Engines, or nothing under 1
    Gap,             // a number of a list is empty or missing; what comes after it is never read
    Duplicate,       // a section or key that is there already; only the first one counts
    MissingSection,  // a listed engine has no section
    NotListed,       // a section that no list names
    EmptyMarker,     // a marker that must not be empty
    NestedMarker,    // one marker contains the other, so one of them hides the other
    UnknownKey,
    BadNumber,   // Start or PerPage is no number or too large
    BadAddress,  // EngineURL is no web address, or one that the chosen LinkType cannot follow
    CutValue,    // longer than what is read
};

struct RankFinding final {
    std::size_t line = 0;  // counted from 1
    std::string record;    // the section
    RankFindingKind kind{};
    std::string text;
};

// "gap", "missing section" and so on.
std::string_view rankFindingName(RankFindingKind kind) noexcept;

// Reads a ranking catalogue as its readers do and returns its faults, in line order; bounded in number.
std::vector<RankFinding> checkRankingCatalogue(std::string_view text);

}  // namespace relay

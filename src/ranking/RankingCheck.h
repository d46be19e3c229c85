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
    NoEngines,       // nothing is listed
    Gap,             // a number is missing from a list; what comes after it is never read
    Duplicate,       // an earlier section, key or list entry has this name
    MissingSection,  // a listed engine has no section
    NotListed,       // a section that no list names, or a first choice that is not offered
    EmptyMarker,     // a marker without which no result is read
    NestedMarker,    // a marker inside another one, so that one of them has no effect, or too much
    UnknownKey,
    BadNumber,
    BadAddress,   // no web address, or one that cannot be followed from page to page
    CutValue,     // longer than what is read
    SharedFiles,  // two engines whose saved pages can have the same name
};

// One fault in the ranking catalogue.
struct RankFinding final {
    std::size_t line = 0;  // counted from 1
    std::string record;    // the section
    RankFindingKind kind{};
    std::string text;  // message with the faulty text
};

// The name of the kind in lists: "gap", "missing section" and so on.
std::string_view rankFindingName(RankFindingKind kind) noexcept;

// Reads a ranking catalogue as its readers do and returns its faults, in line order. Each kind is reported a
// thousand times at most; one finding at the end counts the rest. Nothing is loaded.
std::vector<RankFinding> checkRankingCatalogue(std::string_view text);

}  // namespace relay

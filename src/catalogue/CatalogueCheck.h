// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class EngineCategories;

// What can be wrong with an engine file.
enum class FindingKind : std::uint8_t {
    NoName,               // keys outside a record, or a record with an empty name
    Duplicate,            // an earlier record has this name; this one is not loaded
    NoAction,             // nowhere to send a submission
    ActionWithoutScheme,  // neither http:// nor https://
    NoQuery,              // nothing to send
    QueryWithoutMacro,    // such a template expands to nothing, and the engine is refused
    UnknownMacro,         // its name is sent
    BrokenMacro,          // "<" without ">", or "<>": expansion stops there
    MissingTable,         // the category rule needs a table that is not in the category file
    UnknownType,          // counts as miscellaneous
    UnknownKey,
    CutValue,    // a comma ended the value; the text after it is lost
    BadCountry,  // not two letters
    BadMethod,   // neither GET nor POST
    NotForGet,   // characters that a URL does not carry unchanged
};

// One fault in the engine file.
struct Finding final {
    std::size_t line = 0;  // counted from 1
    std::string record;    // the engine's name, perhaps cut; empty before the first record
    FindingKind kind{};
    std::string text;  // message with the faulty text
};

// The name of the kind in lists: "duplicate", "no action" and so on.
std::string_view findingName(FindingKind kind) noexcept;

// Reads an engine file as the loader does and returns its faults, in line order. Each kind is reported a
// thousand times at most; one finding at the end counts the rest and has the line of the first of them.
// Nothing is loaded.
std::vector<Finding> checkCatalogue(std::string_view text, const EngineCategories& categories,
                                    bool refusesAdultSites);

}  // namespace relay

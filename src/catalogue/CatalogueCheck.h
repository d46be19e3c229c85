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
    NoName,               // keys that belong to no record, or a record whose name is empty
    Duplicate,            // an earlier record has the name; this one is not loaded
    NoAction,             // nowhere to send a submission
    ActionWithoutScheme,  // neither http:// nor https://
    NoQuery,              // nothing to send
    QueryWithoutMacro,    // such a template expands to nothing, and the engine is refused
    UnknownMacro,         // stands for itself
    BrokenMacro,          // "<" without ">", or "<>": expanding stops there
    MissingTable,         // the category rule asks for a table that is not in the category file
    UnknownType,          // counts as miscellaneous
    UnknownKey,
    CutValue,    // a comma ended the value, and text behind it is lost to it
    BadCountry,  // no two letters
    BadMethod,   // neither GET nor POST
    NotForGet,   // bytes that do not reach the engine as they stand when they go in a URL
};

// One thing wrong with the engine file, and where it stands.
struct Finding final {
    std::size_t line = 0;  // counted from 1
    std::string record;    // the engine's name, or its beginning; empty in front of the first record
    FindingKind kind{};
    std::string text;  // for a person, with the words at fault
};

// "duplicate", "no action" and so on: the kind's name in lists.
std::string_view findingName(FindingKind kind) noexcept;

// Reads an engine file by the loader's own rules and tells, in the order of the lines, all that a person who
// writes records would want to know. Of one kind it tells a thousand findings; the rest are one finding more,
// at the end, with their number and the line of the first of them. Nothing is loaded.
std::vector<Finding> checkCatalogue(std::string_view text, const EngineCategories& categories,
                                    bool refusesAdultSites);

}  // namespace relay

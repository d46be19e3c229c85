// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace relay {

// The meaning of a name in angle brackets in a Query template. The values come from
// submission/SubmissionData.
enum class Macro : std::uint8_t {
    Title,
    Keyword,
    Description,
    URL,
    Category,
    CustomCategory,
    SpaceID,
    Name,
    FirstName,
    LastName,
    Email,
    Company,
    Address,
    City,
    Postcode,
    State,
    Country,
    CountryCode,
    Phone,
    Fax,
    Language,
    WebType,
    Password,
    EntryBy,
    EntryURL,
};
inline constexpr auto kMacroCount = static_cast<std::size_t>(Macro::EntryURL) + 1;

// Compares without regard to case; nothing for an unknown name, which expands to itself.
std::optional<Macro> macroOf(std::string_view name) noexcept;

}  // namespace relay

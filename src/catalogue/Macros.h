// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace relay {

// What a name in angle brackets stands for in a Query template. The values come from
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

// Without regard to case; nothing for a name that is no macro and stands for itself.
std::optional<Macro> macroOf(std::string_view name) noexcept;

}  // namespace relay

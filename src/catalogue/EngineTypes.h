// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Text.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace relay {

// A kind of engine: its code in the catalogue, the caption of its check box (the count and ")" follow) and
// the icon of its rows. Online malls have no icon of their own.
struct EngineTypeRow final {
    std::string_view code;
    std::string_view caption;
    std::string_view icon;
};

// By the index of the check box.
inline constexpr std::array<EngineTypeRow, 7> EngineTypes{{
    {"ENG", "&General Engines(", "ENG"},
    {"DIR", "&Directories(", "DIR"},
    {"FFA", "&FFA Links(", "FFA"},
    {"NEWS", "&News/Classifieds(", "NEWS"},
    {"MALL", "&Online Mall(", "MIS"},
    {"HOT", "&Hot Sites(", "HOT"},
    {"MIS", "&Miscellaneous(", "MIS"},
}};

// Index of the code in EngineTypes; any other text counts as miscellaneous, the last one.
inline std::size_t engineTypeIndex(std::string_view type) noexcept {
    std::size_t index = 0;
    while (index + 1 < EngineTypes.size() && !equalsNoCase(type, EngineTypes[index].code)) ++index;
    return index;
}

}  // namespace relay

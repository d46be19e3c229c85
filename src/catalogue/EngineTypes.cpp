// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineTypes.h"

#include "core/Text.h"

namespace relay {

std::size_t engineTypeIndex(std::string_view type) noexcept {
    std::size_t index = 0;
    while (index + 1 < EngineTypes.size() && !equalsNoCase(type, EngineTypes[index].code)) ++index;
    return index;
}

}  // namespace relay

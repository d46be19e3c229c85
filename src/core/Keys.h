// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Text.h"

#include <cstddef>
#include <string_view>

namespace relay {

// Hash and equality of keys without regard to case; looking up a view needs no copy.
struct KeyHash final {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const noexcept;
};
struct KeyEqual final {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept { return equalsNoCase(a, b); }
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Text.h"

#include <cstddef>
#include <string_view>

namespace relay {

// Hash and equality of keys without regard to case, for look-up by view without a copy.
struct KeyHash final {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const noexcept;
};
struct KeyEqual final {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept { return equalsNoCase(a, b); }
};

}  // namespace relay

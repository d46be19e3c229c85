// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Keys.h"

#include <cstdint>

namespace relay {

std::size_t KeyHash::operator()(std::string_view key) const noexcept {
    std::uint64_t hash = 14695981039346656037u;
    for (const char c : key) {
        const unsigned byte = static_cast<unsigned char>(c);
        hash ^= byte - 'A' < 26u ? byte + ('a' - 'A') : byte;
        hash *= 1099511628211u;
    }
    return hash ^ hash >> 29;
}

}  // namespace relay

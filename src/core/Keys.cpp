// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Keys.h"

#include <cstdint>
#include <cstring>

namespace relay {

// Hashes eight bytes at a time. Setting the case bit of every byte also makes a few other bytes equal, which
// a hash may do.
std::size_t KeyHash::operator()(std::string_view key) const noexcept {
    constexpr std::uint64_t kCaseBits = 0x2020202020202020u;
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15u;
    std::uint64_t hash = key.size() * kFactor;
    const auto mix = [&hash](std::uint64_t word) {
        hash = (hash ^ (word | kCaseBits)) * kFactor;
        hash ^= hash >> 32;
    };
    std::uint64_t word = 0;
    for (; key.size() >= sizeof word; key.remove_prefix(sizeof word)) {
        std::memcpy(&word, key.data(), sizeof word);
        mix(word);
    }
    word = 0;
    for (const char c : key) word = word << 8 | static_cast<unsigned char>(c);
    mix(word);
    return hash;
}

}  // namespace relay

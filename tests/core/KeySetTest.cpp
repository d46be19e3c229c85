// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/KeySet.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace relay::test {

namespace {

// Random additions, compared with a plain list.
TEST(KeySet, agreesWithAList) {
    std::mt19937 random(20020401);
    std::vector<std::string> keys;
    std::vector<std::uint32_t> places(1500, KeySet::kNone);
    KeySet set;
    const auto keyOf = [&](std::uint32_t place) -> std::string_view { return keys[place]; };
    for (int step = 0; step < 6000; ++step) {
        const std::size_t number = random() % places.size();
        const std::string key = "Engine No. " + std::to_string(number);
        ASSERT_EQ(set.find(toUpper(key), keyOf), places[number]);
        const auto place = static_cast<std::uint32_t>(keys.size());
        ASSERT_EQ(set.insert(place, step % 2 == 0 ? key : toUpper(key), keyOf),
                  places[number] == KeySet::kNone);
        if (places[number] != KeySet::kNone) continue;
        places[number] = place;
        keys.push_back(key);
        ASSERT_EQ(set.size(), keys.size());
    }
    set.clear();
    EXPECT_EQ(set.find(keys.front(), keyOf), KeySet::kNone);
}

// Bytes that differ from a letter only in the case bit have its hash, but are not equal.
TEST(KeySet, distinguishesSignsFromLetters) {
    const std::string_view keys[] = {"a@", "a`"};
    const auto keyOf = [&](std::uint32_t place) { return keys[place]; };
    KeySet set;
    EXPECT_EQ(set.find("a@", keyOf), KeySet::kNone);
    EXPECT_TRUE(set.insert(0, keys[0], keyOf));
    EXPECT_TRUE(set.insert(1, keys[1], keyOf));
    EXPECT_EQ(set.find("A@", keyOf), 0U);
    EXPECT_EQ(set.find("A`", keyOf), 1U);
}

}  // namespace

}  // namespace relay::test

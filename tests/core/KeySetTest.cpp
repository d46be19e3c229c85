// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/KeySet.h"

#include <deque>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>

namespace relay::test {

namespace {

struct Item final {
    std::string key;
};
struct KeyOf final {
    std::string_view operator()(const Item& item) const noexcept { return item.key; }
};

// A long row of random additions and removals, beside a map that cannot be wrong. Few different keys make
// full neighbourhoods, in which removal has the most to move.
TEST(KeySet, agreesWithAMap) {
    std::mt19937 random(20020401);
    std::deque<Item> items;
    std::map<std::string, Item*> expected;
    KeySet<Item, KeyOf> set;
    for (int step = 0; step < 60000; ++step) {
        std::string key = "Engine No. " + std::to_string(random() % 1500);
        const auto known = expected.find(key);
        if (random() % 20 < (step / 10000 % 2 == 0 ? 13u : 7u)) {
            items.push_back({step % 2 == 0 ? key : toUpper(key)});
            const bool added = set.insert(&items.back());
            ASSERT_EQ(added, known == expected.end());
            if (added) expected.emplace(key, &items.back());
        } else if (known != expected.end()) {
            set.erase(known->second);
            expected.erase(known);
        }
        ASSERT_EQ(set.size(), expected.size());
        key = "ENGINE no. " + std::to_string(random() % 1500);
        const auto wanted = expected.find("Engine No. " + key.substr(11));
        ASSERT_EQ(set.find(key), wanted == expected.end() ? nullptr : wanted->second);
    }
    ASSERT_GT(expected.size(), 100u);
    for (const auto& [key, item] : expected) ASSERT_EQ(set.find(key), item);
}

// The bytes that differ from a letter by its case bit alone hash like it, and are not it.
TEST(KeySet, tellsSignsFromLetters) {
    Item at{"a@"};
    Item tick{"a`"};
    KeySet<Item, KeyOf> set;
    EXPECT_EQ(set.find("a@"), nullptr);
    set.erase(&at);
    EXPECT_TRUE(set.insert(&at));
    EXPECT_TRUE(set.insert(&tick));
    EXPECT_EQ(set.find("A@"), &at);
    EXPECT_EQ(set.find("A`"), &tick);
}

}  // namespace

}  // namespace relay::test

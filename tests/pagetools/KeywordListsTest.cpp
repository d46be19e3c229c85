// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/Text.h"
#include "pagetools/KeywordLists.h"
#include "support/CaseTable.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

std::string counted(const std::string& text, std::size_t fewest, std::size_t most) {
    std::string all;
    for (const CountedWords& one : countWords(text, fewest, most))
        all += (all.empty() ? "" : ", ") + one.words + " " + std::to_string(one.count);
    return all;
}

}  // namespace

TEST(KeywordListsTest, FollowTheirTable) {
    using Inputs = std::vector<std::string>;
    playCases(TEST_FOLDER "/cases/keywords.txt",
              {{"keywordsOf", [](const Inputs& in) { return joined(keywordsOf(in[0])); }},
               {"withoutDuplicates", [](const Inputs& in) { return joined(withoutDuplicates(in)); }},
               {"combineKeywords",
                [](const Inputs& in) {
                    std::vector<std::vector<std::string>> lists;
                    for (const std::string& list : in) lists.push_back(keywordsOf(list));
                    return joined(combineKeywords(lists));
                }},
               {"countWords",
                [](const Inputs& in) { return counted(in[0], std::stoul(in[1]), std::stoul(in[2])); }},
               {"countedText", [](const Inputs& in) { return countedText(in[0]).text; }},
               {"joinedKeywords",
                [](const Inputs& in) { return joinedKeywords(keywordsOf(in[0]), std::stoul(in[1])); }}});
}

TEST(KeywordListsTest, RefusesACombinationWithoutEnd) {
    const std::vector<std::string> list = {std::string(1, 'a'), "b"};
    std::vector<std::vector<std::string>> lists(30, list);
    EXPECT_THROW(combineKeywords(lists), Failure);
    std::vector<std::string> numbers;
    for (int i = 0; i < 300; ++i) numbers.push_back(std::to_string(i));
    EXPECT_THROW(combineKeywords({{std::string(1'000'000, 'a')}, numbers}), Failure);
    EXPECT_EQ(combineKeywords({keywordsOf("a"), {}}).size(), 0U);
}

}  // namespace relay::test

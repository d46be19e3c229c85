// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/Text.h"
#include "pagetools/MetaTags.h"
#include "pagetools/PageDiff.h"
#include "support/GoldenCases.h"

#include <gtest/gtest.h>
#include <random>

namespace relay::test {

namespace {

// The text after the diff is applied, as "patch" does it; empty lines of context that do not fit fail.
std::string patched(std::string_view before, const std::vector<DiffHunk>& hunks) {
    std::string after;
    std::size_t at = 0;
    std::size_t line = 1;
    for (const DiffHunk& hunk : hunks) {
        const std::size_t start = hunk.beforeLine + (hunk.beforeCount == 0 ? 1 : 0);
        for (; line < start; ++line) {
            const std::size_t next = before.find('\n', at) + 1;
            after += before.substr(at, next - at);
            at = next;
        }
        for (const DiffLine& row : hunk.lines) {
            if (row.sign != '-') after += row.text;
            if (row.sign == '+') continue;
            EXPECT_TRUE(before.substr(at).starts_with(row.text));
            at += row.text.size();
            ++line;
        }
    }
    return after.append(before.substr(at));
}

std::string applied(std::string_view before, std::string_view after) {
    return patched(before, diffTexts(before, after));
}

}  // namespace

TEST(PageDiffTest, GivesTheChangedTextWhenApplied) {
    const MetaTags tags{"Lantern Bicycle Repairs", "bicycles", "Mends bicycles"};
    for (const std::string& name : goldenCases(TEST_FOLDER "/golden")) {
        SCOPED_TRACE(name);
        const std::string before = readFile(TEST_FOLDER "/golden/" + name + "/before.html");
        for (const auto way : {MetaTagChange::Way::Insert, MetaTagChange::Way::Replace}) {
            const std::string after = changedPage(before, {tags, way, true});
            EXPECT_EQ(applied(before, after), after);
            EXPECT_EQ(applied(after, before), before);
        }
    }
    std::mt19937 random(7);
    const auto text = [&random](std::size_t lines) {
        std::string made;
        for (std::size_t i = 0; i < lines; ++i)
            made += std::string(1, static_cast<char>('a' + random() % 3)) + "\n";
        return random() % 2 == 0 ? made : made + "end";
    };
    for (int i = 0; i < 500; ++i) {
        const std::string before = text(random() % 30);
        const std::string after = text(random() % 30) + (random() % 2 == 0 ? "\r\n" : "");
        ASSERT_EQ(applied(before, after), after) << before << "--\n" << after;
    }
}

TEST(PageDiffTest, WritesUnifiedDiffsAndMarksTheTouchedBytes) {
    std::string before = "<html>\r\n<head>\r\n<title>Old</title>\r\n</head>\r\n";
    for (int i = 0; i < 9; ++i) before += std::to_string(i) + "\n";
    const std::string after = replaceAll(before, "Old", "New shop") + "\r\n";
    const std::vector<DiffHunk> hunks = diffTexts(before, after);
    EXPECT_EQ(
        unifiedDiff("a\nb.html", hunks),
        "--- a\\x0Ab.html\n+++ a\\x0Ab.html\n@@ -1,6 +1,6 @@\n <html>\r\n <head>\r\n-<title>Old</title>\r\n"
        "+<title>New shop</title>\r\n </head>\r\n 0\n 1\n@@ -11,3 +11,4 @@\n 6\n 7\n 8\n+\r\n");
    EXPECT_EQ(hunks.at(0).lines.at(2).touched(), "Old");
    EXPECT_EQ(hunks.at(0).lines.at(3).touched(), "New shop");
    EXPECT_EQ(hunks.at(1).lines.at(3).touched(), "\r\n");
    // Lines that are alike are compared with each other also where there are more of them on one side.
    const DiffHunk uneven = diffTexts("<head>\n<title>Old\nshop</title>\n<meta a=\"k\">\n<p>",
                                      "<head>\n<title>Old town</title>\n<meta a=\"keys\">\n<p>")
                                .at(0);
    std::string touched;
    for (const DiffLine& line : uneven.lines)
        if (line.sign != ' ') touched.append(1, line.sign).append(line.touched()).append("|");
    EXPECT_EQ(touched, "-|-shop</title>\n|-|+ town</title>|+eys|");
    EXPECT_EQ(unifiedDiff("x", diffTexts("", "\r\n")), "--- x\n+++ x\n@@ -0,0 +1,1 @@\n+\r\n");
    EXPECT_EQ(unifiedDiff("x", diffTexts("a", "a\r\n")),
              "--- x\n+++ x\n@@ -1,1 +1,1 @@\n-a\n\\ No newline at end of file\n+a\r\n");
    EXPECT_EQ(unifiedDiff("x", diffTexts(before, before)), "");
}

TEST(PageDiffTest, StaysSmallForALargePage) {
    std::string before = "<html>\n<head>\n</head>\n";
    for (int i = 0; i < 300000; ++i) before += "line\n";
    const std::string after = replaceAll(before, "<head>", "<head><title>x</title>") + "\r\n";
    const std::vector<DiffHunk> hunks = diffTexts(before, after);
    ASSERT_EQ(hunks.size(), 2u);
    EXPECT_EQ(hunks.at(1).lines.size(), 4u);
    EXPECT_EQ(hunks.at(1).beforeLine, 300001u);
    // Too many differences to compare line by line.
    std::string other;
    for (int i = 0; i < 20000; ++i) other += std::to_string(i) + "\n";
    EXPECT_EQ(applied(before, other), other);
}

}  // namespace relay::test

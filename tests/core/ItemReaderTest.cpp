// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ItemReader.h"

#include <gtest/gtest.h>
#include <string>

namespace relay::test {
namespace {

// Each item in brackets, after its line number and before a comma if one closed it.
std::string walk(std::string_view text) {
    std::string seen;
    ItemReader reader(text);
    for (std::string_view item; reader.next(item);) {
        EXPECT_EQ(text.substr(reader.offset(), item.size()), item);
        seen += std::to_string(reader.line()) + "[" + std::string(item) + "]" +
                (reader.closedByComma() ? "," : "");
    }
    return seen;
}

TEST(ItemReader, SplitsAtLineEndsAndCommas) {
    const struct {
        const char *text, *items;
    } cases[] = {
        {"", ""},
        {"a", "1[a]"},
        {"a\n", "1[a]"},
        {"a\r\nb\rc\nd", "1[a]2[b]3[c]4[d]"},
        {"a,b\r\n,c", "1[a],1[b]2[],2[c]"},
        {"\r\n\r\n", "1[]2[]"},
        {"a,", "1[a],"},
        {"   a b  \n\tc", "1[a b  ]2[\tc]"},
        {"  \"x,y\r\nz\" dropped, next", "1[x,y\r\nz],2[next]"},
        {"Query=\"a,b\"", "1[Query=\"a],1[b\"]"},
        {"\"never closed, b\nc", "1[never closed, b\nc]"},
        {"\"\"x\na", "1[]2[a]"},
        {"\"", "1[]"},
        {"a\n   ", "1[a]2[]"},
        {"\n\r", "1[]2[]"},
    };
    for (const auto& each : cases) EXPECT_EQ(walk(each.text), each.items) << each.text;
    EXPECT_EQ(walk(std::string_view("a\0b,c", 5)), std::string("1[a\0b],1[c]", 11));
}

// Long items are read sixteen bytes at a time: a delimiter is found at every position.
TEST(ItemReader, FindsADelimiterAnywhere) {
    for (const char* delimiter : {",", "\r", "\n", "\r\n"}) {
        for (std::size_t before = 1; before < 40; ++before) {
            const std::string first(before, 'x');
            const std::string second(50 - before, '-');
            const bool comma = *delimiter == ',';
            EXPECT_EQ(walk(first + delimiter + second),
                      "1[" + first + (comma ? "],1[" : "]2[") + second + "]");
        }
    }
}

}  // namespace
}  // namespace relay::test

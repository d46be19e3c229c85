// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"
#include "core/Url.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

namespace relay::test {
namespace {

struct Case final {
    std::string from;
    std::string to;
};

TEST(Url, EncodesValues) {
    for (const Case& each :
         {Case{"a b", "a+b"}, Case{"\"'", "%27%27"}, Case{"a@b.c_d-e*", "a@b.c_d-e*"},
          Case{"~!#$%^&()={}|[]\\:+;<>?,/`",
               "%7E%21%23%24%25%5E%26%28%29%3D%7B%7D%7C%5B%5D%5C%3A%2B%3B%3C%3E%3F%2C%2F%60"},
          Case{"\xE9\xFF\x80", "\xE9\xFF\x80"}, Case{"\r\n\t", "\r\n\t"}, Case{"", ""}})
        EXPECT_EQ(EncodeURLValue(each.from), each.to) << each.from;
}

TEST(Url, DecodesEscapes) {
    for (const Case& each :
         {Case{"a%20b", "ab"}, Case{"100%25", "100"}, Case{"%25", ""}, Case{"a+b", "a+b"},
          Case{"%7e%7E", "~~"}, Case{"%2525", ""}, Case{"%252E", "."}, Case{"x%", "x"}, Case{"x%4", "x"},
          Case{"%%2E", "E"}, Case{"%E9%2f", "/"}, Case{"%2\x00x", ""}, Case{"50%25off", "50f"}})
        EXPECT_EQ(EncodeString(each.from), each.to) << each.from;
}

// The definition, directly: round after round over the whole text.
std::string decodeInRounds(std::string text) {
    static const std::map<std::string, char> kTable = [] {
        std::map<std::string, char> table{{"%2E", '.'}, {"%2D", '-'}, {"%5F", '_'}};
        for (const char c : std::string("~!#$%^&,()+`={}|[/]\\:';<>?"))
            table[EncodeURLValue(std::string(1, c))] = c;
        return table;
    }();
    for (std::size_t at = text.find('%'); at != npos; at = text.find('%')) {
        const std::string escape = text.substr(at, 3);
        const auto known = kTable.find(toUpper(escape));
        const std::string with = known == kTable.end() ? "" : std::string(1, known->second);
        std::string next;
        for (std::size_t i = 0; i < text.size();) {
            if (equalsNoCase(std::string_view(text).substr(i, escape.size()), escape)) {
                next += with;
                i += escape.size();
            } else {
                next += text[i++];
            }
        }
        text = next;
    }
    return text;
}

TEST(Url, DecodesLikeRoundsOverTheWholeText) {
    constexpr std::string_view kAlphabet = "%%%%%22557eEFfx";
    std::mt19937 random(7);
    for (int round = 0; round < 40000; ++round) {
        std::string text(random() % 40, ' ');
        for (char& c : text) c = kAlphabet[random() % kAlphabet.size()];
        ASSERT_EQ(EncodeString(text), decodeInRounds(text)) << text;
    }
}

TEST(Url, DecodesHostileTextsInReasonableTime) {
    std::string nested = "%";
    for (int i = 0; i < 1000000; ++i) nested += "25";
    EXPECT_EQ(EncodeString(nested + "2E"), ".");
    std::string distinct(1000000, 'a');
    for (int i = 0; i < 65536; ++i)
        distinct.append({'%', static_cast<char>(i >> 8), static_cast<char>(i & 255)});
    EXPECT_EQ(EncodeString(distinct).substr(0, 1000000), std::string(1000000, 'a'));
}

TEST(Url, SplitsUrls) {
    const struct {
        const char *url, *host, *path, *directory, *file;
    } cases[] = {
        {"http://a.test/c/d.html", "a.test", "c/d.html", "a.test/c", "a.test_c_d"},
        {"http://a.test/c/d", "a.test", "c/d", "a.test/c/d", "a.test_c_d"},
        {"http://a.test/c?x=1", "a.test", "c?x=1", "a.test", "a.test_c_x=1"},
        {"a.test", "a.test", "", "a.test", "a.test"},
        {"", "", "", "", ""},
        {"http://a.test/", "a.test", "", "a.test", "a.test_"},
        {"http://a.test?x=1", "a.test?x=1", "", "a.test.", "a.test_x=1"},
        {"http://a.test/b/c.html?x", "a.test", "b/c.html?x", "a.test/b", "a.test_b_c"},
        {"http://u:p@a.test:80/x//y/", "u:p@a.test:80", "x//y/", "u:p@a.test:80/x//y", "u_p@a.test_80_x__y_"},
        {".htm-", ".htm-", "", ".htm-", ".htm"},
        {"c:\\site\\*.HTML", "c:\\site\\*.HTML", "", "c:\\site\\*.HTML", "c__site__"},
        {"../../etc", "..", "../etc", "../../etc", ".._.._etc"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(GetURLHost(each.url), each.host) << each.url;
        EXPECT_EQ(GetURLPath(each.url), each.path) << each.url;
        EXPECT_EQ(GetURLDirectory(each.url), each.directory) << each.url;
        EXPECT_EQ(URLToFileName(each.url), each.file) << each.url;
    }
}

TEST(Url, KnowsLocalFilesByHowTheyAreTyped) {
    const auto environment = [](const char* name) -> std::optional<std::string> {
        return name == std::string_view("HOME") ? std::optional("/home/me") : std::nullopt;
    };
    const struct {
        const char *text, *inField, *onCommandLine;  // null: a web address
    } cases[] = {
        {"/a/b.html", "/a/b.html", "/a/b.html"},
        {"~/b.html", "/home/me/b.html", "~/b.html"},
        {"www.a.test", nullptr, "www.a.test"},
        {"a/b.html", nullptr, "a/b.html"},
        {"~user/b.html", nullptr, "~user/b.html"},
        {"C:\\b.html", nullptr, "C:\\b.html"},
        {"http://a.test/", nullptr, nullptr},
        {"HTTPS://a.test/", nullptr, nullptr},
        {"httpd.html", nullptr, "httpd.html"},
        {"ftp://a.test/", nullptr, "ftp://a.test/"},
        {"", nullptr, ""},
    };
    for (const auto& each : cases) {
        const auto path = [&each](const char* text) {
            return text == nullptr ? std::nullopt : std::optional<std::string>(text);
        };
        EXPECT_EQ(localPath(each.text, TypedIn::Field, environment), path(each.inField)) << each.text;
        EXPECT_EQ(localPath(each.text, TypedIn::CommandLine, environment), path(each.onCommandLine))
            << each.text;
    }
}

}  // namespace
}  // namespace relay::test

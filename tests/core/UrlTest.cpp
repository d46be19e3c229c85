// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ReportFiles.h"
#include "core/Text.h"
#include "core/Url.h"
#include "support/CaseTable.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

namespace relay::test {
namespace {

using Inputs = std::vector<std::string>;

std::string localOrWeb(const std::string& text, TypedIn where) {
    return localPath(text, where,
                     [](const char* name) {
                         return std::optional(name == std::string_view("HOME") ? "/home/me" : "");
                     })
        .value_or("a web address");
}

TEST(Url, FollowsItsTable) {
    playCases(TEST_FOLDER "/cases/url.txt",
              {{"localPath in a field", [](const Inputs& in) { return localOrWeb(in[0], TypedIn::Field); }},
               {"localPath on the command line",
                [](const Inputs& in) { return localOrWeb(in[0], TypedIn::CommandLine); }},
               {"EncodeURLValue", [](const Inputs& in) { return EncodeURLValue(in[0]); }},
               {"EncodeString", [](const Inputs& in) { return EncodeString(in[0]); }},
               {"GetURLHost", [](const Inputs& in) { return GetURLHost(in[0]); }},
               {"GetURLPath", [](const Inputs& in) { return GetURLPath(in[0]); }},
               {"GetURLDirectory", [](const Inputs& in) { return GetURLDirectory(in[0]); }},
               {"URLToFileName", [](const Inputs& in) { return URLToFileName(in[0]); }}});
}

TEST(Url, MakesAFileNameOfAnyTitle) {
    playCases(
        TEST_FOLDER "/cases/report-names.txt",
        {{"reportFileName", [](const Inputs& in) { return reportFileName(in[0], test::FixedClock().now()); }},
         {"distinctFileName", [](const Inputs& in) { return distinctFileName(in[0]); }}});
}

// The rule as it is written: round after round over the whole text.
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

}  // namespace
}  // namespace relay::test

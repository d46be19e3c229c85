// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <random>

namespace relay::test {
namespace {

using namespace std::literals;

std::size_t findByTheBook(std::string_view hay, std::string_view needle, std::size_t from) {
    if (from > hay.size()) return npos;
    const std::string text = toLower(hay);
    return text.find(toLower(needle), from);
}

// Exactly as large as the text, so that the sanitizer finds every read outside it.
struct Exact final {
    explicit Exact(std::string_view text) : bytes(new char[text.size()]), size(text.size()) {
        std::memcpy(bytes.get(), text.data(), size);
    }
    std::string_view view() const { return {bytes.get(), size}; }
    std::unique_ptr<char[]> bytes;
    std::size_t size;
};

void expectFound(std::string_view hayText, std::string_view needleText, std::size_t from) {
    const Exact hay(hayText);
    const Exact needle(needleText);
    const std::size_t expected = findByTheBook(hayText, needleText, from);
    ASSERT_EQ(findNoCase(hay.view(), needle.view(), from), expected)
        << "'" << needleText << "' in '" << hayText << "' from " << from;
    ASSERT_EQ(findNoCasePortable(hay.view(), needle.view(), from), expected)
        << "'" << needleText << "' in '" << hayText << "' from " << from;
}

TEST(Search, AgreesWithAPlainSearchOnRandomTexts) {
    // Includes characters that differ from letters only in bit 5, and accented letters.
    constexpr std::string_view kAlphabet = "aAbBzZ@`[{\xC1\xE1\n \0"sv;
    std::mt19937 random(20020401);
    const auto text = [&](std::size_t size, std::size_t variety) {
        std::string result(size, ' ');
        for (char& c : result) c = kAlphabet[random() % variety];
        return result;
    };
    for (int round = 0; round < 60000; ++round) {
        const std::size_t variety = 2 + random() % (kAlphabet.size() - 1);
        const std::string hay = text(random() % 300, variety);
        std::string needle = text(random() % 7, variety);
        if (random() % 2 == 0 && !hay.empty()) {
            const std::size_t at = random() % hay.size();
            needle = hay.substr(at, 1 + random() % 40);
            if (random() % 2 == 0) needle = toUpper(needle);
        }
        expectFound(hay, needle, random() % 3 == 0 ? random() % (hay.size() + 2) : 0);
        if (HasFatalFailure()) return;
    }
}

TEST(Text, ComparesWithoutCaseForLettersOnly) {
    EXPECT_TRUE(equalsNoCase("aZ[\xE1", "Az[\xE1"));
    EXPECT_FALSE(equalsNoCase("@", "`"));
    EXPECT_FALSE(equalsNoCase("\xE1", "\xC1"));
    EXPECT_TRUE(startsWithNoCase("LastReport=1", "lastREPORT"));
    EXPECT_FALSE(startsWithNoCase("La", "Last"));
    EXPECT_TRUE(endsWithNoCase("x.KWS", ".kws"));
    EXPECT_LT(compareNoCase("alpha", "Beta"), 0);
    EXPECT_GT(compareNoCase("alphas", "ALPHA"), 0);
    EXPECT_LT(compareNoCase("z", "\xE1"), 0);
    EXPECT_EQ(compareNoCase("SaMe", "sAmE"), 0);
}

TEST(Text, ReadsLeadingNumbers) {
    const struct {
        const char* text;
        int value;
    } cases[] = {{"30abc", 30}, {"abc", 0},    {"", 0},         {"  7", 7},   {"60.5", 60},
                 {"61.5", 62},  {"-.5x", 0},   {"+4", 4},       {"--4", 0},   {"1e3", 1},
                 {"inf", 0},    {"-nan", 0},   {"3,000", 3},    {"-2.7", -3}, {"\t5", 0},
                 {"0x1F", 0},   {".", 0},      {"5.", 5},       {"- 5", 0},   {"99999999999", 2147483647},
                 {"-9e", -9},   {"00012", 12}, {"0.0000001", 0}};
    for (const auto& each : cases) EXPECT_EQ(leadingInteger(each.text), each.value) << each.text;
    EXPECT_EQ(leadingInteger(std::string(400, '9')), 2147483647);
    EXPECT_EQ(leadingInteger("-" + std::string(400, '9')), -2147483647 - 1);
    EXPECT_DOUBLE_EQ(leadingNumber("0.5 seconds"), 0.5);
    EXPECT_EQ(toInt16(32767.4), 32767);
    EXPECT_THROW(toInt16(32767.5), Failure);
    EXPECT_THROW(toInt16(-32769), Failure);
}

TEST(Text, SplitsTexts) {
    EXPECT_EQ(GetToken("a b", ' ', 3), "");
    EXPECT_EQ(GetToken("a b", ' ', 2), "b");
    EXPECT_EQ(GetToken("a,,c", ',', 2), "");
    EXPECT_EQ(GetToken("a,b,c", ',', 0), "a");
    EXPECT_EQ(CleanLineBreaks("a\r\nb\rc\nd"), "a b c d");
    EXPECT_EQ(CleanLineBreaks("x      y"), "xy");     // six blanks: three, then none
    EXPECT_EQ(CleanLineBreaks("x    y"), "x  y");     // four: two
    EXPECT_EQ(CleanLineBreaks("x\r\n\r\ny"), "x y");  // two breaks: two blanks, then one
    // As five replacements in this order.
    std::mt19937 random(5);
    for (int i = 0; i < 2000; ++i) {
        std::string text;
        for (int length = static_cast<int>(random() % 24); length > 0; --length)
            text += "a  \r\n"[random() % 5];
        std::string line = text;
        for (const auto& [what, with] :
             {std::pair("\r\n", " "), {"\r", " "}, {"\n", " "}, {"  ", " "}, {"   ", ""}})
            line = replaceAll(line, what, with);
        ASSERT_EQ(CleanLineBreaks(text), line) << testing::PrintToString(text);
    }
    EXPECT_EQ(CutAtNull("ab\0cd"s), "ab");
    EXPECT_EQ(replaceAll("aaaa", "aa", "a"), "aa");
    EXPECT_EQ(replaceAll("aAa", "A", ""), "aa");
    EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
    EXPECT_EQ(firstLine("one\rtwo"), "one");
    EXPECT_EQ(trim("  \ta \t  "), "\ta \t");
    EXPECT_EQ(trim("   "), "");
    std::string text = "a|b|c";
    std::string rest = "old";
    SplitAtPipe(text, rest);
    EXPECT_EQ(text + ";" + rest, "a;b|c");
    text = "none";
    SplitAtPipe(text, rest);
    EXPECT_EQ(text + ";" + rest, "none;");
}

TEST(StripHTML, TurnsMarkupIntoLines) {
    const std::string rule(50, '-');
    const struct {
        std::string html;
        std::string plain;
    } cases[] = {
        {"<p>one</p>two", "\r\n\r\none"},
        {"no tag at all", ""},
        {"", ""},
        {"a<b>c</b><unclosed", "ac"},
        {"a<", "a"},
        {"<H1>T</h1>x<br>", "T\r\n\r\nx\r\n"},
        {"<p class=x>a<P\n>b<i>", "\r\n\r\nab"},  // only a blank ends a tag's name
        {"x<br/>y<hr noshade>z<b>", "xy\r\n" + rule + "\r\nz"},
        {"one<br>   two  <br>three   <br>   <b>", "one\r\ntwo  \r\nthree   \r\n"},
        {"  lead<b>", "  lead"},
        {"a\r\n  b\rc\nd<b>", "a\r\nbc\r\nd"},
        {"&amp;<b>", "&amp;"},
        {"<dl>x<dt>", "\r\n\r\nx"},
    };
    for (const auto& each : cases) EXPECT_EQ(StripHTML(each.html), each.plain) << each.html;
}

TEST(StripHTML, PicksItsMarkerAmongTheCharactersLeft) {
    const auto codes = [](int from, int to) {
        std::string text;
        for (int code = from; code <= to; ++code)
            if (code != '<' && code != '>') text += static_cast<char>(code);
        return text;
    };
    // "<" never reaches the result, so there is always a marker.
    EXPECT_EQ(StripHTML(codes(1, 9) + codes(11, 12) + codes(14, 255) + "\n  end<b>"),
              codes(1, 9) + codes(11, 12) + codes(14, 255) + "\r\nend");
    EXPECT_EQ(StripHTML("a\xFF<br>b<b>"), "a\xFF\r\nb");
}

TEST(Base64, PadsALoneByteWithABlank) {
    const struct {
        std::string text;
        std::string encoded;
    } cases[] = {{"", ""},
                 {"a", "YS=="},
                 {"ab", "YWI="},
                 {"abc", "YWJj"},
                 {"user:pass", "dXNlcjpwYXNz"},
                 {"\xFF\xFE\xFD", "//79"},
                 {"\0\0"s, "AAA="}};
    for (const auto& each : cases) EXPECT_EQ(Base64Encode(each.text), each.encoded) << each.text;
    EXPECT_EQ(Base64Encode(std::string(54, 'x')).size(), 72u);
    const std::string longer = Base64Encode(std::string(55, 'x'));
    EXPECT_EQ(longer.size(), 76u);
    EXPECT_EQ(longer.substr(72), "eC==");
}

TEST(Text, EscapesControlCharacters) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain ~ \xC2\xA0 \xE2\x80\x8D caf\xE9 caf\xC3\xA9 \xF0\x9F\x98\x80", ""},
        {"a\tb\r\nc\x1b[2J\x7f", "a\\x09b\\x0D\\x0Ac\\x1B[2J\\x7F"},
        {"\0"s, "\\x00"},
        {"\xC2\x9B"
         "2J\x9B",
         "\\xC2\\x9B2J\\x9B"},
        {"\xE2\x80\xAEtxt.exe\xE2\x81\xA6", "\\xE2\\x80\\xAEtxt.exe\\xE2\\x81\\xA6"},
        {"\xE2\x80\xA8\xD8\x9C", "\\xE2\\x80\\xA8\\xD8\\x9C"},
        {"\xE2\x80", "\xE2\\x80"},  // cut short
    };
    for (const auto& [text, shown] : cases) {
        EXPECT_EQ(escapeControlCharacters(text), shown.empty() ? text : shown);
        EXPECT_EQ(findControlCharacter(text) == npos, shown.empty()) << shown;
    }
}

}  // namespace
}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ItemReader.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "support/CaseTable.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <random>

namespace relay::test {
namespace {

using namespace std::literals;
using Inputs = std::vector<std::string>;

std::string yesOrNo(bool yes) {
    return yes ? "yes" : "no";
}

std::string walkItems(std::string_view text) {
    std::string seen;
    ItemReader reader(text);
    for (std::string_view item; reader.next(item);) {
        EXPECT_EQ(text.substr(reader.offset(), item.size()), item);
        seen += std::to_string(reader.line()) + "[" + std::string(item) + "]" +
                (reader.closedByComma() ? "," : "");
    }
    return seen;
}

std::string order(const Inputs& in) {
    const int compared = compareNoCase(in[0], in[1]);
    return compared < 0 ? "less" : compared > 0 ? "more" : "same";
}

std::string splitAtPipe(const Inputs& in) {
    std::string text = in[0];
    std::string rest = "old";
    SplitAtPipe(text, rest);
    return text + "; " + rest;
}

std::string escapedControls(const Inputs& in) {
    const std::string escaped = escapeControlCharacters(in[0]);
    EXPECT_EQ(findControlCharacter(in[0]) == npos, escaped == in[0]);
    return escaped;
}

std::string screenCodes(const Inputs& in) {
    std::string codes;
    for (const QChar shown : toScreen(in[0]))
        codes += shown.unicode() < 0x80
                     ? std::string(1, static_cast<char>(shown.unicode()))
                     : "<" + QString::number(shown.unicode(), 16).toUpper().toStdString() + ">";
    return codes;
}

TEST(Text, FollowsItsTable) {
    playCases(TEST_FOLDER "/cases/text.txt",
              {{"equalsNoCase", [](const Inputs& in) { return yesOrNo(equalsNoCase(in[0], in[1])); }},
               {"startsWithNoCase", [](const Inputs& in) { return yesOrNo(startsWithNoCase(in[0], in[1])); }},
               {"endsWithNoCase", [](const Inputs& in) { return yesOrNo(endsWithNoCase(in[0], in[1])); }},
               {"compareNoCase", order},
               {"leadingInteger", [](const Inputs& in) { return std::to_string(leadingInteger(in[0])); }},
               {"leadingNumber", [](const Inputs& in) { return std::to_string(leadingNumber(in[0])); }},
               {"toInt16", [](const Inputs& in) { return std::to_string(toInt16(std::stod(in[0]))); }},
               {"GetToken", [](const Inputs& in) { return GetToken(in[0], ',', std::stoi(in[1])); }},
               {"CleanLineBreaks", [](const Inputs& in) { return CleanLineBreaks(in[0]); }},
               {"CutAtNull", [](const Inputs& in) { return CutAtNull(in[0]); }},
               {"replaceAll", [](const Inputs& in) { return replaceAll(in[0], in[1], in[2]); }},
               {"replaceAllNoCase", [](const Inputs& in) { return replaceAllNoCase(in[0], in[1], in[2]); }},
               {"rfindNoCase",
                [](const Inputs& in) {
                    const std::size_t at = rfindNoCase(in[0], in[1]);
                    return at == npos ? "none" : std::to_string(at);
                }},
               {"firstLine", [](const Inputs& in) { return std::string(firstLine(in[0])); }},
               {"trim", [](const Inputs& in) { return std::string(trim(in[0])); }},
               {"SplitAtPipe", splitAtPipe},
               {"StripHTML", [](const Inputs& in) { return StripHTML(in[0]); }},
               {"Base64Encode", [](const Inputs& in) { return Base64Encode(in[0]); }},
               {"escapeControlCharacters", escapedControls},
               {"ItemReader", [](const Inputs& in) { return walkItems(in[0]); }},
               {"toScreen", screenCodes},
               {"toPrintableUtf8", [](const Inputs& in) { return toPrintableUtf8(in[0]); }}});
}

// "<" never reaches the result, so there is always a marker.
TEST(Text, StripHTMLPicksItsMarkerAmongTheCharactersLeft) {
    std::string codes;
    for (int code = 1; code < 256; ++code)
        if ("<>\r\n"sv.find(static_cast<char>(code)) == npos) codes += static_cast<char>(code);
    EXPECT_EQ(StripHTML(codes + "\n  end<b>"), codes + "\r\nend");
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

TEST(Text, TheSearchFindsWhatASearchInLowerCaseFinds) {
    // Characters that differ in bit 5 only stand beside letters, and so do accented letters.
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
            needle = hay.substr(random() % hay.size(), 1 + random() % 40);
            if (random() % 2 == 0) needle = toUpper(needle);
        }
        const std::size_t from = random() % 3 == 0 ? random() % (hay.size() + 2) : 0;
        const std::size_t expected = toLower(hay).find(toLower(needle), from);
        const Exact exactHay(hay);
        const Exact exactNeedle(needle);
        ASSERT_EQ(findNoCase(exactHay.view(), exactNeedle.view(), from), expected) << hay << "|" << needle;
        ASSERT_EQ(findNoCasePortable(exactHay.view(), exactNeedle.view(), from), expected);
    }
}

// Long items are walked in steps of sixteen bytes: a delimiter counts at every place of a step.
TEST(Text, ItemsEndAtADelimiterAnywhere) {
    for (const char* delimiter : {",", "\r", "\n", "\r\n"}) {
        for (std::size_t before = 1; before < 40; ++before) {
            const std::string first(before, 'x');
            const std::string second(50 - before, '-');
            EXPECT_EQ(walkItems(first + delimiter + second),
                      "1[" + first + (*delimiter == ',' ? "],1[" : "]2[") + second + "]");
        }
    }
}

TEST(Text, EveryByteStringComesBackFromTheScreen) {
    std::mt19937 random(11);
    const std::string pieces[] = {"a",        "\xC3\xA9", "\xF0\x9F\x98\x80", "\xED\xA0\xBD\xED\xB8\x80",
                                  "\xE2\x82", "\xF0"};
    for (int round = 0; round < 50000; ++round) {
        std::string bytes;
        for (auto i = random() % 12; i > 0; --i) {
            if (random() % 2 == 0)
                bytes += pieces[random() % std::size(pieces)];
            else
                bytes += static_cast<char>(random());
        }
        ASSERT_EQ(fromScreen(toScreen(bytes)), bytes) << toPrintableUtf8(bytes);
        ASSERT_TRUE(QByteArray::fromStdString(toPrintableUtf8(bytes)).isValidUtf8());
    }
    const QChar loose[] = {QChar(0xD83D), QChar(u'x'), QChar(0xDC00)};
    EXPECT_EQ(fromScreen(QStringView(loose, 3)), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

TEST(Text, CleansLineBreaksLikeFiveReplacementsInTurn) {
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
}

}  // namespace
}  // namespace relay::test

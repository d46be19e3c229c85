// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/IniFile.h"
#include "core/InputHistory.h"
#include "support/TestHome.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace relay::test {
namespace {

TEST(IniFile, ReadsValues) {
    using namespace std::string_literals;
    const struct {
        std::string line;
        std::string value;
    } cases[] = {
        {"k=v", "v"},
        {"  K \t = \t v w \t", "v w"},
        {"k=\"  quoted  \"", "  quoted"},
        {"k='single'", "single"},
        {"k=\"'both'\"", "'both'"},
        {"k=\"mixed'", "\"mixed'"},
        {"k=\"", "\""},
        {"k=\"\"", ""},
        {"k=a=b", "a=b"},
        {"k=", ""},
        {";k=comment\r\nk=v", "v"},
        {"k\r\nk=v", "v"},
        {"k=first\r\nk=second", "first"},
        {"k=a\rb=c", "a"},
        {"k=caf\xE9", "caf\xE9"},
        {"k=ab\0cd"s, "ab"},
        {"k=ab  \0cd"s, "ab"},
        {"k=v;no comment", "v;no comment"},
        {"[S]\r\nk=of the second section", ""},
        {"[open\r\nk=v", "v"},
        {"k=" + std::string(600, 'x'), std::string(559, 'x')},
        {"k=\"" + std::string(558, 'x') + "  y\"", std::string(558, 'x')},
    };
    for (const auto& each : cases)
        EXPECT_EQ(IniFile::parse("k=outside\r\n[ s ]\r\n" + each.line + "\r\n[t]\r\nk=other").value("S", "k"),
                  each.value)
            << each.line;
    const IniFile longer = IniFile::parse("[s]\nk=" + std::string(2000, 'x'));
    EXPECT_EQ(longer.value("s", "k", IniFile::kLongLimit).size(), 1499u);
    const IniFile names = IniFile::parse("[a]b]\nx=1\nX=2\ny=3\n[Two]\n[two]\nz=1\n");
    EXPECT_EQ(names.sections(), (std::vector<std::string>{"a]b", "Two"}));
    EXPECT_EQ(names.keys("A]B"), (std::vector<std::string>{"x", "y"}));
    EXPECT_FALSE(names.has("two", "z"));
}

TEST(IniFile, WritesInPlaceAndKeepsEveryOtherByte) {
    const struct {
        const char *before, *section, *key, *value, *after;
    } cases[] = {
        {"", "s", "k", "v", "[s]\r\nk=v\r\n"},
        {"[s]\r\nk=1\r\nj=2\r\n", "S", "K", " new ", "[s]\r\nk= new \r\nj=2\r\n"},
        {"[s]\na=1\n\n\n[t]\nb=2\n", "s", "k", "v", "[s]\na=1\nk=v\r\n\n\n[t]\nb=2\n"},
        {"[s]\r\n\r\n;note\r\n\r\nk = \"1\"\r\n", "s", "k", "v", "[s]\r\n\r\n;note\r\n\r\nk=v\r\n"},
        {"[s]\r\na=1", "s", "k", "v", "[s]\r\na=1\r\nk=v\r\n"},
        {"stray\r[s]\rjunk\r\r", "s", "k", "v", "stray\r[s]\rjunk\rk=v\r\n\r"},
        {"[s]\n\n", "t", "k", "v", "[s]\n\n[t]\r\nk=v\r\n"},
        {"last", "s", "k", "v", "last\r\n[s]\r\nk=v\r\n"},
        {"[s]\r\n[s]\r\nk=1\r\n", "s", "k", "v", "[s]\r\nk=v\r\n[s]\r\nk=1\r\n"},
        {"[s]\r\nk=1\r\nk=2\r\n", "s", "k", "v", "[s]\r\nk=v\r\nk=2\r\n"},
        {"", "s\r\n[x]", "k\nj=1", "v\r\nj=2", "[s]\r\nk=v\r\n"},
        {"", "s", "k", "\nlost", "[s]\r\nk=\r\n"},
        {"\xEF\xBB\xBF\x01\xFF\n", "s", "k", "\xE9", "\xEF\xBB\xBF\x01\xFF\n[s]\r\nk=\xE9\r\n"},
    };
    for (const auto& each : cases) {
        IniFile file = IniFile::parse(each.before);
        EXPECT_EQ(file.text(), each.before);
        file.setValue(each.section, each.key, each.value);
        EXPECT_EQ(file.text(), each.after);
    }
    IniFile file;
    for (const char* const bad : {"", "  ", "a=b", "[a", ";a", "\r\nk"})
        EXPECT_THROW(file.setValue("s", bad, "v"), Failure) << bad;
    EXPECT_THROW(file.setValue("", "k", "v"), Failure);
    EXPECT_EQ(file.text(), "");
}

TEST(IniFile, TheShortcutsNeverThrow) {
    const TestHome home;
    EXPECT_EQ(ReadIniValue(home.path("absent"), "s", "k"), "");
    EXPECT_EQ(ReadIniValue(home.path("data"), "s", "k"), "");
    EXPECT_EQ(WriteIniValue(home.path("data"), "s", "k", "v"), "0");
    EXPECT_EQ(WriteIniValue(home.path("no/folder"), "s", "k", "v"), "0");
    const std::string file = home.path("new.ini");
    EXPECT_EQ(WriteIniValue(file, "s", "a=b", "v"), "0");
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(WriteIniValue(file, "s", "k", std::string(1600, 'x')), "1");
    EXPECT_EQ(ReadIniValue(file, "S", "K").size(), 559u);
    EXPECT_EQ(ReadIniValueLong(file, "S", "K").size(), 1499u);
}

TEST(InputHistory, KeepsThirtyRowsAndLeavesOlderKeys) {
    const TestHome home;
    const std::string file = home.path("data/apikrv.dmc");
    std::vector<std::string> rows;
    for (int i = 1; i <= 40; ++i) rows.push_back("row " + std::to_string(i));
    SaveInputHistory(file, "Search", rows);
    EXPECT_EQ(LoadInputHistory(file, "Search", 100).size(), 30u);
    SaveInputHistory(file, "Search", {"only", "", "third"});
    EXPECT_EQ(LoadInputHistory(file, "Search", 30), std::vector<std::string>{"only"});
    EXPECT_EQ(ReadIniValue(file, "Search", "30"), "row 30");
    EXPECT_TRUE(LoadInputHistory(home.path("data"), "Search", 30).empty());

    AddInputHistory(rows, "ROW 40");
    EXPECT_EQ(rows.size(), 40u);
    AddInputHistory(rows, "new");
    EXPECT_EQ(rows.front(), "new");
    EXPECT_EQ(rows.size(), 40u);  // one row came, one went
    EXPECT_EQ(rows.back(), "row 39");
    for (const std::size_t had : {29u, 30u}) {
        rows.resize(had);
        AddInputHistory(rows, "newer " + std::to_string(had));
        EXPECT_EQ(rows.size(), 30u) << had;
    }
}

}  // namespace
}  // namespace relay::test

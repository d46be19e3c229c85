// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/IniFile.h"
#include "core/InputHistory.h"
#include "support/CaseTable.h"
#include "support/TestHome.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace relay::test {
namespace {

using Inputs = std::vector<std::string>;

std::string valueOf(const Inputs& in) {
    return IniFile::parse("k=outside\r\n[ s ]\r\n" + in[0] + "\r\n[t]\r\nk=other").value("S", "k");
}

std::string textWithValue(const Inputs& in) {
    IniFile file = IniFile::parse(in[0]);
    EXPECT_EQ(file.text(), in[0]);
    file.setValue(in[1], in[2], in[3]);
    return file.text();
}

TEST(IniFile, FollowsItsTable) {
    playCases(TEST_FOLDER "/cases/ini.txt", {{"value", valueOf}, {"setValue", textWithValue}});
    const IniFile names = IniFile::parse("[a]b]\nx=1\nX=2\ny=3\n[Two]\n[two]\nz=1\n");
    EXPECT_EQ(names.sections(), (Inputs{"a]b", "Two"}));
    EXPECT_EQ(names.keys("A]B"), (Inputs{"x", "y"}));
    EXPECT_FALSE(names.has("two", "z"));
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

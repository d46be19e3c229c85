// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Trap.h"
#include "ranking/RankingPages.h"
#include "ranking/RankingProfiles.h"
#include "support/TestHome.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace relay::test {

namespace {

class RankingProfilesTest : public testing::Test {
  protected:
    std::string text() const { return home.read("profile.kwr"); }
    std::string names() const {
        std::string all;
        for (const ProfileEntry& entry : profiles.loadProfile()) all += entry.name + ";";
        return all;
    }

    TestHome home;
    RankingProfiles profiles{home.paths()};
    RankingSetup setup{"Bells", {"a.test", "b.test/x"}, "red bicycle", RankLimit::Links, "30"};
};

std::string setupText(const RankingSetup& setup) {
    std::string all = setup.profile + "|";
    for (const std::string& site : setup.sites) all += site + ",";
    return all + "|" + setup.keywords + "|" + std::to_string(static_cast<int>(setup.limit)) + "|" +
           setup.pageLinks;
}

}  // namespace

TEST_F(RankingProfilesTest, AreWrittenAndReadToTheByte) {
    EXPECT_EQ(names(), "");
    profiles.saveProfile(setup);
    EXPECT_EQ(text(),
              "[Bells]\r\nNumOfURL=2\r\nURL1=a.test\r\nURL2=b.test/x\r\nURL=a.test, b.test/x\r\n"
              "Keyword=red bicycle\r\nType=1\r\nValue=30\r\n");
    profiles.noteReport("Bells", "4/1/02 13:05", "/r.html");
    profiles.saveRankingResults("bells", {{true, "3", "4, 17", "x"}, {false, "", "", ""}}, "4/1/02");
    EXPECT_TRUE(
        text().ends_with("Value=30\r\nDate=4/1/02 13:05\r\nReportFile=/r.html\r\n"
                         "Engine1=-1;3;4, 17;4/1/02\r\nEngine2=0;;;4/1/02\r\n"));
    const RankingProfile read = profiles.load("BELLS");
    EXPECT_EQ(setupText(read.setup), "Bells|a.test,b.test/x,|red bicycle|1|30");
    EXPECT_EQ(read.ReportFile, "/r.html");
    ASSERT_EQ(read.engines.size(), 2u);
    EXPECT_EQ(read.engines[0].pages + read.engines[0].position, "34, 17");
    EXPECT_EQ(read.wasChecked, (std::vector<bool>{true, false}));
    EXPECT_TRUE(profiles.IsProfileExist("bells"));
    EXPECT_THROW(profiles.load("Bell"), Failure);

    // Fewer sites than before, and a phrase whose quotes and brackets belong to it.
    setup.sites.pop_back();
    setup.keywords = "\"red [bicycle]\"";
    profiles.saveProfile(setup);
    EXPECT_EQ(setupText(profiles.load("Bells").setup), "Bells|a.test,|\"red [bicycle]\"|1|30");
    EXPECT_EQ(names(), "Bells;");
}

TEST_F(RankingProfilesTest, AreRemovedWithEverythingThatIsTheirs) {
    const std::string others = "; kept\n[One]\nKeyword=x\n\n[Three]\n; kept too\n";
    home.write("profile.kwr",
               "; kept\n[One]\nKeyword=x\n\n[two]\nKeyword=a [b]\nDate=1\n[Three]\n; kept "
               "too\n[TWO]\nDate=2\n");
    profiles.removeProfile("Two");
    EXPECT_EQ(text(), others);
    profiles.removeProfile("Two");
    EXPECT_EQ(text(), others);
    EXPECT_EQ(names(), "One;Three;");
}

TEST_F(RankingProfilesTest, TakeOldAndOddEntriesAsTheyAre) {
    home.write(
        "profile.kwr",
        "[Old]\nURL=a.test\nType=x\n[Odd]\nNumOfURL=2000000000\nURL2=b.test\nURL32767=c.test\nURL03=no\n"
        "URL99999=no\nEngine2=False;1;2\nEngine4=0\nEngine9=\nEngine-1=x\nEngine99999=1\nType=1\n");
    EXPECT_EQ(setupText(profiles.load("Old").setup), "Old|a.test,||0|");
    const RankingProfile odd = profiles.load("Odd");
    EXPECT_EQ(setupText(odd.setup), "Odd|b.test,c.test,||1|");
    std::string checked;
    for (const RankRow& row : odd.engines) checked += row.checked ? 'x' : '-';
    EXPECT_EQ(checked, "---x-----");
    EXPECT_EQ(std::count(odd.wasChecked.begin(), odd.wasChecked.end(), true), 0);
}

TEST_F(RankingProfilesTest, SurviveATornFileAndNeverLoseItWhenItCannotBeWritten) {
    profiles.saveProfile(setup);
    profiles.saveRankingResults("Bells", {{true, "3", "4", ""}}, "4/1/02");
    const std::string whole = text();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        home.write("profile.kwr", whole.substr(0, length));
        for (const ProfileEntry& entry : profiles.loadProfile()) profiles.load(entry.name);
        profiles.saveProfile(setup);
        ASSERT_EQ(setupText(profiles.load("Bells").setup), setupText(setup)) << length;
    }
    const std::string before = text();
    const SaveFault old = setSaveFault([](SaveStep step) { return step == SaveStep::Create ? EROFS : 0; });
    EXPECT_THROW(profiles.saveProfile(setup), Failure);
    EXPECT_THROW(profiles.removeProfile("Bells"), Failure);
    EXPECT_THROW(profiles.noteReport("Bells", "", ""), Failure);
    setSaveFault(old);
    EXPECT_EQ(text(), before);
}

TEST_F(RankingProfilesTest, RefuseNamesThatAreNoFolder) {
    for (const std::string& name : {std::string(), std::string(".."), std::string("../x"),
                                    std::string("a\nb"), std::string(300, 'a')}) {
        setup.profile = name;
        EXPECT_TRUE(profileNameProblem(name)) << name;
        EXPECT_THROW(profiles.saveProfile(setup), Failure) << name;
        EXPECT_THROW(rankingFolder(home.paths(), name), Failure) << name;
    }
    EXPECT_TRUE(profileNameProblem("what?"));
    for (const char* name : {"[x]", "a]b", "=;x", "..."}) {
        setup.profile = name;
        EXPECT_FALSE(profileNameProblem(name)) << name;
        profiles.saveProfile(setup);
        EXPECT_EQ(setupText(profiles.load(name).setup), setupText(setup));
    }
    EXPECT_EQ(names(), "[x];a]b;=;x;...;");
    profiles.removeProfile("[x]");
    EXPECT_EQ(names(), "a]b;=;x;...;");
}

TEST_F(RankingProfilesTest, AreCheckedBeforeARun) {
    const std::vector<RankRow> rows = {{false, "", "", ""}, {true, "", "", ""}};
    const auto problem = [&](const std::vector<RankRow>& engines) {
        const auto found = setupProblem(setup, engines);
        return found ? std::string(found->text.substr(0, 24)) : "none";
    };
    EXPECT_EQ(problem(rows), "none");
    EXPECT_EQ(problem({rows[0]}), "There is no engine selec");
    setup.pageLinks = "";
    EXPECT_EQ(problem({}), "Please specify the numbe");
    setup.keywords = std::string(100, 'k');
    EXPECT_EQ(problem({}), "Please specify the numbe");
    setup.keywords += "k";
    EXPECT_EQ(problem({}), "The keywords must be les");
    setup.keywords = "";
    EXPECT_EQ(problem({}), "Please enter the keyword");
    setup.sites = {};
    EXPECT_EQ(problem({}), "Please specify the web s");
    setup.profile = "";
    EXPECT_EQ(problem({}), "Please save the profile ");

    EXPECT_EQ(rankedSite("http://www.a.test/x"), "www.a.test/x");
    EXPECT_EQ(rankedSite("ab.c"), "ab.c");
    for (const char* bad : {"", "abc", "a.b.test", "abc.\n", "ab.c://"})
        EXPECT_THROW(rankedSite(bad), Failure) << bad;
}

TEST(RankingSetupTest, TakesPagesFromLinksByTheFirstCharacter) {
    const auto pages = [](RankLimit limit, const char* text) {
        return RankingSetup{{}, {}, {}, limit, text}.pagesOfRun();
    };
    EXPECT_EQ(pages(RankLimit::Links, "30"), 3);
    EXPECT_EQ(pages(RankLimit::Links, "100"), 1);
    EXPECT_EQ(pages(RankLimit::Links, "x1"), 0);
    EXPECT_EQ(pages(RankLimit::Pages, "30"), 30);
    EXPECT_THROW(pages(RankLimit::Pages, "32768"), Failure);
}

}  // namespace relay::test

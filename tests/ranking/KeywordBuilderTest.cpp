// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/IniFile.h"
#include "pagetools/DoorwayPage.h"
#include "pagetools/KeywordLists.h"
#include "practice/PracticeWeb.h"
#include "projects/WebsiteKeys.h"
#include "ranking/KeywordBuilder.h"
#include "ranking/RankingProfiles.h"
#include "support/CaseTable.h"
#include "support/SessionFixture.h"
#include "transport/frmHTTP.h"

#include <gmock/gmock.h>

namespace relay::test {

namespace {

using testing::HasSubstr;
using Inputs = std::vector<std::string>;

KeywordEngine engineOf(const std::string& fields) {
    return readKeywordEngine(IniFile::parse("[e]\n" + replaceAll(fields, ";", "\n")), "e");
}

class KeywordBuilderTest : public testing::Test, public SessionFixture {
  protected:
    void load(const std::string& number, const std::string& found = "/words/find") {
        home.write("data/kwreng.dat",
                   "[KeywordBuilder]\nNumOfURLs=" + number +
                       "\n1=Word Market\nEngine=Word Market\n[Word Market]\n" +
                       "EngineKey=/words/find\nEngineURL=" + web.address() + found +
                       "\nQueryKeyword1=?q=\nResultStartString=<ul class=found>\nResultEndString=</ul>\n"
                       "NoFoundString=NOTHING WAS FOUND\nURLStartString=<a href=http://\nURLEndString=>\n");
        builder.load();
    }
    void gather(const std::string& phrase) {
        ASSERT_TRUE(builder.gather(phrase));
        ASSERT_TRUE(waitUntil([this] { return !builder.isRunning(); }));
    }

    PracticeWeb web;
    frmHTTP fetcher{services};
    KeywordBuilder builder{fetcher, services};
};

}  // namespace

TEST_F(KeywordBuilderTest, FollowsItsTable) {
    playCases(
        TEST_FOLDER "/cases/keyword-builder.txt",
        {{"getURL",
          [](const Inputs& in) {
              return joined(getURL(engineOf(in[0]), in[1], static_cast<std::size_t>(std::stoi(in[2]))));
          }},
         {"getKeywords",
          [this](const Inputs& in) { return getKeywords(services, in[0], in.size() > 1 ? in[1] : ","); }},
         {"GetURLName", [](const Inputs& in) { return GetURLName(in[0]); }}});
}

TEST_F(KeywordBuilderTest, GathersFromThePagesThatAnEngineFinds) {
    web.start();
    load("4");
    preference.PromptConnection = 1;
    builder.Command1("paper");
    EXPECT_THAT(prompts.last().text, HasSubstr("connected to the internet"));
    EXPECT_FALSE(builder.isRunning());
    prompts.answers = {true};
    builder.Command1("paper & pens");
    EXPECT_EQ(builder.caption(), "&Cancel");
    ASSERT_TRUE(waitUntil([this] { return !builder.isRunning(); }));
    EXPECT_EQ(builder.txtKeywordList,
              "paper,writing paper,handmade paper\r\npens,fountain pens,paper\r\n\r\nINK,Ink Bottles\r\n");
    EXPECT_EQ(prompts.last().title + prompts.last().text + builder.status() + builder.caption(),
              "Keyword BuilderDone !Done&Get");
    builder.onePerLine = true;
    gather("paper");
    EXPECT_THAT(builder.txtKeywordList,
                testing::StartsWith("paper\r\nwriting paper\r\nhandmade paper\r\npens\r\n"));
    builder.removeDuplicates();
    EXPECT_EQ(builder.txtKeywordList,
              "paper\r\nwriting paper\r\nhandmade paper\r\npens\r\nfountain pens\r\nINK\r\nInk Bottles\r\n");
}

// The rounds go on to the number of the catalogue, whatever was found.
TEST_F(KeywordBuilderTest, EndsAfterItsRounds) {
    web.start();
    load("9");
    gather("nothing");
    EXPECT_EQ(builder.txtKeywordList, "");
    EXPECT_EQ(prompts.last().text, "Done !");
    load("0");
    gather("paper");
    EXPECT_EQ(builder.txtKeywordList, "");
    load("2", "/404");
    gather("paper");
    ASSERT_EQ(builder.problems().size(), 1U);
    EXPECT_THAT(builder.problems()[0], HasSubstr("404"));
    load("2", "/never");
    ASSERT_TRUE(builder.gather("paper"));
    EXPECT_FALSE(builder.gather("again"));
    builder.cancel();
    ASSERT_TRUE(waitUntil([this] { return !builder.isRunning(); }));
    EXPECT_EQ(builder.caption() + builder.status(), "&Get");
}

TEST_F(KeywordBuilderTest, SavesAndSendsTheList) {
    builder.txtKeywordList = "paper, pens\r\nPaper, ink\r\n";
    const std::string file = home.path("Keywords/list.txt");
    prompts.files = {{home.path("Keywords/list"), 1}, {file, 1}};
    builder.saveKeywords();
    EXPECT_EQ(home.read("Keywords/list.txt"), builder.txtKeywordList);
    builder.saveKeywords();
    EXPECT_EQ(prompts.last().title + prompts.last().text,
              "Save URLThe file " + file + " already exists, do you want to replace it?");

    const std::string website = home.writeWebsite("shop.kws", {"http://a.test/"});
    EXPECT_TRUE(builder.sendToWebsite(website));
    EXPECT_EQ(getKey(website, "Keyword"), "paper, pens, ink");
    EXPECT_FALSE(builder.sendToWebsite(home.path("none.kws")));
    const RankingProfiles profiles(home.paths());
    profiles.saveProfile({"Shop", {"a.test"}, "old", RankLimit::Links, "30"});
    EXPECT_TRUE(builder.sendToProfile("Shop"));
    EXPECT_EQ(profiles.load("Shop").setup.keywords + profiles.load("Shop").setup.pageLinks,
              "paper, pens, ink30");
    EXPECT_FALSE(builder.sendToProfile("None"));
    DoorwayFields fields;
    fields.txtKeywords[5] = "old";
    builder.sendToDoorway(fields);
    EXPECT_EQ(fields.txtKeywords[0] + fields.txtKeywords[2] + fields.txtKeywords[5], "paperink");
    // More than a website's line takes: whole keywords only, and it is told.
    builder.txtKeywordList.clear();
    for (int i = 0; i < 10000; ++i) builder.txtKeywordList += "keyword " + std::to_string(i) + "\r\n";
    EXPECT_TRUE(builder.sendToWebsite(website));
    EXPECT_THAT(getKey(website, "Keyword"), testing::EndsWith(", keyword 46"));
    EXPECT_THAT(builder.status(), HasSubstr(" of 10000 keywords were sent."));
}

}  // namespace relay::test

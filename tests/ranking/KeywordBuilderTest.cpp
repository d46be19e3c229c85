// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/IniFile.h"
#include "pagetools/KeywordLists.h"
#include "practice/PracticeWeb.h"
#include "projects/WebsiteKeys.h"
#include "ranking/KeywordBuilder.h"
#include "ranking/RankingProfiles.h"
#include "ranking/WordCount.h"
#include "support/CaseTable.h"
#include "support/FaultServer.h"
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
                       "EngineKey=/find\nEngineURL=" + (found.starts_with("/") ? web.address() : "") + found +
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
    EXPECT_EQ(builder.caption() + builder.status(), "&GetCancelled");
    load("32767");
    gather("nothing");
    EXPECT_EQ(builder.rounds(), 32768);
}

// A phrase that finds nothing, an engine that is not there, and a list that is not saved.
TEST_F(KeywordBuilderTest, AsksAndRefusesBeforeItGathers) {
    web.start();
    builder.load();
    EXPECT_EQ(prompts.last().title, "Error");
    builder.Command1("paper");
    EXPECT_EQ(prompts.last().text, "Please choose a search engine.");
    load("2");
    EXPECT_EQ(builder.engine(), 0);
    builder.Command1(" ");
    EXPECT_EQ(prompts.last().title + prompts.last().text,
              "Keyword BuilderPlease enter the keywords you would like to search for.");
    EXPECT_TRUE(builder.history().empty());
    preference.PromptConnection = 0;
    builder.edit("typed");
    builder.Command1("paper");
    EXPECT_THAT(prompts.last().text, HasSubstr("not saved"));
    EXPECT_EQ(builder.txtKeywordList, "typed");
    EXPECT_FALSE(builder.isRunning());
}

// Whatever an engine sends, a gathering ends.
TEST_F(KeywordBuilderTest, EndsWithHostilePages) {
    std::string links;
    for (int i = 0; i < 100000; ++i) links += "<a href=http://127.0.0.1:1/" + std::to_string(i) + ">";
    std::string keywords = "<meta name=keywords content=\"";
    for (int i = 0; i < 10000; ++i) keywords += "ab,";  // a longer tag is refused
    const std::string pages[] = {
        "",
        std::string("\0<ul class=found>\xff<a href=http://\0>", 35),
        "<ul class=found><a href=http://",
        "<ul class=found><a href=http://file:///etc/passwd><a href=http://javascript:x>",
        std::string(std::size_t{17} << 20, '<'),
        "<ul class=found>" + links};
    for (const std::string& page : pages) {
        FaultServer server([&](FaultServer::Peer& peer) {
            peer.send(FaultServer::answer(200, peer.path().starts_with("/find") ? page : keywords + "\">"));
        });
        load("2", server.url("/find"));
        gather("paper");
        EXPECT_EQ(prompts.last().text, "Done !");
        EXPECT_THAT(builder.txtKeywordList, testing::Not(HasSubstr("root:")));
        EXPECT_LE(builder.found().size(), 2U);
    }
    FaultServer server([&](FaultServer::Peer& peer) {
        const std::string found = "<ul class=found><a href=" + server.url("/a") + "></ul>";
        peer.send(FaultServer::answer(200, peer.path().starts_with("/find") ? found : keywords + "\">"));
    });
    load("2", server.url("/find"));
    gather("paper");
    EXPECT_EQ(keywordsOf(builder.txtKeywordList).size(), 10000U);
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

    prompts.files = {{home.path("shop.kws/list"), 1}};
    const std::string website = home.writeWebsite("shop.kws", {"http://a.test/"});
    builder.saveKeywords();
    EXPECT_EQ(prompts.last().title + prompts.last().text.substr(0, 20),
              "Keyword BuildersaveKeywords_Error: ");
    EXPECT_THAT(logText(), HasSubstr("saveKeywords_Error: "));
    const auto list = [this] { return keywordsOf(builder.txtKeywordList); };
    prompts.shown.clear();
    EXPECT_TRUE(builder.sendToWebsite({"Shop", website}, list()));
    EXPECT_TRUE(prompts.shown.empty()) << "nothing was replaced";
    EXPECT_EQ(getKey(website, "Keyword"), "paper, pens, ink");
    EXPECT_EQ(builder.status(), "3 of 3 keywords were sent to Shop.");
    EXPECT_FALSE(builder.sendToWebsite({"Shop", website}, {"other"}));
    EXPECT_THAT(prompts.last().text, HasSubstr("Shop has these keywords:\r\n\r\npaper, pens, ink\r\n"));
    EXPECT_FALSE(builder.sendToWebsite({"Shop", website}, {}));
    EXPECT_FALSE(builder.sendToWebsite({"None", home.path("none.kws")}, list()));
    EXPECT_EQ(getKey(website, "Keyword"), "paper, pens, ink");
    const RankingProfiles profiles(home.paths());
    profiles.saveProfile({"Shop", {"a.test"}, "old", RankLimit::Links, "30"});
    prompts.answers = {true};
    EXPECT_TRUE(builder.sendToProfile({"shop", {}}, list()));
    EXPECT_EQ(profiles.load("Shop").setup.keywords + profiles.load("Shop").setup.pageLinks,
              "paper, pens, ink30");
    EXPECT_FALSE(builder.sendToProfile({"None", {}}, list()));
    // More than fits: whole keywords only, and it is told.
    builder.txtKeywordList.clear();
    for (int i = 0; i < 10000; ++i) builder.txtKeywordList += "keyword " + std::to_string(i) + "\r\n";
    prompts.answers = {true, true};
    EXPECT_TRUE(builder.sendToWebsite({"Shop", website}, list()));
    EXPECT_THAT(getKey(website, "Keyword"), testing::EndsWith(", keyword 46"));
    EXPECT_EQ(builder.status(), "47 of 10000 keywords were sent to Shop. No more fit into 559 characters.");
    EXPECT_TRUE(builder.sendToProfile({"Shop", {}}, list()));
    EXPECT_THAT(profiles.load("Shop").setup.keywords, testing::EndsWith(", keyword 8"));
    EXPECT_FALSE(builder.sendToProfile({"Shop", {}}, {std::string(101, 'x')}));
    EXPECT_THAT(prompts.last().text, HasSubstr("longer than the 100 characters"));
}

TEST_F(KeywordBuilderTest, CombinesAndAddsToTheList) {
    EXPECT_FALSE(builder.combine("red", " , "));
    EXPECT_TRUE(builder.combine("red, blue", "pen\r\nink"));
    EXPECT_EQ(builder.txtKeywordList, "red pen,red ink,blue pen,blue ink\r\n");
    builder.onePerLine = true;
    builder.edit("a,A,b");
    builder.add({"c", "B"});
    EXPECT_EQ(builder.txtKeywordList, "a,A,b\r\nc\r\nB\r\n");
    builder.removeDuplicates();
    EXPECT_EQ(builder.txtKeywordList + builder.status(), "a\r\nb\r\nc\r\n2 duplicates were removed.");
    std::string many;
    for (int i = 0; i < 400; ++i) many += std::to_string(i) + "\n";
    EXPECT_FALSE(builder.combine(many, many));
    EXPECT_THAT(prompts.last().text, HasSubstr("more than 100000 keywords"));
}

TEST_F(KeywordBuilderTest, CountsTheWordsOfPagesFilesAndPagesThatWereFound) {
    web.start();
    load("4");
    gather("paper");
    ASSERT_EQ(builder.pages().size(), 4U);
    home.write("page.html", "<p>Fountain pens");
    WordCount words(fetcher, services);
    std::string pages = home.path("page.html") + "\r\n" + web.address() + "/words/pens.html\n" +
                        web.address() + "/404\n" + home.path("none.html") + "\n";
    words.fewest = 2;
    words.most = 2;
    words.start(pages, {});
    ASSERT_TRUE(waitUntil([&] { return !words.isRunning(); }));
    EXPECT_EQ(words.lsvWords.at(0).text, "fountain pens");
    EXPECT_EQ(words.lsvWords.at(0).subItems[0], "3");
    EXPECT_EQ(words.problems().size(), 2U);
    // Pages that are known need no fetcher; others wait for it.
    const std::string known = builder.pages()[1].URL;
    ASSERT_TRUE(fetcher.fetch("other", web.address() + "/never"));
    words.start(known + "\n" + web.address() + "/words/paper.html", builder.pages());
    ASSERT_TRUE(waitUntil([&] { return !words.isRunning(); }));
    EXPECT_TRUE(fetcher.isRunning("other"));
    EXPECT_EQ(words.lsvWords.at(0).text, "fountain pens");
    words.start(web.address() + "/words/none.html", {});
    EXPECT_TRUE(words.isRunning());
    words.cancel();
    EXPECT_FALSE(words.isRunning());
    EXPECT_EQ(words.status(), "Cancelled");
    EXPECT_EQ(words.lsvWords.at(0).text, "fountain pens");
    fetcher.Disconnect();
}

}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/WebSearch.h"
#include "support/CaseTable.h"
#include "support/SessionFixture.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

class WebSearchTest : public testing::Test, public SessionFixture {};

}  // namespace

TEST(WebSearchURLTest, FollowsItsTable) {
    playCases(TEST_FOLDER "/cases/search.txt",
              {{"searchURL", [](const std::vector<std::string>& in) {
                    RankEngine engine;
                    engine.EngineURL = "http://e.test/";
                    engine.QueryKeyword1 = "?q=";
                    engine.QueryKeyword2 = "&n=1";
                    engine.URLVisibility = in[0];
                    return searchURL(engine, static_cast<SearchType>(std::stoi(in[1])), in[2]);
                }}});
}

TEST_F(WebSearchTest, OpensTheAddressAndRemembersThePhrase) {
    home.write("data/kwreng.dat", "[Engines]\n1=E\n[E]\nEngineURL=http://e.test/\nQueryKeyword1=?q=\n");
    WebSearch search(services);
    ASSERT_TRUE(search.catalogue.loadEngineData());
    search.cmdSearch(0, SearchType::General, "");
    EXPECT_EQ(prompts.last().text, "Please enter the keywords you would like to search for.");
    search.cmdSearch(5, SearchType::General, "x");
    EXPECT_EQ(prompts.last().kind, "message");
    search.cmdSearch(0, SearchType::Link, "http://a.test/x y");
    EXPECT_EQ(prompts.last().kind, "system");
    EXPECT_EQ(prompts.last().text, "http://e.test/?q=link%3Aa.test");
    search.cmdSearch(0, SearchType::General, "x\ny");
    EXPECT_EQ(prompts.last().kind, "message");
    for (const char* hostile : {"file:///etc/", "javascript:", "/etc/passwd", "-x", ""}) {
        home.write("data/kwreng.dat", std::string("[Engines]\n1=E\n[E]\nEngineURL=") + hostile + "\n");
        ASSERT_TRUE(search.catalogue.loadEngineData());
        search.cmdSearch(0, SearchType::General, "passwd");
        EXPECT_EQ(prompts.last().kind, "message") << hostile;
    }
    search.saveHistory();
    WebSearch later(services);
    later.loadHistory();
    EXPECT_EQ(later.history(), (std::vector<std::string>{"passwd", "x", "http://a.test/x y"}));
}

TEST_F(WebSearchTest, OffersTheWebsitesAndTheirUrls) {
    const std::string one =
        home.writeWebsite("Projects/One.kws", {"http://one.test/", "", "http://one.test/b"});
    const std::string old = home.write("Projects/Old.kws", "[Web Site Info]\r\nURL=http://old.test/\r\n");
    home.write("project.kwj", "[P]\r\nLast=2\r\n1=One|" + one + "\r\n2=Old|" + old + "\r\n");
    WebSearch search(services);
    ASSERT_TRUE(search.loadWebProfile());
    ASSERT_EQ(search.websites().size(), 2u);
    EXPECT_EQ(search.lastWebsite(), -1);
    EXPECT_EQ(search.loadURLs(search.websites()[0]),
              (std::vector<std::string>{"http://one.test/", "http://one.test/b"}));
    EXPECT_EQ(search.loadURLs(search.websites()[1]), (std::vector<std::string>{"http://old.test/"}));
    ASSERT_TRUE(search.loadWebProfile());
    EXPECT_EQ(search.lastWebsite(), 1);
    EXPECT_EQ(search.lastURL(), "");
    search.takeURL("http://one.test/b");
    EXPECT_EQ(WebSearch(services).lastURL(), "http://one.test/b");
    EXPECT_TRUE(prompts.shown.empty());
}

}  // namespace relay::test

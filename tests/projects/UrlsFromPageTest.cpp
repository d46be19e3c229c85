// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/UrlsFromPage.h"
#include "support/CaseTable.h"
#include "support/FaultServer.h"
#include "support/SessionFixture.h"
#include "transport/frmHTTP.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

using Peer = FaultServer::Peer;
using Strings = std::vector<std::string>;

void play(Peer& peer) {
    if (peer.path() == "/never") peer.waitForClose();
    if (peer.path() == "/404") peer.send(FaultServer::answer(404, "<a href=/home.html>"));
    if (peer.path() == "/cut.html") peer.send("HTTP/1.0 200 OK\r\nContent-Length: 99\r\n\r\n<a href=cut>");
    if (peer.path() != "/cut.html") peer.send(FaultServer::answer(200, "<a href=one><a href=two>"));
}

class UrlsFromPageTest : public ::testing::Test, protected SessionFixture {
  protected:
    UrlsFromPageTest() {
        QObject::connect(&page, &UrlsFromPage::statusChanged, &page,
                         [this](const std::string& text) { statuses.push_back(text); });
        QObject::connect(&page, &UrlsFromPage::ended, &page,
                         [this](bool collected, const std::string& problem) {
                             ends.push_back((collected ? "collected " : "failed ") + problem);
                         });
    }

    Rows list;
    frmHTTP fetcher{services};
    UrlsFromPage page{list, fetcher, prompts};
    Strings statuses;
    Strings ends;
};

}  // namespace

TEST_F(UrlsFromPageTest, LinksBecomeAbsolute) {
    playCases(TEST_FOLDER "/cases/links.txt", {{"getFullURL", [this](const Strings& in) {
                                                    page.setPage(in[0]);
                                                    return page.getFullURL(in[1]);
                                                }}});
}

TEST_F(UrlsFromPageTest, CollectsEveryHrefOfAPage) {
    EXPECT_EQ(page.setPage("https://a.test/d/i.html"), "http://a.test/d/i.html");
    EXPECT_EQ(page.page(), "a.test/d/i.html");
    EXPECT_FALSE(page.addFilter(""));
    EXPECT_EQ(prompts.last().text, "Please enter a Filter string you want to add.");
    page.addFilter("PRIVATE");
    page.lstKeywords.emplace_back();
    page.getURL(
        "<link HREF=\"s.css\"><a href=one.html>1</a><a href=\"mailto:x@y.test\">m</a><a href=>"
        "<a href='two.html'><a class=b href=\"/private/x\"><a href=ONE.html><a title=href=three href=four>"
        "<a href=\"cut.html");
    EXPECT_EQ(texts(list), (Strings{"http://a.test/d/s.css", "http://a.test/d/one.html",
                                    "http://a.test/d/'two.html'", "http://a.test/d/three"}));
    EXPECT_EQ(statuses, (Strings{"Resolving data ......", "Done"}));
    EXPECT_EQ(prompts.busyDepth, 0);
}

TEST_F(UrlsFromPageTest, FetchesThePageAndEndsOnce) {
    const FaultServer server(play);
    const std::string address = "http://" + server.host();
    const struct {
        const char* path;
        std::string end, shown;
        Strings urls;
    } cases[] = {
        {"/page.html", "collected ", "", {address + "/one", address + "/two"}},
        {"/cut.html",
         "collected " + address + "/cut.html: Transferred a partial file",
         address + "/cut.html: Transferred a partial file",
         {address + "/cut"}},
        {"/404",
         "failed " + address + "/404: The server answered with status 404",
         address + "/404: The server answered with status 404",
         {}},
        {"/\x01",
         "failed " + address + "/%01: The URL holds a control character",
         address + "/%01: The URL holds a control character",
         {}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.path);
        list.clear();
        ends.clear();
        statuses.clear();
        prompts.shown.clear();
        EXPECT_TRUE(page.fetchPage("https://" + server.host() + each.path));
        EXPECT_TRUE(waitUntil([this] { return !ends.empty(); }));
        EXPECT_EQ(ends, Strings{each.end});
        EXPECT_EQ(statuses.front(), "Connecting to : " + address + each.path);
        EXPECT_EQ(statuses.back(), each.urls.empty() ? "" : "Done");
        EXPECT_EQ(prompts.last().text, each.shown);
        EXPECT_EQ(texts(list), each.urls);
    }
}

TEST_F(UrlsFromPageTest, ACancelledPageAddsNothing) {
    const FaultServer server(play);
    EXPECT_TRUE(page.fetchPage(server.host() + "/never"));
    EXPECT_FALSE(page.fetchPage(server.host() + "/page.html"));
    page.cancel();
    EXPECT_TRUE(waitUntil([this] { return !ends.empty(); }));
    EXPECT_EQ(ends, Strings{"failed "});
    EXPECT_TRUE(prompts.shown.empty());
    EXPECT_EQ(prompts.busyDepth, 0);
}

}  // namespace relay::test

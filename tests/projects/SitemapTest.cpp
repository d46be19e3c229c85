// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "practice/PracticeWeb.h"
#include "projects/Sitemap.h"
#include "projects/SitemapImport.h"
#include "projects/UrlList.h"
#include "projects/WebsiteFile.h"
#include "support/CaseTable.h"
#include "support/FaultServer.h"
#include "support/SessionFixture.h"
#include "transport/frmHTTP.h"

#include <gmock/gmock.h>
#include <optional>

namespace relay::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using Strings = std::vector<std::string>;

std::string described(const SitemapFile& file) {
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (file.isIndex) add("index");
    for (const SitemapEntry& entry : file.entries)
        add(entry.url + (entry.lastmod.empty() ? "" : " " + entry.lastmod));
    if (file.skipped > 0) add(std::to_string(file.skipped) + " left out");
    if (!file.problem.empty()) add(file.problem);
    return text;
}

Strings highlighted(const Rows& rows) {
    Strings urls;
    for (int row = 0; row < rows.count(); ++row)
        if (rows.at(row).highlighted) urls.emplace_back(rows.at(row).text);
    return urls;
}

class SitemapImportTest : public ::testing::Test, protected SessionFixture {
  protected:
    SitemapImportTest() {
        QObject::connect(&import, &SitemapImport::ended, &import, [this](bool any, const std::string& words) {
            ended = (any ? "found " : "nothing ") + words;
        });
    }
    // What the import came to; the addresses are in `import`.
    std::string run(const std::string& address) {
        ended.reset();
        EXPECT_TRUE(import.start(address));
        EXPECT_TRUE(waitUntil([this] { return ended.has_value(); }));
        EXPECT_EQ(prompts.busyDepth, 0);
        return ended.value_or("");
    }
    Strings found() const {
        Strings urls;
        for (const SitemapEntry& entry : import.entries()) urls.push_back(entry.url);
        return urls;
    }

    frmHTTP fetcher{services};
    SitemapImport import{fetcher, services};
    std::optional<std::string> ended;
};

}  // namespace

TEST(SitemapTest, FollowsItsTable) {
    const SitemapLimits limits{std::size_t{300} * 1024, 3};
    playCases(TEST_FOLDER "/cases/sitemap.txt",
              {{"read", [&](const Strings& in) { return described(readSitemap(in[0], limits)); }},
               {"older", [](const Strings& in) {
                    return isOlder(in[0], QDate::fromString(QString::fromStdString(in[1]), Qt::ISODate))
                               ? "yes"
                               : "no";
                }}});
}

// Each would be compared with all the others.
TEST(SitemapTest, BoundsAttributesAndNamespaces) {
    const auto read = [](const std::string& prefix, int elements, int attributes) {
        std::string text;
        for (int i = 0; i < elements * attributes; ++i) {
            if (i % attributes == 0) text += i == 0 ? "<urlset" : "><a";
            text += " " + prefix + std::to_string(i) + "='x'";
        }
        return described(readSitemap(text + ">"));
    };
    const std::string unfinished = "Line 1: Premature end of document.";
    const std::string tooMany = "An element has too many attributes.";
    EXPECT_EQ(read("a", 30, 100), unfinished);
    EXPECT_EQ(read("a", 1, 101), tooMany);
    EXPECT_EQ(read("xmlns:a", 5, 20), unfinished);
    EXPECT_EQ(read("xmlns:a", 6, 20), tooMany);
}

TEST(SitemapTest, OnlyWhatIsNewOrChangedIsMarked) {
    Rows urls;
    SitemapDates dates;
    addNewItem(urls, "http://a.test/TYPED");
    const auto merge = [&](const std::vector<SitemapEntry>& entries, const QDate& since = {}) {
        return mergeSitemap(entries, since, urls, dates).counts(entries.size());
    };
    const std::vector<SitemapEntry> first = {{"http://a.test/", "2026-10-01"},
                                             {"http://a.test/typed", ""},
                                             {"http://a.test/b", "2026-09-01"},
                                             {"HTTP://A.TEST/B", "2026-11-01"}};
    EXPECT_EQ(merge(first, QDate(2026, 9, 15)), "4 addresses, 2 new, 0 changed, 1 older than wanted.");
    EXPECT_THAT(highlighted(urls), ElementsAre("http://a.test/TYPED", "http://a.test/"));
    EXPECT_EQ(merge(first), "4 addresses, 1 new, 0 changed.");
    EXPECT_THAT(highlighted(urls), ElementsAre("http://a.test/b"));
    EXPECT_EQ(merge(first), "4 addresses, 0 new, 0 changed.");
    EXPECT_EQ(merge({{"http://a.test/", ""},
                     {"http://a.test/typed", "2026-11-01"},
                     {"http://a.test/b", "2026-09-02"}}),
              "3 addresses, 0 new, 2 changed.");
    EXPECT_THAT(highlighted(urls), ElementsAre("http://a.test/TYPED", "http://a.test/b"));
    urls.removeIf([](const RowView& row) { return row.text == "http://a.test/b"; });
    EXPECT_EQ(merge({{"http://a.test/b", "2026-09-02"}}), "1 address, 1 new, 0 changed.");
}

TEST(SitemapTest, AWebsiteFileKeepsTheDates) {
    IniFile file = IniFile::parse("");
    SitemapDates dates;
    writeSitemap(file, dates);
    EXPECT_EQ(file.text(), "");
    dates.set({"http://a.test/?a=[b];c", "2026-10-01"});
    dates.set({"http://b.test/", ""});
    writeSitemap(file, dates);
    EXPECT_EQ(file.text(),
              "[Sitemap]\r\nURL1=http://a.test/?a=[b];c\r\nLastMod1=2026-10-01\r\nURL2=http://b.test/\r\n"
              "LastMod2=\r\nLast=2\r\n");
    SitemapDates again;
    readSitemap(file, again);
    EXPECT_EQ(*again.lastmodOf("HTTP://A.TEST/?a=[b];c"), "2026-10-01");
    EXPECT_EQ(*again.lastmodOf("http://b.test/"), "");
    file.setValue(kSitemapSection, "Last", "2000000000");
    readSitemap(file, again);
    EXPECT_EQ(again.entries().size(), 2U);
}

TEST_F(SitemapImportTest, FollowsAnIndexOnceAndSurvivesItsFaults) {
    PracticeWeb web;
    web.start();
    const std::string site = web.address() + "/site/";
    EXPECT_EQ(run(site + "sitemap.xml"), "found ");
    EXPECT_THAT(found(),
                ElementsAre(site + "index.html", site + "pens.html?colour=blue&size=2", site + "paper.html"));
    EXPECT_EQ(import.summary({}),
              "Sitemap: 3 addresses, 0 new, 0 changed. Left out: 1, no web address or too long.");
    EXPECT_EQ(run(site + "sitemap-index.xml"),
              "found " + site + "sitemap-missing.xml: The server answered with status 404");
    EXPECT_THAT(found(), ElementsAre(site + "index.html", site + "pens.html?colour=blue&size=2",
                                     site + "paper.html", site + "ink.html", site + "PAPER.html"));
    EXPECT_EQ(run(site + "sitemap-entities.xml"),
              "nothing " + site + "sitemap-entities.xml: It has a document type, which no sitemap needs.");
    EXPECT_EQ(run(site + "sitemap-bomb.xml.gz"),
              "nothing " + site + "sitemap-bomb.xml.gz: One of its parts is too long.");
    EXPECT_THAT(run(web.address() + "/reset"), StartsWith("nothing "));
    EXPECT_EQ(run("gopher://a.test/"),
              "nothing gopher://a.test/: Only http:// and https:// addresses can be requested");
}

TEST_F(SitemapImportTest, BoundsTheFilesAndTheDepth) {
    // Every index names two more, so that only the bounds end it.
    std::string host;
    FaultServer server([&host](FaultServer::Peer& peer) {
        const std::string base = "http://" + host + peer.path();
        peer.send(FaultServer::answer(200, "<sitemapindex><sitemap><loc>" + base +
                                               "1</loc></sitemap><sitemap><loc>" + base +
                                               "2</loc></sitemap></sitemapindex>"));
    });
    host = server.host();
    EXPECT_THAT(run(server.url("/s")), HasSubstr("Too many indexes lead to it.\r\nOther problems: 15"));
    FaultServer wide([](FaultServer::Peer& peer) {
        std::string text = "<sitemapindex>";
        for (int i = 0; i < 600; ++i)
            text += "<sitemap><loc>http://127.0.0.1:1/" + std::to_string(i) + "</loc></sitemap>";
        peer.send(FaultServer::answer(200, text + "</sitemapindex>"));
    });
    EXPECT_THAT(run(wide.url("/s")), HasSubstr("Only the first 500 files were read.\r\nOther problems: "));
}

TEST_F(SitemapImportTest, TheWindowsWayAsksAndTells) {
    WebsiteFields fields;
    addNewItem(fields.lsvSiteURLs, "https://shop.test/a");
    import.askAndImport(fields);
    EXPECT_EQ(prompts.last().title, "Import Sitemap");
    const std::string file = home.write("map.xml", "<urlset><url><loc>http://a.test/</loc></url></urlset>");
    prompts.inputs = {file};
    import.askAndImport(fields);
    EXPECT_THAT(texts(fields.lsvSiteURLs), ElementsAre("https://shop.test/a", "http://a.test/"));
    EXPECT_EQ(prompts.notices.back(), "Sitemap: 1 address, 1 new, 0 changed.");
    prompts.inputs = {home.path("missing.xml")};
    import.askAndImport(fields);
    EXPECT_EQ(prompts.last().text, home.path("missing.xml") + ": No such file or directory");

    FaultServer server([](FaultServer::Peer& peer) { peer.waitForClose(); });
    prompts.inputs = {server.url("/s").substr(7)};
    import.askAndImport(fields);
    EXPECT_TRUE(fetcher.isRunning("Sitemap"));
    import.askAndImport(fields);
    EXPECT_EQ(prompts.last().kind, "beep");
    ended.reset();
    import.cancel();
    EXPECT_TRUE(waitUntil([this] { return ended.has_value(); }));
    EXPECT_EQ(ended, "nothing ");
    EXPECT_EQ(prompts.last().kind, "beep") << "a cancel shows nothing";
    EXPECT_EQ(fields.lsvSiteURLs.count(), 2);
}

}  // namespace relay::test

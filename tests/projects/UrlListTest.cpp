// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/Text.h"
#include "projects/UrlList.h"
#include "projects/UrlsFromFolder.h"
#include "projects/UrlsFromPage.h"
#include "support/CaseTable.h"
#include "support/SessionFixture.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

using Strings = std::vector<std::string>;

struct UrlListTest : public ::testing::Test {
    TestHome home;
    ScriptedPrompts prompts;
    Rows list;
    UrlsFromPage page{list, prompts};
};

}  // namespace

TEST_F(UrlListTest, CreatesUrlsFromALocalFolder) {
    for (const char* name : {"b.htm", "a.html", "x.shtml", "p.asp", "q.cgi", "n.txt", ".hidden.htm", "a",
                             "sub/s.HTM", "sub/deep/d.htm", "zub/t.htm"})
        home.write("site/" + std::string(name), "");
    FolderChoice choice;
    choice.folder = home.path("site");
    const auto addUrls = [&](const Strings& in) {
        list.clear();
        choice.txtDomain = in[0];
        choice.html = containsNoCase(in[1], "html");
        choice.asp = containsNoCase(in[1], "asp");
        choice.chkSubDirectory = containsNoCase(in[1], "below");
        const bool added = addURLFromFolder(list, choice, prompts);
        EXPECT_EQ(added, !list.empty());
        return joined(texts(list));
    };
    playCases(TEST_FOLDER "/cases/folder.txt", {{"addURLFromFolder", addUrls}});
    EXPECT_EQ(list.at(1).tag, home.path("site/a.html"));
    EXPECT_EQ(prompts.shown.at(1).text, "In valid domain name. Please enter a correct domain name.");
    choice.asp = choice.cgi = true;
    EXPECT_EQ(extensionList(choice), ",.asp,.cgi");
    choice.folder = home.path("missing");
    EXPECT_FALSE(addURLFromFolder(list, choice, prompts));
    EXPECT_EQ(prompts.last().text.substr(0, 14), "AddURL_Error: ");
}

TEST_F(UrlListTest, LinksBecomeAbsolute) {
    playCases(TEST_FOLDER "/cases/links.txt", {{"getFullURL", [this](const Strings& in) {
                                                    page.setPage(in[0]);
                                                    return page.getFullURL(in[1]);
                                                }}});
}

TEST_F(UrlListTest, CollectsEveryHrefOfAPage) {
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
    EXPECT_EQ(prompts.statuses, (Strings{"Resolving data ......", "Done"}));
    EXPECT_EQ(prompts.busyDepth, 0);
}

}  // namespace relay::test

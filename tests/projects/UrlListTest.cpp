// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/UrlList.h"
#include "projects/UrlsFromFolder.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

using Strings = std::vector<std::string>;

Strings texts(const Rows& list) {
    Strings result;
    for (int i = 0; i < list.count(); ++i) result.emplace_back(list.at(i).text);
    return result;
}

class UrlListTest : public ::testing::Test {
  protected:
    TestHome home;
    ScriptedPrompts prompts;
    Rows list;
    UrlList urls{list, prompts};
};

}  // namespace

TEST_F(UrlListTest, TypedUrlsAreAddedUncheckedAndOnce) {
    prompts.inputs = {"http://a.test/", "HTTP://A.test/", "no scheme", "", std::nullopt};
    for (int i = 0; i < 5; ++i) urls.addTypedURL();
    EXPECT_EQ(texts(list), (Strings{"http://a.test/", "no scheme"}));
    EXPECT_EQ(list.at(0).icon, "HTMLFile");
    EXPECT_EQ(prompts.last().title, "Insert URL");
    EXPECT_EQ(getFirstSelectedItem(list), "");
    list.setHighlighted(1, true);
    EXPECT_EQ(getFirstSelectedItem(list), "no scheme");
}

TEST_F(UrlListTest, DeletesTheHighlightedAfterAsking) {
    for (const char* url : {"a", "b", "c", "d"}) addNewItem(list, url);
    for (const int row : {0, 1, 3}) list.setHighlighted(row, true);
    urls.DeleteURL();
    EXPECT_EQ(list.count(), 4);
    prompts.answers = {true};
    urls.DeleteURL();
    EXPECT_EQ(texts(list), Strings{"c"});
}

TEST_F(UrlListTest, ReadsTheFieldsOfATextFile) {
    const std::string file =
        home.write("list.txt",
                   "http://a.test/x,y.html\r\nwww.b.test\nhttp://nodot/\n\"http://c.test/x,y.html\" rest\r"
                   "  HTTPS://D.test\n\n,,http://a.test/x\nftp://e.test/\nhttp://f.test/\xff\x01");
    addNewItem(list, "http://kept.test/");
    EXPECT_TRUE(urls.loadURLFromFile(file));
    EXPECT_EQ(texts(list), (Strings{"http://kept.test/", "http://a.test/x", "http://c.test/x,y.html",
                                    "HTTPS://D.test", "http://f.test/\xff\x01"}));
    EXPECT_FALSE(urls.loadURLFromFile(home.path("missing.txt")));
    EXPECT_EQ(prompts.last().text, "Invalid file name or path, please try again");
    EXPECT_EQ(prompts.last().title, "Load URL List");
    prompts.files = {{}, {file, 1}};
    EXPECT_FALSE(urls.loadURLs());
    EXPECT_TRUE(urls.loadURLs());
}

TEST_F(UrlListTest, SavesOneUrlPerLineThroughTheDialog) {
    addNewItem(list, "http://a.test/\r\nhttp://evil.test/");
    addNewItem(list, "http://b.test/");
    const std::string expected = "http://a.test/\r\nhttp://b.test/\r\n";
    prompts.files = {{home.path("list"), 1}, {home.path("list.TXT"), 1}, {home.path("raw"), 2}, {}};
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(urls.saveURLs());
    EXPECT_FALSE(urls.saveURLs());
    for (const char* name : {"list.txt", "list.TXT", "raw"}) EXPECT_EQ(home.read(name), expected) << name;

    list.clear();
    prompts.files = {{home.path("raw"), 2}, {home.path("raw"), 2}, {home.path("no/such/folder"), 2}};
    prompts.answers = {false, true};
    EXPECT_FALSE(urls.saveURLs());
    EXPECT_EQ(home.read("raw"), expected);
    EXPECT_EQ(prompts.last().text,
              "The file " + home.path("raw") + " already exists, do you want to replace it?");
    EXPECT_TRUE(urls.saveURLs());
    EXPECT_EQ(home.read("raw"), "");
    EXPECT_FALSE(urls.saveURLs());
    EXPECT_EQ(prompts.last().title, "Save URL List");
}

TEST_F(UrlListTest, CreatesUrlsFromALocalFolder) {
    for (const char* name : {"b.htm", "a.html", "x.shtml", "p.asp", "q.cgi", "n.txt", ".hidden.htm", "a",
                             "sub/s.HTM", "sub/deep/d.htm", "zub/t.htm"})
        home.write("site/" + std::string(name), "");
    FolderChoice choice;
    choice.folder = home.path("site");
    struct Case {
        const char* domain;
        bool html, asp, cgi, below;
        Strings expected;
    };
    const Case cases[] = {
        {"", true, false, false, false, {}},
        {"nodot", true, false, false, false, {}},
        // The last four characters match anywhere in the list of extensions: "a" in ".asp".
        {"www.a.test", false, true, false, false, {"http://www.a.test/a", "http://www.a.test/p.asp"}},
        {"HTTPS://a.test/",
         true,
         false,
         false,
         true,
         {"HTTPS://a.test/a.html", "HTTPS://a.test/b.htm", "HTTPS://a.test/x.shtml",
          "HTTPS://a.test/sub/s.HTM", "HTTPS://a.test/zub/t.htm"}},
        {"a.test",
         false,
         false,
         false,
         false,
         {"http://a.test/a", "http://a.test/a.html", "http://a.test/b.htm", "http://a.test/n.txt",
          "http://a.test/p.asp", "http://a.test/q.cgi", "http://a.test/x.shtml"}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.domain);
        list.clear();
        choice.txtDomain = test.domain;
        choice.html = test.html;
        choice.asp = test.asp;
        choice.cgi = test.cgi;
        choice.chkSubDirectory = test.below;
        EXPECT_EQ(addURLFromFolder(list, choice, prompts), !test.expected.empty());
        Strings expected = test.expected;
        if (test.html) std::erase(expected, "a");
        EXPECT_EQ(texts(list), expected);
    }
    EXPECT_EQ(list.at(1).tag, home.path("site/a.html"));
    EXPECT_EQ(prompts.shown.at(1).text, "In valid domain name. Please enter a correct domain name.");
    choice.asp = choice.cgi = true;
    EXPECT_EQ(extensionList(choice), ",.asp,.cgi");
    choice.folder = home.path("missing");
    EXPECT_FALSE(addURLFromFolder(list, choice, prompts));
    EXPECT_EQ(prompts.last().text.substr(0, 14), "AddURL_Error: ");
}

}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/Text.h"
#include "projects/UrlList.h"
#include "projects/UrlsFromFolder.h"
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

}  // namespace relay::test

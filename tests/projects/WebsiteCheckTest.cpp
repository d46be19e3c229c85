// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/UrlList.h"
#include "projects/WebsiteCheck.h"
#include "support/ScriptedPrompts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace relay::test {

namespace {

void fillAll(WebsiteFields& fields) {
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.field) fields.*key.field = " ";
    fields.txtURLTitle = fields.txtURLFileLocation = " ";
    fields.txtEmail = "a@";
    fields.chkBlockFFA = 1;
    addNewItem(fields.lsvSiteURLs, "http://a.test/");
}

}  // namespace

TEST(WebsiteCheckTest, TheCheckWarnsAndDoesNotForbid) {
    WebsiteFields fields;
    fillAll(fields);
    ScriptedPrompts prompts;
    EXPECT_TRUE(isValidFields(fields, prompts, nullptr));
    EXPECT_TRUE(prompts.shown.empty());

    fields.txtSiteDescription = "Two\r\nlines";
    EXPECT_EQ(breaksGetNotice(fields), "");
    fields.txtFax = "1\t2";
    EXPECT_EQ(breaksGetNotice(fields), "Fax" + std::string(kBreaksGet));
    fields.txtFax.clear();
    WebsiteTab shown = WebsiteTab::SiteInfo;
    prompts.answers = {false, true};
    const auto show = [&shown](const MissingField& missing) { shown = missing.tab; };
    EXPECT_FALSE(isValidFields(fields, prompts, show));
    EXPECT_TRUE(isValidFields(fields, prompts, show));
    EXPECT_EQ(shown, WebsiteTab::Contact);
    EXPECT_EQ(prompts.last().title, "Save WebSite Details");
    EXPECT_EQ(prompts.last().text,
              "Please enter your fax number, or use your phone nuber if no fax number available.\r\n"
              "Not all the engines use all of the data, however you will need to complete all the fields so "
              "the program can submit the appropriate data to the appropriate engines as required.\r\n\r\n"
              "Do you want to save anyway ?");
}

TEST(WebsiteCheckTest, AResetKeepsTheBlockBoxAndTheLocalFile) {
    WebsiteFields fields;
    fillAll(fields);
    fields.lblURLKeyword = "Keywords: (3 chars)";
    fields.clear();
    EXPECT_EQ(fields.cboLanguage, "English");
    EXPECT_EQ(fields.chkBlockFFA, 1);
    EXPECT_EQ(fields.txtURLFileLocation, " ");
    EXPECT_EQ(fields.lblURLKeyword, "Keywords:");
    EXPECT_TRUE(fields.lsvSiteURLs.empty());
    std::string rest = fields.txtURLTitle;
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.field && key.name != "Language") rest += fields.*key.field;
    EXPECT_EQ(rest, "");
}

}  // namespace relay::test

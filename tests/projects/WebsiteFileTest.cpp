// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Text.h"
#include "projects/UrlList.h"
#include "projects/WebsiteFile.h"
#include "projects/WebsiteKeys.h"
#include "support/CaseTable.h"
#include "support/SessionFixture.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace relay::test {

namespace {

using ::testing::HasSubstr;
using Strings = std::vector<std::string>;

// One website of a golden case: "key=value" lines with the keys of the file, "url=URL|local file" and
// "custom=engine|category|space" for the lists, \r and \n for line breaks.
struct GoldenSite final {
    WebsiteFields fields;
    CustomEngines customEngines;

    void set(const std::string& key, std::string value) {
        const WebsiteKey* const known = findWebsiteKey(key);
        std::string rest;
        if (key == "BlockFFA") {
            fields.chkBlockFFA = toInt16(leadingNumber(value));
        } else if (key == "open") {  // the index of the current custom engine, and its category
            SplitAtPipe(value, fields.txtCustomCategory);
            fields.cboCustomEngines = leadingInteger(value);
        } else if (key == "url") {
            SplitAtPipe(value, rest);
            addNewItem(fields.lsvSiteURLs, value, rest);
        } else if (key == "custom") {
            std::string space;
            SplitAtPipe(value, rest);
            SplitAtPipe(rest, space);
            customEngines.push_back({value, rest, space});
        } else if (known && known->field) {
            fields.*known->field = value;
        } else {
            throw std::runtime_error("no field for " + key);
        }
    }

    void read(const std::string& file) {
        std::istringstream lines(readFile(file));
        for (std::string line; std::getline(lines, line);) {
            const std::size_t equals = line.find('=');
            set(line.substr(0, equals),
                replaceAll(replaceAll(line.substr(equals + 1), "\\r", "\r"), "\\n", "\n"));
        }
    }
};

class WebsiteFileTest : public ::testing::Test {
  protected:
    TestHome home;
    ScriptedPrompts prompts;
    WebsiteFile website{prompts};
    WebsiteFields fields;
    CustomEngines customEngines;

    bool load(const std::string& path) {
        return website.loadWebsiteFile(path, fields, customEngines, nullptr);
    }
};

}  // namespace

TEST_F(WebsiteFileTest, SavesEachGoldenSiteByteForByte) {
    int cases = 0;
    for (const auto& folder : std::filesystem::directory_iterator(TEST_FOLDER "/golden")) {
        SCOPED_TRACE(folder.path().filename().string());
        const std::string path = home.path("site.kws");
        removeFile(path);
        if (fileExists((folder.path() / "before.kws").string()))
            home.write("site.kws", readFile((folder.path() / "before.kws").string()));
        GoldenSite site;
        site.read((folder.path() / "fields.txt").string());
        EXPECT_TRUE(website.saveWebsiteFile(path, site.fields, site.customEngines));
        const std::string saved = readFile(path);
        EXPECT_EQ(saved, readFile((folder.path() / "after.kws").string()));

        // The file loads and saves again to the same bytes.
        WebsiteFields again;
        ASSERT_TRUE(website.loadWebsiteFile(path, again, customEngines, nullptr));
        EXPECT_TRUE(website.saveWebsiteFile(path, again, customEngines));
        EXPECT_EQ(readFile(path), saved);
        ++cases;
    }
    EXPECT_GE(cases, 5);
    EXPECT_TRUE(prompts.shown.empty());
}

TEST_F(WebsiteFileTest, FollowsItsTable) {
    const auto loadUrls = [this](const Strings& in) {
        EXPECT_TRUE(load(home.write("site.kws", in[0])));
        EXPECT_EQ(fields.txtURLFileLocation, "");
        return joined(texts(fields.lsvSiteURLs));
    };
    playCases(TEST_FOLDER "/cases/website-file.txt",
              {{"load", loadUrls},
               {"replaceReports", [](const Strings& in) { return replaceReports(in[0], Rows()); }}});
    EXPECT_TRUE(load(home.path("missing.kws")));
    EXPECT_TRUE(prompts.shown.empty());
}

TEST_F(WebsiteFileTest, LoadReplacesEveryFieldAndCutsLongValues) {
    fields.txtSiteTitle = fields.txtFax = fields.txtURLTitle = fields.txtURLFileLocation = "of another site";
    fields.lblURLTitle = "Title: (4 chars)";
    fields.cboCustomEngines = 1;
    fields.txtCustomCategory = "Arts";
    customEngines = {{"One", "Arts", ""}, {"Two", "Sports", "id"}};
    const std::string path = home.write(
        "site.kws",
        "[Web Site Info]\r\nVersion=6.0\r\nDescription=" + std::string(600, 'd') +
            "\r\nMainCategory=Shopping\r\nCategory=Shoes\r\nLastReport=3\r\n[Report]\r\n"
            "URL1=http://a.test/\r\nDate1=Apr 01, 2002 13:05\r\nReportFile1=/r/a.html\r\n"
            "URL2=http://a.test/\r\nReportFile2=\r\nURL3=http://a.test/\r\nReportFile3=/r/b.html\r\n"
            "[CustomEngineCategory]\r\nOne=Saved\r\n[CustomEngine]\r\nTwo=Elsewhere\r\n");
    std::string askedFor;
    EXPECT_TRUE(website.loadWebsiteFile(path, fields, customEngines,
                                        [&](std::string& mainCategory, std::string& category) {
                                            askedFor = mainCategory + "/" + category;
                                            category.clear();
                                        }));
    EXPECT_EQ(fields.txtSiteTitle + fields.txtFax + fields.txtURLTitle + fields.txtURLFileLocation, "");
    EXPECT_EQ(fields.txtSiteDescription, std::string(559, 'd'));
    EXPECT_EQ(fields.lblURLTitle, "Title:");
    EXPECT_EQ(askedFor, "Shopping/Shoes");
    EXPECT_EQ(fields.mainCategory, "Shopping");
    EXPECT_EQ(fields.category, "");
    EXPECT_EQ(fields.cboCustomEngines, -1);
    EXPECT_EQ(customEngines[0].Data, "");
    EXPECT_EQ(customEngines[1].Data, "Elsewhere");
    ASSERT_EQ(fields.lsvReports.count(), 2);
    EXPECT_EQ(fields.lsvReports.at(0).subItems.at(0), "Apr 01, 2002 13:05");
    EXPECT_EQ(fields.lsvReports.at(1).tag, "/r/b.html");
}

TEST_F(WebsiteFileTest, CountsBeyondSixteenBitsOverflow) {
    const std::string path =
        home.write("site.kws", "[Web Site Info]\r\nTitle=T\r\nVersion=6.0\r\nLastURL=32768\r\n");
    EXPECT_FALSE(load(path));
    EXPECT_EQ(prompts.last().text, "Module: loadWebsiteFile\r\nOverflow");
    EXPECT_EQ(fields.txtSiteTitle, "T");
    for (int i = 0; i < 32767; ++i) addNewItem(fields.lsvSiteURLs, std::to_string(i));
    EXPECT_NO_THROW(SaveURL(path, fields.lsvSiteURLs));
    addNewItem(fields.lsvSiteURLs, "one too many");
    EXPECT_THROW(SaveURL(path, fields.lsvSiteURLs), Failure);
    EXPECT_EQ(getKey(path, "LastURL"), "32767");
}

// A website file can name any file of the user's as a report.
TEST_F(WebsiteFileTest, DeletesOnlyFilesInTheFolderOfReports) {
    const std::string folder = home.paths().reportFolder();
    const std::string report = home.write("Reports/Submition/a.html", "x");
    home.write("Reports/Submition-old/b.html", "x");
    const std::vector<std::string> strangers = {home.write("thesis.html", "x"), folder + "/../../thesis.html",
                                                folder + "-old/b.html", folder + "/link/thesis.html"};
    std::filesystem::create_directory_symlink(home.path(""), folder + "/link");
    std::string text = "[Web Site Info]\r\nLastReport=5\r\n[Report]\r\n";
    for (int i = 1; i <= 5; ++i)
        text += "URL" + std::to_string(i) + "=http://a.test/\r\nReportFile" + std::to_string(i) + "=" +
                (i == 1 ? report : strangers[static_cast<std::size_t>(i - 2)]) + "\r\n";
    const std::string path = home.write("site.kws", text);
    ASSERT_TRUE(load(path));
    for (int row = 0; row < 5; ++row) fields.lsvReports.setHighlighted(row, true);
    prompts.answers = {true};

    EXPECT_TRUE(website.DeleteReportFile(path, fields.lsvReports, folder));

    EXPECT_FALSE(fileExists(report));
    ASSERT_EQ(prompts.shown.size(), 2u);  // the question, and one message for all
    for (const std::string& stranger : strangers) {
        EXPECT_TRUE(fileExists(stranger)) << stranger;
        EXPECT_THAT(prompts.last().text, HasSubstr("\r\n" + stranger));
    }
    EXPECT_EQ(home.read("site.kws"), "[Web Site Info]\r\nLastReport=0\r\n[Report]\r\n");
}

TEST_F(WebsiteFileTest, KeysOfTheCommandLine) {
    const std::string path = home.path("site.kws");
    setKeys(path, {{"title", "T"}, {"Keyword", "a\r\nb"}, {"POSTCODE", "6000"}, {"Fax", "1\nVersion=x"}});
    EXPECT_EQ(getKey(path, "Title"), "T");
    EXPECT_EQ(getKey(path, "keyword"), "a b");
    EXPECT_EQ(getKey(path, "Fax"), "1");
    EXPECT_EQ(getKey(path, "Version"), "6.0");
    EXPECT_EQ(getKey(home.path("missing.kws"), "Title"), "");
    std::vector<std::string> written = IniFile::load(path).keys(kWebsiteSection);
    written.emplace_back("LastReport");
    Strings keys;
    for (const WebsiteKey& key : kWebsiteKeys) keys.emplace_back(key.name);
    EXPECT_EQ(written, keys);

    const std::string before = home.read("site.kws");
    for (const KeyValue& refused : {KeyValue{"Colour", "red"},
                                    {"LastURL", "9"},
                                    {"Version", "7"},
                                    {"LastReport", "1"},
                                    {"BlockFFA", "2"}})
        EXPECT_THROW(setKeys(path, {{"Title", "changed"}, refused}), Failure) << refused.key;
    EXPECT_THROW(getKey(path, "Colour"), Failure);
    EXPECT_EQ(home.read("site.kws"), before);
}

}  // namespace relay::test

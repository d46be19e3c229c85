// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Text.h"
#include "core/clsPreference.h"
#include "pagetools/Doorway.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace relay::test {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Every folder has a profile and what it comes to: the names of its pages, files.txt, and the text of them
// all, page.html. With RELAY_GOLDEN_UPDATE set these are written instead of compared.
class DoorwayGoldenTest : public testing::TestWithParam<std::string>, public SessionFixture {
  protected:
    std::string file(const char* name) const { return TEST_FOLDER "/doorway/" + GetParam() + "/" + name; }
    void expectFile(const char* name, const std::string& text) const {
        if (std::getenv("RELAY_GOLDEN_UPDATE") != nullptr)
            writeFile(file(name), text);
        else
            EXPECT_EQ(text, readFile(file(name))) << name;
    }
};

class DoorwayTest : public testing::Test, public SessionFixture {
  protected:
    DoorwayTest() { fill(); }

    void fill() {
        doorway.fields = {"Title",   {"one", "two", "three"}, "Description", "a.test", "", "", "", "Body", "",
                          "Company", home.path("out")};
        makeFolder(home.path("out"));
    }
    std::vector<std::string> kinds() const {
        std::vector<std::string> kinds;
        for (const auto& shown : prompts.shown) kinds.push_back(shown.kind);
        return kinds;
    }

    Doorway doorway{services};
};

}  // namespace

TEST_P(DoorwayGoldenTest, WritesItsPages) {
    home.write("Doorway/Profiles/case", readFile(file("profile")));
    Doorway doorway(services);
    ASSERT_TRUE(doorway.loadProfile("case"));
    std::string names;
    std::set<std::string> texts;
    for (const DoorwayFile& page : doorway.writePages()) {
        ASSERT_THAT(page.path, StartsWith(home.path("Doorway Pages/")));
        const std::string name = page.path.substr(home.path("Doorway Pages/").size());
        EXPECT_EQ(name.find('/'), npos);
        names += page.keyword + ": " + name + "\n";
        texts.insert(readFile(page.path));
    }
    ASSERT_EQ(texts.size(), 1U);
    expectFile("files.txt", names);
    expectFile("page.html", *texts.begin());
}

INSTANTIATE_TEST_SUITE_P(Folders, DoorwayGoldenTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/doorway")),
                         goldenName);

TEST_F(DoorwayTest, AsksForWhatIsMissingInOrder) {
    std::vector<std::pair<std::string*, const char*>> needed = {
        {&doorway.fields.txtTitle, "Please enter a title of your web site."},
        {&doorway.fields.txtKeywords[0], "Please enter at least 3 specific keywords for your web site."},
        {&doorway.fields.txtKeywords[1], "Please enter at least 3 specific keywords for your web site."},
        {&doorway.fields.txtKeywords[2], "Please enter at least 3 specific keywords for your web site."},
        {&doorway.fields.txtDescription, "Please enter a description of your web site."},
        {&doorway.fields.cboSiteURL, "Please enter a Website URL."},
        {&doorway.fields.txtSummary, "Please enter a summary of your web site."},
        {&doorway.fields.txtCompany, "Please enter your company name or the name of your web site."}};
    EXPECT_FALSE(doorway.ValidateFields());
    doorway.NewPage();
    EXPECT_EQ(doorway.fields.txtFileLocation + doorway.fields.cboSiteURL, "a.test") << "no text box";
    doorway.fields.cboSiteURL.clear();
    for (std::size_t i = 0; i < needed.size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(*doorway.Command1()), i);
        EXPECT_EQ(prompts.last().title + ": " + prompts.last().text,
                  std::string("Doorway Page: ") + needed[i].second);
        *needed[i].first = "x";
    }
    EXPECT_FALSE(doorway.ValidateFields());
}

TEST_F(DoorwayTest, CreatesAndOffersThePreview) {
    prompts.answers = {true};
    doorway.fields.txtKeywords[2] = "two words";
    EXPECT_FALSE(doorway.Command1());
    EXPECT_EQ(prompts.shown.front().text,
              "3 Dooryway pages have been created and saved into the following files: \r\n\r\n" +
                  home.path("out/one.html") + "\r\n" + home.path("out/two.html") + "\r\n" +
                  home.path("out/two_words.html") + "\r\n\r\nDo you want to preview your doorway page?");
    EXPECT_EQ(prompts.last().kind + prompts.last().text, "system" + home.path("out/one.html"));
    EXPECT_EQ(doorway.siteURLs(), std::vector<std::string>{"a.test"});
}

TEST_F(DoorwayTest, ShowsWhatAReaderSeesOfAnyPage) {
    EXPECT_THAT(doorway.readersText(), StartsWith("Title\nBody\nIf you need more information about two, "));
    for (int i = 0; i < 10000; ++i) doorway.fields.txtSummary += "<table><tr><td>";
    EXPECT_THAT(doorway.readersText(), testing::Not(HasSubstr("information")));
}

TEST_F(DoorwayTest, TwoProgramsKeepTheirListsSideBySide) {
    Doorway other(services);
    doorway.load();
    other.load();
    other.fields = doorway.fields;
    for (auto* one : {&doorway, &other}) {
        one->fields.cboSiteURL = one == &other ? "other.test" : "a.test";
        one->cboProfile = one == &other ? "his" : "hers";
        EXPECT_FALSE(one->Command1());
    }
    doorway.fields.cboSiteURL = "  ";
    EXPECT_FALSE(doorway.Command1());
    doorway.unload();
    other.unload();
    doorway.load();
    EXPECT_EQ(doorway.siteURLs(), (std::vector<std::string>{"other.test", "a.test"}));
    EXPECT_EQ(doorway.profiles(), (std::vector<std::string>{"his", "hers"}));
}

TEST_F(DoorwayTest, KeepsNamesInsideTheFolder) {
    for (const char* keyword : {"../x", "..", "a/b", "a\\b", "a\r\nb", "\x01", "/etc/passwd", "~/x"}) {
        const std::string name = doorwayFileName(keyword);
        EXPECT_EQ(name.find_first_of("/\\\r\n\x01"), npos) << name;
        EXPECT_NE(name.front(), '.') << name;
    }
    EXPECT_EQ(doorwayFileName("a b  c"), "a_b__c.html");
    EXPECT_EQ(doorwayFileName("a.b*[x]"), "a.b*[x].html");
    EXPECT_LE(doorwayFileName(std::string(3000, 'x')).size(), 205U);
    // Two long keywords stay two pages.
    EXPECT_NE(doorwayFileName(std::string(3000, 'x')), doorwayFileName(std::string(3001, 'x')));
}

TEST_F(DoorwayTest, FallsBackToItsOwnFolderAndTellsAFailure) {
    doorway.fields.txtFileLocation = home.write("file", "x");
    EXPECT_EQ(doorway.plannedFiles().front().path, home.path("Doorway Pages/one.html"));
    doorway.fields.txtFileLocation = home.path("none");
    EXPECT_EQ(doorway.plannedFiles().front().path, home.path("Doorway Pages/one.html"));
    // A link to a folder is followed; a link in place of a page is replaced, not written through.
    std::filesystem::create_directory_symlink(home.path("out"), home.path("link"));
    doorway.fields.txtFileLocation = home.path("link");
    const std::string target = home.write("target", "kept");
    std::filesystem::create_symlink(target, home.path("out/one.html"));
    prompts.answers = {false};
    EXPECT_TRUE(doorway.CreatePage());
    EXPECT_EQ(readFile(target), "kept");
    EXPECT_THAT(home.read("out/one.html"), StartsWith("<!--Title-->\r\n<!--one,two,three-->\r\n"));
    // A folder in place of the second page.
    removeFile(home.path("out/two.html"));
    makeFolder(home.path("out/two.html"));
    EXPECT_FALSE(doorway.CreatePage());
    EXPECT_EQ(prompts.last().title, "Create Doorway Page");
    EXPECT_THAT(prompts.last().text, StartsWith("CreateDoorway_Error: "));
    // A full disk leaves every page whole.
    const std::string before = home.read("out/one.html");
    doorway.fields.txtTitle = "Other";
    const SaveFault old = setSaveFault([](SaveStep step) { return step == SaveStep::Flush ? ENOSPC : 0; });
    EXPECT_FALSE(doorway.CreatePage());
    setSaveFault(old);
    EXPECT_EQ(home.read("out/one.html"), before);
}

TEST_F(DoorwayTest, SavesAndLoadsProfiles) {
    doorway.fields.txtSummary = "first\r\nsecond\nthird";
    doorway.fields.txtSubTitle2 = "  kept blanks are not  ";
    prompts.inputs = {std::nullopt, "shop"};
    EXPECT_FALSE(doorway.saveProfile());
    EXPECT_TRUE(doorway.saveProfile());
    EXPECT_EQ(doorway.cboProfile, "shop");
    EXPECT_THAT(home.read("Doorway/Profiles/shop"),
                testing::AllOf(StartsWith("[Doorway Page]\r\nTitle=Title\r\nKeyword1=one\r\n"),
                               HasSubstr("\r\nBody=first second third\r\n")));
    prompts.answers = {false, true};
    doorway.fields.txtTitle = "New";
    EXPECT_FALSE(doorway.saveProfile());
    EXPECT_EQ(prompts.last().text, "The profile name 'shop' already exist, do you want to overwrite ?");
    EXPECT_THAT(home.read("Doorway/Profiles/shop"), HasSubstr("Title=Title\r\n"));
    EXPECT_TRUE(doorway.saveProfile());
    doorway.NewPage();
    EXPECT_TRUE(doorway.loadProfile("none"));
    EXPECT_EQ(doorway.fields.txtTitle, "");
    EXPECT_TRUE(doorway.loadProfile("shop"));
    EXPECT_EQ(doorway.fields.txtTitle + doorway.fields.txtSummary, "Newfirst second third");
    EXPECT_EQ(doorway.fields.txtFileLocation, home.path("out"));
    // Names that would leave the folder, and a long text that is not loaded whole again.
    doorway.cboProfile = "../../evil";
    EXPECT_FALSE(doorway.saveProfile());
    EXPECT_EQ(prompts.last().title, "Save Profile");
    EXPECT_FALSE(doorway.loadProfile("../../settings.ini"));
    EXPECT_EQ(prompts.last().title, "Get Profile");
    doorway.cboProfile = "long";
    doorway.fields.txtSummary = std::string(1500, 'x');
    EXPECT_TRUE(doorway.saveProfile());
    EXPECT_THAT(prompts.notices.back(), HasSubstr("all of Body, but only 1499"));
    EXPECT_TRUE(doorway.loadProfile("long"));
    EXPECT_EQ(doorway.fields.txtSummary.size(), 1499U);

    doorway.unload();
    Doorway later(services);
    later.load();
    EXPECT_EQ(later.profiles(), (std::vector<std::string>{"long", "shop"}));
    EXPECT_EQ(later.fields.txtFileLocation, home.path("out"));
}

}  // namespace relay::test

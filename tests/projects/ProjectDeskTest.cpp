// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "projects/OpenWebsite.h"
#include "projects/ProjectDesk.h"
#include "projects/UrlList.h"
#include "projects/WebsiteFile.h"
#include "support/SessionFixture.h"

#include <QAbstractItemModelTester>

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace relay::test {

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class ProjectDeskTest : public ::testing::Test, protected SessionFixture {
  protected:
    OpenWebsite website{catalogue, prompts};
    ProjectDesk desk{services, website};
    ProjectTree& tree = desk.tree();
    WebsiteFields& fields = website.fields;
    QAbstractItemModelTester tester{&tree, QAbstractItemModelTester::FailureReportingMode::Fatal};

    ProjectNode& node(const std::string& key) {
        ProjectNode* const found = tree.find("Root\\" + key);
        if (!found) throw std::runtime_error("no node " + key);
        return *found;
    }
    void make(NewNode kind, const std::string& name) {
        prompts.inputs = {name};
        desk.NewProjectAndWeb(kind);
    }
    // Project "Shop" with the saved websites "Home" and "Sale", shown in this order.
    void makeShop() {
        make(NewNode::Project, "Shop");
        for (const char* name : {"Home", "Sale"}) {
            make(NewNode::Website, name);
            fields.txtSiteTitle = std::string("title of ") + name;
            EXPECT_TRUE(desk.autoSave());
        }
    }
    std::string index() const { return home.read("project.kwj"); }
    std::string titleInFile(const std::string& name) const {
        return ReadIniValue(home.path("Projects/" + name + ".kws"), "Web Site Info", "Title");
    }
    std::string kwsPath(const std::string& name) const { return home.path("Projects/" + name + ".kws"); }
};

}  // namespace

TEST_F(ProjectDeskTest, ANewProjectAndItsWebsitesReachTheTreeTheIndexAndTheirFiles) {
    makeShop();
    EXPECT_EQ(index(), "[Shop]\r\nDescription=\r\nLast=2\r\n1=Home|" + kwsPath("Home") + "\r\n2=Sale|" +
                           kwsPath("Sale") + "\r\n");
    EXPECT_EQ(node("shop\\SALE").tag, "2|" + kwsPath("Sale"));
    EXPECT_EQ(node("Shop").image, kProjectFolder);
    EXPECT_EQ(desk.panels().panel, MainPanel::Website);
    EXPECT_TRUE(desk.panels().saveEnabled);
    EXPECT_EQ(fields.lsvSiteURLs.columnTitle(0), "Site URLs for: Sale");
    EXPECT_EQ(titleInFile("Home"), "title of Home");

    EXPECT_TRUE(desk.nodeClick(node("Shop\\Home")));
    EXPECT_EQ(fields.txtSiteTitle, "title of Home");
    EXPECT_TRUE(desk.nodeClick(node("Shop")));
    EXPECT_EQ(node("Shop").image, kProjectFolderOpen);
    desk.setProjectDescription("Spring\r\npages");
    EXPECT_TRUE(desk.nodeClick(tree.root()));
    EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "Description"), "Spring pages");
    EXPECT_EQ(node("Shop").tag, "Spring pages");
    EXPECT_TRUE(desk.panels().quickStartVisible);
    EXPECT_EQ(titleInFile("Home"), "title of Home");
    EXPECT_TRUE(std::filesystem::exists(kwsPath("Sale")));
}

TEST_F(ProjectDeskTest, NewNamesAreAskedForUntilTheyWillDo) {
    makeShop();
    const std::string before = index() + "[Hidden]\r\nLast=1\r\n1=Home|/h.kws\r\n";
    home.write("project.kwj", before);
    struct Case {
        NewNode kind;
        std::deque<std::optional<std::string>> inputs;
        const char* told;
    };
    const Case cases[] = {
        {NewNode::Project, {std::nullopt}, "Please specify a name for your new project:"},
        {NewNode::Website, {"   "}, "Please specify a name for your new web site:"},
        {NewNode::Website, {"a\"b"}, "\\ / : * ? < > |"},
        {NewNode::Project, {"a/b"}, "\\ / : * ? < > |"},
        {NewNode::Project,
         {" shop ", std::nullopt},
         "The name 'shop' is already exist, please choose a different name:"},
        {NewNode::Website,
         {"Home", "sale", ""},
         "The name 'sale' is already exist, please choose a different name:"},
        {NewNode::Project, {"a\r\n[b]"}, "NewProjectAndWeb_Error: "},
        {NewNode::Website, {"Home", "../../x"}, "NewProjectAndWeb_Error: "},
        {NewNode::Website, {std::string(300, 'n')}, "NewProjectAndWeb_Error: "},
        // It stands in the index, and the tree does not show it.
        {NewNode::Project,
         {"hidden", ""},
         "The name 'hidden' is already exist, please choose a different name:"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.told);
        prompts.inputs = test.inputs;
        desk.NewProjectAndWeb(test.kind);
        EXPECT_THAT(prompts.last().text, HasSubstr(test.told));
        EXPECT_TRUE(prompts.inputs.empty());
        EXPECT_EQ(index(), before);
        EXPECT_EQ(fields.txtSiteTitle, "title of Sale");  // stepping back leaves the open website as it is
        EXPECT_EQ(tree.count(), 4u);
    }
    make(NewNode::Project, "Blog");
    make(NewNode::Website, "home [new]");
    EXPECT_TRUE(tree.IsNodeExist("Root\\Blog\\Home [NEW]"));
}

TEST_F(ProjectDeskTest, RemovingFreesTheSlotAndKeepsTheFile) {
    makeShop();
    const std::string saved = home.read("Projects/Sale.kws");
    fields.txtSiteTitle = "typed after the last save";
    desk.removeSelectedNode(node("Shop\\Sale"));  // answered No
    EXPECT_EQ(tree.count(), 4u);
    prompts.answers = {true};
    desk.removeSelectedNode(node("Shop\\Sale"));
    EXPECT_EQ(prompts.last().text, "Are you sure you want to remove this web site : Sale ?");
    EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "2"), "");
    EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "Last"), "2");
    EXPECT_EQ(home.read("Projects/Sale.kws"), saved);
    EXPECT_EQ(desk.currentNode(), &node("Shop\\Home"));
    EXPECT_EQ(fields.txtSiteTitle, "title of Home");

    make(NewNode::Website, "Sale");  // the same path, so the old content loads
    EXPECT_EQ(node("Shop\\Sale").tag, "2|" + kwsPath("Sale"));
    EXPECT_EQ(fields.txtSiteTitle, "title of Sale");
    preference.DontClearFields = 1;
    make(NewNode::Website, "Copy");
    EXPECT_EQ(fields.txtSiteTitle, "title of Sale");

    prompts.answers = {true};
    desk.removeSelectedNode(node("Shop"));
    EXPECT_THAT(prompts.last().text, StartsWith("If you remove this project: Shop, all web sites"));
    EXPECT_EQ(desk.currentNode(), &tree.root());
    EXPECT_EQ(tree.count(), 1u);
    EXPECT_EQ(index(), "\r\n");
    EXPECT_EQ(home.read("Projects/Sale.kws"), saved);
    desk.removeSelectedNode(tree.root());
    EXPECT_EQ(prompts.last().kind, "beep");
}

TEST_F(ProjectDeskTest, RenamesKeepTheFileAndRefuseWhatIsTaken) {
    makeShop();
    make(NewNode::Project, "Alpha");
    int restarts = 0;
    QObject::connect(&desk, &ProjectDesk::labelEditWanted, [&restarts] { ++restarts; });
    desk.rename(node("Shop\\Sale"), "a:b");
    desk.rename(node("Shop\\Sale"), " HOME ");
    EXPECT_EQ(prompts.last().text,
              "Cannot rename 'Sale'. A file with the name you specified already exists, "
              "please specify a different name.");
    EXPECT_EQ(prompts.last().icon, Icon::Critical);
    EXPECT_EQ(restarts, 2);
    desk.rename(node("Shop\\Sale"), "  ");
    desk.rename(node("Shop\\Sale"), "Sale");
    desk.rename(node("Shop\\Sale"), " Autumn sale ");
    EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "2"), "Autumn sale|" + kwsPath("Sale"));
    EXPECT_EQ(node("Shop").children.front()->text, "Autumn sale");  // its level is sorted

    desk.rename(node("Alpha"), "Zebra");
    desk.rename(node("Shop"), "Store");
    EXPECT_TRUE(tree.IsNodeExist("Root\\Store\\Home"));
    EXPECT_EQ(tree.root().children.front()->text, "Store");
    EXPECT_EQ(tree.count(), 5u);
    EXPECT_THAT(index(), StartsWith("[Store]\r\n"));
    desk.rename(node("Store"), "a\r\n[b]");
    EXPECT_THAT(prompts.last().text, StartsWith("LableEdit_Error: "));
    EXPECT_EQ(restarts, 2);
}

TEST_F(ProjectDeskTest, LoadsTheIndexAndTheFirstClickSavesNothing) {
    home.write("Projects/Home.kws", "[Web Site Info]\r\nVersion=6.0\r\nTitle=on disk\r\n");
    home.write("project.kwj",
               "[Shop]\r\nDescription=d\r\nLast=4\r\n1=Home|" + kwsPath("Home") +
                   "\r\n3=Gone|/nowhere/gone.kws\r\n4=../x|\r\n[shop]\r\n[Blog]\r\nLast=abc\r\n");
    fields.txtSiteTitle = "left over";
    desk.loadProject();
    EXPECT_EQ(tree.count(), 6u);
    EXPECT_TRUE(desk.nodeClick(node("Shop\\Home")));
    EXPECT_EQ(fields.txtSiteTitle, "on disk");
    EXPECT_EQ(titleInFile("Home"), "on disk");
    EXPECT_TRUE(desk.nodeClick(node("Shop\\Gone")));  // its file is missing: an empty panel
    EXPECT_EQ(fields.txtSiteTitle, "");
    // It cannot be saved where it should be: nothing was typed, so the user is told and may go on.
    EXPECT_TRUE(desk.nodeClick(node("Shop\\Home")));
    EXPECT_TRUE(desk.nodeClick(node("Shop\\Gone")));
    fields.txtSiteTitle = "typed";
    EXPECT_FALSE(desk.nodeClick(node("Shop\\Home")));
    EXPECT_EQ(prompts.shown.size(), 2u);
}

TEST_F(ProjectDeskTest, ANameFromTheIndexNeverLeavesTheFolder) {
    home.write("project.kwj", "[Shop]\r\nLast=1\r\n1=../x|\r\n");
    desk.loadProject();
    EXPECT_TRUE(desk.nodeClick(node("Shop\\../x")));
    fields.txtSiteTitle = "typed";
    EXPECT_FALSE(desk.autoSave());
    EXPECT_THAT(prompts.last().text, StartsWith("autoSave_Error: "));
    EXPECT_FALSE(std::filesystem::exists(home.path("x.kws")));
}

TEST_F(ProjectDeskTest, WhileSavingFailsTheUserIsToldOnceAndNothingTypedIsLost) {
    makeShop();
    addNewItem(fields.lsvSiteURLs, "http://a.test/");
    EXPECT_TRUE(desk.autoSave());
    const std::function<void()> edits[] = {
        [this] { fields.txtSiteTitle = "typed"; }, [this] { fields.txtPassword = "typed"; },
        [this] { fields.chkBlockFFA = 1; }, [this] { fields.lsvSiteURLs.setTag(0, "/local.htm"); },
        [this] { addNewItem(fields.lsvSiteURLs, "http://b.test/"); }};
    for (const auto& edit : edits) {
        edit();
        prompts.shown.clear();
        prompts.statuses.clear();
        setSaveFault([](SaveStep) { return EROFS; });
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(desk.nodeClick(node("Shop\\Home")));
        desk.showEngines();
        setSaveFault({});
        EXPECT_EQ(desk.panels().panel, MainPanel::Engines);
        EXPECT_EQ(prompts.shown.size(), 1u);
        EXPECT_THAT(prompts.last().text, StartsWith("Module: saveWebsiteFile: "));
        EXPECT_EQ(prompts.statuses.size(), 3u);
        EXPECT_TRUE(desk.autoSave());
    }
    EXPECT_EQ(titleInFile("Sale"), "typed");

    // What the Save command saved is safe, whatever becomes of the folder.
    const std::string path = home.write("usb/Old.kws", "[Web Site Info]\r\nVersion=6.0\r\n");
    prompts.files = {{path, 1}};
    desk.fileItem(6);
    fields.txtSiteTitle = "saved by hand";
    EXPECT_TRUE(desk.saveWebSite(desk.webFile()));
    std::filesystem::remove_all(home.path("usb"));
    EXPECT_TRUE(desk.nodeClick(node("Shop\\Home")));
}

TEST_F(ProjectDeskTest, AFailedIndexIsToldInItsOwnWordsAndLeavesTheTree) {
    makeShop();
    make(NewNode::Project, "Alpha");
    const std::string before = index();
    const std::string path = home.write("else/Old.kws", "");
    struct Case {
        const char* words;
        std::function<void()> operation;
    };
    const Case cases[] = {
        {"addNewProject_Error:/", [&] { make(NewNode::Project, "New"); }},
        {"addNewProject_Error:/", [&] { make(NewNode::Website, "New"); }},
        {"addNewProject_Error:/",
         [&] {
             prompts.files = {{path, 1}}, desk.addWebSite();
         }},
        {"editProjectFile_Error: /", [&] { desk.rename(node("Shop"), "New"); }},
        {"LableEdit_Error: /", [&] { desk.rename(node("Shop\\Sale"), "New"); }},
        {"removeProject_Error: /", [&] { prompts.answers = {true}, desk.removeSelectedNode(node("Shop")); }},
        {"removeSelectedNode_Error: /",
         [&] { prompts.answers = {true}, desk.removeSelectedNode(node("Shop\\Sale")); }},
        {"autoSave_Error: /", [&] { EXPECT_TRUE(desk.autoSave()); }},  // a description that nobody touched
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.words);
        prompts.shown.clear();
        setSaveFault([](SaveStep) { return EROFS; });
        test.operation();
        setSaveFault({});
        EXPECT_THAT(prompts.last().text, StartsWith(test.words));
        EXPECT_LE(prompts.shown.size(), 2u);  // at most a question before it
        EXPECT_EQ(prompts.last().title + tree.root().children.front()->text, "ErrorShop");
        EXPECT_EQ(tree.count(), 5u);
        EXPECT_EQ(index(), before);
    }
}

TEST_F(ProjectDeskTest, WhatAnotherProgramWroteIsNotUndone) {
    makeShop();
    ProjectNode& sale = node("Shop\\Sale");
    const auto elsewhere = [this](const char* title) { setKeys(kwsPath("Sale"), {{"Title", title}}); };
    // Nothing was typed: the file is read again, and left as it is. The same size in the same second.
    elsewhere("title of Sals");
    EXPECT_TRUE(desk.autoSave());
    EXPECT_EQ(fields.txtSiteTitle, "title of Sals");
    elsewhere("title of Salt");
    EXPECT_TRUE(desk.saveWebSite(desk.webFile()));
    EXPECT_EQ(titleInFile("Sale"), "title of Salt");
    EXPECT_EQ(fields.txtSiteTitle, "title of Salt");
    prompts.shown.clear();

    // Something was: save over the file, drop what was typed, or neither.
    struct Case {
        std::deque<bool> answers;
        bool leaves;
        const char* title;
        std::size_t asked;
    };
    for (const bool damaged : {false, true}) {
        const Case cases[] = {{{false, false}, false, "elsewhere", 2},
                              {{false, true}, true, "elsewhere", 2},
                              {{true}, true, "typed", 1}};
        for (const Case& test : cases) {
            SCOPED_TRACE(test.asked + (test.leaves ? 10u : 0u) + (damaged ? 100u : 0u));
            if (!damaged) elsewhere("before");
            if (damaged)
                home.write("Projects/Sale.kws", "[Web Site Info]\r\nTitle=elsewhere\r\nLastURL=40000\r\n");
            EXPECT_TRUE(desk.nodeClick(tree.root()));
            EXPECT_TRUE(desk.nodeClick(sale));
            EXPECT_EQ(prompts.shown.size(), damaged ? 1u : 0u);
            prompts.shown.clear();
            fields.txtSiteTitle = "typed";
            if (!damaged) elsewhere("elsewhere");
            prompts.answers = test.answers;
            EXPECT_EQ(desk.nodeClick(node("Shop\\Home")), test.leaves);
            EXPECT_EQ(titleInFile("Sale"), test.title);
            std::size_t asked = 0;
            for (const auto& box : prompts.shown) asked += box.kind == "ask";
            EXPECT_EQ(asked, test.asked);
            EXPECT_EQ(prompts.shown.front().text,
                      "The file " + kwsPath("Sale") +
                          (damaged ? " could not be read to its end. A save writes over what was not read."
                                   : " was changed by another program since this window read it.") +
                          "\r\n\r\nDo you want to save what this window shows over it?");
            if (!test.leaves) {
                EXPECT_EQ(fields.txtSiteTitle, "typed");
                prompts.answers = {false, true};
                EXPECT_TRUE(desk.nodeClick(tree.root()));
            }
            prompts.shown.clear();
        }
    }
}

TEST_F(ProjectDeskTest, AFileThatLoadedInPartIsNotSavedByItself) {
    makeShop();
    const std::string damaged = "[Web Site Info]\r\nTitle=damaged\r\nLastURL=99999\r\n";
    home.write("Projects/Home.kws", damaged);
    fields.txtPhone = "of another website";
    EXPECT_TRUE(desk.nodeClick(node("Shop\\Home")));
    EXPECT_EQ(prompts.last().text, "Module: loadWebsiteFile\r\nOverflow");
    EXPECT_EQ(fields.txtSiteTitle + fields.txtPhone, "damaged");
    EXPECT_TRUE(desk.nodeClick(node("Shop\\Sale")));
    EXPECT_EQ(home.read("Projects/Home.kws"), damaged);
}

TEST_F(ProjectDeskTest, SaveAsAsksAndMovesTheWebsite) {
    makeShop();
    prompts.files = {{home.path("other"), 1}, {home.path("other"), 2}, {home.path("other"), 3}, {}};
    for (const char* file : {"other.kws", "other.txt", "other"}) {
        EXPECT_TRUE(desk.saveWebSite("")) << file;
        EXPECT_EQ(node("Shop\\Sale").tag, "2|" + home.path(file));
        EXPECT_EQ(desk.webFile(), home.path(file));
        EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "2"), "Sale|" + home.path(file));
    }
    EXPECT_FALSE(desk.saveWebSite(""));
    prompts.files = {{home.path("other.kws"), 1}};
    EXPECT_FALSE(desk.saveWebSite(""));
    EXPECT_EQ(prompts.last().text,
              "The file " + home.path("other.kws") + " already exists.\r\nDo you want to replace it?");
    EXPECT_EQ(desk.webFile(), home.path("other"));
}

TEST_F(ProjectDeskTest, AnExistingFileJoinsTheProjectAndLoads) {
    makeShop();
    const std::string path = home.write("else/Old.kws", "[Web Site Info]\r\nVersion=6.0\r\nTitle=old\r\n");
    prompts.files = {{path, 1}, {path, 1}, {home.write("else/a|b.kws", ""), 1}, {}};
    desk.fileItem(6);
    EXPECT_EQ(node("Shop\\Old.kws").tag, "3|" + path);
    EXPECT_EQ(fields.txtSiteTitle, "old");
    desk.fileItem(6);
    EXPECT_EQ(prompts.last().text, "The file you try to add already exists, please choose a different file.");
    EXPECT_EQ(prompts.last().icon, Icon::Critical);
    desk.fileItem(6);
    EXPECT_EQ(prompts.last().title, "New WebProject and WebSite");
    EXPECT_EQ(tree.count(), 5u);
    desk.fileItem(6);
    EXPECT_TRUE(desk.nodeClick(tree.root()));
    EXPECT_EQ(IniFile::load(path).value("Web Site Info", "Title"), "old");
}

TEST_F(ProjectDeskTest, MenusFollowTheNode) {
    const auto enabled = [this] {
        std::string items;
        for (const int index : {0, 1, 3, 4, 6, 7, 8, 10, 12, 13, 15})
            if (desk.fileItemEnabled(index)) items += std::to_string(index) + " ";
        return items;
    };
    EXPECT_EQ(enabled(), "0 12 13 15 ");
    desk.fileItem(3);
    EXPECT_EQ(prompts.last().text,
              "You can add website to the Root item. Please select a web project and try again.");
    EXPECT_EQ(prompts.last().icon, Icon::Critical);
    make(NewNode::Project, "Shop");
    EXPECT_EQ(enabled(), "0 1 3 6 10 12 13 15 ");
    make(NewNode::Website, "Home");
    EXPECT_EQ(enabled(), "0 1 3 4 6 7 8 10 12 13 15 ");

    // The check warns: without a yes nothing is saved.
    std::string missing;
    QObject::connect(&desk, &ProjectDesk::fieldMissing,
                     [&missing](const MissingField& field) { missing = field.control; });
    desk.toolbarSave();
    EXPECT_EQ(missing, "txtSiteTitle");
    EXPECT_FALSE(fileExists(kwsPath("Home")));
    prompts.answers = {true};
    desk.toolbarSave();
    EXPECT_TRUE(fileExists(kwsPath("Home")));

    desk.showEngines();
    EXPECT_FALSE(desk.panels().saveEnabled);
    EXPECT_EQ(enabled(), "0 1 3 4 6 10 12 13 15 ");
}

}  // namespace relay::test

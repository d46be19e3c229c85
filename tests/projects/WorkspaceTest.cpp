// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "projects/OpenWebsite.h"
#include "projects/UrlList.h"
#include "projects/WebsiteKeys.h"
#include "projects/Workspace.h"
#include "support/SessionFixture.h"

#include <QAbstractItemModelTester>

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace relay::test {

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class WorkspaceTest : public ::testing::Test, protected SessionFixture {
  protected:
    OpenWebsite website{catalogue, services};
    Workspace workspace{services, website};
    ProjectTree& tree = workspace.tree();
    WebsiteFields& fields = website.fields;
    QAbstractItemModelTester tester{&tree, QAbstractItemModelTester::FailureReportingMode::Fatal};

    ProjectNode& node(const std::string& key) {
        ProjectNode* const found = tree.find("Root\\" + key);
        if (!found) throw std::runtime_error("no node " + key);
        return *found;
    }
    void ask(NodeKind kind) {
        if (kind == NodeKind::Project)
            workspace.newProject();
        else
            workspace.newWebsite();
    }
    void make(NodeKind kind, const std::string& name) {
        prompts.inputs = {name};
        ask(kind);
    }
    // Project "Shop" with the saved websites "Home" and "Sale", shown in this order.
    void makeShop() {
        make(NodeKind::Project, "Shop");
        for (const char* name : {"Home", "Sale"}) {
            make(NodeKind::Website, name);
            fields.txtSiteTitle = std::string("title of ") + name;
            EXPECT_TRUE(workspace.autoSave());
        }
    }
    std::string place(const std::string& key) {
        return std::to_string(node(key).slot) + "|" + node(key).file;
    }
    std::string index() const { return home.read("project.kwj"); }
    std::string titleInFile(const std::string& name) const {
        return ReadIniValue(home.path("Projects/" + name + ".kws"), "Web Site Info", "Title");
    }
    std::string kwsPath(const std::string& name) const { return home.path("Projects/" + name + ".kws"); }
};

}  // namespace

TEST_F(WorkspaceTest, ANewProjectAndItsWebsitesReachTheTreeTheIndexAndTheirFiles) {
    makeShop();
    EXPECT_EQ(index(), "[Shop]\r\nDescription=\r\nLast=2\r\n1=Home|" + kwsPath("Home") + "\r\n2=Sale|" +
                           kwsPath("Sale") + "\r\n");
    EXPECT_EQ(place("shop\\SALE"), "2|" + kwsPath("Sale"));
    EXPECT_EQ(node("Shop").image(), "ProjectFolder");
    EXPECT_EQ(workspace.panels().panel, MainPanel::Website);
    EXPECT_EQ(fields.lsvSiteURLs.columnTitle(0), "Site URLs for: Sale");
    EXPECT_EQ(titleInFile("Home"), "title of Home");

    EXPECT_TRUE(workspace.nodeClick(node("Shop\\Home")));
    EXPECT_EQ(fields.txtSiteTitle, "title of Home");
    EXPECT_TRUE(workspace.nodeClick(node("Shop")));
    EXPECT_EQ(node("Shop").image(), "ProjectFolderOpen");
    workspace.setProjectDescription("Spring\r\npages");
    EXPECT_TRUE(workspace.nodeClick(tree.root()));
    EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "Description"), "Spring pages");
    EXPECT_EQ(node("Shop").description, "Spring pages");
    EXPECT_EQ(workspace.panels().node, NodeKind::Root);
    EXPECT_EQ(titleInFile("Home"), "title of Home");
    EXPECT_TRUE(std::filesystem::exists(kwsPath("Sale")));
}

TEST_F(WorkspaceTest, NewNamesAreAskedForUntilOneIsFree) {
    makeShop();
    const std::string before = index() + "[Hidden]\r\nLast=1\r\n1=Home|/h.kws\r\n";
    home.write("project.kwj", before);
    struct Case {
        NodeKind kind;
        std::deque<std::optional<std::string>> inputs;
        const char* words;
    };
    const Case cases[] = {
        {NodeKind::Project, {std::nullopt}, "Please specify a name for your new project:"},
        {NodeKind::Website, {"   "}, "Please specify a name for your new web site:"},
        {NodeKind::Website, {"a\"b"}, "\\ / : * ? < > |"},
        {NodeKind::Project, {"a/b"}, "\\ / : * ? < > |"},
        {NodeKind::Project,
         {" shop ", std::nullopt},
         "The name 'shop' is already exist, please choose a different name:"},
        {NodeKind::Website,
         {"Home", "sale", ""},
         "The name 'sale' is already exist, please choose a different name:"},
        {NodeKind::Project, {"a\r\n[b]"}, "NewProjectAndWeb_Error: "},
        {NodeKind::Website, {"Home", "../../x"}, "NewProjectAndWeb_Error: "},
        {NodeKind::Website, {std::string(300, 'n')}, "NewProjectAndWeb_Error: "},
        // It is in the index, but not in the tree.
        {NodeKind::Project,
         {"hidden", ""},
         "The name 'hidden' is already exist, please choose a different name:"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.words);
        prompts.inputs = test.inputs;
        ask(test.kind);
        EXPECT_THAT(prompts.last().text, HasSubstr(test.words));
        EXPECT_TRUE(prompts.inputs.empty());
        EXPECT_EQ(index(), before);
        EXPECT_EQ(fields.txtSiteTitle, "title of Sale");  // cancelling leaves the open website as it is
        EXPECT_EQ(tree.count(), 4u);
    }
    make(NodeKind::Project, "Blog");
    make(NodeKind::Website, "home [new]");
    EXPECT_TRUE(tree.IsNodeExist("Root\\Blog\\Home [NEW]"));
}

TEST_F(WorkspaceTest, RemovingFreesTheSlotAndKeepsTheFile) {
    makeShop();
    const std::string saved = home.read("Projects/Sale.kws");
    fields.txtSiteTitle = "typed after the last save";
    workspace.removeSelectedNode(node("Shop\\Sale"));  // answered No
    EXPECT_EQ(tree.count(), 4u);
    prompts.answers = {true};
    workspace.removeSelectedNode(node("Shop\\Sale"));
    EXPECT_EQ(prompts.last().text, "Are you sure you want to remove this web site : Sale ?");
    EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "2"), "");
    EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "Last"), "2");
    EXPECT_EQ(home.read("Projects/Sale.kws"), saved);
    EXPECT_EQ(workspace.currentNode(), &node("Shop\\Home"));
    EXPECT_EQ(fields.txtSiteTitle, "title of Home");

    make(NodeKind::Website, "Sale");  // the same path, so the old content loads
    EXPECT_EQ(place("Shop\\Sale"), "2|" + kwsPath("Sale"));
    EXPECT_EQ(fields.txtSiteTitle, "title of Sale");
    preference.DontClearFields = 1;
    make(NodeKind::Website, "Copy");
    EXPECT_EQ(fields.txtSiteTitle, "title of Sale");

    prompts.answers = {true};
    workspace.removeSelectedNode(node("Shop"));
    EXPECT_THAT(prompts.last().text, StartsWith("If you remove this project: Shop, all web sites"));
    EXPECT_EQ(workspace.currentNode(), &tree.root());
    EXPECT_EQ(tree.count(), 1u);
    EXPECT_EQ(index(), "\r\n");
    EXPECT_EQ(home.read("Projects/Sale.kws"), saved);
    workspace.removeSelectedNode(tree.root());
    EXPECT_EQ(prompts.last().kind, "beep");
}

TEST_F(WorkspaceTest, RenamesKeepTheFileAndRefuseWhatIsTaken) {
    makeShop();
    make(NodeKind::Project, "Alpha");
    int restarts = 0;
    QObject::connect(&workspace, &Workspace::labelEditWanted, [&restarts] { ++restarts; });
    workspace.rename(node("Shop\\Sale"), "a:b");
    workspace.rename(node("Shop\\Sale"), " HOME ");
    EXPECT_EQ(prompts.last().text,
              "Cannot rename 'Sale'. A file with the name you specified already exists, "
              "please specify a different name.");
    EXPECT_EQ(prompts.last().icon, Icon::Critical);
    EXPECT_EQ(restarts, 2);
    workspace.rename(node("Shop\\Sale"), "  ");
    workspace.rename(node("Shop\\Sale"), "Sale");
    workspace.rename(node("Shop\\Sale"), " Autumn sale ");
    EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "2"), "Autumn sale|" + kwsPath("Sale"));
    EXPECT_EQ(node("Shop").children.front()->text, "Autumn sale");  // its level is sorted

    workspace.rename(node("Alpha"), "Zebra");
    workspace.rename(node("Shop"), "Store");
    EXPECT_TRUE(tree.IsNodeExist("Root\\Store\\Home"));
    EXPECT_EQ(tree.root().children.front()->text, "Store");
    EXPECT_EQ(tree.count(), 5u);
    EXPECT_THAT(index(), StartsWith("[Store]\r\n"));
    workspace.rename(node("Store"), "a\r\n[b]");
    EXPECT_THAT(prompts.last().text, StartsWith("LableEdit_Error: "));
    EXPECT_EQ(restarts, 2);
}

TEST_F(WorkspaceTest, LoadsTheIndexAndTheFirstClickSavesNothing) {
    home.write("Projects/Home.kws", "[Web Site Info]\r\nVersion=6.0\r\nTitle=on disk\r\n");
    home.write("project.kwj",
               "[Shop]\r\nDescription=d\r\nLast=4\r\n1=Home|" + kwsPath("Home") +
                   "\r\n3=Gone|/nowhere/gone.kws\r\n4=../x|\r\n[shop]\r\n[Blog]\r\nLast=abc\r\n");
    fields.txtSiteTitle = "left over";
    workspace.loadProject();
    EXPECT_EQ(tree.count(), 6u);
    EXPECT_TRUE(workspace.nodeClick(node("Shop\\Home")));
    EXPECT_EQ(fields.txtSiteTitle, "on disk");
    EXPECT_EQ(titleInFile("Home"), "on disk");
    EXPECT_TRUE(workspace.nodeClick(node("Shop\\Gone")));  // its file is missing: an empty panel
    EXPECT_EQ(fields.txtSiteTitle, "");
    // It cannot be saved there, but nothing was typed: the failure is shown and the user may go on.
    EXPECT_TRUE(workspace.nodeClick(node("Shop\\Home")));
    EXPECT_TRUE(workspace.nodeClick(node("Shop\\Gone")));
    fields.txtSiteTitle = "typed";
    EXPECT_FALSE(workspace.nodeClick(node("Shop\\Home")));
    EXPECT_EQ(prompts.shown.size(), 2u);
}

TEST_F(WorkspaceTest, ANameFromTheIndexNeverLeavesTheFolder) {
    home.write("project.kwj", "[Shop]\r\nLast=1\r\n1=../x|\r\n");
    workspace.loadProject();
    EXPECT_TRUE(workspace.nodeClick(node("Shop\\../x")));
    fields.txtSiteTitle = "typed";
    EXPECT_FALSE(workspace.autoSave());
    EXPECT_THAT(prompts.last().text, StartsWith("autoSave_Error: "));
    EXPECT_FALSE(std::filesystem::exists(home.path("x.kws")));
}

TEST_F(WorkspaceTest, WhileSavingFailsOneBoxShowsItAndNothingTypedIsLost) {
    makeShop();
    addNewItem(fields.lsvSiteURLs, "http://a.test/");
    EXPECT_TRUE(workspace.autoSave());
    const std::function<void()> edits[] = {
        [this] { fields.txtSiteTitle = "typed"; }, [this] { fields.txtPassword = "typed"; },
        [this] { fields.chkBlockFFA = 1; }, [this] { fields.lsvSiteURLs.setTag(0, "/local.htm"); },
        [this] { addNewItem(fields.lsvSiteURLs, "http://b.test/"); }};
    for (const auto& edit : edits) {
        edit();
        prompts.shown.clear();
        prompts.statuses.clear();
        setSaveFault([](SaveStep) { return EROFS; });
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(workspace.nodeClick(node("Shop\\Home")));
        workspace.showEngines();
        setSaveFault({});
        EXPECT_EQ(workspace.panels().panel, MainPanel::Engines);
        EXPECT_EQ(prompts.shown.size(), 1u);
        EXPECT_THAT(prompts.last().text, StartsWith("Module: saveWebsiteFile: "));
        EXPECT_EQ(prompts.statuses.size(), 3u);
        EXPECT_TRUE(workspace.autoSave());
    }
    EXPECT_EQ(titleInFile("Sale"), "typed");

    // What the Save command saved is safe, even if the folder disappears.
    const std::string path = home.write("usb/Old.kws", "[Web Site Info]\r\nVersion=6.0\r\n");
    prompts.files = {{path, 1}};
    workspace.addWebSite();
    fields.txtSiteTitle = "saved by hand";
    EXPECT_TRUE(workspace.saveWebSite(workspace.currentNode()->file));
    std::filesystem::remove_all(home.path("usb"));
    EXPECT_TRUE(workspace.nodeClick(node("Shop\\Home")));
}

TEST_F(WorkspaceTest, AFailedIndexHasItsOwnMessagesAndLeavesTheTree) {
    makeShop();
    make(NodeKind::Project, "Alpha");
    const std::string before = index();
    const std::string path = home.write("else/Old.kws", "");
    struct Case {
        const char* words;
        std::function<void()> operation;
    };
    const Case cases[] = {
        {"addNewProject_Error:/", [&] { make(NodeKind::Project, "New"); }},
        {"addNewProject_Error:/", [&] { make(NodeKind::Website, "New"); }},
        {"addNewProject_Error:/",
         [&] {
             prompts.files = {{path, 1}}, workspace.addWebSite();
         }},
        {"editProjectFile_Error: /", [&] { workspace.rename(node("Shop"), "New"); }},
        {"LableEdit_Error: /", [&] { workspace.rename(node("Shop\\Sale"), "New"); }},
        {"removeProject_Error: /",
         [&] { prompts.answers = {true}, workspace.removeSelectedNode(node("Shop")); }},
        {"removeSelectedNode_Error: /",
         [&] { prompts.answers = {true}, workspace.removeSelectedNode(node("Shop\\Sale")); }},
        {"autoSave_Error: /",
         [&] { EXPECT_TRUE(workspace.autoSave()); }},  // a description that was not changed
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

TEST_F(WorkspaceTest, AnotherProgramsChangesAreNotUndone) {
    makeShop();
    ProjectNode& sale = node("Shop\\Sale");
    const auto elsewhere = [this](const char* title) { setKeys(kwsPath("Sale"), {{"Title", title}}); };
    // Nothing was typed: the file is read again and not written. It has the same size and the same second.
    elsewhere("title of Sals");
    EXPECT_TRUE(workspace.autoSave());
    EXPECT_EQ(fields.txtSiteTitle, "title of Sals");
    elsewhere("title of Salt");
    EXPECT_TRUE(workspace.saveWebSite(workspace.currentNode()->file));
    EXPECT_EQ(titleInFile("Sale"), "title of Salt");
    EXPECT_EQ(fields.txtSiteTitle, "title of Salt");
    prompts.shown.clear();

    // Something was typed: overwrite the file, discard the changes, or neither.
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
            EXPECT_TRUE(workspace.nodeClick(tree.root()));
            EXPECT_TRUE(workspace.nodeClick(sale));
            EXPECT_EQ(prompts.shown.size(), damaged ? 1u : 0u);
            prompts.shown.clear();
            fields.txtSiteTitle = "typed";
            if (!damaged) elsewhere("elsewhere");
            prompts.answers = test.answers;
            EXPECT_EQ(workspace.nodeClick(node("Shop\\Home")), test.leaves);
            EXPECT_EQ(titleInFile("Sale"), test.title);
            std::size_t asked = 0;
            for (const auto& box : prompts.shown) asked += box.kind == "ask";
            EXPECT_EQ(asked, test.asked);
            EXPECT_EQ(
                prompts.shown.front().text,
                "The file " + kwsPath("Sale") +
                    (damaged ? " could not be read completely. Saving overwrites the part that was not read."
                             : " was changed by another program since this window read it.") +
                    "\r\n\r\nDo you want to overwrite it with what this window shows?");
            if (!test.leaves) {
                EXPECT_EQ(fields.txtSiteTitle, "typed");
                prompts.answers = {false, true};
                EXPECT_TRUE(workspace.nodeClick(tree.root()));
            }
            prompts.shown.clear();
        }
    }
}

TEST_F(WorkspaceTest, APartlyLoadedFileIsNotSavedAutomatically) {
    makeShop();
    const std::string damaged = "[Web Site Info]\r\nTitle=damaged\r\nLastURL=99999\r\n";
    home.write("Projects/Home.kws", damaged);
    fields.txtPhone = "of another website";
    EXPECT_TRUE(workspace.nodeClick(node("Shop\\Home")));
    EXPECT_EQ(prompts.last().text, "Module: loadWebsiteFile\r\nOverflow");
    EXPECT_EQ(fields.txtSiteTitle + fields.txtPhone, "damaged");
    EXPECT_TRUE(workspace.nodeClick(node("Shop\\Sale")));
    EXPECT_EQ(home.read("Projects/Home.kws"), damaged);
}

TEST_F(WorkspaceTest, SaveAsAsksAndMovesTheWebsite) {
    makeShop();
    prompts.files = {{home.path("other"), 1}, {home.path("other"), 2}, {home.path("other"), 3}, {}};
    for (const char* file : {"other.kws", "other.txt", "other"}) {
        EXPECT_TRUE(workspace.saveWebSite("")) << file;
        EXPECT_EQ(place("Shop\\Sale"), "2|" + home.path(file));
        EXPECT_EQ(workspace.currentNode()->file, home.path(file));
        EXPECT_EQ(ReadIniValue(home.path("project.kwj"), "Shop", "2"), "Sale|" + home.path(file));
    }
    EXPECT_FALSE(workspace.saveWebSite(""));
    prompts.files = {{home.path("other.kws"), 1}};
    EXPECT_FALSE(workspace.saveWebSite(""));
    EXPECT_EQ(prompts.last().text,
              "The file " + home.path("other.kws") + " already exists.\r\nDo you want to replace it?");
    EXPECT_EQ(workspace.currentNode()->file, home.path("other"));
}

TEST_F(WorkspaceTest, AnExistingFileJoinsTheProjectAndLoads) {
    makeShop();
    const std::string path = home.write("else/Old.kws", "[Web Site Info]\r\nVersion=6.0\r\nTitle=old\r\n");
    prompts.files = {{path, 1}, {path, 1}, {home.write("else/a|b.kws", ""), 1}, {}};
    workspace.addWebSite();
    EXPECT_EQ(place("Shop\\Old.kws"), "3|" + path);
    EXPECT_EQ(fields.txtSiteTitle, "old");
    workspace.addWebSite();
    EXPECT_EQ(prompts.last().text, "The file you try to add already exists, please choose a different file.");
    EXPECT_EQ(prompts.last().icon, Icon::Critical);
    workspace.addWebSite();
    EXPECT_EQ(prompts.last().title, "New WebProject and WebSite");
    EXPECT_EQ(tree.count(), 5u);
    workspace.addWebSite();
    EXPECT_TRUE(workspace.nodeClick(tree.root()));
    EXPECT_EQ(IniFile::load(path).value("Web Site Info", "Title"), "old");
}

TEST_F(WorkspaceTest, TheSaveCommandWarnsOfAMissingFieldAndTheRootTakesNoWebsite) {
    workspace.newWebsite();
    EXPECT_EQ(prompts.last().text,
              "You can add website to the Root item. Please select a web project and try again.");
    EXPECT_EQ(prompts.last().icon, Icon::Critical);
    make(NodeKind::Project, "Shop");
    make(NodeKind::Website, "Home");
    // Without a yes nothing is saved.
    std::string missing;
    QObject::connect(&workspace, &Workspace::fieldMissing,
                     [&missing](const MissingField& field) { missing = field.control; });
    workspace.save();
    EXPECT_EQ(missing, "txtSiteTitle");
    EXPECT_FALSE(fileExists(kwsPath("Home")));
    prompts.answers = {true};
    workspace.save();
    EXPECT_TRUE(fileExists(kwsPath("Home")));
}

}  // namespace relay::test

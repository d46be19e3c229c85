// SPDX-License-Identifier: GPL-3.0-or-later
// A user works through the window by keys and clicks; checks the files on disk.
#include "app/WindowTest.h"
#include "widgets/ListView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeView>

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WalkTest : public WindowTest {
  protected:
    void newProject(const char* name) {
        prompts.inputs = {std::string(name)};
        command("NewProject");
        EXPECT_EQ(current(), name);
    }
    void newWebsite(const char* name) {
        prompts.inputs = {std::string(name)};
        command("NewWeb");
        EXPECT_EQ(current(), name);
    }
    // Presses Alt and the page's number.
    void page(int number) {
        bringUp();
        QTest::keyClick(&window(), static_cast<Qt::Key>(Qt::Key_0 + number), Qt::AltModifier);
        EXPECT_EQ(find<QTabWidget>("SSTab1").currentIndex(), number - 1);
    }
    void push(const char* button) { QTest::mouseClick(&find<QPushButton>(button), Qt::LeftButton); }
    void tick(const char* box) { QTest::keyClick(&find<QCheckBox>(box), Qt::Key_Space); }
    std::vector<std::string> selected() { return rowTexts("lsvSelectedEngines"); }
    void renameCurrent(const QString& name) {
        bringUp();
        find<QTreeView>("TreeView1").setFocus();
        press(Qt::Key_F2);
        ASSERT_TRUE(waitUntil([&] { return labelEditor() != nullptr; }));
        QTest::keySequence(labelEditor(), QKeySequence::SelectAll);
        QTest::keyClicks(labelEditor(), name);
        press(Qt::Key_Return);
        EXPECT_TRUE(waitUntil([&] { return current() == name.toStdString(); }));
    }

    void fillHome();
    void addUrls();
    void chooseCategory();
};

void WalkTest::fillHome() {
    page(1);
    type("txtSiteTitle", QStringLiteral("Old Roses"));
    type("txtSiteKeywords", QStringLiteral("roses"));
    QTest::keyClick(&find<QWidget>("txtSiteKeywords"), Qt::Key_Return);
    QTest::keyClicks(&find<QWidget>("txtSiteKeywords"), QStringLiteral("garden"));
    type("txtSiteDescription", QStringLiteral("A nursery"));
    find<QComboBox>("cboWebType").setFocus();
    QTest::keyClick(&find<QComboBox>("cboWebType"), Qt::Key_Down);
    page(4);
    for (const char* field : {"txtName", "txtCompany", "txtAddress", "txtCity", "txtState", "txtPostcode",
                              "txtPhone", "txtFax", "txtPassword"})
        type(field, QString::fromLatin1(field + 3));
    type("txtEmail", QStringLiteral("ada@roses.test"));
    type("cboCountry", QStringLiteral("Ireland"));
    tick("chkBlockFFA");
}

void WalkTest::addUrls() {
    page(2);
    prompts.inputs = {"http://www.roses.test/"};
    command("AddURL");
    prompts.files = {
        {home.write("urls.txt", "http://www.roses.test/a.html,HTTP://WWW.ROSES.TEST/\r\nnone\r\n")}};
    command("LoadURL");
    home.write("pages/index.html", "");
    home.write("pages/notes.txt", "");
    whenModal([this](QWidget& dialog) {
        auto& domain = control<QLineEdit>(dialog, "txtDomain");
        domain.selectAll();
        QTest::keyClicks(&domain, QStringLiteral("www.pages.test"));
        QTest::keyClick(&control<QCheckBox>(dialog, "chkExtention_0"), Qt::Key_Space);
        auto& folders = control<QTreeView>(dialog, "Dir1");
        const auto pages = [&]() -> QModelIndexList {
            const QModelIndex here = folders.currentIndex();
            return folders.model()->match(folders.model()->index(0, 0, here), Qt::DisplayRole,
                                          QStringLiteral("pages"));
        };
        EXPECT_TRUE(waitUntil([&] { return !pages().isEmpty(); }));
        folders.setCurrentIndex(pages().value(0));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    command("AddFromLocalFolder");
    EXPECT_THAT(rowTexts("lsvSiteURLs"), ElementsAre("http://www.roses.test/", "http://www.roses.test/a.html",
                                                     "http://www.pages.test/index.html"));
}

void WalkTest::chooseCategory() {
    page(3);
    clickRow("lstMainCategory", "Home and Garden");
    ListView& sub = find<ListView>("lstCategory");
    sub.setFocus();
    QTest::keyClicks(&sub, QStringLiteral("Garden"));
    EXPECT_TRUE(waitUntil([&] { return sub.rows()->firstHighlighted() >= 0; }));
}

TEST_F(WalkTest, FromAnEmptyHomeToSavedWebsites) {
    settleHome(kSmallCatalogue);
    start();
    EXPECT_EQ(current(), "Web Project");
    newProject("Shop");
    type("txtProjectDescr", QStringLiteral("Spring pages"));
    newProject("Notes");
    clickNode("Shop");
    newWebsite("Home");
    fillHome();
    addUrls();
    chooseCategory();
    QTest::keySequence(&window(), QKeySequence::Save);
    EXPECT_EQ(prompts.last().kind, "open")
        << "every field is filled, so the check asks nothing, not: " << prompts.last().text;
    newWebsite("Tools");
    newWebsite("Walks");
    renameCurrent(QStringLiteral("Long Walks"));
    clickNode("Shop/Tools");
    prompts.answers = {true};
    QTest::keyClick(&find<QTreeView>("TreeView1"), Qt::Key_Delete);
    EXPECT_EQ(current(), "Long Walks");
    quit();

    EXPECT_EQ(home.read("project.kwj"), "[Shop]\r\nDescription=Spring pages\r\nLast=3\r\n1=Home|" +
                                            home.path("Projects/Home.kws") + "\r\n2=\r\n3=Long Walks|" +
                                            home.path("Projects/Walks.kws") +
                                            "\r\n[Notes]\r\nDescription=\r\nLast=0\r\n");
    EXPECT_EQ(
        home.read("Projects/Home.kws"),
        "[Web Site Info]\r\nVersion=6.0\r\nTitle=Old Roses\r\nKeyword=roses garden\r\n"
        "Description=A nursery\r\nWebType=Commercial Site\r\nLanguage=English\r\nLastURL=3\r\n"
        "MainCategory=Home and Garden\r\nCategory=Gardening\r\nYourName=Name\r\nEmail=ada@roses.test\r\n"
        "Company=Company\r\nAddress=Address\r\nCity=City\r\npostcode=Postcode\r\nState=State\r\n"
        "Country=Ireland\r\nPhone=Phone\r\nFax=Fax\r\nPassword=Password\r\nBlockFFA=1\r\n"
        "[URL]\r\nURL1=http://www.roses.test/\r\nLocalFile1=\r\nURL2=http://www.roses.test/a.html\r\n"
        "LocalFile2=\r\nURL3=http://www.pages.test/index.html\r\nLocalFile3=" +
            home.path("pages/index.html") + "\r\n");

    start();
    clickNode("Shop/Home");
    EXPECT_EQ(find<QLineEdit>("txtSiteTitle").text(), QStringLiteral("Old Roses"));
    EXPECT_EQ(find<QComboBox>("cboCountry").currentText(), QStringLiteral("Ireland"));
    EXPECT_TRUE(find<QCheckBox>("chkBlockFFA").isChecked());
    EXPECT_EQ(rowTexts("lsvSiteURLs").size(), 3U);
    clickNode("Shop/Long Walks");
    EXPECT_THAT(rowTexts("lsvSiteURLs"), IsEmpty());
}

TEST_F(WalkTest, ByKeysAloneFromAnEmptyHomeToASelectionAndBackToTheTree) {
    SettingsStore(home.paths().settingsFile).setValue(kApplication, "Preference", "LoadConfig", "1");
    home.write("data/krveng5.dat", "broken");
    start();
    EXPECT_EQ(prompts.last().title, kApplication) << "the engines' files are missing";
    bringUp();
    const auto keys = [this](const QString& text) {
        for (const QChar letter : text) QTest::keyClick(window().windowHandle(), letter.toLatin1());
    };
    const auto title = [this](const char* text, bool changed) {
        return waitUntil([&] {
            return window().windowTitle() == QLatin1String(text) && window().isWindowModified() == changed;
        });
    };
    prompts.inputs = {"Shop", "Home"};
    press(Qt::Key_N, Qt::ControlModifier);
    keys(QStringLiteral("Paper"));
    EXPECT_TRUE(title("Shop[*] - Korvel Relay", true));
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(title("Shop[*] - Korvel Relay", false));
    EXPECT_EQ(prompts.notices.back(), "Project saved: Shop");
    EXPECT_EQ(home.read("project.kwj"), "[Shop]\r\nDescription=Paper\r\nLast=0\r\n");
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    keys(QStringLiteral("Pens"));
    EXPECT_EQ(find<QLineEdit>("txtSiteTitle").text(), QStringLiteral("Pens"));
    EXPECT_TRUE(title("Home - Shop[*] - Korvel Relay", true));

    press(Qt::Key_E, Qt::ControlModifier);
    prompts.answers = {false, true};
    press(Qt::Key_Space);
    EXPECT_EQ(prompts.last().title, "Install Starter Catalogue");
    EXPECT_EQ(home.read("data/krveng5.dat"), "broken");
    press(Qt::Key_Space);
    EXPECT_TRUE(find<QWidget>("lsvEngines").hasFocus()) << "the button has gone";
    EXPECT_EQ(rowTexts("lsvEngines").size(), 7U);
    const auto& warning = find<QLabel>("lblPasswordWarning");
    EXPECT_FALSE(warning.isVisible());
    press(Qt::Key_F2);
    EXPECT_EQ(labelEditor(), nullptr) << "the key renames in the tree alone";
    press(Qt::Key_F, Qt::ControlModifier);
    keys(QStringLiteral("bing"));
    press(Qt::Key_Return);
    EXPECT_THAT(selected(), ElementsAre("Bing IndexNow"));
    EXPECT_EQ(prompts.notices.back(), "Engines selected: 1");
    EXPECT_TRUE(waitUntil([&] { return warning.isVisible(); })) << "the website has no password";

    for (const auto& [key, menu] : {std::pair(Qt::Key_F, "mnuFile"), {Qt::Key_H, "mnuHelp"}}) {
        press(key, Qt::AltModifier);
        EXPECT_EQ(QApplication::activePopupWidget(), &find<QMenu>(menu));
        find<QMenu>(menu).close();
    }
    page(4);
    EXPECT_TRUE(find<QLineEdit>("txtName").hasFocus());
    press(Qt::Key_E, Qt::ControlModifier);
    press(Qt::Key_F6);
    EXPECT_TRUE(find<QTreeView>("TreeView1").hasFocus());
    press(Qt::Key_Return);
    EXPECT_TRUE(find<QWidget>("SSTab1").isVisible());
    press(Qt::Key_F6);
    EXPECT_TRUE(find<QLineEdit>("txtName").hasFocus());
    press(Qt::Key_F6);
    EXPECT_TRUE(find<QTreeView>("TreeView1").hasFocus());
}

TEST_F(WalkTest, EnginesAreSelectedInEveryWay) {
    settleHome(kSmallCatalogue);
    home.write("project.kwj", "[Shop]\r\nDescription=\r\nLast=1\r\n1=Home|\r\n");
    start();
    clickNode("Shop/Home");
    command("Engines");
    EXPECT_FALSE(find<QAction>("Save").isEnabled());
    EXPECT_EQ(find<QCheckBox>("chkType_1").text(), QStringLiteral("&Directories(1)"));

    tick("chkType_1");
    EXPECT_THAT(selected(), ElementsAre("Beta Directory", "Delta Picks"));
    tick("chkType_1");
    clickRow("lstCountry", "United States");
    EXPECT_THAT(selected(), ElementsAre("Alpha Search", "Gamma Links"));
    clickRow("lsvSelectedEngines", "Gamma");
    QTest::keyClick(&find<QWidget>("lsvSelectedEngines"), Qt::Key_Delete);
    clickRow("lsvEngines", "Beta");
    clickRow("lsvEngines", "Delta", Qt::ControlModifier);
    push("cmdSelectEngine_0");
    EXPECT_THAT(selected(), ElementsAre("Alpha Search", "Beta Directory", "Delta Picks"));
    push("cmdRemoveEngine_1");
    clickRow("lsvEngines", "Gamma");
    QTest::keyClick(&find<QWidget>("lsvEngines"), Qt::Key_Return);
    EXPECT_THAT(selected(), ElementsAre("Gamma Links"));
    command("mnuEngineItems_3");
    EXPECT_THAT(selected(), ElementsAre("Alpha Search"));
    command("mnuEngineItems_4");
    EXPECT_THAT(selected(), ElementsAre("Beta Directory"));
    push("cmdSelectEngine_1");
    EXPECT_TRUE(find<QCheckBox>("chkType_6").isChecked()) << "the boxes follow the program";
    QTest::keyClick(&find<QRadioButton>("optAdultSite_1"), Qt::Key_Space);
    EXPECT_THAT(selected(), ElementsAre("Alpha Search", "Gamma Links", "Delta Picks"));

    prompts.files = {{home.path("Engines/mine"), 1}};
    command("mnuEngineItems_0");
    EXPECT_EQ(home.read("Engines/mine.eng"), "Alpha Search\r\nGamma Links\r\nDelta Picks\r\n");
    push("cmdRemoveEngine_1");
    bringUp();
    QTest::keySequence(&window(), QKeySequence::Find);
    EXPECT_TRUE(waitUntil([&] { return find<QLineEdit>("txtFindEngines").hasFocus(); }));
    QTest::keyClicks(&find<QWidget>("txtFindEngines"), QStringLiteral("picks\r"));
    EXPECT_THAT(selected(), ElementsAre("Delta Picks"));
    push("cmdRemoveEngine_1");
    prompts.files = {{home.path("Engines/mine.eng"), 1}};
    command("mnuEngineItems_1");
    EXPECT_THAT(selected(), ElementsAre("Alpha Search", "Gamma Links", "Delta Picks"));

    clickNode("Shop/Home");  // a click on the current node leads back to its panel
    EXPECT_TRUE(find<QWidget>("SSTab1").isVisible());
    EXPECT_TRUE(find<QAction>("Save").isEnabled());
}

}  // namespace
}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
// News, add-ins, imports and help by keys and clicks; and every entry of the menus.
#include "app/Help.h"
#include "app/WindowTest.h"
#include "app/frmHelp.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "practice/PracticeWeb.h"
#include "support/Patterns.h"
#include "widgets/ListView.h"

#include <QAbstractTextDocumentLayout>
#include <QCheckBox>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTreeView>

#include <filesystem>
#include <gmock/gmock.h>

namespace relay::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kGuide = RELAY_DATA_FOLDER "/../docs";

class ExtrasWindowTest : public WindowTest {
  protected:
    void startWithOneWebsite() {
        settleHome(kSmallCatalogue);
        home.write("project.kwj", "[Shop]\r\nDescription=\r\nLast=1\r\n1=Home|\r\n");
        WindowTest::start();
        clickNode("Shop/Home");
        bringUp();
    }
    // The visible viewer that belongs to the window, or nullptr.
    static frmHelp* viewerOf(const QWidget& owner) {
        auto* const viewer = owner.findChild<frmHelp*>(QString(), Qt::FindDirectChildrenOnly);
        return viewer != nullptr && viewer->isVisible() ? viewer : nullptr;
    }
    // The page that the viewer shows; closes it.
    static std::string shownPage(const QWidget& owner) {
        frmHelp* const viewer = viewerOf(owner);
        if (viewer == nullptr) return "no help";
        const QString page = control<QTextBrowser>(*viewer, "txtPage").source().toString();
        QTest::keyClick(viewer, Qt::Key_Escape);
        return page.toStdString();
    }
    std::string helpAt(int tab) {
        find<QTabWidget>("SSTab1").setCurrentIndex(tab);
        bringUp();
        press(Qt::Key_F1);
        return shownPage(window());
    }
};

// What an entry of a menu brought about.
class MenuWalk final {
  public:
    MenuWalk(Program& program, ScriptedPrompts& prompts) : m_program(program), m_prompts(prompts) {
        QObject::connect(&m_closer, &QTimer::timeout, &m_closer, [this] {
            auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr) return;
            opened = dialog->objectName().toStdString();
            dialog->reject();
        });
        m_closer.start(1);
    }

    std::string effectOf(QAction& action) {
        opened.clear();
        m_prompts.shown.clear();
        const std::string before = state();
        action.trigger();
        // A window that does not wait for its end.
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            const bool isScreen = window->objectName().startsWith(QLatin1String("frm"));
            if (!isScreen || !window->isVisible() || window == &m_program.window()) continue;
            opened = window->objectName().toStdString();
            window->close();
        }
        if (!opened.empty()) return opened;
        if (!m_prompts.shown.empty()) return m_prompts.shown.front().kind;
        return state() == before ? "" : "changed";
    }

    std::string opened;  // the dialog

  private:
    std::string state() const {
        std::string text = std::to_string(m_prompts.notices.size());
        const Rows& selected = m_program.main().catalogue.lists.lsvSelectedEngines;
        for (int row = 0; row < selected.count(); ++row) text.append(" ").append(selected.at(row).text);
        return text;
    }

    Program& m_program;
    ScriptedPrompts& m_prompts;
    QTimer m_closer;
};

std::vector<QAction*> leavesOf(const QList<QAction*>& actions) {
    std::vector<QAction*> leaves;
    for (QAction* action : actions) {
        if (action->isSeparator() || !action->isVisible()) continue;
        if (action->menu() == nullptr) {
            leaves.push_back(action);
            continue;
        }
        for (QAction* leaf : leavesOf(action->menu()->actions())) leaves.push_back(leaf);
    }
    return leaves;
}

}  // namespace

// The README tells users that some commands are missing as long as some are. When the sentence goes, every
// entry must open.
TEST_F(ExtrasWindowTest, EveryEntryOfTheMenusOpensSomething) {
    settleHome(kSmallCatalogue);
    home.write("project.kwj", "[Shop]\r\nDescription=\r\nLast=1\r\n1=Home|\r\n");
    for (const auto& [group, key] : {std::pair("Korvel%20Rank%20Watch%20V4", "Preference"),
                                     {"Korvel%20Link%20Builder", "Version"},
                                     {"Korvel%20Bid%20Keeper", "Version"}})
        appendFile(home.paths().settingsFile,
                   std::string("[") + group + "]\n" + key + "\\Location=" + home.path("gone") + "\n");
    start();
    MenuWalk walk(program(), prompts);
    std::vector<std::string> silent;
    std::vector<std::string> helpless;
    const std::vector<QAction*> entries = leavesOf(window().menuBar()->actions());
    ASSERT_GT(entries.size(), 30U);
    for (QAction* entry : entries) {
        const std::string name = entry->objectName().toStdString();
        clickNode("Shop/Home");
        bringUp();
        EXPECT_TRUE(entry->isEnabled()) << name;
        if (walk.effectOf(*entry).empty()) silent.push_back(name);
        if (walk.opened.starts_with("frm") && walk.opened != "frmHelp" && helpPageOf(walk.opened).empty())
            helpless.push_back(walk.opened);
    }
    EXPECT_THAT(silent, IsEmpty());
    EXPECT_THAT(helpless, IsEmpty()) << "name their pages of the guide in helpTopics()";
}

TEST(GuideTest, EveryLinkAndEveryTopicLeadsToAPageAndAHeading) {
    std::map<std::string, std::set<std::string>> headings;
    for (const auto& entry : std::filesystem::directory_iterator(kGuide)) {
        if (entry.path().extension() != ".md") continue;
        std::set<std::string>& names = headings[entry.path().filename().string()];
        std::istringstream lines(readFile(entry.path().string()));
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with('#')) names.insert(headingName(line.substr(line.find(' ') + 1)));
    }
    std::vector<std::string> broken;
    const auto check = [&](const std::string& from, const std::string& target) {
        const std::size_t mark = std::min(target.find('#'), target.size());
        const std::string page = mark == 0 ? from : target.substr(0, mark);
        const auto found = headings.find(page);
        const bool there = found != headings.end()
                               ? mark == target.size() || found->second.contains(target.substr(mark + 1))
                               : fileExists(std::string(kGuide) + "/" + page);
        if (!there) broken.push_back(from + ": " + target);
    };
    for (const auto& [page, unused] : headings) {
        const std::string text = readFile(std::string(kGuide) + "/" + page);
        for (const std::string& target : findPattern(text, R"(\]\(([^)]+)\))", 1))
            if (!target.starts_with("http")) check(page, target);
    }
    const std::string contents = readFile(std::string(kGuide) + "/" + std::string(kHelpContents));
    for (const auto& [page, unused] : headings)
        if (page != kHelpContents && page != "architecture.md" && contents.find("](" + page + ")") == npos)
            broken.push_back("the contents lack " + page);
    for (const HelpTopic& topic : helpTopics()) check("helpTopics", std::string(topic.page));
    EXPECT_THAT(broken, IsEmpty());
}

TEST_F(ExtrasWindowTest, F1OpensThePageAboutTheScreen) {
    startWithOneWebsite();
    EXPECT_EQ(helpAt(0), "first-website.md#2-a-website");
    EXPECT_EQ(helpAt(1), "urls.md");
    EXPECT_EQ(helpAt(4), "submitting.md#4-reports");
    command("Engines");
    bringUp();
    press(Qt::Key_F1);
    EXPECT_EQ(shownPage(window()), "first-website.md#4-engines");
    clickNode("");
    bringUp();
    press(Qt::Key_F1);
    EXPECT_EQ(shownPage(window()), "contents.md");
    // In a dialog, which the viewer does not close and which does not block it.
    whenModal([](QWidget& dialog) {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(control<QWidget>(dialog, "txtTimeOut").window()->focusWidget(), Qt::Key_F1);
        EXPECT_EQ(shownPage(dialog), "first-website.md#before-you-start");
        EXPECT_TRUE(dialog.isVisible());
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    command("mnuFileItems_13");
    home.write("korvel.hlp", "");
    command("mnuHelpItems_0");
    EXPECT_EQ(prompts.last().kind + " " + prompts.last().text, "system " + home.path("korvel.hlp"));
    EXPECT_EQ(viewerOf(window()), nullptr);
}

TEST_F(ExtrasWindowTest, TheViewerFollowsLinksFindsTextAndGoesBack) {
    startWithOneWebsite();
    frmHelp viewer(kGuide, prompts);
    viewer.showPage("submitting.md#what-each-result-word-means");
    viewer.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&viewer));
    auto& page = control<QTextBrowser>(viewer, "txtPage");
    EXPECT_TRUE(waitUntil([&] { return page.verticalScrollBar()->value() > 0; }))
        << "it begins at the heading";
    EXPECT_EQ(page.textCursor().block().text(), QStringLiteral("What each result word means"));
    Q_EMIT page.anchorClicked(QUrl(QStringLiteral("meta-tags.md#write")));
    EXPECT_EQ(viewer.windowTitle(), QStringLiteral("Meta tags - Korvel Relay Help"));
    QTest::keyClick(&viewer, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(&control<QWidget>(viewer, "txtFind"), QStringLiteral("keywords\r"));
    EXPECT_EQ(page.textCursor().selectedText().toLower(), QStringLiteral("keywords"));
    QTest::keyClicks(&control<QWidget>(viewer, "txtFind"), QStringLiteral("zzz\r"));
    EXPECT_EQ(control<QLabel>(viewer, "lblFound").text(), QStringLiteral("Not on this page"));
    QTest::keyClick(&viewer, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(page.source().path(), QStringLiteral("submitting.md"));
    // Nothing outside the guide is read or run.
    for (const char* elsewhere :
         {"../README.md", "/etc/passwd", "file:///etc/passwd", "pictures/../../README.md"}) {
        Q_EMIT page.anchorClicked(QUrl(QLatin1String(elsewhere)));
        EXPECT_EQ(page.source().path(), QStringLiteral("submitting.md")) << elsewhere;
    }
    Q_EMIT page.anchorClicked(QUrl(QStringLiteral("https://www.indexnow.org/x y")));
    EXPECT_EQ(prompts.last().text, "https://www.indexnow.org/x%20y");
    viewer.showPage("missing.md");
    EXPECT_EQ(page.source().path(), QStringLiteral("contents.md"));
}

// A picture gets its size once the page is shown, which must not cost the text around it.
TEST_F(ExtrasWindowTest, TheViewerShowsAllTextOfAPageWithPictures) {
    for (const char* name : {"page-tools.md", "ftp.md", "submitting.md"}) {
        frmHelp viewer(kGuide, prompts);
        const auto& page = control<QTextBrowser>(viewer, "txtPage");
        viewer.showPage(name);
        viewer.show();
        const auto eachBlock = [&page](const auto& look) {
            for (QTextBlock block = page.document()->begin(); block.isValid(); block = block.next())
                look(block);
        };
        const auto isFitted = [&] {
            bool fitted = true;
            eachBlock([&](const QTextBlock& block) {
                for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
                    const QTextImageFormat picture = piece.fragment().charFormat().toImageFormat();
                    if (picture.isValid() &&
                        (picture.width() < 1 || picture.width() > page.viewport()->width()))
                        fitted = false;
                }
            });
            return fitted;
        };
        EXPECT_TRUE(waitUntil(isFitted)) << name;
        std::vector<std::string> lost;
        eachBlock([&](const QTextBlock& block) {
            if (page.document()->documentLayout()->blockBoundingRect(block).height() < 1)
                lost.push_back(block.text().left(40).toStdString());
        });
        EXPECT_THAT(lost, IsEmpty()) << name;
    }
}

TEST_F(ExtrasWindowTest, TheNewsIsCheckedAtOpeningAndByTheButton) {
    PracticeWeb web;
    web.publish({{"/news/news.dat", "[News]\r\nDate=2026/11/23\r\nTitle=Spring\r\nMessage=Two\r\nlines"}});
    web.start();
    home.write("data/korvel.ini", "[Dealer]\r\nUpdateServer=" + web.address() + "\r\n");
    startWithOneWebsite();
    whenModal([&](QWidget& dialog) {
        const auto& title = control<QLabel>(dialog, "lblTitle");
        EXPECT_TRUE(waitUntil([&] { return title.text() == QLatin1String("Spring"); }));
        EXPECT_EQ(control<QPlainTextEdit>(dialog, "txtMessage").toPlainText(), QStringLiteral("Two\nlines"));
        EXPECT_TRUE(prompts.shown.empty());
        web.failUpdate("/news/news.dat", "404");
        QTest::keyClick(&dialog, Qt::Key_N, Qt::AltModifier);
        EXPECT_TRUE(waitUntil([&] { return prompts.last().text == "No New Message !"; }));
        EXPECT_TRUE(waitUntil([&] { return control<QPushButton>(dialog, "Command1_1").isEnabled(); }));
        EXPECT_THAT(control<QLabel>(dialog, "lblProblem").text().toStdString(), HasSubstr("status 404"));
        QTest::keyClick(&dialog, Qt::Key_H, Qt::AltModifier);
        EXPECT_TRUE(waitUntil([&] { return !control<QCheckBox>(dialog, "Check1").isChecked(); }));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    command("News");
    EXPECT_THAT(home.read("settings.ini"), HasSubstr("News\\CheckNewMsgAtOpen=0"));
}

TEST_F(ExtrasWindowTest, TheManagerShowsToolsInTheMenu) {
    home.write("settings.ini", "[Korvel%20Link%20Builder]\nVersion\\Location=" + home.path("tools") + "\n");
    startWithOneWebsite();
    const auto shown = [this] {
        std::string names;
        for (const QAction* action : find<QMenu>("mnuAddIns").actions())
            if (action->isVisible() && !action->isSeparator()) names += action->text().toStdString() + "; ";
        return names;
    };
    EXPECT_EQ(shown(), "Add In &Manager ...; Korvel &Link Builder; ");
    whenModal([](QWidget& dialog) {
        auto& list = control<ListView>(dialog, "lvwAddIns");
        dialog.activateWindow();
        EXPECT_TRUE(waitUntil([&] { return list.hasFocus(); }));
        EXPECT_TRUE(list.rows()->at(1).checked);
        const auto description = [&] {
            return control<QPlainTextEdit>(dialog, "txtDescription").toPlainText();
        };
        EXPECT_TRUE(description().startsWith(QLatin1String("Korvel Rank Watch 4.0 is")));
        QTest::keyClick(&list, Qt::Key_Down);
        QTest::keyClick(&list, Qt::Key_Down);
        EXPECT_TRUE(description().startsWith(QLatin1String("Manage your keywords")));
        QTest::keyClick(&list, Qt::Key_Space);
        EXPECT_TRUE(list.rows()->at(2).checked);
        QTest::keyClick(&dialog, Qt::Key_O, Qt::AltModifier);
    });
    command("mnuAddInsItems_1");
    EXPECT_THAT(prompts.last().text, HasSubstr("\r\nKorvel Bid Keeper\r\n"));
    EXPECT_EQ(shown(), "Add In &Manager ...; Korvel &Link Builder; ") << "only what is installed";
    command("mnuAddInsItems_4");
    EXPECT_EQ(prompts.last().text, "File not found for '" + home.path("tools/klink.exe") +
                                       "'. Please re-install the program and try again");
}

TEST_F(ExtrasWindowTest, FormDataAndSitemapsFillTheWebsite) {
    PracticeWeb web;
    web.start();
    startWithOneWebsite();
    type("txtSiteTitle", QStringLiteral("Home"));
    prompts.files = {
        {home.write("order.txt", "Title: Roses\nURL: " + web.address() + "/site/paper.html\n"), 1}};
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(current(), "order.txt");
    EXPECT_EQ(find<QLineEdit>("txtSiteTitle").text(), QStringLiteral("Roses"));
    clickNode("Shop/Home");
    EXPECT_EQ(find<QLineEdit>("txtSiteTitle").text(), QStringLiteral("Home"));
    prompts.files = {{home.path("order.txt"), 1}};
    bringUp();
    press(Qt::Key_I, Qt::AltModifier);
    EXPECT_TRUE(
        waitUntil([this] { return find<QLineEdit>("txtSiteTitle").text() == QLatin1String("Roses"); }));

    find<QTabWidget>("SSTab1").setCurrentIndex(1);
    prompts.inputs = {web.address() + "/site/sitemap.xml"};
    command("AddFromSitemap");
    EXPECT_TRUE(waitUntil([this] { return rowTexts("lsvSiteURLs").size() == 3; }));
    EXPECT_EQ(prompts.notices.back(),
              "Sitemap: 3 addresses, 3 new, 0 changed. Left out: 1, no web address or too long.");
    const auto selected = [this] {
        return find<ListView>("lsvSiteURLs").selectionModel()->selectedRows().size();
    };
    EXPECT_TRUE(waitUntil([&] { return selected() == 3; }));
    prompts.answers = {true};
    command("Save");
    EXPECT_THAT(home.read("Projects/Home.kws"), HasSubstr("[Sitemap]\r\nURL1=" + web.address()));
    prompts.inputs = {web.address() + "/site/sitemap.xml"};
    command("AddFromSitemap");
    EXPECT_TRUE(waitUntil([&] { return selected() == 0; }));
}

}  // namespace relay::test

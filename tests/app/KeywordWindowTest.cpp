// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "pagetools/frmDoorway.h"
#include "practice/PracticeWeb.h"
#include "projects/WebsiteKeys.h"
#include "ranking/RankingProfiles.h"
#include "ranking/frmKeywordBuilder.h"
#include "widgets/ListView.h"

#include <QAction>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTabWidget>

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using testing::HasSubstr;

// The keyword builder over the window, on the practice web, with a website and a ranking profile.
class KeywordWindowTest : public WindowTest {
  protected:
    KeywordWindowTest() {
        settleHome(kSmallCatalogue);
        web.start();
        home.write("data/kwreng.dat",
                   pointAtPracticeWeb(readFile(RELAY_DATA_FOLDER "/practice/kwreng.dat"), web.address()));
        home.write("project.kwj",
                   "[Shop]\r\nDescription=\r\nLast=1\r\n1=Home|" + home.path("Projects/Home.kws") + "\r\n");
        home.writeWebsite("Projects/Home.kws", {"http://www.site-15.example/"});
        start();
        program().services().preference.PromptConnection = 0;
    }

    void inForm(const std::function<void(frmKeywordBuilder& form)>& work) {
        bool opened = false;
        whenModal([&](QWidget& dialog) {
            auto& form = dynamic_cast<frmKeywordBuilder&>(dialog);
            form.activateWindow();
            // A window also counts as active when its parent is.
            EXPECT_TRUE(waitUntil([&form] { return QApplication::activeWindow() == &form; }));
            opened = true;
            work(form);
            click(form, "Command1_2");
            EXPECT_FALSE(form.isVisible());
        });
        command("mnuToolsItems_6");
        EXPECT_TRUE(opened);
    }
    static void typeInto(const QWidget& form, const char* field, const QString& text) {
        auto& widget = control<QWidget>(form, field);
        widget.setFocus();
        QTest::keySequence(&widget, QKeySequence::SelectAll);
        QTest::keyClicks(&widget, text);
    }
    static void click(const QWidget& form, const char* button) {
        QTest::mouseClick(&control<QWidget>(form, button), Qt::LeftButton);
    }
    static void page(QWidget& form, int number) {
        QTest::keyClick(&form, static_cast<Qt::Key>(Qt::Key_0 + number), Qt::AltModifier);
        EXPECT_EQ(control<QTabWidget>(form, "SSTab1").currentIndex(), number - 1);
    }
    static std::string list(const QWidget& form) {
        return control<QPlainTextEdit>(form, "txtKeywordList").toPlainText().toStdString();
    }
    static std::string status(const QWidget& form) {
        return control<QStatusBar>(form, "StatusBar1").currentMessage().toStdString();
    }
    static void waitForEnd(frmKeywordBuilder& form) {
        EXPECT_TRUE(waitUntil([&] { return !form.builder().isRunning() && !form.words().isRunning(); }));
    }

    PracticeWeb web;
};

TEST_F(KeywordWindowTest, GathersCombinesCountsAndSaves) {
    inForm([this](frmKeywordBuilder& form) {
        EXPECT_EQ(control<QComboBox>(form, "cboEngine").currentText(), QStringLiteral("Word Market"));
        EXPECT_EQ(control<QRadioButton>(form, "Option1_0").text(),
                  QStringLiteral("Seperate keywords one per line"));
        auto& get = control<QPushButton>(form, "Command1_0");
        auto& phrase = control<QComboBox>(form, "cboKeywords");
        QTest::keyClicks(&phrase, QStringLiteral("paper"));
        QTest::keyClick(&phrase, Qt::Key_Return);
        EXPECT_EQ(get.text(), QStringLiteral("&Cancel"));
        EXPECT_EQ(status(form), "Please wait while retrieving data from the internet ... ");
        EXPECT_FALSE(control<QWidget>(form, "cboEngine").isEnabled());
        waitForEnd(form);
        EXPECT_EQ(get.text().toStdString() + status(form), "&GetDone");
        EXPECT_THAT(prompts.shown, testing::Contains(testing::Field(&ScriptedPrompts::Shown::kind, "beep")));
        EXPECT_EQ(prompts.last().text, "Done !");
        EXPECT_EQ(list(form),
                  "paper,writing paper,handmade paper\npens,fountain pens,paper\n\nINK,Ink Bottles\n");
        control<QRadioButton>(form, "Option1_0").setFocus();
        QTest::keyClick(&control<QWidget>(form, "Option1_0"), Qt::Key_Space);
        click(form, "Command1_0");
        waitForEnd(form);
        EXPECT_THAT(list(form), testing::StartsWith("paper\nwriting paper\n"));
        click(form, "cmdRemoveDuplicates");
        EXPECT_EQ(status(form), "1 duplicates were removed.");

        // Typing, combining and counting add to the same list.
        typeInto(form, "txtKeywordList", QStringLiteral("blotter"));
        page(form, 2);
        EXPECT_TRUE(control<QWidget>(form, "txtFirst").hasFocus());
        click(form, "cmdCombine");
        EXPECT_THAT(prompts.last().text, HasSubstr("fill in both lists"));
        typeInto(form, "txtFirst", QStringLiteral("red,blue"));
        typeInto(form, "txtSecond", QStringLiteral("pen"));
        click(form, "cmdCombine");
        page(form, 3);
        EXPECT_THAT(control<QPlainTextEdit>(form, "txtPages").toPlainText().toStdString(),
                    HasSubstr("/words/pens.html\n"));
        click(form, "cmdCount");
        waitForEnd(form);
        auto& words = control<ListView>(form, "lsvWords");
        EXPECT_FALSE(control<QWidget>(form, "cmdAddWords").isEnabled());
        QTest::mouseClick(words.viewport(), Qt::LeftButton, {},
                          words.visualRect(words.model()->index(0, 0)).center());
        EXPECT_TRUE(waitUntil([&] { return control<QWidget>(form, "cmdAddWords").isEnabled(); }));
        click(form, "cmdAddWords");
        const std::string first(words.rows()->at(0).text);
        EXPECT_EQ(list(form), "blotter\nred pen\nblue pen\n" + first + "\n");

        prompts.files = {{home.path("Keywords/list"), 1}, {home.path("Keywords/list.txt"), 1}};
        QTest::keySequence(&form, QKeySequence::Save);
        EXPECT_EQ(status(form), "Save");
        EXPECT_EQ(home.read("Keywords/list.txt"), "blotter\r\nred pen\r\nblue pen\r\n" + first + "\r\n");
        typeInto(form, "txtKeywordList", QStringLiteral("other"));
        click(form, "Command1_1");
        EXPECT_EQ(prompts.last().title, "Save URL");
        EXPECT_THAT(home.read("Keywords/list.txt"), testing::StartsWith("blotter"));
    });
    EXPECT_THAT(home.read("data/apikrv.dmc"), HasSubstr("[KeywordBuilder]\r\n1=paper\r\n"));
    inForm([](frmKeywordBuilder& form) { EXPECT_EQ(list(form), "other"); });
    quit();
}

TEST_F(KeywordWindowTest, EscapeCancelsAndClosingEndsARequest) {
    home.write("data/kwreng.dat", replaceAll(home.read("data/kwreng.dat"), web.address() + "/words/find",
                                             web.address() + "/never"));
    frmHTTP& fetcher = program().main().fetcher;
    inForm([&](frmKeywordBuilder& form) {
        typeInto(form, "cboKeywords", QStringLiteral("paper"));
        click(form, "Command1_0");
        EXPECT_TRUE(control<QWidget>(form, "ProgressBar1").isVisible());
        QTest::keyClick(&form, Qt::Key_Escape);
        waitForEnd(form);
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(control<QPushButton>(form, "Command1_0").text(), QStringLiteral("&Get"));
        EXPECT_TRUE(prompts.shown.empty());
        // Another tool has the fetcher, and keeps it.
        ASSERT_TRUE(fetcher.fetch("other", web.address() + "/never"));
        click(form, "Command1_0");
        EXPECT_EQ(status(form), "Another page is being retrieved. Please try again.");
        EXPECT_TRUE(fetcher.isRunning("other"));
        fetcher.Disconnect();
        EXPECT_TRUE(waitUntil([&] { return !fetcher.isRunning(); }));
        click(form, "Command1_0");
        EXPECT_TRUE(fetcher.isRunning("KeywordBuilder"));
    });
    EXPECT_TRUE(waitUntil([&] { return !fetcher.isRunning(); }));
    // A page that cannot be read is named.
    home.write("data/kwreng.dat", replaceAll(home.read("data/kwreng.dat"), "/never", "/404"));
    inForm([](frmKeywordBuilder& form) {
        EXPECT_FALSE(control<QWidget>(form, "txtProblems").isVisible());
        click(form, "Command1_0");
        waitForEnd(form);
        EXPECT_TRUE(control<QWidget>(form, "txtProblems").isVisible());
        EXPECT_THAT(control<QPlainTextEdit>(form, "txtProblems").toPlainText().toStdString(),
                    HasSubstr("status 404"));
    });
    quit();
}

TEST_F(KeywordWindowTest, SendsTheListOnWithoutLosingWhatIsTyped) {
    const RankingProfiles profiles(home.paths());
    profiles.saveProfile({"shop", {"a.test"}, "old", RankLimit::Links, "30"});
    const std::string file = home.path("Projects/Home.kws");
    clickNode("Shop/Home");
    type("txtSiteTitle", QStringLiteral("Typed"));
    inForm([&](frmKeywordBuilder& form) {
        typeInto(form, "txtKeywordList", QStringLiteral("paper, pens, Paper"));
        page(form, 4);
        EXPECT_EQ(control<QComboBox>(form, "cboWebsite").currentText(), QStringLiteral("Shop / Home"));
        click(form, "cmdSendWebsite");
        EXPECT_EQ(getKey(file, "Title") + getKey(file, "Keyword"), "Typedpaper, pens");
        prompts.answers = {false, true};
        click(form, "cmdSendProfile");
        EXPECT_EQ(profiles.load("shop").setup.keywords, "old");
        click(form, "cmdSendProfile");
        EXPECT_EQ(profiles.load("shop").setup.keywords, "paper, pens");
        // What is selected goes alone. Another program's change of the file is kept, too.
        QTest::keySequence(&control<QWidget>(form, "txtKeywordList"), QKeySequence::MoveToStartOfDocument);
        QTest::keySequence(&control<QWidget>(form, "txtKeywordList"), QKeySequence::SelectNextWord);
        setKeys(file, {{"Company", "Elsewhere"}});
        prompts.answers = {true};
        click(form, "cmdSendWebsite");
        EXPECT_EQ(getKey(file, "Keyword") + getKey(file, "Company"), "paperElsewhere");
        std::string keywords;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &form, [&] {
            auto* const doorway = qobject_cast<frmDoorway*>(QApplication::activeModalWidget());
            if (doorway == nullptr) return;
            poll.stop();
            keywords =
                doorway->doorway().fields.txtKeywords[0] + "|" + doorway->doorway().fields.txtKeywords[1];
            doorway->reject();
        });
        poll.start(1);
        typeInto(form, "txtKeywordList", QStringLiteral("paper, pens, Paper"));
        click(form, "cmdSendDoorway");
        EXPECT_EQ(keywords, "paper|pens");
    });
    EXPECT_EQ(find<QPlainTextEdit>("txtSiteKeywords").toPlainText(), QStringLiteral("paper"));
    EXPECT_EQ(find<QLineEdit>("txtSiteTitle").text(), QStringLiteral("Typed"));
    EXPECT_EQ(find<QLineEdit>("txtCompany").text(), QStringLiteral("Elsewhere"));
    // The panel cannot be saved: said each time over the form, and what is typed stays.
    type("txtSiteTitle", QStringLiteral("Typed again"));
    removeFile(file);
    makeFolder(file);
    inForm([this](frmKeywordBuilder& form) {
        for (int time = 0; time < 2; ++time) {
            prompts.shown.clear();
            click(form, "cmdSendWebsite");
            EXPECT_THAT(prompts.last().text, HasSubstr("Not a regular file"));
        }
        typeInto(form, "txtKeywordList", QStringLiteral("paper"));
        prompts.answers = {true};
        click(form, "cmdSendProfile");
        EXPECT_THAT(status(form), HasSubstr("sent to shop."));
        RankingProfiles(home.paths()).removeProfile("shop");
        click(form, "cmdSendProfile");
        EXPECT_EQ(prompts.last().text + status(form),
                  "Module: SendKeywords\r\nThere is no ranking profile \"shop\".");
    });
    EXPECT_EQ(find<QLineEdit>("txtSiteTitle").text(), QStringLiteral("Typed again"));
    quit();
}

}  // namespace
}  // namespace relay::test

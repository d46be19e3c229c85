// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "core/FileStore.h"
#include "pagetools/frmOptimizer.h"
#include "practice/PracticeWeb.h"
#include "widgets/ListView.h"
#include "widgets/SourceView.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTextEdit>

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// The optimizer over the window, on the pages of the practice web.
class OptimizerWindowTest : public WindowTest {
  protected:
    OptimizerWindowTest() {
        settleHome(kSmallCatalogue);
        web.start();
        home.write("project.kwj",
                   "[Shop]\r\nDescription=\r\nLast=1\r\n1=Home|" + home.path("Projects/Home.kws") + "\r\n");
        home.writeWebsite("Projects/Home.kws", {page("several-h1"), web.address() + "/never.html/never"});
    }

    std::string page(const char* name) const { return web.address() + "/pages/" + name + ".html"; }
    frmOptimizer* form() { return window().findChild<frmOptimizer*>(QString(), Qt::FindDirectChildrenOnly); }
    Optimizer& optimizer() { return program().main().optimizer; }
    template <typename Widget>
    Widget& part(const char* name) {
        return control<Widget>(*form(), name);
    }
    void open() {
        bringUp();
        press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
        ASSERT_NE(form(), nullptr);
        form()->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form()));
    }
    void key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(form()->focusWidget(), pressed, modifiers);
    }
    // Types the address and presses Return.
    void ask(const std::string& address) {
        auto& edit = part<QComboBox>("cboSiteURL");
        edit.setFocus();
        QTest::keySequence(&edit, QKeySequence::SelectAll);
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, QString::fromStdString(address));
        QTest::keyClick(&edit, Qt::Key_Return);
    }
    void optimize(const std::string& address) {
        ask(address);
        ASSERT_TRUE(waitUntil([this] { return !optimizer().isFetching() && !optimizer().isBusy(); }));
    }
    std::string status() { return part<QLabel>("StatusBar1").text().toStdString(); }

    PracticeWeb web;
};

TEST_F(OptimizerWindowTest, APageIsReportedAndItsFindingsLeadToItsLines) {
    start();
    open();
    EXPECT_EQ(form()->focusWidget(), &part<QComboBox>("cboSiteURL"));
    EXPECT_FALSE(part<QWidget>("cmdOpenReport").isEnabled());
    ask("");
    EXPECT_THAT(prompts.last().text, HasSubstr("Please enter your web site URL or a valid"));
    optimize(page("several-h1"));
    EXPECT_EQ(status(), "Done");
    EXPECT_EQ(form()->focusWidget(), &part<QComboBox>("cboSiteURL"));
    EXPECT_EQ(prompts.last().kind + prompts.last().text, "system" + optimizer().report().path);
    EXPECT_THAT(part<QTextEdit>("txtReport").toPlainText().toStdString(),
                AllOf(HasSubstr("Website: " + page("several-h1")), HasSubstr("Meta Tag Keywords")));
    EXPECT_TRUE(part<QTextEdit>("txtReport").isVisible());

    EXPECT_THAT(missedByTab(*form()), IsEmpty());
    key(Qt::Key_N, Qt::AltModifier);
    EXPECT_THAT(missedByTab(*form()), IsEmpty());
    EXPECT_EQ(part<QTabWidget>("SSTab1").tabText(1), QStringLiteral("Fi&ndings (2)"));
    EXPECT_EQ(part<QLabel>("lblFindings").text(), QStringLiteral("0 errors, 2 warnings and 0 notices"));
    auto& findings = part<ListView>("lsvFindings");
    auto& source = part<SourceView>("lstSource");
    const QRect second = findings.visualRect(findings.model()->index(1, 0));
    QTest::mouseClick(findings.viewport(), Qt::LeftButton, {}, second.center());
    EXPECT_THAT(part<QPlainTextEdit>("txtExplanation").toPlainText().toStdString(),
                StartsWith("Why it matters: The h1"));
    EXPECT_THAT(source.currentIndex().data().toString().toStdString(), StartsWith("<h1>Ink</h1>"));
    findings.setFocus();
    key(Qt::Key_Up);
    EXPECT_EQ(source.currentLine(), optimizer().findings().front().line);
    key(Qt::Key_Return);
    EXPECT_EQ(form()->focusWidget(), &source);
    QTest::keySequence(&source, QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("<h1>Pens</h1>"));

    prompts.files = {{home.path("f.csv"), 1}, {home.path("f"), 2}};
    key(Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(waitUntil([this] { return status() == "Saved " + home.path("f.csv"); }));
    part<QPushButton>("cmdSaveFindings").click();
    EXPECT_THAT(home.read("f.csv"), HasSubstr("warning,h1-count,"));
    EXPECT_THAT(home.read("f.sarif"), HasSubstr("\"ruleId\": \"h1-count\""));

    // Two further pages; the screen is as it was left when it is opened again.
    optimize(page("good"));
    EXPECT_EQ(part<ListView>("lsvFindings").rows()->count(), 0);
    EXPECT_FALSE(part<QWidget>("cmdSaveFindings").isEnabled());
    key(Qt::Key_Escape);
    EXPECT_THAT(home.read("data/apikrv.dmc"), HasSubstr("[Optimizer]\r\n1=" + page("good") + "\r\n2="));
    ASSERT_TRUE(waitUntil([this] { return form() == nullptr; }));
    open();
    EXPECT_EQ(part<QComboBox>("cboSiteURL").count(), 2);
    EXPECT_THAT(part<QLabel>("lblReport").text().toStdString(), HasSubstr("_pages_good.html.html"));
    quit();
}

TEST_F(OptimizerWindowTest, BeginsLargerWithALargerFont) {
    start();
    const int usual = frmOptimizer(optimizer()).height();
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPixelSize(32);
    QApplication::setFont(large);
    EXPECT_GT(frmOptimizer(optimizer()).height(), usual);
    QApplication::setFont(before);
    quit();
}

TEST_F(OptimizerWindowTest, LocalFilesAndFailuresAreTold) {
    start();
    open();
    prompts.files = {{home.write("s/a.html", "<title>Paper</title>"), 1}};
    key(Qt::Key_F, Qt::AltModifier);
    EXPECT_TRUE(waitUntil([this] { return prompts.files.empty(); }));
    part<QComboBox>("cboSiteURL").setFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(optimizer().report().path, home.path("Optimizer/a.html.html"));
    EXPECT_FALSE(optimizer().findings().empty());
    // Nothing of the page that was shown before stays when a page is empty.
    for (const std::string& empty : {home.write("s/empty.html", ""), page("empty"), web.address() + "/404"}) {
        optimize(empty);
        EXPECT_THAT(prompts.last().text, StartsWith("No document found from HTML file"));
        EXPECT_TRUE(optimizer().findings().empty());
        EXPECT_EQ(part<SourceView>("lstSource").model()->rowCount(), 0);
        EXPECT_EQ(part<QTextEdit>("txtReport").toPlainText(), QString());
    }
    EXPECT_THAT(status(), HasSubstr("status 404"));
    // A name with tags is shown as it is.
    optimize(home.write("s/<b>&.html", "<title>Ink</title>"));
    EXPECT_EQ(part<QLabel>("lblSource").textFormat(), Qt::PlainText);
    EXPECT_THAT(part<QLabel>("lblReport").toolTip().toStdString(),
                AllOf(StartsWith("<qt>"), EndsWith("&lt;b&gt;&amp;.html.html</qt>")));
    removeFile(home.path("s/a.html"));
    ask(home.path("s/a.html"));
    EXPECT_THAT(prompts.last().text, StartsWith("Invalid path or file name"));
    quit();
}

TEST_F(OptimizerWindowTest, ARequestIsCancelledAndAnotherBegunAtOnce) {
    start();
    open();
    ask(web.address() + "/never");
    EXPECT_EQ(status(), "Connecting to : " + web.address() + "/never ....");
    EXPECT_EQ(part<QPushButton>("cmdRenovator").text(), QStringLiteral("&Cancel"));
    EXPECT_EQ(form()->focusWidget(), &part<QWidget>("cmdRenovator"));
    for (const char* name : {"cmdClose", "cmdFileLocation", "cboSiteURL"})
        EXPECT_FALSE(part<QWidget>(name).isEnabled()) << name;
    key(Qt::Key_Space);
    EXPECT_EQ(status(), "");
    ask(web.address() + "/never");
    EXPECT_TRUE(optimizer().isFetching());
    form()->close();
    ASSERT_NE(form(), nullptr);
    EXPECT_TRUE(form()->isVisible()) << "closing cancels first";
    optimize(page("good"));
    EXPECT_EQ(status(), "Done");
    // The program ends with a request under way.
    ask(web.address() + "/never");
    quit();
    EXPECT_THAT(home.read("data/apikrv.dmc"), HasSubstr("[Optimizer]\r\n1=" + page("good")));
}

TEST_F(OptimizerWindowTest, TheToolbarOfTheUrlsWritesAReportWithoutTheScreen) {
    start();
    clickNode("Shop/Home");
    find<QTabWidget>("SSTab1").setCurrentIndex(1);
    QAction& toolbar = control<QAction>(find<QWidget>("SSTab1"), "Optimizer");
    toolbar.trigger();
    EXPECT_EQ(prompts.last().title + ": " + prompts.last().text, "Optimizer: Please select a web site URL.");
    clickRow("lsvSiteURLs", page("several-h1"));
    toolbar.trigger();
    EXPECT_EQ(prompts.statuses.back(), "Connecting to " + page("several-h1") + " ...");
    toolbar.trigger();
    EXPECT_EQ(prompts.last().kind, "beep");
    EXPECT_TRUE(waitUntil([this] { return !prompts.notices.empty(); }));
    EXPECT_EQ(prompts.last().kind + prompts.last().text, "system" + optimizer().report().path);
    EXPECT_EQ(prompts.statuses.back(), "");
    EXPECT_THAT(prompts.notices.back(), StartsWith("0 errors, 2 warnings"));
    EXPECT_EQ(form(), nullptr);
    clickRow("lsvSiteURLs", web.address() + "/never.html");
    toolbar.trigger();
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return !optimizer().isFetching(); }));
    EXPECT_EQ(prompts.statuses.back(), "");
    open();
    EXPECT_EQ(part<ListView>("lsvFindings").rows()->count(), 2);
    quit();
}

TEST(SourceViewTest, NumbersTheLinesOfAnySource) {
    SourceLines lines;
    const auto shown = [&lines](const std::string& source) {
        lines.setSource(source);
        std::string text;
        for (int row = 0; row < lines.rowCount(); ++row)
            text += std::to_string(lines.numberAt(row)) + ":" +
                    lines.index(row).data().toString().toStdString() + "|";
        return text;
    };
    EXPECT_EQ(shown(""), "");
    EXPECT_EQ(lines.rowOf(1), -1);
    EXPECT_EQ(shown("a\nb\r\nc\rd\n"), "1:a|2:b|3:c|4:d|");
    EXPECT_EQ(shown("\n\n\r\n"), "1:|2:|3:|");
    EXPECT_EQ(shown("\t\x01\xE9\xC3\xA9\xF0\x9F\x98\x80"), "1:    ␁éé😀|");
    EXPECT_EQ(shown("x\n" + std::string(250, 'y') + "\nz"),
              "1:x|2:" + std::string(200, 'y') + "|0:" + std::string(50, 'y') + "|3:z|");
    EXPECT_EQ(lines.rowOf(3), 3);
    EXPECT_EQ(lines.rowOf(99), 3);
    // A character is never cut.
    EXPECT_EQ(shown(std::string(199, 'y') + "é"), "1:" + std::string(199, 'y') + "|0:é|");
}

}  // namespace
}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "core/FileStore.h"
#include "practice/PracticeWeb.h"
#include "ranking/frmRanking.h"
#include "ranking/frmSearch.h"
#include "widgets/ListView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using testing::HasSubstr;

// The practice web's search engines, and the form over the window.
class RankingWindowTest : public WindowTest {
  protected:
    RankingWindowTest() {
        settleHome(kSmallCatalogue);
        web.start();
        home.write("data/kwreng.dat",
                   pointAtPracticeWeb(readFile(RELAY_DATA_FOLDER "/practice/kwreng.dat"), web.address()));
        home.write("project.kwj",
                   "[Shop]\r\nDescription=\r\nLast=1\r\n1=Home|" + home.path("Projects/Home.kws") + "\r\n");
        home.writeWebsite("Projects/Home.kws", {"http://www.site-15.example/"});
    }

    template <typename Form>
    void inForm(Qt::Key key, Qt::KeyboardModifiers modifiers, const std::function<void(Form&)>& work) {
        bool opened = false;
        whenModal([&](QWidget& dialog) {
            auto& form = dynamic_cast<Form&>(dialog);
            EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
            opened = true;
            work(form);
            QTest::keyClick(&form, Qt::Key_Escape);
        });
        bringUp();
        press(key, modifiers);
        EXPECT_TRUE(opened);
    }
    static void typeInto(const QWidget& form, const char* field, const char* text) {
        auto& edit = control<QLineEdit>(form, field);
        edit.setFocus();
        QTest::keySequence(&edit, QKeySequence::SelectAll);
        QTest::keyClicks(&edit, QString::fromLatin1(text));
    }
    static void click(const QWidget& form, const char* button) {
        QTest::mouseClick(&control<QWidget>(form, button), Qt::LeftButton);
    }
    // The column of all engines, joined with "|".
    static std::string column(frmRanking& form, std::size_t place) {
        const Rows& rows = form.ranking().state().lsvRankingEngines;
        std::string texts;
        for (int row = 0; row < rows.count(); ++row)
            texts.append(row == 0 ? "" : "|").append(rows.at(row).subItems[place]);
        return texts;
    }

    PracticeWeb web;
};

TEST_F(RankingWindowTest, ARunIsSetUpReportedAndKeptInTheHistory) {
    start();
    program().services().preference.PromptConnection = 0;
    prompts.answers = {false};  // the upgrade
    inForm<frmRanking>(Qt::Key_R, Qt::ControlModifier, [this](frmRanking& form) {
        EXPECT_THAT(prompts.last().text, HasSubstr("Korvel Rank Watch 4.0"));
        click(form, "Command1_0");
        EXPECT_THAT(prompts.last().text, HasSubstr("Please save the profile first"));
        prompts.inputs = {"shop"};
        click(form, "Command2_0");
        click(form, "Command1_0");
        EXPECT_THAT(prompts.last().text, HasSubstr("Please specify the web site URL"));
        EXPECT_EQ(form.focusWidget(), &control<QWidget>(form, "txtURL"));
        for (const char* site : {"x", "http://www.site-15.example", "www.site-38.example"}) {
            typeInto(form, "txtURL", site);
            QTest::keyClick(&control<QWidget>(form, "txtURL"), Qt::Key_Return);
        }
        EXPECT_EQ(control<QListWidget>(form, "lstSiteURL").count(), 2);
        typeInto(form, "txtKeyWord", "paper shop");
        click(form, "Option1_1");
        EXPECT_EQ(control<QLineEdit>(form, "txtPageLinks").text(), QStringLiteral("30"));
        control<QCheckBox>(form, "chkSelectAll").click();
        auto& engines = control<ListView>(form, "lsvRankingEngines");
        engines.setFocus();
        engines.setCurrentIndex(engines.model()->index(5, 0));  // it stalls
        QTest::keyClick(&engines, Qt::Key_Space);
        EXPECT_EQ(control<QCheckBox>(form, "chkSelectAll").checkState(), Qt::PartiallyChecked);

        prompts.answers = {true, true, true};  // save the profile; report; save the results
        click(form, "Command1_0");
        EXPECT_EQ(control<QPushButton>(form, "Command1_0").text(), QStringLiteral("&Stop"));
        EXPECT_FALSE(control<QWidget>(form, "Command1_1").isEnabled());
        EXPECT_TRUE(waitUntil([this] { return prompts.last().kind == "system"; }));
        EXPECT_THAT(home.read("profile.kwr"), HasSubstr("Keyword=paper shop"));
        EXPECT_EQ(column(form, 1), "7, 30|2, 25|20|15|10||||");
        EXPECT_EQ(column(form, 3),
                  "Found|Found|Found|Found|Found||Nothing found|No result list|No result page");

        auto& tabs = control<QTabWidget>(form, "SSTab1");
        tabs.setCurrentIndex(1);
        const std::string report = prompts.last().text;
        prompts.shown.clear();
        auto& reports = control<ListView>(form, "ListView2");
        reports.setFocus();
        reports.setCurrentIndex(reports.model()->index(0, 0));
        click(form, "Command3");
        EXPECT_EQ(prompts.last().text, report);

        tabs.setCurrentIndex(2);
        EXPECT_EQ(control<QComboBox>(form, "cboHistoryProfile").currentText(), QStringLiteral("shop"));
        EXPECT_EQ(control<ListView>(form, "lsvHistory").rows()->count(), 8);
        auto& lines = control<QListWidget>(form, "lstHistoryLines");
        EXPECT_EQ(lines.count(), 8);
        lines.setFocus();
        lines.setCurrentRow(1);
        QTest::keyClick(&lines, Qt::Key_Space);
        EXPECT_EQ(form.history().chart().curves.size(), 7U);
        auto& sites = control<QComboBox>(form, "cboHistorySite");
        sites.setFocus();
        QTest::keyClick(&sites, Qt::Key_End);
        EXPECT_EQ(lines.count(), 16);
        prompts.files = {{home.path("history.csv"), 1}, {home.path("history.png"), 1}};
        click(form, "cmdExportCSV");
        click(form, "cmdExportPNG");
        EXPECT_THAT(home.read("history.csv"), HasSubstr("www.site-15.example"));
        EXPECT_GT(QImage::fromData(QByteArray::fromStdString(home.read("history.png"))).width(), 500);
    });
    quit();
}

TEST_F(RankingWindowTest, EscapeStopsARunAndThenClosesTheForm) {
    home.write(
        "profile.kwr",
        "[shop]\r\nNumOfURL=1\r\nURL1=a.test\r\nURL=a.test\r\nKeyword=paper shop\r\nType=0\r\nValue=2\r\n"
        "Engine6=-1;;;\r\n");
    start();
    program().services().preference.PromptConnection = 0;
    inForm<frmRanking>(Qt::Key_R, Qt::ControlModifier, [this](frmRanking& form) {
        auto& profiles = control<QComboBox>(form, "cboProfile");
        profiles.setFocus();
        QTest::keyClick(&profiles, Qt::Key_Down);
        EXPECT_EQ(control<QLineEdit>(form, "txtKeyWord").text(), QStringLiteral("paper shop"));
        prompts.shown.clear();
        click(form, "Command1_0");
        EXPECT_TRUE(form.ranking().isRunning());
        EXPECT_TRUE(waitUntil([&] { return column(form, 0) == "|||||2|||"; }));
        QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(control<QPushButton>(form, "Command1_0").text(), QStringLiteral("&Start Search"));
        EXPECT_EQ(column(form, 2), "|||||Cancelled|||");
        QCoreApplication::processEvents();
        EXPECT_TRUE(prompts.shown.empty());
        // Closing stops as well.
        click(form, "Command1_0");
        EXPECT_TRUE(form.ranking().isRunning());
        click(form, "Command4");
        EXPECT_FALSE(form.ranking().isRunning());
    });
    quit();
}

TEST_F(RankingWindowTest, TheSearchOpensAnEnginesAnswer) {
    start();
    inForm<frmSearch>(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier, [this](frmSearch& form) {
        auto& websites = control<QComboBox>(form, "cboWebProfile");
        websites.setFocus();
        QTest::keyClick(&websites, Qt::Key_Home);
        auto& urls = control<QListWidget>(form, "lstURL");
        ASSERT_EQ(urls.count(), 1);
        QTest::mouseClick(urls.viewport(), Qt::LeftButton, {}, urls.visualItemRect(urls.item(0)).center());
        auto& text = control<QComboBox>(form, "cboKeywords");
        EXPECT_EQ(text.currentText(), QStringLiteral("http://www.site-15.example/"));
        control<QComboBox>(form, "cboSearchType").setCurrentIndex(2);
        QTest::keyClick(&text, Qt::Key_Return);
        EXPECT_EQ(prompts.last().kind, "system");
        EXPECT_EQ(prompts.last().text, web.address() + "/search/harbour?q=link%3Awww.site-15.example&n=10");
        EXPECT_EQ(text.itemText(0), QStringLiteral("http://www.site-15.example/"));
    });
    EXPECT_THAT(home.read("data/apikrv.dmc"), HasSubstr("1=http://www.site-15.example/"));
    quit();
}

}  // namespace
}  // namespace relay::test

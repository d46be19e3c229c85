// SPDX-License-Identifier: GPL-3.0-or-later
// The submission wizard in the real window, by clicks and keys, on the practice web.
#include "app/WindowTest.h"
#include "catalogue/Catalogue.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/clsPreference.h"
#include "practice/PracticeWeb.h"
#include "submission/frmSubmit.h"
#include "widgets/ListView.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class SubmitTest : public WindowTest {
  protected:
    SubmitTest() {
        QLocale::setDefault(QLocale(QLocale::English));
        practice.start();
    }

    // Engines that take turns in the outcomes.
    std::string catalogueOf(const std::vector<std::string>& outcomes, int engines) const {
        std::string text;
        for (int number = 1; number <= engines; ++number) {
            const std::string name = "Engine " + std::to_string(number);
            const std::string& outcome = outcomes[static_cast<std::size_t>(number - 1) % outcomes.size()];
            const std::string action = outcome.empty() || outcome.find(':') != std::string::npos
                                           ? outcome
                                           : practice.address() + "/engines/e/" + outcome;
            text += "Name=" + name + "\nHome=http://e.test/\nAddURL=http://e.test/" + std::to_string(number) +
                    "\nCountry=US\nType=ENG\nCategory=N\nMethod=" + (number % 2 == 0 ? "POST" : "GET") +
                    "\nAction=" + action + "\nQuery=n=" + std::to_string(number) +
                    "&u=<URL>&t=<TITLE>&p=<PASSWORD>\n";
        }
        return text + "END:Version 6.0\n";
    }
    void open(const std::string& engines, std::int16_t connections) {
        settleHome(engines);
        const auto site = [this](const char* name, const std::vector<std::string>& urls) {
            return home.writeWebsite(std::string("Projects/") + name + ".kws", urls,
                                     "Title=Old Roses & Co\r\nPassword=secret\r\n");
        };
        home.write("project.kwj",
                   "[Shop]\r\nLast=2\r\n1=Roses|" +
                       site("Roses", {"http://www.roses.test/", "http://www.roses.test/care.html"}) +
                       "\r\n2=Tools|" + site("Tools", {"http://tools.test/"}) +
                       "\r\n[Notes]\r\nLast=1\r\n1=Walks|" + site("Walks", {"http://walks.test/?a=1"}) +
                       "\r\n");
        start();
        program().preference().Connections = connections;
        clickNode("Shop/Roses");
        command("Engines");
        QTest::mouseClick(&find<QPushButton>("cmdSelectEngine_1"), Qt::LeftButton);
    }
    // Keys work in the active window only.
    static void whenActive(const std::function<void(QWidget&)>& work) {
        whenModal([work](QWidget& dialog) {
            EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == &dialog; }));
            work(dialog);
        });
    }
    void timeOutSoon() {
        program().preference().AccessType = 2;  // the time-out of the settings counts
        program().preference().TimeOut = 1;
    }
    // Opens the wizard, runs `work` in it and closes it.
    void inWizard(const std::function<void(frmSubmit&)>& work) {
        bool worked = false;
        whenActive([&](QWidget& dialog) {
            worked = true;
            auto& wizard = dynamic_cast<frmSubmit&>(dialog);
            work(wizard);
            if (wizard.isVisible()) {
                prompts.answers = {true};
                wizard.reject();
            }
        });
        command("Submit");
        EXPECT_TRUE(worked);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
    static void push(QWidget& form, const char* button) {
        QWidget& widget = control<QPushButton>(form, button);
        ASSERT_TRUE(widget.isVisible() && widget.isEnabled()) << button;
        QTest::mouseClick(&widget, Qt::LeftButton);
    }
    static int page(QWidget& wizard) { return control<QTabWidget>(wizard, "SSTab1").currentIndex(); }
    static void startRun(frmSubmit& wizard) {
        // Return presses the main button of each page.
        for (int number = 0; number < 3; ++number) {
            EXPECT_EQ(page(wizard), number);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        }
        EXPECT_EQ(control<QPushButton>(wizard, "cmdSubmit").text(), QStringLiteral("&Stop"));
    }
    static bool finish(frmSubmit& wizard) {
        const bool ended = waitUntil([&] { return page(wizard) == 3 && !wizard.controller().isRunning(); });
        QCoreApplication::processEvents();  // the box
        return ended;
    }
    static std::vector<std::string> texts(QWidget& form, const char* list) {
        const Rows& rows = *control<ListView>(form, list).rows();
        std::vector<std::string> all;
        for (int row = 0; row < rows.count(); ++row) all.emplace_back(rows.at(row).text);
        return all;
    }
    static std::string labels(QWidget& form, const std::vector<const char*>& names) {
        std::string all;
        for (const char* name : names) all += fromScreen(control<QLabel>(form, name).text()) + "|";
        return all;
    }
    static void doubleClick(ListView& view, int row) {
        const QPoint place = view.visualRect(view.model()->index(row, 0)).center();
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
    }
    std::vector<std::string> shownTexts() const {
        std::vector<std::string> all;
        for (const auto& shown : prompts.shown) all.push_back(shown.text);
        return all;
    }

    PracticeWeb practice;
};

const std::vector<std::string> kEveryOutcome = {"submit", "302",   "404", "499",  "500",
                                                "600",    "reset", "",    "ftp:", "never"};

// Compares the files of the run byte by byte with tests/app/golden.
TEST_F(SubmitTest, ThreeWebsitesOfTwoProjectsFromTheFirstPageToTheReports) {
    open(catalogueOf(kEveryOutcome, 60), 9);
    timeOutSoon();
    inWizard([this](frmSubmit& wizard) {
        EXPECT_EQ(wizard.parentWidget(), &window());
        EXPECT_THAT(texts(wizard, "lsvSiteSelection"), ElementsAre("Roses", "Tools", "Walks"));
        push(wizard, "cmdNext");
        EXPECT_EQ(labels(wizard, {"lblNumOfEngines", "lblNumOfWebsites", "lblNumOfURLs",
                                  "lblNumOfConnections", "lblEstimatedTime"}),
                  "60|3|4|9|5|");
        push(wizard, "cmdStart");
        EXPECT_THAT(texts(wizard, "lsvSiteSubmitting"),
                    ElementsAre("http://www.roses.test/", "http://www.roses.test/care.html",
                                "http://tools.test/", "http://walks.test/?a=1"));
        push(wizard, "cmdSubmit");
        EXPECT_FALSE(control<QPushButton>(wizard, "cmdCancel_2").isEnabled());
        EXPECT_FALSE(control<QTabWidget>(wizard, "SSTab1").isTabEnabled(0));
        EXPECT_EQ(texts(wizard, "lsvConnections").size(), 9U);
        ASSERT_TRUE(finish(wizard));
        EXPECT_TRUE(waitUntil([this] { return prompts.last().text == "Submission done !"; }));
        EXPECT_EQ(control<QProgressBar>(wizard, "ProgressBar1").value(), 4 * 60);

        EXPECT_EQ(texts(wizard, "lsvReport").size(), 4U);
        push(wizard, "cmdReport");
        EXPECT_EQ(prompts.last().kind, "system");
        EXPECT_EQ(readFile(prompts.last().text), readFile(TEST_FOLDER "/golden/submit/roses.html"));
        EXPECT_EQ(home.read("fail.eng"), readFile(TEST_FOLDER "/golden/submit/fail.eng"));
        EXPECT_EQ(replaceAll(home.read("Projects/Roses.kws"), home.path(""), "{home}/"),
                  readFile(TEST_FOLDER "/golden/submit/roses.kws"));
    });
    EXPECT_EQ(rowTexts("lsvReports").size(), 2U);
}

TEST_F(SubmitTest, FiltersCopiesAndFollowsTheResults) {
    open(catalogueOf({"submit", "499", "500"}, 9), 3);
    inWizard([this](frmSubmit& wizard) {
        startRun(wizard);
        ASSERT_TRUE(finish(wizard));
        auto& words = control<QComboBox>(wizard, "cboResult");
        auto& list = control<ListView>(wizard, "lsvResults");
        QStringList choices;
        for (int item = 0; item < words.count(); ++item) choices << words.itemText(item);
        EXPECT_EQ(choices, (QStringList{QStringLiteral("All results (36)"), QStringLiteral("Success (12)"),
                                        QStringLiteral("Failed (12)"), QStringLiteral("Server Error (12)")}));
        EXPECT_EQ(list.rows()->count(), 36);
        words.setFocus();
        QTest::keyClick(&words, Qt::Key_End);
        EXPECT_EQ(list.rows()->count(), 12);
        list.rows()->sortByColumn(0);
        doubleClick(list, 0);
        EXPECT_EQ(prompts.last().kind + prompts.last().text, "systemhttp://e.test/3");
        QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
        EXPECT_THAT(fromScreen(QApplication::clipboard()->text()),
                    ::testing::MatchesRegex("Engine\tURL\tWeb site\tResult\tCode\tms\n"
                                            "Engine 3\thttp://[^\t]*\t[^\t]*\tServer Error\t500\t[0-9]+\n"));
    });
}

// The following runs, and the website's panel and engine list after them.
TEST_F(SubmitTest, RunsWhatFailedAgainAndShowsAndDeletesTheReports) {
    open(catalogueOf({"submit", "499", "500"}, 9), 3);
    inWizard([this](frmSubmit& wizard) {
        startRun(wizard);
        ASSERT_TRUE(finish(wizard));
        prompts.files = {{home.path("results.csv")}};
        push(wizard, "cmdSaveResults");
        const std::string csv = home.read("results.csv");
        EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 1 + 36);
        practice.forgetReceived();
        push(wizard, "cmdRunFailed");
        EXPECT_EQ(page(wizard), 2);
        push(wizard, "cmdSubmit");
        ASSERT_TRUE(finish(wizard));
        const auto received = practice.received();
        EXPECT_EQ(received.size(), 24U);
        for (const ReceivedSubmission& submission : received) {
            const std::string number = submission.fields.front().second;
            EXPECT_NE(std::stoi(number) % 3, 1) << "succeeded before";
        }
        // Back to the first page, for a run of one website.
        QTest::keyClick(&control<QTabWidget>(wizard, "SSTab1"), Qt::Key_Backtab, Qt::ControlModifier);
        control<QTabWidget>(wizard, "SSTab1").setCurrentIndex(0);
        auto& sites = control<ListView>(wizard, "lsvSiteSelection");
        sites.setFocus();
        sites.setCurrentIndex(sites.model()->index(0, 0));
        QTest::keyClick(&sites, Qt::Key_Space);
        push(wizard, "cmdNext");
        push(wizard, "cmdStart");
        EXPECT_THAT(texts(wizard, "lsvSiteSubmitting"),
                    ElementsAre("http://tools.test/", "http://walks.test/?a=1"));
    });
    clickNode("Shop/Roses");
    EXPECT_EQ(find<ListView>("lsvReports").rows()->count(), 4);
    find<QTabWidget>("SSTab1").setCurrentIndex(4);
    clickRow("lsvReports", "http://www.roses.test/");
    QTest::mouseClick(&find<QPushButton>("cmdViewReport"), Qt::LeftButton);
    EXPECT_EQ(prompts.last().kind, "system");
    const std::string report = prompts.last().text;
    EXPECT_TRUE(fileExists(report));
    prompts.answers = {true};
    QTest::mouseClick(&find<QPushButton>("cmdDeleteReport"), Qt::LeftButton);
    EXPECT_FALSE(fileExists(report));
    EXPECT_EQ(find<ListView>("lsvReports").rows()->count(), 3);

    command("Engines");
    QTest::mouseClick(&find<QPushButton>("cmdRemoveEngine_1"), Qt::LeftButton);
    home.write("fail.eng", "Engine 2\r\nEngine 3\r\n");
    command("mnuEngineItems_6");
    EXPECT_EQ(find<ListView>("lsvSelectedEngines").rows()->count(), 2);
}

TEST_F(SubmitTest, OffersToGoOnWithASubmissionThatWasCutOff) {
    open(catalogueOf({"submit", "never"}, 4), 2);
    inWizard([this](frmSubmit& wizard) {
        startRun(wizard);
        // Two have ended, and two wait for their answers.
        ASSERT_TRUE(waitUntil([this] { return practice.received().size() == 4; }));
    });
    const auto restart = [this](std::deque<bool> answers) {
        prompts.shown.clear();
        prompts.answers = std::move(answers);
        start();
        EXPECT_TRUE(waitUntil([this] { return prompts.answers.empty(); }));
    };
    restart({false, true});  // not now, but keep it
    EXPECT_THAT(shownTexts(), Contains(AllOf(HasSubstr("Requests left: 14."),
                                             HasSubstr("Engine 2 for http://www.roses.test/"))));
    bool resumed = false;
    whenActive([&](QWidget& dialog) {
        auto& wizard = dynamic_cast<frmSubmit&>(dialog);
        EXPECT_EQ(page(wizard), 2);
        EXPECT_EQ(texts(wizard, "lsvSiteSubmitting").size(), 4U);
        timeOutSoon();
        push(wizard, "cmdSubmit");
        EXPECT_TRUE(finish(wizard));
        EXPECT_EQ(control<QComboBox>(wizard, "cboResult").itemText(0), QStringLiteral("All results (16)"));
        wizard.reject();
        resumed = true;
    });
    restart({true});
    EXPECT_TRUE(waitUntil([&] { return resumed; }));
    restart({});
    EXPECT_TRUE(prompts.shown.empty());
}

// After each stop, the last page is shown and the current URL has its report.
TEST_F(SubmitTest, StopsAtTheStartInTheMiddleAndAtTheVeryEnd) {
    open(catalogueOf({"submit", "submit", "submit", "submit", "submit", "slow"}, 12), 3);
    const int kPairs = 4 * 12;
    for (const int after : {0, 20, kPairs}) {
        inWizard([&](frmSubmit& wizard) {
            int ended = 0;
            bool stopped = false;
            const auto stop = [&] {
                if (ended == after && !std::exchange(stopped, true)) push(wizard, "cmdSubmit");
            };
            QObject::connect(&wizard.controller(), &SubmissionController::engineEnded, &wizard, [&] {
                ++ended;
                stop();
            });
            startRun(wizard);
            stop();
            EXPECT_TRUE(finish(wizard)) << after;
            EXPECT_TRUE(stopped);
            const Rows& reports = *control<ListView>(wizard, "lsvReport").rows();
            EXPECT_GE(reports.count(), 1) << after;
            for (int row = 0; row < reports.count(); ++row)
                EXPECT_TRUE(fileExists(std::string(reports.at(row).tag))) << after;
            EXPECT_EQ(reports.at(reports.count() - 1).subItems[1], "Canceled") << after;
            push(wizard, "cmdCancel_3");
        });
    }
}

TEST_F(SubmitTest, AsksBeforeItClosesOverARun) {
    open(catalogueOf({"never"}, 4), 2);
    inWizard([this](frmSubmit& wizard) {
        startRun(wizard);
        ASSERT_TRUE(waitUntil([this] { return practice.received().size() == 2; }));
        prompts.answers = {false, true};
        QTest::keyClick(&wizard, Qt::Key_Escape);
        EXPECT_TRUE(wizard.isVisible());
        EXPECT_TRUE(wizard.controller().isRunning());
        wizard.close();
        EXPECT_FALSE(wizard.isVisible());
    });
    EXPECT_THAT(home.read("Error.log"), HasSubstr("Cancel submit by user."));
    // The window works again, and so does another wizard.
    inWizard([](frmSubmit& wizard) { push(wizard, "cmdCancel_0"); });
    clickNode("Shop/Tools");
    EXPECT_EQ(current(), "Tools");
}

TEST_F(SubmitTest, ShowsWhatAnEngineWouldBeSent) {
    open(catalogueOf({"submit"}, 2), 2);
    const auto request = [](QWidget& preview) {
        return fromScreen(control<QPlainTextEdit>(preview, "txtRequest").toPlainText());
    };
    const std::string sent = "n=2&u=http%3A%2F%2Fwww.roses.test%2F&t=Old+Roses+%26+Co&p=";
    whenActive([&](QWidget& preview) {
        EXPECT_EQ(request(preview),
                  "POST " + practice.address() + "/engines/e/submit\n\n" + sent + "********");
        EXPECT_THAT(texts(preview, "lsvFields"), ElementsAre("n", "u", "t", "p"));
        QTest::keyClick(&control<QCheckBox>(preview, "chkShowPassword"), Qt::Key_Space);
        EXPECT_THAT(request(preview), HasSubstr("p=secret"));
        control<QComboBox>(preview, "cboWebsite").setCurrentIndex(2);
        EXPECT_THAT(request(preview), HasSubstr("walks.test"));
        preview.close();
    });
    clickRow("lsvEngines", "Engine 2");
    QTest::keyClick(&find<ListView>("lsvEngines"), Qt::Key_P, Qt::ControlModifier);
    inWizard([&](frmSubmit& wizard) {
        push(wizard, "cmdNext");
        whenActive([&](QWidget& preview) {
            EXPECT_THAT(request(preview), HasSubstr("GET " + practice.address()));
            preview.close();
        });
        push(wizard, "cmdPreview");
    });
    EXPECT_TRUE(practice.received().empty());
}

}  // namespace
}  // namespace relay::test

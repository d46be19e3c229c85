// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "app/clsMain.h"
#include "app/frmHelp.h"
#include "catalogue/Catalogue.h"
#include "catalogue/frmEngineBuilder.h"
#include "core/FileSystem.h"
#include "core/Text.h"
#include "practice/PracticeWeb.h"
#include "submission/SubmissionController.h"
#include "submission/frmSubmit.h"
#include "widgets/ListView.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using testing::HasSubstr;

// The builder over the window, and a form on the practice web whose fields have names of their own.
class EngineBuilderTest : public WindowTest {
  protected:
    EngineBuilderTest() {
        web.describeEngines(
            "Name=Cove\r\nMethod=POST\r\nAction=http://x/engines/cove/submit\r\n"
            "Query=site_name=<TITLE>&site_url=<URL>&mail=<EMAIL>&lang=<LANGUAGE>&go=Add\r\n",
            "[Other]\r\n");
        web.start();
        settleHome(
            std::string("Name=Alpha\r\nType=ENG\r\nCategory=N\r\nMethod=GET\r\nAction=http://a.test/\r\n"
                        "Query=u=<URL>\r\nEND:Version 6.0\r\n"));
    }

    frmEngineBuilder& open() {
        bringUp();
        command("mnuToolsItems_9");
        auto& form = *window().findChild<frmEngineBuilder*>();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&form));
        return form;
    }
    void typeInto(frmEngineBuilder& form, const char* name, const std::string& text) {
        auto& field = control<QLineEdit>(form, name);
        field.setFocus();
        QTest::keySequence(&field, QKeySequence::SelectAll);
        QTest::keyClicks(&field, QString::fromStdString(text));
    }
    static void push(frmEngineBuilder& form, const char* name) {
        QTest::mouseClick(&control<QPushButton>(form, name), Qt::LeftButton);
    }
    static void clickCell(frmEngineBuilder& form, const char* name, int row, int column) {
        auto& list = control<ListView>(form, name);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                          list.visualRect(list.model()->index(row, column)).center());
    }
    static std::string cell(EngineBuilder& builder, int row, int column) {
        const RowView view = builder.lsvDataFields.at(row);
        return std::string(column == 0 ? view.text : view.subItems[static_cast<std::size_t>(column) - 1]);
    }

    PracticeWeb web;
};

TEST_F(EngineBuilderTest, AFormGoesFromItsAddressToASubmission) {
    home.write("project.kwj",
               "[Shop]\r\nLast=1\r\n1=Roses|" +
                   home.writeWebsite("Projects/Roses.kws", {"http://shop.example/"}, "Title=Rose Shop\r\n") +
                   "\r\n");
    start();
    {
        frmEngineBuilder& form = open();
        EngineBuilder& builder = form.builder();
        push(form, "cmdGetSource");
        EXPECT_EQ(prompts.last().text, "Please enter engine submit URL.");
        prompts.inputs = {"alpha", "Cove Search"};
        QTest::keyClick(&form, Qt::Key_N, Qt::ControlModifier);
        EXPECT_THAT(prompts.last().text, HasSubstr("already exsit"));
        QTest::keyClick(&form, Qt::Key_N, Qt::ControlModifier);
        typeInto(form, "txtSubmitURL", web.address() + "/engines/cove/add");
        QTest::keyClick(&control<QLineEdit>(form, "txtSubmitURL"), Qt::Key_Return);
        ASSERT_TRUE(waitUntil([&] { return builder.cmdGetFields; }));
        EXPECT_THAT(control<QPlainTextEdit>(form, "txtSource").toPlainText().toStdString(),
                    HasSubstr("<input name=\"site_name\" type=\"text\">"));
        push(form, "cmdGetFields");
        EXPECT_EQ(control<QTabWidget>(form, "SSTab1").currentIndex(), 2);
        ASSERT_EQ(builder.lsvDataFields.count(), 5);
        EXPECT_EQ(cell(builder, 4, 1) + "|" + cell(builder, 4, 2), "Add|hidden");
        EXPECT_THAT(control<QLabel>(form, "lblFindings").text().toStdString(), HasSubstr("no macro"));
        // One suggestion by a click on it, the others together; a row without one by hand.
        EXPECT_EQ(cell(builder, 0, 2), "use <TITLE> (label)");
        clickCell(form, "lsvDataFields", 0, 2);
        EXPECT_EQ(cell(builder, 0, 1) + "|" + cell(builder, 0, 2), "<TITLE>|label");
        push(form, "cmdUseAll");
        EXPECT_EQ(cell(builder, 2, 1), "<EMAIL>");
        clickCell(form, "lsvDataFields", 3, 0);
        typeInto(form, "txtValue", "English");
        QTest::keyClick(&control<QLineEdit>(form, "txtValue"), Qt::Key_Return);
        EXPECT_EQ(builder.findings.size(), 0u);

        push(form, "cmdTryIt");
        ASSERT_TRUE(waitUntil([&] { return builder.lsvReceived.count() > 0; }));
        EXPECT_EQ(builder.lsvReceived.at(0).subItems[0], "Paper Shop");
        EXPECT_EQ(builder.lsvReceived.count(), 5);
        EXPECT_EQ(web.received().size(), 0u) << "the trial goes to a practice web of its own";

        QTest::keyClick(&form, Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(builder.lblEngines, "Engines: 1");
        prompts.answers = {true};
        QTest::keyClick(&form, Qt::Key_M, Qt::ControlModifier);
        EXPECT_THAT(prompts.last().text, HasSubstr("Merge engine data is completed."));
        QTest::keyClick(&form, Qt::Key_W, Qt::ControlModifier);
        EXPECT_FALSE(form.isVisible());
    }
    quit();
    start();
    Catalogue& catalogue = program().main().catalogue;
    ASSERT_TRUE(catalogue.selection.EngineSingleSelect("Cove Search"));
    clickNode("Shop/Roses");
    whenModal([](QWidget& wizard) {
        EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == &wizard; }));
        for (int page = 0; page < 3; ++page) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        EXPECT_TRUE(waitUntil([&] {
            return control<QTabWidget>(wizard, "SSTab1").currentIndex() == 3 &&
                   !dynamic_cast<frmSubmit&>(wizard).controller().isRunning();
        }));
        QCoreApplication::processEvents();  // the box
        QTest::keyClick(&wizard, Qt::Key_Escape);
    });
    command("Submit");
    ASSERT_EQ(web.received().size(), 1u);
    const auto fields = web.received().front().fields;
    EXPECT_EQ(fields.at(0), std::pair(std::string("site_name"), std::string("Rose Shop")));
    EXPECT_EQ(fields.at(3), std::pair(std::string("lang"), std::string("English")));

    // How it did is in the history, and in the list of engines when that is wanted, from then on.
    EXPECT_EQ(catalogue.lists.lsvEngines.columnCount(), 3);
    find<QAction>("mnuEngineHealth").trigger();
    quit();
    start();
    const Rows& engines = program().main().catalogue.lists.lsvEngines;
    EXPECT_EQ(engines.columnCount(), 5);
    EXPECT_EQ(engines.at(engines.indexOf("Cove Search")).subItems[2], "2002-04-01 13:05:00");
    find<QAction>("mnuEngineHealth").trigger();
    EXPECT_EQ(engines.columnCount(), 3);
}

// A second scan of a stored engine says what became of its form; unsaved work is never lost without a word.
TEST_F(EngineBuilderTest, ShowsWhatChangedAndAsksBeforeItForgets) {
    home.write("data/krvengc.dat",
               "Name=One\r\nMethod=Get\r\nAction=http://x.test/\r\nQuery=a=<TITLE>&b=<URL>\r\nName=Two\r\n"
               "Action=http://y.test/\r\nCategory=Y\r\n");
    home.write("data/catcus.dat", "[Two]\r\nAccounting=acc\r\nUnheard Of=x\r\n");
    start();
    frmEngineBuilder& form = open();
    EngineBuilder& builder = form.builder();
    EXPECT_EQ(builder.txtEngineName, "One");
    const std::size_t shown = prompts.shown.size();
    QTest::keyClick(&form, Qt::Key_F1);
    auto* const guide = form.findChild<frmHelp*>();
    ASSERT_NE(guide, nullptr);
    EXPECT_EQ(prompts.shown.size(), shown);
    guide->close();
    auto& source = control<QPlainTextEdit>(form, "txtSource");
    control<QTabWidget>(form, "SSTab1").setCurrentIndex(1);
    source.setFocus();
    QTest::keyClicks(&source,
                     QStringLiteral("<form action=http://x.test/ method=post><input name=aa><input name=b>"));
    builder.getFields();
    EXPECT_THAT(builder.formChanges,
                testing::ElementsAre("Method: Get is now POST", "New field: aa", "Field is gone: a"));
    EXPECT_EQ(cell(builder, 1, 2), "use <URL> (stored)");
    // No: the changes are given up. The other engine has a category that the program does not know; it stays.
    prompts.answers = {false};
    builder.getEngineData(1);
    EXPECT_THAT(prompts.last().text,
                HasSubstr("setCategoryData_Error: Element not found\r\nField: Unheard Of"));
    typeInto(form, "txtAction", "z.test");
    prompts.answers = {true};
    QTest::keyClick(&form, Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(form.isVisible()) << "the action is refused";
    EXPECT_EQ(prompts.last().text, "Invalid Action Field ! Please make sure to use FULL URL path.");
    typeInto(form, "txtAction", "http://z.test/");
    prompts.answers = {true};
    QTest::keyClick(&form, Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(form.isVisible());
    EXPECT_THAT(home.read("data/krvengc.dat"), HasSubstr("Action=http://z.test/"));
    EXPECT_THAT(home.read("data/catcus.dat"), HasSubstr("[Two]\r\nAccounting=acc\r\nUnheard Of=x\r\n"));
    // Deleting the last engine leaves neither file.
    open();
    for (int i = 0; i < 2; ++i) {
        prompts.answers = {true};
        builder.Delete();
    }
    form.close();
    EXPECT_FALSE(fileExists(home.path("data/krvengc.dat")) || fileExists(home.path("data/catcus.dat")));
}

}  // namespace
}  // namespace relay::test

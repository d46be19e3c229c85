// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "core/FileSystem.h"
#include "pagetools/frmDoorway.h"
#include "widgets/Heading.h"
#include "widgets/ListView.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

#include <filesystem>
#include <gmock/gmock.h>

namespace relay::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class DoorwayWindowTest : public WindowTest {
  protected:
    DoorwayWindowTest() {
        settleHome(kSmallCatalogue);
        makeFolder(home.path("out"));
    }

    // Opens the form from the menu, runs `work`, and closes it with Escape.
    void inForm(const std::function<void()>& work) {
        bool opened = false;
        whenModal([&](QWidget& dialog) {
            form = dynamic_cast<frmDoorway*>(&dialog);
            ASSERT_NE(form, nullptr);
            EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == form; }));
            opened = true;
            work();
            QTest::keyClick(form, Qt::Key_Escape);
            EXPECT_FALSE(form->isVisible());
        });
        bringUp();
        command("mnuToolsItems_5");
        EXPECT_TRUE(opened);
    }
    template <typename Widget>
    Widget& in(const char* name) {
        return control<Widget>(*form, name);
    }
    void click(const char* button) { QTest::mouseClick(&in<QPushButton>(button), Qt::LeftButton); }
    void write(const char* field, const QString& text) {
        auto& widget = in<QWidget>(field);
        widget.setFocus();
        QTest::keySequence(&widget, QKeySequence::SelectAll);
        QTest::keyClicks(&widget, text);
    }
    // Types on from the title with the Tab key; the profile's name stays empty.
    void fill() {
        in<QWidget>("txtTitle").setFocus();
        for (const char* text : {"Paper", "one", "two words", "three", "", "", "", "", "", "About paper",
                                 "shop.test", "", "", "", "Body", "/logo.png", "Shop"}) {
            QWidget* const field = QApplication::focusWidget();
            QTest::keyClicks(field, QString::fromUtf8(text));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        write("txtFileLocation", QString::fromStdString(home.path("out")));
    }
    std::vector<std::string> pages() {
        std::vector<std::string> texts;
        const Rows& rows = *in<ListView>("lsvPages").rows();
        for (int row = 0; row < rows.count(); ++row)
            texts.push_back(std::string(rows.at(row).text) + "|" + std::string(rows.at(row).subItems[0]) +
                            "|" + std::string(rows.at(row).subItems[1]));
        return texts;
    }

    frmDoorway* form = nullptr;
};

TEST_F(DoorwayWindowTest, ShowsThePagesAndCreatesThem) {
    home.write("out/one.html", "old");
    start();
    inForm([&] {
        EXPECT_EQ(in<Heading>("lblTitle").text(), QStringLiteral("Dooryway Page"));
        click("Command1");
        EXPECT_EQ(prompts.last().text, "Please enter a title of your web site.");
        EXPECT_EQ(in<Heading>("lblTitle").text(), QStringLiteral("Title"));
        EXPECT_TRUE(in<QWidget>("txtTitle").hasFocus());
        fill();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(in<QWidget>("cmdBrowse").hasFocus());
        EXPECT_EQ(in<Heading>("lblTitle").text(), QStringLiteral("Dooryway Page"));
        EXPECT_TRUE(waitUntil([&] { return pages().size() == 3; }));
        EXPECT_THAT(pages(), ElementsAre("one|one.html|Replaces the file", "two words|two_words.html|New",
                                         "three|three.html|New"));
        EXPECT_THAT(in<QPlainTextEdit>("txtSource").toPlainText().toStdString(),
                    HasSubstr("<META name=\"Keywords\" content=\"one,two words,three\">\n"));
        EXPECT_EQ(home.read("out/one.html"), "old");
        QTest::keyClick(form, Qt::Key_X, Qt::AltModifier);
        EXPECT_THAT(in<QPlainTextEdit>("txtPage").toPlainText().toStdString(),
                    testing::AllOf(HasSubstr("If you need more information about two words, you will"),
                                   testing::Not(HasSubstr("<"))));
        write("txtCompany", QStringLiteral("\b"));
        click("Command1");
        EXPECT_TRUE(in<QWidget>("txtCompany").hasFocus());
        EXPECT_FALSE(fileExists(home.path("out/three.html")));
        write("txtCompany", QStringLiteral("Shop"));
        QTest::keyClick(form, Qt::Key_C, Qt::AltModifier);
        EXPECT_TRUE(waitUntil([&] { return fileExists(home.path("out/three.html")); }));
        EXPECT_THAT(prompts.last().text, HasSubstr("3 Dooryway pages have been created"));
        EXPECT_THAT(home.read("out/one.html"), testing::StartsWith("<!--Paper-->"));
        EXPECT_EQ(pages().back(), "three|three.html|Replaces the file");
        EXPECT_FALSE(fileExists(home.path("Doorway/Profiles")));
    });
    EXPECT_THAT(prompts.last().text, HasSubstr("not saved in a profile"));
    // Answered No, closed, and still there; the URL is in the list.
    inForm([&] {
        EXPECT_EQ(in<QLineEdit>("txtKeywords_1").text(), QStringLiteral("two words"));
        EXPECT_EQ(in<QComboBox>("cboSiteURL").itemText(0), QStringLiteral("shop.test"));
        click("cmdNewPage");
        EXPECT_EQ(in<QLineEdit>("txtKeywords_1").text(), QString());
        EXPECT_TRUE(pages().empty());
    });
    quit();
}

TEST_F(DoorwayWindowTest, KeepsValuesInProfiles) {
    start();
    inForm([&] {
        fill();
        write("cboProfile", QStringLiteral("shop"));
        click("Command1");
        EXPECT_THAT(home.read("Doorway/Profiles/shop"), HasSubstr("\r\nKeyword2=two words\r\n"));
        // An unchanged profile is not asked for again; a changed one is.
        const std::size_t asked = prompts.shown.size();
        click("Command1");
        EXPECT_EQ(prompts.shown.size(), asked + 1);
        write("txtTitle", QStringLiteral("Other"));
        prompts.answers = {true};
        click("cmdSaveProfile");
        EXPECT_THAT(prompts.last().text, HasSubstr("'shop' already exist"));
        EXPECT_THAT(home.read("Doorway/Profiles/shop"), HasSubstr("Title=Other\r\n"));
        click("cmdNewPage");
        EXPECT_EQ(in<QComboBox>("cboProfile").currentText(), QString());
        QTest::keyClick(&in<QComboBox>("cboProfile"), Qt::Key_Down);
        EXPECT_EQ(in<QLineEdit>("txtTitle").text(), QStringLiteral("Other"));
        // Values that are not saved: the question comes first, and a save that fails keeps them.
        write("txtTitle", QStringLiteral("Typed"));
        write("cboProfile", QStringLiteral("no/name"));
        prompts.answers = {true};
        QTest::keyClick(form, Qt::Key_Escape);
        EXPECT_TRUE(form->isVisible());
        EXPECT_EQ(prompts.last().title, "Save Profile");
        EXPECT_EQ(in<QLineEdit>("txtTitle").text(), QStringLiteral("Typed"));
    });
    quit();
}

TEST_F(DoorwayWindowTest, LosesNothingWhereItCannotWrite) {
    start();
    inForm([&] {
        fill();
        std::filesystem::create_directory(home.path("out/two_words.html"));
        form->takeKeywords({"one", "two words", "three"});
        EXPECT_THAT(pages()[1], HasSubstr("Not possible"));
        click("Command1");
        EXPECT_EQ(prompts.last().title, "Create Doorway Page");
        EXPECT_EQ(form->doorway().fields.txtSummary, "Body");
        EXPECT_EQ(in<QLineEdit>("txtCompany").text(), QStringLiteral("Shop"));
        prompts.files = {{}, {home.path("elsewhere"), 1}};
        click("cmdBrowse");
        EXPECT_EQ(form->doorway().fields.txtFileLocation, home.path("out"));
        click("cmdBrowse");
        EXPECT_THAT(in<QLabel>("lblFolder").text().toStdString(),
                    testing::AllOf(HasSubstr("There is no folder"), HasSubstr("Doorway Pages/")));
        // Keywords from elsewhere replace those of the page after a question.
        EXPECT_FALSE(form->takeKeywords({"new"}));
        EXPECT_EQ(form->doorway().fields.txtKeywords[1], "two words");
        prompts.answers = {true};
        EXPECT_TRUE(form->takeKeywords({"new"}));
        EXPECT_THAT(pages(), ElementsAre("new|new.html|New"));
        prompts.answers = {true};
        form->takeKeywords(std::vector<std::string>(9, "x"));
        EXPECT_THAT(in<QLabel>("lblStatusBar").text().toStdString(), HasSubstr("first 8 of 9"));
    });
    quit();
}

}  // namespace
}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "pagetools/frmMetaTag.h"
#include "pagetools/frmMetaTagChanges.h"
#include "practice/PracticeWeb.h"
#include "widgets/ListView.h"
#include "widgets/TextViewer.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

#include <gmock/gmock.h>

namespace relay::test {
namespace {

using testing::HasSubstr;

constexpr const char* kPage =
    "<html>\r\n<head>\r\n<title>Old</title>\r\n</head>\r\n<body>x</body></html>\r\n";

// The editor over the window, with the folder s of the home.
class MetaTagWindowTest : public WindowTest {
  protected:
    MetaTagWindowTest() {
        settleHome(kSmallCatalogue);
        web.start();
        for (const char* name : {"s/a.html", "s/b.html", "s/c.txt"}) home.write(name, kPage);
    }

    // Opens the editor by its key, runs `work`, and closes it with Escape.
    void inEditor(const std::function<void(frmMetaTag& form)>& work) {
        bool opened = false;
        whenModal([&](QWidget& dialog) {
            auto& form = dynamic_cast<frmMetaTag&>(dialog);
            EXPECT_TRUE(QTest::qWaitForWindowExposed(&form));
            opened = true;
            work(form);
            QTest::keyClick(&form, Qt::Key_Escape);
        });
        bringUp();
        press(Qt::Key_M, Qt::ControlModifier);
        EXPECT_TRUE(opened);
    }
    static void typeInto(QWidget& field, const char* text) {
        field.setFocus();
        QTest::keySequence(&field, QKeySequence::SelectAll);
        QTest::keyClicks(&field, QString::fromUtf8(text));
    }
    static void choose(ListView& list, std::string_view text, Qt::KeyboardModifiers modifiers = {}) {
        for (int row = 0; row < list.rows()->count(); ++row) {
            if (list.rows()->at(row).text != text) continue;
            const QRect place = list.visualRect(list.model()->index(row, 0));
            QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, place.center());
        }
    }
    static QString text(const QWidget& form, const char* label) {
        return control<QLabel>(form, label).text();
    }

    PracticeWeb web;
};

TEST_F(MetaTagWindowTest, TheEditorReadsShowsAndUpdatesFiles) {
    start();
    inEditor([this](frmMetaTag& form) {
        auto& list = control<ListView>(form, "lsvDirs");
        form.editor().openFolder(home.path("s"));
        choose(list, "a.html");
        EXPECT_EQ(control<QLineEdit>(form, "txtTitle").text(), QStringLiteral("Old"));
        EXPECT_EQ(text(form, "Label1_0"), QStringLiteral("&Title (3 characters)"));
        EXPECT_THAT(control<QPlainTextEdit>(form, "Text1").toPlainText().toStdString(),
                    HasSubstr("<title>Old</title>"));
        QTest::keySequence(&list, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A));
        typeInto(control<QWidget>(form, "txtTitle"), "New");
        typeInto(control<QWidget>(form, "txtKeyWord"), "k");
        typeInto(control<QWidget>(form, "txtDescription"), "words");
        EXPECT_EQ(text(form, "Label1_2"), QStringLiteral("&Description (5 characters)"));
        EXPECT_FALSE(control<QWidget>(form, "chkTitleTop").isEnabled());
        control<QRadioButton>(form, "optUpdate_1").click();
        control<QCheckBox>(form, "chkTitleTop").click();

        std::string diff;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &form, [&] {
            auto* const changes = qobject_cast<frmMetaTagChanges*>(QApplication::activeModalWidget());
            if (changes == nullptr) return;
            poll.stop();
            EXPECT_TRUE(QTest::qWaitForWindowActive(changes));
            EXPECT_TRUE(waitUntil([&] { return control<QWidget>(*changes, "lsvChanged").hasFocus(); }));
            QTest::keyClick(&control<QWidget>(*changes, "lsvChanged"), Qt::Key_Down);
            EXPECT_THAT(text(*changes, "lblFile").toStdString(), testing::EndsWith("b.html"));
            diff = control<QPlainTextEdit>(*changes, "txtDiff").toPlainText().toStdString();
            QTest::keyClick(changes, Qt::Key_Escape);
        });
        poll.start(1);
        control<QPushButton>(form, "cmdShowChanges").click();
        EXPECT_THAT(diff, HasSubstr("+ <title>New</title>"));
        EXPECT_EQ(home.read("s/b.html"), kPage);

        prompts.answers = {true};
        control<QPushButton>(form, "Command1_0").click();
        EXPECT_EQ(text(form, "lblStatusBar"), QStringLiteral("Done"));
        const std::string changed =
            changedPage(kPage, {{"New", "k", "words"}, MetaTagChange::Way::Replace, true});
        EXPECT_EQ(home.read("s/a.html"), changed);
        EXPECT_EQ(home.read("s/b.html"), changed);
        EXPECT_EQ(home.read("s/c.txt"), kPage);
    });
    // It is as it was left, and reads a page of the web; a cancelled request changes nothing.
    inEditor([this](frmMetaTag& form) {
        EXPECT_EQ(form.editor().folder(), home.path("s"));
        auto& address = control<QComboBox>(form, "cboAddress");
        typeInto(address, (web.address() + "/site/meta/usual.html").c_str());
        QTest::keyClick(&address, Qt::Key_Return);
        auto& title = control<QLineEdit>(form, "txtTitle");
        EXPECT_TRUE(waitUntil([&] { return title.text() == QStringLiteral("Paper Shop"); }));
        typeInto(address, (web.address() + "/never").c_str());
        QTest::keyClick(&address, Qt::Key_Return);
        QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_TRUE(waitUntil([&] { return text(form, "lblStatusBar") == QStringLiteral("Cancelled"); }));
        EXPECT_TRUE(form.isVisible());
    });
    quit();
}

TEST_F(MetaTagWindowTest, TheToolbarOfTheUrlsReadsAndWritesTheLocalFile) {
    home.write("project.kwj",
               "[Shop]\r\nDescription=\r\nLast=1\r\n1=Home|" + home.path("Projects/Home.kws") + "\r\n");
    home.writeWebsite("Projects/Home.kws", {web.address() + "/site/meta/usual.html", web.address() + "/404"});
    start();
    clickNode("Shop/Home");
    find<QTabWidget>("SSTab1").setCurrentIndex(1);
    command("InsertMetaTag");
    EXPECT_THAT(prompts.last().text, HasSubstr("in the 'Local File Location' box"));
    type("txtURLFileLocation", QString::fromStdString(home.path("s/a.html")));
    command("GetMetaTag");
    EXPECT_EQ(find<QLineEdit>("txtURLTitle").text(), QStringLiteral("Old"));

    clickRow("lsvSiteURLs", web.address() + "/site");
    command("GetMetaTag");
    EXPECT_EQ(prompts.statuses.back(), "Connecting to " + web.address() + "/site/meta/usual.html ...");
    EXPECT_TRUE(
        waitUntil([&] { return find<QLineEdit>("txtURLTitle").text() == QStringLiteral("Paper Shop"); }));
    EXPECT_EQ(prompts.statuses.back(), "");
    type("txtURLFileLocation", QString::fromStdString(home.path("s/a.html")));
    command("InsertMetaTag");
    EXPECT_EQ(home.read("s/a.html"), kPage) << "answered No";
    prompts.answers = {true, true};
    command("InsertMetaTag");
    EXPECT_THAT(home.read("s/a.html"), HasSubstr("<title>Paper ShopOld</title>"));
    command("ReplaceMetaTag");
    EXPECT_THAT(prompts.last().text, HasSubstr("want to repalce the existing"));
    EXPECT_THAT(home.read("s/a.html"), HasSubstr("<title>Paper Shop</title>"));
    clickRow("lsvSiteURLs", web.address() + "/404");
    command("GetMetaTag");
    EXPECT_TRUE(waitUntil([&] { return prompts.last().title == "Get Meta Tag"; }));
    EXPECT_THAT(prompts.last().text, HasSubstr("status 404"));
    quit();
}

TEST(TextViewerTest, ReadsTheCommandOfAProgram) {
    const auto command = [](const char* entry) {
        return openingCommand(entry, QStringLiteral("/a b.html")).join(QLatin1Char('|')).toStdString();
    };
    EXPECT_EQ(command("[X]\nExec=no\n[Desktop Entry]\nExec=\"my editor\" --new %F %i 50%%\n"),
              "my editor|--new|/a b.html|50%");
    EXPECT_EQ(command("[Desktop Entry]\r\nTerminal=true\nExec = vi %u\n"),
              "x-terminal-emulator|-e|vi|file:///a%20b.html");
    EXPECT_EQ(command("[Desktop Entry]\nName=x\n"), "");
}

}  // namespace
}  // namespace relay::test

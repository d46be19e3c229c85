// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"
#include "app/frmPreference.h"
#include "core/PreferenceEntry.h"
#include "core/Rows.h"
#include "core/ScreenText.h"
#include "support/CaseTable.h"
#include "support/SessionFixture.h"
#include "widgets/Appearance.h"
#include "widgets/Contrast.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"
#include "widgets/ListView.h"
#include "widgets/QtPrompts.h"

#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QScreen>
#include <QSignalSpy>
#include <QStyleOption>
#include <QTabWidget>

#include <filesystem>
#include <gmock/gmock.h>

namespace relay::test {
namespace {

using ::testing::ElementsAre;

class ListViewTest : public ::testing::Test {
  protected:
    ListViewTest() {
        rows.setColumns({"Name (3)", "Type"});
        for (const char* name : {"b", "c", "a"})
            rows.add({.key = name, .text = name, .subItems = {"ENG"}, .icon = "ENG"});
        view.setRows(&rows, {6});
        view.resize(300, 200);
        view.show();
    }
    std::string order() const {
        std::string names;
        for (int row = 0; row < rows.count(); ++row) names += rows.at(row).text;
        return names;
    }
    std::string highlighted() const {
        std::string names;
        for (int row = 0; row < rows.count(); ++row)
            if (rows.at(row).highlighted) names += rows.at(row).text;
        return names;
    }
    std::string selected() const {
        std::string names;
        for (int row = 0; row < rows.count(); ++row)
            if (view.selectionModel()->isRowSelected(row)) names += rows.at(row).text;
        return names;
    }
    void clickTitle(int column) {
        QHeaderView& header = *view.header();
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                          QPoint(header.sectionViewportPosition(column) + 5, header.height() / 2));
    }

    Rows rows;
    ListView view;
};

TEST_F(ListViewTest, TitlesSortAndReverseByMouseAndByMenu) {
    clickTitle(0);
    EXPECT_EQ(order(), "abc");
    EXPECT_EQ(view.header()->sortIndicatorOrder(), Qt::AscendingOrder);
    clickTitle(0);
    EXPECT_EQ(order(), "cba");
    EXPECT_EQ(view.header()->sortIndicatorOrder(), Qt::DescendingOrder);
    QTimer::singleShot(0, [] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        EXPECT_EQ(menu->actions().constFirst()->text(), QStringLiteral("Sort by Name"));
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    const QPoint place(5, 5);
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, place, view.viewport()->mapToGlobal(place));
    QApplication::sendEvent(view.viewport(), &byKey);
    EXPECT_EQ(order(), "abc");
    rows.clear();
    for (const char* name : {"e", "d"}) rows.add({.key = name, .text = name});
    EXPECT_FALSE(view.header()->isSortIndicatorShown()) << "a refilled list is unsorted";
    clickTitle(0);
    EXPECT_EQ(order(), "de");
}

TEST_F(ListViewTest, SelectionAndHighlightsAreTheSame) {
    view.setFocus();
    QTest::keySequence(&view, QKeySequence::SelectAll);
    EXPECT_EQ(highlighted(), "bca");
    rows.setHighlighted(1, false);
    EXPECT_TRUE(waitUntil([&] { return selected() == "ba"; }));
    clickTitle(0);
    EXPECT_EQ(selected(), "ab");
    rows.removeIf([](const RowView& row) { return row.highlighted; });
    EXPECT_EQ(selected() + "," + highlighted(), ",");
    rows.add({.key = "d", .text = "d", .highlighted = true});
    {
        const RowsBatch batch(rows);
        rows.setSubItem(0, 1, "cc");
    }
    EXPECT_EQ(selected(), "d") << "a view follows the flags after a reset";
}

TEST_F(ListViewTest, TheHintIsForAnEmptyListOnly) {
    view.setAccessibleDescription(QStringLiteral("Return opens"));
    view.setEmptyHint(QStringLiteral("Nothing here"));
    EXPECT_EQ(view.accessibleDescription(), QStringLiteral("Return opens"));
    rows.clear();
    EXPECT_EQ(view.accessibleDescription(), QStringLiteral("Nothing here"));
    rows.add({.key = "d", .text = "d"});
    EXPECT_EQ(view.accessibleDescription(), QStringLiteral("Return opens"));
}

TEST_F(ListViewTest, KeysDoWhatTheMouseDoes) {
    QSignalSpy activated(&view, &ListView::rowActivated);
    QSignalSpy deleted(&view, &ListView::deletePressed);
    QSignalSpy clicked(&view, &ListView::rowClicked);
    QSignalSpy entered(&view, &ListView::rowEntered);
    view.activateWindow();
    view.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view, 30000));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(rows.index(1, 0)).center());
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Delete);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(rows.index(0, 0)).center());
    EXPECT_EQ(clicked.value(0).value(0).toInt(), 1);
    EXPECT_EQ(entered.value(0).value(0).toInt(), 2);
    EXPECT_EQ(activated.value(0).value(0).toInt(), 2);
    EXPECT_EQ(activated.value(1).value(0).toInt(), 0);
    EXPECT_EQ(deleted.size(), 1);
}

TEST(IconThemeTest, EveryKeyInUseIsDrawnAndFollowsThePalette) {
    const QPalette before = QApplication::palette();
    const auto colours = [](const char* key) {
        const QImage image = themedIcon(key).pixmap(QSize(24, 24), 2.0).toImage();
        EXPECT_EQ(image.width(), 48) << key;
        int brightness = 0;
        int drawn = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qAlpha(image.pixel(x, y)) < 200) continue;
                brightness += qGray(image.pixel(x, y));
                ++drawn;
            }
        }
        EXPECT_GT(drawn, 0) << key;
        return drawn == 0 ? 0 : brightness / drawn;
    };
    for (const char* key : {"RootProject", "ProjectFolder", "ProjectFolderOpen", "WebFile", "HTMLFile", "ENG",
                            "DIR", "FFA", "NEWS", "HOT", "MIS"}) {
        QApplication::setPalette(lightPalette());
        const int light = colours(key);
        QApplication::setPalette(darkPalette());
        EXPECT_GT(colours(key), light + 40) << key;
    }
    QApplication::setPalette(before);
    EXPECT_TRUE(themedIcon("no such key").pixmap(16, 16).toImage().allGray());
}

// What the style draws on the window's background.
QImage drawn(QStyle::PrimitiveElement element, QStyle::State state, const QPalette& palette) {
    QImage image(24, 24, QImage::Format_RGB32);
    image.fill(palette.color(QPalette::Window));
    QStyleOptionFocusRect option;
    option.palette = palette;
    option.rect = QRect(4, 4, 16, 16);
    option.state = state | QStyle::State_Enabled;
    option.backgroundColor = palette.color(QPalette::Base);
    QPainter painter(&image);
    QApplication::style()->drawPrimitive(element, &option, &painter);
    return image;
}

// The number of pixels with enough contrast to window and fields.
int seenPixels(const QImage& image, const QPalette& palette) {
    int seen = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (contrast(pixel, palette.color(QPalette::Window)) >= kShapeContrast &&
                contrast(pixel, palette.color(QPalette::Base)) >= kShapeContrast)
                ++seen;
        }
    }
    return seen;
}

TEST(AppearanceTest, WhatHasAStateIsSeenInEveryPalette) {
    // A desktop's dark palette with a black placeholder and a faint selection.
    QPalette provided(QColor(49, 54, 59), QColor(42, 46, 50));
    provided.setColor(QPalette::Base, QColor(27, 30, 32));
    provided.setColor(QPalette::Text, QColor(252, 252, 252));
    provided.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
    provided.setColor(QPalette::Inactive, QPalette::Highlight, QColor(40, 60, 70));
    for (const QPalette& palette : {lightPalette(), darkPalette(), legiblePart(provided).resolve(provided)}) {
        const QColor base = palette.color(QPalette::Base);
        SCOPED_TRACE(base.name().toStdString());
        constexpr int kHalfAnOutline = 24;
        const auto seen = [&palette](QStyle::PrimitiveElement element, QStyle::State state) {
            return seenPixels(drawn(element, state, palette), palette);
        };
        EXPECT_GT(seen(QStyle::PE_IndicatorCheckBox, QStyle::State_Off), kHalfAnOutline);
        EXPECT_GT(seen(QStyle::PE_IndicatorRadioButton, QStyle::State_Off), kHalfAnOutline);
        EXPECT_GT(seen(QStyle::PE_FrameLineEdit, {}), kHalfAnOutline);
        EXPECT_GT(seen(QStyle::PE_FrameLineEdit, QStyle::State_HasFocus), kHalfAnOutline);
        EXPECT_GT(seen(QStyle::PE_FrameFocusRect, QStyle::State_KeyboardFocusChange), kHalfAnOutline);
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            EXPECT_GE(contrast(palette.color(group, QPalette::Highlight), base), kShapeContrast);
            EXPECT_GE(contrast(over(palette.color(group, QPalette::PlaceholderText), base), base),
                      kTextContrast);
        }
    }
    EXPECT_EQ(legiblePart(lightPalette()).resolveMask(), QPalette().resolveMask())
        << "a good palette is not changed";
}

TEST(AppearanceTest, APaletteWithoutLegibleTextIsRecognised) {
    EXPECT_TRUE(isLegible(lightPalette()));
    EXPECT_TRUE(isLegible(darkPalette()));
    for (const auto& [text, ground] : {std::pair{QPalette::WindowText, QPalette::Window},
                                       {QPalette::Text, QPalette::Base},
                                       {QPalette::ButtonText, QPalette::Button}}) {
        QPalette broken = darkPalette();
        broken.setColor(text, broken.color(ground).lighter(120));
        EXPECT_FALSE(isLegible(broken)) << text;
    }
}

TEST(FormsTest, AFormIsCentredAndNeverBeginsOutsideItsScreen) {
    const QSize screen = QApplication::primaryScreen()->size();
    QWidget usual;
    usual.resize(400, 300);
    CenterForm(usual);
    EXPECT_EQ(usual.pos(), QPoint((screen.width() - 400) / 2, (qRound(0.9 * screen.height()) - 300) / 2));
    QWidget large;
    large.resize(2 * screen);
    CenterForm(large);
    EXPECT_EQ(large.pos(), QPoint(0, 0));
    EXPECT_LE(large.width(), screen.width());
}

TEST(QtPromptsTest, AWholeAddressTakesThePlaceOfItsBeginning) {
    for (const auto& [typed, shown] : {std::pair{"roses.example", "http://www.roses.example"},
                                       {"http://a.example", "http://a.example"},
                                       {"https://a.example", "https://a.example"},
                                       {"www.a.example", "http://www.a.example"}}) {
        QLineEdit edit(QStringLiteral("http://www."));
        edit.selectAll();
        continueAddress(edit, edit.text());
        QCoreApplication::processEvents();
        QTest::keyClicks(&edit, QString::fromLatin1(typed));
        EXPECT_EQ(edit.text(), QString::fromLatin1(shown));
    }
}

TEST(QtPromptsTest, WhatTheSystemCannotOpenIsReported) {
    const TestHome home;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QByteArray::fromStdString(home.path("bin")) + ":" + path);
    QtPrompts prompts;
    QStringList boxes;
    const auto open = [&](const std::string& script) {
        std::filesystem::permissions(home.write("bin/xdg-open", script), std::filesystem::perms::owner_all);
        EXPECT_TRUE(prompts.openWithSystem("/tmp/a #b.html"));
    };
    for (const char* script : {"#!/bin/sh\nexit 3\n", "#!/no/such/program\n"}) {
        whenModal([&](QWidget& box) {
            boxes << qobject_cast<QMessageBox*>(&box)->text();
            QTest::keyClick(&box, Qt::Key_Return);
        });
        const auto before = boxes.size();
        open(script);
        EXPECT_TRUE(waitUntil([&] { return boxes.size() > before; })) << script;
    }
    EXPECT_EQ(boxes, QStringList(2, QStringLiteral("This system has no program that opens\n/tmp/a #b.html")));
    home.write("opened", "");
    open("#!/bin/sh\necho \"$1\" > '" + home.path("opened") + "'\n");
    EXPECT_TRUE(waitUntil([&] { return home.read("opened") == "file:///tmp/a%20%23b.html\n"; }));
    qputenv("PATH", path);
}

TEST(QtPromptsTest, FiltersAreConvertedToQts) {
    EXPECT_EQ(toQtFilters("HTML files (*.htm;*.html)|*.htm;*.html|All Files (*.*)|*.*|"),
              (QStringList{QStringLiteral("HTML files (*.htm *.html)"), QStringLiteral("All Files (*)")}));
    EXPECT_EQ(toQtFilters("Text Files(*.txt)|*.txt"), QStringList{QStringLiteral("Text Files (*.txt)")});
    EXPECT_TRUE(toQtFilters("").isEmpty());
}

TEST(QtPromptsTest, BoxesShowTheTextsAndTakeKeys) {
    QtPrompts prompts;
    const auto answer = [](Qt::Key key, QString& seen) {
        whenModal([key, &seen](QWidget& box) {
            seen = dynamic_cast<QMessageBox&>(box).text();
            QTest::keyClick(&box, key);
        });
    };
    QString seen;
    answer(Qt::Key_Escape, seen);
    EXPECT_FALSE(prompts.ask("One <b>line</b>\r\nanother", "Title"));
    EXPECT_EQ(seen, QStringLiteral("One <b>line</b>\nanother"));
    answer(Qt::Key_Return, seen);
    EXPECT_TRUE(prompts.ask("Sure?", "Title"));
    answer(Qt::Key_Escape, seen);
    prompts.message("Shown", "Title", Icon::Critical);
    EXPECT_EQ(seen, QStringLiteral("Shown"));

    prompts.busy(true);
    for (const bool ends : {false, true}) {
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        whenModal([&](QWidget& box) {
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
            if (ends) prompts.busy(false);
            EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the box is still waiting for the user";
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        prompts.message("Work goes on, or ends behind the box", "Title");
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);

    const auto type = [](const char* text, Qt::Key key) {
        whenModal([text, key](QWidget& dialog) {
            auto* const edit = dialog.findChild<QLineEdit*>();
            if (text != nullptr) edit->setText(QString::fromUtf8(text));
            QTest::keyClick(edit, key);
        });
    };
    type(nullptr, Qt::Key_Return);
    EXPECT_EQ(prompts.input("URL", "Insert URL", "http://www."), "http://www.");
    type("caf\xc3\xa9", Qt::Key_Return);
    EXPECT_EQ(prompts.input("Name", "New Project"), "caf\xc3\xa9");
    type("given up", Qt::Key_Escape);
    EXPECT_EQ(prompts.input("Name", "New Project"), std::nullopt);
}

TEST(QtPromptsTest, FileDialogsGiveThePathAndTheFilter) {
    const TestHome home;
    home.write("a.txt", "");
    QtPrompts prompts;
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    whenModal([&](QWidget& dialog) {
        auto& files = dynamic_cast<QFileDialog&>(dialog);
        files.selectNameFilter(files.nameFilters().at(1));
        files.selectFile(toScreen(home.path("a.txt")));
        static_cast<QDialog&>(files).accept();
    });
    const FileChoice choice = prompts.openFile("Data|*.dat|All Files(*.*)|*.*", home.path(""));
    EXPECT_EQ(choice.path, home.path("a.txt"));
    EXPECT_EQ(choice.filterIndex, 2);
    whenModal([](QWidget& dialog) { dynamic_cast<QDialog&>(dialog).reject(); });
    EXPECT_EQ(prompts.saveFile("Data|*.dat", home.path(""), "x").path, "");
}

class PreferenceTest : public ::testing::Test, protected SessionFixture {
  protected:
    PreferenceTest() { session.readSettings(); }
    // The control the user is sent back to, or "saved".
    std::string confirm(const PreferenceEntry& entry) {
        std::string control = "saved";
        const bool taken = confirmPreference(preference, store, prompts, entry,
                                             [&](std::string_view name) { control = name; });
        EXPECT_EQ(taken, control == "saved");
        return control;
    }
    std::string stored(const char* key) { return store.value(kApplication, "Preference", key, "none"); }

    SettingsStore& store = session.settings;
};

TEST_F(PreferenceTest, TheFirstFieldThatWillNotDoStopsOK) {
    const std::map<std::string, std::string PreferenceEntry::*> fields = {
        {"txtTimeOut", &PreferenceEntry::txtTimeOut},
        {"txtConnections", &PreferenceEntry::txtConnections},
        {"txtProxy", &PreferenceEntry::txtProxy},
        {"txtPort", &PreferenceEntry::txtPort}};
    const auto confirmed = [&](const std::vector<std::string>& in) {
        preference.TimeOut = 30;
        PreferenceEntry entry = openPreference(preference);
        selectProxy(preference, entry, 2);
        entry.txtProxy = "proxy.test";
        entry.*(fields.at(in[0])) = in[1];
        prompts.shown.clear();
        return joined({confirm(entry), prompts.last().text});
    };
    playCases(TEST_FOLDER "/cases/preference.txt", {{"confirm", confirmed}});
}

TEST_F(PreferenceTest, ManyConnectionsAreAskedAboutOnlyWhenTyped) {
    PreferenceEntry entry = openPreference(preference);
    entry.connectionsEdited = true;
    entry.txtConnections = "50";
    EXPECT_EQ(confirm(entry), "saved");
    EXPECT_TRUE(prompts.shown.empty());
    entry.txtConnections = "51";
    EXPECT_EQ(confirm(entry), "txtConnections");
    EXPECT_EQ(stored("Connections"), "50");
    prompts.answers = {true};
    EXPECT_EQ(confirm(entry), "saved");
    EXPECT_EQ(stored("Connections"), "51");
    entry.txtConnections = "40000";
    prompts.answers = {true};
    EXPECT_FALSE(confirmPreference(preference, store, prompts, entry, [](std::string_view) {}));
    EXPECT_EQ(preference.Connections, 51);
}

TEST_F(PreferenceTest, SchemesAreRemovedAndAClickSurvivesCancel) {
    PreferenceEntry entry = openPreference(preference);
    EXPECT_EQ(preference.AccessType, 1);
    EXPECT_EQ(preference.LoadConfigure, 1);
    selectProxy(preference, entry, 2);
    EXPECT_EQ(preference.AccessType, 2);
    entry.txtPort = "8080x";
    entry.txtSiteUrl = "ftp://site.test";
    entry.txtLogoURL = "logo.test/x.png";
    for (const auto& [typed, kept] :
         {std::pair{"http://proxy.test", "proxy.test"}, {"HTTP://proxy.test", "HTTP://proxy.test"}}) {
        entry.txtProxy = typed;
        EXPECT_EQ(confirm(entry), "saved");
        EXPECT_EQ(preference.Proxy, kept);
    }
    EXPECT_EQ(stored("Port") + stored("SiteURL") + stored("LogoURL"), "8080site.testlogo.test/x.png");
}

TEST_F(PreferenceTest, TheDialogGoesToTheInvalidField) {
    frmPreference dialog(services);
    dialog.show();
    EXPECT_FALSE(control<QWidget>(dialog, "txtProxy").isEnabled());
    control<QTabWidget>(dialog, "SSTab1").setCurrentIndex(2);
    auto& timeOut = control<QLineEdit>(dialog, "txtTimeOut");
    timeOut.selectAll();
    QTest::keyClicks(&timeOut, QStringLiteral("999"));
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(control<QTabWidget>(dialog, "SSTab1").currentIndex(), 0);
    EXPECT_EQ(dialog.focusWidget(), &timeOut);
    QTest::keyClicks(&timeOut, QStringLiteral("45"));
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(stored("TimeOut"), "45");
}

}  // namespace
}  // namespace relay::test

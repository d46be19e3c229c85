// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Options.h"
#include "app/SingleInstance.h"
#include "app/WindowApplication.h"
#include "app/WindowTest.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/ScreenText.h"
#include "support/CaseTable.h"
#include "widgets/QtPrompts.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <set>

namespace relay::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class MainWindowTest : public WindowTest {
  protected:
    ~MainWindowTest() override { setSaveFault({}); }

    std::vector<std::string> titles() const {
        std::vector<std::string> list;
        for (const auto& shown : prompts.shown) list.push_back(shown.title);
        return list;
    }
    void startWithOneWebsite() {
        settleHome(kSmallCatalogue);
        home.write("project.kwj", "[Shop]\r\nDescription=\r\nLast=1\r\n1=Home|\r\n");
        start();
        clickNode("Shop/Home");
    }
};

TEST_F(MainWindowTest, AnEmptyHomeShowsTheSettingsOnceAndEndsInTheNotice) {
    int settingsShown = 0;
    int updateShown = 0;
    const auto closeUpdate = [&] {
        whenModal([&](QWidget& dialog) {
            updateShown += dialog.objectName() == QStringLiteral("frmUpdateEngines") ? 1 : 0;
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    };
    whenModal([&](QWidget& dialog) {
        settingsShown += dialog.objectName() == QStringLiteral("frmPreference") ? 1 : 0;
        EXPECT_TRUE(control<QLabel>(dialog, "lblFirstStart").isVisible()) << "it says why it is there";
        program().bringToFront();
        EXPECT_FALSE(window().isVisible()) << "before it has anything to show";
        QTest::keyClick(&dialog, Qt::Key_Escape);
        closeUpdate();
    });
    start();
    EXPECT_EQ(settingsShown, 1);
    EXPECT_EQ(updateShown, 1);
    ASSERT_EQ(prompts.shown.size(), 1U);
    EXPECT_THAT(prompts.last().text, HasSubstr("Please re-start the program after you updated"));
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(current(), "Web Project");
    EXPECT_TRUE(find<QLabel>("lblQuickStartTips").isVisible());
    quit();
    closeUpdate();
    start();
    EXPECT_EQ(settingsShown, 1);
    EXPECT_EQ(updateShown, 2);
    bringUp();
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(prompts.last().title, "New Website") << "the key is refused with the same words as the button";
    command("Engines");
    EXPECT_TRUE(find<QPushButton>("mnuFileItems_12Button").hasFocus());
    closeUpdate();
    press(Qt::Key_Space);
    EXPECT_EQ(updateShown, 3);
}

TEST_F(MainWindowTest, TheWindowReturnsToItsSavedPlaceButStaysReachable) {
    settleHome(kSmallCatalogue);
    const auto placed = [this](const char* saved) {
        {
            SettingsStore store(home.paths().settingsFile);
            store.setValue(kApplication, "Preference", "MainFormPos", saved);
        }
        start();
        return QRect(window().pos(), window().size());
    };
    EXPECT_EQ(placed("-40,30,1100,760"), QRect(0, 30, 1100, 760));
    EXPECT_EQ(placed("10,20,3000,760").width(), 3000);
    const QRect lost = placed("90000,90000,700,600");
    EXPECT_TRUE(lost.intersects(QGuiApplication::primaryScreen()->geometry()));
    EXPECT_EQ(lost.size(), QSize(700, 600));
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_TRUE(placed("99999999999999,1,1100,760").intersects(screen));
    EXPECT_EQ(placed("90000,90000,700,600"), lost);
    window().setSplitterPlace(333);
    const int place = window().splitterPlace();
    quit();
    EXPECT_EQ(SettingsStore(home.paths().settingsFile).value(kApplication, "Preference", "MainFormPos"),
              std::to_string(lost.x()) + "," + std::to_string(lost.y()) + ",700,600");
    start();
    EXPECT_EQ(window().splitterPlace(), place);
}

TEST_F(MainWindowTest, QuickStartLinksRunTheirCommands) {
    settleHome(kSmallCatalogue);
    start();
    QLabel& tips = find<QLabel>("lblQuickStartTips");
    EXPECT_THAT(tips.text().toStdString(), HasSubstr("<a href=\"NewProject\">'New Project'</a> button"));
    prompts.inputs = {"Shop"};
    Q_EMIT tips.linkActivated(QStringLiteral("NewProject"));
    EXPECT_EQ(current(), "Shop");
    clickNode("");
    Q_EMIT tips.linkActivated(QStringLiteral("NewWeb"));
    EXPECT_THAT(prompts.last().text, StartsWith("You can add website to the Root item."));
    Q_EMIT tips.linkActivated(QStringLiteral("Submit"));
    EXPECT_THAT(prompts.last().text, StartsWith("There is no engine selected."));
    EXPECT_TRUE(find<QWidget>("SSTab3").isVisible());
}

TEST_F(MainWindowTest, EveryCommandIsInAFormAndFollowsItsRule) {
    startWithOneWebsite();
    const auto check = [](const QWidget& owner, std::span<const Command> commands,
                          const CommandState& state) {
        for (const Command& command : commands) {
            const QString name = toScreen(command.name);
            const auto* action = owner.findChild<QAction*>(name, Qt::FindDirectChildrenOnly);
            if (const auto* menu = owner.findChild<QMenu*>(name)) action = menu->menuAction();
            ASSERT_NE(action, nullptr) << command.name;
            // The menu hides the tools that are not installed.
            EXPECT_EQ(action->isEnabled(), action->isVisible() && command.isEnabled(state)) << command.name;
            EXPECT_FALSE(action->icon().isNull()) << command.name;
        }
    };
    check(find<QWidget>("SSTab1"), urlCommands(), {NodeKind::Website, MainPanel::Website});
    check(window(), mainCommands(), {NodeKind::Website, MainPanel::Website});
    command("Engines");
    check(window(), mainCommands(), {NodeKind::Website, MainPanel::Engines});
    clickNode("");
    check(window(), mainCommands(), {});
}

TEST_F(MainWindowTest, AMissingFieldComesToTheFront) {
    startWithOneWebsite();
    const std::pair<const char*, int> missing[] = {{"txtSiteTitle", 0}, {"txtSiteKeywords", 0}};
    find<QTabWidget>("SSTab1").setCurrentIndex(3);
    for (const auto& [field, tab] : missing) {
        prompts.answers = {false};
        command("Save");
        EXPECT_EQ(prompts.last().title, "Save WebSite Details");
        EXPECT_EQ(find<QTabWidget>("SSTab1").currentIndex(), tab);
        EXPECT_EQ(window().focusWidget(), &find<QWidget>(field));
        type(field, QStringLiteral("x"));
    }
}

TEST_F(MainWindowTest, ARefusedClickLeavesTheHighlightOnTheCurrentNode) {
    startWithOneWebsite();
    type("txtSiteTitle", QStringLiteral("Typed"));
    setSaveFault([](SaveStep step) { return step == SaveStep::Create ? EROFS : 0; });
    QTreeView& tree = find<QTreeView>("TreeView1");
    const QPoint shop = tree.visualRect(node("Shop")).center();
    const auto refused = [&](const char* how) {
        EXPECT_TRUE(waitUntil([&] { return current() == "Home" && highlighted() == "Home"; })) << how;
    };
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        QTest::mouseClick(tree.viewport(), button, {}, shop);
        refused("click");
    }
    // The menu does not open over a node that it would not affect.
    Q_EMIT tree.customContextMenuRequested(shop);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    QTest::mouseClick(tree.viewport(), Qt::RightButton, Qt::ControlModifier,
                      tree.visualRect(node("Shop/Home")).center());
    refused("click with Control");
    QTest::keyClick(&tree, Qt::Key_Up);
    refused("key");
    tree.collapse(node("Shop"));
    refused("closed project");
    setSaveFault({});
    tree.collapse(node("Shop"));
    EXPECT_EQ(current() + ", " + highlighted(), "Shop, Shop") << "a hidden node does not stay current";
    EXPECT_FALSE(tree.isExpanded(node("Shop")));
}

TEST_F(MainWindowTest, AHomeThatCannotBeWrittenIsShownAgainAtTheExit) {
    startWithOneWebsite();
    type("txtSiteTitle", QStringLiteral("Typed before"));
    setSaveFault([](SaveStep step) { return step == SaveStep::Create ? EROFS : 0; });
    clickNode("Shop");
    QTest::keyClicks(&find<QWidget>("txtSiteTitle"), QStringLiteral(" and after"));
    prompts.shown.clear();
    prompts.answers = {false, true};
    command("mnuFileItems_15");
    EXPECT_THAT(titles(), ElementsAre("Error", "Exit")) << "shown again, and still asked";
    EXPECT_TRUE(window().isVisible());
    setSaveFault({});
    command("mnuFileItems_15");
    EXPECT_FALSE(window().isVisible());
    EXPECT_THAT(home.read("Projects/Home.kws"), HasSubstr("Title=Typed before and after\r\n"));
}

TEST_F(MainWindowTest, TheTreeIsSortedWidenedAndGuardedByKeys) {
    settleHome(kSmallCatalogue);
    home.write("project.kwj", "[Zoo]\r\nLast=0\r\n[Ark]\r\nLast=0\r\n");
    start();
    clickNode("");
    bringUp();
    QTreeView& tree = find<QTreeView>("TreeView1");
    EXPECT_EQ(node("Zoo").row(), 0);
    QTest::keyClick(&tree, Qt::Key_F5);
    EXPECT_EQ(node("Zoo").row(), 1);

    const int usual = window().splitterPlace();
    QTest::keyClick(&tree, Qt::Key_Right, Qt::AltModifier);
    const int wider = window().splitterPlace();
    EXPECT_GT(wider, usual);
    QTest::keyClick(&tree, Qt::Key_Left, Qt::AltModifier);
    EXPECT_LT(window().splitterPlace(), wider);
    for (int press = 0; press < 100; ++press) QTest::keyClick(&tree, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(window().splitterPlace(), tree.minimumWidth());

    bool opened = false;
    QTimer::singleShot(0, qApp, [&opened] {
        QWidget* const menu = QApplication::activePopupWidget();
        opened = menu != nullptr && menu->close();
    });
    Q_EMIT tree.customContextMenuRequested(QPoint(20, tree.viewport()->height() - 5));
    QCoreApplication::processEvents();
    EXPECT_FALSE(opened) << "there is no node to act on";
}

TEST_F(MainWindowTest, TheToolbarOfTheUrlsComesBeforeTheirListInTheTabOrder) {
    startWithOneWebsite();
    find<QTabWidget>("SSTab1").setCurrentIndex(1);
    const QWidget* const toolbar = &find<QWidget>("ToolbarSiteURL");
    QStringList order;
    for (const QWidget* widget = find<QWidget>("lsvSiteURLs").previousInFocusChain();
         widget->parentWidget() == toolbar; widget = widget->previousInFocusChain())
        if (const auto* button = qobject_cast<const QToolButton*>(widget); button->defaultAction() != nullptr)
            order.prepend(button->defaultAction()->objectName());
    EXPECT_EQ(order.join(QLatin1Char(' ')).toStdString(),
              "AddURL AddFromLocalFolder AddFromWeb AddFromSitemap LoadURL LocalURL SaveURL DeleteURL "
              "GetMetaTag InsertMetaTag ReplaceMetaTag Optimizer");
}

TEST(InputBoxTest, LongNamesAndTagsAreShownLiterallyInABoxOfTheUsualWidth) {
    QtPrompts prompts;
    const std::string name = "<b>" + std::string(600, 'n') + "</b>";
    whenModal([&](QWidget& dialog) {
        const QLabel& label = *dialog.findChild<QLabel*>();
        EXPECT_LT(dialog.width(), 500);
        EXPECT_EQ(label.textFormat(), Qt::PlainText);
        EXPECT_EQ(label.text().remove(QChar(0x200b)), toScreen(name));
        EXPECT_GE(label.height(), label.heightForWidth(label.width()));
        EXPECT_GT(label.height(), 3 * label.fontMetrics().height()) << "on several lines";
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(prompts.input(name, "Name"), std::nullopt);
}

TEST_F(MainWindowTest, NamesAreShownLiterallyAndNeverWidenTheWindow) {
    settleHome(kSmallCatalogue);
    const QString name = QStringLiteral("<b>") + QString(300, QLatin1Char('p'));
    home.write("project.kwj", "[" + name.toStdString() + "]\r\nLast=1\r\n1=" + name.toStdString() + "|\r\n");
    start();
    const QString path = name + QLatin1Char('/') + name;
    for (const QString& shown : {name, path}) {
        clickNode(shown.toUtf8().constData());
        EXPECT_EQ(find<QLabel>("lblProjectTitle").text(), name);
        EXPECT_EQ(find<QLabel>("lblProjectTitle").textFormat(), Qt::PlainText);
        EXPECT_LE(window().minimumSizeHint().width(), 1280);
    }
}

TEST_F(MainWindowTest, FieldsKeepEveryByteAndEveryCharacter) {
    startWithOneWebsite();
    const std::string odd = "caf\xc3\xa9 \xf0\x9f\x98\x80 \xff\x80\xc2\xa0 end";
    home.write("odd.kws", "[Web Site Info]\r\nVersion=6.0\r\nTitle=" + odd + "\r\nKeyword=" + odd +
                              "\r\nWebType=" + odd + "\r\nLastURL=1\r\n[URL]\r\nURL1=" + odd + "\r\n");
    prompts.files = {{home.path("odd.kws"), 1}};
    command("mnuFileItems_6");
    clickNode("Shop/odd.kws");
    type("txtSiteDescription", QStringLiteral("typed"));
    QPlainTextEdit& keywords = find<QPlainTextEdit>("txtSiteKeywords");
    keywords.moveCursor(QTextCursor::End);
    QTest::keyClicks(&keywords, QStringLiteral("!"));
    clickNode("Shop");
    EXPECT_THAT(home.read("odd.kws"), HasSubstr("Title=" + odd + "\r\nKeyword=" + odd +
                                                "!\r\nWebType=" + odd + "\r\nLastURL=1\r\n"));
    EXPECT_THAT(home.read("odd.kws"), HasSubstr("Description=typed\r\n"));

    clickNode("Shop/Home");
    const QString huge(100000, QLatin1Char('x'));
    for (const char* field : {"txtSiteTitle", "txtName"}) {
        find<QLineEdit>(field).selectAll();
        find<QLineEdit>(field).insert(huge);
    }
    find<QPlainTextEdit>("txtSiteKeywords").insertPlainText(huge);
    EXPECT_EQ(program().main().website.fields.txtSiteTitle.size(), 100000U);
    clickNode("Shop");
    EXPECT_THAT(home.read("Projects/Home.kws"), HasSubstr("Keyword=" + huge.toStdString() + "\r\n"));
}

// The node, what is typed and the key that ends it; then the names in the index, the current node, and the
// title of a box that was shown, with which the editor is open again.
TEST_F(MainWindowTest, ALabelEditEndsByItsOwnKeysAndTheHighlightStaysRight) {
    settleHome(kSmallCatalogue);
    const auto edit = [this](const std::vector<std::string>& in) {
        home.write("project.kwj", "[Shop]\r\nLast=2\r\n1=Home|\r\n2=Next|\r\n[Zoo]\r\nLast=0\r\n");
        start();
        clickNode(in[0].c_str());
        bringUp();
        press(Qt::Key_F2);
        EXPECT_TRUE(waitUntil([&] { return labelEditor() != nullptr; }));
        QTest::keySequence(labelEditor(), QKeySequence::SelectAll);
        QTest::keyClicks(labelEditor(), toScreen(in[1]));
        prompts.shown.clear();
        const bool byClick = in[2] == "click on Zoo";
        if (byClick)
            clickNode("Zoo");
        else
            press(QKeySequence(toScreen(in[2]))[0].key());
        const QPointer<QLineEdit> first = labelEditor();
        EXPECT_TRUE(waitUntil([&] { return first.isNull() || first != labelEditor(); }));
        const std::vector<std::string> shown = titles();
        EXPECT_TRUE(waitUntil([&] { return shown.empty() == (labelEditor() == nullptr); }));
        std::string names;
        for (const auto& project : ProjectStore(home.paths().ProjectFilePath).loadProject()) {
            names += " " + project.name;
            for (const WebsiteSlot& site : project.websites) names += " " + site.name;
        }
        const std::string place = current();
        EXPECT_EQ(highlighted(), place);
        EXPECT_EQ(fileExists(home.path("Projects/Home.kws")), byClick && names.starts_with(" Shop"))
            << "keys do not click on a node";
        std::filesystem::remove(home.path("Projects/Home.kws"));
        if (!shown.empty()) press(Qt::Key_Escape);
        press(Qt::Key_Delete);
        EXPECT_THAT(prompts.last().text, HasSubstr(place + " ?"));
        return joined({names.substr(1), place, joined(shown)});
    };
    playCases(TEST_FOLDER "/cases/label-edit.txt", {{"edit", edit}});
    clickNode("");
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Delete}) {
        prompts.shown.clear();
        press(key);
        EXPECT_EQ(prompts.last().kind, "beep") << "the root keeps its name and its place";
        EXPECT_EQ(labelEditor(), nullptr);
    }
}

TEST_F(MainWindowTest, UrlsAndReportsAreWiredToTheirButtons) {
    settleHome(kSmallCatalogue);
    home.write("a.kws",
               "[Web Site Info]\r\nVersion=6.0\r\nLastURL=1\r\nLastReport=1\r\n[URL]\r\nURL1=http://a\r\n"
               "LocalFile1=/x.htm\r\n[Report]\r\nURL1=http://a\r\nDate1=d\r\nReportFile1=" +
                   home.write("Reports/Submition/r.htm", "") + "\r\n");
    home.write("project.kwj", "[Shop]\r\nLast=1\r\n1=Home|" + home.path("a.kws") + "\r\n");
    start();
    clickNode("Shop/Home");
    find<QTabWidget>("SSTab1").setCurrentIndex(1);
    clickRow("lsvSiteURLs", "http://a");
    EXPECT_EQ(find<QLineEdit>("txtURLFileLocation").text(), QStringLiteral("/x.htm"));
    prompts.files = {{home.write("a.html", "")}};
    QTest::mouseClick(&find<QPushButton>("cmdFileLocation"), Qt::LeftButton);
    EXPECT_EQ(find<QLineEdit>("txtURLFileLocation").text(), toScreen(home.path("a.html")));
    find<QTabWidget>("SSTab1").setCurrentIndex(4);
    clickRow("lsvReports", "http://a");
    for (const bool byKey : {true, false}) {
        prompts.shown.clear();
        if (byKey)
            QTest::keyClick(&find<QWidget>("lsvReports"), Qt::Key_Return);
        else
            QTest::mouseClick(&find<QPushButton>("cmdViewReport"), Qt::LeftButton);
        EXPECT_EQ(prompts.last().kind + prompts.last().text, "system" + home.path("Reports/Submition/r.htm"));
    }
    prompts.answers = {true};
    prompts.shown.clear();
    QTest::mouseClick(&find<QPushButton>("cmdDeleteReport"), Qt::LeftButton);
    EXPECT_THAT(titles(), ElementsAre("Delete Report File")) << "asked once";
    EXPECT_TRUE(rowTexts("lsvReports").empty());
    home.write("korvel.hlp", "");
    command("mnuHelpItems_0");
    EXPECT_EQ(prompts.last().kind, "system");
}

TEST_F(MainWindowTest, ButtonsThatNeedASelectionSayWhyTheyAreDisabled) {
    startWithOneWebsite();
    prompts.inputs = {"http://a.test/"};
    command("AddURL");
    command("Engines");
    const auto check = [&](const char* button, bool enabled) {
        const auto& push = find<QPushButton>(button);
        EXPECT_EQ(push.isEnabled(), enabled) << button;
        EXPECT_EQ(push.toolTip().endsWith(QStringLiteral(" first.")), !enabled) << button;
    };
    for (const char* button : {"cmdSelectEngine_0", "cmdRemoveEngine_0", "cmdViewReport", "cmdDeleteReport"})
        check(button, false);
    clickRow("lsvEngines", "Alpha");
    check("cmdSelectEngine_0", true);
    QTest::mouseClick(&find<QPushButton>("cmdSelectEngine_0"), Qt::LeftButton);
    clickRow("lsvSelectedEngines", "Alpha");
    check("cmdRemoveEngine_0", true);
    QTest::keyClick(&find<QWidget>("lsvSelectedEngines"), Qt::Key_Delete);
    check("cmdRemoveEngine_0", false);

    clickNode("Shop/Home");
    find<QTabWidget>("SSTab1").setCurrentIndex(1);
    QAction& remove = find<QAction>("DeleteURL");
    EXPECT_FALSE(remove.isEnabled());
    clickRow("lsvSiteURLs", "http://a.test/");
    EXPECT_TRUE(remove.isEnabled());
    prompts.answers = {true};
    prompts.shown.clear();
    QTest::keyClick(&find<QWidget>("lsvSiteURLs"), Qt::Key_Delete);
    EXPECT_THAT(titles(), ElementsAre("Delete URL")) << "asked once";
    EXPECT_FALSE(remove.isEnabled());
}

TEST_F(MainWindowTest, NoTwoOfTheKeysThatAPanelShowsAreTheSame) {
    startWithOneWebsite();
    const auto letters = [this] {
        std::map<QString, QStringList> owners;
        const auto add = [&owners](const QString& text, const QString& name) {
            const QKeySequence keys = QKeySequence::mnemonic(text);
            if (!keys.isEmpty()) owners[keys.toString()] << name;
        };
        for (const QAction* menu : window().findChild<QMenuBar*>()->actions())
            add(menu->text(), menu->text());
        for (const auto* label : window().findChildren<QLabel*>())
            if (label->isVisible() && label->buddy() != nullptr) add(label->text(), label->objectName());
        for (const auto* button : window().findChildren<QAbstractButton*>())
            if (button->isVisible()) add(button->text(), button->objectName());
        return owners;
    };
    const auto check = [&](const QString& panel) {
        for (const auto& [keys, owners] : letters())
            EXPECT_EQ(owners.size(), 1) << qPrintable(panel + keys + owners.join(QLatin1Char(' ')));
    };
    for (int tab = 0; tab < 5; ++tab) {
        find<QTabWidget>("SSTab1").setCurrentIndex(tab);
        check(QStringLiteral("page %1: ").arg(tab + 1));
    }
    command("Engines");
    check(QStringLiteral("engines: "));
}

TEST_F(MainWindowTest, LinksOpenWebAddressesOnly) {
    settleHome(kSmallCatalogue);
    home.write("data/korvel.ini", "[Dealer]\r\nUpdateURL=/bin/sh\r\nSupportURL=HTTPS://help.test/\r\n");
    start();
    command("mnuHelpItems_7");
    EXPECT_THAT(prompts.last().text, HasSubstr("not a web address"));
    command("mnuHelpItems_8");
    EXPECT_EQ(prompts.last().kind, "system");
}

TEST_F(MainWindowTest, EveryControlHasANameAndAPlaceInTheTabOrder) {
    startWithOneWebsite();
    std::set<const QWidget*> reached;
    for (const QWidget* widget = &window();
         (widget = widget->nextInFocusChain()) != nullptr && reached.insert(widget).second;) {
    }
    std::set<const QObject*> exposed;  // what a screen reader finds from the window downwards
    const std::function<void(QAccessibleInterface&)> expose = [&](QAccessibleInterface& part) {
        exposed.insert(part.object());
        for (int child = 0; child < part.childCount(); ++child)
            if (QAccessibleInterface* const below = part.child(child); below != nullptr) expose(*below);
    };
    expose(*QAccessible::queryAccessibleInterface(&window()));
    int controls = 0;
    for (QWidget* widget : window().findChildren<QWidget*>()) {
        const bool isControl =
            qobject_cast<QLineEdit*>(widget) != nullptr || qobject_cast<QPlainTextEdit*>(widget) != nullptr ||
            qobject_cast<QAbstractButton*>(widget) != nullptr ||
            qobject_cast<QComboBox*>(widget) != nullptr || qobject_cast<QTreeView*>(widget) != nullptr;
        const bool isPart = widget->objectName().startsWith(QStringLiteral("qt_")) ||
                            qobject_cast<QComboBox*>(widget->parentWidget()) != nullptr ||
                            qobject_cast<QLineEdit*>(widget->parentWidget()) != nullptr ||
                            widget->inherits("QTabBar") || widget->parentWidget()->inherits("QTabBar") ||
                            widget->parentWidget()->inherits("QAbstractScrollArea");
        if (!isControl || isPart) continue;
        ++controls;
        const QString name = QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
        EXPECT_FALSE(name.isEmpty()) << widget->metaObject()->className() << " "
                                     << qPrintable(widget->objectName());
        EXPECT_NE(widget->focusPolicy() & Qt::TabFocus, 0) << qPrintable(widget->objectName() + name);
        EXPECT_TRUE(reached.contains(widget)) << qPrintable(name);
        EXPECT_TRUE(exposed.contains(widget)) << qPrintable(widget->objectName() + name);
    }
    EXPECT_GT(controls, 60);
}

TEST(WindowApplicationTest, AnExceptionFromAHandlerIsShownAndTheProgramContinues) {
    auto& application = dynamic_cast<WindowApplication&>(*qApp);
    std::vector<std::string> shown;
    QObject failing;
    const auto fail = [&](const std::function<void()>& work) {
        QMetaObject::invokeMethod(&failing, work, Qt::QueuedConnection);
        QCoreApplication::processEvents();
    };
    application.failed = [&](std::string_view words) {
        shown.emplace_back(words);
        fail([] { throw std::runtime_error("within the box"); });
    };
    fail([] { throw std::bad_alloc(); });
    fail([] { throw 1; });
    application.failed = nullptr;
    fail([] { throw Failure("with nobody to show it"); });
    EXPECT_THAT(shown, ElementsAre("Main_Error: Out of memory", "Main_Error: Unknown failure"));
}

TEST(SingleInstanceTest, TheSecondOnAHomeRaisesTheFirst) {
    const TestHome home;
    const QString folder = toScreen(home.paths().AppPath);
    SingleInstance first(folder);
    ASSERT_EQ(first.claim(), SingleInstance::Claim::Granted);
    int raised = 0;
    QObject::connect(&first, &SingleInstance::raiseWanted, &first, [&raised] { ++raised; });
    EXPECT_EQ(SingleInstance(folder).claim(), SingleInstance::Claim::Raised);
    EXPECT_TRUE(waitUntil([&] { return raised == 1; }));
    const TestHome other;
    other.write(".window.lock", "1234\nkorvel-relay\nelsewhere\n");
    SingleInstance later(toScreen(other.paths().AppPath));
    EXPECT_EQ(later.claim(), SingleInstance::Claim::Held);
    EXPECT_THAT(later.question(), HasSubstr(other.path(".window.lock") + "\r\n"));
    EXPECT_THAT(later.question(), HasSubstr("process 1234 on the computer 'elsewhere'"));
    later.takeOver();
    EXPECT_EQ(SingleInstance(toScreen(other.paths().AppPath)).claim(), SingleInstance::Claim::Raised);
}

TEST(OptionsTest, SwitchesMayBeAnywhere) {
    const Options options =
        readOptions({QStringLiteral("/d"), QStringLiteral("--home"), QStringLiteral("/tmp/x")});
    EXPECT_EQ(options.home, "/tmp/x");
    EXPECT_EQ(options.commandLine, "/d --home /tmp/x");
    EXPECT_TRUE(options.answer.isEmpty());
    for (const char* help : {"-h", "--help"})
        EXPECT_THAT(readOptions({QString::fromLatin1(help)}).answer.toStdString(),
                    StartsWith("Usage: korvel-relay [options]"));
    EXPECT_EQ(readOptions({QStringLiteral("--version")}).exitCode, 0);
    EXPECT_EQ(readOptions({QStringLiteral("--nonsense")}).exitCode, 2);
    EXPECT_EQ(readOptions({QStringLiteral("--home"), QString()}).exitCode, 2);
    EXPECT_EQ(readOptions({QStringLiteral("--home=")}).exitCode, 2);
}

}  // namespace
}  // namespace relay::test

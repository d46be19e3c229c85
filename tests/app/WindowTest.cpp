// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowTest.h"

#include "widgets/ListView.h"

#include <QAction>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QToolBar>
#include <QTreeView>

#include <set>

namespace relay::test {

namespace {
// Only a broken program takes this long.
constexpr int kLimitMilliseconds = 30000;
}  // namespace

const char* const kSmallCatalogue =
    "Name=Alpha Search\nCountry=US\nType=ENG\nCategory=N\nMethod=GET\nAction=http://a.test/\nQuery=u=<URL>\n"
    "SiteLevel=1\nAdults=Yes\n"
    "Name=Beta "
    "Directory\nCountry=GB\nType=DIR\nCategory=C\nMethod=GET\nAction=http://b.test/\nQuery=u=<URL>\n"
    "Adults=No\n"
    "Name=Gamma Links\nCountry=US\nType=FFA\nCategory=F\nMethod=GET\nAction=http://c.test/\nQuery=u=<URL>\n"
    "Adults=Yes\n"
    "Name=Delta Picks\nCountry=DE\nType=HOT\nCategory=N\nMethod=GET\nAction=http://d.test/\nQuery=u=<URL>\n"
    "Adults=Yes\nEND:Version 6.0\n";

std::vector<std::string> missedByTab(QWidget& form) {
    QWidget* const first = form.focusWidget();
    std::set<const QWidget*> reached;
    for (QWidget* now = first; reached.insert(now).second; now = form.focusWidget()) {
        QTest::keyClick(now, Qt::Key_Tab);
        // A label has its links before the next control.
        if (form.focusWidget() == now) QTest::keyClick(now, Qt::Key_Tab);
    }
    std::vector<std::string> missed;
    for (QWidget* const part : form.findChildren<QWidget*>()) {
        const auto* const radio = qobject_cast<QRadioButton*>(part);
        if (part->isVisible() && part->isEnabled() && (part->focusPolicy() & Qt::TabFocus) != 0 &&
            part->focusProxy() == nullptr && (radio == nullptr || radio->isChecked()) &&
            reached.count(part) == 0)
            missed.push_back(part->objectName().toStdString());
    }
    first->setFocus();
    return missed;
}

void WindowTest::settleHome(std::string_view engines) {
    SettingsStore store(home.paths().settingsFile);
    store.setValue(kApplication, "Preference", "LoadConfig", "1");
    store.setValue(kApplication, "Setting", "Version", "6.0");
    home.write("data/krveng5.dat", engines);
    home.write("data/catkws.dat",
               "[Free For All Links]\nBusiness=1\n[Beta Directory]\nURL=http://b.test/\nEND\n");
}

void WindowTest::start() {
    m_program.reset();
    m_program = std::make_unique<Program>(home.paths(), "", clock, prompts);
    m_program->start();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window(), kLimitMilliseconds));
}

void WindowTest::quit() {
    prompts.answers = {true};
    ASSERT_TRUE(window().close());
    m_program.reset();
}

void WindowTest::bringUp() {
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window(), kLimitMilliseconds));
}

void WindowTest::command(const char* name) {
    QAction& action = control<QAction>(window(), name);
    ASSERT_TRUE(action.isEnabled()) << name;
    for (const QToolBar* bar : window().findChildren<QToolBar*>()) {
        QWidget* const button = bar->widgetForAction(&action);
        if (button == nullptr || !button->isVisible()) continue;
        QTest::mouseClick(button, Qt::LeftButton);
        return;
    }
    action.trigger();
}

void WindowTest::type(const char* field, const QString& text) {
    QWidget& widget = find<QWidget>(field);
    ASSERT_TRUE(widget.isVisible()) << field;
    widget.setFocus();
    QTest::keySequence(&widget, QKeySequence::SelectAll);
    QTest::keyClicks(&widget, text);
}

QModelIndex WindowTest::node(const char* path) {
    const QAbstractItemModel& tree = *find<QTreeView>("TreeView1").model();
    QModelIndex place = tree.index(0, 0);
    for (const QString& name : QString::fromUtf8(path).split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        const QModelIndexList found = tree.match(tree.index(0, 0, place), Qt::DisplayRole, name, 1,
                                                 Qt::MatchFixedString | Qt::MatchCaseSensitive);
        if (found.isEmpty()) throw std::runtime_error(std::string("no node ") + path);
        place = found.constFirst();
    }
    return place;
}

void WindowTest::clickNode(const char* path) {
    QTreeView& tree = find<QTreeView>("TreeView1");
    const QModelIndex place = node(path);
    tree.expand(place.parent());
    tree.scrollTo(place);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(place).center());
}

void WindowTest::clickRow(const char* list, std::string_view text, Qt::KeyboardModifiers modifiers) {
    ListView& view = find<ListView>(list);
    for (int row = 0; row < view.rows()->count(); ++row) {
        if (!view.rows()->at(row).text.starts_with(text)) continue;
        const QModelIndex index = view.model()->index(row, 0);
        view.scrollTo(index);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, view.visualRect(index).center());
        return;
    }
    throw std::runtime_error("no such row");
}

std::vector<std::string> WindowTest::rowTexts(const char* list) {
    const Rows& rows = *find<ListView>(list).rows();
    std::vector<std::string> texts;
    for (int row = 0; row < rows.count(); ++row) texts.emplace_back(std::string(rows.at(row).text));
    return texts;
}

std::string WindowTest::current() {
    return program().main().workspace.currentNode()->text;
}

std::string WindowTest::highlighted() {
    const QModelIndexList selected = find<QTreeView>("TreeView1").selectionModel()->selectedIndexes();
    return selected.size() == 1 ? selected.constFirst().data().toString().toStdString() : "not one node";
}

QLineEdit* WindowTest::labelEditor() {
    return window().findChild<QLineEdit*>(QStringLiteral("txtNodeLabel"));
}

void WindowTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window().windowHandle(), key, modifiers);
}

}  // namespace relay::test

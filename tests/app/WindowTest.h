// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Program.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <functional>
#include <gtest/gtest.h>

namespace relay::test {

// Does `work` once a dialog has come up over the window; what waits for the dialog goes on when it closes.
inline void whenModal(const std::function<void(QWidget&)>& work) {
    auto* const poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, work] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr) return;
        poll->deleteLater();
        work(*dialog);
    });
    poll->start(1);
}

// Finds by control name; a name nobody has ends the test with it.
template <typename Widget>
Widget& control(const QWidget& window, const char* name) {
    Widget* const found = window.findChild<Widget*>(QString::fromLatin1(name));
    if (found == nullptr) throw std::runtime_error(std::string("no control is named ") + name);
    return *found;
}

// A home with the installed word files, and the whole program on it. Boxes are answered from a script.
class WindowTest : public ::testing::Test {
  protected:
    WindowTest() { setenv("KORVEL_RELAY_DATA", RELAY_DATA_FOLDER, 1); }

    // As after the first run: the settings dialog was shown, and `engines` is the catalogue.
    void settleHome(std::string_view engines);
    void start();
    // Ends the program by its window, as a user does.
    void quit();

    frmMain& window() { return m_program->window(); }
    Program& program() { return *m_program; }
    template <typename Widget>
    Widget& find(const char* name) {
        return control<Widget>(window(), name);
    }

    // Shortcuts work in the active window only, which no window manager brings back after a dialog here.
    void bringUp();
    // By mouse on the toolbar, or by the menu where the toolbar has no such button.
    void command(const char* name);
    void type(const char* field, const QString& text);
    // Moves to the node by clicking its row. "Shop", or "Shop/Home" for a website.
    void clickNode(const char* path);
    QModelIndex node(const char* path);
    // Clicks the row of a list that begins with the text; `modifiers` as held down with the click.
    void clickRow(const char* list, std::string_view text, Qt::KeyboardModifiers modifiers = {});
    std::vector<std::string> rowTexts(const char* list);
    std::string current();  // the text of the current node
    std::string highlighted();
    // The open editor of a node's label, or nullptr.
    QLineEdit* labelEditor();
    // To whatever has the focus, as a keyboard does.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});

    TestHome home;
    ScriptedPrompts prompts;
    FixedClock clock;

  private:
    std::unique_ptr<Program> m_program;
};

// Three engines of three types; FFA and hot sites among them.
extern const char* const kSmallCatalogue;

}  // namespace relay::test

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

// Runs `work` when a dialog appears over the window; the code that waits for the dialog continues when it
// closes.
inline void whenModal(const std::function<void(QWidget&)>& work) {
    auto* const poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, work] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr) return;
        poll->stop();  // `work` may run the event loop
        poll->deleteLater();
        work(*dialog);
    });
    poll->start(1);
}

// Finds a control by name; an unknown name ends the test.
template <typename Widget>
Widget& control(const QWidget& window, const char* name) {
    Widget* const found = window.findChild<Widget*>(QString::fromLatin1(name));
    if (found == nullptr) throw std::runtime_error(std::string("no control is named ") + name);
    return *found;
}

// The controls of an active form that the Tab key should reach and does not. It leaves the focus where it
// was.
std::vector<std::string> missedByTab(QWidget& form);

// A home with the installed word lists, and the whole program on it. Boxes are answered from a script.
class WindowTest : public ::testing::Test {
  protected:
    WindowTest() { setenv("KORVEL_RELAY_DATA", RELAY_DATA_FOLDER, 1); }

    // The state after the first run: the settings dialog was shown, and `engines` is the catalogue.
    void settleHome(std::string_view engines);
    void start();
    // Closes the window, as a user does.
    void quit();

    frmMain& window() { return m_program->window(); }
    Program& program() { return *m_program; }
    template <typename Widget>
    Widget& find(const char* name) {
        return control<Widget>(window(), name);
    }

    // Shortcuts work only in the active window, and no window manager reactivates it here after a dialog.
    void bringUp();
    // Clicks the toolbar button, or the menu item if there is no such button.
    void command(const char* name);
    void type(const char* field, const QString& text);
    // Clicks the row of the node: "Shop", or "Shop/Home" for a website.
    void clickNode(const char* path);
    QModelIndex node(const char* path);
    // Clicks the row of a list that begins with the text, with `modifiers` held down.
    void clickRow(const char* list, std::string_view text, Qt::KeyboardModifiers modifiers = {});
    std::vector<std::string> rowTexts(const char* list);
    std::string current();  // the text of the current node
    std::string highlighted();
    // The open editor of a node's label, or nullptr.
    QLineEdit* labelEditor();
    // Sends the key to the widget with the focus.
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

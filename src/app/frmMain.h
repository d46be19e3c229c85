// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Commands.h"

#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

class QAction;

namespace relay {

namespace Ui {
class frmMain;
}

// The main window: the tree of projects at the left, the panel of the current node at the right, the toolbar,
// the menus and the status bar.
class frmMain final : public QMainWindow {
    Q_OBJECT
  public:
    // Shows and drives `main`; both outlive the window.
    frmMain(const Services& services, clsMain& main, QWidget* parent = nullptr);
    ~frmMain() override;

    // Asked when the window is about to close; false keeps it open. Empty: it closes.
    std::function<bool()> closeAllowed;

    // Brings the choices of the combo boxes and the captions of the type boxes up to date after a load.
    void showCatalogue();
    // For the milliseconds, or until the next text where they are 0.
    void showStatus(const QString& text, int milliseconds = 0);
    // Where the border between tree and panel stands, in pixels from the left; 0 takes the usual place.
    int splitterPlace() const;
    void setSplitterPlace(int place);
    // Where the window stands when it is neither maximised nor minimised: the corner of its frame, and its
    // size without the frame.
    QRect normalPlace() const;

  protected:
    void closeEvent(QCloseEvent* event) override;
    // Keeps the window's keys from fields that have a use of their own for them (Ctrl+E: to the end of the
    // line).
    bool eventFilter(QObject* watched, QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

  private:
    void enlargeTitle();
    void makeToolbarReachable();
    void makeSplitterReachable();
    void showQuickStart();
    void runQuickStartLink(const QString& command);
    // Ties the commands to the actions of the same names that belong to `owner`.
    void wireCommands(std::span<const Command> commands, const QWidget& owner);
    static QAction* actionOf(std::string_view name, const QWidget& owner);
    void enableCommands();
    void showScreen(std::string_view name);
    void connectWebsitePanel();
    void connectEnginePanel();
    void followChanges();
    void addKeys();
    // The website's page, also from the engine screen.
    void showPage(int tab);
    // To the tree, and from the tree to the panel beside it.
    void changeSides();
    void focusPanel();
    void showTitle();
    void showPanels();
    void findEngines();

    std::unique_ptr<Ui::frmMain> m_ui;
    clsMain& m_main;
    CommandTarget m_target;
    std::vector<std::pair<QAction*, const Command*>> m_commands;
    QTimer m_changes;  // runs out shortly after the last change of what the title and the warning tell
    bool m_urlSelected = false;
    QPoint m_frame;  // how far inside its frame the window stands when it is not maximised
};

}  // namespace relay

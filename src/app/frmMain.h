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
class QKeyEvent;

namespace relay {

namespace Ui {
class frmMain;
}

// The main window: the tree of projects on the left, the panel of the current node on the right, the toolbar,
// the menus and the status bar.
class frmMain final : public QMainWindow {
    Q_OBJECT
  public:
    // Shows and drives `main`; both arguments outlive the window.
    frmMain(const Services& services, clsMain& main, QWidget* parent = nullptr);
    ~frmMain() override;

    // Called before the window closes; false keeps it open.
    std::function<bool()> closeAllowed;

    // Updates the choices of the combo boxes and the captions of the type boxes after a load.
    void showCatalogue();
    // For the given milliseconds; 0 means until the next text.
    void showStatus(const QString& text, int milliseconds = 0);
    // Opens the help at the page about the window, or about the part of this window that is shown.
    void showHelp(QWidget& window);
    // Shows or hides the columns of the engines' health.
    void showHealth(bool shown);
    // Shows the guide at the page about the window; false where no guide is installed.
    bool showGuide(QWidget& window);
    // Offers to continue a submission that was interrupted.
    void offerCutOffRun();
    // Position of the border between tree and panel, in pixels from the left; 0 means the default.
    int splitterPlace() const;
    void setSplitterPlace(int place);
    // The window's place when neither maximised nor minimised: the corner of its frame, and its size without
    // the frame.
    QRect normalPlace() const;

  protected:
    void closeEvent(QCloseEvent* event) override;
    // Gives the commands' keys precedence over keys of the fields (Ctrl+E: to the end of the line), and F1 in
    // other windows to the help.
    bool eventFilter(QObject* watched, QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

  private:
    bool takesKey(const QWidget& widget, const QKeyEvent& event) const;
    void enlargeTitle();
    void makeToolbarReachable();
    void makeFetchCancellable();
    void showQuickStart();
    void runQuickStartLink(const QString& command);
    // Connects the commands to the actions of the same names that belong to `owner`.
    void wireCommands(std::span<const Command> commands, const QWidget& owner);
    static QAction* actionOf(std::string_view name, const QWidget& owner);
    void enableCommands();
    std::string_view helpPageFor(const QWidget& window) const;
    // Shows what would be sent to the engine.
    void showPreview(const std::string& engine);
    void connectWebsitePanel();
    void connectEnginePanel();
    void connectAddIns();
    void followChanges();
    void addKeys();
    // Shows the website's page, also from the engine screen.
    void showPage(int tab);
    // Moves the focus to the tree, or from the tree to the panel.
    void changeSides();
    void focusPanel();
    void showTitle();
    void showPanels();
    void findEngines();

    std::unique_ptr<Ui::frmMain> m_ui;
    clsMain& m_main;
    CommandTarget m_target;
    std::vector<std::pair<QAction*, const Command*>> m_commands;
    QTimer m_changes;  // times out shortly after the last change that affects the title or the warning
    bool m_urlSelected = false;
    QPoint m_frame;  // offset of the window inside its frame when not maximised
};

}  // namespace relay

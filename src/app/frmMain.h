// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Commands.h"

#include <QMainWindow>

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
    void showStatus(const QString& text);
    // Asks whether to go on with a submission that was cut off, and opens the wizard on it.
    void offerCutOffRun();
    // Where the border between tree and panel stands, in pixels from the left; 0 takes the usual place.
    int splitterPlace() const;
    void setSplitterPlace(int place);
    // Where the window stands when it is neither maximised nor minimised: the corner of its frame, and its
    // size without the frame.
    QRect normalPlace() const;

  protected:
    void closeEvent(QCloseEvent* event) override;
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
    // What the engine would be sent for one of the websites.
    void showPreview(const std::string& engine);
    void connectWebsitePanel();
    void showPanels();
    void findEngines();

    std::unique_ptr<Ui::frmMain> m_ui;
    clsMain& m_main;
    CommandTarget m_target;
    std::vector<std::pair<QAction*, const Command*>> m_commands;
    QPoint m_frame;  // how far inside its frame the window stands when it is not maximised
};

}  // namespace relay

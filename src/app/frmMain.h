// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>

#include <functional>
#include <memory>
#include <string>

class QAction;

namespace relay {

namespace Ui {
class frmMain;
}
class clsMain;
struct ProjectNode;
struct Services;

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
    // Where the border between tree and panel stands, in pixels from the left; 0 takes the usual place.
    int splitterPlace() const;
    void setSplitterPlace(int place);
    // Where the window stands when it is neither maximised nor minimised: the corner of its frame, and its
    // size without the frame.
    QRect normalPlace() const;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // frmMain.cpp: building and showing
    void drawIcons();
    void showQuickStart();
    void showPanels();
    void showWebsite();
    void makeToolbarReachable();
    void makeSplitterReachable();

    // frmMainCommands.cpp: toolbar, menus, website panel
    void connectToolbar();
    void connectMenus();
    void connectWebsitePanel();
    void enableCommands();
    void runQuickStartLink(const QString& command);
    void runUrlCommand(const QString& key);
    void submit();
    void configure();
    void findEngines();
    QAction* command(const QString& name) const;
    // Runs the operation when the command is given; what it lets out is told with these words.
    void connectCommand(QAction* action, const char* words, const std::function<void()>& operation);

    // frmMainTree.cpp
    void connectTree();
    void nodeClicked(const QModelIndex& index);
    void showCurrentNode(ProjectNode* node);
    // Highlights the node that commands act on, wherever a press has left the highlight.
    void keepHighlight();
    // The current node goes up to a node that was closed over it.
    void leaveHiddenNode(const QModelIndex& collapsed);
    void editLabel(ProjectNode* node);
    void renameFromEditor(const QString& key, const std::string& text);
    void removeCurrentNode();
    void sortCurrentNode();
    void showTreePopup(const QPoint& place);

    std::unique_ptr<Ui::frmMain> m_ui;
    const Services& m_services;
    clsMain& m_main;
    QPoint m_frame;              // how far inside its frame the window stands when it is not maximised
    bool m_showingNode = false;  // the tree's current row follows the desk, not the user
    bool m_clickDone = false;    // the press already switched the panel
};

}  // namespace relay

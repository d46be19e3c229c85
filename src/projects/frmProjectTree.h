// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTreeView>

#include <string>

namespace relay {

class Prompts;
class Workspace;
struct ProjectNode;

// The tree of projects and websites, TreeView1. A click, or a move by the keys, goes to the workspace, and
// the highlight follows the workspace's current node, also where the click was refused. Its actions are its
// popup.
class frmProjectTree final : public QTreeView {
    Q_OBJECT
  public:
    using QTreeView::QTreeView;

    // Both must outlive the tree.
    void connectTo(Workspace& workspace, Prompts& prompts);
    // For the form, which lists the popup's items.
    void addSeparator();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void connectWorkspace();
    void clickNode(const QModelIndex& index);
    void showCurrentNode();
    // Highlights the node that commands act on, wherever a press has left the highlight.
    void keepHighlight();
    // The current node goes up to a node that was closed over it.
    void leaveHiddenNode(const QModelIndex& closed);
    void editLabel(const ProjectNode* node);
    void renameFromEditor(const std::string& key, const std::string& text);
    void removeCurrentNode();
    void sortCurrentNode();
    void showPopup(const QPoint& place);

    Workspace* m_workspace = nullptr;
    Prompts* m_prompts = nullptr;
    bool m_following = false;  // the current row follows the workspace, not the user
    bool m_clickDone = false;  // the press already switched the panel
};

}  // namespace relay

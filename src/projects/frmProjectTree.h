// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTreeView>

#include <string>

namespace relay {

class Prompts;
class Workspace;
struct ProjectNode;

// The tree of projects and websites, TreeView1. Clicks and key moves go to the workspace; the highlight
// follows the workspace's current node, even when a click is refused. Its actions make up its popup menu.
class frmProjectTree final : public QTreeView {
    Q_OBJECT
  public:
    using QTreeView::QTreeView;

    // Both must outlive the tree.
    void connectTo(Workspace& workspace, Prompts& prompts);
    // For the form, which adds the popup's items.
    void addSeparator();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void connectWorkspace();
    void clickNode(const QModelIndex& index);
    void showCurrentNode();
    // Highlights the node that commands act on, whatever a press highlighted.
    void keepHighlight();
    // If closing a node hides the current node, the closed one becomes current.
    void leaveHiddenNode(const QModelIndex& closed);
    void editLabel(const ProjectNode* node);
    void renameFromEditor(const std::string& key, const std::string& text);
    void removeCurrentNode();
    void sortCurrentNode();
    void showPopup(const QPoint& place);

    Workspace* m_workspace = nullptr;
    Prompts* m_prompts = nullptr;
    bool m_following = false;  // the current row follows the workspace, not the user
    bool m_clickDone = false;  // the press has already switched the panel
};

}  // namespace relay

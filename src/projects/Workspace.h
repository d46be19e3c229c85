// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/ProjectStore.h"
#include "projects/ProjectTree.h"
#include "projects/WebsiteCheck.h"

#include <QObject>

#include <optional>
#include <string>
#include <string_view>

namespace relay {

class OpenWebsite;
struct Services;

// The three panels at the right of the tree, of which one is visible: SSTab2, SSTab1 and SSTab3.
enum class MainPanel { Project, Website, Engines };

// What the main window shows beside the tree.
struct PanelState final {
    MainPanel panel = MainPanel::Project;
    NodeKind node = NodeKind::Root;  // the kind of the current node
    std::string title;               // the text of the current node: lblProjectTitle, fraSiteInfo
    std::string txtProjectDescr;     // what the user types goes in here at once
};

// The user's projects and websites as they are worked on: the tree, its current node, and the operations that
// a user drives through the tree, the File menu and the toolbar, without a window. They work on the tree, the
// index file, the open website and the panels' state, and signal what changed. Each shows its own failures.
// The open website is saved by itself before another node takes the panel; while that fails, the panel stays
// where it is, so nothing typed is lost.
class Workspace final : public QObject {
    Q_OBJECT
  public:
    Workspace(const Services& services, OpenWebsite& website);

    ProjectTree& tree() noexcept { return m_tree; }
    const PanelState& panels() const noexcept { return m_panels; }
    // Never null; the root when nothing else is current.
    ProjectNode* currentNode() const noexcept { return m_CurrentNode; }
    void setProjectDescription(std::string text) { m_panels.txtProjectDescr = std::move(text); }
    // Something was typed into the panel that is not saved yet.
    bool isChanged() { return isTouched(*m_CurrentNode); }

    // Rebuilds the tree from the index. A key that the tree has already is passed over.
    void loadProject();
    // Saves first; false, with the panel as it was, when that failed.
    bool nodeClick(ProjectNode& node);
    // Saves what the current node's panel holds. False when that failed, or the user would not have it, and
    // something typed would be lost. A box shows the first failure, the status bar those that follow it.
    bool autoSave();
    // autoSave on the way out, which a failure does not bar: a box shows it, even when one did before.
    void autoSaveToLeave();

    // Each asks for a name, and again while it is taken.
    void newProject();
    // In the current project; refused at the root.
    void newWebsite();
    // Asks for a website file and puts it into the current project.
    void addWebSite();
    // Asks, then takes the node out of the tree and the index. A beep at the root.
    void removeSelectedNode(ProjectNode& node);
    // A label edit that came to its end. Where the name will not do, labelEditWanted asks for another.
    void rename(ProjectNode& node, std::string_view newText);
    // Asks for a new label of the current node.
    void editLabel();
    // The description of a project, or a website that passes its check.
    void save();
    // A website that passes its check: to its file, or to one that is asked for.
    void saveWebsite();
    void saveWebsiteAs();
    // An empty path asks for one. False when nothing was saved.
    bool saveWebSite(const std::string& path);
    // Saves first, but a failure does not bar the way: the fields stay as they are.
    void showEngines();
    void deleteReports();

  Q_SIGNALS:
    void panelsChanged();
    // A save came to its end, by itself or by command.
    void saved();
    // A new node's panel is shown, and the user goes on in it.
    void panelOpened();
    void currentChanged(relay::ProjectNode* node);
    void labelEditWanted(relay::ProjectNode* node);
    // A field that is not filled in is to come to the front.
    void fieldMissing(const relay::MissingField& missing);

  private:
    enum class Fields { FromFile, AsTheyAre };

    void showNode(ProjectNode& node, Fields fields = Fields::FromFile);
    void showWebsite(const ProjectNode& website, Fields fields);
    bool isTouched(const ProjectNode& node);
    void saveDescription(ProjectNode& project);
    std::string newWebsitePath(const std::string& name) const;
    void placeFile(ProjectNode& website, const std::string& path);
    std::optional<int> addToIndex(const std::string& project, const std::string& website,
                                  const std::string& file);
    ProjectNode& currentProject() const;
    bool isProjectTaken(const std::string& name);
    void renameTo(ProjectNode& node, const std::string& text);
    void saveChecked(const std::string& path);

    const Services& m_services;
    OpenWebsite& m_website;
    ProjectStore m_store;
    ProjectTree m_tree;
    PanelState m_panels;
    ProjectNode* m_CurrentNode;
    bool m_failureShown = false;  // a box has shown that saving fails, and it has not worked since
};

}  // namespace relay

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

// The three panels to the right of the tree: SSTab2, SSTab1 and SSTab3. One is visible.
enum class MainPanel { Project, Website, Engines };

// What the main window shows beside the tree.
struct PanelState final {
    MainPanel panel = MainPanel::Project;
    NodeKind node = NodeKind::Root;  // the kind of the current node
    std::string title;               // the text of the current node: lblProjectTitle, fraSiteInfo
    std::string txtProjectDescr;     // updated as the user types
};

// The user's projects and websites: the tree, its current node, and the operations of the tree, the File menu
// and the toolbar, without a window. They change the tree, the index file, the open website and the panels'
// state, signal the changes, and show their own failures. The open website is saved before the panel shows
// another node; while that fails, the panel stays, so nothing typed is lost.
class Workspace final : public QObject {
    Q_OBJECT
  public:
    Workspace(const Services& services, OpenWebsite& website);

    ProjectTree& tree() noexcept { return m_tree; }
    const PanelState& panels() const noexcept { return m_panels; }
    // Never null; the root when nothing else is current.
    ProjectNode* currentNode() const noexcept { return m_CurrentNode; }
    void setProjectDescription(std::string text) { m_panels.txtProjectDescr = std::move(text); }
    // True if the panel contains something that is not saved yet.
    bool isChanged() { return isTouched(*m_CurrentNode); }

    // Rebuilds the tree from the index, without repeated keys.
    void loadProject();
    // Saves first; when that fails, returns false and the panel does not change.
    bool nodeClick(ProjectNode& node);
    // Saves the current node's panel. False when something typed was not saved, because of a failure or by
    // the user's choice. The first failure is shown in a box, later ones in the status bar.
    bool autoSave();
    // autoSave before leaving, which a failure does not prevent, and below another form: shows a failure in a
    // box, even after an earlier one.
    bool autoSaveToLeave();

    // Each asks for a name, again while it is taken.
    void newProject();
    // In the current project; refused at the root.
    void newWebsite();
    // Asks for a website file and adds it to the current project.
    void addWebSite();
    // Asks for a web form data file, adds a website of its name and fills the panel from it. The website's
    // file is the data file until it is saved under another name.
    void importWebForm();
    // Asks, then removes the node from the tree and the index. Beeps at the root.
    void removeSelectedNode(ProjectNode& node);
    // The end of a label edit. If the name is refused, labelEditWanted asks for another.
    void rename(ProjectNode& node, std::string_view newText);
    // Asks for a new label of the current node.
    void editLabel();
    // Saves the description of a project, or a website that passes its check.
    void save();
    // Save a website that passes its check, to its file or to one that is asked for.
    void saveWebsite();
    void saveWebsiteAs();
    // An empty path asks for one. False if nothing was saved.
    bool saveWebSite(const std::string& path);
    // Saves first; shows the engines even if that fails, and the fields stay.
    void showEngines();
    void deleteReports();

  Q_SIGNALS:
    void panelsChanged();
    // After each save, automatic or by command.
    void saved();
    // The panel of a new node is shown and should have the focus.
    void panelOpened();
    void currentChanged(relay::ProjectNode* node);
    void labelEditWanted(relay::ProjectNode* node);
    // A field is not filled in; bring it to the front.
    void fieldMissing(const relay::MissingField& missing);

  private:
    enum class Fields { FromFile, AsTheyAre };
    // What can be added to a project as a website.
    struct AddedFile final {
        std::string_view folder;  // in the program folder, where the dialog opens
        std::string_view filter;
        bool isFormData = false;
    };

    void addFile(const AddedFile& kind);
    void showNode(ProjectNode& node, Fields fields = Fields::FromFile,
                  std::optional<std::string> formData = {});
    void showWebsite(const ProjectNode& website, Fields fields, std::optional<std::string> formData);
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
    bool m_failureShown = false;  // a box has shown that saving fails, and it still does
};

}  // namespace relay

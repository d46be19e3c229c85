// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "projects/ProjectStore.h"
#include "projects/ProjectTree.h"
#include "projects/WebsitePanel.h"

#include <QObject>

#include <optional>
#include <string>
#include <string_view>

namespace relay {

class OpenWebsite;
class Prompts;
struct Services;

// The three panels at the right of the tree, of which one is visible: SSTab2, SSTab1 and SSTab3.
enum class MainPanel { Project, Website, Engines };

// What the main window shows beside the tree.
struct PanelState final {
    MainPanel panel = MainPanel::Project;
    bool saveEnabled = false;            // the toolbar's "Save"
    bool websiteButtonsEnabled = false;  // the buttons that need a website
    bool quickStartVisible = true;       // lblQuickStartTips
    bool siteInfoVisible = false;        // fraSiteInfo
    std::string lblProjectTitle;
    std::string siteInfoCaption;  // caption of fraSiteInfo
    std::string txtProjectDescr;  // what the user types goes in here at once
};

enum class NewNode { Project, Website };

// The operations on projects and websites that a user drives through the tree, the File menu and the toolbar,
// without a window: they work on the tree, the index file, the open website and the panels' state, and signal
// what changed. Each tells the user of its failures. The open website is saved by itself before another node
// takes the panel; while that fails, the panel stays where it is, so nothing typed is lost. A website file
// that another program changed meanwhile, or that could not be read to its end, is written over only when the
// user says so; where nothing was typed, the changed file is read again instead.
class ProjectDesk final : public QObject {
    Q_OBJECT
  public:
    ProjectDesk(const Services& services, OpenWebsite& website);

    ProjectTree& tree() noexcept { return m_tree; }
    const PanelState& panels() const noexcept { return m_panels; }
    ProjectNode* currentNode() const noexcept { return m_CurrentNode; }
    // The website file that the panel holds, or empty.
    const std::string& webFile() const noexcept { return m_WebFile; }
    void setProjectDescription(std::string text) { m_panels.txtProjectDescr = std::move(text); }

    // Rebuilds the tree from the index. A key that the tree has already is passed over.
    void loadProject();
    // Saves first; false, with the panel as it was, when that failed.
    bool nodeClick(ProjectNode& node);
    // Saves what the current node's panel holds. False when that failed, or the user would not have it, and
    // something typed would be lost. The user is told of the first failure, and in the status bar of those
    // that follow it.
    bool autoSave();
    // autoSave on the way out, which a failure does not bar: it is told in a box, even when it was told
    // before.
    void autoSaveToLeave();

    void NewProjectAndWeb(NewNode kind);
    void addWebSite();
    void removeSelectedNode(ProjectNode& node);
    // A label edit that came to its end. Where the name will not do, labelEditWanted asks for another.
    void rename(ProjectNode& node, std::string_view newText);
    // An empty path asks for one (Save As). False when nothing was saved.
    bool saveWebSite(const std::string& path);
    void saveProjectDescription();

    // The File menu's items and the toolbar's "Save" and "Engines".
    bool fileItemEnabled(int index) const;
    void fileItem(int index);
    void toolbarSave();
    void showEngines();
    void deleteReports();

  Q_SIGNALS:
    void panelsChanged();
    // The website's fields were replaced or cleared.
    void websiteChanged();
    void currentChanged(relay::ProjectNode* node);
    void labelEditWanted(relay::ProjectNode* node);
    // A field that is not filled in is to come to the front.
    void fieldMissing(const relay::MissingField& missing);

  private:
    void closeCurrent();
    void showNode(ProjectNode& node);
    void showProject(ProjectNode& node);
    void showWebsite(ProjectNode& node);
    void autoSaveProject(ProjectNode& project);
    bool isTouched(const ProjectNode& node);
    enum class SaveWish { Leaving, Command };
    bool saveOpenWebsite(const std::string& path, SaveWish wish);
    bool askToSaveOver(const std::string& path) const;
    bool giveUpTyped(const std::string& path);
    void readWebsite(const std::string& path);
    void noteSaved();
    std::string newWebsitePath(const std::string& name) const;
    std::string settledFile(ProjectNode& website);
    void placeFile(ProjectNode& website, const std::string& path);
    std::string askFileName() const;
    std::optional<int> addToIndex(const std::string& project, const std::string& website,
                                  const std::string& file);
    void addNewProject(const std::string& name);
    void addNewWebsite(const std::string& name);
    ProjectNode& currentProject() const;
    std::string askNewName(NewNode kind) const;
    std::string settleName(NewNode kind, const ProjectNode& parent, std::string name) const;
    bool hasForbiddenCharacter(std::string_view name, std::string_view forbidden) const;
    void renameTo(ProjectNode& node, const std::string& text);
    void saveCheckedWebsite(const std::string& path);

    const Services& m_services;
    OpenWebsite& m_website;
    ProjectStore m_store;
    ProjectTree m_tree;
    PanelState m_panels;
    ProjectNode* m_CurrentNode = nullptr;
    std::string m_CurrentNodeText;
    std::string m_WebFile;
    std::size_t m_shownFields = 0;  // fingerprint of the website as it was shown or saved last
    bool m_toldOfFailure = false;
    bool m_SkipNextAutoSave = false;
    bool m_AutoSaveArmed = true;
    bool m_partlyLoaded = false;     // the panel holds a file that could not be read to its end
    bool m_newWebsiteClick = false;  // the next click is the one that follows a new website
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "projects/OpenWebsite.h"
#include "projects/ProjectDesk.h"

#include <algorithm>

// Nodes come, go and change their names: the half of ProjectDesk that changes the tree and the index.
namespace relay {

namespace {

constexpr std::string_view kForbidden = "\\/:*?\"<>|";
constexpr std::string_view kWebsiteFilter =
    "Korvel Website Files (*.kws)|*.kws|Text Files(*.txt)|*.txt|All Files(*.*)|*.*";

std::string_view titleOf(NewNode kind) {
    return kind == NewNode::Project ? "New Project" : "New Web Site";
}

// Throws Failure where the name cannot stand on one line of the index.
void requireOneLine(std::string_view name) {
    if (std::any_of(name.begin(), name.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }))
        throw Failure("A name cannot contain line breaks or other control characters.");
}

}  // namespace

bool ProjectDesk::hasForbiddenCharacter(std::string_view name, std::string_view forbidden) const {
    if (name.find_first_of(forbidden) == npos) return false;
    m_services.prompts.message(
        "A WebProject or WebSite file name cannot contain any of the following characters:\r\n\r\n"
        "\\ / : * ? < > |",
        "New WebProject and WebSite", Icon::Critical);
    return true;
}

std::string ProjectDesk::askNewName(NewNode kind) const {
    const std::string_view words = kind == NewNode::Project ? "Please specify a name for your new project:"
                                                            : "Please specify a name for your new web site:";
    const std::string name(trim(m_services.prompts.input(words, titleOf(kind)).value_or("")));
    return name.empty() || hasForbiddenCharacter(name, kForbidden) ? std::string() : name;
}

// Asks until the name is free under the parent; empty when the user steps back. Names given here pass no test
// for forbidden characters.
std::string ProjectDesk::settleName(NewNode kind, const ProjectNode& parent, std::string name) const {
    const auto taken = [&] {
        return m_tree.IsNodeExist(childKey(parent, name)) ||
               (kind == NewNode::Project && m_store.holdsProject(name));
    };
    while (!name.empty() && taken()) {
        m_services.prompts.beep();
        name = trim(m_services.prompts
                        .input("The name '" + name + "' is already exist, please choose a different name:",
                               titleOf(kind))
                        .value_or(""));
    }
    return name;
}

ProjectNode& ProjectDesk::currentProject() const {
    return m_CurrentNode->isWebsite() ? *m_CurrentNode->parent : *m_CurrentNode;
}

void ProjectDesk::NewProjectAndWeb(NewNode kind) {
    trap(m_services.prompts, "NewProjectAndWeb_Error: ", [&] {
        ProjectNode& parent = kind == NewNode::Project ? m_tree.root() : currentProject();
        std::string name = askNewName(kind);
        if (name.empty()) return;
        // The panels change only once the name is settled: stepping back leaves the open website as it is.
        name = settleName(kind, parent, name);
        if (name.empty()) return;
        requireOneLine(name);
        if (kind == NewNode::Project)
            addNewProject(name);
        else
            addNewWebsite(name);
    });
}

// The slot, or 0 for a project; none when it failed and the user was told.
std::optional<int> ProjectDesk::addToIndex(const std::string& project, const std::string& website,
                                           const std::string& file) {
    std::optional<int> slot;
    trap(m_services.prompts,
         "addNewProject_Error:", [&] { slot = m_store.addNewProject(project, website, file); });
    return slot;
}

void ProjectDesk::addNewProject(const std::string& name) {
    if (!addToIndex(name, {}, {})) return;
    closeCurrent();
    showNode(m_tree.add(m_tree.root(), childKey(m_tree.root(), name), name, kProjectFolder, {}));
}

void ProjectDesk::addNewWebsite(const std::string& name) {
    ProjectNode& project = currentProject();
    const std::string path = newWebsitePath(name);
    const std::optional<int> slot = addToIndex(project.text, name, path);
    if (!slot) return;
    if (m_services.preference.DontClearFields == 0) m_website.clearWebsiteFields();
    m_newWebsiteClick = true;
    // Not a click with its save: the fields in the panel are not those of the new node's file, which may be
    // there from an earlier website of that name.
    showNode(
        m_tree.add(project, childKey(project, name), name, kWebFile, std::to_string(*slot) + "|" + path));
}

void ProjectDesk::addWebSite() {
    trap(m_services.prompts, "addWebSite_Error: ", [this] {
        ProjectNode& project = currentProject();
        if (!project.parent) return;
        const std::string folder = m_services.paths.inApp("Projects");
        makeFolder(folder);
        int filter = 1;
        const std::string path =
            ShowFileDialog(m_services.prompts, false, kWebsiteFilter, folder, {}, filter);
        if (path.empty()) return;
        const std::string name = getFileNameFromFile(path);
        // In the index a pipe ends the name.
        if (hasForbiddenCharacter(name, "|")) return;
        requireOneLine(path);
        if (m_tree.IsNodeExist(childKey(project, name))) {
            m_services.prompts.message(
                "The file you try to add already exists, please choose a different file.", "Add Web Site",
                Icon::Critical);
            return;
        }
        const std::optional<int> slot = addToIndex(project.text, name, path);
        if (!slot) return;
        showNode(
            m_tree.add(project, childKey(project, name), name, kWebFile, std::to_string(*slot) + "|" + path));
    });
}

void ProjectDesk::removeSelectedNode(ProjectNode& node) {
    if (!node.parent) {
        m_services.prompts.beep();
        return;
    }
    const std::string question = node.isWebsite()
                                     ? "Are you sure you want to remove this web site : " + node.text + " ?"
                                     : "If you remove this project: " + node.text +
                                           ", all web sites under this project will also be removed.\r\n\r\n"
                                           "Are you sure you want to remove: " +
                                           node.text + " ?";
    if (!m_services.prompts.ask(question, "Confirm Web File Delete")) return;
    trap(m_services.prompts, "removeSelectedNode_Error: ", [&] {
        if (node.isWebsite()) {
            if (const int slot = leadingInteger(node.tag); slot > 0)
                m_store.clearSlot(node.parent->text, slot);
        } else if (!trap(m_services.prompts,
                         "removeProject_Error: ", [&] { m_store.removeProject(node.text); })) {
            return;
        }
        ProjectNode* const next = m_tree.neighbour(node);
        if (m_CurrentNode == &node || m_CurrentNode->parent == &node) {
            m_AutoSaveArmed = false;
            m_CurrentNode = nullptr;
        }
        m_tree.remove(node);
        nodeClick(next ? *next : m_tree.root());
    });
}

void ProjectDesk::rename(ProjectNode& node, std::string_view newText) {
    if (!node.parent) {
        m_services.prompts.beep();
        return;
    }
    trap(m_services.prompts, "LableEdit_Error: ", [&] {
        const std::string text(trim(newText));
        if (hasForbiddenCharacter(text, kForbidden)) {
            Q_EMIT labelEditWanted(&node);
            return;
        }
        if (text.empty() || text == node.text) return;
        requireOneLine(text);
        if (m_tree.IsNodeExist(childKey(*node.parent, text)) ||
            (node.isProject() && m_store.holdsProject(text))) {
            m_services.prompts.message(
                "Cannot rename '" + node.text +
                    "'. A file with the name you specified already exists, please specify a "
                    "different name.",
                "Change Project Name", Icon::Critical);
            Q_EMIT labelEditWanted(&node);
            return;
        }
        renameTo(node, text);
    });
}

void ProjectDesk::renameTo(ProjectNode& node, const std::string& text) {
    if (node.isWebsite()) {
        std::string slot = node.tag;
        std::string path;
        SplitAtPipe(slot, path);
        if (const int number = leadingInteger(slot); number > 0)
            m_store.setSlot(node.parent->text, number, text, path);
    } else if (!trap(m_services.prompts,
                     "editProjectFile_Error: ", [&] { m_store.editProject(node.text, text); })) {
        return;
    }
    m_tree.rename(node, text);
    m_tree.sortChildren(*node.parent);
    if (&node != m_CurrentNode) return;
    m_CurrentNodeText = text;
    m_panels.siteInfoCaption = text;
    m_panels.lblProjectTitle = text;
    Q_EMIT panelsChanged();
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/Workspace.h"

#include "core/FileNames.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "projects/NodeNames.h"
#include "projects/OpenWebsite.h"
#include "projects/WebFormData.h"

namespace relay {

namespace {
constexpr std::string_view kOpenFilter =
    "Korvel Website Files (*.kws)|*.kws|Text Files(*.txt)|*.txt|All Files(*.*)|*.*";
constexpr SaveQuestion kSaveQuestion = {
    "Korvel Website File(*.kws)|*.kws|Text File(*.txt)|*.txt|All Files(*.*)|*.*|", "The file ",
    " already exists.\r\nDo you want to replace it?", "Save Web Site"};

std::string removalQuestion(const ProjectNode& node) {
    if (node.isWebsite()) return "Are you sure you want to remove this web site : " + node.text + " ?";
    return "If you remove this project: " + node.text +
           ", all web sites under this project will also be removed.\r\n\r\nAre you sure you want to "
           "remove: " +
           node.text + " ?";
}
}  // namespace

Workspace::Workspace(const Services& services, OpenWebsite& website)
    : m_services(services),
      m_website(website),
      m_store(services.paths.ProjectFilePath),
      m_CurrentNode(&m_tree.root()) {
    m_panels.title = m_CurrentNode->text;
}

void Workspace::loadProject() {
    trap(m_services.prompts, "loadProject_Error: ", [this] {
        const std::vector<ProjectRecord> projects = m_store.loadProject();
        m_CurrentNode = &m_tree.root();
        m_tree.clear();
        for (const ProjectRecord& record : projects) {
            if (m_tree.isTaken(m_tree.root(), record.name)) continue;
            ProjectNode& project = m_tree.addProject(record.name, record.description);
            for (const WebsiteSlot& website : record.websites)
                if (!m_tree.isTaken(project, website.name)) m_tree.addWebsite(project, website);
        }
    });
}

bool Workspace::nodeClick(ProjectNode& node) {
    if (!autoSave()) return false;
    showNode(node);
    return true;
}

void Workspace::showNode(ProjectNode& node, Fields fields, std::optional<std::string> formData) {
    if (m_CurrentNode->isProject()) m_tree.setInUse(*m_CurrentNode, false);
    m_CurrentNode = &node;
    m_panels.node = node.kind;
    m_panels.title = node.text;
    m_panels.panel = node.isWebsite() ? MainPanel::Website : MainPanel::Project;
    if (node.isProject()) {
        m_tree.setInUse(node, true);
        m_panels.txtProjectDescr = node.description;
    }
    if (node.isWebsite()) showWebsite(node, fields, std::move(formData));
    Q_EMIT currentChanged(&node);
    Q_EMIT panelsChanged();
}

void Workspace::showWebsite(const ProjectNode& website, Fields fields, std::optional<std::string> formData) {
    m_website.fields.lsvSiteURLs.setColumnTitle(0, "Site URLs for: " + website.text);
    if (formData) {
        m_website.openFormData(*std::move(formData));
        return;
    }
    if (!website.file.empty() && fileExists(website.file)) {
        m_website.open(website.file);
        return;
    }
    if (fields == Fields::FromFile) m_website.clearWebsiteFields();
    m_website.openNew();
}

bool Workspace::autoSave() {
    ProjectNode& node = *m_CurrentNode;
    std::string words = "autoSave_Error: ";
    bool settled = true;
    const auto failure = failureOf([&] {
        if (node.isProject()) saveDescription(node);
        if (!node.isWebsite()) return;
        if (node.file.empty()) placeFile(node, newWebsitePath(node.text));
        words.clear();  // a failure of the save has its own
        settled = m_website.save(node.file, OpenWebsite::SaveWish::Leaving);
    });
    Q_EMIT saved();
    if (!failure) {
        if (std::exchange(m_failureShown, false)) m_services.prompts.status({});
        return settled;
    }
    words += *failure;
    if (std::exchange(m_failureShown, true))
        m_services.prompts.status(words);
    else
        m_services.prompts.message(words, "Error", Icon::Critical);
    return !isTouched(node);
}

bool Workspace::autoSaveToLeave() {
    m_failureShown = false;
    return autoSave();
}

// True if something was typed into the node's panel since it was shown or saved.
bool Workspace::isTouched(const ProjectNode& node) {
    if (node.isWebsite()) return m_website.isTouched();
    return node.isProject() && descriptionLine(m_panels.txtProjectDescr) != node.description;
}

void Workspace::saveDescription(ProjectNode& project) {
    std::string description = descriptionLine(m_panels.txtProjectDescr);
    m_store.setDescription(project.text, description);
    project.description = std::move(description);
}

std::string Workspace::newWebsitePath(const std::string& name) const {
    const std::string fileName = safeFileName(name + ".kws");
    makeFolder(m_services.paths.inApp("Projects"));
    return m_services.paths.inApp("Projects/" + fileName);
}

// Stores the website's file in its slot and its node.
void Workspace::placeFile(ProjectNode& website, const std::string& path) {
    m_store.setSlot(website.parent->text, {website.slot, website.text, path});
    website.file = path;
}

ProjectNode& Workspace::currentProject() const {
    return m_CurrentNode->isWebsite() ? *m_CurrentNode->parent : *m_CurrentNode;
}

// A project may be in the index but not in the tree.
bool Workspace::isProjectTaken(const std::string& name) {
    return m_tree.isTaken(m_tree.root(), name) || m_store.holdsProject(name);
}

// The slot, or 0 for a project; none after a failure, which is shown.
std::optional<int> Workspace::addToIndex(const std::string& project, const std::string& website,
                                         const std::string& file) {
    std::optional<int> slot;
    trap(m_services.prompts,
         "addNewProject_Error:", [&] { slot = m_store.addNewProject(project, website, file); });
    return slot;
}

// The panels change only when the name is chosen: cancelling leaves the open website as it is.
void Workspace::newProject() {
    trap(m_services.prompts, "NewProjectAndWeb_Error: ", [this] {
        const std::string name = askNewName(m_services.prompts, NodeKind::Project,
                                            [this](const std::string& wish) { return isProjectTaken(wish); });
        if (name.empty() || !addToIndex(name, {}, {})) return;
        showNode(m_tree.addProject(name, {}));
        Q_EMIT panelOpened();
    });
}

void Workspace::newWebsite() {
    ProjectNode& project = currentProject();
    if (project.isRoot()) {
        m_services.prompts.message(
            "You can add website to the Root item. Please select a web project and try again.", "New Website",
            Icon::Critical);
        return;
    }
    trap(m_services.prompts, "NewProjectAndWeb_Error: ", [&] {
        const std::string name =
            askNewName(m_services.prompts, NodeKind::Website,
                       [&](const std::string& wish) { return m_tree.isTaken(project, wish); });
        if (name.empty()) return;
        const std::string path = newWebsitePath(name);
        const std::optional<int> slot = addToIndex(project.text, name, path);
        if (!slot) return;
        if (m_services.preference.DontClearFields == 0) m_website.clearWebsiteFields();
        // Nothing is saved first: the fields in the panel do not belong to the new node's file, which may
        // exist from an earlier website of that name.
        showNode(m_tree.addWebsite(project, {*slot, name, path}), Fields::AsTheyAre);
        Q_EMIT panelOpened();
    });
}

void Workspace::addWebSite() {
    addFile({"Projects", kOpenFilter});
}

void Workspace::importWebForm() {
    addFile({"WebFormData", kWebFormFilter, true});
}

void Workspace::addFile(const AddedFile& kind) {
    trap(m_services.prompts, "addWebSite_Error: ", [&] {
        ProjectNode& project = currentProject();
        if (project.isRoot()) return;
        const std::string folder = m_services.paths.inApp(kind.folder);
        makeFolder(folder);
        int filter = 1;
        const std::string path = ShowFileDialog(m_services.prompts, false, kind.filter, folder, {}, filter);
        if (path.empty()) return;
        const std::string name = getFileNameFromFile(path);
        if (refusesFileName(m_services.prompts, name)) return;
        requireOneLine(path);
        if (m_tree.isTaken(project, name)) {
            m_services.prompts.message(
                "The file you try to add already exists, please choose a different file.", "Add Web Site",
                Icon::Critical);
            return;
        }
        // A data file that cannot be read adds no website: saving it would overwrite that file.
        std::optional<std::string> formData;
        if (kind.isFormData && !trap(
                                   m_services.prompts, "getWebFormData_Error: ",
                                   [&] { formData = readWebFormData(path); }, kFormDataTitle))
            return;
        const std::optional<int> slot = addToIndex(project.text, name, path);
        if (!slot) return;
        showNode(m_tree.addWebsite(project, {*slot, name, path}), Fields::FromFile, std::move(formData));
        Q_EMIT panelOpened();
        if (kind.isFormData) m_website.tellFormData(path);
    });
}

void Workspace::removeSelectedNode(ProjectNode& node) {
    if (node.isRoot()) {
        m_services.prompts.beep();
        return;
    }
    if (!m_services.prompts.ask(removalQuestion(node), "Confirm Web File Delete")) return;
    trap(m_services.prompts, "removeSelectedNode_Error: ", [&] {
        if (node.isWebsite())
            m_store.clearSlot(node.parent->text, node.slot);
        else if (!trap(m_services.prompts,
                       "removeProject_Error: ", [&] { m_store.removeProject(node.text); }))
            return;
        ProjectNode& next = m_tree.neighbour(node);
        // The panel of a removed node is not saved.
        if (m_CurrentNode == &node || m_CurrentNode->parent == &node) m_CurrentNode = &m_tree.root();
        m_tree.remove(node);
        nodeClick(next);
    });
}

void Workspace::rename(ProjectNode& node, std::string_view newText) {
    if (node.isRoot()) {
        m_services.prompts.beep();
        return;
    }
    trap(m_services.prompts, "LableEdit_Error: ", [&] {
        const std::string text(trim(newText));
        if (refusesName(m_services.prompts, text)) {
            Q_EMIT labelEditWanted(&node);
            return;
        }
        if (text.empty() || text == node.text) return;
        requireOneLine(text);
        if (node.isProject() ? isProjectTaken(text) : m_tree.isTaken(*node.parent, text)) {
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

void Workspace::renameTo(ProjectNode& node, const std::string& text) {
    if (node.isWebsite())
        m_store.setSlot(node.parent->text, {node.slot, text, node.file});
    else if (!trap(m_services.prompts,
                   "editProjectFile_Error: ", [&] { m_store.editProject(node.text, text); }))
        return;
    m_tree.rename(node, text);
    m_tree.sortChildren(*node.parent);
    if (&node != m_CurrentNode) return;
    m_panels.title = text;
    Q_EMIT panelsChanged();
}

void Workspace::editLabel() {
    Q_EMIT labelEditWanted(m_CurrentNode);
}

void Workspace::save() {
    if (!m_CurrentNode->isProject()) {
        saveWebsite();
        return;
    }
    if (trap(m_services.prompts, "saveProject_Error: ", [this] { saveDescription(*m_CurrentNode); }))
        m_services.prompts.notice("Project saved: " + m_CurrentNode->text);
    Q_EMIT saved();
}

void Workspace::saveWebsite() {
    saveChecked(m_CurrentNode->file);
}

void Workspace::saveWebsiteAs() {
    saveChecked({});
}

void Workspace::saveChecked(const std::string& path) {
    m_website.takeSelectedCategory();
    const bool valid = isValidFields(m_website.fields, m_services.prompts,
                                     [this](const MissingField& missing) { Q_EMIT fieldMissing(missing); });
    if (!valid || !saveWebSite(path)) return;
    const std::string remark = breaksGetNotice(m_website.fields);
    m_services.prompts.notice("Website saved: " + m_CurrentNode->text +
                              (remark.empty() ? "" : ". " + remark));
}

bool Workspace::saveWebSite(const std::string& path) {
    if (!m_CurrentNode->isWebsite()) return false;
    std::string chosen;
    trap(m_services.prompts, "saveWebSite_Error: ", [&] {
        if (!path.empty()) return;
        const std::string folder = m_services.paths.inApp("Projects");
        makeFolder(folder);
        const std::string file = askWhereToSave(m_services.prompts, kSaveQuestion, folder);
        if (file.empty()) return;
        placeFile(*m_CurrentNode, file);
        chosen = file;
    });
    bool done = false;
    // The failure has its own text.
    trap(m_services.prompts, {}, [&] {
        if (!path.empty()) {
            done = m_website.save(path, OpenWebsite::SaveWish::Command);
        } else if (!chosen.empty()) {
            m_website.saveOver(chosen);
            done = true;
        }
    });
    Q_EMIT saved();
    return done;
}

void Workspace::showEngines() {
    autoSave();
    if (m_panels.panel == MainPanel::Engines) return;
    m_panels.panel = MainPanel::Engines;
    Q_EMIT panelsChanged();
}

void Workspace::deleteReports() {
    m_website.DeleteReportFile(m_CurrentNode->file, m_services.paths.reportFolder());
}

}  // namespace relay

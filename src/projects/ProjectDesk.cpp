// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/ProjectDesk.h"

#include "core/Failure.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "projects/OpenWebsite.h"

namespace relay {

namespace {

constexpr std::string_view kSaveFilter =
    "Korvel Website File(*.kws)|*.kws|Text File(*.txt)|*.txt|All Files(*.*)|*.*|";

std::string withExtension(std::string file, int filter) {
    const std::string_view extension = filter == 1 ? ".kws" : filter == 2 ? ".txt" : "";
    if (!endsWithNoCase(file, extension)) file += extension;
    return file;
}

}  // namespace

ProjectDesk::ProjectDesk(const Services& services, OpenWebsite& website)
    : m_services(services),
      m_website(website),
      m_store(services.paths.ProjectFilePath),
      m_CurrentNode(&m_tree.root()),
      m_CurrentNodeText(m_tree.root().text) {
    m_panels.lblProjectTitle = m_CurrentNodeText;
}

void ProjectDesk::loadProject() {
    m_SkipNextAutoSave = true;
    trap(m_services.prompts, "loadProject_Error: ", [this] {
        const std::vector<ProjectRecord> projects = m_store.loadProject();
        m_CurrentNode = &m_tree.root();
        m_tree.clear();
        for (const ProjectRecord& record : projects) {
            if (m_tree.IsNodeExist(childKey(m_tree.root(), record.name))) continue;
            ProjectNode& project = m_tree.add(m_tree.root(), childKey(m_tree.root(), record.name),
                                              record.name, kProjectFolder, record.description);
            for (const WebsiteSlot& site : record.websites)
                if (!m_tree.IsNodeExist(childKey(project, site.name)))
                    m_tree.add(project, childKey(project, site.name), site.name, kWebFile,
                               std::to_string(site.slot) + "|" + site.file);
        }
    });
}

bool ProjectDesk::nodeClick(ProjectNode& node) {
    if (!autoSave()) return false;
    showNode(node);
    return true;
}

void ProjectDesk::closeCurrent() {
    if (m_CurrentNode && m_CurrentNode->image == kProjectFolderOpen)
        m_tree.setImage(*m_CurrentNode, kProjectFolder);
}

void ProjectDesk::showNode(ProjectNode& node) {
    closeCurrent();
    m_CurrentNode = &node;
    m_CurrentNodeText = node.text;
    m_panels.lblProjectTitle = node.text;
    m_partlyLoaded = false;
    if (node.isWebsite())
        showWebsite(node);
    else
        showProject(node);
    Q_EMIT currentChanged(&node);
    Q_EMIT panelsChanged();
}

// A project, or the root above them.
void ProjectDesk::showProject(ProjectNode& node) {
    const bool isProject = node.isProject();
    m_panels.panel = MainPanel::Project;
    m_panels.saveEnabled = isProject;
    m_panels.websiteButtonsEnabled = false;
    m_panels.quickStartVisible = !isProject;
    m_panels.siteInfoVisible = isProject;
    if (!isProject) return;
    m_tree.setImage(node, kProjectFolderOpen);
    m_panels.siteInfoCaption = node.text;
    m_panels.txtProjectDescr = node.tag;
}

void ProjectDesk::showWebsite(ProjectNode& node) {
    m_panels.panel = MainPanel::Website;
    m_panels.saveEnabled = true;
    m_panels.websiteButtonsEnabled = true;
    m_panels.siteInfoCaption = node.text;
    m_website.fields.lsvSiteURLs.setColumnTitle(0, "Site URLs for: " + node.text);
    std::string slot = node.tag;
    SplitAtPipe(slot, m_WebFile);
    const bool isNew = std::exchange(m_newWebsiteClick, false);
    if (!m_WebFile.empty() && fileExists(m_WebFile)) {
        readWebsite(m_WebFile);
        return;
    }
    if (!isNew || m_services.preference.DontClearFields == 0) m_website.clearWebsiteFields();
    m_shownFields = m_website.fingerprint();
    Q_EMIT websiteChanged();
}

void ProjectDesk::readWebsite(const std::string& path) {
    m_partlyLoaded = !m_website.loadWebsiteFile(path);
    m_shownFields = m_website.fingerprint();
    Q_EMIT websiteChanged();
}

bool ProjectDesk::autoSave() {
    if (!m_AutoSaveArmed) {
        m_AutoSaveArmed = true;
        return true;
    }
    if (!m_CurrentNode) return true;
    if (m_SkipNextAutoSave) {
        m_SkipNextAutoSave = false;
        return true;
    }
    ProjectNode& node = *m_CurrentNode;
    std::string words = "autoSave_Error: ";
    try {
        bool settled = true;
        if (node.isProject()) autoSaveProject(node);
        if (node.isWebsite()) {
            const std::string path = settledFile(node);
            words.clear();  // a failure of the save brings its own
            settled = saveOpenWebsite(path, SaveWish::Leaving);
        }
        m_toldOfFailure = false;
        return settled;
    } catch (const std::exception& failure) {
        words += failure.what();
        if (std::exchange(m_toldOfFailure, true))
            m_services.prompts.status(words);
        else
            m_services.prompts.message(words, "Error", Icon::Critical);
        return !isTouched(node);
    }
}

// Whether something was typed into the node's panel since it was shown or saved.
bool ProjectDesk::isTouched(const ProjectNode& node) {
    if (node.isWebsite()) return m_website.fingerprint() != m_shownFields;
    return node.isProject() && descriptionLine(m_panels.txtProjectDescr) != node.tag;
}

bool ProjectDesk::saveOpenWebsite(const std::string& path, SaveWish wish) {
    const bool leaving = wish == SaveWish::Leaving;
    if (m_partlyLoaded || !m_website.save(path, SaveOver::WhatWasSeen)) {
        if (!isTouched(*m_CurrentNode)) {
            if (!m_partlyLoaded) readWebsite(path);
            if (!m_partlyLoaded || leaving) return true;
        }
        if (!askToSaveOver(path)) return leaving && giveUpTyped(path);
        m_website.save(path, SaveOver::Anything);
    }
    noteSaved();
    return true;
}

void ProjectDesk::noteSaved() {
    m_partlyLoaded = false;
    m_shownFields = m_website.fingerprint();
}

bool ProjectDesk::askToSaveOver(const std::string& path) const {
    const std::string_view reason =
        m_partlyLoaded ? " could not be read to its end. A save writes over what was not read."
                       : " was changed by another program since this window read it.";
    return m_services.prompts.ask("The file " + path + std::string(reason) +
                                      "\r\n\r\nDo you want to save what this window shows over it?",
                                  "Save Web Site");
}

bool ProjectDesk::giveUpTyped(const std::string& path) {
    if (!m_services.prompts.ask(
            "What you typed is not saved.\r\n\r\nDo you want to drop it and leave the file " + path +
                " as it is?",
            "Save Web Site"))
        return false;
    readWebsite(path);
    return true;
}

void ProjectDesk::autoSaveToLeave() {
    m_toldOfFailure = false;
    autoSave();
}

void ProjectDesk::autoSaveProject(ProjectNode& project) {
    std::string description = descriptionLine(m_panels.txtProjectDescr);
    m_store.setDescription(project.text, description);
    project.tag = std::move(description);
}

std::string ProjectDesk::newWebsitePath(const std::string& name) const {
    const std::string fileName = safeFileName(name + ".kws");
    makeFolder(m_services.paths.inApp("Projects"));
    return m_services.paths.inApp("Projects/" + fileName);
}

// Notes the website's file in its node and its slot.
void ProjectDesk::placeFile(ProjectNode& website, const std::string& path) {
    std::string slot = website.tag;
    std::string oldPath;
    SplitAtPipe(slot, oldPath);
    if (const int number = leadingInteger(slot); number > 0)
        m_store.setSlot(website.parent->text, number, website.text, path);
    website.tag = slot + "|" + path;
    m_WebFile = path;
}

// The website's file; one that has none yet gets its place first.
std::string ProjectDesk::settledFile(ProjectNode& website) {
    std::string slot = website.tag;
    std::string path;
    SplitAtPipe(slot, path);
    if (path.empty()) {
        path = newWebsitePath(website.text);
        placeFile(website, path);
    }
    return path;
}

void ProjectDesk::saveProjectDescription() {
    if (!m_CurrentNode || !m_CurrentNode->isProject()) return;
    trap(m_services.prompts, "saveProject_Error: ", [this] {
        m_CurrentNode->tag = descriptionLine(m_panels.txtProjectDescr);
        m_store.setDescription(m_CurrentNode->text, m_CurrentNode->tag);
    });
}

std::string ProjectDesk::askFileName() const {
    const std::string folder = m_services.paths.inApp("Projects");
    makeFolder(folder);
    int filter = 1;
    std::string file = ShowFileDialog(m_services.prompts, true, kSaveFilter, folder, {}, filter);
    if (file.empty()) return {};
    file = withExtension(std::move(file), filter);
    const bool replaces =
        !fileExists(file) ||
        m_services.prompts.ask("The file " + file + " already exists.\r\nDo you want to replace it?",
                               "Save Web Site");
    return replaces ? file : std::string();
}

bool ProjectDesk::saveWebSite(const std::string& path) {
    if (!m_CurrentNode || !m_CurrentNode->isWebsite()) return false;
    std::string file = path;
    trap(m_services.prompts, "saveWebSite_Error: ", [&] {
        if (!path.empty()) return;
        const std::string chosen = askFileName();
        if (chosen.empty()) return;
        placeFile(*m_CurrentNode, chosen);
        file = chosen;
    });
    if (file.empty()) return false;
    bool saved = false;
    // The failure brings its own words.
    trap(m_services.prompts, {}, [&] {
        if (!path.empty()) {
            saved = saveOpenWebsite(file, SaveWish::Command);
            return;
        }
        m_website.save(file, SaveOver::Anything);
        noteSaved();
        saved = true;
    });
    return saved;
}

void ProjectDesk::saveCheckedWebsite(const std::string& path) {
    m_website.takeSelectedCategory();
    const bool valid = isValidFields(m_website.fields, m_services.prompts,
                                     [this](const MissingField& missing) { Q_EMIT fieldMissing(missing); });
    if (valid && saveWebSite(path)) m_services.prompts.status(breaksGetNotice(m_website.fields));
}

bool ProjectDesk::fileItemEnabled(int index) const {
    const bool root = !m_CurrentNode || !m_CurrentNode->parent;
    const bool website = !root && m_CurrentNode->isWebsite();
    switch (index) {
        case 1:
        case 3:
        case 6:
        case 10:
            return !root;
        case 4:
            return website;
        case 7:
        case 8:
            return website && m_panels.panel != MainPanel::Engines;
        default:
            return true;
    }
}

void ProjectDesk::fileItem(int index) {
    const bool saves = index == 7 || index == 8;
    if (!saves && !autoSave()) return;
    if (!m_CurrentNode) return;
    switch (index) {
        case 0:
            NewProjectAndWeb(NewNode::Project);
            break;
        case 1:
        case 4:
            removeSelectedNode(*m_CurrentNode);
            break;
        case 3:
            if (m_CurrentNode->parent)
                NewProjectAndWeb(NewNode::Website);
            else
                m_services.prompts.message(
                    "You can add website to the Root item. Please select a web project and try again.",
                    "New Website", Icon::Critical);
            break;
        case 6:
            addWebSite();
            break;
        case 7:
            saveCheckedWebsite(m_WebFile);
            break;
        case 8:
            saveCheckedWebsite({});
            break;
        default:
            break;
    }
}

void ProjectDesk::toolbarSave() {
    if (m_CurrentNode && m_CurrentNode->isProject())
        saveProjectDescription();
    else
        fileItem(7);
}

void ProjectDesk::showEngines() {
    // The fields stay as they are, so a failed save does not bar the way.
    autoSave();
    if (m_panels.panel == MainPanel::Engines) return;
    m_panels.panel = MainPanel::Engines;
    m_panels.saveEnabled = false;
    Q_EMIT panelsChanged();
}

void ProjectDesk::deleteReports() {
    m_website.DeleteReportFile(m_WebFile);
}

}  // namespace relay

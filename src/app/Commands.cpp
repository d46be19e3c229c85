// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Commands.h"

#include "app/clsMain.h"
#include "catalogue/Catalogue.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "pagetools/Optimizer.h"
#include "projects/UrlList.h"

namespace relay {

namespace {

using Target = const CommandTarget&;
using State = const CommandState&;

// The rules.
bool always(State) {
    return true;
}
bool inProject(State state) {
    return state.node != NodeKind::Root;
}
bool onWebsite(State state) {
    return state.node == NodeKind::Website;
}
bool canSave(State state) {
    return inProject(state) && state.panel != MainPanel::Engines;
}
bool withUrl(State state) {
    return state.urlSelected;
}
bool canSaveWebsite(State state) {
    return onWebsite(state) && state.panel != MainPanel::Engines;
}

// Operations that are more than one call.
template <auto Operation>
void onWorkspace(Target target) {
    (target.main.workspace.*Operation)();
}
// Does nothing more if the open website cannot be saved.
template <auto Operation>
void afterSave(Target target) {
    if (target.main.workspace.autoSave()) (target.main.workspace.*Operation)();
}
void removeCurrent(Target target) {
    Workspace& workspace = target.main.workspace;
    if (workspace.autoSave()) workspace.removeSelectedNode(*workspace.currentNode());
}
template <auto Operation>
void onSelection(Target target) {
    (target.main.catalogue.selection.*Operation)();
}
template <auto Operation>
void onUrls(Target target) {
    (UrlList(target.main.website.fields.lsvSiteURLs, target.services.prompts).*Operation)();
}
void updateEngines(Target target) {
    if (target.main.workspace.autoSave()) target.show("frmUpdateEngines");
}
template <auto Operation>
void onMetaTags(Target target) {
    (target.main.urlMetaTags.*Operation)();
}
void configure(Target target) {
    if (target.main.workspace.autoSave()) target.show("frmPreference");
}
void leave(Target target) {
    target.main.workspace.autoSaveToLeave();
    target.close();
}
void buildEngine(Target target) {
    if (target.main.workspace.autoSave()) target.show("frmEngineBuilder");
}
void submit(Target target) {
    if (target.main.readyToSubmit()) target.show("frmSubmit");
}
void openPage(Target target, std::string_view address) {
    openPageOrTell(target.services.prompts, address, kApplication);
}
template <std::size_t AddIn>
void runAddIn(Target target) {
    target.main.addIns.run(AddIn);
}

void rank(Target target) {
    if (target.main.takesRankWatch()) openPage(target, kWebAddress);
    target.show("frmRanking");
}

constexpr std::string_view kFile = "Module: NewProject\r\n";
constexpr std::string_view kHelp = "Module: Help\r\n";
constexpr std::string_view kTools = "frmMetaTag_Load_Error: ";
constexpr std::string_view kRanking = "loadWebRanking_Error: ";
constexpr std::string_view kSearch = "loadWebProfile_Error: ";
constexpr std::string_view kPopup = "Menupopup_Error: ";

constexpr Command kMainCommands[] = {
    // The toolbar.
    {"NewProject", "NewProject", "Create a new project (Ctrl+N)", "", always, kFile,
     afterSave<&Workspace::newProject>},
    {"NewWeb", "NewWeb", "Create a new website in the current project (Ctrl+Shift+N)", "Ctrl+Shift+N", always,
     kFile, afterSave<&Workspace::newWebsite>},
    {"Save", "Save", "Save the website or the project (Ctrl+S)", "Ctrl+S", canSave, kFile,
     onWorkspace<&Workspace::save>},
    {"Engines", "Engines", "Select the engines to submit to (Ctrl+E)", "Ctrl+E", always, kFile,
     onWorkspace<&Workspace::showEngines>},
    {"Submit", "Submit", "Submit the websites to the selected engines (Ctrl+Return)", "Ctrl+Return", always,
     kFile, submit},
    {"MetaTag", "MetaTag", "Read and write the meta tags of pages (Ctrl+M)", "", always, kTools,
     [](Target target) { target.show("frmMetaTag"); }},
    {"Optimizer", "Optimizer", "Rate a page and list what should be better (Ctrl+Shift+O)", "", always,
     kTools, [](Target target) { target.show("frmOptimizer"); }},
    {"Ranking", "Ranking", "See where sites rank on search engines (Ctrl+R)", "", always, kRanking, rank},
    {"Search", "Search", "Search the web in your browser (Ctrl+Shift+F)", "", always, kSearch,
     [](Target target) { target.show("frmSearch"); }},
    {"News", "News", "Read the news, and look for a new message", "", always, kFile,
     [](Target target) { target.show("frmNews"); }},
    // File.
    {"mnuFileItems_0", "NewProject", "Create a new project", "Ctrl+N", always, kFile,
     afterSave<&Workspace::newProject>},
    {"mnuFileItems_1", "Remove", "", "", inProject, kFile, removeCurrent, "Del"},
    {"mnuFileItems_3", "NewWeb", "Create a new website in the current project", "", inProject, kFile,
     afterSave<&Workspace::newWebsite>, "Ctrl+Shift+N"},
    {"mnuFileItems_4", "RemoveWeb", "", "", onWebsite, kFile, removeCurrent, "Del"},
    {"mnuFileItems_6", "AddWebsite", "", "Ctrl+O", inProject, kFile, afterSave<&Workspace::addWebSite>},
    {"mnuFileItems_7", "Save", "", "", canSaveWebsite, kFile, onWorkspace<&Workspace::saveWebsite>, "Ctrl+S"},
    {"mnuFileItems_8", "SaveAs", "", "Ctrl+Shift+S", canSaveWebsite, kFile,
     onWorkspace<&Workspace::saveWebsiteAs>},
    {"mnuFileItems_10", "Import", "", "", inProject},
    {"mnuImportItems_0", "Import", "", "", inProject, kFile, afterSave<&Workspace::addWebSite>},
    {"mnuImportItems_2", "Import", "Make a website from what a customer entered in a web form", "Ctrl+I",
     inProject, kFile, afterSave<&Workspace::importWebForm>},
    {"mnuFileItems_12", "UpdateEngines", "Fetch the current engine data from the update server", "", always,
     kFile, updateEngines},
    {"mnuFileItems_13", "Configuration", "", "Ctrl+,", always, kFile, configure},
    {"mnuFileItems_15", "Exit", "", "Ctrl+Q", always, kFile, leave},
    // Engines. Their failures are complete messages.
    {"mnuEngineItems_0", "Save", "", "", inProject, "", onSelection<&EngineSelection::saveSelection>},
    {"mnuEngineItems_1", "Open", "", "", inProject, "", onSelection<&EngineSelection::loadSelection>},
    {"mnuEngineItems_3", "Top", "", "", inProject, "", onSelection<&EngineSelection::selectTopEngines>},
    {"mnuEngineItems_4", "Custom", "", "", inProject, "", onSelection<&EngineSelection::selectCustomEngines>},
    {"mnuEngineItems_6", "Failed", "", "", inProject, "", onSelection<&EngineSelection::selectFailedEngines>},
    {"mnuEngineItems_8", "Export", "", "", inProject, "", onSelection<&EngineSelection::offerEngineList>},
    // Tools.
    {"mnuToolsItems_0", "MetaTag", "", "Ctrl+M", always, kTools,
     [](Target target) { target.show("frmMetaTag"); }},
    {"mnuToolsItems_1", "Optimizer", "", "Ctrl+Shift+O", always, kTools,
     [](Target target) { target.show("frmOptimizer"); }},
    {"mnuToolsItems_2", "Ranking", "", "Ctrl+R", always, kRanking, rank},
    {"mnuToolsItems_3", "Search", "", "Ctrl+Shift+F", always, kSearch,
     [](Target target) { target.show("frmSearch"); }},
    {"mnuToolsItems_5", "Doorway", "", "", always,
     "frmDoorway_Load_Error: ", [](Target target) { target.show("frmDoorway"); }},
    {"mnuToolsItems_6", "Keyword", "", "", always,
     "Form_Load_Error: ", [](Target target) { target.show("frmKeywordBuilder"); }},
    {"mnuToolsItems_7", "FTP", "", "", always,
     "frmFTPClient_Load_Error: ", [](Target target) { target.show("frmFTPClient"); }},
    {"mnuToolsItems_9", "EngineBuilder", "Make an engine of your own from a web form", "", always,
     "frmEngineBuilder_Load_Error: ", buildEngine},
    // Add-Ins.
    {"mnuAddInsItems_1", "AddIn", "Choose the tools that this menu shows", "", always, kFile,
     [](Target target) { target.show("frmAddIns"); }},
    {"mnuAddInsItems_3", "Ranking", "", "", always, kFile, runAddIn<0>},
    {"mnuAddInsItems_4", "Web", "", "", always, kFile, runAddIn<1>},
    {"mnuAddInsItems_5", "Keyword", "", "", always, kFile, runAddIn<2>},
    // Help.
    {"mnuHelpItems_0", "Help", "", "F1", always, kHelp, [](Target target) { target.help(nullptr); }},
    {"mnuHelpItems_6", "Web", "", "", always, kHelp, [](Target target) { openPage(target, kWebAddress); }},
    {"mnuHelpItems_7", "UpdateEngines", "", "", always, kHelp,
     [](Target target) { openPage(target, target.services.preference.UpdateURL); }},
    {"mnuHelpItems_8", "Support", "", "", always, kHelp,
     [](Target target) { openPage(target, target.services.preference.SupportURL); }},
    {"mnuHelpItems_10", "About", "", "", always, kHelp, [](Target target) { target.show("frmAbout"); }},
    // The tree's popup, which also has items of the File menu.
    {"mnuPopupItems_10", "Rename", "", "", inProject, kPopup, onWorkspace<&Workspace::editLabel>, "F2"},
};

constexpr Command kUrlCommands[] = {
    {"AddURL", "AddURL", "Type a URL", "", always, "", onUrls<&UrlList::addTypedURL>},
    {"AddFromLocalFolder", "AddFromLocalFolder", "Make URLs from the HTML files of a local folder", "",
     always, "", [](Target target) { target.show("frmAddURL"); }},
    {"AddFromWeb", "AddFromWeb", "Collect the links of a live page", "", always, "",
     [](Target target) { target.show("frmAddURLFromWeb"); }},
    {"AddFromSitemap", "AddFromSitemap",
     "Import the addresses of a sitemap, and select the new and changed ones", "", always, "",
     [](Target target) { target.main.sitemap.askAndImport(target.main.website.fields); }},
    {"LoadURL", "LoadURL", "Load URLs from a text file", "", always, "", onUrls<&UrlList::loadURLs>},
    {"LocalURL", "LocalURL", "Load URLs from a text file on this computer", "", always, "",
     onUrls<&UrlList::loadURLs>},
    {"SaveURL", "SaveURL", "Save the URLs to a text file", "", always, "", onUrls<&UrlList::saveURLs>},
    {"DeleteURL", "DeleteURL", "Delete the selected URLs (Del)", "", withUrl, "", onUrls<&UrlList::DeleteURL>,
     "Del", "Select a URL in the list first."},
    {"GetMetaTag", "GetMetaTag", "Read title, keywords and description of the page", "", always, "",
     onMetaTags<&UrlMetaTags::GetMetaTag>},
    {"InsertMetaTag", "InsertMetaTag", "Write the meta tags into the local file", "", always, "",
     onMetaTags<&UrlMetaTags::InsertMetaTag>},
    {"ReplaceMetaTag", "ReplaceMetaTag", "Replace the meta tags of the local file", "", always, "",
     onMetaTags<&UrlMetaTags::ReplaceMetaTag>},
    {"Optimizer", "Optimizer", "Write a report on the page of the selected URL", "", always, "",
     [](Target target) {
         target.main.optimizer.optimizeURL(getFirstSelectedItem(target.main.website.fields.lsvSiteURLs));
     }},
};

}  // namespace

std::span<const Command> mainCommands() {
    return kMainCommands;
}

std::span<const Command> urlCommands() {
    return kUrlCommands;
}

std::string Command::shownToolTip(const CommandState& state) const {
    std::string text(toolTip);
    const std::string_view reason = isEnabled(state) ? std::string_view() : whyDisabled;
    if (!text.empty() && !reason.empty()) text += ". ";
    return text.append(reason);
}

void Command::run(const CommandTarget& target) const {
    if (operation) trap(target.services.prompts, trapWords, [&] { operation(target); });
}

}  // namespace relay

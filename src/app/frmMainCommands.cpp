// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the main window: toolbar, menus, and those of the website panel.
#include "app/clsMain.h"
#include "app/frmAbout.h"
#include "app/frmMain.h"
#include "app/frmPreference.h"
#include "catalogue/Catalogue.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "projects/SiteCommands.h"
#include "projects/UrlList.h"
#include "projects/frmAddURL.h"
#include "ui_frmMain.h"
#include "widgets/Forms.h"
#include "widgets/ListView.h"

#include <QShortcut>
#include <QSignalBlocker>

namespace relay {

namespace {
constexpr int kFileItems[] = {0, 1, 3, 4, 6, 7, 8};
constexpr int kEngineItems[] = {0, 1, 3, 4, 6, 8};
constexpr const char* kFileTrap = "Module: NewProject\r\n";
constexpr const char* kHelpTrap = "Module: Help\r\n";

QString numbered(const char* name, int index) {
    return QString::fromLatin1(name) + QLatin1Char('_') + QString::number(index);
}
}  // namespace

QAction* frmMain::command(const QString& name) const {
    return findChild<QAction*>(name, Qt::FindDirectChildrenOnly);
}

void frmMain::connectCommand(QAction* action, const char* words, const std::function<void()>& operation) {
    connect(action, &QAction::triggered, this,
            [this, words, operation] { trap(m_services.prompts, words, operation); });
}

void frmMain::connectToolbar() {
    ProjectDesk& desk = m_main.desk;
    connectCommand(m_ui->NewProject, kFileTrap, [&desk] { desk.fileItem(0); });
    connectCommand(m_ui->NewWeb, kFileTrap, [&desk] { desk.fileItem(3); });
    m_ui->Save->setShortcut(QKeySequence::Save);
    connectCommand(m_ui->Save, kFileTrap, [&desk] { desk.toolbarSave(); });
    connectCommand(m_ui->Engines, kFileTrap, [&desk] { desk.showEngines(); });
    connectCommand(m_ui->Submit, kFileTrap, [this] { submit(); });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, &frmMain::findEngines);
}

void frmMain::connectMenus() {
    ProjectDesk& desk = m_main.desk;
    for (const int index : kFileItems)
        connectCommand(command(numbered("mnuFileItems", index)), kFileTrap,
                       [&desk, index] { desk.fileItem(index); });
    connectCommand(m_ui->mnuImportItems_0, kFileTrap, [&desk] { desk.fileItem(6); });
    connectCommand(m_ui->mnuFileItems_13, kFileTrap, [this] { configure(); });
    connectCommand(m_ui->mnuFileItems_15, kFileTrap, [this] {
        m_main.desk.autoSaveToLeave();
        close();
    });
    for (const int index : kEngineItems) {
        connect(command(numbered("mnuEngineItems", index)), &QAction::triggered, this,
                [this, index] { m_main.catalogue.selection.mnuEngineItems(index); });
    }
    const auto opens = [this](QAction* action, const std::function<std::string()>& address) {
        connectCommand(action, kHelpTrap, [this, address] { m_services.prompts.openWithSystem(address()); });
    };
    connectCommand(m_ui->mnuHelpItems_0, kHelpTrap,
                   [this] { openHelp(m_services.paths, m_services.prompts); });
    opens(m_ui->mnuHelpItems_6, [] { return std::string(kWebAddress); });
    opens(m_ui->mnuHelpItems_7, [this] { return m_services.preference.UpdateURL; });
    opens(m_ui->mnuHelpItems_8, [this] { return m_services.preference.SupportURL; });
    connectCommand(m_ui->mnuHelpItems_10, kHelpTrap, [this] { frmAbout(this).exec(); });
    connect(m_ui->mnuFile, &QMenu::aboutToShow, this, &frmMain::enableCommands);
    connect(m_ui->mnuEngine, &QMenu::aboutToShow, this, &frmMain::enableCommands);
}

void frmMain::connectWebsitePanel() {
    frmWebsitePanel* const panel = m_ui->SSTab1;
    WebsiteFields& fields = m_main.website.fields;
    connect(panel, &frmWebsitePanel::urlCommand, this, &frmMain::runUrlCommand);
    connect(panel, &frmWebsitePanel::urlChosen, this, [this, &fields](int row) {
        chooseURL(fields, row);
        showWebsite();
    });
    connect(panel, &frmWebsitePanel::browseForLocalFile, this, [this, &fields] {
        openFileLocation(fields, m_services.prompts);
        showWebsite();
    });
    connect(panel, &frmWebsitePanel::viewReport, this,
            [this, &fields] { viewReport(fields, m_services.prompts); });
    connect(panel, &frmWebsitePanel::deleteReport, this, [this] { m_main.desk.deleteReports(); });
    connect(&m_main.desk, &ProjectDesk::fieldMissing, panel, &frmWebsitePanel::showMissing);
    connect(m_ui->txtProjectDescr, &QPlainTextEdit::textChanged, this, [this] {
        const QString text =
            typedText(*m_ui->txtProjectDescr).replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
        m_main.desk.setProjectDescription(fromScreen(text));
    });
}

void frmMain::enableCommands() {
    const PanelState& panels = m_main.desk.panels();
    const ProjectNode* const node = m_main.desk.currentNode();
    const bool atRoot = node == nullptr || node->parent == nullptr;
    m_ui->Save->setEnabled(panels.saveEnabled);
    for (const int index : kFileItems)
        command(numbered("mnuFileItems", index))->setEnabled(m_main.desk.fileItemEnabled(index));
    m_ui->mnuFileItems_10->setEnabled(m_main.desk.fileItemEnabled(10));
    m_ui->mnuFileItems_10->menuAction()->setEnabled(m_main.desk.fileItemEnabled(10));
    for (const int index : kEngineItems) command(numbered("mnuEngineItems", index))->setEnabled(!atRoot);
    m_ui->mnuPopupItems_10->setEnabled(!atRoot);
    m_ui->SSTab1->setEnabled(panels.websiteButtonsEnabled || panels.panel == MainPanel::Website);
}

void frmMain::runQuickStartLink(const QString& name) {
    QAction* const action = command(name);
    if (action == nullptr) return;
    if (action->isEnabled())
        action->trigger();
    else
        showStatus(tr("Select a website in the tree first, or create one with 'New Web'."));
}

void frmMain::runUrlCommand(const QString& key) {
    WebsiteFields& fields = m_main.website.fields;
    UrlList urls(fields.lsvSiteURLs, m_services.prompts);
    if (key == QStringLiteral("AddURL")) urls.addTypedURL();
    if (key == QStringLiteral("AddFromLocalFolder"))
        frmAddURL(fields.lsvSiteURLs, m_services.prompts, m_services.paths.AppPath, this).exec();
    if (key == QStringLiteral("LoadURL") || key == QStringLiteral("LocalURL")) urls.loadURLs();
    if (key == QStringLiteral("SaveURL")) urls.saveURLs();
    if (key == QStringLiteral("DeleteURL")) urls.DeleteURL();
    m_ui->SSTab1->urlList()->setFocus(Qt::OtherFocusReason);
}

void frmMain::submit() {
    if (!m_main.readyToSubmit()) return;
    m_services.prompts.message(
        "Submitting from this window comes with a later version.\r\n\r\n"
        "Until then \"korvel-relay-cli submit\" submits websites to the engines of a saved selection.",
        "Submit", Icon::Information);
}

void frmMain::configure() {
    if (!m_main.desk.autoSave()) return;
    frmPreference(m_services, this).exec();
}

void frmMain::findEngines() {
    m_ui->Engines->trigger();
    if (m_main.desk.panels().panel == MainPanel::Engines) m_ui->SSTab3->focusFindBox();
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmMain.h"

#include "app/Help.h"
#include "app/QuickStart.h"
#include "app/Screens.h"
#include "app/clsMain.h"
#include "app/frmHelp.h"
#include "app/ui_frmMain.h"
#include "catalogue/Catalogue.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "projects/UrlList.h"
#include "submission/frmPreview.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>

namespace relay {

namespace {
constexpr int kUsualTreeWidth = 225;
constexpr QSize kFrame(8, 40);  // around a window, at most

// One line of the quick start text as HTML, its command as a link.
QString toHtml(const QuickStartLine& line) {
    QString html = toScreen(line.text).toHtmlEscaped();
    if (line.command.empty()) return html;
    const QString words = toScreen(line.named).toHtmlEscaped();
    return html.replace(words, QStringLiteral("<a href=\"%1\">%2</a>").arg(toScreen(line.command), words));
}
}  // namespace

frmMain::frmMain(const Services& services, clsMain& main, QWidget* parent)
    : QMainWindow(parent),
      m_ui(std::make_unique<Ui::frmMain>()),
      m_main(main),
      m_target{services,
               main,
               [this](std::string_view screen) { showScreen(screen, m_target, this); },
               [this] { close(); },
               [this](QWidget* window) { showHelp(window != nullptr ? *window : *this); },
               [this](QWidget& window) { return showGuide(window); }} {
    m_ui->setupUi(this);
    enlargeTitle();
    describePlaceholders(*m_ui->SSTab2);
    makeToolbarReachable();
    makeReachable(*m_ui->imgSpliter,
                  tr("Drag to make the tree wider or narrower, or press Alt+Right and Alt+Left"));
    m_ui->SSTab1->connectTo(main.website.fields, main.catalogue.categories);
    m_ui->SSTab1->connectWalk(main.categoryWalk, main.catalogue.lists);
    m_ui->SSTab3->connectTo(main.catalogue.lists, main.catalogue.selection,
                            !services.preference.refusesAdultSites());
    setSplitterPlace(0);
    showQuickStart();
    wireCommands(mainCommands(), *this);
    wireCommands(urlCommands(), *m_ui->SSTab1);
    addKeys();
    connectWebsitePanel();
    makeFetchCancellable();
    connectEnginePanel();
    connectAddIns();
    followChanges();
    connect(m_ui->SSTab3, &frmEnginePanel::previewWanted, this, &frmMain::showPreview);
    m_ui->TreeView1->connectTo(main.workspace, services.prompts);
    connect(&main.workspace, &Workspace::panelsChanged, this, &frmMain::showPanels);
    connect(&main.workspace, &Workspace::panelOpened, this, [this] {
        m_ui->SSTab1->setCurrentIndex(0);
        focusPanel();
    });
    showPanels();
    resize(size().boundedTo(screen()->availableSize() - kFrame));
    CenterForm(*this);
}

frmMain::~frmMain() {
    m_main.catalogue.afterLoad = nullptr;
}

void frmMain::enlargeTitle() {
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.35);
    large.setBold(true);
    m_ui->lblProjectTitle->setFont(large);
}

QAction* frmMain::actionOf(std::string_view name, const QWidget& owner) {
    const QString text = toScreen(name);
    auto* const action = owner.findChild<QAction*>(text, Qt::FindDirectChildrenOnly);
    if (action != nullptr) return action;
    const auto* const menu = owner.findChild<QMenu*>(text);
    return menu == nullptr ? nullptr : menu->menuAction();
}

void frmMain::wireCommands(std::span<const Command> commands, const QWidget& owner) {
    for (const Command& command : commands) {
        QAction* const action = actionOf(command.name, owner);
        if (action == nullptr) continue;
        action->setIcon(themedIcon(command.icon));
        if (!command.shownKey.empty()) {
            action->setIconText(action->iconText());  // buttons show the text without the key
            action->setText(action->text() + QLatin1Char('\t') + toScreen(command.shownKey));
        }
        if (!command.shortcut.empty()) action->setShortcut(QKeySequence(toScreen(command.shortcut)));
        connect(action, &QAction::triggered, this, [this, &command] { command.run(m_target); });
        m_commands.emplace_back(action, &command);
    }
}

void frmMain::enableCommands() {
    const PanelState& panels = m_main.workspace.panels();
    const CommandState state{panels.node, panels.panel, m_urlSelected};
    for (const auto& [action, command] : m_commands) {
        action->setEnabled(command->isEnabled(state));
        const QString toolTip = toScreen(command->shownToolTip(state));
        if (!toolTip.isEmpty()) action->setToolTip(toolTip);
    }
}

void frmMain::offerCutOffRun() {
    if (std::optional<CutOffRun> run = m_main.cutOffRunToGoOnWith())
        continueSubmission(std::move(*run), m_target, this);
}

void frmMain::showHealth(bool shown) {
    Catalogue& catalogue = m_main.catalogue;
    trap(m_target.services.prompts, "Module: showEngineHealth\r\n",
         [&] { catalogue.showEngineHealth(shown); });
    m_ui->SSTab3->showHealth(catalogue.showsEngineHealth());
}

void frmMain::showPreview(const std::string& engine) {
    Workspace& workspace = m_main.workspace;
    workspace.autoSave();
    std::vector<frmPreview::Website> websites;
    for (const auto& project : workspace.tree().root().children)
        for (const auto& website : project->children)
            if (!website->file.empty()) websites.push_back({website->text, website->file});
    frmPreview preview(m_target.services, m_main.catalogue, std::move(websites), this);
    preview.chooseEngine(engine);
    preview.chooseWebsite(workspace.currentNode()->file);
    preview.exec();
}

void frmMain::connectWebsitePanel() {
    frmWebsitePanel* const panel = m_ui->SSTab1;
    OpenWebsite& website = m_main.website;
    connect(&website, &OpenWebsite::fieldsChanged, panel, &frmWebsitePanel::showFields);
    connect(panel, &frmWebsitePanel::urlChosen, this, [this](int row) {
        m_main.urlMetaTags.cancel();
        m_main.website.chooseURL(row);
    });
    connect(panel, &frmWebsitePanel::getSiteInfo, &m_main.siteDetails, &SiteDetails::askAndFetch);
    connect(panel, &frmWebsitePanel::importWebFormData, &website, &OpenWebsite::importWebFormData);
    connect(panel, &frmWebsitePanel::browseForLocalFile, &website, &OpenWebsite::openFileLocation);
    connect(panel, &frmWebsitePanel::viewReport, &website, &OpenWebsite::viewReport);
    connect(panel, &frmWebsitePanel::deleteReport, &m_main.workspace, &Workspace::deleteReports);
    connect(&m_main.workspace, &Workspace::fieldMissing, panel, &frmWebsitePanel::showMissing);
    connect(m_ui->txtProjectDescr, &QPlainTextEdit::textChanged, this, [this] {
        const QString text =
            typedText(*m_ui->txtProjectDescr).replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
        m_main.workspace.setProjectDescription(fromScreen(text));
    });
}

void frmMain::connectEnginePanel() {
    m_ui->SSTab3->setUpdateAction(*m_ui->mnuFileItems_12);
    m_main.catalogue.afterLoad = [this] { showCatalogue(); };
    connect(m_ui->SSTab3, &frmEnginePanel::healthWanted, this, &frmMain::showHealth);
    connect(m_ui->SSTab3, &frmEnginePanel::healthyWanted, this, [this] {
        trap(m_target.services.prompts, "Module: dropFailingEngines\r\n",
             [this] { m_main.catalogue.dropFailingEngines(); });
    });
    const Rows& selected = m_main.catalogue.lists.lsvSelectedEngines;
    const auto follow = [this] { m_changes.start(); };
    connect(&selected, &Rows::modelReset, this, follow);
    connect(&selected, &Rows::rowsInserted, this, follow);
    connect(&selected, &Rows::rowsRemoved, this, follow);
}

void frmMain::connectAddIns() {
    const auto show = [this] {
        QAction* const actions[] = {m_ui->mnuAddInsItems_3, m_ui->mnuAddInsItems_4, m_ui->mnuAddInsItems_5};
        for (std::size_t i = 0; i < std::size(actions); ++i)
            actions[i]->setVisible(m_main.addIns.shown().at(i));
    };
    connect(&m_main.addIns, &AddIns::shownChanged, this, show);
    show();
}

// Waits for a pause in the changes: checking for them takes longer the more a website contains.
void frmMain::followChanges() {
    constexpr int kPauseMilliseconds = 150;
    m_changes.setSingleShot(true);
    m_changes.setInterval(kPauseMilliseconds);
    connect(&m_changes, &QTimer::timeout, this, &frmMain::showTitle);
    const auto follow = [this] { m_changes.start(); };
    connect(m_ui->SSTab1, &frmWebsitePanel::edited, this, follow);
    connect(m_ui->txtProjectDescr, &QPlainTextEdit::textChanged, this, follow);
    connect(&m_main.website, &OpenWebsite::fieldsChanged, this, follow);
    connect(&m_main.workspace, &Workspace::saved, this, follow);
    connect(m_ui->SSTab1, &frmWebsitePanel::urlSelected, this, [this](bool any) {
        if (std::exchange(m_urlSelected, any) != any) enableCommands();
    });
}

void frmMain::addKeys() {
    qApp->installEventFilter(this);
    const auto key = [this](const QKeySequence& keys, auto&& operation) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, operation);
    };
    key(QKeySequence::Find, [this] { findEngines(); });
    key(Qt::Key_F6, [this] { changeSides(); });
    for (int tab = 0; tab < m_ui->SSTab1->count(); ++tab)
        key(frmWebsitePanel::pageKeys(tab), [this, tab] { showPage(tab); });
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    auto* const widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr) return QMainWindow::eventFilter(watched, event);
    if (event->type() == QEvent::ShortcutOverride && takesKey(*widget, *static_cast<QKeyEvent*>(event))) {
        event->ignore();
        return true;
    }
    if (event->type() == QEvent::KeyPress && widget->window() != this &&
        static_cast<QKeyEvent*>(event)->keyCombination() == QKeyCombination(Qt::Key_F1) &&
        !helpPageFor(*widget->window()).empty()) {
        showHelp(*widget->window());
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

bool frmMain::takesKey(const QWidget& widget, const QKeyEvent& event) const {
    if (widget.window() != this) return false;
    const QKeySequence keys(event.keyCombination());
    return std::any_of(m_commands.begin(), m_commands.end(),
                       [&](const auto& command) { return command.first->shortcut() == keys; });
}

std::string_view frmMain::helpPageFor(const QWidget& window) const {
    if (&window != this) return helpPageOf(fromScreen(window.objectName()));
    if (m_main.workspace.panels().node == NodeKind::Root) return kHelpContents;
    const QWidget* panel = m_ui->panels->currentWidget();
    if (panel == m_ui->SSTab1) panel = m_ui->SSTab1->currentWidget();
    return helpPageOf(fromScreen(panel->objectName()));
}

// A viewer belongs to the window it was opened from, so that an open dialog does not block it.
void frmMain::showHelp(QWidget& window) {
    openHelp(m_target.services, [&] { showGuide(window); });
}

bool frmMain::showGuide(QWidget& window) {
    const std::string& folder = m_target.services.paths.installedGuide;
    if (folder.empty()) return false;
    auto* viewer = window.findChild<frmHelp*>(QString(), Qt::FindDirectChildrenOnly);
    if (viewer == nullptr) viewer = new frmHelp(folder, m_target.services.prompts, &window);
    viewer->showPage(helpPageFor(window));
    viewer->show();
    viewer->raise();
    viewer->activateWindow();
    return true;
}

void frmMain::showPage(int tab) {
    Workspace& workspace = m_main.workspace;
    if (workspace.panels().node != NodeKind::Website) return;
    if (workspace.panels().panel != MainPanel::Website && !workspace.nodeClick(*workspace.currentNode()))
        return;
    m_ui->SSTab1->setCurrentIndex(tab);
    focusFirst(*m_ui->SSTab1->currentWidget());
}

void frmMain::changeSides() {
    if (m_ui->TreeView1->hasFocus())
        focusPanel();
    else
        m_ui->TreeView1->setFocus(Qt::ShortcutFocusReason);
}

void frmMain::focusPanel() {
    switch (m_main.workspace.panels().panel) {
        case MainPanel::Engines:
            m_ui->SSTab3->focusEngines();
            break;
        case MainPanel::Website:
            focusFirst(*m_ui->SSTab1->currentWidget());
            break;
        case MainPanel::Project:
            focusFirst(*m_ui->SSTab2);
            break;
    }
}

void frmMain::showTitle() {
    const ProjectNode& node = *m_main.workspace.currentNode();
    QString name = toScreen(node.text);
    if (node.isWebsite()) name += QStringLiteral(" - ") + toScreen(node.parent->text);
    // Qt replaces "[*]" with the mark of a change, and "[*][*]" with "[*]".
    name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    const QString program = toScreen(kApplication);
    setWindowTitle(node.isRoot() ? program : name + QStringLiteral("[*] - ") + program);
    setWindowModified(m_main.workspace.isChanged());
    m_ui->SSTab3->showWarning(toScreen(m_main.passwordWarning()));
}

void frmMain::runQuickStartLink(const QString& name) {
    QAction* const action = actionOf(fromScreen(name), *this);
    if (action == nullptr) return;
    if (action->isEnabled())
        action->trigger();
    else
        m_target.services.prompts.notice("Select a website in the tree first, or create one with 'New Web'.");
}

void frmMain::findEngines() {
    m_ui->Engines->trigger();
    if (m_main.workspace.panels().panel == MainPanel::Engines) m_ui->SSTab3->focusFindBox();
}

// By default toolbar buttons take no focus, so they cannot be used without a mouse.
void frmMain::makeToolbarReachable() {
    for (QAction* action : m_ui->ToolbarMain->actions()) {
        QWidget* const button = m_ui->ToolbarMain->widgetForAction(action);
        if (button != nullptr && !action->isSeparator()) button->setFocusPolicy(Qt::TabFocus);
    }
}

// Escape is free for other uses while nothing is being fetched.
void frmMain::makeFetchCancellable() {
    auto* const escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    escape->setEnabled(false);
    connect(escape, &QShortcut::activated, &m_main.fetcher, &frmHTTP::Disconnect);
    connect(&m_main.fetcher, &frmHTTP::runningChanged, escape, &QShortcut::setEnabled);
}

void frmMain::showQuickStart() {
    QString html;
    for (const QuickStartLine& line : quickStartLines()) {
        const bool heading = line.text.ends_with(":");
        const QString text = toHtml(line);
        if (heading)
            html += QStringLiteral("<p style=\"margin-top:14px; margin-bottom:4px\"><b>%1</b></p>").arg(text);
        else if (!line.text.empty())
            html += QStringLiteral("<p style=\"margin-top:7px; margin-bottom:7px\">%1</p>").arg(text);
    }
    m_ui->lblQuickStartTips->setText(html);
    m_ui->lblQuickStartTips->setMargin(12);
    connect(m_ui->lblQuickStartTips, &QLabel::linkActivated, this, &frmMain::runQuickStartLink);
}

void frmMain::showCatalogue() {
    m_ui->SSTab1->setChoices(m_main.webTypes(), clsMain::languages(), m_main.catalogue.countries.cboCountry);
    m_ui->SSTab3->showTypeBoxes();
    m_ui->SSTab1->showCustomEngines();
    if (m_main.catalogue.showsEngineHealth()) showHealth(true);
    m_ui->SSTab1->showFields();
}

void frmMain::showStatus(const QString& text, int milliseconds) {
    if (text.isEmpty())
        m_ui->StatusBar1->clearMessage();
    else
        m_ui->StatusBar1->showMessage(text, milliseconds);
}

int frmMain::splitterPlace() const {
    return m_ui->imgSpliter->sizes().value(0);
}

void frmMain::setSplitterPlace(int place) {
    const int left = place > 0 ? place : kUsualTreeWidth;
    m_ui->imgSpliter->setStretchFactor(0, 0);
    m_ui->imgSpliter->setStretchFactor(1, 1);
    m_ui->imgSpliter->setSizes({left, std::max(1, width() - left)});
}

void frmMain::showPanels() {
    const PanelState& panels = m_main.workspace.panels();
    const QString title = toScreen(panels.title);
    m_ui->lblProjectTitle->setText(title);
    m_ui->fraSiteInfo->setTitle(QString(title).replace(QLatin1Char('&'), QStringLiteral("&&")));
    m_ui->fraSiteInfo->setVisible(panels.node != NodeKind::Root);
    m_ui->lblQuickStartTips->setVisible(panels.node == NodeKind::Root);
    const QString description =
        toScreen(panels.txtProjectDescr).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (typedText(*m_ui->txtProjectDescr) != description) {
        const QSignalBlocker quiet(m_ui->txtProjectDescr);
        m_ui->txtProjectDescr->setPlainText(description);
    }
    QWidget* const shown = panels.panel == MainPanel::Website   ? static_cast<QWidget*>(m_ui->SSTab1)
                           : panels.panel == MainPanel::Engines ? static_cast<QWidget*>(m_ui->SSTab3)
                                                                : m_ui->SSTab2;
    const bool toEngines = shown == m_ui->SSTab3 && m_ui->panels->currentWidget() != shown;
    m_ui->panels->setCurrentWidget(shown);
    if (toEngines) focusPanel();
    enableCommands();
    showTitle();
}

QRect frmMain::normalPlace() const {
    const bool normal = !isMaximized() && !isMinimized();
    return normal ? QRect(pos(), size()) : normalGeometry().translated(-m_frame);
}

void frmMain::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    if (!isMaximized() && !isMinimized()) m_frame = geometry().topLeft() - pos();
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (closeAllowed && !closeAllowed()) {
        event->ignore();
        return;
    }
    event->accept();
    m_main.optimizer.cancel();
    closeScreens(*this);
}

}  // namespace relay

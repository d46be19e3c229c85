// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmMain.h"

#include "app/QuickStart.h"
#include "app/clsMain.h"
#include "catalogue/Catalogue.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/clsPreference.h"
#include "ui_frmMain.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QCloseEvent>
#include <QShortcut>
#include <QSignalBlocker>

namespace relay {

namespace {
constexpr int kUsualTreeWidth = 225;
constexpr int kSplitterStep = 24;

struct CommandIcon final {
    const char* command;
    const char* icon;
};

constexpr CommandIcon kCommandIcons[] = {
    {"NewProject", "NewProject"},
    {"NewWeb", "NewWeb"},
    {"Save", "Save"},
    {"Engines", "Engines"},
    {"Submit", "Submit"},
    {"MetaTag", "MetaTag"},
    {"Optimizer", "Optimizer"},
    {"Ranking", "Ranking"},
    {"Search", "Search"},
    {"News", "News"},
    {"mnuFileItems_0", "NewProject"},
    {"mnuFileItems_1", "Remove"},
    {"mnuFileItems_3", "NewWeb"},
    {"mnuFileItems_4", "RemoveWeb"},
    {"mnuFileItems_6", "AddWebsite"},
    {"mnuFileItems_7", "Save"},
    {"mnuFileItems_8", "SaveAs"},
    {"mnuFileItems_12", "UpdateEngines"},
    {"mnuFileItems_13", "Configuration"},
    {"mnuFileItems_15", "Exit"},
    {"mnuImportItems_0", "Import"},
    {"mnuImportItems_2", "Import"},
    {"mnuEngineItems_0", "Save"},
    {"mnuEngineItems_1", "Open"},
    {"mnuEngineItems_3", "Top"},
    {"mnuEngineItems_4", "Custom"},
    {"mnuEngineItems_6", "Failed"},
    {"mnuEngineItems_8", "Export"},
    {"mnuToolsItems_0", "MetaTag"},
    {"mnuToolsItems_1", "Optimizer"},
    {"mnuToolsItems_2", "Ranking"},
    {"mnuToolsItems_3", "Search"},
    {"mnuToolsItems_5", "Doorway"},
    {"mnuToolsItems_6", "Keyword"},
    {"mnuToolsItems_7", "FTP"},
    {"mnuToolsItems_9", "EngineBuilder"},
    {"mnuAddInsItems_0", "AddIn"},
    {"mnuHelpItems_0", "Help"},
    {"mnuHelpItems_6", "Web"},
    {"mnuHelpItems_7", "UpdateEngines"},
    {"mnuHelpItems_8", "Support"},
    {"mnuHelpItems_10", "About"},
    {"mnuPopupItems_10", "Rename"},
};

// One line of the quick start text, with the words that name a command as a link to it.
QString toHtml(const QuickStartLine& line) {
    QString html = toScreen(line.text).toHtmlEscaped();
    if (line.command.empty()) return html;
    const QString words = toScreen(line.named).toHtmlEscaped();
    return html.replace(words, QStringLiteral("<a href=\"%1\">%2</a>").arg(toScreen(line.command), words));
}
}  // namespace

frmMain::frmMain(const Services& services, clsMain& main, QWidget* parent)
    : QMainWindow(parent), m_ui(std::make_unique<Ui::frmMain>()), m_services(services), m_main(main) {
    m_ui->setupUi(this);
    drawIcons();
    makeToolbarReachable();
    makeSplitterReachable();
    m_ui->SSTab1->connectTo(main.website.fields, main.catalogue.categories);
    m_ui->SSTab3->connectTo(main.catalogue.lists, main.catalogue.selection,
                            !services.preference.refusesAdultSites());
    setSplitterPlace(0);
    showQuickStart();
    connectToolbar();
    connectMenus();
    connectWebsitePanel();
    connectTree();
    connect(&main.desk, &ProjectDesk::panelsChanged, this, &frmMain::showPanels);
    connect(&main.desk, &ProjectDesk::websiteChanged, this, &frmMain::showWebsite);
    showPanels();
    CenterForm(*this);
}

frmMain::~frmMain() = default;

void frmMain::drawIcons() {
    for (const CommandIcon& entry : kCommandIcons) {
        if (QAction* action = command(QString::fromLatin1(entry.command)); action != nullptr)
            action->setIcon(themedIcon(entry.icon));
    }
    m_ui->mnuFileItems_10->setIcon(themedIcon("Import"));
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.35);
    large.setBold(true);
    m_ui->lblProjectTitle->setFont(large);
}

// Toolbar buttons leave the focus alone by default, which keeps people without a mouse from them.
void frmMain::makeToolbarReachable() {
    for (QAction* action : m_ui->ToolbarMain->actions()) {
        QWidget* const button = m_ui->ToolbarMain->widgetForAction(action);
        if (button != nullptr && !action->isSeparator()) button->setFocusPolicy(Qt::TabFocus);
    }
}

// The border between tree and panel by keys: the toolkit moves it by mouse only.
void frmMain::makeSplitterReachable() {
    const QString keys = tr("Drag to make the tree wider or narrower, or press Alt+Right and Alt+Left");
    m_ui->imgSpliter->handle(1)->setToolTip(keys);
    m_ui->imgSpliter->setAccessibleDescription(keys);
    for (const auto& [key, step] : {std::pair(Qt::Key_Left, -kSplitterStep), {Qt::Key_Right, kSplitterStep}})
        connect(new QShortcut(QKeySequence(Qt::ALT | key), this), &QShortcut::activated, this,
                [this, step = step] { setSplitterPlace(std::max(1, splitterPlace() + step)); });
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
    showWebsite();
}

void frmMain::showStatus(const QString& text) {
    if (text.isEmpty())
        m_ui->StatusBar1->clearMessage();
    else
        m_ui->StatusBar1->showMessage(text);
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
    const PanelState& panels = m_main.desk.panels();
    m_ui->lblProjectTitle->setText(toScreen(panels.lblProjectTitle));
    m_ui->fraSiteInfo->setTitle(
        toScreen(panels.siteInfoCaption).replace(QLatin1Char('&'), QStringLiteral("&&")));
    m_ui->fraSiteInfo->setVisible(panels.siteInfoVisible);
    m_ui->lblQuickStartTips->setVisible(panels.quickStartVisible);
    const QString description =
        toScreen(panels.txtProjectDescr).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (typedText(*m_ui->txtProjectDescr) != description) {
        const QSignalBlocker quiet(m_ui->txtProjectDescr);
        m_ui->txtProjectDescr->setPlainText(description);
    }
    QWidget* const shown = panels.panel == MainPanel::Website   ? static_cast<QWidget*>(m_ui->SSTab1)
                           : panels.panel == MainPanel::Engines ? static_cast<QWidget*>(m_ui->SSTab3)
                                                                : m_ui->SSTab2;
    m_ui->panels->setCurrentWidget(shown);
    enableCommands();
}

void frmMain::showWebsite() {
    m_ui->SSTab1->showFields();
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
    if (closeAllowed && !closeAllowed())
        event->ignore();
    else
        event->accept();
}

}  // namespace relay

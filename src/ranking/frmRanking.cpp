// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/frmRanking.h"

#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Text.h"
#include "ranking/ui_frmRanking.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QKeyEvent>
#include <QShortcut>
#include <QSignalBlocker>

namespace relay {

namespace {

void setText(QLineEdit& edit, std::string_view text) {
    const QString shown = toScreen(text);
    if (edit.text() != shown) edit.setText(shown);
}

}  // namespace

frmRanking::frmRanking(const Services& services, QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmRanking>()),
      m_ranking(services, QLocale()),
      m_history(services, m_ranking.history(), QLocale()) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    drawIcons();
    connectProfile();
    connectSearch();
    connectReports();
    m_ui->pageHistory->connectTo(m_history);
    connect(m_ui->Command4, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->SSTab1, &QTabWidget::currentChanged, this, &frmRanking::showHistory);
    connect(&m_ranking, &clsRanking::historyChanged, this, &frmRanking::showHistory);
    connect(&m_ranking, &clsRanking::stateChanged, this, &frmRanking::showState);
    connect(&m_ranking, &clsRanking::refused, this, &frmRanking::showRefused);
    m_ranking.Load();
    showState();
    m_ui->splitterRanking->setSizes({width() / 3, width() * 2 / 3});
    m_ui->cboProfile->setFocus(Qt::OtherFocusReason);
    CenterForm(*this);
}

frmRanking::~frmRanking() = default;

void frmRanking::drawIcons() {
    m_ui->Command2_1->setIcon(themedIcon("Save"));
    m_ui->Command1_1->setIcon(themedIcon("Report"));
    m_ui->Command3->setIcon(themedIcon("Report"));
    m_ui->cmdAddURL->setIcon(themedIcon("AddURL"));
    m_ui->cmdDeleteURL->setIcon(themedIcon("DeleteURL"));
}

void frmRanking::connectProfile() {
    clsRanking& ranking = m_ranking;
    connect(m_ui->cboProfile, &QComboBox::activated, &ranking,
            [this] { m_ranking.cboProfile_Click(fromScreen(m_ui->cboProfile->currentText())); });
    connect(m_ui->Command2_0, &QPushButton::clicked, &ranking, &clsRanking::Command2_0);
    connect(m_ui->Command2_1, &QPushButton::clicked, &ranking, &clsRanking::Command2_1);
    connect(m_ui->Command2_2, &QPushButton::clicked, &ranking, &clsRanking::Command2_2);
    connect(m_ui->cmdAddURL, &QPushButton::clicked, this, &frmRanking::addURL);
    connect(m_ui->txtURL, &QLineEdit::returnPressed, this, &frmRanking::addURL);
    connect(m_ui->cmdDeleteURL, &QPushButton::clicked, this, &frmRanking::deleteURL);
    connect(new QShortcut(QKeySequence::Delete, m_ui->lstSiteURL, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &frmRanking::deleteURL);
    connect(m_ui->txtKeyWord, &QLineEdit::textEdited, &ranking,
            [this](const QString& text) { m_ranking.txtKeyWord_Change(fromScreen(text)); });
    connect(m_ui->txtPageLinks, &QLineEdit::textEdited, &ranking,
            [this](const QString& text) { m_ranking.txtPageLinks_Change(fromScreen(text)); });
    connect(m_ui->Option1_0, &QRadioButton::clicked, &ranking,
            [this] { m_ranking.Option1_Click(RankLimit::Pages); });
    connect(m_ui->Option1_1, &QRadioButton::clicked, &ranking,
            [this] { m_ranking.Option1_Click(RankLimit::Links); });
}

void frmRanking::connectSearch() {
    Rows& engines = m_ranking.state().lsvRankingEngines;
    m_ui->lsvRankingEngines->setRows(&engines, {6, 12, 23, 24});
    connect(m_ui->chkSelectAll, &QCheckBox::clicked, &m_ranking, &clsRanking::chkSelectAll_Click);
    connect(&engines, &Rows::dataChanged, this, &frmRanking::showSelectAll);
    connect(&engines, &Rows::modelReset, this, &frmRanking::showSelectAll);
    connect(m_ui->chkSaveResults, &QCheckBox::clicked, this,
            [this](bool on) { m_ranking.state().chkSaveResults = on; });
    connect(m_ui->Command1_0, &QPushButton::clicked, &m_ranking, &clsRanking::Command1_0);
    connect(m_ui->Command1_1, &QPushButton::clicked, &m_ranking, &clsRanking::Command1_1);
    // The run has ended before the question comes up.
    connect(
        &m_ranking, &clsRanking::searchEnded, this,
        [this](const RankingEnd& end) {
            if (isVisible()) m_ranking.offerReport(end);
        },
        Qt::QueuedConnection);
}

void frmRanking::connectReports() {
    m_ui->ListView2->setRows(&m_ranking.state().ListView2, {24, 18});
    connect(m_ui->ListView2, &ListView::rowActivated, &m_ranking, &clsRanking::Command3);
    connect(m_ui->Command3, &QPushButton::clicked, &m_ranking,
            [this] { m_ranking.Command3(m_ranking.state().ListView2.firstHighlighted()); });
}

void frmRanking::addURL() {
    if (m_ranking.cmdAddURL_Click(fromScreen(m_ui->txtURL->text()))) m_ui->txtURL->clear();
    m_ui->txtURL->setFocus(Qt::OtherFocusReason);
}

void frmRanking::deleteURL() {
    const int place = m_ui->lstSiteURL->currentRow();
    m_ranking.cmdDeleteURL_Click(place);
    m_ui->lstSiteURL->setCurrentRow(std::min(place, m_ui->lstSiteURL->count() - 1));
}

void frmRanking::showState() {
    showProfiles();
    showSetup();
    showButtons();
    const RankingState& state = m_ranking.state();
    m_ui->ProgressBar1->setMaximum(std::max(1, state.progressMaximum));
    m_ui->ProgressBar1->setValue(state.progressValue);
    const QString status = toScreen(state.StatusBar2);
    if (m_ui->StatusBar2->currentMessage() != status) m_ui->StatusBar2->showMessage(status);
}

void frmRanking::showProfiles() {
    const RankingState& state = m_ranking.state();
    QComboBox& box = *m_ui->cboProfile;
    QStringList profiles;
    for (const std::string& profile : state.cboProfile) profiles << toScreen(profile);
    QStringList shown;
    for (int item = 0; item < box.count(); ++item) shown << box.itemText(item);
    const auto isChosen = [&state](const std::string& name) {
        return !name.empty() && equalsNoCase(name, state.setup.profile);
    };
    const auto chosen = std::find_if(state.cboProfile.begin(), state.cboProfile.end(), isChosen);
    if (shown != profiles) {
        box.clear();
        box.addItems(profiles);
    }
    box.setCurrentIndex(
        chosen == state.cboProfile.end() ? -1 : static_cast<int>(chosen - state.cboProfile.begin()));
    box.setEnabled(!m_ranking.isRunning());
}

void frmRanking::showSetup() {
    const RankingState& state = m_ranking.state();
    QStringList sites;
    for (const std::string& site : state.setup.sites) sites << toScreen(site);
    QStringList shown;
    for (int item = 0; item < m_ui->lstSiteURL->count(); ++item)
        shown << m_ui->lstSiteURL->item(item)->text();
    if (shown != sites) {
        m_ui->lstSiteURL->clear();
        m_ui->lstSiteURL->addItems(sites);
    }
    setText(*m_ui->txtKeyWord, state.setup.keywords);
    setText(*m_ui->txtPageLinks, state.setup.pageLinks);
    m_ui->Option1_0->setChecked(state.setup.limit == RankLimit::Pages);
    m_ui->Option1_1->setChecked(state.setup.limit == RankLimit::Links);
    m_ui->chkSaveResults->setChecked(state.chkSaveResults);
}

void frmRanking::showButtons() {
    const RankingState& state = m_ranking.state();
    m_ui->Command1_0->setText(toScreen(state.Command1_0));
    m_ui->Command1_0->setIcon(themedIcon(state.offersStart() ? "Search" : "Stop"));
    m_ui->Command1_0->setEnabled(state.Command1_0Enabled);
    m_ui->Command1_1->setEnabled(state.Command1_1Enabled);
    for (QPushButton* button : {m_ui->Command2_0, m_ui->Command2_1, m_ui->Command2_2})
        button->setEnabled(state.Command2Enabled);
}

// Ticked when all engines are, half when some are.
void frmRanking::showSelectAll() {
    const Rows& engines = m_ranking.state().lsvRankingEngines;
    int ticked = 0;
    for (int row = 0; row < engines.count(); ++row) ticked += engines.at(row).checked ? 1 : 0;
    m_ui->chkSelectAll->setCheckState(ticked == 0                 ? Qt::Unchecked
                                      : ticked == engines.count() ? Qt::Checked
                                                                  : Qt::PartiallyChecked);
    m_ui->chkSelectAll->setTristate(m_ui->chkSelectAll->checkState() == Qt::PartiallyChecked);
    m_ui->chkSelectAll->setEnabled(!engines.empty());
}

void frmRanking::showRefused(SetupField field) {
    const std::pair<SetupField, QWidget*> controls[] = {{SetupField::Profile, m_ui->cboProfile},
                                                        {SetupField::Sites, m_ui->txtURL},
                                                        {SetupField::Keywords, m_ui->txtKeyWord},
                                                        {SetupField::PageLinks, m_ui->txtPageLinks},
                                                        {SetupField::Engines, m_ui->lsvRankingEngines}};
    for (const auto& [refused, control] : controls)
        if (refused == field) showInTabs(*control);
}

// Read while its page is open. It shows the profile of the first page until another one is chosen on either.
void frmRanking::showHistory() {
    if (m_ui->SSTab1->currentWidget() != m_ui->pageHistory) return;
    const RankingState& state = m_ranking.state();
    const bool same = std::exchange(m_followed, state.setup.profile) == state.setup.profile;
    m_history.load(same ? m_history.profile() : m_followed);
    m_ui->pageHistory->showProfiles(state.cboProfile, m_history.profile());
}

void frmRanking::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_ranking.isRunning())
        m_ranking.Command1_0();
    else
        QDialog::keyPressEvent(event);
}

void frmRanking::done(int result) {
    m_ranking.closing();
    QDialog::done(result);
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/frmSubmit.h"

#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "submission/frmPreview.h"
#include "submission/ui_frmSubmit.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QAction>
#include <QClipboard>
#include <QLayout>
#include <QShortcut>
#include <QSignalBlocker>

namespace relay {

namespace {
constexpr int kFrameMilliseconds = 33;
constexpr int kMostProblems = 10;  // in the message after a run

void setText(QLabel& label, std::string_view text) {
    const QString shown = toScreen(text);
    if (label.text() != shown) label.setText(shown);
}
}  // namespace

frmSubmit::frmSubmit(const Services& services, const Catalogue& catalogue, SubmissionOptions options,
                     QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmSubmit>()),
      m_services(services),
      m_catalogue(catalogue),
      m_controller(services, catalogue, std::move(options)),
      m_results(m_controller.state().results),
      m_clock(new QLabel(this)),
      m_notice(new QLabel(this)) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    m_clock->setObjectName(QStringLiteral("lblClock"));
    m_clock->setAccessibleName(tr("Time since the start"));
    m_notice->setObjectName(QStringLiteral("lblNoLedger"));
    m_ui->StatusBar1->addPermanentWidget(m_notice);
    m_ui->StatusBar1->addPermanentWidget(m_clock);
    drawIcons();
    connectLists();
    connectButtons();
    connectResults();
    connect(&m_controller, &SubmissionController::stateChanged, this, &frmSubmit::showState);
    connect(&m_controller, &SubmissionController::reportWritten, this, &frmSubmit::noteProblem);
    connect(&m_controller, &SubmissionController::runDone, this, &frmSubmit::showState);
    connect(&m_controller, &SubmissionController::runDone, this, &frmSubmit::showProblems);
    connect(&m_controller, &SubmissionController::ledgerFailed, this, [this](const std::string& problem) {
        m_notice->setText(tr("This run cannot be continued after a crash"));
        m_notice->setToolTip(toScreen(problem));
    });
    m_frame.setInterval(kFrameMilliseconds);
    connect(&m_frame, &QTimer::timeout, this, &frmSubmit::showRunning);
    m_controller.loadProject();
    showState();
    CenterForm(*this);
}

frmSubmit::~frmSubmit() = default;

void frmSubmit::drawIcons() {
    const std::pair<QPushButton*, const char*> icons[] = {
        {m_ui->cmdNext, "Next"},        {m_ui->cmdPreview, "Preview"},    {m_ui->cmdStart, "Next"},
        {m_ui->cmdRemove, "DeleteURL"}, {m_ui->cmdRunFailed, "Repeat"},   {m_ui->cmdReport, "Report"},
        {m_ui->cmdCopyResults, "Copy"}, {m_ui->cmdSaveResults, "SaveAs"},
    };
    for (const auto& [button, icon] : icons) button->setIcon(themedIcon(icon));
}

void frmSubmit::connectLists() {
    SubmissionState& state = m_controller.state();
    m_ui->lsvSiteSelection->setRows(&state.lsvSiteSelection, {24, 16});
    m_ui->lsvSiteSubmitting->setRows(&state.lsvSiteSubmitting, {24, 16});
    m_ui->lsvConnections->setRows(&state.lsvConnections, {4, 28});
    m_ui->lsvReport->setRows(&state.lsvReport, {24, 12});
    m_ui->lsvResults->setRows(&m_results.lsvResults, {24, 13, 16, 6, 6});
    m_ui->lsvSiteSelection->addActions({m_ui->mnuPopupSelect_0, m_ui->mnuPopupSelect_1});
    m_ui->splitterRun->setSizes({200, 240});
    m_ui->splitterReports->setSizes({140, 300});
    connect(m_ui->lsvSiteSubmitting, &ListView::deletePressed, m_ui->cmdRemove, &QPushButton::click);
    connect(m_ui->lsvReport, &ListView::rowActivated, m_ui->cmdReport, &QPushButton::click);
}

void frmSubmit::connectButtons() {
    SubmissionController& run = m_controller;
    const auto selectAll = [&run](bool on) { return [&run, on] { run.selectAllSites(on); }; };
    connect(m_ui->chkSelectAll, &QCheckBox::clicked, &run, &SubmissionController::selectAllSites);
    connect(m_ui->mnuPopupSelect_0, &QAction::triggered, &run, selectAll(true));
    connect(m_ui->mnuPopupSelect_1, &QAction::triggered, &run, selectAll(false));
    connect(m_ui->cmdNext, &QPushButton::clicked, &run, &SubmissionController::cmdNext);
    connect(m_ui->cmdStart, &QPushButton::clicked, &run, [this] {
        const BusyPointer busy(m_services.prompts);
        m_controller.cmdStart();
    });
    connect(m_ui->cmdRemove, &QPushButton::clicked, &run, &SubmissionController::cmdRemove);
    connect(m_ui->cmdSubmit, &QPushButton::clicked, &run, &SubmissionController::cmdSubmit);
    connect(m_ui->cmdReport, &QPushButton::clicked, &run, &SubmissionController::viewReport);
    connect(m_ui->cmdPreview, &QPushButton::clicked, this, &frmSubmit::showPreview);
    for (QPushButton* cancel : {m_ui->cmdCancel_0, m_ui->cmdCancel_1, m_ui->cmdCancel_2, m_ui->cmdCancel_3})
        connect(cancel, &QPushButton::clicked, this, &frmSubmit::reject);
    connect(m_ui->SSTab1, &QTabWidget::currentChanged, &run, &SubmissionController::showPage);
}

void frmSubmit::connectResults() {
    connect(m_ui->cboResult, &QComboBox::currentIndexChanged, this,
            [this] { m_results.show(fromScreen(m_ui->cboResult->currentData().toString())); });
    connect(m_ui->lsvResults, &ListView::rowActivated, this, &frmSubmit::openAddURL);
    connect(m_ui->cmdCopyResults, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(toScreen(toPrintableUtf8(m_results.text()))); });
    connect(m_ui->cmdSaveResults, &QPushButton::clicked, &m_controller, &SubmissionController::saveResultsAs);
    connect(m_ui->cmdRunFailed, &QPushButton::clicked, &m_controller, &SubmissionController::runFailedAgain);
    connect(new QShortcut(QKeySequence::Copy, m_ui->lsvResults, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, m_ui->cmdCopyResults, &QPushButton::click);
}

void frmSubmit::showState() {
    const SubmissionState& state = m_controller.state();
    setText(*m_ui->lblHint, state.lblHint);
    setText(*m_ui->lblNumOfEngines, state.lblNumOfEngines);
    setText(*m_ui->lblNumOfWebsites, state.lblNumOfWebsites);
    setText(*m_ui->lblNumOfURLs, state.lblNumOfURLs);
    setText(*m_ui->lblNumOfConnections, state.lblNumOfConnections);
    setText(*m_ui->lblEstimatedTime, state.lblEstimatedTime);
    setText(*m_ui->lblPasswordWarning, state.passwordWarning);
    m_ui->lblPasswordWarning->setVisible(!state.passwordWarning.empty());
    fitSummary();
    setText(*m_ui->lblStart, state.lblStart);
    setText(*m_ui->lblSubmit, state.lblSubmit);
    const bool running = m_controller.isRunning();
    m_ui->cmdSubmit->setText(toScreen(state.cmdSubmit));
    m_ui->cmdSubmit->setIcon(themedIcon(running ? "Stop" : "Submit"));
    m_ui->cmdSubmit->setEnabled(!m_controller.isStopping());
    m_ui->cmdSubmit->setDefault(state.page == 2 && !running);  // Return does not stop a run
    m_ui->cmdCancel_2->setEnabled(state.cmdCancelEnabled);
    if (running != std::exchange(m_wasRunning, running)) {
        if (running) {
            m_results.clear();
            m_notice->clear();
            m_problems.clear();
            m_problemCount = 0;
            m_frame.start();
        } else {
            m_frame.stop();
            showResults();
            Rows& reports = m_controller.state().lsvReport;
            if (!reports.empty() && reports.firstHighlighted() < 0) reports.setHighlighted(0, true);
        }
    }
    showRunning();
    showPages();
}

void frmSubmit::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    fitSummary();
}

// Its wrapped texts need more height in a narrow window, which a tab control does not ask for.
void frmSubmit::fitSummary() {
    QWidget& page = *m_ui->pageSummary;
    page.setMinimumHeight(page.layout()->totalMinimumHeightForWidth(m_ui->SSTab1->currentWidget()->width()));
}

// Shows what changes with every request.
void frmSubmit::showRunning() {
    const SubmissionState& state = m_controller.state();
    m_ui->ProgressBar1->setTextVisible(m_controller.isRunning());
    m_ui->ProgressBar1->setMaximum(std::max(1, state.progressMaximum));
    m_ui->ProgressBar1->setValue(state.progressValue);
    const QString status = toScreen(state.StatusBar1);
    if (m_ui->StatusBar1->currentMessage() != status) m_ui->StatusBar1->showMessage(status);
    setText(*m_clock, state.clock);
}

void frmSubmit::showPages() {
    const int page = m_controller.state().page;
    {
        const QSignalBlocker quiet(m_ui->SSTab1);
        // Disabling the current page would make the tab control choose another.
        m_ui->SSTab1->setTabEnabled(page, true);
        m_ui->SSTab1->setCurrentIndex(page);
        for (int tab = 0; tab < m_ui->SSTab1->count(); ++tab)
            m_ui->SSTab1->setTabEnabled(tab, m_controller.mayShow(tab));
    }
    if (page != std::exchange(m_shownPage, page)) takePage();
}

// The main button of the page gets the focus and the Return key.
void frmSubmit::takePage() {
    QPushButton* const buttons[] = {m_ui->cmdNext, m_ui->cmdStart, m_ui->cmdSubmit, m_ui->cmdReport};
    for (QPushButton* button : buttons) button->setDefault(false);
    if (m_shownPage < 0 || m_shownPage > 3) return;
    buttons[m_shownPage]->setDefault(true);
    buttons[m_shownPage]->setFocus(Qt::OtherFocusReason);
}

void frmSubmit::showResults() {
    const QSignalBlocker quiet(m_ui->cboResult);
    m_ui->cboResult->clear();
    for (const ResultList::Choice& choice : m_results.choices())
        m_ui->cboResult->addItem(toScreen(choice.caption), toScreen(choice.word));
    m_results.show({});
    const Results& results = m_controller.state().results;
    const std::int64_t left = results.countNotSucceeded();
    m_ui->cmdRunFailed->setEnabled(left > 0);
    m_ui->cmdRunFailed->setToolTip(
        left > 0 ? tr("Submits again exactly what did not succeed, with what a stop kept from being sent: "
                      "%Ln request(s)",
                      nullptr, static_cast<int>(left))
                 : tr("Every request succeeded"));
    m_ui->cmdSaveResults->setEnabled(!results.empty());
}

void frmSubmit::noteProblem(const UrlReport& report) {
    if (report.problem.empty() || ++m_problemCount > kMostProblems) return;
    m_problems.append("\r\n").append(report.URL).append(": ").append(report.problem);
}

void frmSubmit::showProblems() {
    if (m_problemCount == 0) return;
    std::string words = "Reports that could not be saved or listed:" + std::exchange(m_problems, {});
    if (m_problemCount > kMostProblems)
        words +=
            "\r\nAnd " + std::to_string(m_problemCount - kMostProblems) + " more, which Error.log names.";
    m_problemCount = 0;
    m_services.prompts.message(words, "Submit", Icon::Critical);
}

void frmSubmit::openAddURL(int row) {
    trap(m_services.prompts, "OpenAddURL_Error: ", [&] {
        const RowView result = m_results.lsvResults.at(row);
        const std::string page(result.tag);
        if (startsWithNoCase(page, "http://") || startsWithNoCase(page, "https://"))
            m_services.prompts.openWithSystem(page);
        else
            m_services.prompts.message(
                "The record of \"" + std::string(result.text) + "\" names no page on the web.", "View Engine",
                Icon::Information);
    });
}

void frmSubmit::showPreview() {
    std::vector<frmPreview::Website> websites;
    const Rows& sites = m_controller.state().lsvSiteSelection;
    for (int row = 0; row < sites.count(); ++row) {
        const RowView site = sites.at(row);
        if (site.checked) websites.push_back({std::string(site.text), std::string(site.tag)});
    }
    frmPreview preview(m_services, m_catalogue, std::move(websites), this);
    const Rows& selected = m_catalogue.lists.lsvSelectedEngines;
    if (!selected.empty()) preview.chooseEngine(selected.at(0).text);
    preview.exec();
}

void frmSubmit::reject() {
    if (m_controller.closing()) QDialog::reject();
}

}  // namespace relay

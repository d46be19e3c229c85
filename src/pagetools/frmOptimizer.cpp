// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/frmOptimizer.h"

#include "core/FileNames.h"
#include "core/ScreenText.h"
#include "pagetools/OptimizerReport.h"
#include "pagetools/ui_frmOptimizer.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QLineEdit>
#include <QSignalBlocker>

namespace relay {

namespace {

// The first size, at least.
constexpr int kCharacters = 110;
constexpr int kLines = 34;

// A report sets its colours for white paper.
QPalette paper() {
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::PlaceholderText, QColor(0x5f, 0x5f, 0x5f));
    palette.setColor(QPalette::Link, QColor(0x00, 0x00, 0xee));
    return palette;
}

}  // namespace

frmOptimizer::frmOptimizer(Optimizer& optimizer, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmOptimizer>()), m_optimizer(optimizer) {
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    m_ui->cboSiteURL->lineEdit()->setPlaceholderText(
        tr("http://www.yourdomain/page.html or /home/you/page.html"));
    m_ui->cboSiteURL->lineEdit()->setAccessibleName(m_ui->cboSiteURL->accessibleName());
    m_ui->cmdFileLocation->setIcon(themedIcon("Browse"));
    m_ui->txtReport->setPalette(paper());
    m_ui->txtExplanation->viewport()->setAutoFillBackground(false);
    m_ui->txtExplanation->document()->setDocumentMargin(2);
    m_ui->txtExplanation->setFixedHeight(3 * fontMetrics().lineSpacing() + 4);
    resize(size().expandedTo(
        {kCharacters * fontMetrics().averageCharWidth(), kLines * fontMetrics().lineSpacing()}));
    m_ui->splitter->setSizes({height() / 2, height() / 2});
    connect(m_ui->cboSiteURL, &QComboBox::editTextChanged, this,
            [this](const QString& text) { m_optimizer.cboSiteURL = fromScreen(text); });
    connect(m_ui->cboSiteURL->lineEdit(), &QLineEdit::returnPressed, this, &frmOptimizer::optimize);
    connect(m_ui->cmdRenovator, &QPushButton::clicked, this, &frmOptimizer::optimize);
    connect(m_ui->cmdFileLocation, &QPushButton::clicked, &m_optimizer, &Optimizer::cmdFileLocation);
    connect(m_ui->cmdOpenReport, &QPushButton::clicked, &m_optimizer, &Optimizer::openReport);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmOptimizer::reject);
    connect(&m_optimizer, &Optimizer::stateChanged, this, &frmOptimizer::showState);
    connect(&m_optimizer, &Optimizer::finished, this, &frmOptimizer::showReport);
    connectFindings();
    m_optimizer.loadHistory();
    showHistory();
    showState();
    showReport();
    showFindings();
    m_ui->cboSiteURL->setFocus(Qt::OtherFocusReason);
    CenterForm(*this);
}

frmOptimizer::~frmOptimizer() = default;

void frmOptimizer::connectFindings() {
    m_ui->lsvFindings->setRows(&m_optimizer.lsvFindings, {12, 7, 20, 0});
    connect(m_ui->lsvFindings, &ListView::rowClicked, this, &frmOptimizer::showFinding);
    connect(m_ui->lsvFindings, &ListView::rowEntered, this, &frmOptimizer::showFinding);
    connect(m_ui->lsvFindings, &ListView::rowActivated, this, [this](int row) {
        showFinding(row);
        m_ui->lstSource->setFocus(Qt::OtherFocusReason);
    });
    connect(m_ui->cmdSaveFindings, &QPushButton::clicked, &m_optimizer, &Optimizer::saveFindings);
    connect(&m_optimizer, &Optimizer::findingsChanged, this, &frmOptimizer::showFindings);
}

void frmOptimizer::optimize() {
    m_optimizer.cmdRenovator();
    showHistory();
}

void frmOptimizer::showHistory() {
    const QSignalBlocker quiet(m_ui->cboSiteURL);
    m_ui->cboSiteURL->clear();
    for (const std::string& address : m_optimizer.history()) m_ui->cboSiteURL->addItem(toScreen(address));
    m_ui->cboSiteURL->setEditText(toScreen(m_optimizer.cboSiteURL));
}

void frmOptimizer::showState() {
    const bool free = !m_optimizer.isFetching() && !m_optimizer.isBusy();
    const QWidget* const focused = focusWidget();
    // A control that is disabled hands its focus to any other one.
    if (m_ui->cmdRenovator->isEnabled())
        m_inAddress = focused == nullptr || focused == m_ui->cmdRenovator || focused == m_ui->cboSiteURL;
    m_ui->cmdRenovator->setText(toScreen(m_optimizer.caption()));
    m_ui->cmdRenovator->setIcon(themedIcon(m_optimizer.isFetching() ? "Stop" : "Optimizer"));
    m_ui->cmdRenovator->setEnabled(!m_optimizer.isBusy());
    for (QWidget* const part :
         std::initializer_list<QWidget*>{m_ui->cboSiteURL, m_ui->cmdFileLocation, m_ui->cmdClose})
        part->setEnabled(free);
    QWidget* const next = free ? static_cast<QWidget*>(m_ui->cboSiteURL) : m_ui->cmdRenovator;
    if (m_inAddress && next->isEnabled()) next->setFocus(Qt::OtherFocusReason);
    const QString address = toScreen(m_optimizer.cboSiteURL);
    if (m_ui->cboSiteURL->currentText() != address) m_ui->cboSiteURL->setEditText(address);
    const QString status = toScreen(m_optimizer.status());
    m_ui->StatusBar1->setText(status);
    setPlainToolTip(*m_ui->StatusBar1, status);
}

void frmOptimizer::showReport() {
    const OptimizerReportFile& report = m_optimizer.report();
    const QString path = toScreen(report.path);
    m_ui->lblReport->setText(path.isEmpty()
                                 ? tr("No report yet")
                                 : tr("Optimizer/%1").arg(toScreen(getFileNameFromFile(report.path))));
    setPlainToolTip(*m_ui->lblReport, path);
    m_ui->cmdOpenReport->setEnabled(!path.isEmpty());
    m_ui->txtReport->setPlaceholderText(
        path.isEmpty() ? tr("Enter the address of a page, or choose an HTML file, and press Optimizer. The "
                            "report opens in your browser and appears here, too.")
                       : tr("This report is too large to be shown here. See it in your browser."));
    m_ui->txtReport->setHtml(toScreen(report.shown));
}

void frmOptimizer::showFindings() {
    const int count = m_optimizer.lsvFindings.count();
    const QString address = toScreen(m_optimizer.address());
    const bool hasPage = !m_optimizer.source().empty();
    m_ui->lblFindings->setText(address.isEmpty() ? tr("No page yet")
                               : hasPage         ? toScreen(m_optimizer.summary())
                                                 : tr("No page"));
    setPlainToolTip(*m_ui->lblFindings, address);
    m_ui->lsvFindings->setEmptyHint(
        address.isEmpty() ? tr("Enter the address of a page, or choose an HTML file, and press Optimizer.")
        : hasPage         ? tr("Nothing was found on this page.")
                          : tr("The page could not be read, so nothing was looked for."));
    m_ui->SSTab1->setTabText(1, hasPage ? tr("Fi&ndings (%1)").arg(count) : tr("Fi&ndings"));
    m_ui->cmdSaveFindings->setEnabled(count > 0);
    m_ui->txtExplanation->setPlainText(
        count > 0 ? tr("Choose a finding to see why it matters, and its line below.") : QString());
    m_ui->lblSource->setText(
        address.isEmpty()
            ? tr("So&urce of the page:")
            : tr("So&urce of %1:").arg(QString(address).replace(QLatin1Char('&'), QStringLiteral("&&"))));
    m_ui->lstSource->setSource(m_optimizer.source());
}

void frmOptimizer::showFinding(int row) {
    m_ui->txtExplanation->setPlainText(toScreen(m_optimizer.explanation(row)));
    m_ui->lstSource->showLine(m_optimizer.lineOf(row));
}

void frmOptimizer::reject() {
    if (m_optimizer.isFetching())
        m_optimizer.cancel();
    else if (!m_optimizer.isBusy())
        QDialog::reject();
}

void frmOptimizer::done(int result) {
    m_optimizer.saveHistory();
    QDialog::done(result);
}

}  // namespace relay

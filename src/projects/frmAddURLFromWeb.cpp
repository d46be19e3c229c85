// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/frmAddURLFromWeb.h"

#include "core/ScreenText.h"
#include "projects/ui_frmAddURLFromWeb.h"
#include "transport/frmHTTP.h"
#include "widgets/Forms.h"

#include <QKeyEvent>
#include <QShortcut>

namespace relay {

frmAddURLFromWeb::frmAddURLFromWeb(Rows& urls, frmHTTP& fetcher, Prompts& prompts, std::string_view url,
                                   QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmAddURLFromWeb>()), m_page(urls, fetcher, prompts) {
    m_ui->setupUi(this);
    m_ui->txtWebURL->setText(url.empty() ? QStringLiteral("www.") : toScreen(url));
    connect(m_ui->Command1_0, &QPushButton::clicked, this, &frmAddURLFromWeb::addFilter);
    connect(m_ui->txtKeyWord, &QLineEdit::returnPressed, this, &frmAddURLFromWeb::addFilter);
    connect(m_ui->Command1_1, &QPushButton::clicked, this, &frmAddURLFromWeb::removeFilters);
    connect(new QShortcut(QKeySequence::Delete, m_ui->lstKeywords, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &frmAddURLFromWeb::removeFilters);
    connect(m_ui->Command1_2, &QPushButton::clicked, this, &frmAddURLFromWeb::fetchPage);
    connect(m_ui->txtWebURL, &QLineEdit::returnPressed, this, &frmAddURLFromWeb::fetchPage);
    connect(m_ui->Command1_3, &QPushButton::clicked, this, &frmAddURLFromWeb::reject);
    connect(&m_page, &UrlsFromPage::statusChanged, this,
            [this](const std::string& text) { showStatus(toScreen(text)); });
    connect(&m_page, &UrlsFromPage::ended, this, [this](bool collected) {
        if (collected) accept();
    });
    connect(&fetcher, &frmHTTP::runningChanged, this, &frmAddURLFromWeb::showFetching);
    showFetching(fetcher.isRunning());
    CenterForm(*this);
}

frmAddURLFromWeb::~frmAddURLFromWeb() = default;

void frmAddURLFromWeb::addFilter() {
    if (m_page.addFilter(fromScreen(m_ui->txtKeyWord->text())))
        m_ui->lstKeywords->addItem(m_ui->txtKeyWord->text());
    m_ui->txtKeyWord->selectAll();
    m_ui->txtKeyWord->setFocus(Qt::OtherFocusReason);
}

void frmAddURLFromWeb::removeFilters() {
    for (int row = m_ui->lstKeywords->count() - 1; row >= 0; --row) {
        if (!m_ui->lstKeywords->item(row)->isSelected()) continue;
        delete m_ui->lstKeywords->takeItem(row);
        m_page.lstKeywords.erase(m_page.lstKeywords.begin() + row);
    }
}

void frmAddURLFromWeb::fetchPage() {
    m_page.fetchPage(fromScreen(m_ui->txtWebURL->text()));
}

void frmAddURLFromWeb::showStatus(const QString& text) {
    m_ui->StatusBar1->setText(text);
    setPlainToolTip(*m_ui->StatusBar1, text);
}

// The address is read-only, not disabled: it keeps the focus, so that Escape reaches the form.
void frmAddURLFromWeb::showFetching(bool fetching) {
    m_ui->Command1_2->setEnabled(!fetching);
    m_ui->txtWebURL->setReadOnly(fetching);
}

void frmAddURLFromWeb::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_page.isFetching())
        m_page.cancel();
    else
        QDialog::keyPressEvent(event);
}

}  // namespace relay

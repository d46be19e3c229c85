// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/frmSearch.h"

#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "ranking/ui_frmSearch.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QLineEdit>

namespace relay {

frmSearch::frmSearch(const Services& services, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmSearch>()), m_services(services), m_search(services) {
    m_ui->setupUi(this);
    m_ui->cmdSearch->setIcon(themedIcon("Search"));
    m_ui->cboKeywords->lineEdit()->setPlaceholderText(tr("Words, or the URL of a page"));
    for (const std::string_view type : kSearchTypes) m_ui->cboSearchType->addItem(toScreen(type));
    showEngines();
    showWebsites();
    m_search.loadHistory();
    showHistory({});
    connect(m_ui->cboWebProfile, &QComboBox::activated, this, &frmSearch::showURLs);
    const auto take = [this](const QListWidgetItem* item) {
        m_ui->cboKeywords->setEditText(item->text());
        m_search.takeURL(fromScreen(item->text()));
    };
    connect(m_ui->lstURL, &QListWidget::itemClicked, this, take);
    connect(m_ui->lstURL, &QListWidget::currentItemChanged, this, [this, take](const QListWidgetItem* item) {
        if (item != nullptr && m_ui->lstURL->hasFocus()) take(item);
    });
    connect(m_ui->cmdSearch, &QPushButton::clicked, this, &frmSearch::search);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    CenterForm(*this);
}

frmSearch::~frmSearch() = default;

void frmSearch::showEngines() {
    m_search.catalogue.loadEngineData();
    for (const RankEngine& engine : m_search.catalogue.engines())
        m_ui->cboEngine->addItem(toScreen(engine.EngineName));
    m_ui->cboEngine->setEnabled(m_ui->cboEngine->count() > 0);
    m_ui->cmdSearch->setEnabled(m_ui->cboEngine->count() > 0);
}

void frmSearch::showWebsites() {
    m_search.loadWebProfile();
    for (const SearchWebsite& website : m_search.websites())
        m_ui->cboWebProfile->addItem(toScreen(website.name));
    m_ui->cboWebProfile->setCurrentIndex(m_search.lastWebsite());
    const bool any = m_ui->cboWebProfile->count() > 0;
    m_ui->cboWebProfile->setEnabled(any);
    m_ui->cboWebProfile->setPlaceholderText(any ? tr("Choose a web site") : tr("No saved web site yet"));
    showURLs();
}

void frmSearch::showURLs() {
    m_ui->lstURL->clear();
    const int place = m_ui->cboWebProfile->currentIndex();
    if (place < 0) return;
    for (const std::string& url : m_search.loadURLs(m_search.websites()[static_cast<std::size_t>(place)]))
        m_ui->lstURL->addItem(toScreen(url));
    const auto last = m_ui->lstURL->findItems(toScreen(m_search.lastURL()), Qt::MatchExactly);
    if (!last.isEmpty()) m_ui->lstURL->setCurrentItem(last.front());
}

void frmSearch::showHistory(const QString& text) {
    m_ui->cboKeywords->clear();
    for (const std::string& phrase : m_search.history()) m_ui->cboKeywords->addItem(toScreen(phrase));
    m_ui->cboKeywords->setEditText(text);
}

void frmSearch::search() {
    const QString text = m_ui->cboKeywords->currentText();
    m_search.cmdSearch(static_cast<std::size_t>(m_ui->cboEngine->currentIndex()),
                       static_cast<SearchType>(m_ui->cboSearchType->currentIndex()), fromScreen(text));
    showHistory(text);
    m_ui->cboKeywords->setFocus(Qt::OtherFocusReason);
}

void frmSearch::done(int result) {
    m_search.saveHistory();
    QDialog::done(result);
}

}  // namespace relay

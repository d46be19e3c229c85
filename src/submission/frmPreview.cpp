// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/frmPreview.h"

#include "catalogue/Catalogue.h"
#include "core/Failure.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "submission/RequestPreview.h"
#include "submission/ui_frmPreview.h"
#include "widgets/Forms.h"

#include <QCompleter>
#include <QSignalBlocker>

namespace relay {

namespace {
constexpr int kNameCharacters = 24;
// Longer texts would block the screen.
constexpr std::size_t kMostOfRequest = 64 * 1024;
constexpr std::size_t kMostOfField = 1024;

QString shown(std::string_view text, std::size_t most) {
    const QString part = toScreen(escapeControlCharacters(left(text, most)));
    if (text.size() <= most) return part;
    return frmPreview::tr("%1 ... (%2 bytes in all)").arg(part).arg(text.size());
}
}  // namespace

frmPreview::frmPreview(const Services& services, const Catalogue& catalogue, std::vector<Website> websites,
                       QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmPreview>()),
      m_services(services),
      m_catalogue(catalogue),
      m_websites(std::move(websites)) {
    m_ui->setupUi(this);
    m_fields.setColumns({"Field", "Value"});
    m_ui->lsvFields->setRows(&m_fields, {kNameCharacters});
    QStringList engines;
    for (const clsEngines& engine : catalogue.lists.engines) engines << toScreen(engine.name());
    m_ui->cboEngine->addItems(engines);
    m_ui->cboEngine->completer()->setFilterMode(Qt::MatchContains);
    m_ui->cboEngine->completer()->setCompletionMode(QCompleter::PopupCompletion);
    for (const Website& website : m_websites) m_ui->cboWebsite->addItem(toScreen(website.name));
    showURLs();
    connect(m_ui->cboEngine, &QComboBox::currentTextChanged, this, &frmPreview::showPreview);
    connect(m_ui->cboWebsite, &QComboBox::currentIndexChanged, this, [this] {
        showURLs();
        showPreview();
    });
    connect(m_ui->cboURL, &QComboBox::currentIndexChanged, this, &frmPreview::showPreview);
    connect(m_ui->chkShowPassword, &QCheckBox::toggled, this, &frmPreview::showPreview);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmPreview::reject);
    showPreview();
    CenterForm(*this);
}

frmPreview::~frmPreview() = default;

void frmPreview::chooseEngine(std::string_view name) {
    m_ui->cboEngine->setCurrentText(toScreen(name));
}

void frmPreview::chooseWebsite(std::string_view file) {
    for (std::size_t place = 0; place < m_websites.size(); ++place)
        if (m_websites[place].file == file) m_ui->cboWebsite->setCurrentIndex(static_cast<int>(place));
}

void frmPreview::showURLs() {
    const QSignalBlocker quiet(m_ui->cboURL);
    m_ui->cboURL->clear();
    const int website = m_ui->cboWebsite->currentIndex();
    if (website < 0) return;
    QStringList urls;
    // The preview reports a file that cannot be read.
    failureOf([&] {
        for (const std::string& url : websiteURLs(m_websites[static_cast<std::size_t>(website)].file))
            urls << toScreen(url);
    });
    m_ui->cboURL->addItems(urls);
}

void frmPreview::showPreview() {
    RequestPreview preview;
    const auto failure = failureOf([&] {
        const int website = m_ui->cboWebsite->currentIndex();
        if (website < 0) throw Failure("There is no saved web site to make a request for.");
        preview = previewRequest(
            m_services, m_catalogue,
            {fromScreen(m_ui->cboEngine->currentText()), m_websites[static_cast<std::size_t>(website)].file,
             fromScreen(m_ui->cboURL->currentText()), !m_ui->chkShowPassword->isChecked()});
    });
    if (failure) preview.refusal = *failure;
    QString text = toScreen(preview.refusal);
    if (text.isEmpty()) text = shown(std::string(preview.method()) + " " + preview.URL, kMostOfRequest);
    if (!preview.body.empty()) text += QStringLiteral("\n\n") + shown(preview.body, kMostOfRequest);
    if (!preview.warning.empty()) text += QStringLiteral("\n\n") + toScreen(preview.warning);
    m_ui->txtRequest->setPlainText(text);
    const RowsBatch batch(m_fields);
    m_fields.clear();
    for (const auto& [name, value] : preview.fields())
        m_fields.add(
            {{}, fromScreen(shown(name, kMostOfField)), {fromScreen(shown(value, kMostOfField))}, {}, {}});
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/frmDoorway.h"

#include "core/ScreenText.h"
#include "pagetools/ui_frmDoorway.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QScrollBar>
#include <QSignalBlocker>

namespace relay {

namespace {
constexpr int kPreviewMilliseconds = 150;
constexpr qsizetype kMostShown = qsizetype{1024} * 1024;
constexpr int kDescriptionLines = 2;
constexpr int kBodyLines = 3;

void setText(QLineEdit& edit, const std::string& text) {
    const QString shown = toScreen(text);
    if (edit.text() == shown) return;
    edit.setText(shown);
    edit.setCursorPosition(0);
}

// Keeps the place that the user scrolled to.
void showKept(QPlainTextEdit& view, const std::string& text) {
    const int place = view.verticalScrollBar()->value();
    view.setPlainText(toScreen(text).left(kMostShown));
    view.verticalScrollBar()->setValue(place);
}

void setLines(QPlainTextEdit& edit, int lines) {
    const QFontMetrics font = edit.fontMetrics();
    edit.setMinimumHeight(lines * font.lineSpacing() + font.height() * 2 / 3);
}

void fill(QComboBox& box, const std::vector<std::string>& rows, const std::string& text) {
    const QSignalBlocker quiet(box);
    box.clear();
    for (const std::string& row : rows) box.addItem(toScreen(row));
    box.setCurrentIndex(box.findText(toScreen(text), Qt::MatchExactly));
    box.setEditText(toScreen(text));
}
}  // namespace

frmDoorway::frmDoorway(const Services& services, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmDoorway>()), m_doorway(services) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    QFont bold = font();
    bold.setBold(true);
    m_ui->lblTitle->setFont(bold);
    m_ui->lblCaption->setMinimumHeight(2 * fontMetrics().lineSpacing());
    m_ui->txtSource->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLines(*m_ui->txtDescription, kDescriptionLines);
    setLines(*m_ui->txtSummary, kBodyLines);
    m_ui->lsvPages->setRows(&m_doorway.lsvPages, {24, 20});
    m_preview.setSingleShot(true);
    m_preview.setInterval(kPreviewMilliseconds);
    connect(&m_preview, &QTimer::timeout, this, &frmDoorway::showPreview);
    connectFields();
    connectButtons();
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget* old, const QWidget* now) {
        // While other windows come and go, it keeps what it showed.
        if (old != nullptr && now != nullptr && old->window() == this && now->window() == this) explain(now);
    });
    makeReachable(*m_ui->picSpliter, tr("Drag to make the fields wider or narrower, or press Alt+Right and "
                                        "Alt+Left"));
    m_ui->picSpliter->setSizes({width() / 2, width() / 2});
    explain(nullptr);
    CenterForm(*this);
}

frmDoorway::~frmDoorway() = default;

void frmDoorway::bind(QLineEdit& edit, std::string& field) {
    connect(&edit, &QLineEdit::textEdited, this, [this, &field](const QString& text) {
        field = fromScreen(text);
        m_preview.start();
    });
    m_show.emplace_back([&edit, &field] { setText(edit, field); });
}

void frmDoorway::bind(QPlainTextEdit& edit, std::string& field) {
    connect(&edit, &QPlainTextEdit::textChanged, this, [this, &edit, &field] {
        field = fromScreen(typedText(edit).replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
        m_preview.start();
    });
    m_show.emplace_back([&edit, &field] {
        const QString text = toScreen(field).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        if (typedText(edit) == text) return;
        const QSignalBlocker quiet(edit);
        edit.setPlainText(text);
    });
}

void frmDoorway::bind(QComboBox& box, std::string& field) {
    // What it would complete is not what was typed.
    box.setCompleter(nullptr);
    box.installEventFilter(this);
    box.lineEdit()->setMaxLength(m_ui->txtTitle->maxLength());
    box.lineEdit()->setAccessibleName(box.accessibleName());
    bind(*box.lineEdit(), field);
}

void frmDoorway::connectFields() {
    DoorwayFields& fields = m_doorway.fields;
    bind(*m_ui->txtTitle, fields.txtTitle);
    for (std::size_t i = 0; i < DoorwayFields::kKeywords; ++i)
        bind(*findChild<QLineEdit*>(QStringLiteral("txtKeywords_%1").arg(i)), fields.txtKeywords[i]);
    bind(*m_ui->txtDescription, fields.txtDescription);
    bind(*m_ui->cboSiteURL, fields.cboSiteURL);
    bind(*m_ui->txtSubTitle1, fields.txtSubTitle1);
    bind(*m_ui->txtSubTitle2, fields.txtSubTitle2);
    bind(*m_ui->txtSubTitle3, fields.txtSubTitle3);
    bind(*m_ui->txtSummary, fields.txtSummary);
    bind(*m_ui->txtImageURL, fields.txtImageURL);
    bind(*m_ui->txtCompany, fields.txtCompany);
    bind(*m_ui->txtFileLocation, fields.txtFileLocation);
    bind(*m_ui->cboProfile, m_doorway.cboProfile);
    connect(m_ui->cboProfile, &QComboBox::activated, this, &frmDoorway::chooseProfile);
    connect(m_ui->cboSiteURL, &QComboBox::activated, this, [this] {
        m_doorway.fields.cboSiteURL = fromScreen(m_ui->cboSiteURL->currentText());
        m_preview.start();
    });
    // Screen readers get the explanations too.
    for (QWidget* const field : findChildren<QWidget*>())
        if (!field->whatsThis().isEmpty()) field->setAccessibleDescription(field->whatsThis());
}

void frmDoorway::connectButtons() {
    m_ui->cmdSaveProfile->setIcon(themedIcon("Save"));
    m_ui->cmdBrowse->setIcon(themedIcon("Browse"));
    m_ui->Command1->setIcon(themedIcon("Doorway"));
    connect(m_ui->cmdSaveProfile, &QPushButton::clicked, this, [this] {
        m_doorway.saveProfile();
        showAll();
    });
    connect(m_ui->cmdNewPage, &QPushButton::clicked, this, [this] {
        if (m_doorway.settleChanges()) m_doorway.NewPage();
        showAll();
        m_ui->txtTitle->setFocus(Qt::OtherFocusReason);
    });
    connect(m_ui->cmdBrowse, &QPushButton::clicked, this, [this] {
        m_doorway.chooseFolder();
        showAll();
    });
    connect(m_ui->tabPage, &QTabWidget::currentChanged, this, &frmDoorway::showPreview);
    connect(m_ui->lblHint, &QLabel::linkActivated, this, &frmDoorway::guideWanted);
    connect(m_ui->Command1, &QPushButton::clicked, this, &frmDoorway::create);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmDoorway::reject);
}

void frmDoorway::chooseProfile() {
    const std::string name = fromScreen(m_ui->cboProfile->currentText());
    if (m_doorway.settleChanges()) m_doorway.loadProfile(name);
    showAll();
}

void frmDoorway::create() {
    const auto missing = m_doorway.Command1();
    showAll();
    if (!missing) return;
    QWidget& field = control(*missing);
    field.setFocus(Qt::OtherFocusReason);
    explain(&field);
}

QWidget& frmDoorway::control(Doorway::Field field) const {
    switch (field) {
        case Doorway::Field::Title:
            return *m_ui->txtTitle;
        case Doorway::Field::Keyword1:
            return *m_ui->txtKeywords_0;
        case Doorway::Field::Keyword2:
            return *m_ui->txtKeywords_1;
        case Doorway::Field::Keyword3:
            return *m_ui->txtKeywords_2;
        case Doorway::Field::Description:
            return *m_ui->txtDescription;
        case Doorway::Field::SiteURL:
            return *m_ui->cboSiteURL;
        case Doorway::Field::Summary:
            return *m_ui->txtSummary;
        case Doorway::Field::Company:
            break;
    }
    return *m_ui->txtCompany;
}

bool frmDoorway::takeKeywords(const std::vector<std::string>& keywords) {
    const bool taken = m_doorway.takeKeywords(keywords);
    showAll();
    return taken;
}

void frmDoorway::showAll() {
    showLists();
    for (const auto& show : m_show) show();
    m_ui->lblStatusBar->setText(toScreen(m_doorway.lblStatusBar()));
    showPreview();
}

void frmDoorway::showLists() {
    fill(*m_ui->cboProfile, m_doorway.profiles(), m_doorway.cboProfile);
    fill(*m_ui->cboSiteURL, m_doorway.siteURLs(), m_doorway.fields.cboSiteURL);
}

void frmDoorway::showPreview() {
    m_preview.stop();
    m_doorway.showPages();
    const QString folder = toScreen(m_doorway.folderNote());
    m_ui->lblFolder->setText(folder);
    if (m_ui->tabPage->currentWidget() == m_ui->pageText)
        showKept(*m_ui->txtPage, m_doorway.readersText());
    else
        showKept(*m_ui->txtSource, m_doorway.pageText());
}

// Explains the field that has the focus, or the screen.
void frmDoorway::explain(const QWidget* focused) {
    const QWidget* field = focused;
    while (field != nullptr && field != this && field->whatsThis().isEmpty()) field = field->parentWidget();
    if (field == nullptr || field == this) {
        m_ui->lblTitle->setText(tr("Dooryway Page"));
        m_ui->lblCaption->setText(
            tr("A doorway page is a webpage specifically designed to rank high "
               "in Search Engines for a specific keyword or keyword phrase. It is a "
               "powerful, content rich page packed with your keywords."));
        return;
    }
    m_ui->lblTitle->setText(field->accessibleName());
    m_ui->lblCaption->setText(field->whatsThis());
    m_ui->scrFields->ensureWidgetVisible(const_cast<QWidget*>(focused));
}

// The wheel scrolls the fields and does not choose another entry on its way.
bool frmDoorway::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Wheel) return QDialog::eventFilter(watched, event);
    event->ignore();
    return true;
}

void frmDoorway::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    // Known only now, with the fonts and borders of the style.
    m_ui->scrFields->setMinimumWidth(m_ui->fraFields->minimumSizeHint().width() +
                                     m_ui->scrFields->verticalScrollBar()->sizeHint().width());
    m_doorway.load();
    showAll();
    m_ui->txtTitle->setFocus(Qt::OtherFocusReason);
    explain(nullptr);
}

void frmDoorway::done(int result) {
    if (!m_doorway.settleChanges()) {
        showAll();
        return;
    }
    m_doorway.unload();
    QDialog::done(result);
}

}  // namespace relay

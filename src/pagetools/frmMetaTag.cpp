// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/frmMetaTag.h"

#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "pagetools/frmMetaTagChanges.h"
#include "pagetools/ui_frmMetaTag.h"
#include "widgets/Drives.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QDir>
#include <QFontDatabase>
#include <QLineEdit>
#include <QSignalBlocker>

namespace relay {

namespace {
constexpr int kMostAddresses = 30;
}

frmMetaTag::frmMetaTag(const Services& services, Fetching fetching, QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmMetaTag>()),
      m_fetching(std::move(fetching)),
      m_services(services),
      m_editor(services, m_fetching.connect) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    m_ui->Text1->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->cboAddress->lineEdit()->setPlaceholderText(
        tr("http://www.yourdomain/page.html or /home/you/page.html"));
    m_ui->cboAddress->lineEdit()->setMaxLength(m_ui->txtTitle->maxLength());
    m_ui->cmdGetMeta->setIcon(themedIcon("GetMetaTag"));
    fillDrives(*m_ui->Drive1);
    connectFields();
    connectFiles();
    connect(m_ui->cmdGetMeta, &QPushButton::clicked, this, &frmMetaTag::getAddress);
    connect(m_ui->cboAddress->lineEdit(), &QLineEdit::returnPressed, this, &frmMetaTag::getAddress);
    connect(m_ui->cmdShowChanges, &QPushButton::clicked, this, &frmMetaTag::showChanges);
    connect(m_ui->Command1_0, &QPushButton::clicked, this, &frmMetaTag::update);
    connect(m_ui->Command1_1, &QPushButton::clicked, this, &frmMetaTag::reject);
    connect(&m_editor, &MetaTagEditor::fieldsChanged, this, &frmMetaTag::showFields);
    connect(&m_editor, &MetaTagEditor::folderChanged, this, &frmMetaTag::showFolder);
    connect(&m_editor, &MetaTagEditor::statusChanged, this, &frmMetaTag::showStatus);
    connect(&m_editor, &MetaTagEditor::updatingChanged, this, &frmMetaTag::showUpdating);
    m_ui->picSpliter->setSizes({width() * 2 / 5, width() * 3 / 5});
    m_editor.openFolder(fromScreen(QDir::homePath()));
    m_ui->lsvDirs->setFocus(Qt::OtherFocusReason);
    CenterForm(*this);
}

frmMetaTag::~frmMetaTag() = default;

void frmMetaTag::bind(QPlainTextEdit& edit, MetaTagEditor::Field& field) {
    connect(&edit, &QPlainTextEdit::textChanged, this, [this, &edit, &field] {
        field.set(fromScreen(typedText(edit).replace(QLatin1Char('\n'), QStringLiteral("\r\n"))));
        showFields();
    });
}

void frmMetaTag::connectFields() {
    connect(m_ui->txtTitle, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_editor.txtTitle.set(fromScreen(text));
        showFields();
    });
    bind(*m_ui->txtKeyWord, m_editor.txtKeyWord);
    bind(*m_ui->txtDescription, m_editor.txtDescription);
    connect(m_ui->optUpdate_1, &QRadioButton::toggled, this, [this](bool on) {
        m_editor.optReplace = on;
        m_ui->chkTitleTop->setEnabled(on);
    });
    connect(m_ui->chkTitleTop, &QCheckBox::toggled, this, [this](bool on) { m_editor.chkTitleTop = on; });
}

void frmMetaTag::connectFiles() {
    m_ui->mnuViewSource->setIcon(themedIcon("HTMLFile"));
    m_ui->lsvDirs->setRows(&m_editor.lsvDirs, {12});
    connect(m_ui->lsvDirs, &ListView::rowClicked, this, [this](int row) { m_editor.chooseRow(row); });
    connect(m_ui->lsvDirs, &ListView::rowEntered, this, [this](int row) { m_editor.chooseRow(row); });
    // Queued: opening a folder refills the list, which must not happen inside the list's own click.
    connect(
        m_ui->lsvDirs, &ListView::rowActivated, this,
        [this](int row) {
            if (row < m_editor.lsvDirs.count()) m_editor.openRow(row);
        },
        Qt::QueuedConnection);
    connect(m_ui->Drive1, &QComboBox::activated, this,
            [this](int index) { m_editor.openFolder(fromScreen(m_ui->Drive1->itemData(index).toString())); });
    connect(m_ui->mnuViewSource, &QAction::triggered, this, [this] {
        if (currentRow() >= 0) m_editor.viewSource(currentRow());
    });
    connect(m_ui->mnuSelectPages, &QAction::triggered, this, &frmMetaTag::selectPages);
    connect(m_ui->mnuRefresh, &QAction::triggered, this, [this] { m_editor.addDirs(); });
    needSelection(*m_ui->lsvDirs, *m_ui->cmdShowChanges,
                  tr("Shows, file by file, what an update would change. Writes nothing."),
                  tr("Select HTML files first."));
}

int frmMetaTag::currentRow() const {
    return m_ui->lsvDirs->currentIndex().row();
}

void frmMetaTag::selectPages() {
    for (int row = 0; row < m_editor.lsvDirs.count(); ++row)
        m_editor.lsvDirs.setHighlighted(row, m_editor.lsvDirs.at(row).icon == "WebFile");
}

void frmMetaTag::getAddress() {
    const QString address = m_ui->cboAddress->currentText();
    if (!address.isEmpty() && m_ui->cboAddress->findText(address, Qt::MatchFixedString) < 0) {
        const QSignalBlocker quiet(m_ui->cboAddress);
        m_ui->cboAddress->insertItem(0, address);
        m_ui->cboAddress->setMaxCount(kMostAddresses);
        m_ui->cboAddress->setCurrentIndex(0);
    }
    m_editor.getMetaTagFromAddress(fromScreen(address));
}

void frmMetaTag::showChanges() {
    const std::vector<std::string> files = m_editor.selectedFiles();
    if (files.empty()) {
        m_services.prompts.message("Please select the HTML files in the list on the left.", "Meta Tag Editor",
                                   Icon::Information);
        return;
    }
    if (const auto change = m_editor.wantedChange())
        frmMetaTagChanges(files, *change, this).exec();
    else
        focusEmptyField();
}

void frmMetaTag::update() {
    m_editor.update();
    focusEmptyField();
}

void frmMetaTag::focusEmptyField() {
    if (m_editor.txtTitle.text.empty())
        m_ui->txtTitle->setFocus(Qt::OtherFocusReason);
    else if (m_editor.txtKeyWord.text.empty())
        m_ui->txtKeyWord->setFocus(Qt::OtherFocusReason);
    else if (m_editor.txtDescription.text.empty())
        m_ui->txtDescription->setFocus(Qt::OtherFocusReason);
}

void frmMetaTag::showFields() {
    const auto show = [](QPlainTextEdit& edit, const std::string& bytes) {
        const QString text = toScreen(bytes).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        if (typedText(edit) == text) return;
        const QSignalBlocker quiet(edit);
        edit.setPlainText(text);
    };
    const QString title = toScreen(m_editor.txtTitle.text);
    if (m_ui->txtTitle->text() != title) m_ui->txtTitle->setText(title);
    show(*m_ui->txtKeyWord, m_editor.txtKeyWord.text);
    show(*m_ui->txtDescription, m_editor.txtDescription.text);
    show(*m_ui->Text1, m_editor.Text1());
    // The first letters are the fields' keys.
    const std::pair<QLabel*, const MetaTagEditor::Field*> labels[] = {
        {m_ui->Label1_0, &m_editor.txtTitle},
        {m_ui->Label1_1, &m_editor.txtKeyWord},
        {m_ui->Label1_2, &m_editor.txtDescription}};
    for (const auto& [label, field] : labels) label->setText(QLatin1Char('&') + toScreen(field->label));
}

void frmMetaTag::showFolder() {
    const QString folder = toScreen(m_editor.folder());
    m_ui->lblFolder->setText(folder);
    setPlainToolTip(*m_ui->lblFolder, folder);
}

void frmMetaTag::showStatus() {
    const QString text = toScreen(m_editor.lblStatusBar());
    m_ui->lblStatusBar->setText(text);
    setPlainToolTip(*m_ui->lblStatusBar, text);
}

void frmMetaTag::showFetching(bool fetching) {
    m_ui->cmdGetMeta->setEnabled(!fetching);
}

// Only stopping is possible while files are written.
void frmMetaTag::showUpdating(bool updating) {
    for (QWidget* const part : std::initializer_list<QWidget*>{m_ui->cboAddress, m_ui->cmdGetMeta,
                                                               m_ui->picSpliter, m_ui->Command1_0})
        part->setEnabled(!updating);
    m_ui->cmdShowChanges->setEnabled(!updating && m_editor.lsvDirs.firstHighlighted() >= 0);
    m_ui->Command1_1->setText(updating ? tr("S&top") : tr("&Close"));
    if (updating) m_ui->Command1_1->setFocus(Qt::OtherFocusReason);
}

void frmMetaTag::reject() {
    if (m_editor.isUpdating())
        m_editor.stop();
    else if (m_fetching.isRunning())
        m_fetching.cancel();
    else
        QDialog::reject();
}

}  // namespace relay

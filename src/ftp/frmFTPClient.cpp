// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/frmFTPClient.h"

#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "ftp/SecretStore.h"
#include "ftp/frmFTPLogin.h"
#include "ftp/ui_frmFTPClient.h"
#include "widgets/Drives.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QScreen>

namespace relay {

namespace {
constexpr int kFrameMilliseconds = 33;
constexpr QSize kFrame(8, 40);  // around a window, at most
}  // namespace

frmFTPClient::frmFTPClient(const Services& services, frmHTTP& fetcher, std::unique_ptr<SecretStore> secrets,
                           QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmFTPClient>()),
      m_services(services),
      m_secrets(std::move(secrets)),
      m_local(services),
      m_client(services, &fetcher) {
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    // A dialog would always be above the main window.
    setWindowFlags(Qt::Window);
    drawIcons();
    connectLocal();
    connectRemote();
    connectQueue();
    connectWeb();
    connect(&m_client, &FtpClient::stateChanged, this, &frmFTPClient::showState);
    connect(&m_client, &FtpClient::loginEnded, this, [this](bool loggedIn) {
        m_refusal = loggedIn ? std::string() : m_client.problem();
        showConnection();
    });
    makeReachable(*m_ui->picSpliter,
                  tr("Drag to make a list wider or narrower, or press Alt+Right and Alt+Left"));
    m_ui->picSpliter->setSizes({width() / 2, width() / 2});
    m_ui->splitterMessages->setSizes({height() * 2 / 3, height() / 3});
    m_local.openFolder(fromScreen(QDir::homePath()));
    showState();
    showProgress();
    m_ui->btnConnect->setFocus(Qt::OtherFocusReason);
    resize(size().boundedTo(screen()->availableSize() - kFrame));
    CenterForm(*this);
}

frmFTPClient::~frmFTPClient() {
    m_client.disconnect(this);
}

void frmFTPClient::drawIcons() {
    const std::pair<QPushButton*, const char*> icons[] = {
        {m_ui->btnConnect, "FTP"},  {m_ui->btnChangeDir, "Folder"}, {m_ui->cmdStop, "Stop"},
        {m_ui->cmdRetry, "Repeat"}, {m_ui->cmdCompare, "Web"},      {m_ui->cmdSubmit, "Submit"},
    };
    for (const auto& [button, icon] : icons) button->setIcon(themedIcon(icon));
}

void frmFTPClient::connectLocal() {
    fillDrives(*m_ui->Drive1);
    m_ui->lsvDirs->setRows(&m_local.lsvDirs, {8, 7, 17});
    connect(m_ui->Drive1, &QComboBox::activated, this,
            [this](int index) { m_local.openFolder(fromScreen(m_ui->Drive1->itemData(index).toString())); });
    // Queued: opening a folder refills the list, which must not happen inside the list's own click.
    connect(
        m_ui->lsvDirs, &ListView::rowActivated, this,
        [this](int row) {
            if (row < m_local.lsvDirs.count() && m_local.openRow(row)) sendFiles();
        },
        Qt::QueuedConnection);
    connect(&m_local, &FtpLocalFiles::folderChanged, this, [this] {
        const QString folder = toScreen(m_local.folder());
        m_ui->lblFolder->setText(folder);
        setPlainToolTip(*m_ui->lblFolder, folder);
    });
    connect(m_ui->mnuRefreshLocal, &QAction::triggered, &m_local, &FtpLocalFiles::addDirs);
    connect(m_ui->mnuSendFile, &QAction::triggered, this, &frmFTPClient::sendFiles);
}

void frmFTPClient::connectRemote() {
    m_ui->lsvRemote->setRows(&m_client.lsvRemote, {8, 12, 12});
    connect(m_ui->btnConnect, &QPushButton::clicked, this, &frmFTPClient::logIn);
    connect(m_ui->btnChangeDir, &QPushButton::clicked, &m_client, &FtpClient::btnChangeDir_Click);
    connect(m_ui->btnList, &QPushButton::clicked, &m_client, &FtpClient::btnList_Click);
    connect(m_ui->mnuRefreshRemote, &QAction::triggered, &m_client, &FtpClient::btnList_Click);
    connect(m_ui->txtRemotePath, &QLineEdit::returnPressed, this,
            [this] { m_client.txtRemotePath_Return(fromScreen(m_ui->txtRemotePath->text())); });
    connect(
        m_ui->lsvRemote, &ListView::rowActivated, this,
        [this](int row) {
            if (row < m_client.lsvRemote.count()) m_client.lsvRemote_DblClick(row);
        },
        Qt::QueuedConnection);
    QFont font(QStringLiteral("Courier New"));
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(m_ui->List1->font().pointSizeF());
    m_ui->List1->setFont(font);
    m_ui->List1->setRows(&m_client.List1);
    m_scroll.setSingleShot(true);
    m_scroll.setInterval(kFrameMilliseconds);
    connect(&m_scroll, &QTimer::timeout, m_ui->List1, &ListView::scrollToBottom);
    connect(&m_client, &FtpClient::messageShown, this, [this] {
        if (!m_scroll.isActive()) m_scroll.start();
    });
    connect(m_ui->mnuCopyMessages, &QAction::triggered, this, &frmFTPClient::copyMessages);
}

void frmFTPClient::connectQueue() {
    connect(m_ui->btnSendFile, &QPushButton::clicked, this, &frmFTPClient::sendFiles);
    connect(m_ui->cmdStop, &QPushButton::clicked, &m_client, &FtpClient::Stop);
    connect(m_ui->cmdRetry, &QPushButton::clicked, &m_client, &FtpClient::retryFailed);
    connect(m_ui->btnClose, &QPushButton::clicked, this, &QWidget::close);
    connect(&m_client, &FtpClient::progressChanged, this, &frmFTPClient::showProgress);
    connect(&m_client, &FtpClient::queueEnded, this, &frmFTPClient::showState);
}

void frmFTPClient::connectWeb() {
    FtpCompare& compare = *m_client.compare();
    m_ui->lsvPages->setRows(&compare.pages, {10, 30});
    connect(m_ui->cmdCompare, &QPushButton::clicked, &m_client, &FtpClient::compareWithWeb);
    connect(m_ui->cmdIndexNow, &QPushButton::clicked, &m_client, &FtpClient::cmdIndexNow_Click);
    connect(m_ui->cmdSubmit, &QPushButton::clicked, this,
            [this] { Q_EMIT submitWanted(m_client.changedUrls()); });
    connect(&compare, &FtpCompare::runningChanged, this, &frmFTPClient::showState);
    connect(&compare, &FtpCompare::runningChanged, this, &frmFTPClient::showProgress);
    connect(&compare, &FtpCompare::pageCompared, this,
            [this] { m_ui->tabMessages->setCurrentWidget(m_ui->pageWeb); });
    connect(&compare, &FtpCompare::ended, this, &frmFTPClient::showState);
}

void frmFTPClient::logIn() {
    std::optional<FtpLogin> login;
    if (m_client.wantsLogin()) login = frmFTPLogin(m_services, m_secrets.get(), this).ask();
    m_client.btnConnect_Click(login);
}

void frmFTPClient::sendFiles() {
    m_client.btnSendFile_Click(m_local);
}

void frmFTPClient::copyMessages() {
    std::string text;
    for (int row = 0; row < m_client.List1.count(); ++row)
        text.append(m_client.List1.at(row).text).append("\n");
    QGuiApplication::clipboard()->setText(toScreen(text));
}

bool frmFTPClient::isAtWork() {
    return m_client.isBusy() || m_client.compare()->isRunning();
}

void frmFTPClient::showState() {
    const bool busy = m_client.isBusy();
    const bool work = isAtWork();
    const std::size_t failed = work ? 0 : m_client.failedFiles().size();
    const std::size_t changed = work ? 0 : m_client.changedUrls().size();
    showConnection();
    m_ui->btnChangeDir->setEnabled(!busy);
    m_ui->btnList->setEnabled(!busy);
    m_ui->btnSendFile->setEnabled(!busy);
    m_ui->mnuSendFile->setEnabled(!busy);
    m_ui->cmdStop->setEnabled(work);
    m_ui->cmdRetry->setEnabled(!work && failed > 0);
    m_ui->lblFailed->setText(failed == 0 ? QString() : toScreen(m_client.failureSummary()));
    setPlainToolTip(*m_ui->lblFailed, failed == 0 ? QString() : toScreen(m_client.failureReasons()));
    m_ui->lblFailed->setVisible(failed > 0);
    m_ui->cmdCompare->setEnabled(!work && m_client.canCompare());
    m_ui->cmdIndexNow->setEnabled(!work);
    m_ui->cmdSubmit->setEnabled(!work && changed > 0);
    m_ui->cmdSubmit->setToolTip(
        changed == 0
            ? tr("Compare an upload with the web first: the pages that changed there "
                 "can be submitted.")
            : tr("Submits the pages that changed on the web: %n", nullptr, static_cast<int>(changed)));
}

void frmFTPClient::showConnection() {
    m_ui->btnConnect->setText(toScreen(m_client.btnConnect()));
    // What the user types stays until the folder changes, and a path that led nowhere until it is mended.
    const std::string& path = m_client.txtRemotePath();
    const bool kept = path.empty() && m_client.isConnected();
    if (std::exchange(m_shownPath, path) != path && !kept) m_ui->txtRemotePath->setText(toScreen(path));
    m_ui->lsvRemote->setEmptyHint(
        !m_client.isConnected() ? tr("Press \"Connect\" to see the files of your server here.")
        : m_client.isBusy()     ? tr("The folder is about to be listed.")
                                : tr("Nothing is listed yet. Enter a remote directory and press Return."));
    const QString host = toScreen(m_client.login().Host);
    const QString none =
        m_refusal.empty() ? tr("Not connected") : tr("Not connected: %1").arg(toScreen(m_refusal));
    const QString state = !m_client.isConnected()  ? (m_client.isBusy() ? tr("Connecting ...") : none)
                          : m_client.isEncrypted() ? tr("Connected to %1, encrypted").arg(host)
                                                   : tr("Connected to %1, not encrypted").arg(host);
    m_ui->lblState->setText(state);
    setPlainToolTip(*m_ui->lblState, state);
}

void frmFTPClient::showProgress() {
    const FtpProgress& progress = m_client.progress();
    m_ui->prgFile->setValue(progress.filePermille());
    m_ui->prgQueue->setValue(progress.queuePermille());
    for (QProgressBar* const bar : {m_ui->prgFile, m_ui->prgQueue}) bar->setTextVisible(progress.files > 0);
    const QString name = toScreen(progress.name);
    m_ui->lblFile->setText(m_client.compare()->isRunning() ? tr("Looking at the web ...")
                           : name.isEmpty()                ? tr("File")
                                                           : name);
    setPlainToolTip(*m_ui->lblFile, name);
    m_ui->lblQueue->setText(progress.files == 0 ? tr("All files")
                                                : tr("File %1 of %2").arg(progress.file).arg(progress.files));
}

void frmFTPClient::reject() {
    if (isAtWork())
        m_client.Stop();
    else
        close();
}

// Not QDialog's, which asks reject().
void frmFTPClient::closeEvent(QCloseEvent* event) {
    event->accept();
}

}  // namespace relay

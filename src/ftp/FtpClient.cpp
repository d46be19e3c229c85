// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpClient.h"

#include "core/FileNames.h"
#include "core/Log.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "ftp/FtpHost.h"
#include "ftp/FtpLocalFiles.h"
#include "ftp/IndexNowKeyFile.h"

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kTitle = "FTP Client";
constexpr std::string_view kConnectCaption = "&Connect";
constexpr std::string_view kDisconnectCaption = "D&isconnect";
constexpr std::string_view kCloseCaption = "C&lose";
constexpr int kFollowMilliseconds = 2000;  // from the login to the first change of folder
constexpr int kProgressMilliseconds = 50;
constexpr int kForgottenMessages = 50;

}  // namespace

FtpClient::FtpClient(const Services& services, frmHTTP* fetcher, QObject* parent)
    : QObject(parent), m_services(services), m_ftp(m_sockets, *this), m_connectCaption(kConnectCaption) {
    m_sockets.setProtocol(m_ftp);
    setUpFileList(lsvRemote);
    List1.setColumns({"Messages"});
    if (fetcher != nullptr) m_compare = std::make_unique<FtpCompare>(services, *fetcher);
    for (QTimer* const timer : {&m_deadline, &m_Timer1, &m_Timer2}) timer->setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, &FtpClient::timeOut);
    connect(&m_Timer1, &QTimer::timeout, this, &FtpClient::Timer1_Timer);
    connect(&m_Timer2, &QTimer::timeout, this, &FtpClient::Timer2_Timer);
    connect(&m_sockets, &FtpSockets::connected, this, &FtpClient::waitForLogin);
    connect(&m_sockets, &FtpSockets::failed, this, &FtpClient::controlFailed);
    connect(&m_sockets, &FtpSockets::sendFailed, this,
            [this](const std::string& error) { trace("SendData Error: " + error); });
    connect(&m_sockets, &FtpSockets::dataMoved, this, &FtpClient::dataMoved);
}

FtpClient::~FtpClient() {
    m_then = {};
    m_sockets.abort();
}

// ---- What the protocol says

void FtpClient::DisplayMessage(std::string_view text) {
    if (List1.count() >= kMessages) {
        int oldest = kForgottenMessages;
        List1.removeIf([&oldest](const RowView&) { return oldest-- > 0; });
    }
    List1.add({.text = std::string(text)});
    Q_EMIT messageShown(std::string(text));
}

void FtpClient::trace(std::string_view text) {
    m_services.log.WriteTraceLog(text);
}

void FtpClient::addRemoteDir(std::string_view line) {
    if (m_moreEntries) return;
    const std::optional<std::string> failure = failureOf([&] {
        const std::string& folder = txtRemotePath();
        std::optional<FtpEntry> entry = m_mlsd ? readMlsdLine(line, folder) : readListLine(line, folder);
        if (!entry) return;
        m_entryBytes += entry->name.size() + entry->path.size();
        m_moreEntries = m_entries.size() == kMostEntries || m_entryBytes > kMostEntryBytes;
        if (!m_moreEntries) m_entries.push_back(*std::move(entry));
    });
    if (failure) DisplayMessage("addRemoteDir_Error: " + *failure);
}

void FtpClient::happened(FtpEvent event) {
    switch (event) {
        case FtpEvent::LoggedIn:
            loggedIn();
            break;
        case FtpEvent::LoginFailed:
            m_problem = m_ftp.lastReply();
            connectEnded(false);
            break;
        case FtpEvent::CommandEnded:
            replyEnded();
            break;
        case FtpEvent::Released:
            m_pointer.reset();
            break;
        case FtpEvent::PathChanged:
            if (m_baseFolder.empty()) {
                m_baseFolder = txtRemotePath();
                if (m_compare != nullptr) m_compare->setPublicFolder(m_login.PublicURL, m_baseFolder);
            }
            Q_EMIT stateChanged();
            break;
        case FtpEvent::FollowPath:
            if (!m_follow || m_sending) break;
            m_Timer2.start(0);
            Q_EMIT stateChanged();
            break;
        case FtpEvent::SendingBegan:
            showProgress(true);
            break;
        case FtpEvent::Disconnected:
            m_Timer2.stop();
            m_problem = m_ftp.lastReply();
            setCaption(kDisconnectCaption);
            if (m_connecting) connectEnded(false);
            Q_EMIT disconnected();
            break;
    }
}

// ---- Waiting

void FtpClient::waitForLogin() {
    m_deadline.start(m_timeOutSeconds * 1000);
}

void FtpClient::SendFTPCommand(const std::string& command, std::int16_t binary, const std::string& argument,
                               Then then) {
    const std::optional<std::string> failure =
        failureOf([&] { m_ftp.SendFTPCommand(command, binary, argument); });
    if (failure) {
        DisplayMessage(*failure);
        m_problem = *failure;
        if (then) then(false, 0);
        return;
    }
    WaitForReply(std::move(then));
}

void FtpClient::WaitForReply(Then then) {
    m_then = [then = std::move(then)](bool replied, int code) {
        if (then) then(replied, code);
    };
    m_deadline.start(m_commandMilliseconds);
    Q_EMIT stateChanged();
}

void FtpClient::replyEnded() {
    const int code = m_ftp.state().ReplyCode;
    if (code == 0 || !m_then) return;
    if (code != kFtpNoReply) m_silent = false;
    m_problem = m_ftp.lastReply();
    m_deadline.stop();
    m_ftp.beginWait();
    const Then then = std::exchange(m_then, {});
    then(code != kFtpNoReply, code);
    Q_EMIT stateChanged();
}

void FtpClient::timeOut() {
    if (m_connecting) {
        m_problem = m_sockets.isOpen() ? "The server did not answer the login in time."
                                       : "The server could not be reached in time.";
        DisplayMessage(m_problem);
        connectEnded(false);
        return;
    }
    if (!m_then) return;
    const bool again = std::exchange(m_silent, true);
    m_ftp.giveUp(kFtpNoReply, "Time out !");
    DisplayMessage("Time out !");
    if (again) {
        m_sockets.abort();
        m_ftp.controlClosed(
            "The server ended two commands in a row with no reply, so the connection is closed.");
        return;
    }
    replyEnded();
}

// A transfer that moves has not timed out.
void FtpClient::dataMoved() {
    if (m_then) m_deadline.start(m_commandMilliseconds);
    if (m_sending) showProgress(false);
}

// ---- Connecting

void FtpClient::FTPConnect(const FtpLogin& login, int timeOutSeconds, bool follow) {
    if (isBusy() || isConnected()) return;
    m_problem = ftpLoginProblem(login);
    if (!m_problem.empty()) {
        m_services.prompts.message(m_problem, kTitle, Icon::Critical);
        Q_EMIT loginEnded(false);
        return;
    }
    if (login.Host != m_login.Host || login.Username != m_login.Username) {
        lsvRemote.clear();
        m_queue.forget();
    }
    m_login = login;
    m_follow = follow;
    m_timeOutSeconds = timeOutSeconds;
    m_baseFolder.clear();
    m_connecting = true;
    m_silent = m_askedWhere = false;
    m_pointer = std::make_unique<BusyPointer>(m_services.prompts);
    List1.clear();
    m_ftp.setAllowForeignDataHost(login.AllowForeignDataHost);
    m_ftp.begin(login.Username, login.Password, login.TLS);
    m_ftp.setRemotePath(login.RemotePath);
    setCaption(kCloseCaption);
    waitForLogin();
    m_sockets.open(parseFtpHost(login.Host));
}

void FtpClient::controlFailed(const std::string& error) {
    error.empty() ? m_ftp.controlClosed() : m_ftp.controlClosed("Socket1 Error: " + error);
    if (m_connecting) connectEnded(false);
}

void FtpClient::loggedIn() {
    if (!txtRemotePath().empty()) m_baseFolder = txtRemotePath();
    connectEnded(true);
    if (!m_follow) return;
    if (txtRemotePath().empty()) {
        askRemotePath();
        return;
    }
    m_Timer2.start(kFollowMilliseconds);
    Q_EMIT stateChanged();
}

void FtpClient::connectEnded(bool loggedIn) {
    m_connecting = false;
    m_deadline.stop();
    m_pointer.reset();
    if (!loggedIn) {
        m_sockets.abort();
        m_ftp.begin({}, {}, false);
    }
    if (m_compare != nullptr) m_compare->setPublicFolder(m_login.PublicURL, m_baseFolder);
    setCaption(loggedIn ? kDisconnectCaption : kConnectCaption);
    Q_EMIT loginEnded(loggedIn);
}

void FtpClient::Disconnect() {
    m_Timer2.stop();
    const bool waiting = isBusy();
    if (waiting) Stop();
    // A server that is in the middle of something need not answer soon.
    if (waiting || !isConnected() || m_ftp.isOwedReplies()) {
        closed();
        return;
    }
    SendFTPCommand("QUIT", m_ftp.state().CurrentType, {}, [this](bool, int) { closed(); });
}

void FtpClient::closed() {
    m_sockets.abort();
    m_ftp.begin({}, {}, false);
    setCaption(kConnectCaption);
    Q_EMIT disconnected();
}

void FtpClient::setCaption(std::string_view caption) {
    m_connectCaption = caption;
    Q_EMIT stateChanged();
}

bool FtpClient::wantsLogin() const noexcept {
    return m_connectCaption == kConnectCaption;
}

void FtpClient::btnConnect_Click(const std::optional<FtpLogin>& login) {
    if (m_connectCaption == kCloseCaption) {
        Stop();
    } else if (m_connectCaption == kDisconnectCaption) {
        Disconnect();
    } else if (login) {
        const bool inTheClear = !login->TLS && !login->Password.empty() && ftpLoginProblem(*login).empty();
        if (inTheClear && !m_services.prompts.ask(
                              "The password will go to the server unencrypted: whoever can read the network "
                              "on the way can read it. Do you want to connect?",
                              kTitle))
            return;
        FTPConnect(*login);
    }
}

// ---- Folders

bool FtpClient::refuseUnconnected() {
    if (isConnected()) return isBusy();
    m_services.prompts.message("FTP Connection seems closed, Please re-connect and try again !", kTitle,
                               Icon::Critical);
    return true;
}

void FtpClient::ChangeRemotePath(const std::string& Path, Then then) {
    if (!isConnected() || isBusy()) return;
    const std::string path = Path.empty() ? "/" : Path;
    const std::optional<std::string> failure =
        failureOf([&] { refuseControlBytes(path, "The remote path"); });
    if (failure) {
        m_problem = *failure;
        m_services.prompts.message(*failure, kTitle, Icon::Critical);
        if (then) then(false, 0);
        return;
    }
    DisplayMessage("CWD " + path);
    m_ftp.requestPath(path);
    SendFTPCommand("CWD " + path, m_ftp.state().CurrentType, {}, std::move(then));
}

void FtpClient::askRemotePath(Then then) {
    if (isConnected() && !isBusy()) SendFTPCommand("PWD", m_ftp.state().CurrentType, {}, std::move(then));
}

void FtpClient::ListFile(const std::string& Path, Then then) {
    if (!isConnected() || isBusy()) return;
    m_pointer = std::make_unique<BusyPointer>(m_services.prompts);
    m_listedPath = Path.empty() ? "/" : Path;
    lsvRemote.clear();
    lsvRemote.add(upRow(GetUpDir(Path)));
    list(m_login.MLSD, std::move(then));
}

void FtpClient::list(bool mlsd, Then then) {
    m_mlsd = mlsd;
    m_entries.clear();
    m_entryBytes = 0;
    m_moreEntries = false;
    SendFTPCommand((mlsd ? "MLSD " : "LIST ") + m_listedPath, 0, {},
                   [this, mlsd, then = std::move(then)](bool replied, int code) {
                       if (mlsd && (code == 500 || code == 502)) {
                           DisplayMessage("The server does not know MLSD, so names with blanks are cut.");
                           list(false, then);
                           return;
                       }
                       fillRemote();
                       m_services.prompts.beep();
                       m_pointer.reset();
                       if (then) then(replied, code);
                       Q_EMIT listed(replied, code);
                   });
}

void FtpClient::fillRemote() {
    if (m_moreEntries) DisplayMessage("The folder has more files than are shown.");
    const RowsBatch batch(lsvRemote);
    for (const FtpEntry& entry : m_entries) lsvRemote.add(remoteRow(entry));
}

// The step after a change of folder: the folder was asked for, so go there; it was changed to, so list it.
void FtpClient::Timer2_Timer() {
    if (isBusy()) return;
    const std::string& command = m_ftp.state().CurrentCommand;
    if (command != "CWD" && command != "PORT") {
        followPath();
    } else if (!std::exchange(m_askedWhere, false) && !txtRemotePath().starts_with('/')) {
        followRelativePath();
    } else {
        ListFile(txtRemotePath());
    }
}

// Where it cannot go, the present folder is not known, and nothing is sent there.
void FtpClient::followPath() {
    ChangeRemotePath(txtRemotePath(), [this](bool, int code) {
        if (code != 250) m_ftp.setRemotePath({});
    });
}

// A path from the folder that was left leads nowhere from the new one, so the server is asked where it is.
void FtpClient::followRelativePath() {
    m_askedWhere = true;
    if (m_baseFolder == txtRemotePath()) m_baseFolder.clear();
    askRemotePath([this](bool, int code) {
        if (code == 257) return;
        m_askedWhere = false;
        ListFile(txtRemotePath());
    });
}

void FtpClient::btnChangeDir_Click() {
    if (refuseUnconnected()) return;
    if (txtRemotePath().empty()) m_ftp.setRemotePath("/");
    const std::optional<std::string> path =
        m_services.prompts.input("Enter remote path:", kTitle, txtRemotePath());
    if (path && !path->empty() && !refuseUnconnected()) ChangeRemotePath(*path);
}

void FtpClient::btnList_Click() {
    if (refuseUnconnected()) return;
    if (!txtRemotePath().empty()) ListFile(txtRemotePath());
}

void FtpClient::lsvRemote_DblClick(int row) {
    const RowView chosen = lsvRemote.at(row);
    if (chosen.icon != kFolderIcon) return;
    const std::string folder(chosen.tag);
    if (!refuseUnconnected()) ChangeRemotePath(folder);
}

void FtpClient::txtRemotePath_Return(const std::string& path) {
    if (!refuseUnconnected()) ChangeRemotePath(path);
}

// ---- The queue

void FtpClient::btnSendFile_Click(FtpLocalFiles& local) {
    if (refuseUnconnected()) return;
    if (txtRemotePath().empty()) {
        m_services.prompts.message("Invalid remote path, please change the remote path and try again.",
                                   kTitle, Icon::Critical);
        return;
    }
    std::vector<FtpUpload> files;
    for (const std::string& file : local.setFileList()) files.push_back({file, getFileNameFromFile(file)});
    if (!files.empty()) sendFiles(files);
}

void FtpClient::retryFailed() {
    if (refuseUnconnected()) return;
    std::vector<FtpUpload> files;
    for (const FtpFileEnd& file : m_queue.failed()) files.push_back({file.file, file.remotePath});
    if (!files.empty()) send(files, true, true);
}

std::string FtpClient::remotePath(const FtpUpload& upload) const {
    return upload.remoteName.starts_with('/') ? upload.remoteName
                                              : remotePathOf(txtRemotePath(), upload.remoteName);
}

void FtpClient::sendFiles(const std::vector<FtpUpload>& files, bool listAfter) {
    send(files, listAfter, false);
}

void FtpClient::send(const std::vector<FtpUpload>& files, bool listAfter, bool again) {
    if (!isConnected() || isBusy()) return;
    m_sending = true;
    m_stopped = false;
    m_listAfter = listAfter;
    m_queue.begin(again);
    m_pointer = std::make_unique<BusyPointer>(m_services.prompts);
    Q_EMIT stateChanged();
    for (const FtpUpload& upload : files) take(upload);
    const auto begin = [this] { m_Timer1.start(0); };
    if (m_compare == nullptr || !m_compare->isOn()) {
        begin();
        return;
    }
    m_compare->remember(m_queue.waiting(), begin);
}

// Into the queue, unless it cannot be sent.
void FtpClient::take(const FtpUpload& upload) {
    const std::string problem = m_queue.take(upload, remotePath(upload));
    if (problem.empty()) return;
    DisplayMessage(escapeControlCharacters(problem));
    fileHasEnded();
}

void FtpClient::Timer1_Timer() {
    if (m_queue.isAtEnd() || m_stopped || !isConnected())
        endQueue();
    else
        SendFile(m_queue.next());
}

void FtpClient::SendFile(const FtpUpload& upload) {
    DisplayMessage("STOR " + upload.remoteName);
    SendFTPCommand("STOR " + upload.remoteName, -1, upload.file,
                   [this](bool, int code) { fileReplied(code); });
}

// The code of a failed file does not end the queue.
void FtpClient::fileReplied(int code) {
    FtpFileEnd end{.code = code, .bytes = m_ftp.bytesSent()};
    const bool stored = code == 226 || code == 250;
    end.ok = stored && m_ftp.wholeFileSent();
    if (!end.ok) end.problem = (stored ? "Not all of the file went out: " : "") + m_ftp.lastReply();
    m_queue.moved(m_ftp.bytesSent(), m_ftp.fileSize());
    m_queue.end(std::move(end), !m_stopped);
    fileHasEnded();
    m_Timer1.start(0);
}

void FtpClient::fileHasEnded() {
    Q_EMIT fileEnded(m_queue.ended().back());
    showProgress(false);
}

void FtpClient::endQueue() {
    while (!m_queue.isAtEnd()) {
        m_queue.skip(m_stopped ? "Stopped" : "The connection is closed.");
        fileHasEnded();
    }
    m_sending = false;
    m_pointer.reset();
    showProgress(true);
    const std::string summary = failureSummary();
    if (!summary.empty()) DisplayMessage(summary);
    const int failed = static_cast<int>(m_queue.failed().size());
    m_sentKey = std::exchange(m_placingKey, false);
    const bool compares = m_sentKey && failed == 0;
    Q_EMIT stateChanged();
    if (m_listAfter && !m_stopped && isConnected()) ListFile(txtRemotePath());
    Q_EMIT queueEnded(static_cast<int>(ended().size()) - failed, failed);
    if (compares) compareWithWeb();
}

void FtpClient::showProgress(bool always) {
    if (m_sending && m_then) m_queue.moved(m_ftp.bytesSent(), m_ftp.fileSize());
    if (!always && m_lastProgress.isValid() && m_lastProgress.elapsed() < kProgressMilliseconds) return;
    m_lastProgress.start();
    Q_EMIT progressChanged();
}

void FtpClient::Stop() {
    m_stopped = m_sending;
    if (m_compare != nullptr) m_compare->stop();
    if (m_Timer2.isActive()) {
        m_Timer2.stop();
        m_ftp.setRemotePath({});
        DisplayMessage("Stopped");
        Q_EMIT stateChanged();
    }
    if (m_connecting) {
        m_problem = "Stopped";
        DisplayMessage(m_problem);
        connectEnded(false);
        return;
    }
    if (!m_then) return;
    m_ftp.giveUp(kFtpNoReply, "Stopped");
    DisplayMessage("Stopped");
    replyEnded();
}

// ---- The web

void FtpClient::compareWithWeb() {
    if (m_compare == nullptr || m_sending) return;
    m_comparedKey = m_sentKey;
    m_compare->compare(m_queue.published());
}

std::vector<std::string> FtpClient::changedUrls() const {
    return m_compare == nullptr || m_comparedKey ? std::vector<std::string>() : m_compare->changedUrls();
}

bool FtpClient::refuseUnpublished() {
    if (m_compare != nullptr && m_compare->isOn()) return false;
    m_services.prompts.message("Please enter the public address of the remote folder in the login first.",
                               kTitle, Icon::Information);
    return true;
}

void FtpClient::cmdIndexNow_Click() {
    if (refuseUnconnected() || refuseUnpublished()) return;
    const std::optional<std::string> key = m_services.prompts.input(
        "Enter the IndexNow key. The IndexNow engines take the password of your web site as the key:",
        kTitle);
    if (key && !key->empty()) placeIndexNowKey(*key);
}

void FtpClient::placeIndexNowKey(const std::string& key) {
    if (refuseUnconnected() || refuseUnpublished()) return;
    trap(
        m_services.prompts, "",
        [&] {
            const std::string file = writeIndexNowKeyFile(m_services, key);
            m_placingKey = true;
            sendFiles({{file, remotePathOf(m_baseFolder, getFileNameFromFile(file))}});
        },
        kTitle, Icon::Information);
}

}  // namespace relay

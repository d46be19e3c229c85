// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "ftp/FtpCompare.h"
#include "ftp/FtpListing.h"
#include "ftp/FtpLogin.h"
#include "ftp/FtpQueue.h"
#include "ftp/FtpSockets.h"
#include "ftp/FtpWire.h"
#include "ftp/modFTP.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class BusyPointer;
class FtpLocalFiles;
class frmHTTP;
struct Services;

// The uploader: one connection to a server, its listing and its queue. The window and the command line both
// drive it. Operations begin and return at once; their end comes as a signal and, where there is one, as a
// call of `then`. Nothing blocks, and Stop and Disconnect end every wait at once. While isBusy(), another
// operation is refused (it returns without a word); Stop is always allowed.
class FtpClient final : public QObject, private FtpWatcher {
    Q_OBJECT
  public:
    // How a command ended: whether a reply came, and its code.
    using Then = std::function<void(bool replied, int code)>;
    static constexpr int kConnectSeconds = 15;
    static constexpr int kCommandSeconds = 40;
    // Of a listing; more is not shown.
    static constexpr std::size_t kMostEntries = 500'000;
    static constexpr std::size_t kMostEntryBytes = 128u * 1024 * 1024;  // of their names and paths
    static constexpr int kMessages = 150;  // when the list holds as many, the oldest 50 go

    // `fetcher` is for the comparison with the web; without one there is none.
    explicit FtpClient(const Services& services, frmHTTP* fetcher = nullptr, QObject* parent = nullptr);
    ~FtpClient() override;

    // How long a command may go without a reply or a byte of its file, in milliseconds.
    void setCommandTimeOut(int milliseconds) noexcept { m_commandMilliseconds = milliseconds; }

    // ---- State, for a screen. The rows tell their own changes.
    Rows lsvRemote;  // the remote folder; see FtpListing.h. Tag is the full path, type in column 1
    Rows List1;      // messages, one column; a screen keeps the last one in view
    const std::string& txtRemotePath() const noexcept { return m_ftp.state().RemotePath; }
    // The caption of the connect button: "&Connect", "D&isconnect", or "C&lose" while connecting.
    const std::string& btnConnect() const noexcept { return m_connectCaption; }
    bool isConnected() const noexcept { return m_ftp.state().Connected != 0; }
    bool isEncrypted() const noexcept { return m_ftp.isEncrypted(); }
    // From connecting, or from the begin of a command or the queue, to its end; the steps that follow a login
    // or a change of folder are part of it.
    bool isBusy() const noexcept {
        return m_connecting || m_sending || m_then != nullptr || m_Timer2.isActive();
    }
    bool isSending() const noexcept { return m_sending; }  // the queue runs: btnSendFile is disabled
    const FtpProgress& progress() const noexcept { return m_queue.progress(); }
    // Of the last queue, in its order; while it runs, those that ended.
    const std::vector<FtpFileEnd>& ended() const noexcept { return m_queue.ended(); }
    std::vector<FtpFileEnd> failedFiles() const { return m_queue.failed(); }
    std::string failureSummary() const { return m_queue.failureSummary(); }
    std::string failureReasons() const { return m_queue.failureReasons(); }
    // Why the last operation failed, for the user: the server's reply, or the error of the system.
    const std::string& problem() const noexcept { return m_problem; }
    // Of the last listing, in the server's order.
    const std::vector<FtpEntry>& entries() const noexcept { return m_entries; }
    const FtpLogin& login() const noexcept { return m_login; }
    // Null without a fetcher.
    FtpCompare* compare() noexcept { return m_compare.get(); }
    // The pages to submit: what the last comparison found changed, unless it was of a key file.
    std::vector<std::string> changedUrls() const;
    // btnConnect_Click would use a login.
    bool wantsLogin() const noexcept;

    // ---- The buttons. Each checks what must be so and shows the box that says otherwise.
    // btnConnect, by its caption: for "&Connect" the login that the user confirmed (nothing when cancelled).
    // Asks before a password would go unencrypted.
    void btnConnect_Click(const std::optional<FtpLogin>& login);
    // btnSendFile: takes the chosen files of `local`.
    void btnSendFile_Click(FtpLocalFiles& local);
    void btnChangeDir_Click();  // asks for the path
    void btnList_Click();
    void lsvRemote_DblClick(int row);
    void txtRemotePath_Return(const std::string& path);
    // Sends the files again that failed.
    void retryFailed();
    // Ends connecting, the running command or the queue; files not sent yet count as failed.
    void Stop();
    // Compares what the last upload sent with the web, retries included; compare() has the results and
    // signals.
    void compareWithWeb();
    bool canCompare() const noexcept { return m_compare != nullptr && !m_queue.published().empty(); }
    void cmdIndexNow_Click();  // asks for the key
    // Template: writes the key file of IndexNow, sends it to the folder of PublicURL and, when it was sent,
    // compares it with the web. A message says why the key cannot be one.
    void placeIndexNowKey(const std::string& key);

    // ---- The operations beneath.
    // Connects and logs in; a refusal of a field shows a message and sends nothing. Ends in loginEnded. With
    // `follow` the client goes to RemotePath (or asks for the folder) and lists it, as the window does.
    void FTPConnect(const FtpLogin& login, int timeOutSeconds = kConnectSeconds, bool follow = true);
    // Says QUIT, waits for the answer and closes. Ends in disconnected.
    void Disconnect();
    void ChangeRemotePath(const std::string& Path, Then then = {});
    // Asks for the folder the server is in: RemotePath.
    void askRemotePath(Then then = {});
    // Ends in `listed`, after a beep. With MLSD in the login, and a server that does not know it, LIST
    // follows.
    void ListFile(const std::string& Path, Then then = {});
    // Sends the files into the present folder, one after the other; ends in queueEnded. Empty and unreadable
    // files get their words first and are not sent. With `listAfter` the folder is listed again at the end.
    void sendFiles(const std::vector<FtpUpload>& files, bool listAfter = true);

  Q_SIGNALS:
    void stateChanged();  // caption, connection, path, busy, sending
    void messageShown(const std::string& text);
    void loginEnded(bool loggedIn);
    void listed(bool replied, int code);
    void progressChanged();  // about twenty times a second at most, and at each end of a file
    void fileEnded(const relay::FtpFileEnd& file);
    void queueEnded(int sent, int failed);
    void disconnected();

  private:
    // FtpWatcher
    void DisplayMessage(std::string_view text) override;
    void trace(std::string_view text) override;
    void addRemoteDir(std::string_view line) override;
    void happened(FtpEvent event) override;

    // True, after the box, without a connection; also true while busy.
    bool refuseUnconnected();
    // True, after the box, without a public address.
    bool refuseUnpublished();
    void waitForLogin();
    void list(bool mlsd, Then then);
    void followPath();
    void followRelativePath();
    void fillRemote();
    void SendFTPCommand(const std::string& command, std::int16_t binary, const std::string& argument,
                        Then then);
    void WaitForReply(Then then);
    void replyEnded();
    void timeOut();
    void dataMoved();
    void controlFailed(const std::string& error);
    void loggedIn();
    void connectEnded(bool loggedIn);
    void closed();
    void setCaption(std::string_view caption);
    void Timer1_Timer();
    void Timer2_Timer();
    std::string remotePath(const FtpUpload& upload) const;
    void send(const std::vector<FtpUpload>& files, bool listAfter, bool again);
    void take(const FtpUpload& upload);
    void SendFile(const FtpUpload& upload);
    void fileReplied(int code);
    void fileHasEnded();
    void endQueue();
    void showProgress(bool always);

    const Services& m_services;
    FtpSockets m_sockets;
    modFTP m_ftp;
    std::unique_ptr<FtpCompare> m_compare;
    FtpLogin m_login;
    std::string m_baseFolder;  // the folder after the login
    std::string m_connectCaption;
    std::string m_problem;
    bool m_follow = true;
    bool m_askedWhere = false;  // the folder of a relative path was asked for
    bool m_connecting = false;
    int m_timeOutSeconds = kConnectSeconds;
    int m_commandMilliseconds = kCommandSeconds * 1000;
    std::unique_ptr<BusyPointer> m_pointer;
    bool m_silent = false;  // the last command timed out
    Then m_then;            // of the command that is waited for
    QTimer m_deadline;      // of the connect, the login or the command
    QTimer m_Timer1;        // the next file
    QTimer m_Timer2;        // the step after a path change
    std::string m_listedPath;
    std::vector<FtpEntry> m_entries;
    std::size_t m_entryBytes = 0;
    bool m_moreEntries = false;  // than are kept
    bool m_mlsd = false;         // the listing that comes is one
    FtpQueue m_queue;
    bool m_sending = false;
    bool m_stopped = false;
    bool m_listAfter = true;
    bool m_placingKey = false;   // the queue is a key file ...
    bool m_sentKey = false;      // ... or the last one was,
    bool m_comparedKey = false;  // and so the last comparison
    QElapsedTimer m_lastProgress;
};

}  // namespace relay

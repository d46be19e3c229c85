// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Descriptor.h"
#include "ftp/FtpFileSource.h"
#include "ftp/FtpReplies.h"
#include "ftp/FtpWire.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

inline constexpr std::int16_t kFtpNoReply = 999;  // ReplyCode of a command that no reply ended

// The state of the protocol. Only modFTP writes it.
struct FtpState final {
    std::string CurrentCommand;   // the last command word, in upper case; or "PORT", "PASV", "TYPE"
    std::string PendingCommand;   // the data command that waits for PORT, PASV or TYPE
    std::string PendingArgument;  // its local file
    std::string UserName;
    std::string Password;
    std::string RemotePath;            // present folder on the server
    std::int16_t RequestedBinary = 0;  // of the last command: -1 binary, 0 ASCII
    std::int16_t CurrentType = 0;      // the type the server is in; 1: not known, after a refused TYPE
    std::int16_t LoggedIn = 0;         // -1 after the login
    std::int16_t PassiveMode = -1;     // 0: PORT
    std::int16_t ReplyCode = 0;        // of the command that ended; -1 once the data connection has closed
    std::int16_t Connected = 0;        // -1 after the login, 0 after the end of the connection
    std::string LastError;             // text of a 3xx to 5xx reply
    std::int64_t DataBytes = 0;        // received on the data socket; -1 once it has closed
};

// The FTP protocol, without sockets: bytes of the server go in; commands, blocks of a file and events come
// out. Each line of a reply goes through the reply handler on its own; a reply of several lines acts at its
// last one.
class modFTP final {
  public:
    modFTP(FtpWire& wire, FtpWatcher& watcher);

    const FtpState& state() const noexcept { return m_state; }
    void setPassiveMode(std::int16_t mode) noexcept { m_state.PassiveMode = mode; }
    // Takes the address that a 227 names, instead of the control connection's.
    void setAllowForeignDataHost(bool on) noexcept { m_allowForeign = on; }

    // A new control connection; the login begins with the server's greeting. With TLS nothing but AUTH is
    // sent before the connection is encrypted, and data goes encrypted, too.
    void begin(std::string user, std::string password, bool tls);
    // Line breaks and control bytes throw Failure before anything is sent. `Binary` as RequestedBinary;
    // `Argument` is the local file of the command.
    void SendFTPCommand(const std::string& Command, std::int16_t Binary, const std::string& Argument = {});
    void CloseDataConnection();
    // The folder that the next CWD asks for; its 250 makes it RemotePath.
    void requestPath(std::string path) { m_requestedPath = std::move(path); }
    void setRemotePath(std::string path) { m_state.RemotePath = std::move(path); }
    // ReplyCode starts clean.
    void beginWait() noexcept { m_state.ReplyCode = 0; }
    // The wait for a reply is over without one; what the server still owes is shown later and does nothing.
    // `why` stands for the reply.
    void giveUp(std::int16_t code, std::string_view why = {});

    // From the sockets.
    void controlReceived(std::string_view bytes);
    void controlEncrypted();
    void controlClosed(std::string_view why = "The server closed the connection.");
    void dataConnected();                     // to where connectData was asked to
    void dataAccepted(int socket);            // by the listener
    void dataFailed(std::string_view error);  // it could not be connected
    void dataReceived(std::string_view bytes);
    void dataClosed();                       // by the server
    void dataError(std::string_view error);  // it broke
    // The next bytes of the file that is being sent, empty at its end and when it cannot be read any
    // further; then isSending() is false. Valid until the next call.
    std::string_view nextBlock();
    void fileSent();
    bool isSending() const noexcept { return m_sending; }

    // Of the file being sent, or the last.
    std::int64_t bytesSent() const noexcept { return m_source.sent(); }
    std::int64_t fileSize() const noexcept { return m_source.size(); }
    bool wholeFileSent() const noexcept { return m_wholeSent; }
    // The last reply as a line, for a failure's words.
    const std::string& lastReply() const noexcept { return m_lastReply; }
    bool isEncrypted() const noexcept { return m_encrypted; }  // control and data
    // Replies are still due to commands that were given up.
    bool isOwedReplies() const noexcept { return m_owed > 0; }

  private:
    enum class Login { None, Greeting, Auth, Handshake, User, BufferSize, Protection, Done };
    // Of the data command: nothing of it yet, TYPE or PASV on the way, or the command itself sent.
    enum class Stage { None, SettingUp, Sent };

    void takeReplies(std::string_view bytes);
    void dsSocket1_Receive(std::string_view line);
    bool isOwed(int code);
    void act(int code, std::string_view line, std::string_view message);
    void afterTable(int code, std::string_view message);
    void logInStep(int code);
    void logInEnded(bool loggedIn);
    void sendLine(std::string_view line);
    void sendPending();
    void listen();
    void typeReply(std::string_view line);
    void passiveReply(std::string_view message);
    void extendedPassiveReply(std::string_view message);
    void folderChanged();
    void pathReply(std::string_view line);
    void beginUpload(std::string_view line);
    void transferEnded(std::int16_t code);
    void disconnected(std::int16_t code);
    void endCommand(std::int16_t code);
    void failCommand(std::string_view words);
    void takeData(std::string_view bytes);
    void saveData(std::string_view bytes);
    void closeFile();
    void show(std::string_view text);
    std::string masked(std::string_view text) const;
    void later(FtpEvent event) { m_events.push_back(event); }
    void fire();

    FtpWire& m_wire;
    FtpWatcher& m_watcher;
    FtpState m_state;
    Login m_login = Login::None;
    Stage m_stage = Stage::None;
    bool m_tls = false;
    bool m_encrypted = false;
    bool m_allowForeign = false;
    std::string m_requestedPath;
    std::string m_control;  // bytes of a line that is not complete
    FtpReplyLines m_lines;
    int m_unanswered = 0;  // commands sent whose last reply has not come
    int m_owed = 0;        // of them: those nobody waits for any more
    std::string m_lastReply;
    std::vector<FtpEvent> m_events;  // of the call that is running, sent at its end
    FtpEndpoint m_dataPeer;
    bool m_lineMode = true;
    bool m_receives = false;  // the data command brings data
    bool m_dataOpen = false;
    std::int16_t m_heldCode = 0;  // a 226 that came before the end of the data
    std::string m_data;           // bytes of a data line that is not complete
    Descriptor m_file;            // FileHandle of a file that comes in; of one that goes out:
    FtpFileSource m_source;
    bool m_wholeSent = false;
    bool m_sending = false;
};

}  // namespace relay

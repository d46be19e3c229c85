// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/modFTP.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "ftp/FtpLogin.h"
#include "ftp/FtpReplies.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <unistd.h>
#include <utility>

namespace relay {

namespace {

constexpr std::size_t kLongestLine = 8192;  // of a server; what is longer is cut
constexpr std::string_view kBadPassiveReply = "Could not understand format - Data connection not made.";

// The commands that need a data connection. DELE is one of them here.
bool needsData(std::string_view word) {
    constexpr std::array<std::string_view, 8> kCommands = {"RETR", "APPE", "LIST", "NLST",
                                                           "STOR", "STOU", "DELE", "MLSD"};
    return std::find(kCommands.begin(), kCommands.end(), word) != kCommands.end();
}

bool bringsData(std::string_view word) {
    return word == "RETR" || word == "LIST" || word == "NLST" || word == "MLSD";
}

std::string wordOf(std::string_view command) {
    return toUpper(trimRight(left(command, 4)));
}

bool isUpload(std::string_view command) {
    const std::string word = wordOf(command);
    return word == "STOR" || word == "STOU";
}

}  // namespace

modFTP::modFTP(FtpWire& wire, FtpWatcher& watcher) : m_wire(wire), m_watcher(watcher) {}

// ---- What the user sees. A server may repeat what it was sent.

std::string modFTP::masked(std::string_view text) const {
    constexpr std::size_t kShortest = 4;  // a shorter password is part of too many words
    std::string safe(text);
    if (m_state.Password.empty()) return safe;
    safe = replaceAll(safe, "PASS " + m_state.Password, "PASS ***");
    return m_state.Password.size() < kShortest ? safe : replaceAll(safe, m_state.Password, "***");
}

void modFTP::show(std::string_view text) {
    m_watcher.DisplayMessage(escapeControlCharacters(masked(text)));
}

void modFTP::fire() {
    for (const FtpEvent event : std::exchange(m_events, {})) m_watcher.happened(event);
}

// ---- Commands

void modFTP::begin(std::string user, std::string password, bool tls) {
    const std::int16_t passive = m_state.PassiveMode;
    m_state = {};
    m_state.PassiveMode = passive;
    m_state.UserName = std::move(user);
    m_state.Password = std::move(password);
    m_login = Login::Greeting;
    m_stage = Stage::None;
    m_tls = tls;
    m_encrypted = m_dataOpen = m_sending = m_wholeSent = false;
    m_lines.forget();
    m_unanswered = m_owed = 0;
    m_heldCode = 0;
    m_requestedPath.clear();
    m_control.clear();
    m_lastReply.clear();
    m_data.clear();
    closeFile();
}

void modFTP::closeFile() {
    m_file.reset();
    m_source.close();
}

void modFTP::sendLine(std::string_view line) {
    ++m_unanswered;
    m_wire.sendControl(std::string(line).append("\r\n"));
}

void modFTP::sendPending() {
    m_stage = Stage::Sent;
    sendLine(m_state.PendingCommand);
}

void modFTP::SendFTPCommand(const std::string& Command, std::int16_t Binary, const std::string& Argument) {
    refuseControlBytes(Command, "The command");
    m_watcher.trace("SendFTPCommand: " + Command + ", " + std::to_string(Binary) + "," + Argument);
    m_state.CurrentCommand = wordOf(Command);
    const bool transfers = needsData(m_state.CurrentCommand);
    m_stage = transfers ? Stage::SettingUp : Stage::None;
    m_state.ReplyCode = 0;
    m_state.RequestedBinary = Binary;
    m_wholeSent = false;
    m_source.forget();
    if (m_state.CurrentCommand != "TYPE" && m_state.CurrentType != Binary) {
        m_state.CurrentType = Binary;
        m_state.PendingCommand = Command;
        m_state.PendingArgument = Argument;
        m_state.CurrentCommand = "TYPE";
        sendLine(Binary != 0 ? "TYPE I" : "TYPE A");
        return;
    }
    m_state.PendingArgument = Argument;
    if (!transfers) {
        sendLine(Command);
        return;
    }
    m_receives = bringsData(m_state.CurrentCommand);
    CloseDataConnection();
    m_state.PendingCommand = Command;
    m_heldCode = 0;
    m_lineMode = Binary == 0;
    if (m_state.PassiveMode == 0) {
        listen();
    } else {
        m_state.CurrentCommand = m_wire.isIPv6() ? "EPSV" : "PASV";
        sendLine(m_state.CurrentCommand);
    }
}

void modFTP::listen() {
    const FtpEndpoint here = m_wire.listenData();
    m_state.CurrentCommand = "PORT";
    const std::string port = std::to_string(here.port);
    sendLine(m_wire.isIPv6() ? "EPRT |2|" + here.address + "|" + port + "|"
                             : "PORT " + replaceAll(here.address, ".", ",") + "," +
                                   std::to_string(here.port / 256) + "," + std::to_string(here.port & 255));
}

void modFTP::CloseDataConnection() {
    m_watcher.trace("CloseDataConnection");
    closeFile();
    m_dataOpen = m_sending = false;
    m_data.clear();
    m_wire.closeData();
}

void modFTP::giveUp(std::int16_t code, std::string_view why) {
    if (!why.empty()) m_lastReply = why;
    m_owed = m_unanswered;
    if (m_dataOpen) m_wire.resetData();
    CloseDataConnection();
    m_stage = Stage::None;
    m_state.PendingCommand.clear();
    m_state.CurrentCommand.clear();
    m_state.ReplyCode = code;
}

void modFTP::endCommand(std::int16_t code) {
    m_stage = Stage::None;
    m_state.ReplyCode = code;
    later(FtpEvent::CommandEnded);
}

// The command ends here: no reply of the server will end it.
void modFTP::failCommand(std::string_view words) {
    m_lastReply = words;
    show(words);
    giveUp(kFtpNoReply);
    later(FtpEvent::CommandEnded);
}

// ---- Replies

void modFTP::controlReceived(std::string_view bytes) {
    try {
        takeReplies(bytes);
    } catch (const Failure& failure) {
        failCommand("Error Receiving: " + std::to_string(failure.number()) + ": " + failure.what());
    }
    fire();
}

void modFTP::takeReplies(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        const std::string_view part = bytes.substr(0, end);
        if (m_control.size() < kLongestLine) m_control.append(left(part, kLongestLine - m_control.size()));
        if (end == npos) return;
        bytes.remove_prefix(end + 1);
        std::string line = std::exchange(m_control, {});
        if (line.ends_with('\r')) line.pop_back();
        // What comes unencrypted behind a 234 is not the server's.
        if (m_login == Login::Handshake) continue;
        dsSocket1_Receive(line);
        fire();
    }
}

// True for a reply to a command that nobody waits for any more.
bool modFTP::isOwed(int code) {
    const bool owed = m_owed > 0 && code != 221 && code != 421;
    if (code >= 200) {
        m_owed = std::max(m_owed - 1, 0);
        m_unanswered = std::max(m_unanswered - 1, 0);
    }
    return owed;
}

void modFTP::dsSocket1_Receive(std::string_view line) {
    m_state.LastError.clear();
    const std::size_t blank = std::min(line.find(' '), line.size());
    const int code = leadingInteger(line.substr(0, blank));
    const std::string_view message = line.substr(std::min(blank + 1, line.size()));
    if (m_lines.goesOn(line) || isOwed(code)) {
        show(line);
        return;
    }
    if (code > 0) m_lastReply = escapeControlCharacters(masked(line));
    if ((code == 125 || code == 150) && isUpload(m_state.PendingCommand) && m_stage == Stage::Sent &&
        !m_sending && !m_wholeSent) {
        beginUpload(line);
        return;
    }
    act(code, line, message);
    logInStep(code);
    afterTable(code, message);
    if (code != 503) show(line);
}

void modFTP::act(int code, std::string_view line, std::string_view message) {
    switch (code) {
        case 200:
            if (m_state.CurrentCommand == "TYPE") {
                typeReply(line);
            } else if (m_state.CurrentCommand == "PORT") {
                show("Sending command: " + m_state.PendingCommand);
                sendPending();
            }
            break;
        case 202:
            CloseDataConnection();
            endCommand(202);
            break;
        case 221:
        case 421:
            disconnected(static_cast<std::int16_t>(code));
            break;
        case 226:
            transferEnded(226);
            break;
        case 227:
            if (m_state.CurrentCommand == "PASV" && m_stage == Stage::SettingUp) passiveReply(message);
            break;
        case 229:
            if (m_state.CurrentCommand == "EPSV" && m_stage == Stage::SettingUp)
                extendedPassiveReply(message);
            break;
        case 250:
            m_stage == Stage::None ? folderChanged() : transferEnded(250);
            break;
        case 257:
            pathReply(line);
            break;
        default:
            break;
    }
}

void modFTP::afterTable(int code, std::string_view message) {
    if (code < 300 || code > 599) return;
    if (code != 503 && code != 550) m_state.LastError = masked(message);
    later(FtpEvent::Released);
    if (code == 421) return;
    if (m_state.CurrentCommand == "TYPE") m_state.CurrentType = 1;
    if (code >= 400 && m_dataOpen) CloseDataConnection();
    endCommand(static_cast<std::int16_t>(code));
}

// The login goes on from one reply to the next. A 331 is answered with the password in any state, but never
// before the encryption that was asked for.
void modFTP::logInStep(int code) {
    if (code == 331 && (!m_tls || m_encrypted)) {
        sendLine("PASS " + m_state.Password);
        return;
    }
    if (m_login == Login::None || m_login == Login::Handshake || m_login == Login::Done) return;
    if (code >= 400) {
        if (m_login == Login::Auth) show("The server does not offer TLS.");
        logInEnded(false);
    } else if (m_login == Login::Greeting && code == 220) {
        m_login = m_tls ? Login::Auth : Login::User;
        sendLine(m_tls ? "AUTH TLS" : "USER " + m_state.UserName);
    } else if (m_login == Login::Auth && code == 234) {
        m_login = Login::Handshake;
        m_wire.encryptControl();
    } else if (m_login == Login::User && code == 230) {
        if (!m_tls) {
            logInEnded(true);
            return;
        }
        m_login = Login::BufferSize;
        sendLine("PBSZ 0");
    } else if (m_login == Login::BufferSize && code == 200) {
        m_login = Login::Protection;
        sendLine("PROT P");
    } else if (m_login == Login::Protection && code == 200) {
        logInEnded(true);
    }
}

void modFTP::logInEnded(bool loggedIn) {
    m_login = loggedIn ? Login::Done : Login::None;
    m_state.LoggedIn = m_state.Connected = loggedIn ? -1 : 0;
    later(loggedIn ? FtpEvent::LoggedIn : FtpEvent::LoginFailed);
}

void modFTP::controlEncrypted() {
    if (m_login != Login::Handshake) return;
    m_encrypted = true;
    m_control.clear();
    m_login = Login::User;
    sendLine("USER " + m_state.UserName);
}

// Whatever type the server says it is in is the type from here on.
void modFTP::typeReply(std::string_view line) {
    if (containsNoCase(line, "SET TO A")) m_state.RequestedBinary = 0;
    if (containsNoCase(line, "SET TO I")) m_state.RequestedBinary = -1;
    m_state.CurrentType = m_state.RequestedBinary;
    if (m_state.PendingCommand.empty()) return;
    const std::string command = m_state.PendingCommand;
    const std::string argument = m_state.PendingArgument;
    SendFTPCommand(command, m_state.RequestedBinary, argument);
}

void modFTP::folderChanged() {
    CloseDataConnection();
    if (!m_requestedPath.empty()) m_state.RemotePath = m_requestedPath;
    later(FtpEvent::PathChanged);
    endCommand(250);
    later(FtpEvent::FollowPath);
}

void modFTP::pathReply(std::string_view line) {
    const std::string_view path = folderOfReply(line);
    refuseControlBytes(path, "The server's folder");
    m_state.RemotePath = path;
    later(FtpEvent::PathChanged);
    endCommand(257);
    later(FtpEvent::FollowPath);
}

void modFTP::disconnected(std::int16_t code) {
    CloseDataConnection();
    m_login = Login::None;
    m_wire.closeControl();
    m_unanswered = m_owed = 0;
    m_state.Connected = 0;
    m_state.LoggedIn = 0;
    if (code == 221) show("Disconnect !");
    later(FtpEvent::Disconnected);
    endCommand(code);
}

void modFTP::controlClosed(std::string_view why) {
    if (m_login == Login::None) return;
    m_lastReply = why;
    show(m_lastReply);
    disconnected(kFtpNoReply);
    fire();
}

// ---- The data connection

void modFTP::passiveReply(std::string_view message) {
    std::optional<FtpEndpoint> where = passiveEndpoint(message);
    if (!where) {
        failCommand(kBadPassiveReply);
        return;
    }
    const std::string server = m_wire.serverAddress();
    if (where->address != server && !m_allowForeign) {
        show("The server names " + where->address + " for the data; the data connection goes to " + server +
             ", as the control connection does.");
        where->address = server;
    }
    m_dataPeer = *std::move(where);
    m_wire.connectData(m_dataPeer);
}

void modFTP::extendedPassiveReply(std::string_view message) {
    const std::optional<std::uint16_t> port = extendedPassivePort(message);
    if (!port) {
        failCommand(kBadPassiveReply);
        return;
    }
    m_dataPeer = {m_wire.serverAddress(), *port};
    m_wire.connectData(m_dataPeer);
}

void modFTP::dataConnected() {
    if (m_stage != Stage::SettingUp) return;
    m_state.DataBytes = 0;
    m_dataOpen = true;
    const std::string port = std::to_string(m_dataPeer.port);
    show("Data connection established: " + port);
    show("Passive Mode Connect Successful. Port:" + port + " Address: " + m_dataPeer.address);
    sendPending();
}

void modFTP::dataAccepted(int socket) {
    show("Accept request received");
    m_state.DataBytes = 0;
    m_dataOpen = true;
    show("Data connection established: " + std::to_string(socket));
}

void modFTP::dataFailed(std::string_view error) {
    if (m_stage != Stage::SettingUp) return;
    dataError(error);
    failCommand("Passive Mode Connect Failed. Port:" + std::to_string(m_dataPeer.port) +
                " Address: " + m_dataPeer.address);
    fire();
}

// The server's reply ends the command.
void modFTP::dataError(std::string_view error) {
    show("Socket21) Error: " + std::string(error));
    m_sending = false;
    closeFile();
}

void modFTP::dataReceived(std::string_view bytes) {
    if (!m_dataOpen) return;
    m_watcher.trace("RD: " + std::to_string(bytes.size()) +
                    " bytes. First 10 = " + escapeControlCharacters(left(bytes, 10)));
    m_state.DataBytes += static_cast<std::int64_t>(bytes.size());
    if (!m_lineMode) {
        takeData(bytes);
        fire();
        return;
    }
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        const std::string_view part = bytes.substr(0, end);
        if (m_data.empty() && end != npos) {
            takeData(part);
        } else {
            if (m_data.size() < kLongestLine) m_data.append(left(part, kLongestLine - m_data.size()));
            if (end == npos) break;
            takeData(std::exchange(m_data, {}));
        }
        bytes.remove_prefix(end + 1);
    }
    fire();
}

// A line in line mode, else a block.
void modFTP::takeData(std::string_view bytes) {
    if (m_lineMode && bytes.ends_with('\r')) bytes.remove_suffix(1);
    const std::string word = wordOf(m_state.PendingCommand);
    if (word == "RETR")
        saveData(bytes);
    else if (word == "LIST" || word == "MLSD")
        m_watcher.addRemoteDir(bytes);
    else
        show(bytes);
}

void modFTP::saveData(std::string_view bytes) {
    const std::string& path = m_state.PendingArgument;
    if (m_file < 0 && path.empty()) return;
    if (m_file < 0) m_file.reset(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    std::string block(bytes);
    if (m_lineMode) block += '\n';
    for (std::string_view rest = block; !rest.empty();) {
        const ssize_t written = m_file < 0 ? -1 : ::write(m_file, rest.data(), rest.size());
        if (written < 0 && m_file >= 0 && errno == EINTR) continue;
        if (written < 0) {
            failCommand(fileFailure(path, errno).what());
            return;
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
}

void modFTP::dataClosed() {
    if (!m_dataOpen) return;
    if (!m_data.empty()) takeData(std::exchange(m_data, {}));
    m_dataOpen = m_sending = false;
    show("Connection Closed. Total bytes received = " + std::to_string(m_state.DataBytes));
    m_state.ReplyCode = -1;
    closeFile();
    m_state.PendingCommand.clear();
    m_state.DataBytes = -1;
    if (m_heldCode != 0) transferEnded(std::exchange(m_heldCode, std::int16_t{0}));
    fire();
}

// Data that comes in ends with its connection as well as with the reply. A reply before the command was sent
// ends nothing.
void modFTP::transferEnded(std::int16_t code) {
    if (m_stage == Stage::SettingUp) return;
    if (m_receives && m_dataOpen) {
        m_heldCode = code;
        return;
    }
    m_state.DataBytes = 0;
    if (m_sending) CloseDataConnection();
    endCommand(code);
}

// ---- Sending a file

void modFTP::beginUpload(std::string_view line) {
    show(line);
    m_source.open(m_state.PendingArgument, m_state.RequestedBinary == 0);
    if (fileSize() == 0) {
        failCommand(kBadFile);
        return;
    }
    show("Sending " + std::to_string(fileSize()) + " bytes");
    m_sending = true;
    later(FtpEvent::SendingBegan);
    m_wire.beginSending();
}

std::string_view modFTP::nextBlock() {
    if (!m_sending) return {};
    try {
        return m_source.nextBlock();
    } catch (const Failure& failure) {
        failCommand(failure.what());
        fire();
        return {};
    }
}

void modFTP::fileSent() {
    if (!m_sending) return;
    m_wholeSent = true;
    show("File Sent");
    CloseDataConnection();
}

}  // namespace relay

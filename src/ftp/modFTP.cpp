// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/modFTP.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "ftp/FtpLogin.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace relay {

namespace {

constexpr std::size_t kLongestLine = 8192;  // of a server; what is longer is cut
constexpr std::string_view kBadFile = "Bad File Name. Transfer Aborted";
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

std::optional<std::uint16_t> numberFrom(std::string_view text, unsigned most) {
    unsigned number = 0;
    text = trim(text);
    const auto [rest, error] = std::from_chars(text.begin(), text.end(), number);
    if (error != std::errc() || rest != text.end() || number > most) return std::nullopt;
    return static_cast<std::uint16_t>(number);
}

// "h1,h2,h3,h4,p1,p2" between the parentheses of a 227.
std::optional<FtpEndpoint> endpointFrom(std::string_view message) {
    const std::size_t open = message.find('(');
    if (open == npos || message.find(',') == npos) return std::nullopt;
    message.remove_prefix(open + 1);
    message = message.substr(0, message.find(')'));
    std::array<std::uint16_t, 6> fields{};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t comma = std::min(message.find(','), message.size());
        if ((i + 1 == fields.size()) != (comma == message.size())) return std::nullopt;
        const auto number = numberFrom(message.substr(0, comma), 255);
        if (!number) return std::nullopt;
        fields[i] = *number;
        message.remove_prefix(std::min(comma + 1, message.size()));
    }
    FtpEndpoint where;
    for (std::size_t i = 0; i < 4; ++i) where.address += (i == 0 ? "" : ".") + std::to_string(fields[i]);
    where.port = static_cast<std::uint16_t>(fields[4] * 256 + fields[5]);
    if (where.port == 0) return std::nullopt;
    return where;
}

// The port of a 229: "(|||40001|)", with any character as the bar.
std::optional<std::uint16_t> extendedPort(std::string_view message) {
    const std::size_t open = message.find('(');
    if (open == npos || message.size() < open + 6) return std::nullopt;
    message.remove_prefix(open + 1);
    const char bar = message[0];
    if (message[1] != bar || message[2] != bar) return std::nullopt;
    const std::size_t end = message.find(bar, 3);
    if (end == npos) return std::nullopt;
    const auto port = numberFrom(message.substr(3, end - 3), 65535);
    return port && *port > 0 ? port : std::nullopt;
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
    m_openReply = m_unanswered = m_owed = 0;
    m_heldCode = 0;
    m_requestedPath.clear();
    m_control.clear();
    m_lastReply.clear();
    m_data.clear();
    m_file.reset();
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
    m_sent = m_size = 0;
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
    m_file.reset();
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

// True for a line of a reply that goes on after it.
bool modFTP::goesOn(std::string_view line) {
    const bool coded = line.size() >= 3 && line.substr(0, 3).find_first_not_of("0123456789") == npos;
    const int code = coded ? leadingInteger(line.substr(0, 3)) : 0;
    if (m_openReply != 0) {
        if (code == m_openReply && (line.size() == 3 || line[3] == ' ')) m_openReply = 0;
    } else if (coded && line.size() > 3 && line[3] == '-') {
        m_openReply = code;
    }
    return m_openReply != 0;
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
    if (goesOn(line) || isOwed(code)) {
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
    std::string_view path = line.substr(std::min<std::size_t>(4, line.size()));
    path = path.substr(0, path.find(' '));
    if (path.starts_with('"')) path.remove_prefix(1);
    if (path.ends_with('"')) path.remove_suffix(1);
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
    std::optional<FtpEndpoint> where = endpointFrom(message);
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
    const std::optional<std::uint16_t> port = extendedPort(message);
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
    m_file.reset();
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
    m_file.reset();
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
    const std::string& path = m_state.PendingArgument;
    m_file.reset(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (m_file < 0 || ::fstat(m_file, &status) != 0) throw fileFailure(path, errno);
    if (!S_ISREG(status.st_mode)) throw fileFailure(path, "Not a regular file", 75);
    m_size = m_left = status.st_size;
    if (m_size == 0) {
        failCommand(kBadFile);
        return;
    }
    show("Sending " + std::to_string(m_size) + " bytes");
    ::posix_fadvise(m_file, 0, 0, POSIX_FADV_SEQUENTIAL);
    m_block.resize(kChunk * kReads);
    m_lastOfText = '\n';
    m_sending = true;
    later(FtpEvent::SendingBegan);
    m_wire.beginSending();
}

// Up to kReads reads of the file; 0 bytes at its end. Throws Failure.
std::size_t modFTP::readFile() {
    std::size_t filled = 0;
    for (int reads = 0; reads < kReads && m_left > 0;) {
        const std::size_t most = std::min(static_cast<std::size_t>(m_left), kChunk);
        const ssize_t got = ::read(m_file, m_block.data() + filled, most);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw fileFailure(m_state.PendingArgument, errno);
        if (got == 0) throw fileFailure(m_state.PendingArgument, "It became shorter while it was sent", 75);
        m_left -= got;
        filled += static_cast<std::size_t>(got);
        ++reads;
    }
    return filled;
}

std::string_view modFTP::nextBlock() {
    if (!m_sending) return {};
    try {
        while (true) {
            const std::size_t got = readFile();
            m_sent += static_cast<std::int64_t>(got);
            const std::string_view block(m_block.data(), got);
            if (m_state.RequestedBinary != 0) return block;
            const std::string_view text = textBlock(block);
            if (got == 0 || !text.empty()) return text;
        }
    } catch (const Failure& failure) {
        failCommand(failure.what());
        fire();
        return {};
    }
}

// Each line with CR LF, the last one, too.
std::string_view modFTP::textBlock(std::string_view block) {
    m_text.clear();
    for (const char c : block) {
        const char before = std::exchange(m_lastOfText, c);
        if (before == '\r' && c == '\n') continue;
        if (c == '\r' || c == '\n')
            m_text += "\r\n";
        else
            m_text += c;
    }
    if (block.empty() && m_lastOfText != '\n' && m_lastOfText != '\r') m_text += "\r\n";
    if (block.empty()) m_lastOfText = '\n';
    return m_text;
}

void modFTP::fileSent() {
    if (!m_sending) return;
    m_wholeSent = true;
    show("File Sent");
    CloseDataConnection();
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace relay {

// A dotted address or IPv6 address, and a port.
struct FtpEndpoint final {
    std::string address;
    std::uint16_t port = 0;
};

// What the protocol asks of the sockets: a control connection, a listener (data socket 0) and a data
// connection (data socket 1). The answers come as calls of modFTP.
class FtpWire {
  public:
    virtual ~FtpWire() = default;

    virtual void sendControl(std::string_view line) = 0;  // CR LF included
    virtual void closeControl() = 0;
    // Begins TLS on the control connection; modFTP::controlEncrypted follows, or the connection fails.
    virtual void encryptControl() = 0;
    // The server's address on the control connection.
    virtual std::string serverAddress() const = 0;
    virtual bool isIPv6() const = 0;

    // Listens on any free port at the control connection's own address. Throws Failure.
    virtual FtpEndpoint listenData() = 0;
    // modFTP::dataConnected or dataFailed follows.
    virtual void connectData(const FtpEndpoint& where) = 0;
    // Takes modFTP::nextBlock until it is empty; modFTP::fileSent follows when all has gone.
    virtual void beginSending() = 0;
    // Closes both data sockets after what was written to them has gone; no event follows.
    virtual void closeData() = 0;
    // Breaks the data connection, so that the server does not take what it has for a whole file.
    virtual void resetData() = 0;
};

enum class FtpEvent {
    LoggedIn,
    LoginFailed,   // refused, or TLS not to be had: the control connection is no longer of use
    CommandEnded,  // ReplyCode is set
    Released,      // a refusal: the pointer and the buttons return to normal
    PathChanged,   // RemotePath
    FollowPath,    // Timer2 is to run
    SendingBegan,  // a file's first block is about to go
    Disconnected,  // by 221 or 421, or because the server closed the connection
};

// What the protocol has to say.
class FtpWatcher {
  public:
    virtual ~FtpWatcher() = default;

    virtual void DisplayMessage(std::string_view text) = 0;
    virtual void trace(std::string_view text) = 0;         // to the diagnostic log
    virtual void addRemoteDir(std::string_view line) = 0;  // a line of a listing
    virtual void happened(FtpEvent event) = 0;
};

}  // namespace relay

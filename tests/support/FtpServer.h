// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QSslConfiguration>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QSslSocket;
class QTcpServer;

namespace relay::test {

// An FTP server on 127.0.0.1 and a random port, scripted by a test. It lives on the event loop of the test.
// Without a script it takes any login, stores what it is sent, and lists `listing`.
class FtpServer final : public QObject {
  public:
    explicit FtpServer(const char* address = "127.0.0.1");
    ~FtpServer() override;

    std::uint16_t port() const;
    std::string host() const;  // "127.0.0.1:port", as a login has it
    // Offers AUTH TLS, with two PEM files.
    void useTls(const std::string& certificateFile, const std::string& keyFile);

    // Answers a command instead of the server. The text is sent as it is; the rest of the work is not done.
    // Nothing: the server does as usual.
    std::function<std::optional<std::string>(const std::string& command)> lie;
    bool bytewise = false;    // replies go out byte by byte, each in a turn of the event loop of its own
    bool silentData = false;  // data connections are taken, and nothing is sent or read on them
    std::string greeting = "220 Ready\r\n";
    std::string folder = "/htdocs";
    std::string listing;  // of every folder, lines with CR LF

    std::vector<std::string> commands;         // as received, passwords included
    std::map<std::string, std::string> files;  // by path
    int encryptedData = 0;                     // data connections with TLS

    void say(const std::string& text);  // on the control connection
    void hangUp();                      // closes the control connection

  private:
    class Listener;

    void serve(QSslSocket* socket);
    void read();
    void perform(const std::string& command);
    void transfer();
    void takeData(qintptr descriptor);
    std::string passive(bool extended);

    std::unique_ptr<Listener> m_control;
    std::unique_ptr<Listener> m_passive;
    QPointer<QSslSocket> m_client;
    QPointer<QSslSocket> m_data;
    QSslConfiguration m_tls;
    bool m_hasTls = false;
    bool m_protected = false;
    std::string m_pending;  // the data command that waits for its connection
    std::string m_received;
};

}  // namespace relay::test

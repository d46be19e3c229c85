// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FtpServer.h"

#include "core/FileStore.h"
#include "core/Text.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>

#include <stdexcept>
#include <utility>

namespace relay::test {

class FtpServer::Listener final : public QTcpServer {
  public:
    Listener(const QHostAddress& address, std::function<void(qintptr)> taken) : m_taken(std::move(taken)) {
        if (!listen(address)) throw std::runtime_error("no server: " + errorString().toStdString());
    }

  protected:
    void incomingConnection(qintptr descriptor) override { m_taken(descriptor); }

  private:
    std::function<void(qintptr)> m_taken;
};

FtpServer::FtpServer(const char* address) {
    m_control =
        std::make_unique<Listener>(QHostAddress(QString::fromLatin1(address)), [this](qintptr descriptor) {
            auto* const socket = new QSslSocket(this);
            socket->setSocketDescriptor(descriptor);
            serve(socket);
        });
}

FtpServer::~FtpServer() = default;

std::uint16_t FtpServer::port() const {
    return m_control->serverPort();
}

std::string FtpServer::host() const {
    const std::string address = m_control->serverAddress().toString().toStdString();
    return (address.find(':') == npos ? address : "[" + address + "]") + ":" + std::to_string(port());
}

void FtpServer::useTls(const std::string& certificateFile, const std::string& keyFile) {
    const auto bytesOf = [](const std::string& file) { return QByteArray::fromStdString(readFile(file)); };
    m_tls = QSslConfiguration::defaultConfiguration();
    m_tls.setLocalCertificate(QSslCertificate(bytesOf(certificateFile)));
    m_tls.setPrivateKey(QSslKey(bytesOf(keyFile), QSsl::Ec));
    m_tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_hasTls = true;
}

void FtpServer::serve(QSslSocket* socket) {
    m_client = socket;
    m_protected = false;
    m_received.clear();
    connect(socket, &QIODevice::readyRead, this, &FtpServer::read);
    say(greeting);
}

void FtpServer::say(const std::string& text) {
    if (m_client == nullptr) return;
    if (!bytewise) {
        m_client->write(QByteArray::fromStdString(text));
        m_client->flush();
        return;
    }
    for (const char byte : text) {
        m_client->write(&byte, 1);
        m_client->flush();
        QCoreApplication::processEvents();
        if (m_client == nullptr) return;
    }
}

void FtpServer::hangUp() {
    if (m_client != nullptr) m_client->disconnectFromHost();
}

void FtpServer::read() {
    if (m_client == nullptr) return;
    m_received += m_client->readAll().toStdString();
    for (std::size_t end = m_received.find("\r\n"); end != npos; end = m_received.find("\r\n")) {
        const std::string command = m_received.substr(0, end);
        m_received.erase(0, end + 2);
        commands.push_back(command);
        perform(command);
    }
}

void FtpServer::perform(const std::string& command) {
    if (lie) {
        if (const std::optional<std::string> answer = lie(command)) {
            say(*answer);
            return;
        }
    }
    const std::string word = command.substr(0, command.find(' '));
    const std::string argument = command.size() > word.size() ? command.substr(word.size() + 1) : "";
    if (word == "USER") {
        say("331 Password required\r\n");
    } else if (word == "PASS") {
        say("230 Logged in\r\n");
    } else if (word == "AUTH" && m_hasTls) {
        say("234 Go on\r\n");
        m_client->setSslConfiguration(m_tls);
        m_client->startServerEncryption();
    } else if (word == "PBSZ") {
        say("200 PBSZ=0\r\n");
    } else if (word == "PROT") {
        m_protected = true;
        say("200 Protected\r\n");
    } else if (word == "PWD") {
        say("257 \"" + folder + "\" is the current directory\r\n");
    } else if (word == "CWD") {
        folder = argument;
        say("250 Directory changed\r\n");
    } else if (word == "TYPE") {
        say("200 Type set to " + argument + "\r\n");
    } else if (word == "PASV" || word == "EPSV") {
        say(passive(word == "EPSV"));
    } else if (word == "LIST" || word == "MLSD" || word == "STOR") {
        m_pending = command;
        say("150 Here it comes\r\n");
        transfer();
    } else if (word == "QUIT") {
        say("221 Goodbye\r\n");
        hangUp();
    } else {
        say("502 Not here\r\n");
    }
}

std::string FtpServer::passive(bool extended) {
    m_data = nullptr;
    m_pending.clear();
    m_passive = std::make_unique<Listener>(m_control->serverAddress(),
                                           [this](qintptr descriptor) { takeData(descriptor); });
    const int port = m_passive->serverPort();
    if (extended) return "229 Entering Extended Passive Mode (|||" + std::to_string(port) + "|)\r\n";
    return "227 Entering Passive Mode (127,0,0,1," + std::to_string(port / 256) + "," +
           std::to_string(port % 256) + ").\r\n";
}

void FtpServer::takeData(qintptr descriptor) {
    m_data = new QSslSocket(this);
    m_data->setSocketDescriptor(descriptor);
    if (silentData) return;
    if (m_protected) {
        connect(m_data, &QSslSocket::encrypted, this, [this] {
            ++encryptedData;
            transfer();
        });
        m_data->setSslConfiguration(m_tls);
        m_data->startServerEncryption();
    }
    transfer();
}

// Once both the command and its connection are there.
void FtpServer::transfer() {
    if (m_data == nullptr || m_pending.empty() || silentData || (m_protected && !m_data->isEncrypted()))
        return;
    QSslSocket* const data = m_data;
    if (!m_pending.starts_with("STOR")) {
        data->write(QByteArray::fromStdString(listing));
        data->disconnectFromHost();
        say("226 Transfer complete\r\n");
        m_pending.clear();
        return;
    }
    const std::string name = m_pending.substr(5);
    m_pending.clear();
    const std::string path = name.starts_with('/') ? name : folder + "/" + name;
    const auto take = [this, data, path] { files[path] += data->readAll().toStdString(); };
    files[path].clear();
    connect(data, &QIODevice::readyRead, this, take);
    connect(data, &QAbstractSocket::disconnected, this, [this, data, take] {
        take();
        const bool broken = data->error() != QAbstractSocket::RemoteHostClosedError;
        say(broken ? "426 Broken\r\n" : "226 Stored\r\n");
        data->deleteLater();
    });
    take();
}

}  // namespace relay::test

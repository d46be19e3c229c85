// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TlsServer.h"

#include "core/FileStore.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>

#include <stdexcept>
#include <utility>

namespace relay::test {

namespace {
QByteArray bytesOf(const std::string& file) {
    return QByteArray::fromStdString(readFile(file));
}
}  // namespace

TlsServer::TlsServer(const std::string& certificateFile, const std::string& keyFile, Answer answer)
    : m_answer(std::move(answer)), m_server(new QSslServer) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(bytesOf(certificateFile)));
    configuration.setPrivateKey(QSslKey(bytesOf(keyFile), QSsl::Ec));
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_server->setSslConfiguration(configuration);
    if (!m_server->listen(QHostAddress::LocalHost))
        throw std::runtime_error("no server: " + m_server->errorString().toStdString());
    m_port = m_server->serverPort();
    m_server->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_server, &QObject::deleteLater);
    QObject::connect(m_server, &QTcpServer::pendingConnectionAvailable, m_server, [this] { serve(); });
    m_thread.start();
}

TlsServer::~TlsServer() {
    m_thread.quit();
    m_thread.wait();
}

void TlsServer::serve() {
    QTcpSocket* const socket = m_server->nextPendingConnection();
    if (socket == nullptr) return;
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    const auto read = [this, socket] {
        const QByteArray head = socket->peek(65536);
        if (!head.contains("\r\n\r\n")) return;
        socket->readAll();
        ++m_requests;
        socket->write(QByteArray::fromStdString(m_answer(head.split(' ').at(1).toStdString())));
        socket->disconnectFromHost();
    };
    QObject::connect(socket, &QTcpSocket::readyRead, socket, read);
    read();
}

std::string TlsServer::url(std::string_view path) const {
    return "https://127.0.0.1:" + std::to_string(m_port) + std::string(path);
}

}  // namespace relay::test

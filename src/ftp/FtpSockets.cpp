// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpSockets.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/ScreenText.h"
#include "ftp/modFTP.h"
#include "transport/Authorities.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QScopedValueRollback>
#include <QSslCertificate>
#include <QSslSocket>
#include <QTcpServer>
#include <QTimer>

#include <sys/socket.h>
#include <utility>

namespace relay {

namespace {

constexpr int kBlocksPerTurn = 8;            // then other events have their turn
constexpr qint64 kQueuedBytes = 512 * 1024;  // written but not yet taken by the system
constexpr std::size_t kReadBytes = 64 * 1024;
constexpr int kLingerMilliseconds = 10'000;  // for what is left of a closed connection

std::string errorOf(const QAbstractSocket& socket) {
    const auto* const encrypted = qobject_cast<const QSslSocket*>(&socket);
    const bool refused = encrypted != nullptr && !encrypted->sslHandshakeErrors().isEmpty();
    return (refused ? "The server's certificate is not accepted: " : "") + fromScreen(socket.errorString());
}

QList<QSslCertificate> certificatesIn(const std::string& file) {
    return QSslCertificate::fromData(QByteArray::fromStdString(readFile(file)));
}

QList<QSslCertificate> certificates(const Authorities& authorities) {
    if (!authorities.file.empty()) return certificatesIn(authorities.file);
    QList<QSslCertificate> all;
    for (std::size_t from = 0; from <= authorities.folder.size();) {
        const std::size_t end = std::min(authorities.folder.find(':', from), authorities.folder.size());
        const std::string folder = authorities.folder.substr(from, end - from);
        std::error_code unreadable;
        for (const std::string& name : listFolder(folder, unreadable).files)
            all += certificatesIn(folder + "/" + name);
        from = end + 1;
    }
    return all;
}

// A session of TLS 1.2 can be resumed as often as there are files, and after the handshake the server sends
// nothing that would be unread when a data connection closes: with 1.3 its tickets arrive then, and a server
// whose data connection is closed over unread bytes reports the file as failed.
QSslConfiguration tlsConfiguration() {
    const Authorities authorities = Authorities::fromEnvironment(environmentVariable);
    authorities.check();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(certificates(authorities));
    configuration.setProtocol(QSsl::TlsV1_2);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    configuration.setSslOption(QSsl::SslOptionDisableSessionPersistence, false);
    return configuration;
}

// The other end is to see a broken connection, not the end of a file.
void breakOff(QAbstractSocket& socket) {
    const linger now{.l_onoff = 1, .l_linger = 0};
    const auto descriptor = static_cast<int>(socket.socketDescriptor());
    if (descriptor >= 0) ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    socket.abort();
}

// Lets the socket send what it has, and then go.
void letGo(QTcpSocket* socket, QObject* owner) {
    QObject::disconnect(socket, nullptr, owner, nullptr);
    socket->setParent(owner);
    socket->disconnectFromHost();
    if (socket->state() == QAbstractSocket::UnconnectedState) {
        socket->deleteLater();
        return;
    }
    QObject::connect(socket, &QAbstractSocket::disconnected, socket, &QObject::deleteLater);
    QTimer::singleShot(kLingerMilliseconds, socket, [socket] {
        socket->abort();
        socket->deleteLater();
    });
}

void drop(QTcpSocket* socket, QObject* owner) {
    QObject::disconnect(socket, nullptr, owner, nullptr);
    breakOff(*socket);
    socket->deleteLater();  // one of its signals may be running
}

}  // namespace

// Hands each connection on by its descriptor, so that it can become a socket with TLS.
class FtpSockets::Listener final : public QTcpServer {
  public:
    explicit Listener(FtpSockets& owner) : m_owner(owner) {}

  protected:
    void incomingConnection(qintptr descriptor) override { m_owner.accept(descriptor); }

  private:
    FtpSockets& m_owner;
};

FtpSockets::FtpSockets(QObject* parent) : QObject(parent), m_block(kReadBytes) {}

FtpSockets::~FtpSockets() {
    abort();
}

// ---- Control connection

void FtpSockets::open(const FtpHost& host) {
    abort();
    m_host = toScreen(host.name);
    m_control = new QSslSocket(this);
    m_control->setProxy(QNetworkProxy::NoProxy);
    connect(m_control, &QAbstractSocket::connected, this, [this] {
        m_control->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_control->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
        Q_EMIT connected();
    });
    connect(m_control, &QIODevice::readyRead, this, [this] {
        const QByteArray bytes = m_control->readAll();
        m_ftp->controlReceived({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    });
    connect(m_control, &QSslSocket::encrypted, this, [this] {
        useSession();
        m_ftp->controlEncrypted();
    });
    connect(m_control, &QAbstractSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error == QAbstractSocket::RemoteHostClosedError &&
            m_control->state() != QAbstractSocket::UnconnectedState)
            return;
        controlFailed(error == QAbstractSocket::RemoteHostClosedError ? "" : errorOf(*m_control));
    });
    connect(m_control, &QAbstractSocket::disconnected, this, [this] { controlFailed({}); });
    m_control->connectToHost(m_host, host.port);
}

void FtpSockets::controlFailed(const std::string& error) {
    if (m_control == nullptr) return;
    closeData();
    drop(std::exchange(m_control, nullptr), this);
    Q_EMIT failed(error);
}

void FtpSockets::abort() {
    resetData();
    if (m_control != nullptr) drop(std::exchange(m_control, nullptr), this);
}

bool FtpSockets::isOpen() const {
    return m_control != nullptr && m_control->state() == QAbstractSocket::ConnectedState;
}

void FtpSockets::sendControl(std::string_view line) {
    const bool sent =
        m_control != nullptr &&
        m_control->write(line.data(), static_cast<qint64>(line.size())) == static_cast<qint64>(line.size());
    if (!sent) Q_EMIT sendFailed(m_control == nullptr ? "The connection is closed" : errorOf(*m_control));
    if (sent) m_control->flush();
}

void FtpSockets::closeControl() {
    if (m_control != nullptr) letGo(std::exchange(m_control, nullptr), this);
}

void FtpSockets::encryptControl() {
    if (m_control == nullptr) return;
    try {
        m_control->setSslConfiguration(tlsConfiguration());
    } catch (const Failure& failure) {
        controlFailed(failure.what());
        return;
    }
    m_control->setPeerVerifyName(m_host);
    m_control->startClientEncryption();
}

// Data connections resume the session of the control connection, whose certificate was checked. To be that
// certificate is their own check, and no authority is read for each file.
void FtpSockets::useSession() {
    m_configuration = m_control->sslConfiguration();
    m_configuration.setCaCertificates({});
    m_configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_certificate = m_control->peerCertificate();
}

std::string FtpSockets::serverAddress() const {
    if (m_control == nullptr) return {};
    const QHostAddress address = m_control->peerAddress();
    bool mapped = false;
    const quint32 four = address.toIPv4Address(&mapped);
    return fromScreen((mapped ? QHostAddress(four) : address).toString());
}

bool FtpSockets::isIPv6() const {
    return serverAddress().find(':') != std::string::npos;
}

// ---- Data connection

FtpEndpoint FtpSockets::listenData() {
    closeData();
    m_listener = new Listener(*this);
    m_listener->setParent(this);
    const QHostAddress here = m_control == nullptr ? QHostAddress() : m_control->localAddress();
    if (!m_listener->listen(here)) throw Failure(fromScreen(m_listener->errorString()));
    bool mapped = false;
    const quint32 four = here.toIPv4Address(&mapped);
    return {fromScreen((mapped ? QHostAddress(four) : here).toString()), m_listener->serverPort()};
}

void FtpSockets::accept(qintptr descriptor) {
    m_listener->close();
    if (m_data != nullptr) return;
    useNewSocket();
    m_data->setSocketDescriptor(descriptor);
    m_ftp->dataAccepted(static_cast<int>(descriptor));
    dataUp();
}

void FtpSockets::connectData(const FtpEndpoint& where) {
    closeData();
    useNewSocket();
    connect(m_data, &QAbstractSocket::connected, this, [this] {
        m_ftp->dataConnected();
        dataUp();
    });
    const QIODevice::OpenMode mode =
        m_encrypted == nullptr ? QIODevice::ReadWrite | QIODevice::Unbuffered : QIODevice::ReadWrite;
    m_data->connectToHost(QHostAddress(toScreen(where.address)), where.port, mode);
}

void FtpSockets::useNewSocket() {
    m_encrypted = m_ftp->isEncrypted() ? new QSslSocket(this) : nullptr;
    m_data = m_encrypted != nullptr ? m_encrypted : new QTcpSocket(this);
    m_data->setProxy(QNetworkProxy::NoProxy);
    connect(m_data, &QIODevice::readyRead, this, &FtpSockets::readData);
    connect(m_data, &QIODevice::bytesWritten, this, &FtpSockets::sendMore);
    connect(m_data, &QAbstractSocket::errorOccurred, this, &FtpSockets::dataEnded);
    connect(m_data, &QAbstractSocket::disconnected, this, &FtpSockets::dataGone);
    if (m_encrypted == nullptr) return;
    m_encrypted->setSslConfiguration(m_configuration);
    m_encrypted->setPeerVerifyName(m_host);  // the name it asks for
    connect(m_encrypted, &QSslSocket::encryptedBytesWritten, this, &FtpSockets::sendMore);
    connect(m_encrypted, &QSslSocket::encrypted, this, [this] {
        if (m_encrypted->peerCertificate() != m_certificate) {
            dropData();
            m_ftp->dataError("The data connection has another certificate than the control connection.");
            return;
        }
        m_ready = true;
        readData();
        sendMore();
    });
}

void FtpSockets::dataUp() {
    m_wasUp = true;
    if (m_data == nullptr) return;
    if (m_encrypted != nullptr) {
        m_encrypted->startClientEncryption();
        return;
    }
    m_ready = true;
    readData();
    sendMore();
}

void FtpSockets::readData() {
    for (int blocks = 0; m_data != nullptr && m_ready; ++blocks) {
        if (blocks == kBlocksPerTurn) {
            QMetaObject::invokeMethod(this, &FtpSockets::readData, Qt::QueuedConnection);
            return;
        }
        const qint64 got = m_data->read(m_block.data(), static_cast<qint64>(m_block.size()));
        if (got < 0) dataEnded();  // an unbuffered socket says so only here
        if (got <= 0) return;
        Q_EMIT dataMoved();
        m_ftp->dataReceived({m_block.data(), static_cast<std::size_t>(got)});
    }
}

void FtpSockets::dataEnded() {
    if (m_data == nullptr) return;
    if (m_data->error() == QAbstractSocket::RemoteHostClosedError)
        dataGone();
    else
        dataFailed();
}

void FtpSockets::dataFailed() {
    const std::string words = errorOf(*m_data);
    const bool wasUp = m_wasUp;
    dropData();
    wasUp ? m_ftp->dataError(words) : m_ftp->dataFailed(words);
}

// With TLS the end is known before the connection is closed: there may be bytes to read, and the server waits
// for the client's own end.
void FtpSockets::dataGone() {
    if (!std::exchange(m_gone, true)) readData();
    if (m_data == nullptr) return;
    if (m_ready && m_data->bytesAvailable() > 0) {  // the rest in the next turn
        QMetaObject::invokeMethod(this, &FtpSockets::dataLeft, Qt::QueuedConnection);
        return;
    }
    closeData();
    m_ftp->dataClosed();
}

void FtpSockets::dataLeft() {
    if (!m_gone) return;
    m_gone = false;
    dataGone();
}

void FtpSockets::beginSending() {
    m_sending = true;
    sendMore();
}

void FtpSockets::sendMore() {
    Q_EMIT dataMoved();
    if (m_moving) return;  // called by what is below
    const QScopedValueRollback<bool> moving(m_moving, true);
    for (int blocks = 0; m_sending && m_ready; ++blocks) {
        const qint64 queued =
            m_data->bytesToWrite() + (m_encrypted == nullptr ? 0 : m_encrypted->encryptedBytesToWrite());
        if (queued > (m_encrypted == nullptr ? 0 : kQueuedBytes)) return;
        if (blocks == kBlocksPerTurn) {
            QMetaObject::invokeMethod(this, &FtpSockets::sendMore, Qt::QueuedConnection);
            return;
        }
        const std::string_view block = m_ftp->nextBlock();
        if (block.empty()) {
            if (queued > 0 || !m_ftp->isSending()) return;
            m_sending = false;
            m_ftp->fileSent();
            return;
        }
        m_data->write(block.data(), static_cast<qint64>(block.size()));
        if (m_encrypted != nullptr) m_encrypted->flush();
    }
}

void FtpSockets::dropData() {
    m_sending = m_ready = m_wasUp = m_gone = false;
    m_encrypted = nullptr;
    if (m_data != nullptr) drop(std::exchange(m_data, nullptr), this);
    if (m_listener != nullptr) std::exchange(m_listener, nullptr)->deleteLater();
}

void FtpSockets::closeData() {
    if (m_data != nullptr && m_ready) letGo(std::exchange(m_data, nullptr), this);
    dropData();
}

void FtpSockets::resetData() {
    dropData();
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SingleInstance.h"

#include "core/ScreenText.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>

namespace relay {

namespace {
constexpr int kPatienceMilliseconds = 2000;
// The system limits the path of a socket to 108 bytes.
constexpr qsizetype kLongestSocketPath = 100;

QString socketPath(const QString& home) {
    const QString inside = home + QStringLiteral("/.window.socket");
    if (QFile::encodeName(inside).size() <= kLongestSocketPath) return inside;
    const QByteArray hash =
        QCryptographicHash::hash(home.toUtf8(), QCryptographicHash::Sha256).toHex().left(32);
    return QDir::tempPath() + QStringLiteral("/korvel-relay-") + QString::fromLatin1(hash);
}
}  // namespace

SingleInstance::SingleInstance(const QString& home, QObject* parent)
    : QObject(parent), m_socket(socketPath(home)), m_lock(home + QStringLiteral("/.window.lock")) {
    // Age never makes a lock stale, only the end of its program.
    m_lock.setStaleLockTime(0);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* const caller = m_server.nextPendingConnection()) caller->deleteLater();
        Q_EMIT raiseWanted();
    });
}

SingleInstance::Claim SingleInstance::claim() {
    if (!m_lock.tryLock(0) && m_lock.error() == QLockFile::LockFailedError)
        return askToRaise() ? Claim::Raised : Claim::Held;
    listen();
    return Claim::Granted;
}

std::string SingleInstance::question() const {
    qint64 process = 0;
    QString computer;
    QString program;
    std::string words = "The file\r\n" + fromScreen(m_lock.fileName()) + "\r\nsays that another program";
    if (m_lock.getLockInfo(&process, &computer, &program))
        words += " (process " + std::to_string(process) + " on the computer '" + fromScreen(computer) + "')";
    return words +
           " has this home open.\r\n\r\nTwo windows on one home undo each other's work. Do you want to "
           "continue "
           "anyway?";
}

void SingleInstance::takeOver() {
    QFile::remove(m_lock.fileName());
    m_lock.tryLock(0);
    listen();
}

void SingleInstance::listen() {
    if (!m_lock.isLocked()) return;
    QLocalServer::removeServer(m_socket);
    m_server.listen(m_socket);
}

bool SingleInstance::askToRaise() const {
    QLocalSocket socket;
    socket.connectToServer(m_socket);
    return socket.waitForConnected(kPatienceMilliseconds);
}

}  // namespace relay

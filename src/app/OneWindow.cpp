// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/OneWindow.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>

namespace relay {

namespace {
constexpr int kPatienceMilliseconds = 2000;
// A socket's path is held in 108 bytes by the system.
constexpr qsizetype kLongestSocketPath = 100;

QString socketPath(const QString& home) {
    const QString inside = home + QStringLiteral("/.window.socket");
    if (QFile::encodeName(inside).size() <= kLongestSocketPath) return inside;
    const QByteArray hash =
        QCryptographicHash::hash(home.toUtf8(), QCryptographicHash::Sha256).toHex().left(32);
    return QDir::tempPath() + QStringLiteral("/korvel-relay-") + QString::fromLatin1(hash);
}
}  // namespace

OneWindow::OneWindow(const QString& home, QObject* parent)
    : QObject(parent), m_socket(socketPath(home)), m_lock(home + QStringLiteral("/.window.lock")) {
    // A lock is never too old while its program runs; one of a program that is gone does not count.
    m_lock.setStaleLockTime(0);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* const caller = m_server.nextPendingConnection()) caller->deleteLater();
        Q_EMIT raiseWanted();
    });
}

bool OneWindow::claim() {
    if (!m_lock.tryLock(0) && m_lock.error() == QLockFile::LockFailedError) {
        askToRaise();
        return false;
    }
    if (m_lock.isLocked()) {
        QLocalServer::removeServer(m_socket);
        m_server.listen(m_socket);
    }
    return true;
}

void OneWindow::askToRaise() const {
    QLocalSocket socket;
    socket.connectToServer(m_socket);
    socket.waitForConnected(kPatienceMilliseconds);
}

}  // namespace relay

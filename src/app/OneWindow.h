// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

namespace relay {

// Keeps one window to a home: the first program on it holds a lock file inside the home, and listens; a later
// one asks the first to come to the front. A home that cannot be written is not guarded.
class OneWindow final : public QObject {
    Q_OBJECT
  public:
    explicit OneWindow(const QString& home, QObject* parent = nullptr);

    // False when another program holds the home; that one was then asked to come to the front.
    bool claim();

  Q_SIGNALS:
    // Another program was started on this home.
    void raiseWanted();

  private:
    void askToRaise() const;

    QString m_socket;
    QLockFile m_lock;
    QLocalServer m_server;
};

}  // namespace relay

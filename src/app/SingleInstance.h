// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

#include <string>

namespace relay {

// Keeps one window to a home: the first program on it holds a lock file inside the home, and listens; a later
// one asks the first to come to the front. A home that cannot be written is not guarded.
class SingleInstance final : public QObject {
    Q_OBJECT
  public:
    enum class Claim {
        Granted,  // or not guarded
        Raised,   // another program holds the home, and was asked to come to the front
        Held,     // somebody holds the home who cannot be asked: on another computer, most likely
    };

    explicit SingleInstance(const QString& home, QObject* parent = nullptr);

    Claim claim();
    // After Held: the question whether to go on all the same, with the lock file's name and what it says.
    std::string question() const;
    // After Held: the home is taken from whoever holds it.
    void takeOver();

  Q_SIGNALS:
    // Another program was started on this home.
    void raiseWanted();

  private:
    bool askToRaise() const;
    void listen();

    QString m_socket;
    QLockFile m_lock;
    QLocalServer m_server;
};

}  // namespace relay

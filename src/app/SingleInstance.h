// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

#include <string>

namespace relay {

// Allows one window per home: the first program has a lock file in the home and listens; a later one asks the
// first to come to the front. A home that cannot be written is not guarded.
class SingleInstance final : public QObject {
    Q_OBJECT
  public:
    enum class Claim {
        Granted,  // or not guarded
        Raised,   // another program has the home and was asked to come to the front
        Held,     // another program has the home but does not answer, probably on another computer
    };

    explicit SingleInstance(const QString& home, QObject* parent = nullptr);

    Claim claim();
    // After Held: the question whether to continue anyway, with the lock file's name and contents.
    std::string question() const;
    // After Held: takes the home from the other program.
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

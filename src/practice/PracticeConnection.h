// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/PracticePages.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <functional>
#include <string>

namespace relay {

// The connection of one client: reads one request, plays the reply, closes. Deletes itself when the socket is
// closed. Drops a client that does not send a whole request within the limit, or reads nothing of a large
// reply for that long. A large reply is produced as fast as it is read.
class PracticeConnection final : public QObject {
    Q_OBJECT
  public:
    // Takes ownership of the socket.
    PracticeConnection(QTcpSocket* socket, PracticeSite& site, int requestMilliseconds, QObject* parent);
    ~PracticeConnection() override;

  private:
    void read();
    void refuse(int status);
    void play(const PracticeReply& reply);
    void sendWhole(const PracticeReply& reply);
    void sendHalf(const PracticeReply& reply);
    void sendAndClose(const std::string& bytes);
    void stream(const PracticeReply& reply, std::function<bool(std::string&)> more);
    void keepSending();
    void countAhead();

    QTcpSocket* m_socket;
    PracticeSite& m_site;
    PracticeRequestReader m_reader;
    QTimer m_deadline;
    QTimer m_retry;
    bool m_answered = false;
    std::function<bool(std::string&)> m_more;
    qint64 m_ahead = 0;  // this connection's part of PracticeSite::ahead
};

}  // namespace relay

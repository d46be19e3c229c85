// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/PracticePages.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

namespace relay {

// One client's connection: reads one request, plays the answer, closes. Deletes itself when the socket is
// gone. Whoever has not sent a whole request within the limit is dropped.
class PracticeConnection final : public QObject {
    Q_OBJECT
  public:
    // Takes the socket over.
    PracticeConnection(QTcpSocket* socket, PracticeSite& site, int requestMilliseconds, QObject* parent);

  private:
    void read();
    void refuse(int status);
    void play(const PracticeReply& reply);
    void sendHalf(const PracticeReply& reply);
    void sendAndClose(const std::string& bytes);
    void keepSending();

    QTcpSocket* m_socket;
    PracticeSite& m_site;
    PracticeRequestReader m_reader;
    QTimer m_deadline;
    bool m_answered = false;
};

}  // namespace relay

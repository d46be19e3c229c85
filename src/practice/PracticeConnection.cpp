// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeConnection.h"

#include <sys/socket.h>

namespace relay {

namespace {

constexpr qint64 kReadBuffer = qint64{256} * 1024;
constexpr qint64 kEndlessAhead = qint64{256} * 1024;
// A refused client may still be sending; closing at once would reset the connection and lose the answer.
constexpr int kRefusalLingerMilliseconds = 200;

QByteArray toBytes(const std::string& text) {
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

void resetConnection(QTcpSocket& socket) {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket.abort();
}

}  // namespace

PracticeConnection::PracticeConnection(QTcpSocket* socket, PracticeSite& site, int requestMilliseconds,
                                       QObject* parent)
    : QObject(parent), m_socket(socket), m_site(site) {
    socket->setParent(this);
    socket->setReadBufferSize(kReadBuffer);
    connect(socket, &QTcpSocket::readyRead, this, &PracticeConnection::read);
    connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, socket, &QTcpSocket::abort);
    m_deadline.start(requestMilliseconds);
    // Bytes, or the end, may have come before the signals were connected.
    if (socket->bytesAvailable() > 0) read();
    if (socket->state() == QAbstractSocket::UnconnectedState) deleteLater();
}

void PracticeConnection::read() {
    const QByteArray bytes = m_socket->readAll();
    if (m_answered) return;
    const auto state =
        m_reader.feed(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    if (state == PracticeRequestReader::State::NeedsMore) return;
    m_answered = true;
    m_deadline.stop();
    if (state == PracticeRequestReader::State::Refused) {
        refuse(m_reader.refusal());
        return;
    }
    PracticeReply reply = answer(m_reader.request(), m_site);
    if (reply.delayMilliseconds == 0) {
        play(reply);
    } else {
        QTimer::singleShot(reply.delayMilliseconds, this, [this, reply] { play(reply); });
    }
}

void PracticeConnection::refuse(int status) {
    PracticeReply reply;
    reply.status = status;
    reply.body = htmlPage(statusWord(status), "<p>The practice web did not take this request.</p>\n");
    m_socket->write(toBytes(reply.head(reply.body.size()) + reply.body));
    QTimer::singleShot(kRefusalLingerMilliseconds, m_socket, &QTcpSocket::disconnectFromHost);
}

void PracticeConnection::play(const PracticeReply& reply) {
    using Ending = PracticeReply::Ending;
    switch (reply.ending) {
        case Ending::Whole:
            sendAndClose(reply.head(reply.body.size()) +
                         (m_reader.request().method == "HEAD" ? std::string() : reply.body));
            break;
        case Ending::Half:
            sendHalf(reply);
            m_socket->disconnectFromHost();
            break;
        case Ending::Stall:
            sendHalf(reply);
            break;
        case Ending::Lying:
            sendAndClose(reply.head(reply.body.size() / 2) + reply.body);
            break;
        case Ending::Reset:
            resetConnection(*m_socket);
            break;
        case Ending::Empty:
            m_socket->disconnectFromHost();
            break;
        case Ending::Garbage:
            sendAndClose(std::string("\x16\x03\x01 no web server\0\xFF\r\n", 22));
            break;
        case Ending::Never:
            break;
        case Ending::Endless:
            m_socket->write(toBytes(reply.headWithoutLength()));
            connect(m_socket, &QTcpSocket::bytesWritten, this, &PracticeConnection::keepSending);
            keepSending();
            break;
    }
}

void PracticeConnection::sendHalf(const PracticeReply& reply) {
    m_socket->write(toBytes(reply.head(reply.body.size()) + reply.body.substr(0, reply.body.size() / 2)));
}

void PracticeConnection::sendAndClose(const std::string& bytes) {
    m_socket->write(toBytes(bytes));
    m_socket->disconnectFromHost();
}

void PracticeConnection::keepSending() {
    static const QByteArray chunk(16384, 'x');
    while (m_socket->state() == QAbstractSocket::ConnectedState && m_socket->bytesToWrite() < kEndlessAhead) {
        m_socket->write(chunk);
    }
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeConnection.h"

#include <sys/socket.h>

namespace relay {

namespace {

constexpr qint64 kReadBuffer = qint64{256} * 1024;
// Limits for the bytes of large replies that one client and all clients have not read yet.
constexpr qint64 kAhead = qint64{64} * 1024;
constexpr qint64 kAllAhead = qint64{8} * 1024 * 1024;
constexpr int kRetryMilliseconds = 50;
// A refused client may still be sending; closing at once would reset the connection and lose the reply.
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
    m_deadline.setInterval(requestMilliseconds);
    m_deadline.start();
    m_retry.setSingleShot(true);
    m_retry.setInterval(kRetryMilliseconds);
    connect(&m_retry, &QTimer::timeout, this, &PracticeConnection::keepSending);
    // Bytes or the end may have arrived before the signals were connected.
    if (socket->bytesAvailable() > 0) read();
    if (socket->state() == QAbstractSocket::UnconnectedState) deleteLater();
}

PracticeConnection::~PracticeConnection() {
    m_site.ahead -= m_ahead;
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
            sendWhole(reply);
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
            stream(reply, [](std::string& piece) {
                piece.assign(16384, 'x');
                return true;
            });
            break;
    }
}

void PracticeConnection::sendWhole(const PracticeReply& reply) {
    const bool isHead = m_reader.request().method == "HEAD";
    if (reply.more && !isHead)
        stream(reply, reply.more);
    else if (reply.more)
        sendAndClose(reply.headWithoutLength());
    else
        sendAndClose(reply.head(reply.body.size()) + (isHead ? std::string() : reply.body));
}

void PracticeConnection::sendHalf(const PracticeReply& reply) {
    m_socket->write(toBytes(reply.head(reply.body.size()) + reply.body.substr(0, reply.body.size() / 2)));
}

void PracticeConnection::sendAndClose(const std::string& bytes) {
    m_socket->write(toBytes(bytes));
    m_socket->disconnectFromHost();
}

void PracticeConnection::stream(const PracticeReply& reply, std::function<bool(std::string&)> more) {
    m_socket->write(toBytes(reply.headWithoutLength()));
    m_more = std::move(more);
    connect(m_socket, &QTcpSocket::bytesWritten, this, [this] {
        m_deadline.start();
        keepSending();
    });
    m_deadline.start();
    keepSending();
}

void PracticeConnection::keepSending() {
    std::string piece;
    while (m_socket->state() == QAbstractSocket::ConnectedState && m_socket->bytesToWrite() < kAhead) {
        if (m_site.ahead >= kAllAhead) {
            // Other clients must read theirs first; a client with nothing to read is not late.
            if (m_socket->bytesToWrite() == 0) m_deadline.stop();
            m_retry.start();
            break;
        }
        if (!m_deadline.isActive()) m_deadline.start();
        piece.clear();
        if (m_more(piece))
            m_socket->write(toBytes(piece));
        else
            m_socket->disconnectFromHost();
        countAhead();
    }
    countAhead();
}

void PracticeConnection::countAhead() {
    const qint64 now = m_socket->bytesToWrite();
    m_site.ahead += now - m_ahead;
    m_ahead = now;
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/LoopbackServer.h"

#include "core/Failure.h"
#include "practice/PracticeConnection.h"

#include <QTcpServer>
#include <QThread>

namespace relay {

namespace {

// Enough for a full pool that connects at once.
constexpr int kBacklog = 512;

}  // namespace

struct LoopbackServer::Data {
    std::string name;
    PracticeLimits limits;
    PracticeService service;
    std::string address;
    QThread thread;
    QTcpServer* server = nullptr;    // lives in `thread` and is deleted with it
    QObject* connections = nullptr;  // child of the server, parent of every connection

    void accept();
};

void LoopbackServer::Data::accept() {
    while (QTcpSocket* socket = server->nextPendingConnection()) {
        if (connections->children().size() >= limits.connections) {
            socket->abort();
            socket->deleteLater();
        } else {
            new PracticeConnection(socket, service, limits.requestMilliseconds, connections);
        }
    }
}

LoopbackServer::LoopbackServer(std::string name, Answer answer, const PracticeLimits& limits)
    : m_data(std::make_unique<Data>()) {
    m_data->name = std::move(name);
    m_data->limits = limits;
    m_data->service.answer = std::move(answer);
    m_data->thread.setObjectName(QString::fromStdString(m_data->name));
}

LoopbackServer::~LoopbackServer() {
    m_data->thread.quit();
    m_data->thread.wait();
    // Never served: its thread has not deleted it.
    if (m_data->server != nullptr && m_data->connections == nullptr) delete m_data->server;
}

void LoopbackServer::listen(std::uint16_t port) {
    auto server = std::make_unique<QTcpServer>();
    server->setListenBacklogSize(kBacklog);
    if (!server->listen(QHostAddress::LocalHost, port)) {
        throw Failure("The " + m_data->name + " cannot listen on 127.0.0.1:" + std::to_string(port) + ": " +
                      server->errorString().toStdString());
    }
    m_data->address = "http://127.0.0.1:" + std::to_string(server->serverPort());
    m_data->server = server.release();
}

const std::string& LoopbackServer::address() const noexcept {
    return m_data->address;
}

void LoopbackServer::serve() {
    Data* data = m_data.get();
    data->connections = new QObject(data->server);
    data->server->moveToThread(&data->thread);
    QObject::connect(&data->thread, &QThread::finished, data->server, &QObject::deleteLater);
    QObject::connect(data->server, &QTcpServer::newConnection, data->server, [data] { data->accept(); });
    data->thread.start();
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeWeb.h"

#include "core/Failure.h"
#include "core/Text.h"
#include "practice/PracticeConnection.h"
#include "practice/PracticePages.h"

#include <QTcpServer>
#include <QThread>

namespace relay {

namespace {

// Enough for a full pool that connects at once.
constexpr int kBacklog = 512;

}  // namespace

struct PracticeWeb::Data {
    PracticeLimits limits;
    PracticeSite site;
    QThread thread;
    QTcpServer* server = nullptr;    // lives in `thread` and is deleted with it
    QObject* connections = nullptr;  // child of the server, parent of every connection

    void accept();
};

void PracticeWeb::Data::accept() {
    while (QTcpSocket* socket = server->nextPendingConnection()) {
        if (connections->children().size() >= limits.connections) {
            socket->abort();
            socket->deleteLater();
        } else {
            new PracticeConnection(socket, site, limits.requestMilliseconds, connections);
        }
    }
}

PracticeWeb::PracticeWeb(const PracticeLimits& limits) : m_data(std::make_unique<Data>()) {
    m_data->limits = limits;
    m_data->thread.setObjectName(QStringLiteral("practice web"));
}

PracticeWeb::~PracticeWeb() {
    m_data->thread.quit();
    m_data->thread.wait();
}

void PracticeWeb::describeEngines(std::string_view engines, std::string_view categories) {
    m_data->site.forms.read(engines, categories);
}

void PracticeWeb::start(std::uint16_t port) {
    if (m_data->server != nullptr) throw Failure("The practice web is already running.");
    auto server = std::make_unique<QTcpServer>();
    server->setListenBacklogSize(kBacklog);
    if (!server->listen(QHostAddress::LocalHost, port)) {
        throw Failure("The practice web cannot listen on 127.0.0.1:" + std::to_string(port) + ": " +
                      server->errorString().toStdString());
    }
    Data* data = m_data.get();
    data->site.address = "http://127.0.0.1:" + std::to_string(server->serverPort());
    data->server = server.release();
    data->connections = new QObject(data->server);
    data->server->moveToThread(&data->thread);
    QObject::connect(&data->thread, &QThread::finished, data->server, &QObject::deleteLater);
    QObject::connect(data->server, &QTcpServer::newConnection, data->server, [data] { data->accept(); });
    data->thread.start();
}

std::string PracticeWeb::address() const {
    return m_data->site.address;
}

std::vector<ReceivedSubmission> PracticeWeb::received() const {
    return m_data->site.received.newest();
}

void PracticeWeb::forgetReceived() {
    m_data->site.received.clear();
}

std::string pointAtPracticeWeb(std::string_view catalogue, std::string_view address) {
    return replaceAll(catalogue, "http://@PRACTICE@", address);
}

}  // namespace relay

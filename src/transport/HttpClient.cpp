// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/HttpClient.h"

#include "core/Failure.h"
#include "core/Text.h"
#include "transport/HttpNetwork.h"
#include "transport/HttpTransfer.h"
#include "transport/RequestUrl.h"

#include <utility>

namespace relay {

namespace {
// Ends the transfer without a signal.
void abandon(std::shared_ptr<HttpTransfer>& transfer) {
    if (transfer) transfer->client = nullptr;
    transfer.reset();
}
}  // namespace

HttpClient::HttpClient(HttpNetwork& network, QObject* parent) : QObject(parent), m_network(network) {}

HttpClient::~HttpClient() {
    if (m_running) m_network.abort(m_transfer);
    abandon(m_transfer);
    abandon(m_aborted);
}

// The network thread may still be sending the request text, so the transfer is set aside whole and the next
// request takes a new one.
void HttpClient::Abort() {
    if (!m_running) return;
    m_running = false;
    m_aborted = std::move(m_transfer);
    m_network.abort(m_aborted);
}

void HttpClient::setBlocking(bool on) {
    if (on) throw Failure("Blocking requests are not supported");
}

void HttpClient::start(std::string* body, std::string& Response) {
    if (m_running) throw Failure("A request is already under way");
    abandon(m_aborted);
    m_code = kNoStatus;
    m_failure = nullptr;
    m_problem = "";
    const std::string url = wireUrl(m_url);
    m_network.open();
    const Authorities& authorities = m_network.authorities();
    if (startsWithNoCase(url, "https:")) authorities.check();
    if (!m_transfer) m_transfer = std::make_shared<HttpTransfer>(authorities);
    m_transfer->body = body == nullptr ? std::string() : std::move(*body);
    m_transfer->keepsText = m_keepReply;
    m_transfer->prepare(url, body != nullptr, m_followUp, m_timeout);
    m_transfer->client = this;
    m_response = &Response;
    m_reported = 0;
    m_running = true;
    m_network.start(m_transfer);
}

void HttpClient::report(const std::shared_ptr<HttpTransfer>& transfer, qint32 bytes) {
    if (transfer != m_transfer || bytes == m_reported) return;
    m_reported = bytes;
    Q_EMIT Progress(bytes);
}

void HttpClient::finish(const std::shared_ptr<HttpTransfer>& transfer) {
    transfer->client = nullptr;
    m_running = false;
    m_aborted.reset();
    m_code = transfer->status;
    m_failure = transfer->failure;
    m_problem = transfer->problem;
    m_response->swap(transfer->text);
    Q_EMIT Done();
}

}  // namespace relay

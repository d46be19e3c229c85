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
// Nobody hears of its end.
void abandon(std::shared_ptr<HttpTransfer>& transfer) {
    if (transfer) transfer->client = nullptr;
    transfer.reset();
}
}  // namespace

struct HttpClient::Data final {
    explicit Data(HttpNetwork& owner) : network(owner) {}

    HttpNetwork& network;
    std::shared_ptr<HttpTransfer> transfer;  // of the running request, or kept for the next
    std::shared_ptr<HttpTransfer> aborted;   // its Done is still to come
    std::string* response = nullptr;
    std::string url;
    bool running = false;
    bool followUp = false;
    bool keepReply = true;
    std::int32_t timeout = 0;
    std::int32_t code = kNoStatus;
    const char* failure = nullptr;
    qint32 reported = 0;
};

HttpClient::HttpClient(HttpNetwork& network, QObject* parent)
    : QObject(parent), m_data(std::make_unique<Data>(network)) {}

HttpClient::~HttpClient() {
    if (m_data->running) m_data->network.abort(m_data->transfer);
    abandon(m_data->transfer);
    abandon(m_data->aborted);
}

std::int32_t HttpClient::State() const noexcept {
    return m_data->running ? 1 : 0;
}

bool HttpClient::Busy() const noexcept {
    return m_data->running;
}

// The transfer is set aside whole, with the request text that the network thread may still be sending; the
// next request takes a fresh one.
void HttpClient::Abort() {
    if (!m_data->running) return;
    m_data->running = false;
    m_data->aborted = std::move(m_data->transfer);
    m_data->network.abort(m_data->aborted);
}

void HttpClient::setFollowUp(bool on) noexcept {
    m_data->followUp = on;
}

void HttpClient::setKeepReply(bool on) noexcept {
    m_data->keepReply = on;
}

void HttpClient::setURL(std::string url) {
    m_data->url = std::move(url);
}

void HttpClient::setBlocking(bool on) {
    if (on) throw Failure("Blocking requests are not supported");
}

void HttpClient::setTimeout(std::int32_t milliseconds) noexcept {
    m_data->timeout = milliseconds > 0 ? milliseconds : 0;
}

void HttpClient::Get(std::string& Response) {
    start(nullptr, Response);
}

void HttpClient::Post(std::string body, std::string& Response) {
    start(&body, Response);
}

void HttpClient::start(std::string* body, std::string& Response) {
    Data& data = *m_data;
    if (data.running) throw Failure("A request is already under way");
    abandon(data.aborted);
    data.code = kNoStatus;
    data.failure = nullptr;
    const std::string url = wireUrl(data.url);
    data.network.open();
    const Authorities& authorities = data.network.authorities();
    if (startsWithNoCase(url, "https:")) authorities.check();
    if (!data.transfer) data.transfer = std::make_shared<HttpTransfer>(authorities);
    data.transfer->body = body == nullptr ? std::string() : std::move(*body);
    data.transfer->keepsText = data.keepReply;
    data.transfer->prepare(url, body != nullptr, data.followUp, data.timeout);
    data.transfer->client = this;
    data.response = &Response;
    data.reported = 0;
    data.running = true;
    data.network.start(data.transfer);
}

std::int32_t HttpClient::ResponseCode() const noexcept {
    return m_data->code;
}

const char* HttpClient::LocalFailure() const noexcept {
    return m_data->failure;
}

void HttpClient::report(const std::shared_ptr<HttpTransfer>& transfer, qint32 bytes) {
    if (transfer != m_data->transfer || bytes == m_data->reported) return;
    m_data->reported = bytes;
    Q_EMIT Progress(bytes);
}

void HttpClient::finish(const std::shared_ptr<HttpTransfer>& transfer) {
    Data& data = *m_data;
    transfer->client = nullptr;
    data.running = false;
    data.aborted.reset();
    data.code = transfer->status;
    data.failure = transfer->failure;
    data.response->swap(transfer->text);
    Q_EMIT Done();
}

}  // namespace relay

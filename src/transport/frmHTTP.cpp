// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/frmHTTP.h"

#include "core/Failure.h"
#include "core/Log.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "core/clsPreference.h"
#include "transport/RequestUrl.h"

#include <algorithm>
#include <charconv>

namespace relay {

std::string fetchProblem(const FetchReply& reply) {
    std::string reason = reply.problem;
    if (reason.empty() && reply.status == HttpClient::kNoStatus) reason = "No reply";
    if (reason.empty() && !reply.isPage())
        reason = "The server answered with status " + std::to_string(reply.status);
    if (reason.empty() && reply.text.empty()) reason = "The page is empty";
    return reason.empty() ? reason : loggableUrl(reply.URL) + ": " + reason;
}

frmHTTP::frmHTTP(const Services& services, QObject* parent)
    : QObject(parent), m_services(services), m_Http1(services.network) {
    m_tmrHttpTimeout.setSingleShot(true);
    connect(&m_tmrHttpTimeout, &QTimer::timeout, this, &frmHTTP::timeOut);
    connect(&m_Http1, &HttpClient::Done, this, &frmHTTP::finish);
}

frmHTTP::~frmHTTP() = default;

void frmHTTP::setConsumer(std::string_view purpose, FetchConsumer consumer) {
    removeConsumer(purpose);
    m_consumers.emplace_back(purpose, std::move(consumer));
}

void frmHTTP::removeConsumer(std::string_view purpose) {
    std::erase_if(m_consumers, [purpose](const auto& entry) { return equalsNoCase(entry.first, purpose); });
}

const FetchConsumer* frmHTTP::consumer(std::string_view purpose) const {
    const auto entry = std::find_if(m_consumers.begin(), m_consumers.end(), [purpose](const auto& known) {
        return equalsNoCase(known.first, purpose);
    });
    return entry == m_consumers.end() ? nullptr : &entry->second;
}

bool frmHTTP::isRunning(std::string_view purpose) const noexcept {
    return m_running && equalsNoCase(m_ConnectType, purpose);
}

bool frmHTTP::fetch(std::string_view purpose, const std::string& url, std::optional<std::string> postData) {
    // A cancelled request whose end is still on its way ends now.
    if (m_running && m_Http1.State() == 0) finish();
    if (m_running) return false;
    m_ConnectType = purpose;
    m_FormState = FormState::Normal;
    m_running = true;
    m_pointer = std::make_unique<BusyPointer>(m_services.prompts);
    Q_EMIT runningChanged(true);
    Connect1(url, std::move(postData));
    return true;
}

void frmHTTP::Connect1(const std::string& url, std::optional<std::string> postData) {
    m_URL = url;
    m_Response.clear();
    m_timedOut = false;
    try {
        const std::int32_t interval = watchdogInterval();
        m_Http1.setFollowUp(true);
        m_Http1.setURL(url);
        m_Http1.setBlocking(false);
        m_Http1.setTimeout(0);
        if (interval > 0) m_tmrHttpTimeout.start(interval);
        if (postData)
            m_Http1.Post(*std::move(postData), m_Response);
        else
            m_Http1.Get(m_Response);
    } catch (const Failure& failure) {
        fail(failure);
    } catch (const std::exception& failure) {
        fail(Failure(failureText(failure)));
    }
}

// Every connection is direct: the settings' proxy, its port and its credentials are not used here.
std::int32_t frmHTTP::watchdogInterval() const {
    const std::int32_t interval = std::int32_t{m_services.preference.TimeOut} * 1000;
    if (interval < 0) throw Failure("Invalid property value", 380);
    return interval > 62000 ? 60000 : interval;
}

void frmHTTP::fail(const Failure& failure) {
    m_services.log.WriteErrorLog("frmHTTP_Connect1_Error: " + std::to_string(failure.number()) + " - " +
                                 failure.what() + "\r\nURL: " + loggableUrl(m_URL));
    end([](const FetchConsumer& consumer,
           const FetchReply& reply) { consumer.failed ? consumer.failed(reply) : void(); },
        {m_URL, std::move(m_Response), HttpClient::kNoStatus, failure.what()});
}

void frmHTTP::timeOut() {
    m_timedOut = true;
    m_Http1.Abort();
}

void frmHTTP::finish() {
    if (m_Http1.State() != 0) return;
    if (m_FormState != FormState::Normal) {
        end([](const FetchConsumer& consumer,
               const FetchReply&) { consumer.cancelled ? consumer.cancelled() : void(); },
            {});
        return;
    }
    if (const char* const failure = m_Http1.LocalFailure()) {
        fail(Failure(failure));
        return;
    }
    FetchReply reply{m_URL, std::move(m_Response), m_Http1.ResponseCode(), m_Http1.Problem()};
    if (reply.text.size() >= HttpClient::kReplyLimit) reply.problem = "Only its first 16 MiB were read";
    if (m_timedOut)
        reply.problem = "The time-out of " + std::to_string(watchdogInterval() / 1000) + " seconds passed";
    if (consumer(m_ConnectType) == nullptr)
        m_services.log.WriteErrorLog("HTTP_Unknown_Data: " + std::to_string(reply.status));
    end([](const FetchConsumer& consumer,
           const FetchReply& ended) { consumer.reply ? consumer.reply(ended) : void(); },
        std::move(reply));
}

void frmHTTP::end(void (*call)(const FetchConsumer& consumer, const FetchReply& reply), FetchReply reply) {
    m_tmrHttpTimeout.stop();
    m_running = false;
    m_FormState = FormState::Normal;
    m_pointer.reset();
    // A copy: a consumer may close its screen and with it its entry in the table.
    const FetchConsumer* const known = consumer(m_ConnectType);
    const FetchConsumer called = known == nullptr ? FetchConsumer() : *known;
    Q_EMIT runningChanged(false);
    call(called, reply);
}

void frmHTTP::Disconnect() {
    if (!m_running) return;
    m_FormState = FormState::Cancelled;
    m_tmrHttpTimeout.stop();
    m_Http1.Abort();
}

bool frmHTTP::Unload() {
    if (!m_running) return true;
    Disconnect();
    m_FormState = FormState::Closing;
    return false;
}

std::string frmHTTP::GetHostFromURL(std::string_view url) {
    return GetURLHost(url);
}

std::string frmHTTP::GetFileFromURL(std::string_view url) {
    return GetURLPath(url);
}

bool frmHTTP::IsDotAddress(std::string_view host) {
    host = trim(host);
    int fields = 0;
    while (true) {
        const std::size_t dot = std::min(host.find('.'), host.size());
        const std::string_view field = host.substr(0, dot);
        unsigned char number = 0;
        const auto [rest, error] = std::from_chars(field.begin(), field.end(), number);
        if (error != std::errc() || rest != field.end()) return false;
        if (std::to_string(number) != field) return false;
        ++fields;
        if (dot == host.size()) return fields == 4;
        host.remove_prefix(dot + 1);
    }
}

}  // namespace relay

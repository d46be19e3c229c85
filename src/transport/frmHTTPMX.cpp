// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/frmHTTPMX.h"

#include "core/Failure.h"
#include "core/Log.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "transport/HttpTransfer.h"
#include "transport/RequestUrl.h"

#include <QCoreApplication>
#include <QPointer>

#include <limits>
#include <new>
#include <utility>

namespace relay {

namespace {

constexpr int kCancelInterval = 800;  // milliseconds
constexpr std::int16_t kDefaultConnections = 10;
constexpr std::int32_t kFallbackTimeOut = 30000;
// How deep failed starts may nest: the owner answers a Completed with its next Connect, and a series of
// unusable requests must not use up the stack. Further ones end through the event loop.
constexpr int kNestedFailures = 16;

}  // namespace

frmHTTPMX::frmHTTPMX(HttpNetwork& network, clsPreference& preference, Log& log, QObject* parent)
    : QObject(parent), m_network(network), m_preference(preference), m_log(log) {
    m_tmrCancel.setInterval(kCancelInterval);
    connect(&m_tmrCancel, &QTimer::timeout, this, &frmHTTPMX::cancelTick);
    connect(&m_tmrHttpTimeout, &Watchdogs::expired, this,
            [this](std::size_t index) { timeOut(static_cast<std::int16_t>(index)); });
}

void frmHTTPMX::Load() {
    if (std::exchange(m_loaded, true)) return;
    try {
        getSocketSetting();
        if (m_Connections == 0) m_Connections = kDefaultConnections;
        if (m_Connections < 1) {
            Q_EMIT Completed(0, kInvalidCount, "Invalid Connection Value");
            return;
        }
        for (int index = 0; index <= m_Connections; ++index) addSlot();
    } catch (const std::exception& failure) {
        const std::string words = std::string("frmRanking_Load_Error: ") + failure.what();
        m_log.WriteErrorLog(words);
        Q_EMIT Completed(0, kLoadFailed, words);
    }
}

void frmHTTPMX::addSlot() {
    const auto index = static_cast<std::int16_t>(m_slots.size());
    HttpClient& client = m_slots.emplace_back(m_network).client;
    client.setKeepReply(m_keepReplies);
    m_tmrHttpTimeout.resize(m_slots.size());
    connect(&client, &HttpClient::Done, this, [this, index] { finish(index); });
    connect(&client, &HttpClient::Progress, this,
            [this, index](qint32 bytes) { Q_EMIT Progress(index, bytes); });
}

// Every connection is direct: the access mode that would use the proxy of the settings is never chosen. Only
// the time-out is taken from the settings.
void frmHTTPMX::getSocketSetting() {
    m_TimeOut = 0;
    if (m_preference.AccessType != 2) return;
    m_TimeOut = m_preference.TimeOut < 1 ? kFallbackTimeOut : m_preference.TimeOut;
}

std::int32_t frmHTTPMX::watchdogInterval() const {
    const std::int64_t interval = std::int64_t{m_TimeOut} * 1000;
    if (interval > std::numeric_limits<std::int32_t>::max() ||
        interval < std::numeric_limits<std::int32_t>::min())
        throw Failure("Overflow", 6);
    if (interval < 0) throw Failure("Invalid property value", 380);
    if (interval > 62000) return 60000;
    if (interval == 0) return 30000;
    return static_cast<std::int32_t>(interval);
}

HttpSlot& frmHTTPMX::slotAt(std::int16_t index) {
    if (index < 1 || static_cast<std::size_t>(index) >= m_slots.size())
        throw Failure("Subscript out of range", 9);
    return m_slots[static_cast<std::size_t>(index)];
}

void frmHTTPMX::Connect(std::int16_t Index, const std::string& URL, const std::string& Method,
                        const std::string& PostData) {
    try {
        send(Index, URL, Method, PostData);
    } catch (const Failure& failure) {
        fail(Index, URL, failure);
    } catch (const std::exception& failure) {
        fail(Index, URL, Failure(failure.what()));
    }
}

void frmHTTPMX::send(std::int16_t index, const std::string& URL, const std::string& method,
                     const std::string& postData) {
    HttpSlot& slot = slotAt(index);
    HttpClient& client = slot.client;
    // After an abort the client is idle at once, but the slot is not: its restart is still pending.
    if (client.State() != 0 || slot.Status == SlotStatus::Restart) {
        slot.Status = SlotStatus::Restart;
        client.Abort();
        return;
    }
    slot.Status = SlotStatus::Running;
    emptyBuffer(slot.Response);
    slot.URL = URL;
    slot.Method = method;
    slot.PostData = postData;
    const std::int32_t interval = watchdogInterval();
    if (hasControlByte(method)) throw Failure("The method holds a control character");
    client.setFollowUp(true);
    client.setURL(slot.URL);
    client.setBlocking(false);
    client.setTimeout(0);
    m_tmrHttpTimeout.start(static_cast<std::size_t>(index), interval);
    if (equalsNoCase(slot.Method, "POST"))
        client.Post(slot.PostData, slot.Response);
    else
        client.Get(slot.Response);
}

void frmHTTPMX::fail(std::int16_t index, const std::string& URL, const Failure& failure) {
    try {
        const std::string shown = m_logMask ? m_logMask(URL) : URL;
        m_log.WriteErrorLog("frmRanking_Connect_Error: " + std::to_string(failure.number()) + " - " +
                            failure.what() + "\r\nURL: " + loggableUrl(shown));
    } catch (const std::bad_alloc&) {
        // Even without memory for a log line the request must end.
    }
    if (index >= 0 && static_cast<std::size_t>(index) < m_slots.size())
        m_tmrHttpTimeout.stop(static_cast<std::size_t>(index));
    if (m_failures >= kNestedFailures) {
        QMetaObject::invokeMethod(
            this, [this, index] { Q_EMIT Completed(index, kStartFailed, {}); }, Qt::QueuedConnection);
        return;
    }
    const QPointer<frmHTTPMX> alive(this);
    ++m_failures;
    Q_EMIT Completed(index, kStartFailed, {});
    if (alive) --m_failures;
}

void frmHTTPMX::finish(std::int16_t index) {
    HttpSlot& slot = m_slots[static_cast<std::size_t>(index)];
    if (slot.client.State() != 0) return;
    m_tmrHttpTimeout.stop(static_cast<std::size_t>(index));
    switch (slot.Status) {
        case SlotStatus::Closing:
            Unload();
            break;
        case SlotStatus::Cancelled:
        case SlotStatus::TimedOut:
            break;
        case SlotStatus::Restart:
            slot.Status = SlotStatus::Running;
            Connect(index, slot.URL, slot.Method, slot.PostData);
            break;
        case SlotStatus::Running:
            complete(index);
            break;
    }
}

// The reply is moved out because the owner's handler may start the slot's next request while it still reads;
// the buffer is then reused for the next reply.
void frmHTTPMX::complete(std::int16_t index) {
    const auto place = static_cast<std::size_t>(index);
    if (const char* const failure = m_slots[place].client.LocalFailure()) {
        fail(index, m_slots[place].URL, Failure(failure));
        return;
    }
    const QPointer<frmHTTPMX> alive(this);
    std::string reply;
    reply.swap(m_slots[place].Response);
    Q_EMIT Completed(index, m_slots[place].client.ResponseCode(), reply);
    if (!alive || place >= m_slots.size()) return;
    std::string& next = m_slots[place].Response;
    if (!next.empty() || next.capacity() >= reply.capacity()) return;
    emptyBuffer(reply);
    next.swap(reply);
}

void frmHTTPMX::timeOut(std::int16_t index) {
    HttpSlot& slot = m_slots[static_cast<std::size_t>(index)];
    slot.Status = SlotStatus::TimedOut;
    if (slot.client.State() != 0) slot.client.Abort();
    Q_EMIT Completed(index, kTimedOut, "Time out");
}

void frmHTTPMX::Disconnect() {
    const QPointer<frmHTTPMX> alive(this);
    const auto failure = failureOf([&] {
        // processEvents may unload the pool.
        for (std::size_t index = 1; index < m_slots.size(); ++index) {
            HttpSlot& slot = m_slots[index];
            if (slot.client.State() == 0 && slot.Status != SlotStatus::Restart) continue;
            slot.Status = SlotStatus::Cancelled;
            m_tmrHttpTimeout.stop(index);
            slot.client.Abort();
            QCoreApplication::processEvents();
            if (!alive) return;
        }
        if (m_loaded && !m_tmrCancel.isActive()) m_tmrCancel.start();
    });
    if (failure) m_log.WriteErrorLog("frmRanking_Disconnect_error: 0 - " + *failure);
}

void frmHTTPMX::cancelTick() {
    for (const HttpSlot& slot : m_slots)
        if (slot.client.State() != 0) return;
    m_tmrCancel.stop();
    Q_EMIT Cancelled();
}

bool frmHTTPMX::Unload() {
    for (std::size_t index = 0; index < m_slots.size(); ++index) {
        HttpSlot& slot = m_slots[index];
        if (!slot.client.Busy()) continue;
        m_tmrHttpTimeout.stop(index);
        slot.client.Abort();
        slot.Status = SlotStatus::Closing;
        return false;
    }
    m_tmrCancel.stop();
    m_tmrHttpTimeout.resize(0);
    m_slots.clear();
    m_loaded = false;
    Q_EMIT Unloaded();
    return true;
}

}  // namespace relay

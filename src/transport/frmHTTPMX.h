// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "transport/HttpClient.h"
#include "transport/Watchdogs.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace relay {

class Failure;
class HttpNetwork;
class Log;
class clsPreference;

// What to do when the request of a slot ends.
enum class SlotStatus : std::int16_t { Running = -1, Closing = 0, Cancelled = 1, TimedOut = 2, Restart = 3 };

// One connection of the pool.
struct HttpSlot final {
    explicit HttpSlot(HttpNetwork& network) : client(network) {}

    std::string URL;
    std::string Method;
    std::string Response;
    std::string PostData;
    SlotStatus Status = SlotStatus::Running;
    HttpClient client;
};

// The connection pool, a form without a window: HTTP clients with one watchdog timer and one HttpSlot each,
// addressed by index from 1. It has no queue: the owner calls Connect on an idle index and gets the end
// through Completed. Every request ends in exactly one Completed or is dropped by Disconnect. The owner may
// call anything, or delete the pool, in a handler of its signals.
class frmHTTPMX final : public QObject {
    Q_OBJECT
  public:
    // Codes of Completed besides the HTTP statuses.
    static constexpr std::int32_t kStartFailed = 10100;
    static constexpr std::int32_t kTimedOut = 10200;
    static constexpr std::int32_t kInvalidCount = 10300;
    static constexpr std::int32_t kLoadFailed = 10400;

    frmHTTPMX(HttpNetwork& network, clsPreference& preference, Log& log, QObject* parent = nullptr);

    void setConnections(std::int16_t count) { m_Connections = count; }  // before Load; 0 means 10
    std::int16_t Connections() const noexcept { return m_Connections; }
    // Masks parts of a URL that must not be logged, such as a password; without a mask, URLs are logged
    // whole.
    void setLogMask(std::function<std::string(std::string_view)> mask) { m_logMask = std::move(mask); }
    // Call before Load. With false, Response of Completed stays empty.
    void setKeepReplies(bool on) noexcept { m_keepReplies = on; }
    // Makes the slots and reads the settings; does nothing the second time. A failure is a Completed with
    // index 0.
    void Load();
    // Starts a request: a POST of PostData when Method is "POST" without regard to case, else a GET. On a
    // busy slot it aborts the running request and sends that one again instead of this one. A failure to
    // start is logged and ends in Completed with kStartFailed, usually before Connect returns.
    void Connect(std::int16_t Index, const std::string& URL, const std::string& Method,
                 const std::string& PostData = {});
    // Aborts all requests and runs pending events; Cancelled follows at the first tick (800 ms) that finds
    // every client idle.
    void Disconnect();
    // True when the pool is closed. Otherwise it has aborted a running transfer, and unloading continues when
    // that ends, one transfer after the other.
    bool Unload();

    // Seconds; set by Load from the settings when AccessType is 2, else 0, which the watchdog treats as 30
    // seconds.
    void setTimeOut(std::int32_t seconds) noexcept { m_TimeOut = seconds; }
    // The watchdog interval in milliseconds for the current time-out, or Failure 6 "Overflow".
    std::int32_t watchdogInterval() const;

  Q_SIGNALS:
    void Completed(qint16 Index, qint32 Code, const std::string& Response);
    void Progress(qint16 Index, qint32 Bytes);
    void Cancelled();
    void Unloaded();  // the pool is closed, whichever call of Unload did it

  private:
    void getSocketSetting();
    void addSlot();
    HttpSlot& slotAt(std::int16_t index);
    void send(std::int16_t index, const std::string& URL, const std::string& method,
              const std::string& postData);
    void fail(std::int16_t index, const std::string& URL, const Failure& failure);
    void finish(std::int16_t index);
    void complete(std::int16_t index);
    void timeOut(std::int16_t index);
    void cancelTick();

    HttpNetwork& m_network;
    clsPreference& m_preference;
    Log& m_log;
    std::int16_t m_Connections = 0;
    std::int32_t m_TimeOut = 0;
    bool m_loaded = false;
    std::function<std::string(std::string_view)> m_logMask;
    bool m_keepReplies = true;
    int m_failures = 0;  // nested failed starts
    // Index 0 is never used. A deque, so that slots do not move.
    std::deque<HttpSlot> m_slots;
    Watchdogs m_tmrHttpTimeout;
    QTimer m_tmrCancel;
};

}  // namespace relay

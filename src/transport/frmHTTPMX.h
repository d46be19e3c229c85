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

// What the end of a slot's request is to do.
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

// The connection pool, a form without a window: an array of HTTP clients with one watchdog timer and one
// HttpSlot each, addressed by index from 1. It has no queue: the owner calls Connect on an index it knows to
// be idle, and learns of the end through Completed. Every request ends in exactly one Completed or is
// swallowed by Disconnect. The owner may call anything, or delete the pool, from inside a signal.
class frmHTTPMX final : public QObject {
    Q_OBJECT
  public:
    // Codes of Completed beside the HTTP statuses.
    static constexpr std::int32_t kStartFailed = 10100;
    static constexpr std::int32_t kTimedOut = 10200;
    static constexpr std::int32_t kInvalidCount = 10300;
    static constexpr std::int32_t kLoadFailed = 10400;

    frmHTTPMX(HttpNetwork& network, clsPreference& preference, Log& log, QObject* parent = nullptr);

    void setConnections(std::int16_t count) { m_Connections = count; }  // before Load; 0 means 10
    std::int16_t Connections() const noexcept { return m_Connections; }
    // Covers what a URL must not tell the log, such as a password of the owner's; without one, URLs are
    // logged whole.
    void setLogMask(std::function<std::string(std::string_view)> mask) { m_logMask = std::move(mask); }
    // Before Load; false for an owner that does not read the pages: Response of Completed then stays empty.
    void setKeepReplies(bool on) noexcept { m_keepReplies = on; }
    // Makes the slots and reads the settings; nothing when it was done before. A failure is a Completed with
    // index 0.
    void Load();
    // Starts a request: a POST of PostData when Method is "POST" without regard to case, else a GET. On a
    // busy slot it aborts that request and sends it again in place of this one. A failure to start is logged
    // and ends in Completed with kStartFailed, as a rule before Connect returns.
    void Connect(std::int16_t Index, const std::string& URL, const std::string& Method,
                 const std::string& PostData = {});
    // Aborts everything that runs and lets pending events run; Cancelled follows at the first tick (800 ms)
    // that finds every client idle.
    void Disconnect();
    // True when the pool is closed. False while a transfer is still active: it is aborted, and its end goes
    // on with the unloading, one transfer after the other.
    bool Unload();

    // Seconds; filled by Load from the settings where AccessType is 2, else 0, which
    // the watchdog takes for 30 seconds.
    void setTimeOut(std::int32_t seconds) noexcept { m_TimeOut = seconds; }
    // The watchdog's interval in milliseconds for the time-out now in force, or Failure 6 "Overflow".
    std::int32_t watchdogInterval() const;

  Q_SIGNALS:
    void Completed(qint16 Index, qint32 Code, const std::string& Response);
    void Progress(qint16 Index, qint32 Bytes);
    void Cancelled();
    void Unloaded();  // whichever call of Unload closed the pool

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
    int m_failures = 0;  // failed starts that end inside each other
    // Index 0 exists from design and is never used. A deque, so that a slot stays where it is.
    std::deque<HttpSlot> m_slots;
    Watchdogs m_tmrHttpTimeout;
    QTimer m_tmrCancel;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace relay {

class Failure;
class HttpNetwork;
class Log;
class clsPreference;
struct HttpSlot;

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
    ~frmHTTPMX() override;

    void setConnections(std::int16_t count);  // before Load; 0 means 10
    std::int16_t Connections() const noexcept;
    // Covers what a URL must not tell the log, such as a password of the owner's; without one, URLs are
    // logged whole.
    void setLogMask(std::function<std::string(std::string_view)> mask);
    // Before Load; false for an owner that does not read the pages: Response of Completed then stays empty.
    void setKeepReplies(bool on) noexcept;
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
    std::int32_t TimeOut() const noexcept;
    void setTimeOut(std::int32_t seconds) noexcept;
    // The watchdog's interval in milliseconds for the time-out now in force, or Failure 6 "Overflow".
    std::int32_t watchdogInterval() const;

  Q_SIGNALS:
    void Completed(qint16 Index, qint32 Code, const std::string& Response);
    void Progress(qint16 Index, qint32 Bytes);
    void Cancelled();
    void Unloaded();  // whichever call of Unload closed the pool

  private:
    struct Data;

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

    std::unique_ptr<Data> m_data;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <cstdint>
#include <memory>
#include <string>

namespace relay {

class HttpNetwork;
class Log;
class clsPreference;

// The connection pool, a form without a window: an array of HTTP clients with one watchdog timer and one
// HttpSlot each, addressed by index from 1. It has no queue: the owner calls Connect on an index it knows to
// be idle, and learns of the end through Completed. Every request ends in exactly one Completed or is
// swallowed by Disconnect.
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
    void Load();
    void Connect(std::int16_t Index, const std::string& URL, const std::string& Method,
                 const std::string& PostData = {});
    // Aborts everything that runs; Cancelled follows at the first tick (800 ms) that finds every client idle.
    void Disconnect();
    // True when the pool is closed. False while a transfer is still active: it is aborted, and its end goes
    // on with the unloading.
    bool Unload();
    // The watchdog's interval in milliseconds for the time-out now in force, or Failure 6 "Overflow".
    std::int32_t watchdogInterval() const;

  Q_SIGNALS:
    void Completed(qint16 Index, qint32 Code, const std::string& Response);
    void Progress(qint16 Index, qint32 Bytes);
    void Cancelled();
    void Unloaded();

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay

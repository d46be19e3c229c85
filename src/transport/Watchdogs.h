// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <vector>

namespace relay {

// A single-shot watchdog for each index from 0. They share one timer, which is left alone as long as it fires
// before the earliest deadline; so starting and stopping a watchdog is cheap.
class Watchdogs final : public QObject {
    Q_OBJECT
  public:
    explicit Watchdogs(QObject* parent = nullptr);

    void resize(std::size_t count);  // new ones are stopped
    void start(std::size_t index, std::int32_t milliseconds);
    void stop(std::size_t index);

  Q_SIGNALS:
    void expired(std::size_t index);  // the handler may delete this object

  private:
    using Clock = std::chrono::steady_clock;

    void tick();
    void arm(Clock::time_point deadline);

    static constexpr Clock::time_point kStopped = Clock::time_point::max();
    std::vector<Clock::time_point> m_deadlines;
    Clock::time_point m_armed = kStopped;
    QTimer m_timer;
};

}  // namespace relay

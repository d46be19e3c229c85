// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <cstdint>
#include <deque>

namespace relay {

// Hands the engines of a URL to the connections: each engine once, in order, to the connection that has
// waited longest. Engines that end at once queue up instead of nesting, and the event loop runs in between.
// Connections and engines count from 1.
class EngineDispatcher final : public QObject {
    Q_OBJECT
  public:
    // Starts a URL with all connections waiting. Its first engines go out through the event loop.
    void begin(std::int16_t connections, std::int16_t engines);
    // The connection waits for its next engine; it may get one before this returns.
    void connectionFree(std::int16_t connection);
    // Hands out nothing until the next begin().
    void stop() noexcept;
    // True if engines are handed out and no connection waits.
    bool isDry() const noexcept { return !m_stopped && m_free.empty(); }

  Q_SIGNALS:
    void engineDue(qint16 connection, qint16 engine);
    void noEngineLeft();  // for the connection whose turn it is

  private:
    void handOut();
    void handOutLater();

    std::deque<std::int16_t> m_free;
    std::int16_t m_inHand = 0;  // the connection that gets an engine now
    std::int16_t m_last = 0;    // last engine handed out
    std::int16_t m_engines = 0;
    bool m_stopped = true;
    bool m_handingOut = false;
    bool m_queued = false;
};

}  // namespace relay

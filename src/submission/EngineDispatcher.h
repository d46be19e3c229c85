// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <cstdint>
#include <deque>

namespace relay {

// Hands a URL's engines out to the connections: each engine once, in order, to the connection that has waited
// longest. Engines that end at once queue up instead of nesting, and the event loop gets its turn among them.
// Connections and engines count from 1.
class EngineDispatcher final : public QObject {
    Q_OBJECT
  public:
    // A URL begins: all connections wait. Its first engines go out through the event loop.
    void begin(std::int16_t connections, std::int16_t engines);
    // The connection waits for its next engine, which it may be given before this returns.
    void connectionFree(std::int16_t connection);
    // Nothing is handed out until the next begin().
    void stop() noexcept;
    // Handing out, with no connection that waits.
    bool isDry() const noexcept { return !m_stopped && m_free.empty(); }

  Q_SIGNALS:
    void engineDue(qint16 connection, qint16 engine);
    void noEngineLeft();  // for the connection whose turn it was

  private:
    void handOut();
    void handOutLater();

    std::deque<std::int16_t> m_free;
    std::int16_t m_inHand = 0;  // the connection that is being given an engine
    std::int16_t m_last = 0;    // engine handed out
    std::int16_t m_engines = 0;
    bool m_stopped = true;
    bool m_handingOut = false;
    bool m_queued = false;
};

}  // namespace relay

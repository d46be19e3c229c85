// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

namespace relay {

// Handles Ctrl-C: the first SIGINT or SIGTERM is a request that the command handles in its own time, the
// second ends the process at once with 130. Only one object may watch at a time.
class StopSignal final : public QObject {
    Q_OBJECT
  public:
    StopSignal();
    ~StopSignal() override;

    // From here on the signals are requests; before, they end the process as usual.
    void watch();
    // Does the same as the first signal.
    void request();
    // Also notices a signal that the event loop has not delivered yet. True when a stop is requested.
    bool poll();

  Q_SIGNALS:
    void requested();

  private:
    struct Watch;
    std::unique_ptr<Watch> m_watch;
    bool m_requested = false;
};

}  // namespace relay

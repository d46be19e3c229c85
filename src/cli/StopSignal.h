// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

namespace relay {

// Ctrl-C, as the program takes it: the first SIGINT or SIGTERM is a request that the command answers in its
// own time, the second ends the process at once with 130. One may watch at a time.
class StopSignal final : public QObject {
    Q_OBJECT
  public:
    StopSignal();
    ~StopSignal() override;

    // From here on the signals are requests; until then they end the process as they always do.
    void watch();
    // What the first signal does.
    void request();
    // Sees a signal that the event loop has not delivered yet. True when a stop is requested.
    bool poll();

  Q_SIGNALS:
    void requested();

  private:
    struct Watch;
    std::unique_ptr<Watch> m_watch;
    bool m_requested = false;
};

}  // namespace relay

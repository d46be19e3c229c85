// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusMessage>
#include <QObject>

class QDBusPendingCallWatcher;

namespace relay {

// The user's preference for light or dark windows: "color-scheme" of the desktop's settings portal, also when
// it changes while the program runs. Without a session bus or a portal there is no preference.
class DesktopColours final : public QObject {
    Q_OBJECT
  public:
    enum class Scheme { NoPreference, Dark, Light };

    explicit DesktopColours(QObject* parent = nullptr);

    // Asks the portal and waits briefly for the answer. A later answer is reported as a change.
    void ask();
    Scheme scheme() const noexcept { return m_scheme; }

  Q_SIGNALS:
    void changed();

  private:
    void takeAnswer(QDBusPendingCallWatcher* watcher);
    void take(const QVariant& value);
    Q_SLOT void follow(const QDBusMessage& signal);

    bool m_asked = false;
    Scheme m_scheme = Scheme::NoPreference;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusMessage>
#include <QObject>

class QDBusPendingCallWatcher;

namespace relay {

// What the user prefers on this desktop, as its portal says: the settings portal's "color-scheme", followed
// while the program runs. A desktop without a bus or a portal has no preference.
class DesktopColours final : public QObject {
    Q_OBJECT
  public:
    enum class Scheme { NoPreference, Dark, Light };

    explicit DesktopColours(QObject* parent = nullptr);

    // Asks the portal, and waits a moment for the answer; one that takes longer comes as a change.
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

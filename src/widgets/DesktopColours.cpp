// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/DesktopColours.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <QTimer>

namespace relay {

namespace {
constexpr int kWaitMilliseconds = 200;

QString service() {
    return QStringLiteral("org.freedesktop.portal.Desktop");
}
QString path() {
    return QStringLiteral("/org/freedesktop/portal/desktop");
}
QString settings() {
    return QStringLiteral("org.freedesktop.portal.Settings");
}
QString group() {
    return QStringLiteral("org.freedesktop.appearance");
}
QString key() {
    return QStringLiteral("color-scheme");
}
}  // namespace

DesktopColours::DesktopColours(QObject* parent) : QObject(parent) {}

void DesktopColours::ask() {
    if (std::exchange(m_asked, true)) return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.connect(service(), path(), settings(), QStringLiteral("SettingChanged"), this,
                SLOT(follow(QDBusMessage)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(service(), path(), settings(), QStringLiteral("Read"));
    question << group() << key();
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, &DesktopColours::takeAnswer);
    // Otherwise the window would open light and turn dark at once.
    QEventLoop moment;
    connect(watcher, &QDBusPendingCallWatcher::finished, &moment, &QEventLoop::quit);
    QTimer::singleShot(kWaitMilliseconds, &moment, &QEventLoop::quit);
    moment.exec(QEventLoop::ExcludeUserInputEvents);
}

void DesktopColours::takeAnswer(QDBusPendingCallWatcher* watcher) {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    watcher->deleteLater();
    if (reply.isValid()) take(reply.value().variant());
}

void DesktopColours::follow(const QDBusMessage& signal) {
    const QVariantList news = signal.arguments();
    if (news.size() == 3 && news[0].toString() == group() && news[1].toString() == key()) take(news[2]);
}

void DesktopColours::take(const QVariant& value) {
    // "Read" wraps its answer twice.
    QVariant plain = value;
    while (plain.canConvert<QDBusVariant>()) plain = plain.value<QDBusVariant>().variant();
    Scheme scheme = Scheme::NoPreference;
    if (plain.toUInt() == 1) scheme = Scheme::Dark;
    if (plain.toUInt() == 2) scheme = Scheme::Light;
    if (std::exchange(m_scheme, scheme) != scheme) Q_EMIT changed();
}

}  // namespace relay

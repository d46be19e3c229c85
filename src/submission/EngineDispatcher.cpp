// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/EngineDispatcher.h"

#include <QScopedValueRollback>

namespace relay {

namespace {
// Engines handed out in one turn of the event loop: thousands that end at once would block it.
constexpr int kHandOutsAtOnce = 200;
}  // namespace

void EngineDispatcher::begin(std::int16_t connections, std::int16_t engines) {
    m_free.clear();
    for (int i = 1; i <= connections; ++i) m_free.push_back(static_cast<std::int16_t>(i));
    m_last = 0;
    m_engines = engines;
    m_stopped = false;
    if (!m_handingOut) handOutLater();
}

void EngineDispatcher::connectionFree(std::int16_t connection) {
    if (m_stopped) return;
    // The current connection continues before the others.
    if (connection == m_inHand)
        m_free.push_front(connection);
    else
        m_free.push_back(connection);
    if (!m_handingOut) handOut();
}

void EngineDispatcher::stop() noexcept {
    m_stopped = true;
    m_free.clear();
}

void EngineDispatcher::handOut() {
    const QScopedValueRollback handingOut(m_handingOut, true);
    const QScopedValueRollback inHand(m_inHand);
    for (int count = 0; !m_free.empty(); ++count) {
        if (count == kHandOutsAtOnce) return handOutLater();
        m_inHand = m_free.front();
        m_free.pop_front();
        // Never counts past the last engine, which may be the largest 16-bit number.
        if (m_last < m_engines)
            Q_EMIT engineDue(m_inHand, ++m_last);
        else
            Q_EMIT noEngineLeft();
    }
}

void EngineDispatcher::handOutLater() {
    if (m_queued) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_queued = false;
            if (!m_handingOut) handOut();
        },
        Qt::QueuedConnection);
    m_queued = true;
}

}  // namespace relay

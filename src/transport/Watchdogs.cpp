// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/Watchdogs.h"

#include <QPointer>

#include <algorithm>

namespace relay {

Watchdogs::Watchdogs(QObject* parent) : QObject(parent) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Watchdogs::tick);
}

void Watchdogs::resize(std::size_t count) {
    m_deadlines.resize(count, kStopped);
}

void Watchdogs::start(std::size_t index, std::int32_t milliseconds) {
    m_deadlines[index] = Clock::now() + std::chrono::milliseconds(milliseconds);
    if (m_deadlines[index] < m_armed) arm(m_deadlines[index]);
}

void Watchdogs::stop(std::size_t index) {
    m_deadlines[index] = kStopped;
}

void Watchdogs::tick() {
    const QPointer<Watchdogs> alive(this);
    m_armed = kStopped;
    const Clock::time_point now = Clock::now();
    for (std::size_t index = 0; index < m_deadlines.size(); ++index) {
        if (m_deadlines[index] > now) continue;
        m_deadlines[index] = kStopped;
        Q_EMIT expired(index);
        if (!alive) return;
    }
    const auto earliest = std::min_element(m_deadlines.begin(), m_deadlines.end());
    if (earliest != m_deadlines.end() && *earliest < m_armed) arm(*earliest);
}

void Watchdogs::arm(Clock::time_point deadline) {
    m_armed = deadline;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    m_timer.start(std::max(left, std::chrono::milliseconds(0)));
}

}  // namespace relay

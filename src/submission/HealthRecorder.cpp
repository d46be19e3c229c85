// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/HealthRecorder.h"

#include "core/Clock.h"
#include "core/Log.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "submission/SubmissionRecords.h"

#include <QUuid>

#include <utility>

namespace relay {

namespace {
constexpr std::size_t kMostWaiting = 5000;
constexpr qint64 kPauseMilliseconds = 3000;
}  // namespace

HealthRecorder::HealthRecorder(const Services& services, QObject* parent)
    : QObject(parent), m_services(services), m_store(services.paths) {}

HealthRecorder::~HealthRecorder() {
    write();
}

void HealthRecorder::note(const EngineEnded& ended) {
    if (ended.result == Cancelled || ended.result == NotReached) return;
    const QDateTime now = m_services.clock.now();
    if (m_run.empty()) {
        m_run = QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
        m_written = now;
        m_failed = false;
    }
    m_pairs.push_back({std::string(ended.engine), std::string(ended.URL), ended.code, ended.result,
                       ended.result == Success, now});
    if (m_pairs.size() >= kMostWaiting || m_written.msecsTo(now) >= kPauseMilliseconds) write();
}

void HealthRecorder::endRun() {
    write();
    m_run.clear();
}

void HealthRecorder::write() {
    m_written = m_services.clock.now();
    const std::vector<HealthPair> pairs = std::exchange(m_pairs, {});
    const auto failure = failureOf([&] { m_store.add(m_run, pairs); });
    if (failure && !std::exchange(m_failed, true)) m_services.log.WriteErrorLog(*failure);
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineHealth.h"

#include <QObject>

#include <string>
#include <vector>

namespace relay {

struct EngineEnded;
struct Services;

// Keeps how each engine of a run did, in the home's history. It writes every few seconds and at the end of a
// run; a history that cannot be written is noted in the log once per run, and the run goes on.
class HealthRecorder final : public QObject {
    Q_OBJECT
  public:
    explicit HealthRecorder(const Services& services, QObject* parent = nullptr);
    ~HealthRecorder() override;

    // What was cancelled says nothing about its engine.
    void note(const relay::EngineEnded& ended);
    void endRun();

  private:
    void write();

    const Services& m_services;
    HealthStore m_store;
    std::vector<HealthPair> m_pairs;  // not yet written
    QDateTime m_written;
    std::string m_run;  // empty between runs
    bool m_failed = false;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/Catalogue.h"
#include "submission/EngineDispatcher.h"
#include "submission/LedgerReader.h"
#include "submission/ReportWriter.h"
#include "submission/RunParts.h"
#include "submission/RunRecord.h"
#include "submission/SubmissionState.h"
#include "submission/clsSubmit.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

// The scheduler of a run: URLs go one after the other, the engines of a URL are spread over the connections,
// and a connection that ends takes the next engine. A run holds the catalogue. `services`, `catalogue` and
// `state` outlive it.
class SubmissionRun final : public QObject {
    Q_OBJECT
  public:
    SubmissionRun(const Services& services, const Catalogue& catalogue, SubmissionState& state,
                  SubmissionOptions options);

    clsSubmit& submit() noexcept { return m_clsSubmit; }
    const clsSubmit& submit() const noexcept { return m_clsSubmit; }

    RunRecord& record() noexcept { return m_record; }

    // For the next run only; without it a run sends every engine of EngineTable for every URL.
    void prepare(RunParts parts);
    // The same for the rest of an interrupted run. Its ledger is locked from here on; throws Failure if
    // another program uses it.
    void prepare(CutOffRun run);
    void forgetPrepared();
    // Sets the maximum of the progress bar to the requests of the run.
    void countWork();

    // Starts with the first row of lsvSiteSubmitting. Shows a failure and returns false.
    bool StartSubmit();
    // Cancels all requests, which ends the run. A connection that ends from here on must not get another
    // engine, or the pool would never become idle.
    void stop();
    // Drops the run; it sends no more signals.
    void abandon();

    bool isRunning() const noexcept { return m_held != nullptr; }
    // Running, or the previous run has not reported its end yet.
    bool isUnderWay() const noexcept { return isRunning() || m_ended; }
    // True if no connection is active. Shows a failure and returns true then, so that the run cannot wait for
    // ever.
    bool isFinish();

  Q_SIGNALS:
    void engineEnded(const relay::EngineEnded& ended);
    void reportWritten(const relay::UrlReport& report);
    void runDone(const relay::RunSummary& summary);
    void stateChanged();

  private:
    bool startRun();
    std::int16_t connectionsToOpen();
    void beginURL();
    void SubmitIt(std::int16_t Index);
    // `number` counts the engines due for the URL, from 1.
    void submitEngine(std::int16_t Index, std::int16_t number);
    void finishURL();
    void reportURL();
    void countReport(const UrlReport& report);
    void stopSubmission();
    void endWhenIdle();
    void endRun();
    bool setSiteSubmittingStatus(std::int16_t Row);
    void setSubmitComplete();
    void announceRunDone();
    void TimerSubmit();
    void countEnded(const EngineEnded& ended);
    void countResult(std::int16_t result);
    RunPlan planOfLists() const;
    void recallCutOff();
    void recallReport(const PlannedURL& url, const UrlReport& report);
    std::int16_t dueEngines(std::string_view key) const;
    // Records of EngineTable; an empty list means all of them.
    std::vector<EngineResult> enginesOf(const std::vector<std::int16_t>& indexes) const;
    void noteSending(std::int16_t EngineIndex);
    void showConnection(std::int16_t Index, const std::string& words);

    const Services& m_services;
    const Catalogue& m_catalogue;
    SubmissionState& m_state;
    clsSubmit m_clsSubmit;
    EngineDispatcher m_dispatcher;
    ReportWriter m_reports;
    RunRecord m_record;
    QTimer m_TimerSubmit;
    Catalogue::Hold m_held;     // from StartSubmit to the end of the run
    bool m_ended = false;       // the last URL is done, but not reported yet
    bool m_limitShown = false;  // the message about too few descriptors was shown
    RunSummary m_summary;
    std::unordered_map<std::string, int> m_reportsOfFile;  // of this run, by path

    RunParts m_parts;
    const RunParts::Part* m_part = nullptr;  // of the current URL; null: all engines
    std::optional<CutOffRun> m_cutOff;       // the run that the next one continues
};

}  // namespace relay

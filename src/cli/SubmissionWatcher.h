// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionRecords.h"

#include <vector>

namespace relay {

class CommandLineContext;
class Results;
class SubmissionController;
struct CutOffRun;

// Reports a run as it goes: JSON events, or a live count on the terminal and a summary at the end.
class SubmissionWatcher final {
  public:
    // The controller's run is prepared.
    SubmissionWatcher(CommandLineContext& context, const SubmissionController& controller);
    // The run goes on with one that was cut off: names what is sent again, and counts what is done.
    void goOn(const CutOffRun& run);

    void engineEnded(const EngineEnded& ended);
    void reportWritten(const UrlReport& report);
    void runDone(const RunSummary& summary);

    bool isDone() const noexcept { return m_done; }
    int exitCode() const noexcept;

  private:
    void showCount();
    void writeSummary();

    CommandLineContext& m_context;
    const Results& m_results;
    int m_urls;  // numbers the live count runs up to
    int m_engines;
    int m_url = 1;         // the current one
    int m_endedOfUrl = 0;  // engines that ended for it
    std::vector<UrlReport> m_reports;
    bool m_reportMissing = false;
    bool m_done = false;
    RunSummary m_summary;
};

}  // namespace relay

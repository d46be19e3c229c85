// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionRecords.h"

#include <map>
#include <string>
#include <vector>

namespace relay {

class CommandLineContext;

// Reports a run as it goes: JSON events, or a live count on the terminal and a summary at the end.
class SubmissionWatcher final {
  public:
    // `urls` and `engines` are the totals of the live count.
    SubmissionWatcher(CommandLineContext& context, int urls, int engines);

    void engineEnded(const EngineEnded& ended);
    void reportWritten(const UrlReport& report);
    void runDone(const RunSummary& summary);

    bool isDone() const noexcept { return m_done; }
    int exitCode() const noexcept;

  private:
    void showCount();
    void writeSummary();

    CommandLineContext& m_context;
    int m_urls;
    int m_engines;
    int m_url = 1;         // the current one
    int m_endedOfUrl = 0;  // engines that ended for it
    std::map<std::int16_t, int> m_byResult;
    std::vector<UrlReport> m_reports;
    bool m_reportMissing = false;
    bool m_done = false;
    RunSummary m_summary;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/SubmissionWatcher.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/Table.h"
#include "core/Clock.h"
#include "core/JsonLine.h"
#include "submission/RunEvents.h"
#include "submission/SubmissionController.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <string>

namespace relay {

SubmissionWatcher::SubmissionWatcher(CommandLineContext& context, const SubmissionController& controller)
    : m_context(context),
      m_results(controller.state().results),
      m_urls(controller.state().lsvSiteSubmitting.count()),
      m_engines(static_cast<int>(controller.submit().EngineTable().size())) {}

void SubmissionWatcher::goOn(const CutOffRun& run) {
    m_reports = run.reports;
    m_reportMissing = std::any_of(m_reports.begin(), m_reports.end(),
                                  [](const UrlReport& report) { return report.path.empty(); });
    m_url += static_cast<int>(m_reports.size());
    m_urls += static_cast<int>(m_reports.size());
    m_endedOfUrl = static_cast<int>(std::count_if(
        run.ended.begin(), run.ended.end(), [&](const PairEnd& end) { return !run.finished[end.url]; }));
    m_context.note("Continuing the run of " + reportDate(run.head.time) + ": " + std::to_string(run.left()) +
                   " requests are left.");
    for (const PairEnd& pair : run.inFlight) {
        const PlannedURL& url = run.plan.urls[pair.url];
        const std::string& engine = run.plan.engines[pair.engine];
        // With --quiet too: these may reach an engine twice.
        m_context.warn("Sent again, because it was in flight: " + run.nameOf(pair));
        if (!m_context.json) continue;
        JsonLine()
            .add("event", "again")
            .add("website", url.website)
            .add("url", url.URL)
            .add("engine", engine)
            .write(m_context.out());
    }
}

void SubmissionWatcher::engineEnded(const EngineEnded& ended) {
    ++m_endedOfUrl;
    if (m_context.json) {
        std::ostream& out = m_context.out();
        JsonLine line;
        line.add("event", "engine");
        addEngineEnded(line, ended);
        line.write(out);
        out.flush();
    }
    showCount();
}

void SubmissionWatcher::showCount() {
    if (!m_context.progress().isOn()) return;
    const int successes = m_results.countOf(Success);
    m_context.progress().show("URL " + std::to_string(m_url) + " of " + std::to_string(m_urls) + ", engine " +
                              std::to_string(m_endedOfUrl) + " of " + std::to_string(m_engines) + "   " +
                              std::to_string(successes) + " succeeded, " +
                              std::to_string(m_results.count() - successes) + " did not");
}

void SubmissionWatcher::reportWritten(const UrlReport& report) {
    m_reports.push_back(report);
    if (!report.problem.empty()) {
        m_reportMissing = true;
        const char* const words =
            report.path.empty() ? " could not be written: " : " was written, but with an error: ";
        m_context.warn("The report of " + report.URL + words + report.problem);
    }
    if (m_context.json) {
        std::ostream& out = m_context.out();
        JsonLine line;
        line.add("event", "report");
        addUrlReport(line, report);
        line.write(out);
        out.flush();
    }
    ++m_url;
    m_endedOfUrl = 0;
}

void SubmissionWatcher::runDone(const RunSummary& summary) {
    m_done = true;
    m_summary = summary;
    if (m_context.json) {
        JsonLine()
            .add("event", "done")
            .add("urls", summary.urls)
            .add("success", summary.success)
            .add("failed", summary.failed)
            .add("cancelled", summary.cancelled)
            .add("shared", summary.sharedReports)
            .write(m_context.out());
    } else {
        writeSummary();
    }
}

void SubmissionWatcher::writeSummary() {
    std::ostream& out = m_context.out();
    std::map<std::string_view, int> byWord;  // two classes share one word
    for (int place = 0; place < m_results.count(); ++place) ++byWord[m_results.at(place).word()];
    Table counts({"Result", "Requests"});
    const auto addCount = [&](std::string_view word) { counts.add({word, std::to_string(byWord[word])}); };
    addCount(resultWord(Success));
    for (const auto& [word, count] : byWord)
        if (word != resultWord(Success)) addCount(word);
    counts.add({"All", std::to_string(m_results.count())});
    counts.write(out, m_context.colours());

    Table reports({"URL", "Succeeded", "Failed", "Report"});
    for (const UrlReport& report : m_reports)
        reports.add({report.URL, std::to_string(report.success), std::to_string(report.failed),
                     report.path.empty() ? "(not written)" : std::string_view(report.path)});
    if (reports.empty()) return;
    out << '\n';
    reports.write(out, m_context.colours());
    if (m_summary.sharedReports == 0) return;
    out << '\n' << m_summary.sharedReports << " reports share ";
    if (m_summary.sharedFiles == 1)
        out << "one file, which contains the last of them.\n";
    else
        out << m_summary.sharedFiles << " files; each contains the last of its reports.\n";
}

int SubmissionWatcher::exitCode() const noexcept {
    if (m_summary.stopped) return kStopped;
    return m_summary.failed > 0 || m_summary.cancelled > 0 || m_reportMissing ? kSomeFailed : kSucceeded;
}

}  // namespace relay

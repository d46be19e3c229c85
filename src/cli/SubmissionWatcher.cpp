// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/SubmissionWatcher.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/JsonLine.h"
#include "cli/Table.h"

#include <ostream>

namespace relay {

SubmissionWatcher::SubmissionWatcher(CommandLineContext& context, int urls, int engines)
    : m_context(context), m_urls(urls), m_engines(engines) {}

void SubmissionWatcher::engineEnded(const EngineEnded& ended) {
    ++m_endedOfUrl;
    ++m_byResult[ended.result];
    if (m_context.json) {
        std::ostream& out = m_context.out();
        JsonLine()
            .add("event", "engine")
            .add("url", ended.URL)
            .add("engine", ended.engine)
            .add("code", ended.code)
            .add("result", ended.result)
            .add("word", resultWord(ended.result))
            .add("ms", ended.milliseconds)
            .write(out);
        out.flush();
    }
    showCount();
}

void SubmissionWatcher::showCount() {
    if (!m_context.progress().isOn()) return;
    int ended = 0;
    for (const auto& [result, count] : m_byResult) ended += count;
    const int successes = m_byResult[Success];
    m_context.progress().show("URL " + std::to_string(m_url) + " of " + std::to_string(m_urls) + ", engine " +
                              std::to_string(m_endedOfUrl) + " of " + std::to_string(m_engines) + "   " +
                              std::to_string(successes) + " succeeded, " + std::to_string(ended - successes) +
                              " did not");
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
        JsonLine()
            .add("event", "report")
            .add("url", report.URL)
            .add("website", report.website)
            .add("path", report.path)
            .add("success", report.success)
            .add("failed", report.failed)
            .write(out);
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
    int total = 0;
    for (const auto& [result, count] : m_byResult) {
        byWord[resultWord(result)] += count;
        total += count;
    }
    Table counts({"Result", "Requests"});
    const auto addCount = [&](std::string_view word) { counts.add({word, std::to_string(byWord[word])}); };
    addCount(resultWord(Success));
    for (const auto& [word, count] : byWord)
        if (word != resultWord(Success)) addCount(word);
    counts.add({"All", std::to_string(total)});
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

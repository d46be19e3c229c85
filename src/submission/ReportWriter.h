// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionRecords.h"
#include "submission/SubmissionReport.h"

#include <QLocale>

#include <string>
#include <vector>

namespace relay {

struct Services;

// How reports are written.
struct SubmissionOptions final {
    QLocale locale;            // for dates
    bool linkEngines = false;  // engine names as links; the switch "/U"
    bool keepLedger = true;    // see Ledger
};

// Writes the reports of a run and collects the engines that failed in it.
class ReportWriter final {
  public:
    ReportWriter(const Services& services, SubmissionOptions options);

    // Empties the list of failed engines. Call at the start of a run.
    void setFailEngine();
    // The path of a report written at this time.
    std::string reportPath(const std::string& URL, const QDateTime& now) const;
    // Writes the report of one URL, lists it in the website file and appends the failed engines to fail.eng.
    // A failure goes to the log and into the result.
    UrlReport CreateReport(const std::string& URL, const std::string& WebsiteFile,
                           const std::vector<EngineResult>& engines, const QDateTime& now);
    // Appends the failed engines of a URL that was reported before an interruption. Throws Failure.
    void recallFailed(const std::vector<EngineResult>& engines);

  private:
    void save(const std::string& text, const QDateTime& now, UrlReport& report) const;
    void appendFailed() const;

    const Services& m_services;
    SubmissionOptions m_options;
    FailEngines m_FailEngines;
};

}  // namespace relay

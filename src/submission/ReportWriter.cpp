// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/ReportWriter.h"

#include "core/Clock.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/ReportFiles.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "submission/SubmissionData.h"

#include <utility>

namespace relay {

ReportWriter::ReportWriter(const Services& services, SubmissionOptions options)
    : m_services(services), m_options(std::move(options)) {}

void ReportWriter::setFailEngine() {
    m_FailEngines.clear();
}

std::string ReportWriter::reportPath(const std::string& URL, const QDateTime& now) const {
    return m_services.paths.reportFolder() + "/" + reportFileName(URL, now);
}

void ReportWriter::appendFailed() const {
    appendFile(m_services.paths.inApp("fail.eng"), m_FailEngines.text());
}

void ReportWriter::recallFailed(const std::vector<EngineResult>& engines) {
    buildResultRows(engines, false, m_FailEngines);
    appendFailed();
}

UrlReport ReportWriter::CreateReport(const std::string& URL, const std::string& WebsiteFile,
                                     const std::vector<EngineResult>& engines, const QDateTime& now) {
    const BusyPointer busy(m_services.prompts);
    const SubmitResults results = buildResultRows(engines, m_options.linkEngines, m_FailEngines);
    UrlReport report{URL, WebsiteFile, {}, {}, results.successCount, results.failCount};
    const clsPreference& preference = m_services.preference;
    std::string text =
        buildReport(URL, loadWebsiteQuietly(WebsiteFile), longDate(now, m_options.locale), results,
                    {preference.DealerName, preference.DealerEmail, preference.DealerURL});
    save(text.append("\r\n"), now, report);
    return report;
}

void ReportWriter::save(const std::string& text, const QDateTime& now, UrlReport& report) const {
    const std::string path = reportPath(report.URL, now);
    auto failure = failureOf([&] {
        makeFolder(m_services.paths.reportFolder());
        writeFile(path, text);
        report.path = path;
        noteReport(report.website, report.URL, now, path);
    });
    // Without a report, too, the failed engines are saved.
    const auto unsaved = failureOf([&] { appendFailed(); });
    if (!failure) failure = unsaved;
    if (!failure) return;
    m_services.log.WriteErrorLog("CreateReport_Error: " + *failure);
    m_services.log.WriteErrorLog("ReportFile: " + path);
    report.problem = *failure;
}

}  // namespace relay

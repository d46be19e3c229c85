// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/clsSubmit.h"

#include "catalogue/EngineCollection.h"
#include "core/Clock.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Rows.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "projects/WebsiteFile.h"
#include "submission/SubmissionState.h"
#include "transport/frmHTTPMX.h"

#include <exception>
#include <limits>
#include <utility>

namespace relay {

namespace {

constexpr int kMostEngines = std::numeric_limits<std::int16_t>::max();

// A website file that cannot be read reads as empty, as every reader of single keys has it.
IniFile loadQuietly(const std::string& path) {
    try {
        return IniFile::load(path);
    } catch (const Failure&) {
        return {};
    }
}

const clsEngines& engineNamed(const EngineCollection& engines, std::string_view name) {
    const clsEngines* engine = engines.find(name);
    if (!engine) throw Failure("Invalid procedure call or argument", 5);
    return *engine;
}

}  // namespace

clsSubmit::clsSubmit(const SubmissionServices& services, SubmissionState& state,
                     SubmissionScheduler& scheduler)
    : m_services(services), m_state(state), m_scheduler(scheduler), m_website(std::make_unique<IniFile>()) {}

clsSubmit::~clsSubmit() = default;

void clsSubmit::setWebDetails(const std::string& URL, const std::string& WebsiteFile) {
    *m_website = loadQuietly(WebsiteFile);
    m_web = readWebDetails(URL, *m_website);
    m_results = {};
}

std::string clsSubmit::getSubmitData(std::string_view EngineName) {
    std::string data;
    trap(m_services.prompts, "Module: getSubmitData\r\n", [&] {
        data = expandQuery({engineNamed(m_services.engines, EngineName), m_web, *m_website,
                            m_services.countries, m_services.preference.BlockSpam != 0});
    });
    return data;
}

bool clsSubmit::createSubmissionData() {
    m_progress = 0;
    const bool made = trap(m_services.prompts, "createSubmissionData_Error:\r\n", [&] {
        listSiteURLs();
        listEngines();
    });
    if (!made) {
        m_state.lsvSiteSubmitting.clear();
        m_EngineTable.clear();
    }
    return made;
}

void clsSubmit::listSiteURLs() {
    Rows& list = m_state.lsvSiteSubmitting;
    const RowsBatch batch(list);
    list.clear();
    for (int site = 0; site < m_state.lsvSiteSelection.count(); ++site) {
        const Row row(m_state.lsvSiteSelection.at(site));
        if (!row.checked) continue;
        const IniFile file = loadQuietly(row.tag);
        const int last = toInt16(leadingNumber(file.value(kWebsiteSection, "LastURL")));
        for (int number = 1; number <= last; ++number) {
            const std::string url = file.value(kUrlSection, "URL" + std::to_string(number));
            // The same URL may go out for two websites, but not twice for one.
            if (!url.empty()) list.tryAdd({row.key + "|" + url, url, {row.text, ""}, "URL", row.tag});
            if (list.count() > kMostEngines) throw Failure("Overflow", 6);
            advanceProgress();
        }
    }
}

void clsSubmit::listEngines() {
    const Rows& selected = m_services.lsvSelectedEngines;
    if (selected.count() > kMostEngines) throw Failure("Overflow", 6);
    m_EngineTable.resize(static_cast<std::size_t>(selected.count()));
    for (int row = 0; row < selected.count(); ++row) {
        m_EngineTable[static_cast<std::size_t>(row)].Name = selected.at(row).text;
        advanceProgress();
    }
}

void clsSubmit::advanceProgress() {
    if (++m_progress <= m_state.progressMaximum) m_state.progressValue = m_progress;
}

std::int16_t clsSubmit::NumOfEngines() const noexcept {
    return static_cast<std::int16_t>(m_EngineTable.size());
}

std::size_t clsSubmit::place(int Index) const {
    if (Index < 1 || Index > socketCount()) throw Failure("Subscript out of range", 9);
    return static_cast<std::size_t>(Index - 1);
}

void clsSubmit::sizeSockets(std::int16_t Count) {
    if (Count < 1) throw Failure("Subscript out of range", 9);
    m_SubmitSocket.assign(static_cast<std::size_t>(Count), {});
    m_watch.assign(static_cast<std::size_t>(Count), {});
}

void clsSubmit::LoadHTTPMXSocket(std::int16_t Count) {
    // A loaded pool keeps its size, so each run has its own.
    if (m_frmHTTPMX) {
        m_frmHTTPMX->disconnect(this);
        m_frmHTTPMX.release()->deleteLater();
    }
    m_frmHTTPMX = std::make_unique<frmHTTPMX>(m_services.network, m_services.preference, m_services.log);
    m_frmHTTPMX->setLogMask([this](std::string_view URL) { return maskPassword(URL, m_web); });
    m_frmHTTPMX->setKeepReplies(false);  // a result is the status alone
    m_frmHTTPMX->setConnections(Count);
    // A run on half a pool would wait for requests that never end.
    std::string failed;
    const auto loading =
        connect(m_frmHTTPMX.get(), &frmHTTPMX::Completed, this,
                [&failed](qint16, qint32, const std::string& Response) { failed = Response; });
    m_frmHTTPMX->Load();
    disconnect(loading);
    if (!failed.empty()) throw Failure(failed);
    connect(m_frmHTTPMX.get(), &frmHTTPMX::Completed, this,
            [this](qint16 Index, qint32 Code, const std::string&) { m_frmHTTPMX_Completed(Index, Code); });
    connect(m_frmHTTPMX.get(), &frmHTTPMX::Progress, this, &clsSubmit::m_frmHTTPMX_Progress);
    connect(m_frmHTTPMX.get(), &frmHTTPMX::Cancelled, this, &clsSubmit::m_frmHTTPMX_Cancelled);
}

void clsSubmit::Submitting(std::int16_t Index, std::int16_t EngineIndex) {
    if (Index > m_state.lsvConnections.count()) return;
    int step = 0;
    try {
        sendRequest(Index, EngineIndex, step);
    } catch (const std::exception& failure) {
        if (m_services.log.traceOn()) {
            m_services.log.WriteTraceLog(
                "Module : Submitting. \r\n" + escapeControlCharacters(failureText(failure)) +
                " Line Number: " + std::to_string(step) + " Socket : " + std::to_string(Index) +
                " Engine: " + escapeControlCharacters(socket(Index).EngineName));
        }
        // Nothing else would ever free this connection, and the run would wait for it.
        if (socket(Index).Busy == 1) endAtOnce(Index);
    }
}

void clsSubmit::sendRequest(std::int16_t Index, std::int16_t EngineIndex, int& step) {
    EngineResult& result = m_EngineTable.at(static_cast<std::size_t>(EngineIndex - 1));
    SubmitSocket& work = socket(Index);
    m_state.lsvConnections.setSubItem(Index - 1, 1, result.Name);
    showConnection(Index, "Connecting ...", "Connecting");
    step = 1;
    work.Stopped = work.Flags = 0;
    work.Result = NotReached;
    work.Busy = 1;
    work.EngineIndex = EngineIndex;
    work.EngineName = result.Name;
    m_watch[place(Index)] = {std::chrono::steady_clock::now(), 0};
    step = 2;
    const clsEngines& engine = engineNamed(m_services.engines, result.Name);
    work.Home = engine.Home();
    work.EngineName = engine.name();
    work.Method = engine.Method();
    work.Action = engine.Action();
    result.AddURL = engine.AddURL();
    step = 3;
    work.SubmitData = getSubmitData(work.EngineName);
    step = 4;
    if (auto request = submissionRequest(work.Method, work.Action, work.SubmitData)) {
        work.Action = std::move(request->URL);
        if (m_services.log.traceOn()) {
            m_services.log.WriteTraceLog(
                "Submitting: " + escapeControlCharacters(work.EngineName) + "\r\n" +
                escapeControlCharacters(maskPassword(work.Method + " " + work.Action, m_web)) + "\r\n" +
                escapeControlCharacters(
                    maskPassword(request->isPost() ? work.SubmitData : std::string(), m_web)));
        }
        m_frmHTTPMX->Connect(Index, work.Action, work.Method, work.SubmitData);
        return;
    }
    step = 5;
    const std::string name = work.EngineName;
    const std::string data = work.SubmitData;
    endAtOnce(Index);
    if (m_services.log.traceOn()) {
        m_services.log.WriteTraceLog("Script Error.\r\n Engine: " + escapeControlCharacters(name) +
                                     "\r\nSubmitData: " + escapeControlCharacters(maskPassword(data, m_web)));
    }
}

void clsSubmit::endAtOnce(std::int16_t Index) {
    socket(Index).Result = Failed;
    setSubmitResults(Index, "clsSubmit_Submitting", "Invalid SubmitData");
    m_scheduler.SubmitIt(Index);
}

void clsSubmit::setSubmitResults(std::int16_t Index, std::string_view Caller, std::string_view Text) {
    try {
        SubmitSocket& work = socket(Index);
        work.Busy = 0;
        EngineResult* const result = work.EngineIndex < 1
                                         ? nullptr
                                         : &m_EngineTable.at(static_cast<std::size_t>(work.EngineIndex - 1));
        if (result != nullptr) result->Result = work.Result;
        showConnection(Index, Text, "Completed");
        if (result == nullptr) return;
        result->Home = work.Home;
        tellEnded(Index);
    } catch (const std::exception& failure) {
        if (!m_services.log.traceOn()) return;
        m_services.log.WriteTraceLog("setSubmitResults_Error: " + std::string(failureText(failure)) +
                                     " - Source: " + std::string(Caller) + " - " + std::string(Text));
    }
}

void clsSubmit::tellEnded(std::int16_t Index) {
    const SubmitSocket& work = socket(Index);
    const Watch& watch = m_watch[place(Index)];
    const auto taken = std::chrono::steady_clock::now() - watch.started;
    Q_EMIT engineEnded({m_state.URL, work.EngineName, watch.code, work.Result,
                        std::chrono::duration_cast<std::chrono::milliseconds>(taken).count()});
}

void clsSubmit::m_frmHTTPMX_Completed(std::int16_t Index, std::int32_t Code) {
    try {
        SubmitSocket& work = socket(Index);
        work.Stopped = work.Busy = 0;
        work.Result = classifyReply(Code);
        m_watch[place(Index)].code = Code;
        setSubmitResults(Index, "m_frmHTTPMX_Completed");
        m_scheduler.SubmitIt(Index);
    } catch (const std::exception& failure) {
        m_services.log.WriteErrorLog("m_frmHTTPMX_Completed_Error: " + std::string(failureText(failure)));
    }
}

void clsSubmit::m_frmHTTPMX_Progress(std::int16_t Index, std::int32_t Bytes) {
    if (Index < 1 || Index > m_state.lsvConnections.count()) return;
    showConnection(Index, std::to_string(Bytes) + " bytes received", "Connected");
}

void clsSubmit::m_frmHTTPMX_Cancelled() {
    m_services.log.WriteErrorLog("HTTPMX_Cancelled");
    m_scheduler.stopSubmission();
}

void clsSubmit::showConnection(std::int16_t Index, std::string_view status, std::string_view icon) {
    m_state.lsvConnections.setSubItem(Index - 1, 2, std::string(status));
    m_state.lsvConnections.setIcon(Index - 1, std::string(icon));
}

void clsSubmit::Disconnect() {
    if (m_frmHTTPMX) m_frmHTTPMX->Disconnect();
}

void clsSubmit::setFailEngine() {
    m_FailEngines.clear();
}

void clsSubmit::getSubmitResults() {
    m_results = buildResultRows(m_EngineTable, containsNoCase(m_services.commandLine, "/U"), m_FailEngines);
}

UrlReport clsSubmit::CreateReport(const std::string& URL, const std::string& WebsiteFile) {
    const BusyPointer busy(m_services.prompts);
    UrlReport report{URL, WebsiteFile, {}, {}, 0, 0};
    getSubmitResults();
    report.success = m_results.successCount;
    report.failed = m_results.failCount;
    const clsPreference& preference = m_services.preference;
    std::string text =
        buildReport(URL, loadQuietly(WebsiteFile), longDate(m_services.clock.now(), m_services.locale),
                    m_results, {preference.DealerName, preference.DealerEmail, preference.DealerURL});
    saveReport(std::move(text.append("\r\n")), report);
    return report;
}

void clsSubmit::saveReport(const std::string& text, UrlReport& report) {
    const QDateTime now = m_services.clock.now();
    std::string path;
    try {
        makeFolder(m_services.paths.inApp("Reports"));
        const std::string folder = m_services.paths.inApp("Reports/Submition");
        makeFolder(folder);
        path = folder + "/" + reportFileName(report.URL, now);
        writeFile(path, text);
        report.path = path;
        std::exception_ptr unnoted;
        try {
            noteReport(report.website, report.URL, now, path);
        } catch (...) {
            unnoted = std::current_exception();  // the failed engines are offered again all the same
        }
        appendFile(m_services.paths.inApp("fail.eng"), m_FailEngines.text());
        if (unnoted) std::rethrow_exception(unnoted);
    } catch (const std::exception& failure) {
        m_services.log.WriteErrorLog("CreateReport_Error: " + std::string(failureText(failure)));
        m_services.log.WriteErrorLog("ReportFile: " + path);
        report.problem = failureText(failure);
    }
}

}  // namespace relay

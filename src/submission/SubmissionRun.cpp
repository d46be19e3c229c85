// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/SubmissionRun.h"

#include "core/Clock.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "transport/Descriptors.h"

#include <algorithm>
#include <utility>

namespace relay {

SubmissionRun::SubmissionRun(const Services& services, const Catalogue& catalogue, SubmissionState& state,
                             SubmissionOptions options)
    : m_services(services),
      m_catalogue(catalogue),
      m_state(state),
      m_clsSubmit(services, catalogue),
      m_reports(services, options),
      m_record(services, catalogue, state.results, options.keepLedger) {
    m_TimerSubmit.setInterval(1000);
    connect(&m_TimerSubmit, &QTimer::timeout, this, &SubmissionRun::TimerSubmit);
    connect(&m_clsSubmit, &clsSubmit::sending, this, &SubmissionRun::noteSending);
    connect(&m_clsSubmit, &clsSubmit::engineEnded, this, &SubmissionRun::countEnded);
    connect(&m_clsSubmit, &clsSubmit::connectionChanged, this, &SubmissionRun::showConnection);
    connect(&m_clsSubmit, &clsSubmit::connectionFree, this, &SubmissionRun::SubmitIt);
    connect(&m_clsSubmit, &clsSubmit::cancelled, this, &SubmissionRun::stopSubmission);
    connect(&m_dispatcher, &EngineDispatcher::engineDue, this, &SubmissionRun::submitEngine);
    connect(&m_dispatcher, &EngineDispatcher::noEngineLeft, this, &SubmissionRun::finishURL);
}

bool SubmissionRun::StartSubmit() {
    try {
        return startRun();
    } catch (const std::exception& failure) {
        m_held.reset();
        m_TimerSubmit.stop();
        // The ledger of an interrupted run stays locked for the next attempt.
        if (!m_cutOff) m_record.leave();
        const auto* known = dynamic_cast<const Failure*>(&failure);
        m_services.log.WriteErrorLog("StartSubmit_Error: " + std::string(failureText(failure)));
        m_services.prompts.message(
            "Module: StartSubmit\r\nErrorCode: " + std::to_string(known ? known->number() : 0), "Error",
            Icon::Critical);
        return false;
    }
}

bool SubmissionRun::startRun() {
    const std::int16_t Connections = m_services.preference.Connections;
    // A list of failed engines that cannot be removed must not prevent a run.
    failureOf([&] { removeFile(m_services.paths.inApp("fail.eng")); });
    m_state.StatusBar1 = "Start submitting ...";
    m_state.clock.clear();
    m_clsSubmit.sizeSockets(Connections);
    m_state.Done = 0;
    m_state.StartTime = m_services.clock.now();
    m_state.lsvReport.clear();
    m_reports.setFailEngine();
    {
        const RowsBatch batch(m_state.lsvConnections);
        m_state.lsvConnections.clear();
        for (int row = 0; row < Connections; ++row) m_state.lsvConnections.add({{}, {}, {"", ""}, {}, {}});
    }
    m_state.URLIndex = 1;
    if (!setSiteSubmittingStatus(1)) return false;
    m_state.ActiveConnections = connectionsToOpen();
    m_clsSubmit.LoadHTTPMXSocket(m_state.ActiveConnections);
    m_TimerSubmit.start();
    m_summary = {};
    m_state.progressValue = 0;
    countWork();
    m_reportsOfFile.clear();
    m_held = m_catalogue.hold();
    if (m_cutOff)
        recallCutOff();
    else
        m_record.begin(planOfLists());
    beginURL();
    return true;
}

std::int16_t SubmissionRun::connectionsToOpen() {
    std::int16_t due = 1;  // the most engines of one URL
    const Rows& urls = m_state.lsvSiteSubmitting;
    for (int row = 0; row < urls.count() && due < m_clsSubmit.NumOfEngines(); ++row)
        due = std::max(due, dueEngines(urls.at(row).key));
    const std::int16_t wanted = std::min(due, m_services.preference.Connections);
    const std::int16_t most = mostConnections();
    if (wanted <= most) return wanted;
    if (!std::exchange(m_limitShown, true)) {
        m_services.prompts.message("Opening " + std::to_string(most) + " of " + std::to_string(wanted) +
                                       " connections: the system limits the files this program may open.",
                                   "Submit", Icon::Information);
    }
    return most;
}

void SubmissionRun::countWork() {
    m_state.progressMaximum = 0;
    const Rows& urls = m_state.lsvSiteSubmitting;
    for (int row = 0; row < urls.count(); ++row) m_state.progressMaximum += dueEngines(urls.at(row).key);
}

void SubmissionRun::prepare(RunParts parts) {
    forgetPrepared();
    m_parts = std::move(parts);
}

void SubmissionRun::prepare(CutOffRun run) {
    forgetPrepared();
    m_record.lock(run);
    m_parts = RunParts::leftOf(run);
    m_cutOff = std::move(run);
}

void SubmissionRun::forgetPrepared() {
    m_record.leave();
    m_cutOff.reset();
    m_part = nullptr;
    m_parts = {};
}

RunPlan SubmissionRun::planOfLists() const {
    RunPlan plan;
    plan.engines.reserve(m_clsSubmit.EngineTable().size());
    for (const EngineResult& engine : m_clsSubmit.EngineTable()) plan.engines.push_back(engine.Name);
    const Rows& urls = m_state.lsvSiteSubmitting;
    for (int row = 0; row < urls.count(); ++row) {
        const RowView url = urls.at(row);
        PlannedURL planned{std::string(url.tag), std::string(url.subItems.at(0)), std::string(url.text), {}};
        if (const RunParts::Part* part = m_parts.find(url.key)) planned.engines = part->reported;
        plan.urls.push_back(std::move(planned));
    }
    return plan;
}

// As if it had all happened in this run.
void SubmissionRun::recallCutOff() {
    m_record.resume(*m_cutOff, m_state.lsvSiteSubmitting);
    std::unordered_map<std::string, const UrlReport*> reports;
    for (const UrlReport& report : m_cutOff->reports) reports[urlKey(report.website, report.URL)] = &report;
    auto next = m_state.results.ends().begin();
    const auto end = m_state.results.ends().end();
    for (std::size_t url = 0; url < m_cutOff->plan.urls.size(); ++url) {
        for (; next != end && next->url == url; ++next) {
            m_clsSubmit.recallResult(static_cast<std::int16_t>(next->engine + 1), next->result);
            countResult(next->result);
        }
        const PlannedURL& planned = m_cutOff->plan.urls[url];
        const auto report = reports.find(urlKey(planned.website, planned.URL));
        if (report != reports.end()) recallReport(planned, *report->second);
    }
}

void SubmissionRun::recallReport(const PlannedURL& url, const UrlReport& report) {
    const auto failure = failureOf([&] { m_reports.recallFailed(enginesOf(url.engines)); });
    if (failure) m_services.log.WriteErrorLog("CreateReport_Error: " + *failure);
    m_state.lsvReport.tryAdd(
        {urlKey(url.website, url.URL), url.URL, {url.site, "Finish"}, "HTMLFile", report.path});
    countReport(report);
}

std::int16_t SubmissionRun::dueEngines(std::string_view key) const {
    const RunParts::Part* part = m_parts.find(key);
    return part ? static_cast<std::int16_t>(part->due.size()) : m_clsSubmit.NumOfEngines();
}

void SubmissionRun::beginURL() {
    m_state.EngineCounter = 0;
    const std::string key(m_state.lsvSiteSubmitting.at(m_state.URLIndex - 1).key);
    m_part = m_parts.find(key);
    m_record.beginURL(key);
    for (int i = 1; i <= m_state.ActiveConnections; ++i) m_clsSubmit.socket(i).Busy = 0;
    m_dispatcher.begin(m_state.ActiveConnections, dueEngines(key));
}

void SubmissionRun::SubmitIt(std::int16_t Index) {
    if (!isRunning()) return;
    if (!trap(m_services.prompts, "Module : SubmitIt. ", [&] { m_dispatcher.connectionFree(Index); }))
        endWhenIdle();
}

void SubmissionRun::submitEngine(std::int16_t Index, std::int16_t number) {
    const bool given = trap(m_services.prompts, "Module : SubmitIt. ", [&] {
        m_state.EngineCounter = number;
        m_state.Running = -1;
        const int due = m_part ? static_cast<int>(m_part->due.size()) : m_clsSubmit.NumOfEngines();
        m_state.StatusBar1 = std::to_string(due - number) + " engines remaining ...";
        const std::int16_t EngineIndex =
            m_part ? m_part->due.at(static_cast<std::size_t>(number - 1)) : number;
        if (Index <= m_state.lsvConnections.count()) m_clsSubmit.Submitting(Index, EngineIndex);
    });
    if (!given) endWhenIdle();
}

// After a failure: nothing else ends a run without active connections.
void SubmissionRun::endWhenIdle() {
    if (!isRunning() || !m_dispatcher.isDry() || !isFinish()) return;
    m_record.leave();  // the rest can be continued
    endRun();
}

// The end is reported through the event loop, so that its box does not open inside a signal of the last
// reply.
void SubmissionRun::endRun() {
    setSubmitComplete();
    m_ended = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (std::exchange(m_ended, false)) announceRunDone();
        },
        Qt::QueuedConnection);
}

bool SubmissionRun::isFinish() {
    bool finished = true;
    trap(m_services.prompts, "isFinish_Error: ", [&] {
        for (int i = 1; finished && i <= m_state.ActiveConnections; ++i)
            finished = m_clsSubmit.socket(i).Busy != 1;
    });
    return finished;
}

void SubmissionRun::finishURL() {
    if (!isFinish()) return;
    const bool finished = trap(m_services.prompts, "Module : SubmitIt. ", [&] {
        m_state.lsvSiteSubmitting.setSubItem(m_state.URLIndex - 1, 2, "Finish");
        m_state.lsvSiteSubmitting.setIcon(m_state.URLIndex - 1, "Finish");
        reportURL();
        if (m_state.URLIndex >= m_state.lsvSiteSubmitting.count()) return endRun();
        ++m_state.URLIndex;
        setSiteSubmittingStatus(m_state.URLIndex);
        beginURL();
    });
    if (finished) return;
    // After a failure the URL is not finished again; the URLs after it can be continued.
    m_record.leave();
    endRun();
}

void SubmissionRun::reportURL() {
    const Row site(m_state.lsvSiteSubmitting.at(m_state.URLIndex - 1));
    m_state.lsvReport.tryAdd({site.key, site.text, site.subItems, "HTMLFile", {}});
    const QDateTime now = m_services.clock.now();
    m_record.reporting(now, site.tag, site.text, m_reports.reportPath(site.text, now));
    const UrlReport report = m_reports.CreateReport(
        site.text, site.tag, enginesOf(m_part ? m_part->reported : std::vector<std::int16_t>()), now);
    m_record.reported(now, report);
    const int row = m_state.lsvReport.indexOf(site.key);
    if (row >= 0) m_state.lsvReport.setTag(row, report.path);
    countReport(report);
    Q_EMIT reportWritten(report);
}

std::vector<EngineResult> SubmissionRun::enginesOf(const std::vector<std::int16_t>& places) const {
    const std::vector<EngineResult>& all = m_clsSubmit.EngineTable();
    if (places.empty()) return all;
    std::vector<EngineResult> engines;
    for (const std::int16_t place : places) engines.push_back(all.at(static_cast<std::size_t>(place - 1)));
    return engines;
}

void SubmissionRun::countReport(const UrlReport& report) {
    ++m_summary.urls;
    if (report.path.empty()) return;
    const int reports = ++m_reportsOfFile[report.path];
    if (reports == 2) ++m_summary.sharedFiles;
    if (reports > 1) m_summary.sharedReports += reports == 2 ? 2 : 1;
}

bool SubmissionRun::setSiteSubmittingStatus(std::int16_t Row) {
    return trap(m_services.prompts, "setSiteSubmittingStatus_Error: ", [&] {
        Rows& list = m_state.lsvSiteSubmitting;
        if (Row < 1 || Row > list.count()) throw Failure("Index out of bounds", 35600);
        list.setSubItem(Row - 1, 2, "Submitting ....");
        list.setIcon(Row - 1, "Submitting");
        m_state.WebsiteFile = list.at(Row - 1).tag;
        m_state.URL = list.at(Row - 1).text;
        const auto unread = m_clsSubmit.setWebDetails(m_state.URL, m_state.WebsiteFile);
        if (unread) m_services.log.WriteErrorLog("setWebDetails: " + *unread);
    });
}

void SubmissionRun::setSubmitComplete() {
    // Whatever fails below, the run is over.
    m_state.Done = -1;
    m_state.Running = 0;
    m_state.page = 3;
    m_held.reset();
    m_dispatcher.stop();
    m_TimerSubmit.stop();
    m_record.finish();
    forgetPrepared();
    trap(m_services.prompts, "Module: setSubmitComplete\r\n", [&] {
        m_state.offerSubmit();
        m_state.lsvSiteSubmitting.clear();
        m_state.StatusBar1.clear();
        const QDateTime now = m_services.clock.now();
        for (int i = 1; i <= m_clsSubmit.socketCount(); ++i) m_clsSubmit.socket(i).LastDone = now;
        Q_EMIT stateChanged();
    });
}

void SubmissionRun::announceRunDone() {
    trap(m_services.prompts, "Module : SubmitIt. ", [&] {
        m_services.prompts.beep();
        m_services.prompts.message("Submission done !", "Submit", Icon::Information);
    });
    Q_EMIT runDone(m_summary);
}

void SubmissionRun::stopSubmission() {
    if (!isRunning()) return;
    trap(m_services.prompts, "Module: stopSubmission\r\nError: ", [&] {
        const int last = std::min<int>(m_state.ActiveConnections, m_state.lsvConnections.count());
        for (int i = 1; i <= last; ++i) m_clsSubmit.cancel(static_cast<std::int16_t>(i));
        m_state.StatusBar1 = "Please wait while generating report ...";
        Q_EMIT stateChanged();
        if (m_state.URLIndex < 1 || m_state.URLIndex > m_state.lsvSiteSubmitting.count()) return;
        m_state.lsvSiteSubmitting.setSubItem(m_state.URLIndex - 1, 2, "Canceled");
        reportURL();
    });
    setSubmitComplete();
    m_summary.stopped = true;
    Q_EMIT runDone(m_summary);
}

void SubmissionRun::TimerSubmit() {
    trap(
        m_services.prompts, "SubmitTimeout: ",
        [&] {
            // Not negative after the clock was set back.
            const qint64 seconds = std::max<qint64>(m_state.StartTime.secsTo(m_services.clock.now()), 0);
            m_state.clock = std::to_string(seconds / 3600) + " :" + std::to_string(seconds / 60 % 60) + " :" +
                            std::to_string(seconds % 60);
            Q_EMIT stateChanged();
        },
        "Submit Timeout");
}

void SubmissionRun::noteSending(std::int16_t EngineIndex) {
    const EngineResult& engine = m_clsSubmit.EngineTable().at(static_cast<std::size_t>(EngineIndex - 1));
    m_record.sending(m_state.WebsiteFile, m_state.URL, engine.Name);
}

void SubmissionRun::countResult(std::int16_t result) {
    if (result == Success)
        ++m_summary.success;
    else if (result == Cancelled)
        ++m_summary.cancelled;
    else
        ++m_summary.failed;
}

void SubmissionRun::countEnded(const EngineEnded& ended) {
    ++m_state.progressValue;
    countResult(ended.result);
    const auto engine = static_cast<std::size_t>(ended.EngineIndex - 1);
    if (ended.EngineIndex > 0 && engine < m_clsSubmit.EngineTable().size()) {
        EngineEnded named = ended;
        named.engine = m_clsSubmit.EngineTable()[engine].Name;
        m_record.ended(m_state.WebsiteFile, engine, named);
    }
    Q_EMIT engineEnded(ended);
}

void SubmissionRun::showConnection(std::int16_t Index, const std::string& words) {
    static constexpr const char* kIcons[] = {"", "Connecting", "Connected", "Completed"};
    Rows& list = m_state.lsvConnections;
    if (Index > list.count()) return;
    const SubmitSocket& work = m_clsSubmit.socket(Index);
    if (work.Stage == ConnectionStage::Connecting) list.setSubItem(Index - 1, 1, work.EngineName);
    list.setSubItem(Index - 1, 2, words);
    list.setIcon(Index - 1, kIcons[static_cast<int>(work.Stage)]);
}

void SubmissionRun::stop() {
    m_dispatcher.stop();
    m_clsSubmit.Disconnect();
}

void SubmissionRun::abandon() {
    m_held.reset();
    m_ended = false;
    m_dispatcher.stop();
    m_record.leave();
    m_state.Running = 0;
    m_TimerSubmit.stop();
    for (int i = 1; i <= m_clsSubmit.socketCount(); ++i)
        if (m_clsSubmit.socket(i).Stopped != 0) m_clsSubmit.Disconnect();
}

}  // namespace relay

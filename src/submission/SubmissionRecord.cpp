// SPDX-License-Identifier: GPL-3.0-or-later
// What a run records: its results and its ledger.
#include "core/Clock.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "submission/SubmissionRun.h"

#include <algorithm>
#include <utility>

namespace relay {

void SubmissionRun::reportLedgerFailure(const std::string& problem) {
    m_services.log.WriteErrorLog("Ledger: " + problem);
    Q_EMIT ledgerFailed(problem);
}

// In UTC and to a tenth of a second: local time asks the system for the time zone's file again and again.
const QDateTime& SubmissionRun::ledgerTime() {
    const auto now = std::chrono::steady_clock::now();
    if (!m_ledgerTime.isValid() || now - m_ledgerTimeRead > std::chrono::milliseconds(100)) {
        m_ledgerTime = m_services.clock.now().toUTC();
        m_ledgerTimeRead = now;
    }
    return m_ledgerTime;
}

void SubmissionRun::noteSending(std::int16_t EngineIndex) {
    writeLedger([&] {
        const EngineResult& engine = m_clsSubmit.EngineTable().at(static_cast<std::size_t>(EngineIndex - 1));
        m_ledger.start(ledgerTime(), m_state.WebsiteFile, m_state.URL, engine.Name);
    });
}

RunPlan SubmissionRun::planOfLists() const {
    RunPlan plan;
    plan.engines.reserve(m_clsSubmit.EngineTable().size());
    for (const EngineResult& engine : m_clsSubmit.EngineTable()) plan.engines.push_back(engine.Name);
    const Rows& urls = m_state.lsvSiteSubmitting;
    for (int row = 0; row < urls.count(); ++row) {
        const RowView url = urls.at(row);
        PlannedURL planned{std::string(url.tag), std::string(url.subItems.at(0)), std::string(url.text), {}};
        const auto part = m_parts.find(std::string(url.key));
        if (part != m_parts.end()) planned.engines = part->second.reported;
        plan.urls.push_back(std::move(planned));
    }
    return plan;
}

void SubmissionRun::beginRecord() {
    RunPlan plan = m_cutOff ? m_cutOff->plan : planOfLists();
    std::vector<std::string> addURLs;
    addURLs.reserve(plan.engines.size());
    for (const std::string& name : plan.engines) {
        const clsEngines* engine = m_catalogue.lists.engines.find(name);
        addURLs.emplace_back(engine ? engine->AddURL() : std::string_view());
    }
    m_placeOfURL.clear();
    for (const PlannedURL& url : plan.urls)
        m_placeOfURL.emplace(urlKey(url.website, url.URL), m_placeOfURL.size());
    m_state.results.begin(std::move(plan), std::move(addURLs));
    if (m_cutOff)
        recallCutOff();
    else if (m_keepLedger)
        beginLedger();
}

void SubmissionRun::beginLedger() {
    const RunPlan& plan = m_state.results.plan();
    const auto failure = failureOf([&] {
        const LedgerHead head{m_services.clock.now(), digests(plan), m_services.preference.BlockSpam != 0};
        m_ledger.begin(m_services.paths.AppPath, head, plan);
    });
    if (failure) reportLedgerFailure(*failure);
}

// As if it had all happened in this run, URL by URL.
void SubmissionRun::recallCutOff() {
    std::vector<PairEnd> ended = m_cutOff->ended;
    std::stable_sort(ended.begin(), ended.end(),
                     [](const PairEnd& a, const PairEnd& b) { return a.url < b.url; });
    std::unordered_map<std::string, const UrlReport*> reports;
    for (const UrlReport& report : m_cutOff->reports) reports[urlKey(report.website, report.URL)] = &report;
    auto next = ended.begin();
    for (std::size_t url = 0; url < m_cutOff->plan.urls.size(); ++url) {
        for (; next != ended.end() && next->url == url; ++next) {
            m_state.results.add(*next);
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

std::vector<EngineResult> SubmissionRun::enginesOf(const std::vector<std::int16_t>& places) const {
    const std::vector<EngineResult>& all = m_clsSubmit.EngineTable();
    if (places.empty()) return all;
    std::vector<EngineResult> engines;
    for (const std::int16_t place : places) engines.push_back(all.at(static_cast<std::size_t>(place - 1)));
    return engines;
}

std::int16_t SubmissionRun::dueEngines(std::string_view key) const {
    const auto part = m_parts.find(std::string(key));
    return part == m_parts.end() ? m_clsSubmit.NumOfEngines()
                                 : static_cast<std::int16_t>(part->second.due.size());
}

RunDigests SubmissionRun::digests(const RunPlan& plan) {
    return RunDigests::of(m_services, m_catalogueDigests.of(m_catalogue.lists.engines), plan);
}

void SubmissionRun::beginDigests() {
    if (m_keepLedger) m_catalogueDigests.begin(m_catalogue.lists.engines);
}

void SubmissionRun::prepare(Parts parts, std::optional<CutOffRun> cutOff) {
    forgetPrepared();
    if (cutOff) m_ledger.goOn(cutOff->path, cutOff->size);
    m_parts = std::move(parts);
    m_cutOff = std::move(cutOff);
}

void SubmissionRun::forgetPrepared() {
    m_ledger.leave();
    m_cutOff.reset();
    m_part = nullptr;
    m_parts.clear();
}

void SubmissionRun::noteRemoved(std::string_view website, std::string_view URL) {
    writeLedger([&] { m_ledger.removed(m_services.clock.now(), website, URL); });
}

}  // namespace relay

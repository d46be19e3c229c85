// SPDX-License-Identifier: GPL-3.0-or-later
// What a run keeps: its results, its ledger, and the ways back into a run that was cut off or did not
// succeed.
#include "core/Clock.h"
#include "core/FileStore.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "submission/SubmissionController.h"
#include "submission/WorkList.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace relay {

namespace {

constexpr SaveQuestion kSaveQuestion = {"Comma Separated Values (*.csv)|*.csv|All Files (*.*)|*.*",
                                        "The file '", "' already exists.\r\nDo you want to replace it?",
                                        "Save Results"};

// Places from 1 to `count`.
std::vector<std::int16_t> allEngines(std::size_t count) {
    std::vector<std::int16_t> engines(count);
    std::iota(engines.begin(), engines.end(), std::int16_t{1});
    return engines;
}

}  // namespace

void SubmissionController::tellLedgerFailed(const std::string& problem) {
    m_services.log.WriteErrorLog("Ledger: " + problem);
    Q_EMIT ledgerFailed(problem);
}

void SubmissionController::noteSending(std::int16_t EngineIndex) {
    writeLedger([&] {
        const EngineResult& engine = m_clsSubmit.EngineTable().at(static_cast<std::size_t>(EngineIndex - 1));
        m_ledger.start(m_services.clock.now(), m_state.WebsiteFile, m_state.URL, engine.Name);
    });
}

RunPlan SubmissionController::planOfLists() const {
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

void SubmissionController::beginRecord() {
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

void SubmissionController::beginLedger() {
    const RunPlan& plan = m_state.results.plan();
    const auto failure = failureOf([&] {
        const LedgerHead head{m_services.clock.now(), RunDigests::of(m_services, m_catalogue, plan),
                              m_services.preference.BlockSpam != 0};
        m_ledger.begin(m_services.paths.AppPath, head, plan);
    });
    if (failure) tellLedgerFailed(*failure);
}

// As if it had all happened in this run, URL by URL.
void SubmissionController::recallCutOff() {
    std::vector<PairEnd> ended = m_cutOff->ended;
    std::stable_sort(ended.begin(), ended.end(),
                     [](const PairEnd& a, const PairEnd& b) { return a.url < b.url; });
    auto next = ended.begin();
    for (std::size_t url = 0; url < m_cutOff->plan.urls.size(); ++url) {
        for (; next != ended.end() && next->url == url; ++next) {
            m_state.results.add(*next);
            m_clsSubmit.recallResult(static_cast<std::int16_t>(next->engine + 1), next->result);
            countResult(next->result);
        }
        recallReport(m_cutOff->plan.urls[url]);
    }
}

void SubmissionController::recallReport(const PlannedURL& url) {
    const auto report =
        std::find_if(m_cutOff->reports.begin(), m_cutOff->reports.end(),
                     [&](const UrlReport& r) { return r.URL == url.URL && r.website == url.website; });
    if (report == m_cutOff->reports.end()) return;
    const auto failure = failureOf([&] { m_reports.recallFailed(enginesOf(url.engines)); });
    if (failure) m_services.log.WriteErrorLog("CreateReport_Error: " + *failure);
    m_state.lsvReport.tryAdd(
        {urlKey(url.website, url.URL), url.URL, {url.site, "Finish"}, "HTMLFile", report->path});
    countReport(*report);
}

std::vector<EngineResult> SubmissionController::enginesOf(const std::vector<std::int16_t>& places) const {
    const std::vector<EngineResult>& all = m_clsSubmit.EngineTable();
    if (places.empty()) return all;
    std::vector<EngineResult> engines;
    for (const std::int16_t place : places) engines.push_back(all.at(static_cast<std::size_t>(place - 1)));
    return engines;
}

std::int16_t SubmissionController::dueEngines(std::string_view key) const {
    const auto part = m_parts.find(std::string(key));
    return part == m_parts.end() ? m_clsSubmit.NumOfEngines()
                                 : static_cast<std::int16_t>(part->second.due.size());
}

void SubmissionController::forgetPrepared() {
    m_ledger.leave();
    m_cutOff.reset();
    m_part = nullptr;
    m_parts.clear();
}

void SubmissionController::preparePlan(const RunPlan& plan, const std::vector<bool>& finished) {
    {
        const RowsBatch batch(m_state.lsvSiteSubmitting);
        m_state.lsvSiteSubmitting.clear();
        for (std::size_t i = 0; i < plan.urls.size(); ++i) {
            const PlannedURL& url = plan.urls[i];
            if (i < finished.size() && finished[i]) continue;
            m_state.lsvSiteSubmitting.tryAdd(
                {urlKey(url.website, url.URL), url.URL, {url.site, ""}, "URL", url.website});
        }
    }
    m_clsSubmit.listEngines(plan.engines);
    m_state.lsvConnections.clear();
    m_state.lblSubmit = kConfirmURLs;
    m_state.page = 2;
    resetSubmitButton();
    Q_EMIT stateChanged();
}

bool SubmissionController::runFailedAgain() {
    if (isRunning() || m_ended) return false;
    const RunPlan plan = planFailedAgain(m_state.results);
    if (plan.urls.empty()) return false;
    return trap(m_services.prompts, "runFailedAgain_Error: ", [&] {
        forgetPrepared();
        for (const PlannedURL& url : plan.urls)
            m_parts[urlKey(url.website, url.URL)] = {url.engines, url.engines};
        preparePlan(plan, {});
    });
}

std::optional<CutOffRun> SubmissionController::cutOffRun() const {
    std::optional<CutOffRun> run;
    const auto failure = failureOf([&] { run = findCutOffRun(m_services.paths.AppPath); });
    if (failure) m_services.log.WriteErrorLog("Ledger: " + *failure);
    return run;
}

bool SubmissionController::maySendTheSame(const CutOffRun& run) const {
    const std::vector<std::string> changed =
        changedSince(run.head.digests, run.head.blockSpam, RunDigests::of(m_services, m_catalogue, run.plan));
    if (changed.empty()) return true;
    std::string words = "The run of " + reportDate(run.head.time) +
                        " cannot go on: it would send something else. Changed since it began:";
    for (const std::string& what : changed) words += "\r\n" + what;
    m_services.prompts.message(words, "Submit", Icon::Critical);
    return false;
}

bool SubmissionController::resume(CutOffRun run) {
    if (isRunning() || m_ended) return false;
    bool resumed = false;
    trap(m_services.prompts, "resume_Error: ", [&] {
        if (!maySendTheSame(run)) return;
        forgetPrepared();
        m_ledger.goOn(run.path, run.size);
        std::vector<std::vector<bool>> ended(run.plan.urls.size());
        for (const PairEnd& end : run.ended) {
            ended[end.url].resize(run.plan.engines.size());
            ended[end.url][end.engine] = true;
        }
        for (std::size_t i = 0; i < run.plan.urls.size(); ++i) {
            const PlannedURL& url = run.plan.urls[i];
            if (run.finished[i] || (url.engines.empty() && ended[i].empty())) continue;
            PartOfEngines part{url.engines,
                               url.engines.empty() ? allEngines(run.plan.engines.size()) : url.engines};
            std::erase_if(part.due, [&](std::int16_t engine) {
                return !ended[i].empty() && ended[i][static_cast<std::size_t>(engine - 1)];
            });
            m_parts[urlKey(url.website, url.URL)] = std::move(part);
        }
        // Kept in memory only, as the answer to the question about link pages is.
        m_services.preference.BlockSpam = run.head.blockSpam ? 1 : 0;
        preparePlan(run.plan, run.finished);
        m_cutOff = std::move(run);
        resumed = true;
    });
    return resumed;
}

void SubmissionController::forget(const CutOffRun& run) {
    trap(m_services.prompts, "forget_Error: ", [&] {
        Ledger ledger;
        ledger.goOn(run.path, run.size);
        ledger.finish();
    });
}

void SubmissionController::saveResultsAs() {
    trap(m_services.prompts, "saveResults_Error: ", [&] {
        const std::string path = askWhereToSave(m_services.prompts, kSaveQuestion);
        if (!path.empty()) saveResults(m_state.results, path);
    });
}

}  // namespace relay

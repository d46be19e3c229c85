// SPDX-License-Identifier: GPL-3.0-or-later
// The controller's ways back into a run: what failed, what was interrupted, and its results.
#include "core/Clock.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "submission/SubmissionController.h"

#include <numeric>
#include <utility>

namespace relay {

namespace {

constexpr SaveQuestion kSaveQuestion = {"Comma Separated Values (*.csv)|*.csv|All Files (*.*)|*.*",
                                        "The file '", "' already exists.\r\nDo you want to replace it?",
                                        "Save Results"};

// Indexes from 1 to `count`.
std::vector<std::int16_t> allEngines(std::size_t count) {
    std::vector<std::int16_t> engines(count);
    std::iota(engines.begin(), engines.end(), std::int16_t{1});
    return engines;
}

// What is left of a run, by the keys of its URLs.
SubmissionRun::Parts partsOf(const CutOffRun& run) {
    SubmissionRun::Parts parts;
    std::vector<std::vector<bool>> ended(run.plan.urls.size());
    for (const PairEnd& end : run.ended) {
        ended[end.url].resize(run.plan.engines.size());
        ended[end.url][end.engine] = true;
    }
    for (std::size_t i = 0; i < run.plan.urls.size(); ++i) {
        const PlannedURL& url = run.plan.urls[i];
        if (run.finished[i] || (url.engines.empty() && ended[i].empty())) continue;
        SubmissionRun::PartOfEngines part{
            url.engines, url.engines.empty() ? allEngines(run.plan.engines.size()) : url.engines};
        std::erase_if(part.due, [&](std::int16_t engine) {
            return !ended[i].empty() && ended[i][static_cast<std::size_t>(engine - 1)];
        });
        parts[urlKey(url.website, url.URL)] = std::move(part);
    }
    return parts;
}

}  // namespace

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
    submit().listEngines(plan.engines);
    m_state.lsvConnections.clear();
    m_state.lblSubmit = kConfirmURLs;
    m_state.page = 2;
    m_state.offerSubmit();
    Q_EMIT stateChanged();
}

bool SubmissionController::runFailedAgain() {
    if (m_run.isUnderWay()) return false;
    const RunPlan plan = planFailedAgain(m_state.results);
    if (plan.urls.empty()) return false;
    return trap(m_services.prompts, "runFailedAgain_Error: ", [&] {
        SubmissionRun::Parts parts;
        for (const PlannedURL& url : plan.urls)
            parts[urlKey(url.website, url.URL)] = {url.engines, url.engines};
        m_run.beginDigests();
        m_run.prepare(std::move(parts), std::nullopt);
        preparePlan(plan, {});
    });
}

std::optional<CutOffRun> SubmissionController::cutOffRun() const {
    std::optional<CutOffRun> run;
    const auto failure = failureOf([&] { run = findCutOffRun(m_services.paths.AppPath); });
    if (failure) m_services.log.WriteErrorLog("Ledger: " + *failure);
    return run;
}

bool SubmissionController::maySendTheSame(const CutOffRun& run) {
    const std::vector<std::string> changed =
        changedSince(run.head.digests, run.head.blockSpam, m_run.digests(run.plan));
    if (changed.empty()) return true;
    const std::string begun = run.head.time.isValid() ? " of " + reportDate(run.head.time) : std::string();
    std::string words =
        "The run" + begun + " cannot go on: it would send something else. Changed since it began:";
    for (const std::string& what : changed) words += "\r\n" + what;
    m_services.prompts.message(words, "Submit", Icon::Critical);
    return false;
}

bool SubmissionController::resume(CutOffRun run) {
    if (m_run.isUnderWay()) return false;
    bool resumed = false;
    trap(m_services.prompts, "resume_Error: ", [&] {
        if (!maySendTheSame(run)) return;
        m_run.prepare(partsOf(run), run);
        // In memory only, like the answer to the question about link pages.
        m_services.preference.BlockSpam = run.head.blockSpam ? 1 : 0;
        preparePlan(run.plan, run.finished);
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/RunRecord.h"

#include "catalogue/Catalogue.h"
#include "core/Clock.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Rows.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "submission/LedgerReader.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace relay {

RunRecord::RunRecord(const Services& services, const Catalogue& catalogue, Results& results, bool keepLedger)
    : m_services(services), m_catalogue(catalogue), m_results(results), m_keepLedger(keepLedger) {}

void RunRecord::beginDigests() {
    if (m_keepLedger) m_catalogueDigests.begin(m_catalogue.lists.engines);
}

RunDigests RunRecord::digests(const RunPlan& plan) {
    return RunDigests::of(m_services, m_catalogueDigests.of(m_catalogue.lists.engines), plan);
}

void RunRecord::lock(const CutOffRun& run) {
    m_ledger.goOn(run.path, run.size);
}

void RunRecord::begin(RunPlan plan) {
    beginResults(std::move(plan));
    if (!m_keepLedger) return;
    const auto failure = failureOf([&] {
        const RunPlan& begun = m_results.plan();
        const LedgerHead head{m_services.clock.now(), digests(begun), m_services.preference.BlockSpam != 0};
        m_ledger.begin(m_services.paths.AppPath, head, begun);
    });
    if (failure) reportFailure(*failure);
}

void RunRecord::resume(const CutOffRun& run, const Rows& lsvSiteSubmitting) {
    beginResults(run.plan);
    std::vector<PairEnd> ended = run.ended;
    std::stable_sort(ended.begin(), ended.end(),
                     [](const PairEnd& a, const PairEnd& b) { return a.url < b.url; });
    for (const PairEnd& end : ended) m_results.add(end);
    std::unordered_set<std::string> reported;
    for (const UrlReport& report : run.reports) reported.insert(urlKey(report.website, report.URL));
    for (std::size_t url = 0; url < run.plan.urls.size(); ++url) {
        const std::string key = urlKey(run.plan.urls[url].website, run.plan.urls[url].URL);
        if (!reported.contains(key) && !lsvSiteSubmitting.contains(key)) m_results.leaveOut(url);
    }
}

void RunRecord::beginResults(RunPlan plan) {
    std::vector<std::string> addURLs;
    addURLs.reserve(plan.engines.size());
    for (const std::string& name : plan.engines) {
        const clsEngines* engine = m_catalogue.lists.engines.find(name);
        addURLs.emplace_back(engine ? engine->AddURL() : std::string_view());
    }
    m_placeOfURL.clear();
    for (const PlannedURL& url : plan.urls)
        m_placeOfURL.emplace(urlKey(url.website, url.URL), m_placeOfURL.size());
    m_results.begin(std::move(plan), std::move(addURLs));
    m_active = true;
}

void RunRecord::beginURL(std::string_view key) {
    m_place = static_cast<std::uint16_t>(m_placeOfURL.at(std::string(key)));
}

void RunRecord::sending(std::string_view website, std::string_view URL, std::string_view engine) {
    write([&] { m_ledger.start(ledgerTime(), website, URL, engine); });
}

void RunRecord::ended(std::string_view website, std::size_t engine, const EngineEnded& ended) {
    const auto milliseconds = std::clamp<std::int64_t>(ended.milliseconds, 0, 0xFFFFFFFF);
    m_results.add({m_place, static_cast<std::uint16_t>(engine), ended.result, ended.code,
                   static_cast<std::uint32_t>(milliseconds)});
    write([&] { m_ledger.ended(ledgerTime(), website, ended); });
}

void RunRecord::reporting(const QDateTime& time, std::string_view website, std::string_view URL,
                          std::string_view path) {
    write([&] { m_ledger.reporting(time, website, URL, path); });
}

void RunRecord::reported(const QDateTime& time, const UrlReport& report) {
    write([&] { m_ledger.reported(time, report); });
}

void RunRecord::removed(std::string_view website, std::string_view URL) {
    write([&] { m_ledger.removed(m_services.clock.now(), website, URL); });
    // Before the start, the results are those of the run before.
    const auto place = m_placeOfURL.find(urlKey(website, URL));
    if (m_active && place != m_placeOfURL.end()) m_results.leaveOut(place->second);
}

void RunRecord::finish() {
    m_active = false;
    m_ledger.finish();
}

void RunRecord::leave() noexcept {
    m_active = false;
    m_ledger.leave();
}

void RunRecord::reportFailure(const std::string& problem) {
    m_services.log.WriteErrorLog("Ledger: " + problem);
    Q_EMIT ledgerFailed(problem);
}

// In UTC and to a tenth of a second: local time asks the system for the time zone's file again and again.
const QDateTime& RunRecord::ledgerTime() {
    const auto now = std::chrono::steady_clock::now();
    if (!m_time.isValid() || now - m_timeRead > std::chrono::milliseconds(100)) {
        m_time = m_services.clock.now().toUTC();
        m_timeRead = now;
    }
    return m_time;
}

}  // namespace relay

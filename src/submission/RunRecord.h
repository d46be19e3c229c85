// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/Ledger.h"
#include "submission/Results.h"
#include "submission/RunDigests.h"

#include <QDateTime>
#include <QObject>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace relay {

class Catalogue;
class Rows;
struct CutOffRun;
struct Services;

// The record of a run: how each request ended, in its Results, and the ledger from which the run can continue
// after a crash. A run without a ledger is recorded in the results only. `services`, `catalogue` and
// `results` outlive the record.
class RunRecord final : public QObject {
    Q_OBJECT
  public:
    RunRecord(const Services& services, const Catalogue& catalogue, Results& results, bool keepLedger);

    // Starts the digests of the catalogue in the background; they are needed at the start of a run.
    void beginDigests();
    RunDigests digests(const RunPlan& plan);

    // Locks the ledger of an interrupted run. Throws Failure if another program uses it.
    void lock(const CutOffRun& run);
    // A new run, with a ledger of its own.
    void begin(RunPlan plan);
    // The run whose ledger is locked. What had ended is added to the results, URL by URL. URLs that have no
    // report and are not in `lsvSiteSubmitting` were removed.
    void resume(const CutOffRun& run, const Rows& lsvSiteSubmitting);

    // The URL of the next requests, by its key.
    void beginURL(std::string_view key);
    void sending(std::string_view website, std::string_view URL, std::string_view engine);
    // `engine` is its place in the plan, from 0.
    void ended(std::string_view website, std::size_t engine, const EngineEnded& ended);
    // The report is about to be written to this path, and has been written.
    void reporting(const QDateTime& time, std::string_view website, std::string_view URL,
                   std::string_view path);
    void reported(const QDateTime& time, const UrlReport& report);
    // The user removed a URL that has not been started.
    void removed(std::string_view website, std::string_view URL);

    // The run is over: removes the ledger.
    void finish();
    // Leaves the ledger, so that the run can be continued.
    void leave() noexcept;

  Q_SIGNALS:
    // The ledger cannot be written, so the run could not be continued after a crash. At most once per run.
    void ledgerFailed(const std::string& problem);

  private:
    void beginResults(RunPlan plan);
    void reportFailure(const std::string& problem);
    const QDateTime& ledgerTime();
    template <typename Write>
    void write(Write&& write) {
        if (!m_ledger.isOpen()) return;
        write();
        if (!m_ledger.isOpen()) reportFailure(m_ledger.problem());
    }

    const Services& m_services;
    const Catalogue& m_catalogue;
    Results& m_results;
    bool m_keepLedger;
    bool m_active = false;                                      // between the start and the end of a run
    std::unordered_map<std::string, std::size_t> m_placeOfURL;  // in the plan, by key
    std::uint16_t m_place = 0;                                  // of the current URL
    CatalogueDigests m_catalogueDigests;
    Ledger m_ledger;
    QDateTime m_time;
    std::chrono::steady_clock::time_point m_timeRead{};  // when m_time was set
};

}  // namespace relay

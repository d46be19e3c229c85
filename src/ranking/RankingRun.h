// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankEngine.h"
#include "ranking/RunLock.h"
#include "transport/RunPool.h"

#include <QObject>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace relay {

struct RankingState;
struct Services;

// One saved page of a run.
struct RankedPage final {
    std::string engine;
    int page = 0;  // from 1
    std::size_t bytes = 0;
    std::int32_t status = 0;  // an HTTP status or a code of the pool
    std::string problem;      // why it could not be saved; empty otherwise
};

// How a run ended.
struct RankingEnd final {
    bool cancelled = false;
    int pages = 0;        // saved
    int unsaved = 0;      // received, but not written
    std::string problem;  // why the first of them was not
};

// The first stage of rank tracking: asks each checked engine for its result pages, one connection per engine,
// and saves every page unchanged as a file in the profile's folder. It judges nothing: an error page and the
// text of a failure are pages, too. It writes the columns of the engines' rows and the progress.
class RankingRun final : public QObject {
    Q_OBJECT
  public:
    RankingRun(const Services& services, RankingState& state);

    // Starts a run of the checked engines with the fields of the state. False, after a message, when none is
    // checked; throws Failure when the folder cannot be made, another run works in it, or the pool cannot be
    // loaded. The run then goes on in the event loop until `ended`.
    bool StartSearch(const std::vector<RankEngine>& engines);
    // Drops all requests; pages saved so far stay. `ended` follows before this returns.
    void CancelProcess();
    bool isRunning() const noexcept { return m_running; }

    // Of the last run since the program started, else 0 and empty.
    int nSearchPages() const noexcept { return m_nSearchPages; }
    const std::string& sReportFolder() const noexcept { return m_sReportFolder; }

  Q_SIGNALS:
    void pageSaved(const relay::RankedPage& page);
    void stateChanged();  // the progress
    void ended(const relay::RankingEnd& end);

  private:
    // One engine of the run.
    enum class Stage { Idle, Waiting, Received, Finished, Cancelled };
    struct RankRequest final {
        Stage stage = Stage::Idle;
        int nPageCount = 0;  // pages asked for
        std::string URL;
        std::string NextURL;
    };

    void prepare(const std::vector<RankEngine>& engines);
    bool isChecked(std::size_t engine) const;
    bool isFinished() const;
    void clearColumns();
    void start(std::size_t engine);
    void connectTo(std::size_t engine, const std::string& data);
    void m_frmHTTPMX_Completed(std::int16_t Index, std::int32_t Code, const std::string& Response);
    void m_frmHTTPMX_Progress(std::int16_t Index, std::int32_t Bytes);
    void saveResultPage(std::size_t engine, std::int32_t code, const std::string& response);
    void findNextURL(std::size_t engine, const std::string& response);
    void getNextPage(std::size_t engine);
    void show(std::size_t engine, int column, std::string text);
    void StopProcess(bool cancelled);

    const Services& m_services;
    RankingState& m_state;
    RunPool m_pool;
    std::vector<RankEngine> m_engines;
    std::vector<RankRequest> m_requests;
    std::string m_sKeywords;  // in URL form
    std::string m_sReportFolder;
    int m_nSearchPages = 0;
    std::size_t m_nActiveEngines = 0;
    std::size_t m_StopCounts = 0;  // engines that have finished
    bool m_running = false;
    bool m_cancelling = false;
    std::optional<RunLock> m_lock;
    RankingEnd m_end;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingRun.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Log.h"
#include "core/LoggedTrap.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "ranking/RankingPages.h"
#include "ranking/RankingState.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr int kPages = 1;  // columns of the engine list
constexpr int kPosition = 2;
constexpr int kStatus = 3;
constexpr int kResult = 4;

// A failure within the run goes to the log; the run goes on.
template <typename Operation>
std::optional<std::string> logged(Log& log, std::string_view words, Operation&& operation) {
    try {
        operation();
        return std::nullopt;
    } catch (const std::exception& failure) {
        log.WriteErrorLog(std::string(words) + numberedText(failure));
        return failureText(failure);
    }
}

}  // namespace

std::vector<RankRow> rankRows(const Rows& list) {
    std::vector<RankRow> rows;
    for (int place = 0; place < list.count(); ++place) {
        const RowView row = list.at(place);
        const auto column = [&row](std::size_t i) {
            return i < row.subItems.size() ? std::string(row.subItems[i]) : std::string();
        };
        rows.push_back({row.checked, column(0), column(1), column(2)});
    }
    return rows;
}

RankingRun::RankingRun(const Services& services, RankingState& state)
    : m_services(services), m_state(state), m_pool(services) {
    connect(&m_pool, &RunPool::Completed, this, &RankingRun::m_frmHTTPMX_Completed);
    connect(&m_pool, &RunPool::Progress, this, &RankingRun::m_frmHTTPMX_Progress);
}

bool RankingRun::isChecked(std::size_t engine) const {
    const Rows& list = m_state.lsvRankingEngines;
    return static_cast<int>(engine) < list.count() && list.at(static_cast<int>(engine)).checked;
}

bool RankingRun::StartSearch(const std::vector<RankEngine>& engines) {
    if (m_running) return false;
    m_state.progressValue = 0;
    m_state.Command1_0 = "&Stop";
    m_state.Command1_1Enabled = false;
    m_state.Command2Enabled = false;
    m_state.StatusBar2 = "Please wait while retrieving data ....";
    clearColumns();
    std::size_t active = 0;
    for (std::size_t engine = 0; engine < engines.size(); ++engine) active += isChecked(engine) ? 1 : 0;
    if (active == 0) {
        m_state.Command1_0 = "&Start Search";
        Q_EMIT stateChanged();
        m_services.prompts.message(
            "There is no engine selected. Please select the engine you want to search and try again.",
            "Web Ranking", Icon::Information);
        return false;
    }
    try {
        prepare(engines);
    } catch (...) {
        m_lock.reset();
        m_state.offerStart();
        m_state.StatusBar2.clear();
        Q_EMIT stateChanged();
        throw;
    }
    m_nActiveEngines = active;
    m_state.progressMaximum = std::max(1, m_nSearchPages * static_cast<int>(active));
    m_running = true;
    Q_EMIT stateChanged();
    for (std::size_t engine = 0; m_running && engine < m_requests.size(); ++engine)
        if (m_requests[engine].stage == Stage::Waiting) start(engine);
    return true;
}

void RankingRun::prepare(const std::vector<RankEngine>& engines) {
    const RankingSetup& setup = m_state.setup;
    const int pages = setup.pagesOfRun();
    const std::string folder = rankingFolder(m_services.paths, setup.profile);
    m_sReportFolder = folder;
    m_nSearchPages = pages;
    makeFolder(folder);
    m_lock.emplace(folder);
    m_pool.open({toInt16(static_cast<double>(engines.size())), true, {}});
    m_engines = engines;
    m_sKeywords = praseSpace(setup.keywords);
    m_StopCounts = 0;
    m_end = {};
    m_requests.assign(engines.size(), {});
    for (std::size_t engine = 0; engine < engines.size(); ++engine)
        if (isChecked(engine)) m_requests[engine].stage = Stage::Waiting;
}

bool RankingRun::isFinished() const {
    return m_StopCounts == m_nActiveEngines ||
           std::none_of(m_requests.begin(), m_requests.end(),
                        [](const RankRequest& request) { return request.stage == Stage::Waiting; });
}

void RankingRun::clearColumns() {
    for (int row = 0; row < m_state.lsvRankingEngines.count(); ++row)
        for (const int column : {kPages, kPosition, kStatus, kResult})
            m_state.lsvRankingEngines.setSubItem(row, column, {});
}

void RankingRun::start(std::size_t engine) {
    RankRequest& request = m_requests[engine];
    request.nPageCount = 1;
    request.URL = queryURL(m_engines[engine], m_sKeywords);
    show(engine, kPages, "1");
    show(engine, kStatus, "Connecting to server ...");
    connectTo(engine, queryData(m_engines[engine], m_sKeywords));
}

void RankingRun::connectTo(std::size_t engine, const std::string& data) {
    m_requests[engine].stage = Stage::Waiting;
    const std::string URL = m_requests[engine].URL;
    m_pool.Connect(static_cast<std::int16_t>(engine + 1), URL, {}, data);
}

void RankingRun::m_frmHTTPMX_Progress(std::int16_t Index, std::int32_t Bytes) {
    const std::size_t engine = static_cast<std::size_t>(Index) - 1;
    if (!m_running || m_requests[engine].stage != Stage::Waiting) return;
    show(engine, kStatus, std::to_string(Bytes) + " bytes received");
}

// The code is not looked at: an error page, "Time out" and any other failure text are pages like any other.
void RankingRun::m_frmHTTPMX_Completed(std::int16_t Index, std::int32_t Code, const std::string& Response) {
    if (!m_running || Index < 1 || static_cast<std::size_t>(Index) > m_requests.size()) return;
    const std::size_t engine = static_cast<std::size_t>(Index) - 1;
    logged(m_services.log, "Ranking_HttpDone: ", [&] {
        if (m_requests[engine].stage == Stage::Waiting) m_requests[engine].stage = Stage::Received;
        saveResultPage(engine, Code, Response);
        findNextURL(engine, Response);
        getNextPage(engine);
    });
}

void RankingRun::saveResultPage(std::size_t engine, std::int32_t code, const std::string& response) {
    RankedPage page{m_engines[engine].EngineName, m_requests[engine].nPageCount, response.size(), code, {}};
    const auto failure = logged(m_services.log, "saveResultPage_Error: ", [&] {
        replaceFile(m_sReportFolder + "/" + pageFileName(page.engine, page.page), response);
    });
    if (failure) {
        if (m_end.unsaved++ == 0) m_end.problem = *failure;
        page.problem = *failure;
    } else {
        ++m_end.pages;
    }
    Q_EMIT pageSaved(page);
}

void RankingRun::findNextURL(std::size_t engine, const std::string& response) {
    RankRequest& request = m_requests[engine];
    request.NextURL.clear();
    // The last page has no next one to look for.
    if (request.nPageCount >= m_nSearchPages) return;
    logged(m_services.log, "getNextURL_Error:", [&] {
        request.NextURL =
            getNextURL(m_engines[engine], {response, request.URL, request.nPageCount}, m_sKeywords);
    });
}

void RankingRun::getNextPage(std::size_t engine) {
    RankRequest& request = m_requests[engine];
    ++request.nPageCount;
    if (request.stage != Stage::Received) return;
    if (m_state.progressValue + 1 < m_state.progressMaximum) {
        ++m_state.progressValue;
        Q_EMIT stateChanged();
    }
    if (request.nPageCount <= m_nSearchPages && !request.NextURL.empty()) {
        show(engine, kPages, std::to_string(request.nPageCount));
        show(engine, kStatus, "Connecting ...");
        request.URL = std::exchange(request.NextURL, {});
        connectTo(engine, {});
        return;
    }
    show(engine, kStatus, "Completed");
    request.stage = Stage::Finished;
    ++m_StopCounts;
    if (!isFinished()) return;
    // Not within the reply's own handler, nor within the start of an engine that failed at once.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_running && isFinished()) StopProcess(false);
        },
        Qt::QueuedConnection);
}

void RankingRun::StopProcess(bool cancelled) {
    m_running = false;
    m_lock.reset();
    m_state.offerStart();
    m_state.StatusBar2 = cancelled ? "Done" : "Search Completed !";
    m_end.cancelled = cancelled;
    Q_EMIT stateChanged();
    Q_EMIT ended(m_end);
}

void RankingRun::CancelProcess() {
    if (!m_running || std::exchange(m_cancelling, true)) return;
    for (std::size_t engine = 0; engine < m_requests.size(); ++engine) {
        Stage& stage = m_requests[engine].stage;
        if (stage != Stage::Waiting && stage != Stage::Received) continue;
        stage = Stage::Cancelled;
        show(engine, kStatus, "Cancelled");
    }
    const QPointer<RankingRun> alive(this);
    m_pool.Disconnect();
    if (!alive) return;
    m_cancelling = false;
    StopProcess(true);
}

void RankingRun::show(std::size_t engine, int column, std::string text) {
    const int row = static_cast<int>(engine);
    if (row < m_state.lsvRankingEngines.count())
        m_state.lsvRankingEngines.setSubItem(row, column, std::move(text));
}

}  // namespace relay

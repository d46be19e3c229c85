// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/clsRanking.h"

#include "core/Clock.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/LoggedTrap.h"
#include "core/Paths.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "ranking/RankingPages.h"
#include "ranking/RankingReport.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kTitle = "Web Ranking";
constexpr std::string_view kSection = "WebRanking";
constexpr std::string_view kSaveResults = "AutoSaveResults";
constexpr int kStillMilliseconds = 50;  // for which a window may stay undrawn

constexpr int kResult = 4;  // the column

// Puts what a profile or an analysis says about the engines into their rows.
void showRows(const std::vector<RankRow>& rows, Rows& list) {
    for (int place = 0; place < list.count(); ++place) {
        const RankRow row =
            static_cast<std::size_t>(place) < rows.size() ? rows[static_cast<std::size_t>(place)] : RankRow();
        list.setChecked(place, row.checked);
        list.setSubItem(place, 1, row.pages);
        list.setSubItem(place, 2, row.position);
        list.setSubItem(place, 3, row.status);
        list.setSubItem(place, kResult, {});
    }
}

}  // namespace

clsRanking::clsRanking(const Services& services, QLocale locale)
    : m_services(services),
      m_locale(std::move(locale)),
      m_catalogue(services, RankReader::Ranking),
      m_profiles(services.paths),
      m_history(services.paths),
      m_run(services, m_state) {
    connect(&m_run, &RankingRun::pageSaved, this, &clsRanking::pageSaved);
    connect(&m_run, &RankingRun::stateChanged, this, &clsRanking::stateChanged);
    connect(&m_run, &RankingRun::ended, this, &clsRanking::searchEnded);
}

bool clsRanking::Load() {
    return loggedTrap("loadWebRanking_Error: ", [this] {
        makeFolder(rankingReportsFolder(m_services.paths));
        m_state.chkSaveResults =
            leadingInteger(m_services.settings.value(kApplication, kSection, kSaveResults, "0")) != 0;
        loadEngineData();
        loadProfile();
        removeFile(rankingTraceFile(m_services.paths));
    });
}

bool clsRanking::loadEngineData() {
    m_analysis.clear();
    m_state.lsvRankingEngines.clear();
    const bool loaded = m_catalogue.loadEngineData();
    if (!loaded && !fileExists(rankingCatalogueFile(m_services.paths))) return false;
    for (const RankEngine& engine : engines())
        m_state.lsvRankingEngines.add({.text = engine.EngineName, .subItems = {{}, {}, {}, {}}});
    m_state.lsvRankingEngines.setColumnTitle(0, "Engines - " + std::to_string(engines().size()));
    return loaded;
}

bool clsRanking::loadProfile() {
    return loggedTrap("loadProfile_Error: ", [this] {
        m_state.cboProfile.clear();
        m_state.ListView2.clear();
        for (const ProfileEntry& profile : m_profiles.loadProfile()) {
            m_state.cboProfile.push_back(profile.name);
            m_state.ListView2.add(
                {.text = profile.name, .subItems = {profile.URL, profile.Date}, .tag = profile.ReportFile});
        }
        Q_EMIT stateChanged();
    });
}

bool clsRanking::cboProfile_Click(std::string_view name) {
    return loggedTrap("loadProfile_Error: ", [&] {
        RankingProfile profile = m_profiles.load(name);
        m_state.setup = std::move(profile.setup);
        showRows(profile.engines, m_state.lsvRankingEngines);
        m_analysis.clear();
        m_state.changed = false;
        Q_EMIT stateChanged();
    });
}

void clsRanking::tickEngines(const std::vector<std::string>& names) {
    std::vector<std::size_t> places;
    for (const std::string& name : names) {
        const std::size_t place = m_catalogue.indexOf(name);
        if (place == npos) throw Failure("There is no search engine named \"" + name + "\".");
        places.push_back(place);
    }
    chkSelectAll_Click(false);
    for (const std::size_t place : places)
        m_state.lsvRankingEngines.setChecked(static_cast<int>(place), true);
}

void clsRanking::chkSelectAll_Click(bool on) {
    for (int row = 0; row < m_state.lsvRankingEngines.count(); ++row)
        m_state.lsvRankingEngines.setChecked(row, on);
}

bool clsRanking::saveProfile(const std::string& name) {
    return loggedTrap("saveProfile_Error: ", [&] {
        const std::string kept(trim(name));  // as the file keeps it
        RankingSetup setup = m_state.setup;
        setup.profile = kept;
        m_profiles.saveProfile(setup);
        m_state.setup.profile = kept;
        m_state.changed = false;
        const auto isSame = [&kept](const std::string& other) { return equalsNoCase(kept, other); };
        if (std::none_of(m_state.cboProfile.begin(), m_state.cboProfile.end(), isSame))
            m_state.cboProfile.push_back(kept);
        Q_EMIT stateChanged();
    });
}

bool clsRanking::removeProfile(const std::string& name) {
    return loggedTrap(
        "removeProfile Error: ",
        [&] {
            m_profiles.removeProfile(name);
            std::erase_if(m_state.cboProfile,
                          [&](const std::string& other) { return equalsNoCase(name, other); });
            m_state.ListView2.removeIf([&](const RowView& row) { return equalsNoCase(row.text, name); });
            m_state.setup = {};
            showRows({}, m_state.lsvRankingEngines);
            m_analysis.clear();
            m_state.changed = false;
            Q_EMIT stateChanged();
        },
        "Error");
}

bool clsRanking::StartSearch() {
    bool started = false;
    loggedTrap(
        "RankingConnect_Error: ", [&] { started = m_run.StartSearch(engines()); }, "Error",
        [this] { return "\r\nPath: " + m_run.sReportFolder(); });
    return started;
}

void clsRanking::CancelProcess() {
    m_run.CancelProcess();
}

bool clsRanking::getResults(const std::function<bool()>& goOn) {
    bool done = false;
    return loggedTrap("getResults_Error: ", [&] { done = analyse(goOn); }) && done;
}

bool clsRanking::analyse(const std::function<bool()>& goOn) {
    m_analysis.clear();
    // A run of another profile says nothing about this one's pages.
    const std::string folder = rankingFolder(m_services.paths, m_state.setup.profile);
    const int pages = m_run.sReportFolder() == folder ? m_run.nSearchPages() : 0;
    if (!folderExists(folder)) {
        m_services.prompts.message(kNoSavedPagesNotice, kTitle, Icon::Information);
        return true;
    }
    m_state.progressValue = 0;
    std::vector<RankRow> rows = rankRows(m_state.lsvRankingEngines);
    RankingAnalysis analysis(analysisInput(engines(), m_state.setup, rows, folder, pages),
                             rankingTraceFile(m_services.paths), m_services.log);
    m_state.progressMaximum =
        std::max(1, analysis.input().nSearchPages *
                        static_cast<int>(std::count_if(rows.begin(), rows.end(),
                                                       [](const RankRow& row) { return row.checked; })));
    QElapsedTimer undrawn;
    undrawn.start();
    do {
        if (goOn && !goOn()) return false;
        if (m_state.progressValue + 1 < m_state.progressMaximum) ++m_state.progressValue;
        if (undrawn.elapsed() < kStillMilliseconds) continue;
        Q_EMIT stateChanged();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        undrawn.restart();
    } while (analysis.step());
    m_analysis = analysis.engines();
    showAnalysis(m_analysis, rows);
    showRows(rows, m_state.lsvRankingEngines);
    for (std::size_t engine = 0; engine < m_analysis.size(); ++engine)
        if (m_analysis[engine].analysed)
            m_state.lsvRankingEngines.setSubItem(static_cast<int>(engine), kResult,
                                                 rankStateText(m_analysis[engine]));
    m_analysedSetup = m_state.setup;
    addToHistory(analysis.input());
    return true;
}

void clsRanking::addToHistory(const AnalysisInput& input) {
    HistoryReading reading{m_state.setup.profile, m_state.setup.keywords, m_services.clock.now(), {}, {}};
    const auto changeTimeOf = [](const std::string& file) {
        return QDateTime::fromSecsSinceEpoch(changeTime(file).value_or(0));
    };
    reading.catalogue = changeTimeOf(rankingCatalogueFile(m_services.paths));
    for (std::size_t engine = 0; engine < m_analysis.size(); ++engine) {
        const EngineAnalysis& result = m_analysis[engine];
        if (!result.analysed || result.pagesRead == 0) continue;
        const std::string& name = engines()[engine].EngineName;
        const QDateTime fetched = changeTimeOf(input.folder + "/" + pageFileName(name, 1));
        for (std::size_t site = 0; site < input.sites.size(); ++site) {
            const int best = result.hits[site].empty() ? 0 : result.hits[site].front();
            reading.places.push_back({name, input.sites[site], result.siteState(site), best,
                                      result.sDomainHits(site), result.nLinkCount, fetched});
        }
    }
    loggedTrap("", [&] {
        m_history.add(reading);
        Q_EMIT historyChanged();
    });
}

RankingReport clsRanking::Report(const ReportChoices& choices) {
    RankingReport report;
    if (m_analysis.empty()) {
        // What an analysis without a folder left is no list of sites.
        report.problem = "Subscript out of range";
        m_services.log.WriteErrorLog("Module: CreateReport: 9 - " + report.problem);
        return report;
    }
    const BusyPointer busy(m_services.prompts);
    const std::vector<RankRow> rows = rankRows(m_state.lsvRankingEngines);
    const std::string& profile = m_analysedSetup.profile;
    report = relay::Report(m_services,
                           {m_analysedSetup, engines(), rows, m_analysis, m_services.preference,
                            m_services.clock.now(), m_locale},
                           rankingFolder(m_services.paths, profile), choices);
    m_state.progressValue = 0;
    if (!report.path.empty())
        m_state.ListView2.add({.text = profile,
                               .subItems = {ReadIniValue(m_profiles.file(), profile, "URL"), report.date},
                               .tag = report.path});
    Q_EMIT stateChanged();
    if (!report.problem.empty())
        m_services.prompts.message("Module: CreateReport: " + report.problem, kTitle, Icon::Critical);
    return report;
}

template <typename Operation>
bool clsRanking::loggedTrap(std::string_view words, Operation&& operation, std::string_view title,
                            const std::function<std::string()>& remark) {
    try {
        operation();
        return true;
    } catch (const std::exception& failure) {
        m_services.log.WriteErrorLog(std::string(words) + numberedText(failure) +
                                     (remark ? remark() : std::string()));
        m_services.prompts.message(std::string(words) + failureText(failure), title, Icon::Critical);
        return false;
    }
}

}  // namespace relay

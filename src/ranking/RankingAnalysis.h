// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankEngine.h"
#include "ranking/RankingSetup.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Reads the saved result pages and finds each site's positions, by plain searches of the markers in the
// catalogue; comparisons ignore case. Needs no network, so it can be repeated on the same files.
namespace relay {

class Log;
struct Paths;

// What can honestly be said about an engine's pages.
enum class RankState {
    Found,         // at least one site has a position
    NotFound,      // a result list was read, without the site
    NothingFound,  // the engine said that it found nothing
    NoResultList,  // the catalogue's markers are not in the pages
    NoResultPage,  // no page was saved, or an error text, a time-out or a captcha in place of results
};
// "found", "not found", "nothing found", "no result list", "no result page".
std::string_view rankStateName(RankState state) noexcept;

// The states of nEngineState.
enum class EngineStage : std::int16_t { Running = 0, Cancelled = 1, Finished = 2, NothingFound = 3 };

// What the analysis found on one engine.
struct EngineAnalysis final {
    bool analysed = false;  // its row is checked
    int nLinkCount = 0;
    int pagesRead = 0;
    EngineStage nEngineState = EngineStage::Running;
    std::string sResultList;             // HTML, for the report
    std::vector<std::vector<int>> hits;  // positions per site, ascending, from 1
    std::string position;                // for column "Position"
    bool completed = false;              // column "Status" becomes "Completed": the link limit was reached
    RankState state = RankState::NoResultPage;

    // "3,14", or empty: the positions of a site (from 0).
    std::string sDomainHits(std::size_t site) const;
    // Found or not for this one site; otherwise as `state`.
    RankState siteState(std::size_t site) const;
};
// "Found", "Not found among 30 links", "Nothing found" and so on, for a reader.
std::string rankStateText(const EngineAnalysis& analysis);

// What an analysis works on. `checked` belongs to the engines by their place.
struct AnalysisInput final {
    const std::vector<RankEngine>& engines;
    std::vector<bool> checked;  // missing ones count as false
    std::vector<std::string> sites;
    std::string keywords;             // as typed, for the trace
    std::string folder;               // of the saved pages
    int nSearchPages = 0;             // pages read per engine at most
    std::optional<int> nSearchLinks;  // links counted per engine at most, but never less than one
};
// Shown when the folder of the saved pages is missing.
extern const std::string_view kNoSavedPagesNotice;
// nSearchPages of a run before, or 0 when there was none: then the number in pageLinks is taken, whatever it
// limits. Throws Failure as RankingSetup::number does.
AnalysisInput analysisInput(const std::vector<RankEngine>& engines, const RankingSetup& setup,
                            const std::vector<RankRow>& rows, std::string folder, int nSearchPages);

// Analyses one page of an engine, counting on from what `result` holds of the pages before. Appends to
// `trace` what belongs into RankingUrlList.dat.
void SearchURLALL(const AnalysisInput& input, std::size_t engine, std::string_view html, int page,
                  EngineAnalysis& result, std::string& trace);

// The analysis of all pages, step by step so that a window stays alive: one page a step.
class RankingAnalysis final {
  public:
    // The trace is appended to `traceFile` after each page (none when empty); the first failure of that goes
    // to the log and ends the trace, not the analysis.
    RankingAnalysis(AnalysisInput input, std::string traceFile, Log& log);

    // Reads and analyses the next page, or passes on to the next engine; false when all is done. A page that
    // cannot be analysed goes to the log and the next one follows; a file that cannot be read ends the
    // analysis: throws Failure.
    bool step();
    // All steps that are left.
    void getResults();

    std::size_t engine() const noexcept { return m_engine; }  // of the next step
    int page() const noexcept { return m_page; }
    const std::vector<EngineAnalysis>& engines() const noexcept { return m_results; }
    const AnalysisInput& input() const noexcept { return m_input; }

  private:
    void analysePage(std::string_view html, std::string_view name);

    AnalysisInput m_input;
    std::string m_traceFile;
    Log& m_log;
    std::size_t m_engine = 0;
    int m_page = 1;
    std::vector<EngineAnalysis> m_results;
};

// Puts positions and completion into the rows' columns, as the analysis leaves them.
void showAnalysis(const std::vector<EngineAnalysis>& engines, std::vector<RankRow>& rows);

// AppPath/RankingUrlList.dat.
std::string rankingTraceFile(const Paths& paths);

}  // namespace relay

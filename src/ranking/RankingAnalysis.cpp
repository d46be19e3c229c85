// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingAnalysis.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Log.h"
#include "core/LoggedTrap.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "ranking/RankingPages.h"
#include "ranking/ResultLinks.h"

#include <algorithm>
#include <utility>

namespace relay {

const std::string_view kNoSavedPagesNotice =
    "Please re-run a new search then generate the ranking report again.\r\n\r\nTo view your previous ranking "
    "report, please click on the 'Report' tab.";

namespace {

// What pages other than results say in their titles, and anywhere.
constexpr std::string_view kErrorTitles[] = {"400",
                                             "401",
                                             "403",
                                             "404",
                                             "429",
                                             "500",
                                             "502",
                                             "503",
                                             "504",
                                             "forbidden",
                                             "access denied",
                                             "not found",
                                             "too many requests",
                                             "bad gateway",
                                             "service unavailable",
                                             "server error",
                                             "time out",
                                             "timed out",
                                             "timeout"};
constexpr std::string_view kRobotQuestions[] = {"captcha",       "unusual traffic", "not a robot",
                                                "you are human", "you are a human", "automated queries"};

bool containsAny(std::string_view text, const auto& words) {
    return std::any_of(std::begin(words), std::end(words),
                       [text](std::string_view word) { return containsNoCase(text, word); });
}

std::string_view titleOf(std::string_view html) {
    constexpr std::string_view kOpening = "<title";
    const std::size_t start = findNoCase(html, kOpening);
    if (start == npos) return {};
    html.remove_prefix(start + kOpening.size());
    return html.substr(0, findNoCase(html, "</title"));
}

// A page without results in it: what the pool or a server says of a failure, or a question for a person.
bool isNoResultPage(std::string_view html) {
    return html.find('<') == npos || containsAny(titleOf(html), kErrorTitles) ||
           containsAny(html, kRobotQuestions);
}

// What one page is, before its positions are counted: NotFound stands for a page with a result list.
RankState stateOf(const RankEngine& engine, std::string_view html, bool saysNothingFound,
                  bool hasResultList) {
    if (saysNothingFound && !engine.NoFoundString.empty()) return RankState::NothingFound;
    if (hasResultList) return RankState::NotFound;
    return isNoResultPage(html) ? RankState::NoResultPage : RankState::NoResultList;
}

// The first page speaks for the engine, unless a later one has a result list or the engine's own word.
void addState(EngineAnalysis& result, RankState page) {
    const bool counts = page == RankState::NotFound ||
                        (page == RankState::NothingFound && result.state > RankState::NothingFound);
    if (result.pagesRead == 0 || (counts && result.state != RankState::Found)) result.state = page;
    ++result.pagesRead;
    const bool hit = std::any_of(result.hits.begin(), result.hits.end(),
                                 [](const std::vector<int>& positions) { return !positions.empty(); });
    if (result.state == RankState::NotFound && hit) result.state = RankState::Found;
}

std::string joinedNumbers(const std::vector<int>& numbers, std::string_view between) {
    std::string all;
    for (const int number : numbers) all.append(all.empty() ? "" : between).append(std::to_string(number));
    return all;
}

// Collects the links of one page.
class LinkCounter final {
  public:
    LinkCounter(const AnalysisInput& input, EngineAnalysis& result, std::string& trace)
        : m_input(input), m_result(result), m_trace(trace) {
        for (const std::string& site : input.sites) m_encoded.push_back(replaceAll(site, ".", "%2E"));
        result.hits.resize(input.sites.size());
    }

    // False when the limit of links is reached.
    bool count(std::string_view link, int page) {
        const int position = ++m_result.nLinkCount;
        m_trace.append(link).append("\r\n");
        std::string& list = m_result.sResultList;
        if (const std::size_t site = siteIn(link); site != npos) {
            m_result.hits[site].push_back(position);
            const std::string number = std::to_string(position);
            list.append("<b>Page: ").append(std::to_string(page)).append(" Position: ").append(number);
            list.append("</b><br><li><font color=#FF0000> -> </font><b>").append(link);
            list.append("</b><br>\r\n");
            m_result.position.append(m_result.position.empty() ? "" : ", ").append(number);
        } else {
            list.append("<li>").append(link).append("<br>\r\n");
        }
        if (!m_input.nSearchLinks || position < *m_input.nSearchLinks) return true;
        m_result.nEngineState = EngineStage::Finished;
        if (m_result.position.empty()) m_result.position = "Not Found";
        m_result.completed = true;
        return false;
    }

  private:
    // The first site that the link contains, its dots perhaps written as "%2E".
    std::size_t siteIn(std::string_view link) const {
        for (std::size_t site = 0; site < m_input.sites.size(); ++site) {
            if (containsNoCase(link, m_input.sites[site]) || containsNoCase(link, m_encoded[site]))
                return site;
        }
        return npos;
    }

    const AnalysisInput& m_input;
    EngineAnalysis& m_result;
    std::string& m_trace;
    std::vector<std::string> m_encoded;
};

}  // namespace

std::string_view rankStateName(RankState state) noexcept {
    // In the order of RankState.
    constexpr std::string_view kNames[] = {"found", "not found", "nothing found", "no result list",
                                           "no result page"};
    return kNames[static_cast<std::size_t>(state)];
}

std::string EngineAnalysis::sDomainHits(std::size_t site) const {
    return site < hits.size() ? joinedNumbers(hits[site], ",") : std::string();
}

RankState EngineAnalysis::siteState(std::size_t site) const {
    if (state != RankState::Found) return state;
    return site < hits.size() && !hits[site].empty() ? RankState::Found : RankState::NotFound;
}

std::string rankStateText(const EngineAnalysis& analysis) {
    switch (analysis.state) {
        case RankState::Found:
            return "Found";
        case RankState::NotFound:
            return "Not found among " + std::to_string(analysis.nLinkCount) +
                   (analysis.nLinkCount == 1 ? " link" : " links");
        case RankState::NothingFound:
            return "Nothing found";
        case RankState::NoResultList:
            return "No result list";
        case RankState::NoResultPage:
            break;
    }
    return "No result page";
}

AnalysisInput analysisInput(const std::vector<RankEngine>& engines, const RankingSetup& setup,
                            const std::vector<RankRow>& rows, std::string folder, int nSearchPages) {
    AnalysisInput input{engines, {}, setup.sites, setup.keywords, std::move(folder), nSearchPages, {}};
    for (const RankRow& row : rows) input.checked.push_back(row.checked);
    if (nSearchPages == 0) input.nSearchPages = setup.number();
    if (setup.limit == RankLimit::Links) input.nSearchLinks = setup.number();
    return input;
}

void SearchURLALL(const AnalysisInput& input, std::size_t engine, std::string_view html, int page,
                  EngineAnalysis& result, std::string& trace) {
    const RankEngine& record = input.engines.at(engine);
    LinkCounter counter(input, result, trace);
    // Nothing is found in an empty page, not even an empty text.
    const bool nothing = !html.empty() && containsNoCase(html, record.NoFoundString);
    ResultLinks links(record);
    if (nothing) {
        result.nEngineState = EngineStage::NothingFound;
        result.sResultList.append("<li>No documents match the query !</blink><br>");
    } else {
        trace.append("\r\nKeywords: ").append(input.keywords).append("\r\n[");
        trace.append(record.EngineURL).append("]\r\n");
        links.read(html);
        while (const std::optional<std::string_view> link = links.next())
            if (!counter.count(*link, page)) break;
    }
    addState(result, stateOf(record, html, nothing, links.hasList()));
}

RankingAnalysis::RankingAnalysis(AnalysisInput input, std::string traceFile, Log& log)
    : m_input(std::move(input)), m_traceFile(std::move(traceFile)), m_log(log) {
    m_input.checked.resize(m_input.engines.size());
    m_results.resize(m_input.engines.size());
    for (std::size_t engine = 0; engine < m_results.size(); ++engine) {
        m_results[engine].analysed = m_input.checked[engine];
        m_results[engine].hits.resize(m_input.sites.size());
    }
}

bool RankingAnalysis::step() {
    for (; m_engine < m_results.size(); ++m_engine, m_page = 1) {
        EngineAnalysis& result = m_results[m_engine];
        if (!result.analysed || m_page > m_input.nSearchPages || result.nEngineState == EngineStage::Finished)
            continue;
        const std::string name = pageFileName(m_input.engines[m_engine].EngineName, m_page);
        const std::string path = m_input.folder + "/" + name;
        if (!fileExists(path)) continue;
        analysePage(readFile(path), name);
        ++m_page;
        return true;
    }
    return false;
}

void RankingAnalysis::analysePage(std::string_view html, std::string_view name) {
    EngineAnalysis& result = m_results[m_engine];
    result.sResultList.append("<br><b>Page ").append(std::to_string(m_page)).append(": </b><a href=");
    result.sResultList.append(name).append(">View full search results for this page</a><br><br>");
    std::string trace;
    const auto logged = [this](const auto& work) {
        try {
            work();
            return true;
        } catch (const std::exception& failure) {
            m_log.WriteErrorLog("SearchURLAll_Error: " + numberedText(failure));
            return false;
        }
    };
    logged([&] { SearchURLALL(m_input, m_engine, html, m_page, result, trace); });
    if (m_traceFile.empty() || trace.empty()) return;
    // The positions do not depend on the trace; one line in the log is enough.
    if (!logged([&] { appendFile(m_traceFile, trace); })) m_traceFile.clear();
}

void RankingAnalysis::getResults() {
    while (step()) {
    }
}

void showAnalysis(const std::vector<EngineAnalysis>& engines, std::vector<RankRow>& rows) {
    for (std::size_t i = 0; i < std::min(engines.size(), rows.size()); ++i) {
        rows[i].position = engines[i].position;
        if (engines[i].completed) rows[i].status = "Completed";
    }
}

std::string rankingTraceFile(const Paths& paths) {
    return paths.inApp("RankingUrlList.dat");
}

}  // namespace relay

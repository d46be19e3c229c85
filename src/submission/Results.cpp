// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/Results.h"

#include "core/CsvCell.h"
#include "core/FileStore.h"

#include <utility>

namespace relay {

void Results::begin(RunPlan plan, std::vector<std::string> addURLs) {
    m_plan = std::move(plan);
    m_addURLs = std::move(addURLs);
    m_pairs.clear();
    m_counts.fill(0);
    m_leftOut.assign(m_plan.urls.size(), false);
}

void Results::leaveOut(std::size_t url) {
    m_leftOut.at(url) = true;
}

std::int64_t Results::countNotSucceeded() const noexcept {
    std::int64_t planned = 0;
    for (std::size_t url = 0; url < m_plan.urls.size(); ++url)
        if (!m_leftOut[url]) planned += static_cast<std::int64_t>(m_plan.enginesOf(url));
    return planned - countOf(Success);
}

void Results::add(const PairEnd& end) {
    m_pairs.push_back(end);
    if (end.result >= 0 && static_cast<std::size_t>(end.result) < m_counts.size())
        ++m_counts[static_cast<std::size_t>(end.result)];
}

PairResult Results::at(int place) const {
    const PairEnd& end = m_pairs.at(static_cast<std::size_t>(place));
    const PlannedURL& url = m_plan.urls.at(end.url);
    return {url.website,
            url.site,
            url.URL,
            m_plan.engines.at(end.engine),
            end.engine < m_addURLs.size() ? std::string_view(m_addURLs[end.engine]) : std::string_view(),
            end.result,
            end.code,
            end.milliseconds};
}

int Results::countOf(std::int16_t result) const noexcept {
    if (result < 0 || static_cast<std::size_t>(result) >= m_counts.size()) return 0;
    return m_counts[static_cast<std::size_t>(result)];
}

RunPlan planFailedAgain(const Results& results) {
    const RunPlan& plan = results.plan();
    std::vector<std::vector<bool>> succeeded(plan.urls.size());  // by URL and engine; empty: none
    for (const PairEnd& end : results.ends()) {
        if (end.result != Success) continue;
        succeeded[end.url].resize(plan.engines.size());
        succeeded[end.url][end.engine] = true;
    }
    // Calls `take` with the places of the engines, from 0.
    const auto forEachLeft = [&](std::size_t url, const auto& take) {
        for (std::size_t i = 0; i < plan.enginesOf(url); ++i) {
            const std::vector<std::int16_t>& listed = plan.urls[url].engines;
            const std::size_t engine = listed.empty() ? i : static_cast<std::size_t>(listed[i] - 1);
            if (succeeded[url].empty() || !succeeded[url][engine]) take(engine);
        }
    };
    std::vector<std::int16_t> placeOf(plan.engines.size(), 0);  // in the new plan, from 1; 0: not in it
    for (std::size_t url = 0; url < plan.urls.size(); ++url)
        if (!results.isLeftOut(url)) forEachLeft(url, [&](std::size_t engine) { placeOf[engine] = 1; });
    RunPlan again;
    for (std::size_t engine = 0; engine < placeOf.size(); ++engine) {
        if (placeOf[engine] == 0) continue;
        again.engines.push_back(plan.engines[engine]);
        placeOf[engine] = static_cast<std::int16_t>(again.engines.size());
    }
    for (std::size_t url = 0; url < plan.urls.size(); ++url) {
        if (results.isLeftOut(url)) continue;
        PlannedURL planned{plan.urls[url].website, plan.urls[url].site, plan.urls[url].URL, {}};
        forEachLeft(url, [&](std::size_t engine) { planned.engines.push_back(placeOf[engine]); });
        if (planned.engines.empty()) continue;
        if (planned.engines.size() == again.engines.size()) planned.engines = {};
        again.urls.push_back(std::move(planned));
    }
    return again;
}

std::string resultsAsCSV(const Results& results) {
    std::string table = "website,url,engine,result,word,code,ms,add_url\r\n";
    for (int place = 0; place < results.count(); ++place) {
        const PairResult pair = results.at(place);
        for (const std::string_view text : {pair.website, pair.URL, pair.engine}) {
            appendCsvCell(table, text);
            table += ',';
        }
        table.append(std::to_string(pair.result)).append(",").append(pair.word()).append(",");
        table.append(std::to_string(pair.code)).append(",").append(std::to_string(pair.milliseconds));
        table += ',';
        appendCsvCell(table, pair.AddURL);
        table += "\r\n";
    }
    return table;
}

void saveResults(const Results& results, const std::string& path) {
    writeFile(path, resultsAsCSV(results));
}

}  // namespace relay

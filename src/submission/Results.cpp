// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/Results.h"

#include "core/CsvCell.h"
#include "core/FileStore.h"

#include <algorithm>
#include <utility>

namespace relay {

void Results::begin(RunPlan plan, std::vector<std::string> addURLs) {
    m_plan = std::move(plan);
    m_addURLs = std::move(addURLs);
    m_pairs.clear();
    m_counts.fill(0);
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
    std::vector<std::pair<std::uint16_t, std::uint16_t>> failed;
    std::vector<std::int16_t> placeOf(plan.engines.size(), 0);  // in the new plan, from 1
    for (const PairEnd& end : results.ends()) {
        if (end.result == Success) continue;
        failed.emplace_back(end.url, end.engine);
        placeOf[end.engine] = 1;
    }
    std::sort(failed.begin(), failed.end());
    RunPlan again;
    for (std::size_t engine = 0; engine < placeOf.size(); ++engine) {
        if (placeOf[engine] == 0) continue;
        again.engines.push_back(plan.engines[engine]);
        placeOf[engine] = static_cast<std::int16_t>(again.engines.size());
    }
    for (std::size_t i = 0; i < failed.size(); ++i) {
        const auto [url, engine] = failed[i];
        if (i == 0 || failed[i - 1].first != url) {
            again.urls.push_back(plan.urls[url]);
            again.urls.back().engines.clear();
        }
        again.urls.back().engines.push_back(placeOf[engine]);
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

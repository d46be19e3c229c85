// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/RunParts.h"

#include "submission/LedgerReader.h"

#include <numeric>
#include <utility>

namespace relay {

RunParts RunParts::of(const RunPlan& plan) {
    RunParts parts;
    for (const PlannedURL& url : plan.urls)
        if (!url.engines.empty()) parts.m_parts[urlKey(url.website, url.URL)] = {url.engines, url.engines};
    return parts;
}

RunParts RunParts::leftOf(const CutOffRun& run) {
    std::vector<std::int16_t> all(run.plan.engines.size());
    std::iota(all.begin(), all.end(), std::int16_t{1});
    std::vector<std::vector<bool>> ended(run.plan.urls.size());
    for (const PairEnd& end : run.ended) {
        ended[end.url].resize(all.size());
        ended[end.url][end.engine] = true;
    }
    RunParts parts;
    for (std::size_t i = 0; i < run.plan.urls.size(); ++i) {
        const PlannedURL& url = run.plan.urls[i];
        if (run.finished[i] || (url.engines.empty() && ended[i].empty())) continue;
        Part part{url.engines, url.engines.empty() ? all : url.engines};
        std::erase_if(part.due, [&](std::int16_t engine) {
            return !ended[i].empty() && ended[i][static_cast<std::size_t>(engine - 1)];
        });
        parts.m_parts[urlKey(url.website, url.URL)] = std::move(part);
    }
    return parts;
}

const RunParts::Part* RunParts::find(std::string_view key) const {
    const auto found = m_parts.find(std::string(key));
    return found == m_parts.end() ? nullptr : &found->second;
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingHistory.h"

#include "core/FileStore.h"
#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "ranking/RankingAnalysis.h"

namespace relay {

namespace {

// "not found among 30 links": the word for a place in the history.
std::string stateText(const HistoryPlace& place) {
    EngineAnalysis analysis;
    analysis.state = place.state;
    analysis.nLinkCount = place.links;
    return rankStateText(analysis);
}

}  // namespace

RankingHistory::RankingHistory(const Services& services, HistoryStore& store, QLocale locale)
    : m_services(services), m_store(store), m_locale(std::move(locale)) {
    lsvHistory.setColumns({"Date", "Engine", "Site", "Position", "Result", "Catalogue"});
}

void RankingHistory::load(const std::string& profile) {
    const bool same = equalsNoCase(profile, m_profile);
    const std::string chosen =
        same && m_site >= 0 ? m_sites[static_cast<std::size_t>(m_site)] : std::string();
    const bool all = same && m_site < 0 && !m_sites.empty();
    std::vector<std::pair<std::string, std::string>> hidden;
    for (const Line& line : m_lines)
        if (same && !line.shown) hidden.emplace_back(line.line.site, line.line.engine);

    m_profile = profile;
    m_readings.clear();
    m_sites.clear();
    m_problem.clear();
    if (!profile.empty()) m_problem = failureOf([&] { m_readings = m_store.readings(profile); }).value_or("");
    for (const HistoryLine& line : historyLines(m_readings))
        if (std::find(m_sites.begin(), m_sites.end(), line.site) == m_sites.end())
            m_sites.push_back(line.site);
    const auto place = std::find(m_sites.begin(), m_sites.end(), chosen);
    m_site = all || m_sites.empty()   ? -1
             : place == m_sites.end() ? 0
                                      : static_cast<int>(place - m_sites.begin());
    showSite();
    for (Line& line : m_lines)
        if (std::find(hidden.begin(), hidden.end(), std::pair(line.line.site, line.line.engine)) !=
            hidden.end())
            line.shown = false;
    Q_EMIT changed();
}

void RankingHistory::chooseSite(int site) {
    if (site < -1 || site >= static_cast<int>(m_sites.size()) || site == m_site) return;
    m_site = site;
    showSite();
    Q_EMIT changed();
}

void RankingHistory::showSite() {
    m_lines.clear();
    for (HistoryLine& line : historyLines(m_readings)) {
        if (m_site >= 0 && line.site != m_sites[static_cast<std::size_t>(m_site)]) continue;
        const bool shown = m_lines.size() < kMostShown;
        m_lines.push_back({std::move(line), shown});
    }
    fillList();
}

void RankingHistory::fillList() {
    const RowsBatch batch(lsvHistory);
    lsvHistory.clear();
    for (auto reading = m_readings.rbegin(); reading != m_readings.rend(); ++reading) {
        for (const HistoryPlace& place : reading->places) {
            if (m_site >= 0 && place.site != m_sites[static_cast<std::size_t>(m_site)]) continue;
            lsvHistory.add({.text = historyTime(place.fetched),
                            .subItems = {place.engine, place.site, place.positions, stateText(place),
                                         historyTime(reading->catalogue)}});
        }
    }
}

void RankingHistory::showLine(std::size_t line, bool on) {
    if (line >= m_lines.size() || m_lines[line].shown == on) return;
    m_lines[line].shown = on;
    Q_EMIT chartChanged();
}

HistoryChart RankingHistory::chart(const ChartRoom& room) const {
    std::vector<HistoryLine> shown;
    for (const Line& line : m_lines)
        if (line.shown) shown.push_back(line.line);
    return historyChart(shown, m_locale, room);
}

std::string RankingHistory::pointText(const ChartCurve& curve, const ChartPoint& point) const {
    const std::string result = point.point.state == RankState::Found
                                   ? "position " + std::to_string(point.point.best)
                                   : std::string(rankStateName(point.point.state));
    return curve.site + "\n" + curve.engine + ", " +
           fromScreen(m_locale.toString(point.point.fetched, QLocale::ShortFormat)) + ": " + result;
}

void RankingHistory::exportCSV() {
    trap(m_services.prompts, "exportHistory_Error: ", [&] {
        save("CSV files (*.csv)|*.csv|All Files (*.*)|*.*|", historyCSV(m_readings));
    });
}

void RankingHistory::exportPicture(const std::string& png) {
    trap(m_services.prompts,
         "exportHistory_Error: ", [&] { save("PNG pictures (*.png)|*.png|All Files (*.*)|*.*|", png); });
}

void RankingHistory::save(std::string_view filter, std::string_view bytes) {
    const std::string path = askWhereToSave(
        m_services.prompts, {filter, "The file ", " already exists. Do you want to replace it?", "History"});
    if (!path.empty()) writeFile(path, bytes);
}

}  // namespace relay

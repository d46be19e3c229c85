// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/HistoryStore.h"

#include "core/CsvCell.h"
#include "core/FileSystem.h"
#include "core/HistoryFile.h"
#include "core/ScreenText.h"
#include "core/Text.h"

#include <algorithm>
#include <map>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kTitle = "The history of rank tracking: ";

QDateTime timeOf(std::int64_t seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds);
}

RankState stateOf(std::string_view name) {
    for (const RankState state : {RankState::Found, RankState::NotFound, RankState::NothingFound,
                                  RankState::NoResultList, RankState::NoResultPage})
        if (name == rankStateName(state)) return state;
    return RankState::NoResultPage;
}

HistoryPlace placeOf(const Statement& row) {
    return {row.text(0),          row.text(1),
            stateOf(row.text(2)), static_cast<int>(row.number(3)),
            row.text(4),          static_cast<int>(row.number(5)),
            timeOf(row.number(6))};
}

}  // namespace

HistoryStore::HistoryStore(const Paths& paths) : m_file(historyFile(paths)) {}

void HistoryStore::add(const HistoryReading& reading) {
    if (reading.places.empty()) return;
    History history(m_file, History::For::Writing, kTitle);
    Database& database = history.database();
    Statement(database, "INSERT INTO reading (profile, keywords, analysed, catalogue) VALUES (?, ?, ?, ?)")
        .bind(reading.profile)
        .bind(reading.keywords)
        .bind(reading.analysed.toSecsSinceEpoch())
        .bind(reading.catalogue.toSecsSinceEpoch())
        .run();
    const std::int64_t id = database.lastId();
    Statement insert(database, "INSERT INTO place VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
    for (const HistoryPlace& place : reading.places)
        insert.bind(id)
            .bind(place.engine)
            .bind(place.site)
            .bind(rankStateName(place.state))
            .bind(place.best)
            .bind(place.positions)
            .bind(place.links)
            .bind(place.fetched.toSecsSinceEpoch())
            .run();
    history.commit();
}

std::vector<HistoryReading> HistoryStore::readings(std::string_view profile) const {
    std::vector<HistoryReading> found;
    if (!fileExists(m_file)) return found;
    History history(m_file, History::For::Reading, kTitle);
    if (!history.hasTables()) return found;
    Database& database = history.database();
    Statement readings(database,
                       "SELECT id, profile, keywords, analysed, catalogue FROM reading "
                       "WHERE profile = ? ORDER BY id");
    readings.bind(trim(profile));
    Statement places(database,
                     "SELECT engine, site, state, best, positions, links, fetched FROM place "
                     "WHERE reading = ? ORDER BY rowid");
    while (readings.step()) {
        HistoryReading reading{
            readings.text(1), readings.text(2), timeOf(readings.number(3)), timeOf(readings.number(4)), {}};
        places.bind(readings.number(0));
        while (places.step()) reading.places.push_back(placeOf(places));
        places.reset();
        found.push_back(std::move(reading));
    }
    return found;
}

std::vector<HistoryLine> historyLines(const std::vector<HistoryReading>& readings) {
    std::vector<HistoryLine> lines;
    std::map<std::pair<std::string, std::string>, std::size_t> placeOfLine;
    for (const HistoryReading& reading : readings)
        for (const HistoryPlace& place : reading.places) {
            const auto [line, isNew] = placeOfLine.try_emplace({place.site, place.engine}, lines.size());
            if (isNew) lines.push_back({place.site, place.engine, {}});
            // Readings come in order, so a later one of the same pages takes the place of the one before.
            lines[line->second].points.push_back({place.fetched, place.state, place.best});
        }
    for (HistoryLine& line : lines) {
        std::stable_sort(line.points.begin(), line.points.end(),
                         [](const auto& a, const auto& b) { return a.fetched < b.fetched; });
        std::vector<HistoryPoint> newest;
        for (const HistoryPoint& point : line.points) {
            if (!newest.empty() && newest.back().fetched == point.fetched) newest.pop_back();
            newest.push_back(point);
        }
        line.points = std::move(newest);
    }
    return lines;
}

std::string historyTime(const QDateTime& time) {
    return fromScreen(time.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"));
}

std::string historyCSV(const std::vector<HistoryReading>& readings) {
    std::string table = "fetched,analysed,catalogue,keywords,engine,site,state,best,positions,links\r\n";
    for (const HistoryReading& reading : readings)
        for (const HistoryPlace& place : reading.places) {
            const std::string cells[] = {historyTime(place.fetched),
                                         historyTime(reading.analysed),
                                         historyTime(reading.catalogue),
                                         reading.keywords,
                                         place.engine,
                                         place.site,
                                         std::string(rankStateName(place.state)),
                                         place.best == 0 ? std::string() : std::to_string(place.best),
                                         place.positions,
                                         std::to_string(place.links)};
            const char* separator = "";
            for (const std::string& cell : cells) {
                table += separator;
                appendCsvCell(table, cell);
                separator = ",";
            }
            table += "\r\n";
        }
    return table;
}

}  // namespace relay

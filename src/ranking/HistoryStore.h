// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankingAnalysis.h"

#include <QDateTime>

#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Paths;

// What one analysis found for one site on one engine. An engine that was not asked has no place in the
// history.
struct HistoryPlace final {
    std::string engine;
    std::string site;
    RankState state = RankState::NotFound;  // of this site
    int best = 0;                           // the first position, from 1; 0 when there is none
    std::string positions;                  // "3,14"
    int links = 0;                          // counted on this engine
    QDateTime fetched;                      // when the engine's first page was saved
};

// One analysis of a profile's saved pages. The same pages may be read again, with a newer catalogue or other
// sites: each reading is kept.
struct HistoryReading final {
    std::string profile;
    std::string keywords;
    QDateTime analysed;
    QDateTime catalogue;  // when the catalogue's file was changed last
    std::vector<HistoryPlace> places;
};

// The history of rank tracking: one SQLite file for all profiles. It is opened for each operation, so that
// two programs may use it; times have a resolution of a second. All operations throw Failure with the file
// and the reason when it is locked by another program for two seconds, damaged, from a later version of the
// program, or no history at all; it is then left as it is.
class HistoryStore final {
  public:
    explicit HistoryStore(const Paths& paths);

    const std::string& file() const noexcept { return m_file; }

    // Adds the reading whole or not at all; makes the file when there is none. Without places it does
    // nothing.
    void add(const HistoryReading& reading);
    // All readings of the profile (without regard to case), oldest first; none without a file.
    std::vector<HistoryReading> readings(std::string_view profile) const;

  private:
    std::string m_file;
};

// One measured point for a chart: of the readings of the same pages the newest counts.
struct HistoryPoint final {
    QDateTime fetched;
    RankState state = RankState::NotFound;
    int best = 0;  // 0 when not found
};
// The points of one site on one engine, oldest first.
struct HistoryLine final {
    std::string site;
    std::string engine;
    std::vector<HistoryPoint> points;
};
// A line for each site and engine, in the order of their first appearance.
std::vector<HistoryLine> historyLines(const std::vector<HistoryReading>& readings);

// Comma separated values, a line for each place below a line of titles; lines end with CR LF, times are
// "2002-04-01 13:05:00".
std::string historyCSV(const std::vector<HistoryReading>& readings);
std::string historyTime(const QDateTime& time);

}  // namespace relay

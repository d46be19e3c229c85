// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "ranking/HistoryChart.h"

#include <QLocale>

#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Services;

// The history of one profile, as the screen shows it: a chart of the lines that are ticked, and a list of all
// readings. `services` and `store` outlive the object.
class RankingHistory final : public QObject {
    Q_OBJECT
  public:
    // So many lines of a profile are ticked at first; more would hide each other.
    static constexpr std::size_t kMostShown = 24;

    RankingHistory(const Services& services, HistoryStore& store, QLocale locale);

    // Reads the history anew. The chosen site and the ticks stay if it is the same profile.
    void load(const std::string& profile);
    const std::string& profile() const noexcept { return m_profile; }
    // Why the history cannot be read; empty otherwise.
    const std::string& problem() const noexcept { return m_problem; }
    bool empty() const noexcept { return m_readings.empty(); }

    // Every site in it, in the order of their first appearance.
    const std::vector<std::string>& sites() const noexcept { return m_sites; }
    int site() const noexcept { return m_site; }  // the chosen one; -1: all
    void chooseSite(int site);

    // The lines of the chosen site, an engine each; of every site when all are chosen.
    struct Line final {
        HistoryLine line;
        bool shown = true;
    };
    const std::vector<Line>& lines() const noexcept { return m_lines; }
    void showLine(std::size_t line, bool on);
    // Of the ticked lines.
    HistoryChart chart(const ChartRoom& room = {}) const;
    // "roses.example on Beacon Finder, 1 April 2026 13:05: position 4", for a point of the chart.
    std::string pointText(const ChartCurve& curve, const ChartPoint& point) const;

    // The readings of the chosen site, newest first: "Date" of the pages, "Engine", "Site", "Position",
    // "Result", "Catalogue" (its date). Pages that were read twice are there twice.
    Rows lsvHistory;

    // Both ask for the file and show their failures.
    void exportCSV();
    void exportPicture(const std::string& png);

  Q_SIGNALS:
    void changed();       // profile, sites, lines
    void chartChanged();  // the ticks

  private:
    void showSite();
    void fillList();
    void save(std::string_view filter, std::string_view bytes);

    const Services& m_services;
    HistoryStore& m_store;
    const QLocale m_locale;
    std::string m_profile;
    std::string m_problem;
    std::vector<HistoryReading> m_readings;
    std::vector<std::string> m_sites;
    int m_site = -1;
    std::vector<Line> m_lines;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/HistoryStore.h"

#include <QDateTime>
#include <QLocale>

#include <string>
#include <utility>
#include <vector>

namespace relay {

// A mark of the chart, with the point it stands for.
struct ChartPoint final {
    HistoryPoint point;
    double time = 0;   // milliseconds since 1970
    double level = 0;  // on the vertical axis: the position, or a place in one of the bands below
};

// A site on an engine, over time.
struct ChartCurve final {
    std::string site;
    std::string engine;
    std::vector<ChartPoint> points;  // oldest first
    // First and last of the points that a line joins: positions of the same day or of the next.
    std::vector<std::pair<std::size_t, std::size_t>> joined;
};

struct ChartTick final {
    double at = 0;
    std::string text;
};

// A chart of best positions, ready to be drawn. The first place is on top, so `top` is less than `bottom`.
// Both axes are fitted to the points. Below the positions there is a band "not found" and a band "no result"
// (the engine was asked, but its pages could not be read) as far as they are needed; the points of different
// curves have different levels there. An engine that was not asked has no point.
struct HistoryChart final {
    std::vector<ChartCurve> curves;
    double top = 0;
    double bottom = 0;
    std::vector<double> bands;      // where each band begins
    std::vector<ChartTick> levels;  // positions and bands
    double from = 0;
    double to = 0;
    std::vector<ChartTick> times;

    bool empty() const noexcept { return from >= to; }
};

// How many labels fit beside each other on an axis.
struct ChartRoom final {
    int levels = 16;
    int times = 6;
};

HistoryChart historyChart(const std::vector<HistoryLine>& lines, const QLocale& locale,
                          const ChartRoom& room = {});

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/HistoryChart.h"

#include "core/ScreenText.h"

#include <array>
#include <cmath>

namespace relay {

namespace {

enum class Band { None, NotFound, NoResult };

Band bandOf(RankState state) {
    switch (state) {
        case RankState::Found:
            return Band::None;
        case RankState::NotFound:
        case RankState::NothingFound:
            return Band::NotFound;
        case RankState::NoResultList:
        case RankState::NoResultPage:
            break;
    }
    return Band::NoResult;
}

// 1, 2, 5, 10, 20, ...: the first that makes at most `most` steps of the span.
int positionStep(int span, double most) {
    constexpr std::array kDigits = {1, 2, 5};
    for (int power = 1;; power *= 10)
        for (const int digit : kDigits)
            if (span / (digit * power) <= most) return digit * power;
}

void addPositionTicks(HistoryChart& chart, int best, int worst, int room) {
    const double share = (worst - best) / (chart.bottom - chart.top);
    const int step = positionStep(worst - best, std::max(1.0, room * share));
    std::vector<ChartTick> ticks;
    const auto add = [&ticks](int position) {
        ticks.push_back({static_cast<double>(position), std::to_string(position)});
    };
    // The first place has a tick of its own, unless the next one is too close for a label.
    int position = (best + step - 1) / step * step;
    if (best == 1 && step > 1) {
        add(1);
        if (step == 2) position = 3;
    }
    for (; position <= worst; position += step) add(position);
    if (ticks.empty()) add(best);
    chart.levels.insert(chart.levels.begin(), ticks.begin(), ticks.end());
}

// Each curve with points in the band has its own level in it; `span` is that of the positions.
void addBand(HistoryChart& chart, Band band, double span, const char* text) {
    const auto isIn = [band](const ChartPoint& point) { return bandOf(point.point.state) == band; };
    std::vector<ChartCurve*> curves;
    for (ChartCurve& curve : chart.curves)
        if (std::any_of(curve.points.begin(), curve.points.end(), isIn)) curves.push_back(&curve);
    if (curves.empty()) return;
    const auto count = static_cast<double>(curves.size());
    const double height = span * std::clamp(count * 0.07, 0.25, 0.75);
    const double step = height / count;
    double level = chart.bottom + step / 2;
    for (ChartCurve* const curve : curves) {
        for (ChartPoint& point : curve->points)
            if (isIn(point)) point.level = level;
        level += step;
    }
    chart.bands.push_back(chart.bottom);
    chart.levels.push_back({chart.bottom + height / 2, text});
    chart.bottom += height;
}

void placeOnLevels(HistoryChart& chart, int room) {
    int best = 0;
    int worst = 0;
    for (const ChartCurve& curve : chart.curves) {
        for (const ChartPoint& point : curve.points) {
            if (bandOf(point.point.state) != Band::None) continue;
            best = best == 0 ? point.point.best : std::min(best, point.point.best);
            worst = std::max(worst, point.point.best);
        }
    }
    constexpr double kLeastSpan = 4;
    const double span = std::max<double>(worst - best, kLeastSpan);
    const double margin = span * 0.08;
    chart.top = best - margin;
    chart.bottom = best > 0 ? worst + margin : 0;
    addBand(chart, Band::NotFound, span, "not found");
    addBand(chart, Band::NoResult, span, "no result");
    if (best > 0) addPositionTicks(chart, best, worst, room);
}

void join(ChartCurve& curve) {
    std::size_t first = 0;
    for (std::size_t next = 1; next <= curve.points.size(); ++next) {
        const auto found = [&](std::size_t i) { return bandOf(curve.points[i].point.state) == Band::None; };
        const auto day = [&](std::size_t i) { return curve.points[i].point.fetched.date(); };
        if (next < curve.points.size() && found(next - 1) && found(next) &&
            day(next - 1).daysTo(day(next)) <= 1)
            continue;
        if (next - first > 1) curve.joined.emplace_back(first, next - 1);
        first = next;
    }
}

constexpr qint64 kMinute = 60;
constexpr qint64 kHour = 60 * kMinute;
constexpr qint64 kDay = 24 * kHour;

// The first tick at or after the time: whole days in calendar time, shorter steps counted from midnight.
QDateTime firstTick(const QDateTime& time, qint64 step) {
    QDateTime tick = time.date().startOfDay();
    if (step >= kDay) return tick < time ? time.date().addDays(1).startOfDay() : tick;
    while (tick < time) tick = tick.addSecs(step);
    return tick;
}

std::string tickText(const QDateTime& tick, qint64 step, bool years, const QLocale& locale) {
    QString format = QStringLiteral("d MMM");
    if (years) format += QStringLiteral(" yyyy");
    if (step < kDay) format += QStringLiteral(" HH:mm");
    return fromScreen(locale.toString(tick, format));
}

void placeOnTimes(HistoryChart& chart, const QLocale& locale, int room) {
    for (ChartCurve& curve : chart.curves) {
        for (ChartPoint& point : curve.points) {
            point.time = static_cast<double>(point.point.fetched.toMSecsSinceEpoch());
            chart.from = chart.from == 0 ? point.time : std::min(chart.from, point.time);
            chart.to = std::max(chart.to, point.time);
        }
    }
    if (chart.to == 0) return;
    constexpr double kLeastMargin = 5.0 * kMinute * 1000;
    const double margin = std::max((chart.to - chart.from) * 0.05, kLeastMargin);
    chart.from -= margin;
    chart.to += margin;

    constexpr std::array kSteps = {5 * kMinute, 15 * kMinute, 30 * kMinute, kHour,     3 * kHour,
                                   6 * kHour,   12 * kHour,   kDay,         2 * kDay,  7 * kDay,
                                   14 * kDay,   28 * kDay,    91 * kDay,    182 * kDay};
    const double seconds = (chart.to - chart.from) / 1000;
    qint64 step = kSteps.front();
    for (const qint64 next : kSteps)
        if (seconds / static_cast<double>(step) > room) step = next;
    while (seconds / static_cast<double>(step) > room) step += 365 * kDay;

    const QDateTime from = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(chart.from));
    const QDateTime to = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(chart.to));
    const bool years = from.date().year() != to.date().year();
    for (QDateTime tick = firstTick(from, step); tick <= to;
         tick = step >= kDay ? tick.addDays(step / kDay) : tick.addSecs(step))
        chart.times.push_back(
            {static_cast<double>(tick.toMSecsSinceEpoch()), tickText(tick, step, years, locale)});
}

}  // namespace

HistoryChart historyChart(const std::vector<HistoryLine>& lines, const QLocale& locale,
                          const ChartRoom& room) {
    HistoryChart chart;
    for (const HistoryLine& line : lines) {
        ChartCurve& curve = chart.curves.emplace_back();
        curve.site = line.site;
        curve.engine = line.engine;
        for (const HistoryPoint& point : line.points)
            curve.points.push_back({point, 0, static_cast<double>(point.best)});
        join(curve);
    }
    placeOnTimes(chart, locale, std::max(1, room.times));
    placeOnLevels(chart, room.levels);
    return chart;
}

}  // namespace relay

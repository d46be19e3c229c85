// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/HistoryChart.h"

#include <gtest/gtest.h>

namespace relay::test {
namespace {

HistoryPoint at(const char* time, int best, RankState state = RankState::Found) {
    return {QDateTime::fromString(QString::fromLatin1(time), QStringLiteral("yyyy-MM-dd HH:mm")), state,
            best};
}
HistoryPoint none(const char* time, RankState state) {
    return at(time, 0, state);
}

// "1,5,10 | not found": the labels of the vertical axis from the top.
std::string levels(const HistoryChart& chart) {
    std::string text;
    for (const ChartTick& tick : chart.levels) text += (text.empty() ? "" : " ") + tick.text;
    return text;
}
std::string times(const HistoryChart& chart) {
    std::string text;
    for (const ChartTick& tick : chart.times) text += (text.empty() ? "" : ", ") + tick.text;
    return text;
}

TEST(HistoryChartTest, FitsItsAxesToTheData) {
    const struct {
        std::vector<HistoryPoint> points;
        const char* levels;
        const char* times;
    } cases[] = {
        {{}, "", ""},
        {{at("2026-03-01 10:00", 1)}, "1", "1 Mar 09:55, 1 Mar 10:00, 1 Mar 10:05"},
        {{at("2026-03-01 10:00", 1), at("2026-03-04 10:00", 9)}, "1 2 3 4 5 6 7 8 9", "2 Mar, 3 Mar, 4 Mar"},
        {{at("2026-03-01 10:00", 1), at("2026-03-29 10:00", 45)},
         "1 5 10 15 20 25 30 35 40 45",
         "1 Mar, 8 Mar, 15 Mar, 22 Mar, 29 Mar"},
        {{at("2026-03-01 10:00", 14), at("2026-03-01 16:00", 18)},
         "14 15 16 17 18",
         "1 Mar 12:00, 1 Mar 15:00"},
        {{at("2025-12-30 00:00", 3), none("2026-01-02 00:00", RankState::NotFound)},
         "3 not found",
         "30 Dec 2025, 31 Dec 2025, 1 Jan 2026, 2 Jan 2026"},
        {{none("2026-03-01 10:00", RankState::NoResultList),
          none("2026-03-01 10:00", RankState::NothingFound)},
         "not found no result",
         "1 Mar 09:55, 1 Mar 10:00, 1 Mar 10:05"},
    };
    for (const auto& test : cases) {
        const HistoryChart chart = historyChart({{"a.test", "One", test.points}}, QLocale::c());
        SCOPED_TRACE(test.levels);
        EXPECT_EQ(levels(chart), test.levels);
        EXPECT_EQ(times(chart), test.times);
        EXPECT_EQ(chart.empty(), test.points.empty());
        for (const ChartCurve& curve : chart.curves) {
            for (const ChartPoint& point : curve.points) {
                EXPECT_LT(chart.top, point.level);
                EXPECT_GT(chart.bottom, point.level);
                EXPECT_LT(chart.from, point.time);
                EXPECT_GT(chart.to, point.time);
            }
        }
    }
}

TEST(HistoryChartTest, JoinsOnlyPositionsOfNeighbouringDays) {
    const HistoryChart chart =
        historyChart({{"a.test",
                       "One",
                       {at("2026-03-01 10:00", 4), at("2026-03-01 23:00", 5), at("2026-03-02 01:00", 6),
                        at("2026-03-04 01:00", 7), at("2026-03-05 23:00", 7),
                        none("2026-03-06 10:00", RankState::NotFound), at("2026-03-06 11:00", 7)}}},
                     QLocale::c());
    using Pairs = std::vector<std::pair<std::size_t, std::size_t>>;
    EXPECT_EQ(chart.curves.at(0).joined, (Pairs{{0, 2}, {3, 4}}));
}

TEST(HistoryChartTest, KeepsPointsWithoutAPositionApart) {
    const char* const day = "2026-03-01 10:00";
    const HistoryChart chart = historyChart({{"a.test", "One", {none(day, RankState::NotFound)}},
                                             {"a.test", "Two", {none(day, RankState::NotFound)}},
                                             {"a.test", "Three", {none(day, RankState::NoResultPage)}},
                                             {"a.test", "Four", {at(day, 30)}}},
                                            QLocale::c());
    ASSERT_EQ(chart.bands.size(), 2U);
    const auto level = [&](std::size_t curve) { return chart.curves.at(curve).points.at(0).level; };
    EXPECT_EQ(level(3), 30);
    EXPECT_LT(level(3), chart.bands[0]);
    EXPECT_LT(chart.bands[0], level(0));
    EXPECT_LT(level(0), level(1));
    EXPECT_LT(level(1), chart.bands[1]);
    EXPECT_LT(chart.bands[1], level(2));
}

}  // namespace
}  // namespace relay::test

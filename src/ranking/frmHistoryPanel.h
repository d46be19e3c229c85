// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/HistoryChart.h"

#include <QColor>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

class QCategoryAxis;
class QChart;
class QGraphicsSimpleTextItem;
class QPainter;
class QScatterSeries;

namespace relay {

class RankingHistory;

namespace Ui {
class frmHistoryPanel;
}

// The page "History": the chart of a profile, the names of its lines with their marks, and all readings.
class frmHistoryPanel final : public QWidget {
    Q_OBJECT
  public:
    explicit frmHistoryPanel(QWidget* parent = nullptr);
    ~frmHistoryPanel() override;

    // The history outlives the panel.
    void connectTo(RankingHistory& history);
    // The profiles to choose from, and the chosen one.
    void showProfiles(const std::vector<std::string>& profiles, const std::string& chosen);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void showHistory();
    void showSites();
    void showLines();
    void showChart();
    void addCurve(const ChartCurve& curve, std::size_t line);
    void addMarks(const ChartCurve& curve, std::size_t line, bool found);
    void addLine(const std::vector<ChartPoint>& points, std::size_t line);
    void addBands();
    void addAxes();
    void addLabels();
    void placeLabels();
    bool measureRoom();
    QCategoryAxis* newAxis(const std::vector<ChartTick>& ticks, double from, double to) const;
    void tellPoint(const ChartCurve& curve, const QPointF& place, bool on) const;
    QString lineName(std::size_t line) const;
    QColor colourOf(std::size_t line) const;
    QIcon iconOf(std::size_t line) const;
    std::string picture() const;

    std::unique_ptr<Ui::frmHistoryPanel> m_ui;
    RankingHistory* m_history = nullptr;
    QChart* m_chart = nullptr;
    HistoryChart m_shown;
    ChartRoom m_room;
    // The labels of both axes: Qt's own end in an ellipsis where lines are close together.
    std::vector<QGraphicsSimpleTextItem*> m_levels;
    std::vector<QGraphicsSimpleTextItem*> m_times;
};

}  // namespace relay

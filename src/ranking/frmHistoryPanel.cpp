// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/frmHistoryPanel.h"

#include "core/ScreenText.h"
#include "ranking/RankingHistory.h"
#include "ranking/ui_frmHistoryPanel.h"
#include "widgets/Contrast.h"
#include "widgets/IconTheme.h"

#include <QBuffer>
#include <QCategoryAxis>
#include <QChart>
#include <QEvent>
#include <QGraphicsLayout>
#include <QGraphicsSimpleTextItem>
#include <QLineSeries>
#include <QPainter>
#include <QScatterSeries>
#include <QSignalBlocker>
#include <QToolTip>

#include <cmath>
#include <numbers>

namespace relay {

namespace {

constexpr qreal kMarkSize = 10;
constexpr qreal kLineWidth = 2;
constexpr int kLabelGap = 8;
constexpr QRgb kHues[] = {0xff0072b2, 0xffd55e00, 0xff009e73, 0xffcc79a7, 0xffe69f00,
                          0xff56b4e9, 0xff7f5fbf, 0xff8a8a2b, 0xff8c564b, 0xff5f6b7a};
constexpr QScatterSeries::MarkerShape kShapes[] = {
    QScatterSeries::MarkerShapeCircle,   QScatterSeries::MarkerShapeRectangle,
    QScatterSeries::MarkerShapeTriangle, QScatterSeries::MarkerShapeRotatedRectangle,
    QScatterSeries::MarkerShapePentagon, QScatterSeries::MarkerShapeStar};

// Neighbours differ in colour and shape: a line can be recognised without its colour.
QScatterSeries::MarkerShape shapeOf(std::size_t line) {
    return kShapes[line % std::size(kShapes)];
}

QPolygonF regular(int corners, qreal size, qreal inner) {
    QPolygonF shape;
    const int points = inner > 0 ? 2 * corners : corners;
    for (int i = 0; i < points; ++i) {
        const qreal angle = 2 * std::numbers::pi * i / points;
        const qreal radius = size / 2 * (inner > 0 && i % 2 == 1 ? inner : 1);
        shape << QPointF(radius * std::sin(angle), -radius * std::cos(angle));
    }
    return shape;
}

// The mark around the origin, as the chart draws it.
void drawMark(QPainter& painter, QScatterSeries::MarkerShape shape, qreal size) {
    const QRectF box(-size / 2, -size / 2, size, size);
    switch (shape) {
        case QScatterSeries::MarkerShapeRectangle:
            painter.drawRect(box);
            break;
        case QScatterSeries::MarkerShapeRotatedRectangle:
            painter.drawPolygon(regular(4, size, 0));
            break;
        case QScatterSeries::MarkerShapeTriangle:
            painter.drawPolygon(QPolygonF({{0, -size / 2}, {size / 2, size / 2}, {-size / 2, size / 2}}));
            break;
        case QScatterSeries::MarkerShapeStar:
            painter.drawPolygon(regular(5, size, 0.5));
            break;
        case QScatterSeries::MarkerShapePentagon:
            painter.drawPolygon(regular(5, size, 0));
            break;
        default:
            painter.drawEllipse(box);
    }
}

}  // namespace

frmHistoryPanel::frmHistoryPanel(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::frmHistoryPanel>()) {
    m_ui->setupUi(this);
    m_chart = m_ui->chtHistory->chart();
    m_ui->cmdExportCSV->setIcon(themedIcon("Export"));
    m_ui->cmdExportPNG->setIcon(themedIcon("SaveAs"));
    m_chart->legend()->hide();
    m_chart->setBackgroundRoundness(0);
    m_chart->layout()->setContentsMargins(0, 0, 0, 0);
    connect(m_chart, &QChart::plotAreaChanged, this, [this] {
        if (m_history != nullptr && measureRoom())
            QMetaObject::invokeMethod(this, &frmHistoryPanel::showChart, Qt::QueuedConnection);
        placeLabels();
    });
    m_ui->chtHistory->setRenderHint(QPainter::Antialiasing);
    m_ui->splitterHistory->setSizes({300, 160});
    m_ui->splitterChart->setSizes({520, 200});
    m_ui->splitterChart->setStretchFactor(0, 1);
    m_ui->splitterChart->setStretchFactor(1, 0);
}

frmHistoryPanel::~frmHistoryPanel() = default;

void frmHistoryPanel::connectTo(RankingHistory& history) {
    m_history = &history;
    m_ui->lsvHistory->setRows(&history.lsvHistory, {17, 18, 10, 22, 17});
    connect(&history, &RankingHistory::changed, this, &frmHistoryPanel::showHistory);
    connect(&history, &RankingHistory::chartChanged, this, &frmHistoryPanel::showChart);
    connect(m_ui->cboHistoryProfile, &QComboBox::activated, this,
            [this] { m_history->load(fromScreen(m_ui->cboHistoryProfile->currentText())); });
    connect(m_ui->cboHistorySite, &QComboBox::activated, this,
            [this](int item) { m_history->chooseSite(m_ui->cboHistorySite->itemData(item).toInt()); });
    connect(m_ui->lstHistoryLines, &QListWidget::itemChanged, this, [this](const QListWidgetItem* item) {
        m_history->showLine(static_cast<std::size_t>(m_ui->lstHistoryLines->row(item)),
                            item->checkState() == Qt::Checked);
    });
    connect(m_ui->cmdExportCSV, &QPushButton::clicked, &history, &RankingHistory::exportCSV);
    connect(m_ui->cmdExportPNG, &QPushButton::clicked, this, [this] { m_history->exportPicture(picture()); });
    showHistory();
}

void frmHistoryPanel::showProfiles(const std::vector<std::string>& profiles, const std::string& chosen) {
    QComboBox& box = *m_ui->cboHistoryProfile;
    box.clear();
    for (const std::string& profile : profiles) box.addItem(toScreen(profile));
    box.setCurrentIndex(box.findText(toScreen(chosen)));
    box.setEnabled(box.count() > 0);
}

void frmHistoryPanel::showHistory() {
    showSites();
    showLines();
    showChart();
    const bool any = !m_history->empty();
    m_ui->pages->setCurrentIndex(any ? 1 : 0);
    m_ui->cmdExportCSV->setEnabled(any);
    m_ui->cmdExportPNG->setEnabled(any);
    m_ui->lblNoHistory->setText(!m_history->problem().empty() ? toScreen(m_history->problem())
                                : m_history->profile().empty()
                                    ? tr("Choose a profile above, or save one on the page \"Ranking\".")
                                    : tr("There is nothing to show yet: the history of a profile begins with "
                                         "its first report. Start a "
                                         "search on the page \"Ranking\"."));
}

void frmHistoryPanel::showSites() {
    QComboBox& box = *m_ui->cboHistorySite;
    box.clear();
    int place = 0;
    for (const std::string& site : m_history->sites()) box.addItem(toScreen(site), place++);
    if (place > 1) box.addItem(tr("All sites"), -1);
    box.setCurrentIndex(box.findData(m_history->site()));
    box.setEnabled(place > 0);
}

void frmHistoryPanel::showLines() {
    const QSignalBlocker quiet(m_ui->lstHistoryLines);
    const int current = m_ui->lstHistoryLines->currentRow();
    m_ui->lstHistoryLines->clear();
    for (std::size_t line = 0; line < m_history->lines().size(); ++line) {
        auto* const item = new QListWidgetItem(iconOf(line), lineName(line), m_ui->lstHistoryLines);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(m_history->lines()[line].shown ? Qt::Checked : Qt::Unchecked);
        item->setToolTip(lineName(line));
    }
    m_ui->lstHistoryLines->setCurrentRow(current);
}

QString frmHistoryPanel::lineName(std::size_t line) const {
    const HistoryLine& shown = m_history->lines()[line].line;
    const QString engine = toScreen(shown.engine);
    return m_history->site() < 0 ? engine + QStringLiteral(": ") + toScreen(shown.site) : engine;
}

QColor frmHistoryPanel::colourOf(std::size_t line) const {
    return contrasting(QColor::fromRgb(kHues[line % std::size(kHues)]), palette().color(QPalette::Text),
                       {palette().color(QPalette::Base)});
}

QIcon frmHistoryPanel::iconOf(std::size_t line) const {
    const int size = m_ui->lstHistoryLines->fontMetrics().height();
    const qreal scale = devicePixelRatioF();
    QPixmap pixmap(QSize(size, size) * scale);
    pixmap.setDevicePixelRatio(scale);
    QIcon icon;
    for (const auto& [mode, colour] : {std::pair(QIcon::Normal, colourOf(line)),
                                       {QIcon::Selected, palette().color(QPalette::HighlightedText)}}) {
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.translate(size / 2.0, size / 2.0);
        drawMark(painter, shapeOf(line), kMarkSize);
        painter.end();
        icon.addPixmap(pixmap, mode);
    }
    return icon;
}

void frmHistoryPanel::showChart() {
    m_chart->removeAllSeries();
    for (QAbstractAxis* axis : m_chart->axes()) {
        m_chart->removeAxis(axis);
        delete axis;
    }
    measureRoom();
    m_shown = m_history->chart(m_room);
    const QPalette& colours = palette();
    m_chart->setBackgroundBrush(colours.color(QPalette::Base));
    m_chart->setBackgroundPen(Qt::NoPen);
    m_ui->chtHistory->setBackgroundBrush(colours.color(QPalette::Base));
    addLabels();
    if (m_shown.empty()) return;
    std::size_t curve = 0;
    for (std::size_t line = 0; line < m_history->lines().size(); ++line)
        if (m_history->lines()[line].shown) addCurve(m_shown.curves[curve++], line);
    addBands();
    addAxes();
    placeLabels();
}

void frmHistoryPanel::addCurve(const ChartCurve& curve, std::size_t line) {
    for (const auto& [first, last] : curve.joined)
        addLine({curve.points.begin() + static_cast<std::ptrdiff_t>(first),
                 curve.points.begin() + static_cast<std::ptrdiff_t>(last) + 1},
                line);
    addMarks(curve, line, true);
    addMarks(curve, line, false);
}

void frmHistoryPanel::addLine(const std::vector<ChartPoint>& points, std::size_t line) {
    auto* const series = new QLineSeries;
    for (const ChartPoint& point : points) series->append(point.time, point.level);
    series->setPen(QPen(colourOf(line), kLineWidth));
    m_chart->addSeries(series);
}

// A position has a full mark, anything else an empty one.
void frmHistoryPanel::addMarks(const ChartCurve& curve, std::size_t line, bool found) {
    auto* const series = new QScatterSeries;
    for (const ChartPoint& point : curve.points)
        if ((point.point.state == RankState::Found) == found) series->append(point.time, point.level);
    const QColor colour = colourOf(line);
    series->setMarkerShape(shapeOf(line));
    series->setMarkerSize(kMarkSize);
    series->setBrush(found ? colour : palette().color(QPalette::Base));
    series->setPen(QPen(colour, found ? 1 : kLineWidth));
    connect(series, &QScatterSeries::hovered, this,
            [this, &curve](const QPointF& place, bool on) { tellPoint(curve, place, on); });
    m_chart->addSeries(series);
}

void frmHistoryPanel::tellPoint(const ChartCurve& curve, const QPointF& place, bool on) const {
    if (!on) {
        QToolTip::hideText();
        return;
    }
    for (const ChartPoint& point : curve.points)
        if (QPointF(point.time, point.level) == place)
            QToolTip::showText(QCursor::pos(), toScreen(m_history->pointText(curve, point)),
                               m_ui->chtHistory);
}

void frmHistoryPanel::addBands() {
    for (const double level : m_shown.bands) {
        auto* const series = new QLineSeries;
        series->append(m_shown.from, level);
        series->append(m_shown.to, level);
        series->setPen(QPen(palette().color(QPalette::PlaceholderText), 1, Qt::DashLine));
        m_chart->addSeries(series);
    }
}

void frmHistoryPanel::addAxes() {
    QCategoryAxis* const times = newAxis(m_shown.times, m_shown.from, m_shown.to);
    QCategoryAxis* const levels = newAxis(m_shown.levels, m_shown.top, m_shown.bottom);
    levels->setReverse(true);
    m_chart->addAxis(times, Qt::AlignBottom);
    m_chart->addAxis(levels, Qt::AlignLeft);
    for (QAbstractSeries* series : m_chart->series()) {
        series->attachAxis(times);
        series->attachAxis(levels);
    }
}

QCategoryAxis* frmHistoryPanel::newAxis(const std::vector<ChartTick>& ticks, double from, double to) const {
    const QColor text = palette().color(QPalette::Text);
    const QColor line =
        over(QColor(text.red(), text.green(), text.blue(), 50), palette().color(QPalette::Base));
    auto* const axis = new QCategoryAxis;
    axis->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    axis->setRange(from, to);
    axis->setStartValue(from);
    for (const ChartTick& tick : ticks) axis->append(toScreen(tick.text), tick.at);
    axis->setLabelsVisible(false);
    axis->setLinePenColor(palette().color(QPalette::PlaceholderText));
    axis->setGridLineColor(line);
    return axis;
}

void frmHistoryPanel::addLabels() {
    const auto make = [this](const std::vector<ChartTick>& ticks) {
        std::vector<QGraphicsSimpleTextItem*> labels;
        for (const ChartTick& tick : ticks) {
            auto* const label = new QGraphicsSimpleTextItem(toScreen(tick.text), m_chart);
            label->setFont(font());
            label->setBrush(palette().color(QPalette::Text));
            labels.push_back(label);
        }
        return labels;
    };
    qDeleteAll(m_levels);
    qDeleteAll(m_times);
    m_levels = make(m_shown.levels);
    m_times = make(m_shown.times);
    const auto widest = [](const std::vector<QGraphicsSimpleTextItem*>& labels) {
        qreal width = 0;
        for (const QGraphicsSimpleTextItem* label : labels)
            width = std::max(width, label->boundingRect().width());
        return qCeil(width);
    };
    const int text = fontMetrics().height();
    m_chart->setMargins(QMargins(widest(m_levels) + 2 * kLabelGap, text / 2, widest(m_times) / 2 + kLabelGap,
                                 text + 2 * kLabelGap));
}

void frmHistoryPanel::placeLabels() {
    const QRectF plot = m_chart->plotArea();
    const auto part = [](double at, double from, double to) { return (at - from) / (to - from); };
    for (std::size_t i = 0; i < m_levels.size(); ++i) {
        const QRectF box = m_levels[i]->boundingRect();
        m_levels[i]->setPos(plot.left() - kLabelGap - box.width(),
                            plot.top() +
                                plot.height() * part(m_shown.levels[i].at, m_shown.top, m_shown.bottom) -
                                box.height() / 2);
    }
    for (std::size_t i = 0; i < m_times.size(); ++i) {
        const QRectF box = m_times[i]->boundingRect();
        m_times[i]->setPos(plot.left() + plot.width() * part(m_shown.times[i].at, m_shown.from, m_shown.to) -
                               box.width() / 2,
                           plot.bottom() + kLabelGap);
    }
}

// How many labels fit; true when that has changed. It depends on the size of the view alone: the plot's own
// size depends on the labels.
bool frmHistoryPanel::measureRoom() {
    constexpr double kLines = 1.5;
    constexpr int kCharacters = 18;
    constexpr int kMarginCharacters = 20;
    constexpr int kMarginLines = 3;
    const QFontMetrics metrics = fontMetrics();
    const QSize view = m_ui->chtHistory->viewport()->size();
    const int height = view.height() - kMarginLines * metrics.height();
    const int width = view.width() - kMarginCharacters * metrics.averageCharWidth();
    const ChartRoom before = m_room;
    m_room.levels = std::max(2, static_cast<int>(height / (metrics.height() * kLines)));
    m_room.times = std::max(1, width / (metrics.averageCharWidth() * kCharacters));
    return m_room.levels != before.levels || m_room.times != before.times;
}

// The chart beside the names of its lines, in twice the size of the screen.
std::string frmHistoryPanel::picture() const {
    constexpr int kScale = 2;
    constexpr int kGap = 12;
    const QFontMetrics metrics(font());
    const int row = std::max(metrics.height(), static_cast<int>(kMarkSize)) + 6;
    std::vector<std::size_t> shown;
    int names = 0;
    for (std::size_t line = 0; line < m_history->lines().size(); ++line) {
        if (!m_history->lines()[line].shown) continue;
        shown.push_back(line);
        names = std::max(names, metrics.horizontalAdvance(lineName(line)));
    }
    QString title = toScreen(m_history->profile());
    if (m_history->site() >= 0)
        title +=
            QStringLiteral(": ") + toScreen(m_history->sites()[static_cast<std::size_t>(m_history->site())]);
    const QSize chart = m_ui->chtHistory->viewport()->size();
    const int top = metrics.height() + 2 * kGap;
    const QSize size(std::max(chart.width() + row + names, metrics.horizontalAdvance(title)) + 3 * kGap,
                     top + std::max(chart.height(), row * static_cast<int>(shown.size())) + kGap);

    QImage image(size * kScale, QImage::Format_RGB32);
    image.setDevicePixelRatio(kScale);
    image.fill(palette().color(QPalette::Base));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QPoint(kGap, kGap + metrics.ascent()), title);
    m_ui->chtHistory->render(&painter, QRectF(QPointF(kGap, top), chart));
    int y = top + row;
    for (const std::size_t line : shown) {
        const int x = chart.width() + 2 * kGap;
        painter.save();
        painter.setPen(Qt::NoPen);
        painter.setBrush(colourOf(line));
        painter.translate(x + kMarkSize / 2, y);
        drawMark(painter, shapeOf(line), kMarkSize);
        painter.restore();
        painter.drawText(QPoint(x + row, y - metrics.height() / 2 + metrics.ascent()), lineName(line));
        y += row;
    }
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes.toStdString();
}

void frmHistoryPanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (m_history == nullptr) return;
    if (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange) return;
    showLines();
    showChart();
}

}  // namespace relay

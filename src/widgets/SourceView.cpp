// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/SourceView.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr int kMargin = 6;

// Draws a row: the number of its line, then the text.
class LineDelegate final : public QStyledItemDelegate {
  public:
    LineDelegate(const SourceLines& lines, QObject* parent) : QStyledItemDelegate(parent), m_lines(lines) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        const QString text = std::exchange(item.text, QString());
        const QStyle* const style = item.widget != nullptr ? item.widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
        const bool selected = item.state.testFlag(QStyle::State_Selected);
        const QPalette::ColorGroup group =
            item.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
        const auto pen = [&](QPalette::ColorRole usual) {
            painter->setPen(item.palette.color(group, selected ? QPalette::HighlightedText : usual));
        };
        painter->save();
        painter->setFont(item.font);
        QRect place = item.rect.adjusted(kMargin, 0, 0, 0);
        const int gutter = gutterWidth(item.fontMetrics);
        if (const std::size_t number = m_lines.numberAt(index.row()); number > 0) {
            pen(QPalette::PlaceholderText);
            painter->drawText(QRect(place.topLeft(), QSize(gutter, place.height())),
                              Qt::AlignRight | Qt::AlignVCenter, QString::number(number));
        }
        place.setLeft(place.left() + gutter + 2 * kMargin);
        pen(QPalette::Text);
        painter->drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
        painter->restore();
    }

    // The same for every row.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        const QFontMetrics& metrics = option.fontMetrics;
        const int text = static_cast<int>(m_lines.widestRow()) * metrics.horizontalAdvance(QLatin1Char('0'));
        return {gutterWidth(metrics) + text + 4 * kMargin, metrics.lineSpacing() + 2};
    }

  private:
    int gutterWidth(const QFontMetrics& metrics) const {
        const int digits = std::max(3, static_cast<int>(QString::number(m_lines.lineCount()).size()));
        return digits * metrics.horizontalAdvance(QLatin1Char('0'));
    }

    const SourceLines& m_lines;
};

}  // namespace

SourceView::SourceView(QWidget* parent) : QListView(parent) {
    useFixedFont();
    setUniformItemSizes(true);
    setSelectionMode(ExtendedSelection);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new LineDelegate(m_lines, this));
    setModel(&m_lines);
}

void SourceView::useFixedFont() {
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (QApplication::font().pointSizeF() > 0) fixed.setPointSizeF(QApplication::font().pointSizeF());
    if (fixed != font()) setFont(fixed);
}

void SourceView::setSource(std::string_view source) {
    m_lines.setSource(source);
    scrollToTop();
}

void SourceView::showLine(std::size_t line) {
    const int row = m_lines.rowOf(line);
    if (row < 0) return;
    const QModelIndex index = m_lines.index(row);
    setCurrentIndex(index);
    scrollTo(index, PositionAtCenter);
    horizontalScrollBar()->setValue(0);
}

std::size_t SourceView::currentLine() const {
    int row = currentIndex().row();
    while (row > 0 && m_lines.numberAt(row) == 0) --row;
    return row < 0 ? 0 : m_lines.numberAt(row);
}

void SourceView::copy() const {
    QList<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows()) rows << index.row();
    std::sort(rows.begin(), rows.end());
    QString text;
    for (const int row : rows) {
        if (!text.isEmpty() && m_lines.numberAt(row) > 0) text += QLatin1Char('\n');
        text += m_lines.index(row).data().toString();
    }
    if (!rows.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void SourceView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        copy();
    else
        QListView::keyPressEvent(event);
}

void SourceView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (m_lines.rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setFont(QApplication::font());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    constexpr int kSpace = 12;
    painter.drawText(viewport()->rect().adjusted(kSpace, kSpace, -kSpace, -kSpace),
                     Qt::AlignCenter | Qt::TextWordWrap, m_emptyHint);
}

void SourceView::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange) useFixedFont();
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ListView.h"

#include "core/Rows.h"
#include "core/ScreenText.h"
#include "widgets/IconTheme.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

namespace relay {

namespace {
constexpr int kIconSize = 16;
constexpr int kFrameMilliseconds = 33;

class RowDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize hint = QStyledItemDelegate::sizeHint(option, index);
        return {hint.width(), std::max(hint.height(), kIconSize + 6)};
    }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.column() != 0) return;
        const QString key = index.data(Rows::IconRole).toString();
        if (key.isEmpty()) return;
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = QSize(kIconSize, kIconSize);
        option->icon = themedIcon(fromScreen(key));
    }
};
}  // namespace

ListView::ListView(QWidget* parent) : QTreeView(parent) {
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setItemDelegate(new RowDelegate(this));
    setIconSize(QSize(kIconSize, kIconSize));
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(false);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    connect(header(), &QHeaderView::sectionClicked, this, &ListView::sortBy);
    m_frame.setSingleShot(true);
    m_frame.setInterval(kFrameMilliseconds);
    connect(&m_frame, &QTimer::timeout, this, [this] {
        if (std::exchange(m_repaintDue, false)) repaintSoon();
    });
}

void ListView::setRows(Rows* rows, const std::vector<int>& columnCharacters) {
    if (m_rows != nullptr) m_rows->disconnect(this);
    m_rows = rows;
    m_columnCharacters = columnCharacters;
    setModel(rows);
    // Connected behind the selection model, which forgets everything at a reset.
    connect(rows, &QAbstractItemModel::modelReset, this, &ListView::followReset);
    layOutColumns();
    followReset();
}

void ListView::layOutColumns() {
    if (m_rows == nullptr || m_rows->columnCount() == 0) return;
    header()->setSectionResizeMode(QHeaderView::Interactive);
    header()->setSectionResizeMode(m_stretchedColumn, QHeaderView::Stretch);
    int section = 0;
    for (const int characters : m_columnCharacters) {
        if (section == m_stretchedColumn) ++section;
        if (section == m_rows->columnCount()) return;
        header()->resizeSection(section++, fontMetrics().averageCharWidth() * (characters + 3));
    }
}

void ListView::setEmptyHint(const QString& hint) {
    m_emptyHint = hint;
    setAccessibleDescription(hint);
    viewport()->update();
}

void ListView::setSortable(bool on) {
    m_sortable = on;
    header()->setSectionsClickable(on);
}

void ListView::setStretchedColumn(int column) {
    m_stretchedColumn = column;
    layOutColumns();
}

void ListView::sortBy(int column) {
    if (m_rows == nullptr || !m_sortable) return;
    m_rows->sortByColumn(column);
    showOrder();
}

void ListView::showOrder() {
    const int column = m_rows->sortedColumn();
    header()->setSortIndicatorShown(column >= 0);
    if (column >= 0)
        header()->setSortIndicator(column,
                                   m_rows->sortedAscending() ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void ListView::followReset() {
    selectHighlighted();
    showOrder();
}

void ListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    if (m_rows == nullptr || m_following) return;
    const QScopedValueRollback<bool> following(m_following, true);
    // The selection is on the screen already; nobody else needs to hear of the flags.
    const QSignalBlocker quiet(m_rows);
    const auto mark = [this](const QItemSelection& ranges, bool on) {
        for (const QItemSelectionRange& range : ranges) {
            if (range.left() > 0) continue;
            for (int row = range.top(); row <= range.bottom(); ++row) m_rows->setHighlighted(row, on);
        }
    };
    mark(deselected, false);
    mark(selected, true);
}

void ListView::repaintSoon() {
    if (m_frame.isActive()) {
        m_repaintDue = true;
        return;
    }
    viewport()->update();
    m_frame.start();
}

// Thousands of flags may change one by one: one look at all of them follows. Rows are of one height and have
// no editors, so nothing else depends on a row's data.
void ListView::dataChanged(const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
    repaintSoon();
    if (!roles.isEmpty() && !roles.contains(Rows::HighlightRole)) return;
    if (m_following || std::exchange(m_flagsChanged, true)) return;
    QMetaObject::invokeMethod(this, &ListView::selectHighlighted, Qt::QueuedConnection);
}

void ListView::selectHighlighted() {
    m_flagsChanged = false;
    if (m_rows == nullptr || selectionModel() == nullptr) return;
    QItemSelection selection;
    const int lastColumn = m_rows->columnCount() - 1;
    for (int row = 0; row < m_rows->count(); ++row) {
        if (!m_rows->at(row).highlighted) continue;
        int last = row;
        while (last + 1 < m_rows->count() && m_rows->at(last + 1).highlighted) ++last;
        selection.select(m_rows->index(row, 0), m_rows->index(last, lastColumn));
        row = last;
    }
    const QScopedValueRollback<bool> following(m_following, true);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void ListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    // A list that gets the focus has a current row before the user has chosen one.
    const bool chosen = current.isValid() && selectionModel()->isSelected(current);
    if (chosen && hasFocus() && !m_mousePress && !m_following) Q_EMIT rowEntered(current.row());
}

void ListView::mousePressEvent(QMouseEvent* event) {
    {
        const QScopedValueRollback<bool> press(m_mousePress, true);
        QTreeView::mousePressEvent(event);
    }
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid() && event->button() == Qt::LeftButton) Q_EMIT rowClicked(index.row());
}

void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
    QTreeView::mouseDoubleClickEvent(event);
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid() && event->button() == Qt::LeftButton) Q_EMIT rowActivated(index.row());
}

void ListView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete) {
        Q_EMIT deletePressed();
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentIndex().isValid()) {
        Q_EMIT rowActivated(currentIndex().row());
        return;
    }
    QTreeView::keyPressEvent(event);
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.addActions(actions());
    if (!actions().isEmpty()) menu.addSeparator();
    if (m_rows != nullptr && m_sortable) {
        for (int column = 0; column < m_rows->columnCount(); ++column) {
            const QString title = toScreen(m_rows->columnTitle(column));
            menu.addAction(
                tr("Sort by %1").arg(QString(title).replace(QLatin1Char('&'), QStringLiteral("&&"))), this,
                [this, column] { sortBy(column); });
        }
    }
    if (menu.isEmpty()) return;
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid();
    menu.exec(byKey ? viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()) : event->globalPos());
}

void ListView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (m_emptyHint.isEmpty() || (m_rows != nullptr && !m_rows->empty())) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(16, 16, -16, -16),
                     static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap), m_emptyHint);
}

void ListView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange) layOutColumns();
}

}  // namespace relay

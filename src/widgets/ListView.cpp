// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ListView.h"

#include "core/Rows.h"
#include "core/ScreenText.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QtMath>

namespace relay {

namespace {
constexpr int kIconSize = 16;
constexpr int kNameCharacters = 18;    // of a name that can be read in the narrowest list
constexpr int kColumnPadding = 3;      // in characters
constexpr int kNarrowPadding = 2;      // in characters
constexpr double kNarrowColumn = 0.6;  // of a column's usual width
constexpr int kButtonGap = 12;         // between the hint of an empty list and its button
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
    header()->setTextElideMode(Qt::ElideRight);
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
    // Connected after the selection model, which is cleared by a reset.
    connect(rows, &QAbstractItemModel::modelReset, this, &ListView::followReset);
    connect(rows, &QAbstractItemModel::rowsRemoved, this, &ListView::followRows);
    layOutColumns();
    followReset();
}

void ListView::layOutColumns() {
    if (m_rows == nullptr || m_rows->columnCount() == 0) return;
    header()->setSectionResizeMode(QHeaderView::Interactive);
    header()->setSectionResizeMode(m_stretchedColumn, QHeaderView::Stretch);
    int usual = nameWidth();
    int narrow = nameWidth();
    for (std::size_t column = 0; column < m_columnCharacters.size(); ++column) {
        usual += columnWidth(column);
        narrow += narrowWidth(column);
    }
    if (!m_columnCharacters.empty())
        setMinimumWidth(narrow + 2 * frameWidth() + verticalScrollBar()->sizeHint().width());
    const bool fits = viewport()->width() >= usual;
    for (std::size_t column = 0; column < m_columnCharacters.size(); ++column) {
        const int place = static_cast<int>(column);
        const int section = place < m_stretchedColumn ? place : place + 1;
        if (section < m_rows->columnCount())
            header()->resizeSection(section, fits ? columnWidth(column) : narrowWidth(column));
    }
}

int ListView::nameWidth() const {
    return fontMetrics().averageCharWidth() * (kNameCharacters + kNarrowPadding) + kIconSize;
}

int ListView::columnWidth(std::size_t column) const {
    return fontMetrics().averageCharWidth() * (m_columnCharacters[column] + kColumnPadding);
}

int ListView::narrowWidth(std::size_t column) const {
    return fontMetrics().averageCharWidth() *
           (qCeil(m_columnCharacters[column] * kNarrowColumn) + kNarrowPadding);
}

void ListView::setEmptyHint(const QString& hint) {
    m_emptyHint = hint;
    describe();
    viewport()->update();
}

void ListView::describe() {
    const bool hinting = !m_emptyHint.isEmpty() && accessibleDescription() == m_emptyHint;
    const bool empty = m_rows == nullptr || m_rows->empty();
    if (empty && !hinting) {
        m_description = accessibleDescription();
        setAccessibleDescription(m_emptyHint);
    } else if (!empty && hinting) {
        setAccessibleDescription(m_description);
    }
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
    layOutColumns();
    selectHighlighted();
    showOrder();
    followRows();
}

void ListView::rowsInserted(const QModelIndex& parent, int start, int end) {
    QTreeView::rowsInserted(parent, start, end);
    followRows();
}

void ListView::followRows() {
    describe();
    placeEmptyButton();
    tellSelection();
}

void ListView::tellSelection() {
    Q_EMIT rowsSelected(selectionModel() != nullptr && selectionModel()->hasSelection());
    Q_EMIT changed();
}

void ListView::setEmptyAction(QAction& action) {
    m_emptyButton = new QPushButton(action.icon(), action.text(), parentWidget());
    m_emptyButton->setObjectName(action.objectName() + QStringLiteral("Button"));
    const auto explain = [this, &action] { m_emptyButton->setToolTip(action.toolTip()); };
    connect(&action, &QAction::changed, m_emptyButton, explain);
    explain();
    setTabOrder(this, m_emptyButton);
    connect(m_emptyButton, &QPushButton::clicked, &action, &QAction::trigger);
    placeEmptyButton();
}

// The hint and the button below it are centred together.
QRect ListView::hintPlace() const {
    constexpr int kMargin = 16;
    const QRect area = viewport()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const int button = m_emptyButton == nullptr ? 0 : m_emptyButton->sizeHint().height() + kButtonGap;
    const int height =
        fontMetrics()
            .boundingRect(area, static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap, m_emptyHint)
            .height();
    return {area.left(), area.top() + std::max(0, (area.height() - height - button) / 2), area.width(),
            height};
}

void ListView::placeEmptyButton() {
    if (m_emptyButton == nullptr) return;
    const QSize size = m_emptyButton->sizeHint();
    const QRect hint = hintPlace();
    const QPoint place(hint.center().x() - size.width() / 2, hint.bottom() + kButtonGap);
    m_emptyButton->setGeometry(QRect(viewport()->mapTo(parentWidget(), place), size));
    m_emptyButton->raise();
    const bool hadFocus = m_emptyButton->hasFocus();
    m_emptyButton->setVisible(m_rows == nullptr || m_rows->empty());
    if (hadFocus && m_emptyButton->isHidden()) setFocus(Qt::OtherFocusReason);
}

void ListView::takeFocus() {
    const bool button = m_emptyButton != nullptr && m_emptyButton->isVisible();
    QWidget* const target = button ? static_cast<QWidget*>(m_emptyButton) : this;
    target->setFocus(Qt::ShortcutFocusReason);
    showFocus(*target);
}

void ListView::moveEvent(QMoveEvent* event) {
    QTreeView::moveEvent(event);
    placeEmptyButton();
}

void ListView::resizeEvent(QResizeEvent* event) {
    layOutColumns();
    QTreeView::resizeEvent(event);
    placeEmptyButton();
}

void ListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    if (m_rows == nullptr) return;
    if (m_following) {
        tellSelection();
        return;
    }
    const QScopedValueRollback<bool> following(m_following, true);
    // The selection is already on the screen, so the flags need no signals.
    const QSignalBlocker quiet(m_rows);
    const auto mark = [this](const QItemSelection& ranges, bool on) {
        for (const QItemSelectionRange& range : ranges) {
            if (range.left() > 0) continue;
            for (int row = range.top(); row <= range.bottom(); ++row) m_rows->setHighlighted(row, on);
        }
    };
    mark(deselected, false);
    mark(selected, true);
    tellSelection();
}

void ListView::repaintSoon() {
    if (m_frame.isActive()) {
        m_repaintDue = true;
        return;
    }
    viewport()->update();
    m_frame.start();
}

// Thousands of flags may change one by one: they are followed once. Rows have one height and no editors, so
// nothing else depends on a row's data.
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
            static const QRegularExpression count(QStringLiteral("\\s*\\(\\d+\\)$"));
            const QString title = toScreen(m_rows->columnTitle(column)).remove(count);
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
    painter.drawText(hintPlace(), static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap),
                     m_emptyHint);
}

void ListView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() != QEvent::FontChange) return;
    layOutColumns();
    placeEmptyButton();
}

void needSelection(ListView& list, QAbstractButton& button, const QString& does, const QString& whyDisabled) {
    const auto follow = [&button, does, whyDisabled](bool any) {
        button.setEnabled(any);
        button.setToolTip(any ? does : does + QStringLiteral(". ") + whyDisabled);
    };
    QObject::connect(&list, &ListView::rowsSelected, &button, follow);
    follow(list.selectionModel() != nullptr && list.selectionModel()->hasSelection());
}

}  // namespace relay

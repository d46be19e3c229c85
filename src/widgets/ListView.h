// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QTimer>
#include <QTreeView>

#include <vector>

class QAbstractButton;
class QAction;
class QPushButton;

namespace relay {

class ListView;
class Rows;

// Enables the button while a row of the list is selected. Its tool tip says what it does and, while disabled,
// why.
void needSelection(ListView& list, QAbstractButton& button, const QString& does, const QString& whyDisabled);

// The view of every list of the program. It shows Rows directly, without a copy. A click on a column title
// sorts and then reverses; icons are found by key; the selection and the rows' highlight flags follow each
// other; an empty list shows a hint. Everything the mouse can do works by keyboard too, sorting through the
// context menu.
class ListView final : public QTreeView {
    Q_OBJECT
    Q_PROPERTY(QString emptyHint READ emptyHint WRITE setEmptyHint)
    Q_PROPERTY(bool sortable READ isSortable WRITE setSortable)
    Q_PROPERTY(int stretchedColumn READ stretchedColumn WRITE setStretchedColumn)
  public:
    explicit ListView(QWidget* parent = nullptr);

    // Shows the rows, which must outlive the view. Widths are in characters, from the left, without the
    // stretched column, which takes the rest. If that leaves less than 18 characters of a name, the other
    // columns get narrower.
    void setRows(Rows* rows, const std::vector<int>& columnCharacters = {});
    Rows* rows() const noexcept { return m_rows; }

    QString emptyHint() const { return m_emptyHint; }
    void setEmptyHint(const QString& hint);
    // Off where the order of the rows has a meaning.
    bool isSortable() const noexcept { return m_sortable; }
    void setSortable(bool on);
    int stretchedColumn() const noexcept { return m_stretchedColumn; }
    void setStretchedColumn(int column);

    // Shows a button for the action below the hint of the empty list. The action outlives the list. The
    // button belongs to the list's parent, since screen readers find only rows inside a list.
    void setEmptyAction(QAction& action);
    // Gives the keyboard to the list, or to the button of the empty list.
    void takeFocus();

    // Repaints at most once per frame, however many rows change.
    void dataChanged(const QModelIndex& from, const QModelIndex& to, const QList<int>& roles = {}) override;

  Q_SIGNALS:
    void rowClicked(int row);    // by mouse
    void rowEntered(int row);    // reached with the keys
    void rowActivated(int row);  // double click, or Return
    void deletePressed();
    void rowsSelected(bool any);  // after each change of the selection
    void changed();               // rows, their texts or the selection

  protected:
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;

  private:
    // Of column 0, with its picture.
    int nameWidth() const;
    int columnWidth(std::size_t column) const;
    int narrowWidth(std::size_t column) const;
    void sortBy(int column);
    void showOrder();
    void selectHighlighted();
    void followReset();
    void layOutColumns();
    void followRows();
    void tellSelection();
    QRect hintPlace() const;
    void placeEmptyButton();
    // Describes an empty list to screen readers by its hint, a filled one by its own description.
    void describe();
    void repaintSoon();

    Rows* m_rows = nullptr;
    std::vector<int> m_columnCharacters;
    QString m_emptyHint;
    QPushButton* m_emptyButton = nullptr;
    QString m_description;      // of the filled list
    QTimer m_frame;             // since the last repaint for changed rows
    bool m_repaintDue = false;  // when the frame is over
    bool m_sortable = true;
    int m_stretchedColumn = 0;
    bool m_following = false;     // flags or selection are being changed to follow the other
    bool m_flagsChanged = false;  // the selection will follow the flags in the next turn of the event loop
    bool m_mousePress = false;
};

}  // namespace relay

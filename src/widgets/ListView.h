// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QTimer>
#include <QTreeView>

#include <vector>

namespace relay {

class Rows;

// How every list of the program looks and behaves on the screen: Rows shown as they are, without a copy in
// between. A click on a column title sorts and flips; icons come by key; the selection and the rows'
// highlight flags are kept the same, whoever changes them; an empty list says what to do. Everything the
// mouse can do here is on the keyboard too, sorting through the context menu.
class ListView final : public QTreeView {
    Q_OBJECT
    Q_PROPERTY(QString emptyHint READ emptyHint WRITE setEmptyHint)
    Q_PROPERTY(bool sortable READ isSortable WRITE setSortable)
    Q_PROPERTY(int stretchedColumn READ stretchedColumn WRITE setStretchedColumn)
  public:
    explicit ListView(QWidget* parent = nullptr);

    // Shows the rows, which must outlive the view. Column widths are in characters, from the left, without
    // the stretched column, which takes the rest.
    void setRows(Rows* rows, const std::vector<int>& columnCharacters = {});
    Rows* rows() const noexcept { return m_rows; }

    QString emptyHint() const { return m_emptyHint; }
    void setEmptyHint(const QString& hint);
    // Off where the places of the rows mean something.
    bool isSortable() const noexcept { return m_sortable; }
    void setSortable(bool on);
    int stretchedColumn() const noexcept { return m_stretchedColumn; }
    void setStretchedColumn(int column);

    // At most one repaint a frame, however many rows change.
    void dataChanged(const QModelIndex& from, const QModelIndex& to, const QList<int>& roles = {}) override;

  Q_SIGNALS:
    void rowClicked(int row);    // by mouse
    void rowEntered(int row);    // by moving there with the keys
    void rowActivated(int row);  // double click, or Return
    void deletePressed();

  protected:
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void sortBy(int column);
    void showOrder();
    void selectHighlighted();
    void followReset();
    void layOutColumns();
    void repaintSoon();

    Rows* m_rows = nullptr;
    std::vector<int> m_columnCharacters;
    QString m_emptyHint;
    QTimer m_frame;               // since the last repaint for changed rows
    bool m_repaintDue = false;    // when the frame is over
    bool m_sortable = true;
    int m_stretchedColumn = 0;
    bool m_following = false;     // a change of flags or selection that is an echo of the other
    bool m_flagsChanged = false;  // the selection is to follow the flags at the next turn of the event loop
    bool m_mousePress = false;
};

}  // namespace relay

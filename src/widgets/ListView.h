// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
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
  public:
    explicit ListView(QWidget* parent = nullptr);

    // Shows the rows, which must outlive the view. Column widths are in characters for columns 1 and up;
    // column 0 takes the rest. Where that leaves too little of the names, the other columns give way.
    void setRows(Rows* rows, const std::vector<int>& columnCharacters = {});
    Rows* rows() const noexcept { return m_rows; }

    QString emptyHint() const { return m_emptyHint; }
    void setEmptyHint(const QString& hint);

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
    void resizeEvent(QResizeEvent* event) override;

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
    // An empty list says its hint to screen readers too; a filled one its own description.
    void describe();

    Rows* m_rows = nullptr;
    std::vector<int> m_columnCharacters;
    QString m_emptyHint;
    QString m_description;        // of the filled list
    bool m_following = false;     // a change of flags or selection that is an echo of the other
    bool m_flagsChanged = false;  // the selection is to follow the flags at the next turn of the event loop
    bool m_mousePress = false;
};

}  // namespace relay

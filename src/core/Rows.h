// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

// One row of a keyed list.
struct Row final {
    std::string key;   // unique in its list without regard to case; empty: a row without a key
    std::string text;  // column 0
    std::vector<std::string> subItems;  // columns 1 and up
    std::string icon;                   // icon key; logic reads it back, views turn it into a picture
    std::string tag;                    // what the row stands for (a file, a link); never shown
    bool checked = false;
    bool highlighted = false;
};

// Every list of the program: keyed rows in order, with column titles. It needs no Widgets; a view shows it as
// it is, sorted by itself or through its own sort(). Bytes go to the screen through ScreenText. Row numbers
// count from 0. Finding a key does not depend on the number of rows; removing many rows at once is linear.
class Rows final : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Role { IconRole = Qt::UserRole + 1, KeyRole, TagRole, HighlightRole };

    explicit Rows(QObject* parent = nullptr);

    void setColumns(std::vector<std::string> titles);
    void setColumnTitle(int column, std::string title);
    const std::string& columnTitle(int column) const;
    // Rows with a check box in column 0.
    void setCheckable(bool on) { m_checkable = on; }

    int count() const noexcept { return static_cast<int>(m_rows.size()); }
    bool empty() const noexcept { return m_rows.empty(); }
    const Row& at(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }
    // -1 when no row has the key.
    int indexOf(std::string_view key) const;
    bool contains(std::string_view key) const { return indexOf(key) >= 0; }

    // Throws Failure 457 "This key is already associated with an element of this collection" when taken.
    void add(Row row);
    void insert(int position, Row row);
    // False, and nothing happens, when the key is taken: duplicates are kept out in silence.
    bool tryAdd(Row row);
    void removeAt(int row);
    bool removeKey(std::string_view key);
    // Removes every row the test names, in one pass; gives their number.
    int removeIf(const std::function<bool(const Row&)>& test);
    void clear();

    void setText(int row, std::string text);
    void setSubItem(int row, int column, std::string text);  // column 1 and up
    void setIcon(int row, std::string icon);
    void setTag(int row, std::string tag);
    void setChecked(int row, bool on);
    void setHighlighted(int row, bool on);
    void setKey(int row, std::string key);  // throws Failure 457 when taken
    void clearHighlights();
    // First highlighted row, or -1.
    int firstHighlighted() const;

    // Many changes, one repaint: between the two calls views are told nothing; the last call resets them.
    void beginBatch();
    void endBatch();

    // A click on a column title: sorts by it, ascending first, and flips at each further click on it.
    void sortByColumn(int column);
    int sortedColumn() const noexcept { return m_sortedColumn; }
    bool sortedAscending() const noexcept { return m_ascending; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    void sort(int column, Qt::SortOrder order) override;

  Q_SIGNALS:
    // The user ticked or cleared a box in a view (not raised by setChecked).
    void checkToggled(int row, bool on);

  private:
    void changed(int row);
    void reindex() const;

    std::vector<Row> m_rows;
    std::vector<std::string> m_titles;
    mutable std::unordered_map<std::string, int> m_places;  // lower-cased key to row
    mutable bool m_placesStale = false;
    bool m_checkable = false;
    int m_batch = 0;
    int m_sortedColumn = -1;
    bool m_ascending = true;
};

// Keeps a batch open for the length of a block.
class RowsBatch final {
  public:
    explicit RowsBatch(Rows& rows) : m_rows(rows) { m_rows.beginBatch(); }
    ~RowsBatch() { m_rows.endBatch(); }
    RowsBatch(const RowsBatch&) = delete;
    RowsBatch& operator=(const RowsBatch&) = delete;

  private:
    Rows& m_rows;
};

}  // namespace relay

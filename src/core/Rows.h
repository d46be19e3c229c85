// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/KeySet.h"
#include "core/Row.h"

#include <QAbstractTableModel>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// Every list of the program: keyed rows in order, with column titles. It needs no Widgets; a view shows it as
// it is, sorted by itself or through its own sort(). Bytes go to the screen through ScreenText. Row numbers
// count from 0; one that does not exist throws std::out_of_range. Finding a key does not depend on the number
// of rows; removing many rows at once is linear. After a row was taken out of the middle, the next indexOf of
// a key behind it numbers the rows anew: loops that remove belong into removeIf.
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
    RowView at(int row) const { return packed(row).view(); }
    // -1 when no row has the key.
    int indexOf(std::string_view key) const;
    bool contains(std::string_view key) const;

    // Throws Failure 457 "This key is already associated with an element of this collection" when taken.
    void add(const Row& row);
    void insert(int position, const Row& row);
    // False, and nothing happens, when the key is taken: duplicates are kept out in silence.
    bool tryAdd(const Row& row);
    void removeAt(int row);
    bool removeKey(std::string_view key);
    // Removes every row the test names, in one pass; gives their number.
    int removeIf(const std::function<bool(const RowView&)>& test);
    // Empties the list, which is then in no order: the next click on a column title sorts ascending.
    void clear();
    // Makes room for so many rows in all, ahead of adding them.
    void reserve(int rows);
    // A hint that a row with the key will be added a little later.
    void expect(std::string_view key) const noexcept { m_keys.expect(key); }

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
    bool sortedAscending() const noexcept { return m_ascending; }
    int sortedColumn() const noexcept { return m_sortedColumn; }  // -1: in no order

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // Stable, and without regard to case.
    void sort(int column, Qt::SortOrder order) override;

  Q_SIGNALS:
    // The user ticked or cleared a box in a view (not raised by setChecked).
    void checkToggled(int row, bool on);

  private:
    struct KeyOf final {
        std::string_view operator()(const PackedHead& row) const noexcept { return row.key(); }
    };

    const PackedRow& packed(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }
    PackedRow& packed(int row) { return m_rows.at(static_cast<std::size_t>(row)); }
    template <typename Edit>
    void change(int row, Edit&& edit);
    void changed(int row);
    bool told() const noexcept { return m_batch == 0; }

    std::vector<PackedRow> m_rows;
    std::vector<std::string> m_titles;
    KeySet<const PackedHead, KeyOf> m_keys;
    mutable std::size_t m_numberedTo = 0;  // rows before this one know their place
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

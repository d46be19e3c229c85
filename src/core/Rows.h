// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/KeySet.h"
#include "core/Row.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

class Rows;

// Keeps a batch of changes to a list open for the length of a block.
class RowsBatch final {
  public:
    explicit RowsBatch(Rows& rows);
    ~RowsBatch();
    RowsBatch(const RowsBatch&) = delete;
    RowsBatch& operator=(const RowsBatch&) = delete;

  private:
    Rows& m_rows;
};

// Every list of the program: keyed rows in order, with column titles. It needs no Widgets; a view shows it as
// it is, sorted by itself or through its own sort(). Bytes go to the screen through ScreenText. Row numbers
// count from 0; one that does not exist throws std::out_of_range. Finding a key does not depend on the number
// of rows; removing many rows at once is linear. The first search for a key after rows changed their places
// goes through all rows: loops that remove belong into removeIf.
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
    // Columns that hold numbers: they sort as such and stand at the right.
    void setNumberColumns(std::vector<int> columns) { m_numberColumns = std::move(columns); }

    int count() const noexcept { return static_cast<int>(m_rows.size()); }
    bool empty() const noexcept { return m_rows.empty(); }
    RowView at(int row) const { return entry(row).view(); }
    // -1 when no row has the key.
    int indexOf(std::string_view key) const;
    bool contains(std::string_view key) const;

    // Throws Failure 457 "This key is already associated with an element of this collection" when taken.
    void add(Row row) { add(ownEntry(std::move(row))); }
    void add(const RowSource& source, const void* record) { add(Entry(source, record)); }
    // False, and nothing happens, when the key is taken: duplicates are kept out in silence.
    bool tryAdd(Row row);
    // Adds a row for each of the records, whose keys must all be new to the list.
    template <typename Records>
    void addAll(const RowSource& source, const Records& records) {
        const RowsBatch batch(*this);
        m_rows.reserve(m_rows.size() + records.count());
        for (const auto& record : records) m_rows.emplace_back(source, &record);
    }
    // Removes every row the test names, in one pass; gives their number.
    int removeIf(const std::function<bool(const RowView&)>& test);
    // Empties the list, which is then in no order: the next click on a column title sorts ascending.
    void clear();

    void setSubItem(int row, int column, std::string text);  // column 1 and up
    void setIcon(int row, std::string icon);
    void setTag(int row, std::string tag);
    void setChecked(int row, bool on);
    void setHighlighted(int row, bool on);
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
    // A row: the record it shows and what the list itself knows of it.
    struct Entry final {
        struct Release final {
            const RowSource* source;
            void operator()(const void* record) const noexcept { source->release(record); }
        };

        Entry(const RowSource& source, const void* shown) : record(shown, Release{&source}) {}

        const RowSource& source() const noexcept { return *record.get_deleter().source; }
        std::string_view key() const { return source().key(record.get()); }
        std::string_view text(std::size_t column) const;  // empty behind the last column
        RowView view() const;

        std::unique_ptr<const void, Release> record;
        bool checked = false;
        bool highlighted = false;
    };

    static Entry ownEntry(Row row);
    const Entry& entry(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }
    Entry& entry(int row) { return m_rows.at(static_cast<std::size_t>(row)); }
    void add(Entry row);
    template <typename Edit>
    void change(int row, Edit&& edit);
    auto keys() const {
        return [this](std::uint32_t row) { return m_rows[row].key(); };
    }
    void findKeys() const;
    void forgetKeys() noexcept;
    void changed(int row, int role);  // the role tells flags from texts
    bool holdsNumbers(int column) const;
    bool told() const noexcept { return m_batch == 0; }

    std::vector<Entry> m_rows;
    std::vector<std::string> m_titles;
    mutable KeySet m_keys;  // of the first m_keyed rows, by their places
    mutable std::size_t m_keyed = 0;
    std::vector<int> m_numberColumns;
    bool m_checkable = false;
    int m_batch = 0;
    int m_sortedColumn = -1;
    bool m_ascending = true;
};

}  // namespace relay

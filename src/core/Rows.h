// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/KeySet.h"
#include "core/Row.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

class Rows;

// How a list is sorted, beyond the texts of its columns. Functions may be empty.
struct RowOrder final {
    // Rows of a lower rank stand above the others, whichever way the list is sorted.
    std::function<int(const RowView& row)> rank;
    // What a column sorts by instead of its text; nothing for columns of texts.
    std::function<std::optional<double>(const RowView& row, int column)> number;
};

// Keeps a batch of changes open for the duration of a block.
class RowsBatch final {
  public:
    explicit RowsBatch(Rows& rows);
    ~RowsBatch();
    RowsBatch(const RowsBatch&) = delete;
    RowsBatch& operator=(const RowsBatch&) = delete;

  private:
    Rows& m_rows;
};

// A list of keyed rows with column titles; every list of the program is one. It needs no Widgets; a view
// shows it as it is or sorted. Bytes go to the screen through ScreenText. Row numbers count from 0; one that
// does not exist throws std::out_of_range. The cost of finding a key does not depend on the number of rows,
// but the first search after rows have moved goes through all of them: to remove rows in a loop, use
// removeIf.
class Rows final : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Role { IconRole = Qt::UserRole + 1, KeyRole, TagRole, HighlightRole };

    explicit Rows(QObject* parent = nullptr);

    void setColumns(std::vector<std::string> titles);
    void setColumnTitle(int column, std::string title);
    const std::string& columnTitle(int column) const;
    // Whether column 0 has check boxes.
    void setCheckable(bool on) { m_checkable = on; }
    // Columns of numbers: sorted as numbers and aligned to the right.
    void setNumberColumns(std::vector<int> columns) { m_numberColumns = std::move(columns); }
    void setOrder(RowOrder order) { m_order = std::move(order); }

    int count() const noexcept { return static_cast<int>(m_rows.size()); }
    bool empty() const noexcept { return m_rows.empty(); }
    RowView at(int row) const { return entry(row).view(); }
    // -1 when no row has the key.
    int indexOf(std::string_view key) const;
    bool contains(std::string_view key) const;

    // Throws Failure 457 "This key is already associated with an element of this collection" when the key is
    // taken.
    void add(const Row& row) { add(ownEntry(row)); }
    void add(const RowSource& source, const void* record) { add(Entry(source, record)); }
    // Does nothing and returns false when the key is taken.
    bool tryAdd(const Row& row);
    // Adds a row for each record; their keys must all be new to the list.
    template <typename Records>
    void addAll(const RowSource& source, const Records& records) {
        const RowsBatch batch(*this);
        m_rows.reserve(m_rows.size() + records.count());
        for (const auto& record : records) m_rows.emplace_back(source, &record);
    }
    // Removes every row that passes the test, in one pass; returns how many.
    int removeIf(const std::function<bool(const RowView&)>& test);
    // Empties the list and forgets its sort order: the next click on a column title sorts ascending.
    void clear();

    void setSubItem(int row, int column, std::string text);  // column 1 and up
    void setIcon(int row, std::string icon);
    void setTag(int row, std::string tag);
    void setChecked(int row, bool on);
    void setHighlighted(int row, bool on);
    void clearHighlights();
    // First highlighted row, or -1.
    int firstHighlighted() const;

    // Between the two calls views get no signals; the last endBatch resets them once.
    void beginBatch();
    void endBatch();

    // A click on a column title: sorts by that column, ascending first, and reverses with each further click.
    void sortByColumn(int column);
    bool sortedAscending() const noexcept { return m_ascending; }
    int sortedColumn() const noexcept { return m_sortedColumn; }  // -1: unsorted

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // Stable, without regard to case.
    void sort(int column, Qt::SortOrder order) override;

  Q_SIGNALS:
    // The user ticked or cleared a check box (setChecked does not emit this).
    void checkToggled(int row, bool on);

  private:
    // A row: its record and the list's own state for it.
    struct Entry final {
        struct Release final {
            const RowSource* source;
            void operator()(const void* record) const noexcept { source->release(record); }
        };

        Entry(const RowSource& source, const void* shown) : record(shown, Release{&source}) {}

        const RowSource& source() const noexcept { return *record.get_deleter().source; }
        std::string_view key() const { return source().key(record.get()); }
        std::string_view text(std::size_t column) const;  // empty beyond the last column
        RowView view() const;

        std::unique_ptr<const void, Release> record;
        bool checked = false;
        bool highlighted = false;
    };

    static Entry ownEntry(const Row& row);
    const Entry& entry(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }
    Entry& entry(int row) { return m_rows.at(static_cast<std::size_t>(row)); }
    void add(Entry row);
    // Registers the key for the row that append() adds next; false when the key is taken.
    bool takeKey(std::string_view key);
    void append(Entry row);
    template <typename Edit>
    void change(int row, Edit&& edit);
    auto keys() const {
        return [this](std::uint32_t row) { return m_rows[row].key(); };
    }
    void findKeys() const;
    void forgetKeys() noexcept;
    // The role tells a change of the highlight flag from other changes.
    void changed(int row, int role);
    bool isNumberColumn(int column) const;
    // What the rows sort by, where that is a number.
    std::vector<double> sortNumbers(int column) const;
    void liftByRank(std::vector<std::size_t>& places) const;
    bool notifies() const noexcept { return m_batch == 0; }

    std::vector<Entry> m_rows;
    std::vector<std::string> m_titles;
    mutable KeySet m_keys;  // of the first m_keyed rows, by row number
    mutable std::size_t m_keyed = 0;
    std::vector<int> m_numberColumns;
    RowOrder m_order;
    bool m_checkable = false;
    int m_batch = 0;
    int m_sortedColumn = -1;
    bool m_ascending = true;
};

}  // namespace relay

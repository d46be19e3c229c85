// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Rows.h"

#include "core/Failure.h"
#include "core/ScreenText.h"

#include <algorithm>

namespace relay {

namespace {

std::string_view columnText(const RowView& row, int column) {
    if (column == 0) return row.text;
    const std::size_t item = static_cast<std::size_t>(column) - 1;
    return item < row.subItems.size() ? std::string_view(row.subItems[item]) : std::string_view();
}

[[noreturn]] void failTakenKey() {
    throw Failure("This key is already associated with an element of this collection", 457);
}

}  // namespace

Rows::Rows(QObject* parent) : QAbstractTableModel(parent) {}

void Rows::setColumns(std::vector<std::string> titles) {
    beginBatch();
    m_titles = std::move(titles);
    endBatch();
}

void Rows::setColumnTitle(int column, std::string title) {
    m_titles.at(static_cast<std::size_t>(column)) = std::move(title);
    if (told()) Q_EMIT headerDataChanged(Qt::Horizontal, column, column);
}

const std::string& Rows::columnTitle(int column) const {
    return m_titles.at(static_cast<std::size_t>(column));
}

int Rows::indexOf(std::string_view key) const {
    if (key.empty()) return -1;
    const PackedHead* const found = m_keys.find(key);
    if (found == nullptr) return -1;
    const std::size_t place = found->place;
    if (place < m_numberedTo && m_rows[place].head() == found) return static_cast<int>(place);
    for (; m_numberedTo < m_rows.size(); ++m_numberedTo)
        m_rows[m_numberedTo].head()->place = static_cast<std::uint32_t>(m_numberedTo);
    return static_cast<int>(found->place);
}

bool Rows::contains(std::string_view key) const {
    return !key.empty() && m_keys.find(key) != nullptr;
}

void Rows::add(const Row& row) {
    insert(count(), row);
}

void Rows::insert(int position, const Row& row) {
    const std::size_t place = static_cast<std::size_t>(std::clamp(position, 0, count()));
    PackedRow packedRow(row);
    packedRow->place = static_cast<std::uint32_t>(place);
    // Room first, so that nothing can fail once the key is in.
    if (m_rows.size() == m_rows.capacity()) m_rows.reserve(std::max<std::size_t>(16, m_rows.size() * 2));
    if (!row.key.empty() && !m_keys.insert(packedRow.head())) failTakenKey();
    if (told()) beginInsertRows({}, static_cast<int>(place), static_cast<int>(place));
    const bool numbered = place == m_rows.size() && place == m_numberedTo;
    m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(place), std::move(packedRow));
    m_numberedTo = numbered ? m_rows.size() : std::min(m_numberedTo, place);
    if (told()) endInsertRows();
}

bool Rows::tryAdd(const Row& row) {
    if (contains(row.key)) return false;
    add(row);
    return true;
}

void Rows::removeAt(int row) {
    const PackedRow& gone = packed(row);
    if (told()) beginRemoveRows({}, row, row);
    if (gone->keyLength > 0) m_keys.erase(gone.head());
    m_rows.erase(m_rows.begin() + row);
    m_numberedTo = std::min(m_numberedTo, static_cast<std::size_t>(row));
    if (told()) endRemoveRows();
}

bool Rows::removeKey(std::string_view key) {
    const int row = indexOf(key);
    if (row >= 0) removeAt(row);
    return row >= 0;
}

int Rows::removeIf(const std::function<bool(const RowView&)>& test) {
    // The tests come first, all of them: they may throw, and they may look at the list.
    std::vector<bool> named(m_rows.size());
    for (std::size_t i = 0; i < m_rows.size(); ++i) named[i] = test(m_rows[i].view());
    const auto first = std::find(named.begin(), named.end(), true);
    if (first == named.end()) return 0;
    beginBatch();
    std::size_t kept = static_cast<std::size_t>(first - named.begin());
    m_numberedTo = std::min(m_numberedTo, kept);
    for (std::size_t i = kept; i < m_rows.size(); ++i) {
        if (!named[i])
            m_rows[kept++] = std::move(m_rows[i]);
        else if (m_rows[i]->keyLength > 0)
            m_keys.erase(m_rows[i].head());
    }
    const int removed = static_cast<int>(m_rows.size() - kept);
    m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(kept), m_rows.end());
    endBatch();
    return removed;
}

void Rows::clear() {
    if (m_rows.empty() && m_sortedColumn < 0) return;
    beginBatch();
    m_sortedColumn = -1;
    m_keys.clear();
    m_rows.clear();
    m_numberedTo = 0;
    endBatch();
}

void Rows::reserve(int rows) {
    m_rows.reserve(static_cast<std::size_t>(rows));
    m_keys.reserve(static_cast<std::size_t>(rows));
}

template <typename Edit>
void Rows::change(int row, Edit&& edit) {
    PackedRow& old = packed(row);
    Row edited = old.view();
    edit(edited);
    PackedRow fresh(edited);
    fresh->place = old->place;
    if (old->keyLength > 0) m_keys.erase(old.head());
    old = std::move(fresh);
    if (old->keyLength > 0) m_keys.insert(old.head());
    changed(row);
}

void Rows::setText(int row, std::string text) {
    change(row, [&](Row& edited) { edited.text = std::move(text); });
}

void Rows::setSubItem(int row, int column, std::string text) {
    if (column < 1) throw std::out_of_range("no such column");
    const std::size_t item = static_cast<std::size_t>(column) - 1;
    change(row, [&](Row& edited) {
        if (edited.subItems.size() <= item) edited.subItems.resize(item + 1);
        edited.subItems[item] = std::move(text);
    });
}

void Rows::setIcon(int row, std::string icon) {
    change(row, [&](Row& edited) { edited.icon = std::move(icon); });
}

void Rows::setTag(int row, std::string tag) {
    change(row, [&](Row& edited) { edited.tag = std::move(tag); });
}

void Rows::setChecked(int row, bool on) {
    packed(row)->checked = on;
    changed(row);
}

void Rows::setHighlighted(int row, bool on) {
    packed(row)->highlighted = on;
    changed(row);
}

void Rows::setKey(int row, std::string key) {
    if (!equalsNoCase(packed(row)->key(), key) && contains(key)) failTakenKey();
    change(row, [&](Row& edited) { edited.key = std::move(key); });
}

void Rows::clearHighlights() {
    for (int row = 0; row < count(); ++row)
        if (packed(row)->highlighted) setHighlighted(row, false);
}

int Rows::firstHighlighted() const {
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [](const PackedRow& row) { return row->highlighted; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

void Rows::beginBatch() {
    if (m_batch++ == 0) beginResetModel();
}

void Rows::endBatch() {
    if (--m_batch == 0) endResetModel();
}

void Rows::sortByColumn(int column) {
    const bool flips = column == m_sortedColumn && m_ascending;
    sort(column, flips ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void Rows::sort(int column, Qt::SortOrder order) {
    if (column < 0) return;  // a view's way of saying "unsorted"
    m_sortedColumn = column;
    m_ascending = order == Qt::AscendingOrder;
    if (told()) Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<const PackedHead*> rowsBefore;
    for (const QModelIndex& index : before) rowsBefore.push_back(packed(index.row()).head());

    const auto precedes = [&](const PackedRow& a, const PackedRow& b) {
        const int compared = compareNoCase(columnText(a.view(), column), columnText(b.view(), column));
        return m_ascending ? compared < 0 : compared > 0;
    };
    std::stable_sort(m_rows.begin(), m_rows.end(), precedes);
    for (m_numberedTo = 0; m_numberedTo < m_rows.size(); ++m_numberedTo)
        m_rows[m_numberedTo]->place = static_cast<std::uint32_t>(m_numberedTo);

    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const std::uint32_t place = rowsBefore[static_cast<std::size_t>(i)]->place;
        after.append(index(static_cast<int>(place), before[i].column()));
    }
    changePersistentIndexList(before, after);
    if (told()) Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

int Rows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

int Rows::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(1, static_cast<int>(m_titles.size()));
}

QVariant Rows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
    const RowView row = at(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return toScreen(columnText(row, index.column()));
        case Qt::CheckStateRole:
            if (!m_checkable || index.column() != 0) return {};
            return row.checked ? Qt::Checked : Qt::Unchecked;
        case IconRole:
            return toScreen(row.icon);
        case KeyRole:
            return toScreen(row.key);
        case TagRole:
            return toScreen(row.tag);
        case HighlightRole:
            return row.highlighted;
        default:
            return {};
    }
}

bool Rows::setData(const QModelIndex& index, const QVariant& value, int role) {
    const bool box = m_checkable && role == Qt::CheckStateRole && index.column() == 0;
    if (!box || !checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
    const bool on = value.toInt() == Qt::Checked;
    setChecked(index.row(), on);
    Q_EMIT checkToggled(index.row(), on);
    return true;
}

QVariant Rows::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    if (section < 0 || static_cast<std::size_t>(section) >= m_titles.size()) return {};
    return toScreen(columnTitle(section));
}

Qt::ItemFlags Rows::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (m_checkable && index.isValid() && index.column() == 0) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

void Rows::changed(int row) {
    if (told()) Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Rows.h"

#include "core/Failure.h"
#include "core/ScreenText.h"
#include "core/Text.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace relay {

namespace {

// A row that the list itself owns, in one block: the number of fields, the places of the fields, their bytes.
// The fields are key, text, icon, tag and the sub-items; a text equal to the key shares its bytes.
struct Place final {
    std::uint32_t from, length;
};
enum Field : std::size_t { kKey, kText, kIcon, kTag, kSubItems };

std::string_view field(const void* record, std::size_t index) {
    const Place place = static_cast<const Place*>(record)[index + 1];
    return {static_cast<const char*>(record) + place.from, place.length};
}

void* pack(const Row& row) {
    const std::size_t count = kSubItems + row.subItems.size();
    std::size_t size =
        (count + 1) * sizeof(Place) + row.key.size() + row.text.size() + row.icon.size() + row.tag.size();
    for (const std::string& text : row.subItems) size += text.size();
    if (size > UINT32_MAX) throw std::length_error("a row of more than 4 GB");
    auto* const block = static_cast<char*>(::operator new(size));
    auto* place = new (block) Place{static_cast<std::uint32_t>(count), 0};
    auto from = static_cast<std::uint32_t>((count + 1) * sizeof(Place));
    const auto put = [&](std::string_view text) {
        new (++place) Place{from, static_cast<std::uint32_t>(text.copy(block + from, text.size()))};
        from += place->length;
    };
    put(row.key);
    const Place key = *place;
    if (row.text == row.key)
        new (++place) Place(key);
    else
        put(row.text);
    put(row.icon);
    put(row.tag);
    for (const std::string& text : row.subItems) put(text);
    return block;
}

class OwnRows final : public RowSource {
    std::string_view key(const void* record) const override { return field(record, kKey); }
    std::size_t columns(const void* record) const override {
        return static_cast<const Place*>(record)->from - kSubItems + 1;
    }
    std::string_view text(const void* record, std::size_t column) const override {
        return field(record, column == 0 ? kText : kSubItems + column - 1);
    }
    std::string_view icon(const void* record) const override { return field(record, kIcon); }
    std::string_view tag(const void* record) const override { return field(record, kTag); }
    void release(const void* record) const noexcept override { ::operator delete(const_cast<void*>(record)); }
};

[[noreturn]] void failTakenKey() {
    throw Failure("This key is already associated with an element of this collection", 457);
}

}  // namespace

RowsBatch::RowsBatch(Rows& rows) : m_rows(rows) {
    m_rows.beginBatch();
}

RowsBatch::~RowsBatch() {
    m_rows.endBatch();
}

Rows::Rows(QObject* parent) : QAbstractTableModel(parent) {}

void Rows::setColumns(std::vector<std::string> titles) {
    beginBatch();
    m_titles = std::move(titles);
    endBatch();
}

void Rows::setColumnTitle(int column, std::string title) {
    m_titles.at(static_cast<std::size_t>(column)) = std::move(title);
    if (notifies()) Q_EMIT headerDataChanged(Qt::Horizontal, column, column);
}

const std::string& Rows::columnTitle(int column) const {
    return m_titles.at(static_cast<std::size_t>(column));
}

std::string_view Rows::Entry::text(std::size_t column) const {
    return column < source().columns(record.get()) ? source().text(record.get(), column) : std::string_view();
}

RowView Rows::Entry::view() const {
    const RowSource& from = source();
    const void* const shown = record.get();
    return {from.key(shown), from.text(shown, 0), {from, shown}, from.icon(shown), from.tag(shown),
            checked,         highlighted};
}

Rows::Entry Rows::ownEntry(const Row& row) {
    static const OwnRows source;
    Entry made(source, pack(row));
    made.checked = row.checked;
    made.highlighted = row.highlighted;
    return made;
}

// Adds the rows that are not yet in the key set.
void Rows::findKeys() const {
    for (; m_keyed < m_rows.size(); ++m_keyed) {
        const std::string_view key = m_rows[m_keyed].key();
        if (!key.empty()) m_keys.insert(static_cast<std::uint32_t>(m_keyed), key, keys());
    }
}

void Rows::forgetKeys() noexcept {
    m_keys.clear();
    m_keyed = 0;
}

int Rows::indexOf(std::string_view key) const {
    if (key.empty()) return -1;
    findKeys();
    return static_cast<int>(m_keys.find(key, keys()));
}

bool Rows::contains(std::string_view key) const {
    return indexOf(key) >= 0;
}

void Rows::add(Entry row) {
    if (!takeKey(row.key())) failTakenKey();
    append(std::move(row));
}

bool Rows::tryAdd(const Row& row) {
    Entry own = ownEntry(row);
    if (!takeKey(own.key())) return false;
    append(std::move(own));
    return true;
}

bool Rows::takeKey(std::string_view key) {
    findKeys();
    if (m_rows.size() == m_rows.capacity()) m_rows.reserve(std::max<std::size_t>(16, m_rows.size() * 2));
    if (!key.empty() && !m_keys.insert(static_cast<std::uint32_t>(m_rows.size()), key, keys())) return false;
    ++m_keyed;
    return true;
}

void Rows::append(Entry row) {
    if (notifies()) beginInsertRows({}, count(), count());
    m_rows.push_back(std::move(row));
    if (notifies()) endInsertRows();
}

int Rows::removeIf(const std::function<bool(const RowView&)>& test) {
    // All tests run first: they may throw, and they may look at the list.
    std::vector<bool> named(m_rows.size());
    for (std::size_t i = 0; i < m_rows.size(); ++i) named[i] = test(m_rows[i].view());
    if (std::find(named.begin(), named.end(), true) == named.end()) return 0;
    const RowsBatch batch(*this);
    forgetKeys();
    const auto gone = [&](const Entry& row) { return named[static_cast<std::size_t>(&row - m_rows.data())]; };
    const auto kept = std::remove_if(m_rows.begin(), m_rows.end(), gone);
    const auto removed = static_cast<int>(m_rows.end() - kept);
    m_rows.erase(kept, m_rows.end());
    return removed;
}

void Rows::clear() {
    if (m_rows.empty() && m_sortedColumn < 0) return;
    const RowsBatch batch(*this);
    m_sortedColumn = -1;
    forgetKeys();
    m_rows.clear();
}

template <typename Edit>
void Rows::change(int row, Edit&& edit) {
    Row edited(entry(row).view());
    edit(edited);
    entry(row) = ownEntry(edited);
    changed(row, Qt::DisplayRole);
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
    entry(row).checked = on;
    changed(row, Qt::CheckStateRole);
}

void Rows::setHighlighted(int row, bool on) {
    entry(row).highlighted = on;
    changed(row, HighlightRole);
}

void Rows::clearHighlights() {
    for (int row = 0; row < count(); ++row)
        if (entry(row).highlighted) setHighlighted(row, false);
}

int Rows::firstHighlighted() const {
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [](const Entry& row) { return row.highlighted; });
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

std::vector<double> Rows::sortNumbers(int column) const {
    std::vector<double> numbers;
    const bool leading = isNumberColumn(column);
    if (!leading && !m_order.number) return numbers;
    numbers.reserve(m_rows.size());
    for (const Entry& row : m_rows) {
        const std::optional<double> number = leading
                                                 ? leadingNumber(row.text(static_cast<std::size_t>(column)))
                                                 : m_order.number(row.view(), column);
        if (!number) return {};
        numbers.push_back(*number);
    }
    return numbers;
}

void Rows::liftByRank(std::vector<std::size_t>& places) const {
    if (!m_order.rank) return;
    std::vector<int> ranks;
    ranks.reserve(m_rows.size());
    for (const Entry& row : m_rows) ranks.push_back(m_order.rank(row.view()));
    std::stable_sort(places.begin(), places.end(), [&ranks](auto a, auto b) { return ranks[a] < ranks[b]; });
}

void Rows::sort(int column, Qt::SortOrder order) {
    if (column < 0) return;  // how views say "unsorted"
    m_sortedColumn = column;
    m_ascending = order == Qt::AscendingOrder;
    if (notifies()) Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    std::vector<std::size_t> places(m_rows.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    const auto by = static_cast<std::size_t>(column);
    const std::vector<double> numbers = sortNumbers(column);
    if (numbers.size() == m_rows.size()) {
        std::stable_sort(places.begin(), places.end(), [&](auto a, auto b) {
            return m_ascending ? numbers[a] < numbers[b] : numbers[a] > numbers[b];
        });
    } else {
        std::stable_sort(places.begin(), places.end(), [&](auto a, auto b) {
            const int compared = compareNoCase(m_rows[a].text(by), m_rows[b].text(by));
            return m_ascending ? compared < 0 : compared > 0;
        });
    }
    liftByRank(places);
    forgetKeys();
    std::vector<Entry> sorted;
    sorted.reserve(places.size());
    std::vector<int> placeOf(places.size());
    for (const std::size_t from : places) {
        placeOf[from] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(m_rows[from]));
    }
    m_rows = std::move(sorted);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& moved : before)
        after.append(index(placeOf[static_cast<std::size_t>(moved.row())], moved.column()));
    changePersistentIndexList(before, after);
    if (notifies()) Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

int Rows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

int Rows::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(1, static_cast<int>(m_titles.size()));
}

QVariant Rows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
    const Entry& row = entry(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return toScreen(row.text(static_cast<std::size_t>(index.column())));
        case Qt::CheckStateRole:
            if (!m_checkable || index.column() != 0) return {};
            return row.checked ? Qt::Checked : Qt::Unchecked;
        case Qt::TextAlignmentRole:
            if (!isNumberColumn(index.column())) return {};
            return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
        case IconRole:
            return toScreen(row.source().icon(row.record.get()));
        case KeyRole:
            return toScreen(row.key());
        case TagRole:
            return toScreen(row.source().tag(row.record.get()));
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
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole && isNumberColumn(section))
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    if (section < 0 || static_cast<std::size_t>(section) >= m_titles.size()) return {};
    return toScreen(columnTitle(section));
}

Qt::ItemFlags Rows::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (m_checkable && index.isValid() && index.column() == 0) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

void Rows::changed(int row, int role) {
    if (notifies()) Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1), {role});
}

bool Rows::isNumberColumn(int column) const {
    return std::find(m_numberColumns.begin(), m_numberColumns.end(), column) != m_numberColumns.end();
}

}  // namespace relay

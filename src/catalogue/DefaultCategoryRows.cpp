// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/DefaultCategoryRows.h"

#include "core/ItemReader.h"
#include "core/Text.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::size_t kMostStrayBytes = 1000;
constexpr std::string_view kTick = "Tick";
constexpr std::string_view kTickOff = "TickOff";

void addEntry(std::string& data, std::string_view entry) {
    data.append(data.empty() ? "" : ">").append(entry);
}

}  // namespace

DefaultCategoryRows::DefaultCategoryRows(Rows& list) : m_list(list) {
    m_list.setColumns({"Default Category", "Engine Category"});
}

void DefaultCategoryRows::read(std::string_view text, std::string& strayItems) {
    const RowsBatch batch(m_list);
    m_list.clear();
    ItemReader items(text);
    std::string_view item;
    std::string main;
    const auto add = [this](std::string_view key, std::string shown) {
        m_list.add(Row{std::string(key), std::move(shown), {""}, std::string(kTickOff)});
    };
    while (items.nextEntry(item)) {
        if (item.size() > 1 && item.front() == '[' && item.back() == ']') {
            main = item.substr(1, item.size() - 2);
            add(main, main);
        } else if (main.empty()) {
            if (strayItems.size() < kMostStrayBytes)
                strayItems.append(left(item, kMostStrayBytes)).append("\r\n");
        } else if (!equalsNoCase(item, "Other") || equalsNoCase(main, "Miscellaneous")) {
            add(item, main + " >> " + std::string(item));
        }
    }
}

std::string DefaultCategoryRows::show(std::string_view data) {
    const RowsBatch batch(m_list);
    m_others.clear();
    for (int row = 0; row < m_list.count(); ++row) setValue(row, {});
    while (!data.empty()) {
        const std::string_view entry = data.substr(0, data.find('>'));
        data.remove_prefix(std::min(entry.size() + 1, data.size()));
        const std::size_t equals = entry.find('=');
        if (equals == npos) continue;
        const int row = m_list.indexOf(entry.substr(0, equals));
        if (row >= 0)
            setValue(row, std::string(entry.substr(equals + 1)));
        else
            m_others.emplace_back(entry);
    }
    return m_others.empty() ? std::string() : m_others.front();
}

std::string DefaultCategoryRows::data() const {
    std::string data;
    for (int row = 0; row < m_list.count(); ++row) {
        const RowView category = m_list.at(row);
        const std::string_view value = category.subItems[0];
        if (!value.empty()) addEntry(data, std::string(category.key).append("=").append(value));
    }
    for (const std::string& entry : m_others) addEntry(data, entry);
    return data;
}

void DefaultCategoryRows::setValue(int row, const std::string& value) {
    if (row < 0 || row >= m_list.count()) return;
    m_list.setSubItem(row, 1, value);
    m_list.setIcon(row, std::string(value.empty() ? kTickOff : kTick));
}

std::string DefaultCategoryRows::suggestion(int row) const {
    const RowView category = m_list.at(row);
    if (!category.subItems[0].empty()) return std::string(category.subItems[0]);
    const std::size_t arrow = category.text.find(">>");
    return std::string(arrow == npos ? category.text : trim(category.text.substr(arrow + 2)));
}

}  // namespace relay

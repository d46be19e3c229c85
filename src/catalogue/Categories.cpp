// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Categories.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/ItemReader.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/clsPreference.h"

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr std::size_t kMostStrayBytes = 1000;  // about what fits in a message box

// First row whose text passes the test, or -1.
template <typename Test>
int findRow(const Rows& list, Test&& test) {
    for (int row = 0; row < list.count(); ++row) {
        if (test(list.at(row).text)) return row;
    }
    return -1;
}

// Whether one of the sub-categories, joined by "|", passes the test; tries them in order.
template <typename Test>
bool findSub(std::string_view joined, Test&& test) {
    for (std::size_t bar = joined.find('|'); bar != npos; bar = joined.find('|')) {
        if (test(joined.substr(0, bar))) return true;
        joined.remove_prefix(bar + 1);
    }
    return !joined.empty() && test(joined);
}

void selectRow(Rows& list, int row) {
    list.clearHighlights();
    list.setHighlighted(row, true);
}

void addTextRow(Rows& list, std::string_view text) {
    Row row;
    row.text = text;
    list.add(std::move(row));
}

}  // namespace

Categories::Categories(const Services& services) : m_services(services) {}

bool Categories::loadCategory() {
    const std::string path = m_services.paths.inApp("cat.kws");
    if (!fileExists(path)) return false;
    std::string strayItems;
    try {
        readCategories(readFile(path), strayItems);
    } catch (const std::exception& failure) {
        m_services.prompts.message(
            std::string(failure.what()) +
                "\r\nModule: loadCategory()\r\n------Load Category Fail ------\r\nBuffer=" + strayItems,
            "Load Category", Icon::Critical);
        return false;
    }
    return true;
}

void Categories::readCategories(std::string_view text, std::string& strayItems) {
    lstMainCategory.clear();
    m_byName.clear();
    m_categories.clear();
    {
        const RowsBatch batch(lstMainCategory);
        clsCategory category;
        ItemReader reader(text);
        std::string_view item;
        while (reader.nextEntry(item)) {
            if (item.size() > 1 && item.front() == '[' && item.back() == ']') {
                addCategoryList(std::exchange(category, {}));
                category.MainCategory = item.substr(1, item.size() - 2);
            } else if (category.MainCategory.empty()) {
                if (strayItems.size() < kMostStrayBytes)
                    strayItems.append(left(item, kMostStrayBytes)).append("\r\n");
            } else {
                if (!category.SubCategory.empty()) category.SubCategory += '|';
                category.SubCategory += item;
            }
        }
        addCategoryList(category);
    }
    if (!lstMainCategory.empty()) selectMainCategory(0);
}

void Categories::addCategoryList(const clsCategory& category) {
    if (category.MainCategory.empty()) return;
    if (m_services.preference.refusesAdultSites() && containsNoCase(category.MainCategory, "Adult")) return;
    if (m_byName.contains(category.MainCategory)) {
        throw Failure("This key is already associated with an element of this collection", 457);
    }
    m_categories.push_back(category);
    m_byName.emplace(m_categories.back().MainCategory, &m_categories.back());
    addTextRow(lstMainCategory, category.MainCategory);
}

void Categories::loadSubCategory(std::string_view mainName) {
    lstCategory.clear();
    const auto place = m_byName.find(mainName);
    if (place == m_byName.end()) {
        m_services.prompts.message("Invalid procedure call or argument\r\nModule: loadSubCategory", "Error",
                                   Icon::Critical);
        return;
    }
    const RowsBatch batch(lstCategory);
    findSub(place->second->SubCategory, [&](std::string_view name) {
        addTextRow(lstCategory, name);
        return false;
    });
}

void Categories::selectMainCategory(int row) {
    selectRow(lstMainCategory, row);
    const std::string_view name = lstMainCategory.at(row).text;
    if (!name.empty()) loadSubCategory(name);
}

void Categories::setSelectedCategory(std::string_view main, std::string_view sub) {
    std::string wanted(main);
    for (auto category = m_categories.begin(); wanted.empty() && category != m_categories.end(); ++category) {
        if (containsNoCase(category->SubCategory, sub)) wanted = category->MainCategory;
    }
    if (wanted.empty()) wanted = "Business and Finance";

    int row = findRow(lstMainCategory, [&](std::string_view text) { return equalsNoCase(text, wanted); });
    if (row >= 0) {
        selectMainCategory(row);
        row = findRow(lstCategory, [&](std::string_view text) { return equalsNoCase(text, sub); });
        if (row >= 0) selectRow(lstCategory, row);
        return;
    }
    row = findRow(lstMainCategory, [](std::string_view text) { return containsNoCase(text, "Business"); });
    if (row >= 0) selectMainCategory(row);
}

void Categories::getSelectedCategory(std::string& main, std::string& sub) const {
    if (const int row = lstMainCategory.firstHighlighted(); row >= 0) main = lstMainCategory.at(row).text;
    if (const int row = lstCategory.firstHighlighted(); row >= 0) sub = lstCategory.at(row).text;
}

bool Categories::has(std::string_view main, std::string_view sub) const {
    const auto holds = [sub](const clsCategory& category) {
        return sub.empty() || findSub(category.SubCategory,
                                      [sub](std::string_view name) { return equalsNoCase(name, sub); });
    };
    if (main.empty()) return std::any_of(m_categories.begin(), m_categories.end(), holds);
    const auto place = m_byName.find(main);
    return place != m_byName.end() && holds(*place->second);
}

}  // namespace relay

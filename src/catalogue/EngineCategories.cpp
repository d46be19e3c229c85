// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineCategories.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/ItemReader.h"
#include "core/KeySet.h"
#include "core/Paths.h"
#include "core/Text.h"

#include <deque>

namespace relay {

struct EngineCategories::Tables final {
    struct NameOf final {
        std::string_view operator()(const EngineCategoryEntry& entry) const noexcept {
            return entry.EngineName;
        }
    };

    explicit Tables(std::string_view text);

    std::deque<EngineCategoryEntry> entries;  // a deque, so that the views into them hold
    KeySet<const EngineCategoryEntry, NameOf> byName;
};

EngineCategories::Tables::Tables(std::string_view text) {
    ItemReader reader(text);
    std::string_view item;
    while (reader.next(item)) {
        if (trim(item).empty() || item.front() == '#') continue;
        if (equalsNoCase(item, "END")) break;
        if (item.front() == '[') {
            const std::size_t close = item.find(']');
            if (close != npos) entries.push_back({std::string(item.substr(1, close - 1)), {}, {}});
        } else if (!entries.empty()) {
            entries.back().Data.append(item).push_back('>');
        }
    }
    byName.reserve(entries.size());
    for (const EngineCategoryEntry& entry : entries) byName.insert(&entry);
}

EngineCategories::EngineCategories(const Paths& paths)
    : m_paths(paths), m_tables(std::make_shared<Tables>(std::string_view())) {}

void EngineCategories::load() {
    const std::string text = readFile(m_paths.inWindows("catkws.dat"));
    if (text.empty()) throw Failure("The file is empty");
    m_tables = std::make_shared<const Tables>(text);
}

std::string_view EngineCategories::getEngineCategoryData(std::string_view name) const {
    if (m_tables->entries.empty()) throw Failure("Subscript out of range", 9);
    const EngineCategoryEntry* entry = m_tables->byName.find(name);
    return entry == nullptr ? std::string_view() : std::string_view(entry->Data);
}

std::size_t EngineCategories::count() const noexcept {
    return m_tables->entries.size();
}

std::shared_ptr<const void> EngineCategories::storage() const noexcept {
    return m_tables;
}

}  // namespace relay

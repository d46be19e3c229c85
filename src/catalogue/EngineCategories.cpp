// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineCategories.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/ItemReader.h"
#include "core/KeySet.h"
#include "core/Text.h"

#include <utility>
#include <vector>

namespace relay {

struct EngineCategories::Tables final {
    struct Table final {
        std::string_view name;
        std::string_view data;
    };
    explicit Tables(std::string file);

    std::string text;  // the file; names are views of it
    std::string data;  // of all tables, concatenated; at most one byte longer than the file
    std::vector<Table> tables;
    KeySet byName;

    auto names() const {
        return [this](std::uint32_t place) { return tables[place].name; };
    }
};

EngineCategories::Tables::Tables(std::string file) : text(std::move(file)) {
    data.reserve(text.size() + 1);
    bool reading = false;  // false for a repeated section name
    ItemReader reader(text);
    std::string_view item;
    while (reader.nextEntry(item)) {
        if (trim(item).empty()) continue;
        if (equalsNoCase(item, "END")) break;
        if (item.front() == '[') {
            const std::size_t close = item.find(']');
            if (close == npos) continue;
            const std::string_view name = item.substr(1, close - 1);
            reading = byName.insert(static_cast<std::uint32_t>(tables.size()), name, names());
            if (reading) tables.push_back({name, {}});
        } else if (reading) {
            std::string_view& table = tables.back().data;
            const std::size_t start = data.size() - table.size();
            data.append(item).push_back('>');
            table = std::string_view(data).substr(start);
        }
    }
}

EngineCategories::EngineCategories(std::string text)
    : m_tables(std::make_shared<const Tables>(std::move(text))) {}

void EngineCategories::load(const std::string& path) {
    std::string text = readFile(path);
    if (text.empty()) throw Failure("The file is empty");
    m_tables = std::make_shared<const Tables>(std::move(text));
}

std::string_view EngineCategories::getEngineCategoryData(std::string_view name) const {
    if (m_tables->tables.empty()) throw Failure("Subscript out of range", 9);
    const std::uint32_t place = m_tables->byName.find(name, m_tables->names());
    return place == KeySet::kNone ? std::string_view() : m_tables->tables[place].data;
}

std::shared_ptr<const std::string> EngineCategories::storage() const noexcept {
    return {m_tables, &m_tables->data};
}

}  // namespace relay

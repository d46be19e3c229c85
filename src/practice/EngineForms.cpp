// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/EngineForms.h"

#include "core/ItemReader.h"
#include "core/Text.h"

#include <map>

namespace relay {

namespace {

using CategoryTables = std::map<std::string, NamedValues>;

constexpr std::string_view kEnginesFolder = "/engines/";
constexpr std::string_view kUsualFields =
    "title=<TITLE>&url=<URL>&description=<DESCRIPTION>&keywords=<KEYWORD>&category=<CATEGORY>&name=<NAME>"
    "&email=<EMAIL>&company=<COMPANY>&city=<CITY>&country=<COUNTRY>";

std::pair<std::string, std::string> splitAtEquals(std::string_view item) {
    const std::size_t equals = item.find('=');
    if (equals == npos) return {};
    return {std::string(item.substr(0, equals)), std::string(trim(item.substr(equals + 1)))};
}

CategoryTables readTables(std::string_view text) {
    CategoryTables tables;
    NamedValues* open = nullptr;
    ItemReader reader(text);
    for (std::string_view item; reader.nextEntry(item);) {
        if (equalsNoCase(item, "END")) break;
        if (item.starts_with('[')) {
            open = &tables[toLower(item.substr(1, item.find(']') - 1))];
        } else if (open != nullptr && item.find('=') != npos) {
            open->push_back(splitAtEquals(item));
        }
    }
    return tables;
}

NamedValues splitQuery(std::string_view query) {
    NamedValues fields;
    while (!query.empty()) {
        const std::size_t end = query.find('&');
        fields.push_back(splitAtEquals(query.substr(0, end)));
        query = end == npos ? std::string_view() : query.substr(end + 1);
    }
    return fields;
}

std::string tableName(std::string_view rule, std::string_view engine) {
    if (equalsNoCase(rule, "F")) return "free for all links";
    if (equalsNoCase(rule, "G")) return "general for all links";
    return toLower(engine);
}

// One record while it is read; keys in upper case.
using Record = std::map<std::string, std::string>;

EngineForm formOf(Record& record, const CategoryTables& tables) {
    EngineForm form;
    form.name = record["NAME"];
    form.method = toUpper(record["METHOD"]);
    const std::string& action = record["ACTION"];
    form.target = action.substr(action.find(kEnginesFolder));
    form.fields = splitQuery(record["QUERY"]);
    const auto table = tables.find(tableName(record["CATEGORY"], form.name));
    if (table != tables.end()) form.categories = table->second;
    return form;
}

std::string slugOf(std::string_view action) {
    const std::size_t folder = action.find(kEnginesFolder);
    if (folder == npos) return {};
    const std::string_view rest = action.substr(folder + kEnginesFolder.size());
    return std::string(rest.substr(0, rest.find('/')));
}

}  // namespace

void EngineForms::read(std::string_view engines, std::string_view categories) {
    const CategoryTables tables = readTables(categories);
    Record record;
    const auto close = [&] {
        const std::string slug = slugOf(record["ACTION"]);
        if (!slug.empty()) m_forms.insert_or_assign(slug, formOf(record, tables));
        record.clear();
    };
    ItemReader reader(engines);
    for (std::string_view item; reader.nextEntry(item);) {
        if (equalsNoCase(item, "END:Version 6.0")) break;
        auto [key, value] = splitAtEquals(item);
        key = toUpper(key);
        if (key == "NAME") close();
        record[key] = value;
    }
    close();
}

EngineForm EngineForms::form(std::string_view slug) const {
    if (const auto known = m_forms.find(std::string(slug)); known != m_forms.end()) return known->second;
    EngineForm form;
    form.name = slug;
    form.target = std::string(kEnginesFolder) + std::string(slug) + "/submit";
    form.fields = splitQuery(kUsualFields);
    return form;
}

}  // namespace relay

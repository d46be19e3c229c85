// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CustomEngineRecord.h"

#include "catalogue/CatalogueReader.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineTypes.h"
#include "catalogue/FormScraper.h"
#include "core/Failure.h"
#include "core/ItemReader.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"

#include <algorithm>
#include <limits>

namespace relay {

namespace {

constexpr std::string_view kSharedFFA = "Free For All Links";

bool isYes(std::string_view text) noexcept {
    return startsWithNoCase(text, "Y");
}

// No line break may reach a line of the file.
std::string oneLine(std::string_view text) {
    std::string line = replaceAll(text, "\r\n", " ");
    for (char& c : line)
        if (c == '\r' || c == '\n') c = ' ';
    return line;
}

// The first letter, a capital.
std::string flagOf(std::string_view value) {
    return toUpper(left(value, 1));
}

void setValue(CustomEngineRecord& record, EngineKey key, std::string_view value,
              const EngineCategories& categories) {
    for (const CustomEngineKey& known : kCustomEngineKeys) {
        if (known.key != key || key == EngineKey::CategoryData) continue;
        if (known.text != nullptr) record.*known.text = value;
        if (known.number != nullptr) record.*known.number = leadingInteger(value);
    }
    if (key == EngineKey::Country) record.Country = toUpper(value);
    if (key == EngineKey::EngineType) record.EngineType = toUpper(value);
    if (key == EngineKey::Adults) record.Adults = flagOf(value);
    if (key == EngineKey::AdultOnlySites) record.AdultOnlySites = flagOf(value);
    if (key == EngineKey::SiteLevel) {
        using Limits = std::numeric_limits<std::int16_t>;
        record.SiteLevel =
            static_cast<std::int16_t>(std::clamp<int>(leadingInteger(value), Limits::min(), Limits::max()));
    }
    if (key == EngineKey::Category && isYes(value)) {
        // A file without tables has none for this record either.
        failureOf([&] { record.CategoryData = categories.getEngineCategoryData(record.Name); });
    }
}

// A record in the file whose keys are all empty.
CustomEngineRecord emptyRecord(std::string_view name) {
    CustomEngineRecord record;
    for (const CustomEngineKey& key : kCustomEngineKeys)
        if (key.text != nullptr) (record.*key.text).clear();
    record.SiteLevel = 0;
    record.Name = name;
    return record;
}

// What a comma in a value makes of the record's text: an item of its own that the catalogue's reader takes
// for a key or the start of a quotation. Empty when there is none.
std::string strayItem(const CustomEngineRecord& record) {
    const std::string text = recordText(record);
    ItemReader items(text);
    std::string_view item;
    bool behindComma = false;
    while (items.next(item)) {
        const bool quoted = items.offset() > 0 && text[items.offset() - 1] == '"';
        const std::size_t equals = item.find('=');
        const bool isKey = equals != npos && engineKey(item.substr(0, equals)) < EngineKey::None;
        if (behindComma && (quoted || isKey)) return std::string(left(item, 80));
        behindComma = items.closedByComma();
    }
    return {};
}

// What stands in the record's table and would be read as something else than an entry of it: the end of the
// file, another engine's table, a quotation that goes on over the next lines, a comment. Empty if there is
// none.
std::string strayEntry(const CustomEngineRecord& record) {
    const std::string table = recordTable(record);
    ItemReader items(table);
    std::string_view item;
    if (!items.next(item)) return {};
    if (item.find(']') != record.Name.size() + 1) return std::string(left(record.Name, 80));
    while (items.next(item)) {
        const bool quoted = items.offset() > 0 && table[items.offset() - 1] == '"';
        if (quoted || item.starts_with('[') || item.starts_with('#') || equalsNoCase(item, "END"))
            return std::string(left(item, 80));
    }
    return {};
}

// The entries of the record's table that a comma or a ">" in a value has left without a label.
void noteCutEntries(const CustomEngineRecord& record, std::vector<Finding>& findings) {
    const std::string table = recordTable(record);
    ItemReader items(table);
    std::string_view item;
    std::string_view before;
    while (items.nextEntry(item)) {
        if (!before.empty() && item.find('=') == npos) {
            findings.push_back({0, record.Name, FindingKind::CutValue,
                                "A comma or a \">\" cuts \"" + escapeControlCharacters(left(before, 80)) +
                                    "\" before \"" + escapeControlCharacters(left(item, 80)) + "\""});
            return;
        }
        if (item.find('=') != npos) before = item;
    }
}

}  // namespace

std::int32_t numberOf(const CustomEngineRecord& record, const CustomEngineKey& key) {
    return key.number == nullptr ? record.SiteLevel : record.*key.number;
}

std::int16_t usualSiteLevel(std::string_view engineType) noexcept {
    if (equalsNoCase(engineType, "ENG") || equalsNoCase(engineType, "DIR")) return 1;
    return equalsNoCase(engineType, "FFA") ? 5 : 3;
}

std::vector<CustomEngineRecord> readCustomEngines(std::string_view text, const EngineCategories& categories) {
    std::vector<CustomEngineRecord> records;
    ItemReader items(text);
    std::string_view item;
    while (items.nextEntry(item)) {
        const std::size_t equals = item.find('=');
        if (equals == npos) continue;
        const EngineKey key = engineKey(item.substr(0, equals));
        if (key >= EngineKey::None) continue;
        const std::string_view value = trim(item.substr(equals + 1));
        if (key == EngineKey::Name) {
            records.push_back(emptyRecord(value));
            continue;
        }
        if (records.empty())
            throw Failure("Subscript out of range: an entry stands in front of the first name", 9);
        setValue(records.back(), key, value, categories);
    }
    return records;
}

std::string recordText(const CustomEngineRecord& record) {
    std::string text;
    for (const CustomEngineKey& key : kCustomEngineKeys) {
        if (key.key == EngineKey::CategoryData) continue;
        text.append(key.name).append("=");
        text += key.text != nullptr ? oneLine(record.*key.text) : std::to_string(numberOf(record, key));
        text += "\r\n";
    }
    return text;
}

std::string recordTable(const CustomEngineRecord& record) {
    if (!isYes(record.Category) || record.CategoryData.empty()) return {};
    std::string table = "[" + oneLine(record.Name) + "]\r\n";
    std::string_view rest = record.CategoryData;
    while (!rest.empty()) {
        const std::string_view entry = rest.substr(0, rest.find('>'));
        table += oneLine(entry) + "\r\n";
        rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    }
    return table + "\r\n";
}

void takeForm(CustomEngineRecord& record, const ScrapedForm& form) {
    CustomEngineRecord read;
    read.Name = std::move(record.Name);
    read.Home = std::move(record.Home);
    read.AddURL = std::move(record.AddURL);
    read.Category = "N";
    if (form.found) {
        read.Method = form.method;
        read.Action = form.action;
        read.Query = buildQuery(form.fields);
    }
    record = std::move(read);
}

RecordProblem completeRecord(CustomEngineRecord& record) {
    for (const CustomEngineKey& key : kCustomEngineKeys)
        if (key.text != nullptr) record.*key.text = oneLine(record.*key.text);
    if (record.Name.empty()) return {"Please enter engine name.", "txtEngineName"};
    if (!containsNoCase(record.Action, "://"))
        return {"Invalid Action Field ! Please make sure to use FULL URL path.", "txtAction"};
    record.Category = isYes(record.Category) ? "Y" : "N";
    if (equalsNoCase(record.EngineType, "FFA")) record.Category = "F";
    if (!record.CategoryData.empty()) record.Category = "Y";
    record.Home = withScheme(record.Home);
    record.AddURL = withScheme(record.AddURL);
    // A later merge would write over everything from here on.
    if (containsNoCase(recordText(record), kEndMarker))
        return {"The end marker of the engine file must not stand in an engine: " + std::string(kEndMarker),
                containsNoCase(record.Action, kEndMarker)  ? "txtAction"
                : containsNoCase(record.Query, kEndMarker) ? "lsvDataFields"
                                                           : "txtEngineName"};
    if (const std::string item = strayItem(record); !item.empty())
        return {
            "A comma ends an entry of the engine file, and what follows it here would be an entry of its "
            "own:\r\n" +
                escapeControlCharacters(item) + "\r\n\r\nPlease write the comma as %2C.",
            containsNoCase(record.Action, item) ? "txtAction"
            : containsNoCase(record.Name, item) ? "txtEngineName"
                                                : "lsvDataFields"};
    if (const std::string entry = strayEntry(record); !entry.empty())
        return {
            "The file of the categories would not hold this:\r\n" + escapeControlCharacters(entry) +
                "\r\n\r\nPlease write it without commas, brackets, quotation marks and #, and not as END.",
            entry == left(record.Name, 80) ? "txtEngineName" : "lsvCategory"};
    return {};
}

std::vector<Finding> checkRecord(const CustomEngineRecord& record, const EngineCategories& shared,
                                 bool refusesAdultSites) {
    std::string tables = recordTable(record) + "[" + std::string(kSharedFFA) + "]\r\n";
    failureOf([&] { tables += replaceAll(shared.getEngineCategoryData(kSharedFFA), ">", "\r\n"); });
    std::vector<Finding> findings =
        checkCatalogue(recordText(record), EngineCategories(tables), refusesAdultSites);
    noteCutEntries(record, findings);
    return findings;
}

}  // namespace relay

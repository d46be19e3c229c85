// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlainClient.h"
#include "catalogue/CatalogueReader.h"
#include "catalogue/EngineCategories.h"
#include "core/ItemReader.h"
#include "core/Text.h"
#include "practice/PracticeWeb.h"
#include "submission/SubmissionData.h"
#include "support/SessionFixture.h"

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <set>
#include <vector>

// Checks of the installed catalogues beyond those of "engines check": categories are found, countries agree,
// practice engines answer.
namespace relay::test {
namespace {

using ::testing::HasSubstr;

std::string readData(const std::string& name) {
    std::ifstream file(std::string(RELAY_DATA_FOLDER) + "/" + name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

// The items except empty ones and comments. A comma outside a quoted item is a mistake.
std::vector<std::string> itemsOf(const std::string& name) {
    const std::string text = readData(name);
    std::vector<std::string> items;
    ItemReader reader(text);
    for (std::string_view item; reader.nextEntry(item);) {
        EXPECT_FALSE(reader.closedByComma()) << name << ": " << item;
        items.emplace_back(item);
    }
    return items;
}

// Each engine's "label=value>" entries.
std::map<std::string, std::string> tablesOf(const std::string& name) {
    const EngineCategories categories(readData(name));
    std::map<std::string, std::string> tables;
    const auto items = itemsOf(name);
    EXPECT_EQ(items.back(), "END");
    for (const std::string& item : items) {
        if (!item.starts_with('[')) continue;
        const std::string engine = item.substr(1, item.size() - 2);
        EXPECT_TRUE(tables.emplace(engine, categories.getEngineCategoryData(engine)).second) << item;
    }
    return tables;
}

// Main category, then its sub-categories.
std::vector<std::vector<std::string>> categoryTree() {
    std::vector<std::vector<std::string>> tree;
    for (const std::string& item : itemsOf("cat.kws")) {
        if (item.starts_with('[')) {
            tree.push_back({item.substr(1, item.size() - 2)});
        } else {
            tree.back().push_back(item);
        }
    }
    return tree;
}

std::set<std::string> sensibleValues(std::string_view table, const std::string& main,
                                     const std::string& sub) {
    std::set<std::string> values;
    for (std::size_t end = table.find('>'); end != npos; end = table.find('>')) {
        const std::size_t equals = table.find('=');
        const std::string_view label = table.substr(0, equals);
        if (label == main || label == sub || label == "Other")
            values.emplace(table.substr(equals + 1, end - equals - 1));
        table.remove_prefix(end + 1);
    }
    return values;
}

TEST(CategoryTables, MapEveryCategoryToItsOwnEntryOrToOther) {
    // A website without a category counts under the first one.
    EXPECT_EQ(categoryTree().front().front(), "Business and Finance");
    EXPECT_EQ(categoryTree().back().front(), "Adult");
    for (const std::string folder : {"", "practice/"}) {
        for (const auto& [engine, table] : tablesOf(folder + "catkws.dat")) {
            if (table.starts_with("URL=")) continue;
            for (const auto& categories : categoryTree()) {
                const std::string& main = categories.front();
                for (const std::string& sub : categories) {
                    const std::string value = getSearchString(table, sub, '>', main);
                    EXPECT_TRUE(sensibleValues(table, main, sub).contains(value))
                        << engine << ": " << main << " / " << sub << " gives " << value;
                }
            }
        }
    }
}

TEST(Countries, BothSectionsAgreeAndSurviveASubmissionsEscapes) {
    std::map<std::string, std::string> codes;
    std::map<std::string, std::string> names;
    auto items = itemsOf("country.kws");
    ASSERT_EQ(items.front(), "[Country Name]");
    std::map<std::string, std::string>* section = nullptr;
    for (const std::string& item : items) {
        if (item.starts_with('[')) {
            section = item == "[Country Name]" ? &codes : &names;
            continue;
        }
        const std::size_t equals = item.find('=');
        EXPECT_TRUE(section->emplace(item.substr(0, equals), item.substr(equals + 1)).second) << item;
    }
    EXPECT_EQ(codes.size(), 249U);
    EXPECT_EQ(names.size(), 249U);
    for (const auto& [name, code] : codes) {
        EXPECT_EQ(names[code], name);
        const bool plain = std::all_of(name.begin(), name.end(), [](char c) {
            return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == ' ' || c == '.' || c == '-';
        });
        EXPECT_TRUE(plain) << name;
    }
    SessionFixture fixture;
    ASSERT_TRUE(fixture.loadEngines(readData("practice/krveng5.dat")));
    for (const clsEngines& engine : fixture.lists.engines)
        EXPECT_TRUE(names.contains(std::string(engine.Country()))) << engine.name();
}

TEST(PracticeCatalogue, NoRecordGivesAKeyTwice) {
    const std::string text = readData("practice/krveng5.dat");
    std::set<EngineKey> keys;
    CatalogueReader reader(text);
    while (reader.next()) {
        if (reader.key() == EngineKey::Name) keys.clear();
        EXPECT_TRUE(keys.insert(reader.key()).second) << reader.item();
    }
    EXPECT_EQ(itemsOf("practice/krveng5.dat").back(), "END:Version 6.0");
}

TEST(PracticeCatalogue, EveryEngineHasItsPagesAndItsTarget) {
    PracticeWeb web;
    web.describeEngines(readData("practice/krveng5.dat"), readData("practice/catkws.dat"));
    web.start();
    const std::size_t addressLength = web.address().size();
    SessionFixture fixture;
    ASSERT_TRUE(fixture.loadEngines(pointAtPracticeWeb(readData("practice/krveng5.dat"), web.address()),
                                    readData("practice/catkws.dat")));
    for (const clsEngines& engine : fixture.lists.engines) {
        const std::string name(engine.name());
        const auto page = [&](std::string_view url) {
            return get(web.address(), std::string(url.substr(addressLength)));
        };
        EXPECT_THAT(page(engine.Home()), HasSubstr("<h1>" + name + "</h1>"));
        const std::string form = page(engine.AddURL());
        EXPECT_THAT(form, HasSubstr("<form action=\"" + std::string(engine.Action()) + "\" method=\"" +
                                    toLower(engine.Method()) + "\">"));
        const std::string query(engine.Query());
        EXPECT_THAT(form, HasSubstr(" name=\"" + query.substr(0, query.find('=')) + "\"")) << name;
        EXPECT_EQ(form.find("<select") != std::string::npos,
                  engine.Category() != "N" &&
                      (containsNoCase(query, "<category>") || containsNoCase(query, "<subcategory>")))
            << name;
        if (!engine.Action().ends_with("/slow")) page(engine.Action());
    }
    const auto received = web.received();
    EXPECT_EQ(received.size(), fixture.lists.engines.count() - 2) << "two answer slowly";
    std::set<std::string> engines;
    for (const auto& submission : received) engines.insert(submission.engine);
    EXPECT_EQ(engines.size(), received.size()) << "two engines share a word in their paths";
}

TEST(PracticeForm, OffersTheEnginesOwnCategories) {
    PracticeWeb web;
    web.describeEngines(readData("practice/krveng5.dat"), readData("practice/catkws.dat"));
    web.start();
    const std::string known = get(web.address(), "/engines/whats-baking/add");
    EXPECT_THAT(known, HasSubstr("<select name=\"section\" size=\"1\">\n<option value=\"9\">Other</option>\n"
                                 "<option value=\"1\">Baking</option>"));
    EXPECT_THAT(known, HasSubstr("<textarea name=\"text\""));
    const std::string unknown = get(web.address(), "/engines/any-other/add");
    EXPECT_THAT(unknown, HasSubstr("/engines/any-other/submit\" method=\"post\">"));
    EXPECT_THAT(unknown, HasSubstr("<input name=\"email\" type=\"text\">"));
}

}  // namespace
}  // namespace relay::test

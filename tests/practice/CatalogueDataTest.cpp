// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlainClient.h"
#include "core/FileStore.h"
#include "core/ItemReader.h"
#include "practice/PracticeWeb.h"
#include "submission/SubmissionData.h"
#include "support/SessionFixture.h"

#include <gmock/gmock.h>
#include <set>

// Checks of the installed catalogues beyond those of "engines check": categories are found, countries agree,
// practice engines answer.
namespace relay::test {
namespace {

using ::testing::HasSubstr;

std::string readData(const std::string& name) {
    return readFile(RELAY_DATA_FOLDER "/" + name);
}

// A session that has loaded the installed catalogue, or the one in the folder "practice/".
struct DataFixture final : SessionFixture {
    explicit DataFixture(const std::string& folder) {
        for (const char* const name : {"cat.kws", "country.kws"}) home.write(name, readData(name));
        EXPECT_TRUE(catalogue.categories.loadCategory() && catalogue.countries.loadCountry());
        EXPECT_TRUE(loadEngines(readData(folder + "krveng5.dat"), readData(folder + "catkws.dat")));
    }
};

// A comma anywhere but in a quoted item is a mistake, and so is a section, a record or a key that comes
// twice.
TEST(InstalledData, HoldsNothingTwice) {
    const struct {
        const char* file;
        const char* opening;  // of an item that begins a section or a record
        const char* last;
        std::size_t items;  // 0: any number
    } files[] = {{"cat.kws", "[", nullptr, 0},
                 {"country.kws", "[", nullptr, 2 + 2 * 249},
                 {"catkws.dat", "[", nullptr, 0},
                 {"practice/catkws.dat", "[", nullptr, 0},
                 {"practice/krveng5.dat", "Name=", "END:Version 6.0", 0}};
    for (const auto& given : files) {
        const std::string text = readData(given.file);
        std::set<std::string_view> openings;
        std::set<std::string_view> keys;
        std::string_view last;
        std::size_t items = 0;
        ItemReader reader(text);
        std::string_view item;
        while (reader.nextEntry(item)) {
            EXPECT_FALSE(reader.closedByComma()) << given.file << ": " << item;
            const bool opens = item.starts_with(given.opening);
            if (opens) keys.clear();
            EXPECT_TRUE((opens ? openings.insert(item) : keys.insert(item.substr(0, item.find('=')))).second)
                << given.file << ": " << item;
            ++items;
            last = item;
        }
        EXPECT_TRUE(given.last == nullptr || last == given.last) << given.file;
        EXPECT_TRUE(given.items == 0 || items == given.items) << given.file << ": " << items;
    }
}

TEST(InstalledData, LeadsEveryCategoryToItsOwnEntryOrToOther) {
    for (const std::string folder : {"", "practice/"}) {
        DataFixture fixture(folder);
        Categories& tree = fixture.catalogue.categories;
        const std::vector<std::string> mains = texts(tree.lstMainCategory);
        // A website without a category is filed under the first one.
        EXPECT_EQ(mains.front() + ", " + mains.back(), "Business and Finance, Adult");
        for (const clsEngines& engine : fixture.lists.engines) {
            const std::string data(engine.CategoryData());
            if (data.empty() || data.starts_with("URL=")) continue;
            for (const std::string& main : mains) {
                tree.loadSubCategory(main);
                std::vector<std::string> subs = texts(tree.lstCategory);
                subs.push_back(main);
                for (const std::string& sub : subs) {
                    const std::string code(getSearchString(data, sub, '>', main));
                    bool sensible = false;
                    for (const std::string& label : {main, sub, std::string("Other")})
                        sensible |= (">" + data).find(">" + label + "=" + code + ">") != npos;
                    EXPECT_TRUE(sensible)
                        << engine.name() << ": " << main << " / " << sub << " gives " << code;
                }
            }
        }
    }
}

TEST(InstalledData, CountriesAgreeAndSurviveASubmissionsEscapes) {
    DataFixture fixture("practice/");
    const Countries& countries = fixture.catalogue.countries;
    EXPECT_EQ(countries.cboCountry.size(), 249U);
    for (const std::string& name : countries.cboCountry) {
        EXPECT_EQ(countries.getCountryName(countries.getCountryCode(name)), name);
        EXPECT_EQ(name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz .-"), npos)
            << name;
    }
    for (const clsEngines& engine : fixture.lists.engines)
        EXPECT_NE(countries.getCountryName(engine.Country()), "") << engine.name();
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

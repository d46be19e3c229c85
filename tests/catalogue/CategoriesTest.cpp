// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Categories.h"
#include "support/SessionFixture.h"

namespace relay::test {

namespace {

using Names = std::vector<std::string>;

constexpr std::string_view kTree =
    "# tree\n"
    "stray\n"
    "[Arts]\nMusic, Film\n# comment\n\"Dance, Ballet\"\n"
    "[Small Business]\nShops\n"
    "[Young adults]\nVideo\n"
    "[Empty]\n";

struct CategoriesFixture final : SessionFixture {
    Categories& tree = catalogue.categories;

    bool load(std::string_view text) {
        home.write("cat.kws", text);
        return tree.loadCategory();
    }
    std::string selected() const {
        std::string main = "-";
        std::string sub = "-";
        tree.getSelectedCategory(main, sub);
        return main + "/" + sub;
    }
};

TEST(CategoriesTest, LoadsTheTreeAndSelectsItsFirstRow) {
    CategoriesFixture fixture;
    EXPECT_FALSE(fixture.tree.loadCategory());
    EXPECT_EQ(fixture.selected(), "-/-");
    ASSERT_TRUE(fixture.load(kTree));
    EXPECT_EQ(texts(fixture.tree.lstMainCategory),
              (Names{"Arts", "Small Business", "Young adults", "Empty"}));
    EXPECT_EQ(texts(fixture.tree.lstCategory), (Names{"Music", "Film", "Dance, Ballet"}));
    EXPECT_EQ(fixture.selected(), "Arts/-");
    fixture.tree.loadSubCategory("empty");
    EXPECT_TRUE(fixture.tree.lstCategory.empty());

    fixture.preference.AcceptAdultSite = "NO";
    ASSERT_TRUE(fixture.load(kTree));
    EXPECT_EQ(texts(fixture.tree.lstMainCategory), (Names{"Arts", "Small Business", "Empty"}));
    EXPECT_TRUE(fixture.load("no section\n"));
    EXPECT_TRUE(fixture.prompts.shown.empty());
}

TEST(CategoriesTest, ShowsWhatItCannotRead) {
    CategoriesFixture fixture;
    EXPECT_FALSE(fixture.load("stray, item\n[One]\na\n[ONE]\nb\n[Two]\n"));
    EXPECT_EQ(fixture.prompts.last().title, "Load Category");
    EXPECT_EQ(
        fixture.prompts.last().text,
        "This key is already associated with an element of this collection\r\nModule: loadCategory()\r\n"
        "------Load Category Fail ------\r\nBuffer=stray\r\nitem\r\n");
    fixture.tree.loadSubCategory("Unknown");
    EXPECT_EQ(fixture.prompts.last().title, "Error");
    EXPECT_EQ(fixture.prompts.last().text, "Invalid procedure call or argument\r\nModule: loadSubCategory");
}

TEST(CategoriesTest, SelectsAWebsitesCategory) {
    const struct {
        const char* main;
        const char* sub;
        const char* selected;
    } cases[] = {
        {"arts", "film", "Arts/Film"},         {"Arts", "Unknown", "Arts/-"},
        {"", "Shop", "Small Business/-"},  // a part of a sub-category finds its main category, not its row
        {"", "Shops", "Small Business/Shops"}, {"Gone", "Film", "Small Business/-"},
        {"", "Gone", "Small Business/-"},
    };
    for (const auto& example : cases) {
        CategoriesFixture fixture;
        ASSERT_TRUE(fixture.load(kTree));
        fixture.tree.setSelectedCategory(example.main, example.sub);
        EXPECT_EQ(fixture.selected(), example.selected) << example.main << "/" << example.sub;
    }
}

TEST(CategoriesTest, FindsWhatTheTreeContains) {
    const struct {
        const char* main;
        const char* sub;
        bool held;
    } cases[] = {{"arts", "FILM", true},   {"Arts", "Dance, Ballet", true},
                 {"Arts", "Shops", false}, {"Arts", "Fil", false},
                 {"Arts", "", true},       {"Gone", "", false},
                 {"", "shops", true},      {"", "Shop", false},
                 {"Empty", "Film", false}};
    CategoriesFixture fixture;
    ASSERT_TRUE(fixture.load(kTree));
    for (const auto& example : cases)
        EXPECT_EQ(fixture.tree.has(example.main, example.sub), example.held)
            << example.main << "/" << example.sub;
}

TEST(CountriesTest, ReadsNamesAndCodes) {
    SessionFixture fixture;
    EXPECT_FALSE(fixture.catalogue.countries.loadCountry());
    EXPECT_EQ(fixture.catalogue.countries.getCountryName("DE"), "");
    fixture.home.write("country.kws",
                       "[Country Name]\n# note\nGermany=DE\nUnited States=US\n[COUNTRY CODE]\nDE=Germany\n");
    ASSERT_TRUE(fixture.catalogue.countries.loadCountry());
    EXPECT_EQ(fixture.catalogue.countries.cboCountry, (Names{"Germany", "United States"}));
    EXPECT_EQ(fixture.catalogue.countries.getCountryName("de"), "Germany");
    EXPECT_EQ(fixture.catalogue.countries.getCountryName("US"), "");
    EXPECT_EQ(fixture.catalogue.countries.getCountryCode("united+states"), "US");

    fixture.home.write("country.kws", "no sections\n");
    ASSERT_TRUE(fixture.catalogue.countries.loadCountry());
    EXPECT_TRUE(fixture.catalogue.countries.cboCountry.empty());
    EXPECT_EQ(fixture.catalogue.countries.getCountryCode("Germany"), "");
}

}  // namespace

}  // namespace relay::test

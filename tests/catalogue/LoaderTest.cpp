// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CatalogueCheck.h"
#include "catalogue/CountryFilter.h"
#include "core/FileSystem.h"
#include "support/SessionFixture.h"

#include <gmock/gmock.h>
#include <random>

namespace relay::test {

namespace {

TEST(EngineLoaderTest, ReadsBinaryRubbishAsAnEmptyCatalogue) {
    SessionFixture fixture;
    std::string rubbish;
    for (unsigned byte = 0; byte < 4096; ++byte) rubbish += static_cast<char>(byte * 7919 >> 3);
    EXPECT_TRUE(fixture.loadEngines(rubbish));
    EXPECT_EQ(fixture.lists.lsvEngines.columnTitle(0), "Engines(0)");
    EXPECT_TRUE(fixture.loadEngines("# only comments\n"));
    EXPECT_TRUE(fixture.prompts.shown.empty());
}

TEST(EngineLoaderTest, ReplacesEnginesButKeepsFilterAndCustomEngines) {
    SessionFixture fixture;
    ASSERT_TRUE(fixture.loadEngines("Name=Old\nCategory=C\nCountry=US\n", "[Old]\nURL=http://o.example/\n"));
    fixture.selection.EngineSelect(true);
    const std::string_view heldData = fixture.lists.engines.find("old")->CategoryData();
    ASSERT_TRUE(fixture.catalogue.loadEngineCategory());
    EXPECT_EQ(heldData, "URL=http://o.example/>");  // reloading the tables does not change loaded engines

    ASSERT_TRUE(
        fixture.loadEngines("Name=New\nCountry=S\nCountry=DE\nName=Old\nCategory=C\n", "[New]\nx=y\n"));
    EXPECT_EQ(texts(fixture.lists.lsvEngines), (std::vector<std::string>{"New", "Old"}));
    EXPECT_TRUE(fixture.lists.lsvSelectedEngines.empty());
    EXPECT_FALSE(fixture.lists.engines.find("Old")->Selected);
    // "S" occurs in "US,": the test is a plain search.
    EXPECT_EQ(fixture.lists.countryFilter.text(), "US,DE,");
    EXPECT_EQ(fixture.lists.cboCustomEngines, (std::vector<std::string>{"Old", "Old"}));
    ASSERT_EQ(fixture.lists.myCustomEngine.size(), 2u);
    EXPECT_EQ(fixture.lists.myCustomEngine[1].EngineName, "Old");
}

TEST(CountryFilterTest, FindsWhatAPlainSearchFinds) {
    std::mt19937 random(7);
    CountryFilter filter;
    for (int number = 0; number < 20000; ++number) {
        std::string code;
        for (std::size_t length = random() % 12 + 1; length > 0; --length) code += "ABBC,"[random() % 5];
        const bool found = filter.text().find(code) != npos;
        ASSERT_EQ(filter.contains(code), found) << code << " in " << filter.text();
        if (!found) filter.add(code);
    }
    EXPECT_GT(filter.text().size(), 10000U);
}

// Counts of 16 bits wrap around, and after a thousand remarks of one kind the rest is only counted.
TEST(EngineLoaderTest, CountsTheRestOfTooManyRemarks) {
    SessionFixture fixture;
    std::string text;
    for (int number = 0; number < 40000; ++number) text += "Name=Same\nType=ZINE\n";
    ASSERT_TRUE(fixture.loadEngines(text));
    EXPECT_EQ(fixture.lists.lsvEngines.columnTitle(0), "Engines(-25536)");
    EXPECT_EQ(fixture.lists.chkType[6].caption, "&Miscellaneous(-25536)");
    EXPECT_EQ(fixture.lists.lsvEngines.count(), 1);
    EXPECT_EQ(fixture.lists.engines.find("SAME")->EngineType(), "ZINE");
    EXPECT_THAT(fixture.logText(),
                testing::EndsWith("Duplicate Engine: Same\r\nDuplicate Engine: ... 38999 more\r\n"));
    EXPECT_LT(fixture.logText().size(), 1002U * 24);
    // Each load counts from zero, and a failing one logs its rest too.
    EXPECT_FALSE(fixture.loadEngines(text + "Name=Last\nCategory=Y\n", "# no table\n"));
    EXPECT_THAT(fixture.logText(), testing::EndsWith(" 38999 more\r\n"));

    const auto findings = checkCatalogue(text, fixture.catalogue.engineCategories, false);
    ASSERT_EQ(findings.size(), 4U * 1001);
    EXPECT_EQ(findings.back().kind, FindingKind::UnknownType);
    EXPECT_EQ(findings.back().line, 2002U);
    EXPECT_EQ(findings.back().text, "39000 more of this kind");
}

// The memory for a name does not depend on how often its record repeats a rule.
TEST(EngineLoaderTest, KeepsLittleOfALongName) {
    SessionFixture fixture;
    std::string text = "Name=" + std::string(600, 'n') + "\n";
    for (int number = 0; number < 60; ++number) text += "Category=C\n";
    ASSERT_TRUE(fixture.loadEngines(text));
    EXPECT_EQ(fixture.lists.cboCustomEngines.size(), 2U);
    EXPECT_THAT(fixture.logText(), testing::EndsWith(": " + std::string(500, 'n') + "\r\n"));

    text = "Name=x\n";
    for (int number = 0; number < 40000; ++number) text += "Category=C\n";
    ASSERT_TRUE(fixture.loadEngines(text));
    EXPECT_EQ(fixture.lists.cboCustomEngines.size(), 32767U);  // the range of their index
}

}  // namespace

}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/IniFile.h"
#include "ranking/RankingCatalogue.h"
#include "ranking/RankingCheck.h"
#include "support/SessionFixture.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

class RankingCatalogueTest : public testing::Test, public SessionFixture {
  protected:
    bool load(std::string_view text) {
        home.write("data/kwreng.dat", text);
        return catalogue_.loadEngineData();
    }
    std::string names() const {
        std::string all;
        for (const RankEngine& engine : catalogue_.engines()) all += engine.EngineName + ";";
        return all;
    }

    RankingCatalogue catalogue_{services, RankReader::Ranking};
};

std::string checked(std::string_view text) {
    std::string all;
    for (const RankFinding& finding : checkRankingCatalogue(text)) {
        all += std::to_string(finding.line) + " [" + finding.record + "] ";
        all.append(rankFindingName(finding.kind)).append(": ").append(finding.text).append("\n");
    }
    return all;
}

}  // namespace

TEST_F(RankingCatalogueTest, EndsAtTheFirstGapAndListsEnginesWithoutASection) {
    EXPECT_TRUE(load("[Engines]\n1=A\n2=B\n4=D\n[a]\nStart=10th\nPerPage=2.5\nLinkType=BUTTON\n"));
    EXPECT_EQ(names(), "A;B;");
    EXPECT_EQ(catalogue_.engines()[0].Start, 10);
    EXPECT_EQ(catalogue_.engines()[0].PerPage, 2);
    EXPECT_TRUE(catalogue_.engines()[0].isButton());
    EXPECT_EQ(catalogue_.engines()[1].Start, 0);
    EXPECT_EQ(catalogue_.indexOf("b"), 1u);
    EXPECT_EQ(catalogue_.indexOf("D"), npos);
    EXPECT_TRUE(load("[Other]\n"));
    EXPECT_EQ(names(), "");
    EXPECT_TRUE(prompts.shown.empty());
}

TEST_F(RankingCatalogueTest, KeepsWhatWasReadWhenItFails) {
    EXPECT_FALSE(load("[Engines]\n1=A\n2=B\n3=C\n[B]\nStart=32768\n[C]\nStart=1\n"));
    EXPECT_EQ(names(), "A;B;");
    EXPECT_EQ(prompts.last().text, "loadEngineData_Error: Overflow");
    EXPECT_EQ(prompts.last().title, "Web Ranking");
    EXPECT_NE(logText().find("Ranking_loadEngines_Error: 6 - Overflow\r\nnNumOfEngines: 2\r\nsEngineName: "
                             "B\r\n-------------\r\n"),
              std::string::npos);
    RankingCatalogue search(services, RankReader::Search);
    EXPECT_TRUE(search.loadEngineData());
    EXPECT_EQ(search.NumOfEngines(), 3u);

    removeFile(home.path("data/kwreng.dat"));
    EXPECT_FALSE(catalogue_.loadEngineData());
    EXPECT_EQ(names(), "A;B;");
    EXPECT_EQ(prompts.last().text, kMissingRankingDataNotice);
    EXPECT_EQ(prompts.last().icon, Icon::Critical);
    KeywordCatalogue keywords(services);
    EXPECT_FALSE(keywords.loadEngine());
    EXPECT_EQ(prompts.last().title, "Error");
    EXPECT_EQ(prompts.last().icon, Icon::Information);
}

TEST_F(RankingCatalogueTest, OffersTheKeywordBuilderItsOwnEngines) {
    load("[KeywordBuilder]\n1=B\n2=A\nNumOfURLs=5\nEngine=A\n[B]\nURLEndString=\"\nEngineKey=b.test\n");
    KeywordCatalogue keywords(services);
    EXPECT_TRUE(keywords.loadEngine());
    EXPECT_EQ(keywords.offered().names, (std::vector<std::string>{"B", "A"}));
    EXPECT_EQ(keywords.offered().Engine, "A");
    EXPECT_TRUE(keywords.loadEngineData("B"));
    EXPECT_EQ(keywords.engine().URLEndString, "\"");
    EXPECT_EQ(keywords.engine().engine.EngineKey, "b.test");
    EXPECT_EQ(keywords.NumOfURLs(), 5);
}

TEST(RankingCheckTest, NamesLineAndRecordOfEveryFault) {
    EXPECT_EQ(checked(readFile(TEST_FOLDER "/cases/check.dat")), readFile(TEST_FOLDER "/cases/check.txt"));
    EXPECT_EQ(checked(""), "1 [Engines] no engines: The section Engines lists no engine\n");
}

TEST(RankingCheckTest, FindsNothingInTheInstalledCatalogues) {
    EXPECT_EQ(checked(readFile(RELAY_DATA_FOLDER "/kwreng.dat")), "");
    EXPECT_EQ(checked(readFile(RELAY_DATA_FOLDER "/practice/kwreng.dat")), "");
}

TEST(RankingCheckTest, ReadsACatalogueCutAtEveryByteAndCountsWhatItDoesNotList) {
    const std::string text = readFile(TEST_FOLDER "/cases/check.dat");
    for (std::size_t length = 0; length < text.size(); ++length)
        ASSERT_FALSE(checkRankingCatalogue(std::string_view(text).substr(0, length)).empty()) << length;

    std::string many = "[Engines]\n1=x\n";
    for (int i = 0; i < 1500; ++i) many += "[s" + std::to_string(i) + "]\n";
    const std::vector<RankFinding> findings = checkRankingCatalogue(many);
    EXPECT_EQ(findings.size(), 1002u);
    EXPECT_EQ(findings.back().text, "500 more of this kind");
    EXPECT_EQ(findings.back().line, 1003u);
}

}  // namespace relay::test

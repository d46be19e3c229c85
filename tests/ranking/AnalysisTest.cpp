// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/Text.h"
#include "ranking/RankingAnalysis.h"
#include "ranking/RankingProfiles.h"
#include "ranking/RankingReport.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"

#include <gtest/gtest.h>
#include <random>

namespace relay::test {

namespace {

// Every folder has a ranking catalogue, the profile "Case", the settings and the saved pages. After an
// analysis and a report: found.txt, the trace and report.html. The engines with an entry in the profile are
// checked.
class RankingGoldenTest : public testing::TestWithParam<std::string>, public SessionFixture {
  protected:
    RankingGoldenTest() {
        readRankEngines(IniFile::load(folder() + "kwreng.dat"), engines);
        home.write("profile.kwr", readFile(folder() + "profile.kwr"));
        profile = RankingProfiles(home.paths()).load("Case");
        profile.engines.resize(engines.size());
        const IniFile settings = IniFile::load(folder() + "preference.ini");
        const auto value = [&](std::string_view key) { return settings.value("Preference", key); };
        preference.Company = value("Company");
        preference.SiteURL = value("SiteURL");
        preference.Email = value("Email");
        preference.name = value("name");
        preference.LogoURL = value("LogoURL");
        preference.LogoPosition = toInt16(leadingNumber(value("LogoPosition")));
        preference.UpdateURL = value("UpdateURL");
    }

    std::string folder() const { return TEST_FOLDER "/golden/" + GetParam() + "/"; }
    AnalysisInput input() const {
        return analysisInput(engines, profile.setup, profile.engines, folder() + "pages", 0);
    }

    std::vector<RankEngine> engines;
    RankingProfile profile;
};

std::string found(const AnalysisInput& input, const std::vector<EngineAnalysis>& results,
                  const std::vector<RankRow>& rows) {
    std::string text;
    for (std::size_t e = 0; e < results.size(); ++e) {
        const EngineAnalysis& result = results[e];
        text += input.engines[e].EngineName + ": " + rankStateText(result) + ", pages " +
                std::to_string(result.pagesRead) + ", links " + std::to_string(result.nLinkCount) +
                "; columns \"" + rows[e].pages + "\" \"" + rows[e].position + "\" \"" + rows[e].status +
                "\"\n";
        for (std::size_t site = 0; site < input.sites.size(); ++site) {
            text += "  " + input.sites[site] + ": ";
            text += rankStateName(result.siteState(site));
            text += " " + result.sDomainHits(site) + "\n";
        }
        text += result.sResultList + "\n";
    }
    return text;
}

}  // namespace

TEST_P(RankingGoldenTest, FindsPositionsAndReportsThemToTheByte) {
    const std::string trace = rankingTraceFile(home.paths());
    RankingAnalysis analysis(input(), trace, log);
    analysis.getResults();
    showAnalysis(analysis.engines(), profile.engines);
    EXPECT_EQ(found(analysis.input(), analysis.engines(), profile.engines), readFile(folder() + "found.txt"));
    EXPECT_EQ(readFile(trace), readFile(folder() + "trace.dat"));

    const ReportInput report{profile.setup,
                             engines,
                             profile.engines,
                             analysis.engines(),
                             preference,
                             clock.now(),
                             QLocale(QLocale::English, QLocale::UnitedStates)};
    const RankingReport written = Report(services, report, home.path("."), {SaveResults::Always, true});
    EXPECT_EQ(written.problem, "");
    EXPECT_EQ(readFile(written.path), readFile(folder() + "report.html"));
    EXPECT_EQ(prompts.last().text, written.path);

    RankingAnalysis again(input(), trace, log);
    again.getResults();
    EXPECT_EQ(found(again.input(), again.engines(), profile.engines), readFile(folder() + "found.txt"));
    EXPECT_EQ(readFile(trace).size(), 2 * readFile(folder() + "trace.dat").size());
    EXPECT_EQ(logText(), "");
}

INSTANTIATE_TEST_SUITE_P(Folders, RankingGoldenTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/golden")),
                         goldenName);

}  // namespace relay::test

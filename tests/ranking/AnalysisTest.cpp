// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/Text.h"
#include "ranking/RankingAnalysis.h"
#include "ranking/RankingPages.h"
#include "ranking/RankingProfiles.h"
#include "ranking/RankingReport.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"

#include <filesystem>
#include <gtest/gtest.h>

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

// Whatever is cut off, a link is counted only when it is whole, and the next address comes from the page.
TEST_P(RankingGoldenTest, WorksOnPagesCutAtEveryByte) {
    for (std::size_t e = 0; e < engines.size(); ++e) {
        const std::string file = folder() + "pages/" + pageFileName(engines[e].EngineName, 1);
        const std::string html = fileExists(file) ? readFile(file) : std::string();
        for (std::size_t length = 0; length <= html.size(); ++length) {
            const std::string_view page = std::string_view(html).substr(0, length);
            EngineAnalysis result;
            std::string trace;
            SearchURLALL(input(), e, page, 1, result, trace);
            int whole = 0;
            for (std::size_t at = findNoCase(page, "</a"); at != npos; at = findNoCase(page, "</a", at + 1))
                ++whole;
            ASSERT_LE(result.nLinkCount, whole) << length;
            const std::string next = getNextURL(engines[e], {page, "http://a.test/x?q=1", 1}, "k");
            ASSERT_LE(next.size(), length + 600) << length;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Folders, RankingGoldenTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/golden")),
                         goldenName);

namespace {

class RankingAnalysisTest : public testing::Test, public SessionFixture {
  protected:
    RankingAnalysisTest() {
        engines.resize(2);
        for (std::size_t i = 0; i < engines.size(); ++i) {
            engines[i].EngineName = i == 0 ? "First" : "../Second";
            engines[i].EngineKey = "own.test";
            engines[i].NoFoundString = "no match";
            engines[i].ResultEndString = "</ol>";
            home.write("pages/" + pageFileName(engines[i].EngineName, 1),
                       "<a href=http://a.test/>a</a></ol>");
        }
    }
    AnalysisInput input() const { return analysisInput(engines, setup, rows, home.path("pages"), 0); }
    RankingReport report(const ReportChoices& choices, const std::string& folder) {
        const RankingAnalysis none(input(), "", log);
        return Report(services, {setup, engines, rows, none.engines(), preference, clock.now(), QLocale::c()},
                      home.path(folder), choices);
    }

    std::vector<RankEngine> engines;
    std::vector<RankRow> rows{{true, "1", "", ""}, {true, "1", "", ""}};
    RankingSetup setup{"Bells", {"a.test"}, "bells", RankLimit::Pages, "2"};
};

}  // namespace

TEST_F(RankingAnalysisTest, GoesOnWithoutItsTraceAndSaysSoOnce) {
    RankingAnalysis analysis(input(), home.path("no folder/trace.dat"), log);
    analysis.getResults();
    EXPECT_EQ(analysis.engines()[0].sDomainHits(0), "1");
    EXPECT_EQ(analysis.engines()[1].sDomainHits(0), "1");
    const std::string logged = logText();
    EXPECT_NE(logged.find("SearchURLAll_Error: "), std::string::npos);
    EXPECT_EQ(logged.find("SearchURLAll_Error: "), logged.rfind("SearchURLAll_Error: "));
}

TEST_F(RankingAnalysisTest, EndsAtAFileThatCannotBeReadAndPassesOverWhatIsNone) {
    const std::string page = home.path("pages/first2.html");
    std::filesystem::create_directory(page);
    RankingAnalysis folder(input(), "", log);
    folder.getResults();
    EXPECT_EQ(folder.engines()[0].pagesRead, 1);
    std::filesystem::remove(page);
    home.write("pages/first2.html", "");
    std::filesystem::resize_file(page, std::uintmax_t{300} << 20);  // more than is read
    RankingAnalysis large(input(), "", log);
    EXPECT_THROW(large.getResults(), Failure);
    EXPECT_EQ(large.engines()[0].pagesRead, 1);
}

TEST_F(RankingAnalysisTest, LeavesUncheckedEnginesOutAndClearsTheirPositions) {
    rows[0] = {false, "3", "17", "old"};
    RankingAnalysis analysis(input(), "", log);
    analysis.getResults();
    showAnalysis(analysis.engines(), rows);
    EXPECT_FALSE(analysis.engines()[0].analysed);
    EXPECT_EQ(analysis.engines()[0].pagesRead, 0);
    EXPECT_EQ(rows[0].pages + rows[0].position + rows[0].status, "3old");
    EXPECT_EQ(rows[1].position, "1");
}

TEST_F(RankingAnalysisTest, ReportsAsChosenAndNamesWhatFailed) {
    prompts.answers = {false, true};
    prompts.systemOpens = false;
    const RankingReport first = report({SaveResults::Ask, true}, "pages");
    EXPECT_EQ(first.path, home.path("pages/Bells(2002-Apr-01-1305).html"));
    EXPECT_EQ(prompts.last().text, kNoBrowserNotice);
    EXPECT_EQ(home.read("profile.kwr").find("Engine1"), std::string::npos);
    report({SaveResults::Ask, false}, "pages");
    EXPECT_NE(home.read("profile.kwr").find("Engine2=-1;1;;"), std::string::npos);
    EXPECT_EQ(prompts.busyDepth, 0);

    const std::size_t shown = prompts.shown.size();
    const RankingReport failed = report({SaveResults::Always, true}, "gone");
    EXPECT_EQ(failed.path, "");
    EXPECT_NE(failed.problem.find("gone"), std::string::npos);
    EXPECT_NE(logText().find("Module: CreateReport: "), std::string::npos);
    EXPECT_EQ(prompts.shown.size(), shown);
    EXPECT_EQ(prompts.busyDepth, 0);

    EXPECT_EQ(getLocalHTML("C:\\a\\b.html"), "file:///C|/a/b.html");
    EXPECT_EQ(getLocalHTML("/a/b.html"), "/a/b.html");
}

}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "practice/PracticeWeb.h"
#include "ranking/RankingPages.h"
#include "ranking/clsRanking.h"
#include "support/FaultServer.h"
#include "support/SessionFixture.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <memory>
#include <sqlite3.h>

namespace relay::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// Rank tracking on a home of its own.
struct RankingFixture : SessionFixture {
    RankingFixture() {
        session.network.open();
        // Only with this access type is the time-out read.
        preference.AccessType = 2;
        preference.TimeOut = 1;
        preference.PromptConnection = 0;
    }

    void usePracticeWeb() {
        web.start();
        home.write("data/kwreng.dat",
                   pointAtPracticeWeb(readFile(RELAY_DATA_FOLDER "/practice/kwreng.dat"), web.address()));
        open();
    }
    // Engines "one", "two" and so on that ask `address` for computed pages.
    void useEngines(const std::vector<std::string>& names, const std::string& address) {
        std::string file = "[Engines]\r\n";
        for (std::size_t i = 0; i < names.size(); ++i)
            file += std::to_string(i + 1) + "=" + names[i] + "\r\n";
        for (const std::string& name : names)
            file +=
                "[" + name + "]\r\nEngineURL=" + address + "\r\nQueryKeyword1=?" + name + "=\r\nNextPage1=?" +
                name + "=\r\nNextPage2=&from=\r\nNextPage3=&n=\r\nLinkType=Button\r\n" +
                "Start=10\r\nPerPage=10\r\nEngineKey=own\r\nNoFoundString=none\r\nResultEndString=zzz\r\n";
        home.write("data/kwreng.dat", file);
        open();
    }
    void open() {
        ranking = std::make_unique<clsRanking>(services, QLocale::c());
        watch(*ranking);
        ASSERT_TRUE(ranking->Load());
        fill(*ranking);
    }
    void watch(clsRanking& what) {
        QObject::connect(&what, &clsRanking::pageSaved, [this](const RankedPage& page) {
            pages.push_back(page.engine + " " + std::to_string(page.page) + " " +
                            std::to_string(page.status));
            if (onPage) onPage();
        });
        QObject::connect(&what, &clsRanking::searchEnded,
                         [this](const RankingEnd& end) { ends.push_back(end); });
    }
    static void fill(clsRanking& what) {
        what.state().setup = {
            "shop", {"www.site-15.example", "www.site-38.example"}, "paper shop", RankLimit::Pages, "2"};
        what.saveProfile("shop");
        what.chkSelectAll_Click(true);
    }
    bool run() {
        const std::size_t before = ends.size();
        return ranking->StartSearch() && waitUntil([&] { return ends.size() > before; });
    }
    std::string saved(const std::string& engine, int page) const {
        return "Reports/Ranking/shop/" + pageFileName(engine, page);
    }

    PracticeWeb web;
    std::unique_ptr<clsRanking> ranking;
    std::vector<std::string> pages;
    std::vector<RankingEnd> ends;
    std::function<void()> onPage;
};

TEST(RankingRun, FindsThePositionsThatThePracticeWebPromises) {
    RankingFixture fixture;
    fixture.usePracticeWeb();
    fixture.ranking->state().setup.limit = RankLimit::Links;
    fixture.ranking->state().setup.pageLinks = "30";
    ASSERT_TRUE(fixture.run());
    ASSERT_TRUE(fixture.ranking->getResults());
    std::vector<std::string> found;
    for (std::size_t engine = 0; engine < fixture.ranking->engines().size(); ++engine) {
        const EngineAnalysis& result = fixture.ranking->analysis()[engine];
        found.push_back(fixture.ranking->engines()[engine].EngineName + ": " + result.sDomainHits(0) + " " +
                        result.sDomainHits(1) + " " + std::string(rankStateName(result.state)) + " " +
                        std::to_string(result.nLinkCount));
    }
    EXPECT_THAT(found, ElementsAre("Harbour Search: 7 30 found 30", "Beacon Finder: 2 25 found 30",
                                   "Lantern Index:  20 found 30", "Compass Web:  15 found 30",
                                   "Anchor Directory:  10 found 30", "Slow Tide:  5 found 10",
                                   "Empty Quay:   nothing found 0", "Old Pier:   no result list 0",
                                   "Gate House:   no result page 0"));
    EXPECT_EQ(fixture.home.read(fixture.saved("Slow Tide", 2)), "Time out");
    EXPECT_EQ(fixture.pages.size(), 27U) << "three pages of nine engines";
    EXPECT_EQ(fixture.ranking->state().StatusBar2, "Search Completed !");
    EXPECT_EQ(fixture.logText().find("_Error"), npos);
}

TEST(RankingRun, SavesEveryAnswerAsItCameAndGoesOn) {
    RankingFixture fixture;
    const FaultServer server([](FaultServer::Peer& peer) {
        const std::string path = peer.path();
        if (path.starts_with("/?two")) return;  // closes without an answer
        if (path.starts_with("/?three")) return (void)peer.send(FaultServer::answer(503, "Out of order"));
        peer.send(FaultServer::answer(200, path));
    });
    fixture.useEngines({"One", "two", "three", "../four"}, server.url("/"));
    fixture.home.write(fixture.saved("one", 2), "older");
    fixture.home.write(fixture.saved("one", 3), "of a longer run");
    ASSERT_TRUE(fixture.run());
    EXPECT_EQ(fixture.home.read(fixture.saved("One", 1)), "/?One=paper+shop");
    EXPECT_EQ(fixture.home.read(fixture.saved("One", 2)), "/?One=paper+shop&from=10&n=10");
    EXPECT_EQ(fixture.home.read(fixture.saved("One", 3)), "of a longer run");
    EXPECT_EQ(fixture.home.read(fixture.saved("two", 2)), "");
    EXPECT_EQ(fixture.home.read(fixture.saved("three", 2)), "Out of order");
    EXPECT_EQ(fixture.home.read(fixture.saved("../four", 1)), "/?../four=paper+shop");
    EXPECT_FALSE(fileExists(fixture.home.path("Reports/Ranking/four1.html")));
    EXPECT_EQ(fixture.ends.at(0).pages, 8);
    EXPECT_EQ(fixture.ranking->state().progressMaximum, 8);
    const Rows& list = fixture.ranking->state().lsvRankingEngines;
    EXPECT_EQ(list.columnTitle(0), "Engines - 4");
    for (int row = 0; row < list.count(); ++row) {
        EXPECT_EQ(list.at(row).subItems[0], "2");
        EXPECT_EQ(list.at(row).subItems[2], "Completed");
    }
}

TEST(RankingRun, EndsEvenWhenNoRequestCanStart) {
    RankingFixture fixture;
    fixture.useEngines({"one", "two"}, "ftp://127.0.0.1/");
    fixture.ranking->state().setup.pageLinks = "40";
    ASSERT_TRUE(fixture.run());
    EXPECT_EQ(fixture.ends.at(0).pages, 80);
    EXPECT_EQ(fixture.pages.at(0), "one 1 10100");
}

TEST(RankingRun, WithoutEnginesSaysSoAndFetchesNothing) {
    RankingFixture fixture;
    fixture.useEngines({"one"}, "http://127.0.0.1:1/");
    fixture.ranking->chkSelectAll_Click(false);
    EXPECT_FALSE(fixture.ranking->StartSearch());
    EXPECT_THAT(fixture.prompts.last().text, HasSubstr("There is no engine selected."));
    const RankingState& state = fixture.ranking->state();
    EXPECT_TRUE(state.offersStart());
    EXPECT_FALSE(state.Command1_1Enabled);
}

TEST(RankingRun, StopsAtEveryStage) {
    // Stopped at the n-th page; 0: before the first one, while one engine never answers.
    for (const int stage : {0, 1, 2, 3}) {
        RankingFixture fixture;
        const FaultServer server([](FaultServer::Peer& peer) {
            if (peer.path().starts_with("/?slow"))
                peer.waitForClose();
            else
                peer.send(FaultServer::answer(200, "page"));
        });
        fixture.useEngines({"one", "slow"}, server.url("/"));
        fixture.ranking->state().setup.pageLinks = "3";
        int left = stage;
        fixture.onPage = [&] {
            if (--left == 0) fixture.ranking->CancelProcess();
        };
        ASSERT_TRUE(fixture.ranking->StartSearch());
        if (stage == 0) fixture.ranking->CancelProcess();
        ASSERT_TRUE(waitUntil([&] { return !fixture.ends.empty(); })) << stage;
        QCoreApplication::processEvents();
        EXPECT_EQ(fixture.ends.size(), 1U);
        EXPECT_TRUE(fixture.ends[0].cancelled);
        EXPECT_LE(fixture.pages.size(), static_cast<std::size_t>(std::max(stage, 1)));
        EXPECT_EQ(fixture.ranking->state().lsvRankingEngines.at(1).subItems[2], "Cancelled");
        EXPECT_EQ(fixture.ranking->state().StatusBar2, "Done");
        fixture.ranking->tickEngines({"one"});
        EXPECT_TRUE(fixture.run()) << "the folder is free again";
    }
}

TEST(RankingRun, RefusesASecondRunOnTheProfile) {
    RankingFixture fixture;
    const FaultServer server([](FaultServer::Peer& peer) { peer.waitForClose(); });
    fixture.useEngines({"one"}, server.url("/"));
    ASSERT_TRUE(fixture.ranking->StartSearch());
    clsRanking other(fixture.services, QLocale::c());
    ASSERT_TRUE(other.Load());
    RankingFixture::fill(other);
    EXPECT_FALSE(other.StartSearch());
    EXPECT_THAT(fixture.prompts.last().text, HasSubstr("already running"));
    EXPECT_TRUE(other.state().offersStart());
    fixture.ranking->CancelProcess();
    EXPECT_TRUE(other.StartSearch());
    other.CancelProcess();
}

TEST(RankingRun, SaysWhenTheFolderGoesAwayAndGoesOn) {
    RankingFixture fixture;
    const FaultServer server([](FaultServer::Peer& peer) { peer.send(FaultServer::answer(200, "page")); });
    fixture.useEngines({"one"}, server.url("/"));
    const std::string folder = fixture.home.path("Reports/Ranking/shop");
    fixture.onPage = [&] { std::filesystem::remove_all(folder); };
    ASSERT_TRUE(fixture.run());
    EXPECT_EQ(fixture.ends.at(0).pages, 1);
    EXPECT_EQ(fixture.ends.at(0).unsaved, 1);
    EXPECT_THAT(fixture.ends.at(0).problem, HasSubstr("No such file"));
    EXPECT_THAT(fixture.logText(), HasSubstr("saveResultPage_Error: 53 - "));
    EXPECT_TRUE(fixture.ranking->getResults()) << "the message about the missing folder";
    EXPECT_THAT(fixture.prompts.last().text, HasSubstr("Please re-run a new search"));
    EXPECT_EQ(fixture.ranking->Report({SaveResults::Never, false}).path, "");
}

TEST(RankingScreen, AsksAndReports) {
    RankingFixture fixture;
    fixture.usePracticeWeb();
    clsRanking& ranking = *fixture.ranking;
    ranking.tickEngines({"harbour search"});
    ranking.txtKeyWord_Change("paper pens");
    fixture.preference.PromptConnection = 1;
    fixture.prompts.answers = {true, true, true, true};  // save, connected, report, results
    QObject::connect(&ranking, &clsRanking::searchEnded,
                     [&ranking](const RankingEnd& end) { ranking.offerReport(end); });
    ranking.Command1_0();
    ASSERT_TRUE(waitUntil(
        [&] { return !fixture.prompts.shown.empty() && fixture.prompts.shown.back().kind == "system"; }));
    std::vector<std::string> shown;
    for (const auto& one : fixture.prompts.shown) shown.push_back(one.kind + " " + one.title);
    EXPECT_THAT(shown, ElementsAre("ask Web Ranking", "ask Web Ranking", "ask Web Ranking",
                                   "ask Save Ranking Results", "system "));
    EXPECT_FALSE(ranking.state().changed);
    EXPECT_TRUE(ranking.state().Command1_0Enabled);
    EXPECT_THAT(fixture.home.read("profile.kwr"), HasSubstr("Engine1=-1;2;7;"));
    EXPECT_THAT(fixture.home.read("profile.kwr"), HasSubstr("Keyword=paper pens"));
}

TEST(RankingScreen, RefusesWhatCannotBeRun) {
    RankingFixture fixture;
    fixture.useEngines({"one"}, "http://127.0.0.1:1/");
    clsRanking& ranking = *fixture.ranking;
    std::vector<SetupField> refused;
    QObject::connect(&ranking, &clsRanking::refused, [&](SetupField field) { refused.push_back(field); });
    ranking.txtKeyWord_Change(std::string(101, 'k'));
    EXPECT_FALSE(ranking.isValidField());
    EXPECT_EQ(refused, std::vector<SetupField>{SetupField::Keywords});
    EXPECT_FALSE(ranking.cmdAddURL_Click("a.b"));
    EXPECT_EQ(fixture.prompts.last().title, "Add URL");
    ranking.cmdAddURL_Click("http://new.example");
    EXPECT_EQ(ranking.state().setup.sites.back(), "new.example");

    fixture.prompts.inputs = {"a/b", "SHOP", "other"};
    ranking.Command2_0();
    EXPECT_THAT(ranking.state().cboProfile, ElementsAre("shop", "other"));
    fixture.prompts.answers = {true};
    ranking.Command2_2();
    EXPECT_THAT(ranking.state().cboProfile, ElementsAre("shop"));
    EXPECT_TRUE(ranking.state().setup.sites.empty());
    ranking.Command2_1();
    EXPECT_THAT(fixture.prompts.last().text, HasSubstr("Please select the profile name"));
}

// The history of a profile as lines "engine site state best".
std::vector<std::string> lines(const HistoryStore& store) {
    std::vector<std::string> found;
    for (const HistoryReading& reading : store.readings("SHOP"))
        for (const HistoryPlace& place : reading.places)
            found.push_back(place.engine + " " + place.site + " " + std::string(rankStateName(place.state)) +
                            " " + std::to_string(place.best));
    return found;
}

TEST(RankingHistory, KeepsEveryReadingOfWhatWasAsked) {
    RankingFixture fixture;
    fixture.usePracticeWeb();
    fixture.ranking->tickEngines({"Harbour Search", "Old Pier"});
    ASSERT_TRUE(fixture.run());
    // Empty Quay was not asked: it has no page.
    fixture.ranking->tickEngines({"Harbour Search", "Empty Quay", "Old Pier"});
    ASSERT_TRUE(fixture.ranking->getResults());
    HistoryStore& history = fixture.ranking->history();
    const std::vector<std::string> first = {
        "Harbour Search www.site-15.example found 7", "Harbour Search www.site-38.example not found 0",
        "Old Pier www.site-15.example no result list 0", "Old Pier www.site-38.example no result list 0"};
    EXPECT_EQ(lines(history), first);

    // The same pages, read with a corrected catalogue.
    std::string catalogue = fixture.home.read("data/kwreng.dat");
    catalogue.replace(catalogue.find("<!-- results -->"), 16, "gone");
    fixture.home.write("data/kwreng.dat", catalogue);
    ASSERT_TRUE(fixture.ranking->loadEngineData());
    fixture.ranking->tickEngines({"Old Pier"});
    ASSERT_TRUE(fixture.ranking->getResults());
    EXPECT_EQ(history.readings("shop").size(), 2U);
    const std::vector<HistoryLine> chart = historyLines(history.readings("shop"));
    ASSERT_EQ(chart.size(), 4U);
    EXPECT_EQ(chart[2].points.size(), 1U) << "the newest reading of the same pages";
}

TEST(RankingHistory, LeavesAFileItCannotUseAsItIs) {
    RankingFixture fixture;
    HistoryStore store(fixture.home.paths());
    HistoryReading reading{"shop", "=paper,", fixture.clock.time, fixture.clock.time, {}};
    reading.places.push_back({"one\xff", "site", RankState::Found, 3, "3,4", 10, fixture.clock.time});
    store.add(reading);
    const std::string good = fixture.home.read("ranking.db");
    EXPECT_THAT(lines(store), ElementsAre("one\xff site found 3"));
    EXPECT_EQ(historyCSV(store.readings(" SHOP ")),
              "fetched,analysed,catalogue,keywords,engine,site,state,best,positions,links\r\n"
              "2002-04-01 13:05:00,2002-04-01 13:05:00,2002-04-01 13:05:00,\"'=paper,\",one\xff,site,found,3,"
              "\"3,4\",10\r\n");

    std::string later = good;
    later[63] = 2;  // user_version
    std::string other = good;
    other[68] = 0;  // application_id
    const std::pair<std::string, const char*> files[] = {
        {later, "a later version"},
        {other, "not written by this program"},
        {good.substr(0, good.size() / 2), "damaged"},
        {std::string(4096, 'x'), "damaged"},
    };
    for (const auto& [bytes, words] : files) {
        fixture.home.write("ranking.db", bytes);
        for (const bool writes : {false, true}) {
            try {
                writes ? store.add(reading) : void(store.readings("shop"));
                ADD_FAILURE() << words;
            } catch (const std::exception& failure) {
                EXPECT_THAT(failure.what(), HasSubstr(words));
            }
        }
        EXPECT_EQ(fixture.home.read("ranking.db"), bytes);
    }
}

TEST(RankingHistory, SaysWhenAnotherProgramHoldsIt) {
    RankingFixture fixture;
    fixture.usePracticeWeb();
    fixture.ranking->tickEngines({"Harbour Search"});
    ASSERT_TRUE(fixture.run());
    ASSERT_TRUE(fixture.ranking->getResults());
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(fixture.home.path("ranking.db").c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_TRUE(fixture.ranking->getResults()) << "the analysis stands";
    EXPECT_THAT(fixture.prompts.last().text, HasSubstr("another program is using it"));
    sqlite3_close(other);
    EXPECT_EQ(fixture.ranking->history().readings("shop").size(), 1U);
}

}  // namespace
}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "SubmissionFixture.h"
#include "core/Failure.h"

#include <QTimer>

#include <filesystem>
#include <gmock/gmock.h>
#include <set>

namespace relay::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string cell(const Rows& rows, int row, std::size_t column) {
    return std::string(rows.at(row).subItems.at(column - 1));
}

TEST(RunTest, OpensNoMoreConnectionsThanEngines) {
    const FaultServer server(statusByPath());
    SubmissionFixture fixture;
    fixture.preference.Connections = 10;
    fixture.selectEngines(SubmissionFixture::records("E", 3, server.url("/200/s")));
    fixture.start({fixture.website("Shop", {"http://a.test/1", "http://a.test/2"})});
    EXPECT_EQ(fixture.controller->state().lsvConnections.count(), 10);
    EXPECT_EQ(fixture.controller->state().ActiveConnections, 3);
    EXPECT_EQ(fixture.controller->state().cmdSubmit, "&Stop");
    ASSERT_TRUE(fixture.waitForEnd());

    // Every engine once a URL, and nothing of the second URL before the first one's end.
    std::multiset<std::string> seen;
    for (std::size_t i = 0; i < fixture.ended.size(); ++i) {
        EXPECT_EQ(fixture.ended[i].url, i < 3 ? "http://a.test/1" : "http://a.test/2");
        seen.insert(fixture.ended[i].engine);
    }
    EXPECT_THAT(seen, ElementsAre("E1", "E1", "E2", "E2", "E3", "E3"));
    EXPECT_EQ(server.requests().size(), 6U);
    EXPECT_THAT(fixture.prompts.statuses,
                testing::IsSupersetOf({"Start submitting ...", "0 engines remaining ..."}));
    ASSERT_EQ(fixture.reports.size(), 2U);
    for (const UrlReport& report : fixture.reports) {
        EXPECT_EQ(report.success, 3);
        EXPECT_TRUE(report.problem.empty());
        EXPECT_TRUE(std::filesystem::exists(report.path));
    }
    EXPECT_NE(fixture.reports[0].path, fixture.reports[1].path);

    const SubmissionState& state = fixture.controller->state();
    EXPECT_EQ(fixture.done->success, 6);
    EXPECT_EQ(fixture.done->urls, 2);
    EXPECT_EQ(state.page, 3);
    EXPECT_EQ(state.Done, -1);
    EXPECT_EQ(state.Running, 0);
    EXPECT_EQ(state.cmdSubmit, "&Submit");
    EXPECT_TRUE(state.lsvSiteSubmitting.empty());
    ASSERT_EQ(state.lsvReport.count(), 2);
    EXPECT_EQ(cell(state.lsvReport, 1, 1), "Site");
    EXPECT_EQ(cell(state.lsvReport, 1, 2), "Finish");
    EXPECT_EQ(std::string(state.lsvReport.at(1).tag), fixture.reports[1].path);
    EXPECT_THAT(fixture.boxes(), ElementsAre("Submit|Submission done !"));
}

// Records that end at once, in a number that nested calls would not survive, around one that is sent.
TEST(RunTest, PassesOverEnginesThatCannotBeSent) {
    const FaultServer server(statusByPath());
    SubmissionFixture fixture;
    fixture.preference.Connections = 2;
    std::string records = SubmissionFixture::records("NoAction", 15000, "");
    records += SubmissionFixture::records("Good", 1, server.url("/200/s"));
    records += "Name=NoMacro\nMethod=GET\nQuery=a=b\nAction=" + server.url("/200/x") + "\n";
    records += SubmissionFixture::records("Bad", 15000, "ftp://127.0.0.1/s");
    fixture.selectEngines(records);
    bool eventLoopRan = false;
    ASSERT_NO_FATAL_FAILURE(fixture.start({fixture.website("Shop", {"http://a.test/1", "http://a.test/2"})}));
    QTimer::singleShot(0, [&] { eventLoopRan = fixture.ended.size() < 15000; });
    ASSERT_TRUE(fixture.waitForEnd());
    EXPECT_TRUE(eventLoopRan);
    EXPECT_EQ(server.requests().size(), 2U);
    EXPECT_EQ(fixture.ended.size(), 2U * 30002);
    EXPECT_EQ(fixture.done->success, 2);
    EXPECT_EQ(fixture.reports.size(), 2U);
    const auto& table = fixture.controller->submit().EngineTable();
    EXPECT_EQ(table[0].Result, Failed);
    EXPECT_EQ(table[15000].Result, Success);
    EXPECT_EQ(table[15001].Result, Failed);
    EXPECT_EQ(table[15002].Result, StartFailed);
    EXPECT_EQ(table[30001].Result, StartFailed);
}

TEST(RunTest, GoesOnWithTheConnectionWhoseEngineEndedAtOnce) {
    const FaultServer server(statusByPath());
    SubmissionFixture fixture;
    fixture.selectEngines(SubmissionFixture::records("None", 2, "") +
                          SubmissionFixture::records("Slow", 2, server.url("/never")));
    fixture.start({fixture.website("Shop", {"http://a.test/"})});
    ASSERT_TRUE(waitUntil([&] { return server.connections() == 2; }));
    const Rows& connections = fixture.controller->state().lsvConnections;
    EXPECT_EQ(cell(connections, 0, 1), "Slow1");
    EXPECT_EQ(cell(connections, 1, 1), "Slow2");
}

TEST(RunTest, EndsWhenNothingCanBeSent) {
    SubmissionFixture fixture;
    fixture.preference.Connections = 32767;
    fixture.selectEngines(SubmissionFixture::records("E", 5, ""));
    fixture.run({fixture.website("Shop", {"http://a.test/1", "http://a.test/2"})});
    EXPECT_EQ(fixture.reports.size(), 2U);
    EXPECT_EQ(fixture.done->failed, 10);
    EXPECT_EQ(cell(fixture.controller->state().lsvConnections, 0, 2), "Invalid SubmitData");
    EXPECT_EQ(fixture.controller->state().lsvConnections.at(0).icon, "Completed");
}

TEST(RunTest, ComesToItsEndWhateverFails) {
    const auto fail = [] { throw Failure("broken"); };
    struct Case final {
        std::function<void(SubmissionController&)> sabotage;
        std::string box;
    };
    for (const Case& given : std::vector<Case>{
             {[](SubmissionController& c) { c.submit().sizeSockets(1); },
              "Error|isFinish_Error: Subscript out of range"},
             {[&](SubmissionController& c) {
                  QObject::connect(&c, &SubmissionController::reportWritten, &c, fail);
              },
              "Error|Module : SubmitIt. broken"},
             {[&](SubmissionController& c) {
                  QObject::connect(&c, &SubmissionController::stateChanged, &c, fail);
              },
              "Error|Module: setSubmitComplete\r\nbroken"},
             {[&](SubmissionController& c) {
                  QObject::connect(&c, &SubmissionController::engineEnded, &c, fail);
              },
              "Submit|Submission done !"},
         }) {
        SubmissionFixture fixture;
        fixture.preference.Connections = 2;
        fixture.selectEngines(SubmissionFixture::records("E", 2, ""));
        fixture.start({fixture.website("Shop", {"http://a.test/"})});
        given.sabotage(*fixture.controller);
        EXPECT_TRUE(fixture.waitForEnd()) << given.box;
        EXPECT_THAT(fixture.boxes(), testing::Contains(given.box));
        EXPECT_FALSE(fixture.controller->isRunning());
        EXPECT_EQ(fixture.controller->state().Running, 0);
        EXPECT_EQ(fixture.reports.size(), 1U);
    }
}

TEST(RunTest, StopsBeforeAnyReply) {
    const FaultServer server(statusByPath());
    SubmissionFixture fixture;
    fixture.preference.Connections = 2;
    fixture.selectEngines(SubmissionFixture::records("Quick", 1, server.url("/200/s")) +
                          SubmissionFixture::records("Slow", 3, server.url("/never")));
    fixture.start({fixture.website("Shop", {"http://a.test/1", "http://a.test/2"})});
    ASSERT_TRUE(waitUntil([&] { return server.connections() == 3; }));
    fixture.clock.time = fixture.clock.time.addSecs(3 * 3600 + 2 * 60 + 1);
    const auto& statuses = fixture.prompts.statuses;
    EXPECT_TRUE(waitUntil([&] { return statuses.back() == "3 :2 :1"; })) << statuses.back();
    EXPECT_TRUE(fixture.controller->cmdSubmit());
    EXPECT_EQ(fixture.controller->state().cmdSubmit, "&Submit");
    // The stop is still under way: the button does nothing.
    EXPECT_FALSE(fixture.controller->cmdSubmit());
    ASSERT_TRUE(fixture.waitForEnd());

    EXPECT_TRUE(fixture.done->stopped);
    EXPECT_EQ(fixture.done->cancelled, 2);
    EXPECT_EQ(fixture.done->success, 1);
    ASSERT_EQ(fixture.reports.size(), 1U);
    std::vector<int> results;
    for (const EngineResult& engine : fixture.controller->submit().EngineTable())
        results.push_back(engine.Result);
    EXPECT_THAT(results, ElementsAre(Success, Cancelled, Cancelled, NotReached));
    const std::string report = fixture.home.read(
        std::filesystem::relative(fixture.reports[0].path, std::filesystem::path(fixture.home.path("")))
            .string());
    EXPECT_THAT(report, HasSubstr("2. Slow2</font></td><td><font face=arial size=2>Cancelled</font>"));
    EXPECT_THAT(report, HasSubstr("3. Slow3</font></td><td><font face=arial size=2>Unknown Error</font>"));
    EXPECT_EQ(fixture.home.read("fail.eng"), "Slow1\r\nSlow2\r\nSlow3\r\n");
    EXPECT_EQ(cell(fixture.controller->state().lsvReport, 0, 2), "Canceled");
    EXPECT_TRUE(fixture.boxes().empty());
    EXPECT_THAT(fixture.logText(), HasSubstr("HTTPMX_Cancelled\r\n"));
    EXPECT_EQ(fixture.controller->submit().socket(1).Stopped, -1);
}

// The stop falls between two chunks of engines that end at once, with no request under way.
TEST(RunTest, StopsWhileNothingIsSent) {
    SubmissionFixture fixture;
    fixture.preference.Connections = 2;
    fixture.selectEngines(SubmissionFixture::records("E", 30000, ""));
    fixture.start({fixture.website("Shop", {"http://a.test/1"})});
    ASSERT_TRUE(waitUntil([&] { return !fixture.ended.empty(); }));
    fixture.controller->cmdSubmit();
    const std::size_t endedAtStop = fixture.ended.size();
    ASSERT_TRUE(fixture.waitForEnd());
    EXPECT_LT(endedAtStop, 30000U);
    EXPECT_EQ(fixture.ended.size(), endedAtStop);
    EXPECT_TRUE(fixture.done->stopped);
    EXPECT_EQ(fixture.reports.size(), 1U);
}

TEST(RunTest, CanBeRunAgainWithMoreEngines) {
    const FaultServer server(statusByPath());
    SubmissionFixture fixture;
    const std::string site = fixture.website("Shop", {"http://a.test/"});
    fixture.selectEngines(SubmissionFixture::records("E", 1, server.url("/500/s")));
    fixture.home.write("fail.eng", "old\r\n");
    fixture.run({site});
    EXPECT_EQ(fixture.home.read("fail.eng"), "E1\r\n");
    fixture.done.reset();
    fixture.selectEngines(SubmissionFixture::records("E", 5, server.url("/200/s")));
    ASSERT_TRUE(fixture.controller->cmdStart());
    ASSERT_TRUE(fixture.controller->cmdSubmit());
    ASSERT_TRUE(fixture.waitForEnd());
    EXPECT_EQ(fixture.done->success, 5);
    EXPECT_EQ(fixture.controller->state().lsvReport.count(), 1);
    EXPECT_EQ(fixture.home.read("fail.eng"), "");
}

TEST(RunTest, GoesOnWhenTheReportCannotBeWritten) {
    const FaultServer server(statusByPath());
    SubmissionFixture fixture;
    fixture.selectEngines(SubmissionFixture::records("E", 1, server.url("/200/s")));
    fixture.home.write("Reports", "a file where the folder should be");
    const std::string site = fixture.website("Shop", {"http://a.test/1", "http://a.test/2"});
    const std::string before = fixture.home.read("Projects/Shop.kws");
    fixture.run({site});
    ASSERT_EQ(fixture.reports.size(), 2U);
    EXPECT_TRUE(fixture.reports[0].path.empty());
    EXPECT_FALSE(fixture.reports[0].problem.empty());
    EXPECT_EQ(fixture.done->success, 2);
    EXPECT_EQ(fixture.home.read("Projects/Shop.kws"), before);
    EXPECT_THAT(fixture.logText(), HasSubstr("CreateReport_Error: "));

    fixture.controller->state().lsvReport.setHighlighted(0, true);
    fixture.controller->viewReport();
    EXPECT_EQ(fixture.prompts.last().text,
              "Report file is corrupted or missing, please re-run the submission again.");
}

TEST(RunTest, KeepsThePasswordOutOfTheLog) {
    const FaultServer server(statusByPath());
    SubmissionFixture fixture("submit /d");
    fixture.selectEngines(
        "Name=G\nMethod=GET\nQuery=p=<password>\nAction=" + server.url("/200/s") +
        "\nName=P\nMethod=POST\nQuery=p=<password>&u=<url>\nAction=" + server.url("/200/s") +
        "\nName=None\nMethod=GET\nQuery=p=<password>\n"
        "\nName=Bad\nMethod=GET\nQuery=p=<password>\nAction=ftp://bad.test/\n");
    fixture.run({fixture.website("Shop", {"http://a.test/"}, "Password=se;cret\r\n")});
    const std::string log = fixture.logText();
    EXPECT_THAT(log, HasSubstr("/200/s?p=********\r\n"));
    EXPECT_THAT(log, HasSubstr("p=********&u=http%3A%2F%2Fa.test%2F\r\n"));
    EXPECT_THAT(log, HasSubstr("Script Error.\r\n Engine: None\r\nSubmitData: p=********\r\n"));
    EXPECT_THAT(log, HasSubstr("URL: ftp://bad.test/?p=********\r\n"));
    EXPECT_THAT(log, testing::Not(HasSubstr("cret")));
    EXPECT_THAT(server.requests(), testing::Contains(HasSubstr("p=se%3Bcret")));
}

}  // namespace

}  // namespace relay::test

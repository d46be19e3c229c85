// SPDX-License-Identifier: GPL-3.0-or-later
#include "SubmissionFixture.h"
#include "core/Failure.h"
#include "core/FileStore.h"

#include <QTimer>

#include <gmock/gmock.h>
#include <set>

namespace relay::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct RunTest : testing::Test, SubmissionFixture {};

std::string cell(const Rows& rows, int row, std::size_t column) {
    return std::string(rows.at(row).subItems.at(column - 1));
}

TEST_F(RunTest, OpensNoMoreConnectionsThanEngines) {
    preference.Connections = 10;
    selectEngines(records("E", 3, "/200/s"));
    start({website("Shop", {"http://a.test/1", "http://a.test/2"})});
    EXPECT_EQ(controller->state().lsvConnections.count(), 10);
    EXPECT_EQ(controller->state().ActiveConnections, 3);
    EXPECT_EQ(controller->state().cmdSubmit, "&Stop");
    ASSERT_TRUE(waitForEnd());

    // Every engine once per URL, and nothing for the second URL before the end of the first.
    std::multiset<std::string> seen;
    for (std::size_t i = 0; i < ended.size(); ++i) {
        EXPECT_EQ(ended[i].url, i < 3 ? "http://a.test/1" : "http://a.test/2");
        seen.insert(ended[i].engine);
    }
    EXPECT_THAT(seen, ElementsAre("E1", "E1", "E2", "E2", "E3", "E3"));
    EXPECT_EQ(server.requests().size(), 6U);
    EXPECT_EQ(controller->state().progressValue, 6);
    EXPECT_EQ(controller->state().progressMaximum, 6);
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_NE(reports[0].path, reports[1].path);

    const SubmissionState& state = controller->state();
    EXPECT_EQ(done->success, 6);
    EXPECT_EQ(done->urls, 2);
    EXPECT_EQ(state.page, 3);
    EXPECT_EQ(state.Done, -1);
    EXPECT_EQ(state.Running, 0);
    EXPECT_EQ(state.cmdSubmit, "&Submit");
    EXPECT_TRUE(state.lsvSiteSubmitting.empty());
    ASSERT_EQ(state.lsvReport.count(), 2);
    EXPECT_EQ(cell(state.lsvReport, 1, 1), "Site");
    EXPECT_EQ(cell(state.lsvReport, 1, 2), "Finish");
    EXPECT_EQ(std::string(state.lsvReport.at(1).tag), reports[1].path);
    EXPECT_THAT(boxes(), ElementsAre("Submit|Submission done !"));
}

// So many records that end at once that nested calls would overflow the stack, around one that is sent.
TEST_F(RunTest, SkipsEnginesThatCannotBeSent) {
    preference.Connections = 2;
    selectEngines(records("NoAction", 15000, "") + records("Good", 1, "/200/s") +
                  "Name=NoMacro\nMethod=GET\nQuery=a=b\nAction=" + server.url("/200/x") + "\n" +
                  records("Bad", 15000, "ftp://127.0.0.1/s"));
    bool eventLoopRan = false;
    ASSERT_NO_FATAL_FAILURE(start({website("Shop", {"http://a.test/1", "http://a.test/2"})}));
    QTimer::singleShot(0, [&] { eventLoopRan = ended.size() < 15000; });
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(eventLoopRan);
    EXPECT_EQ(server.requests().size(), 2U);
    EXPECT_EQ(ended.size(), 2U * 30002);
    EXPECT_EQ(done->success, 2);
    EXPECT_EQ(reports.size(), 2U);
    const auto& table = controller->submit().EngineTable();
    EXPECT_EQ(table[0].Result, Failed);
    EXPECT_EQ(table[15000].Result, Success);
    EXPECT_EQ(table[15001].Result, Failed);
    EXPECT_EQ(table[15002].Result, StartFailed);
    EXPECT_EQ(table[30001].Result, StartFailed);
}

TEST_F(RunTest, GoesOnWithTheConnectionWhoseEngineEndedAtOnce) {
    selectEngines(records("None", 2, "") + records("Slow", 2, "/never"));
    start({website("Shop", {"http://a.test/"})});
    ASSERT_TRUE(waitUntil([&] { return server.connections() == 2; }));
    const Rows& connections = controller->state().lsvConnections;
    EXPECT_EQ(cell(connections, 0, 1), "Slow1");
    EXPECT_EQ(cell(connections, 1, 1), "Slow2");
}

TEST_F(RunTest, EndsWhateverFails) {
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
        fixture.selectEngines(records("E", 2, ""));
        fixture.start({fixture.website("Shop", {"http://a.test/"})});
        given.sabotage(*fixture.controller);
        EXPECT_TRUE(fixture.waitForEnd()) << given.box;
        EXPECT_THAT(fixture.boxes(), testing::Contains(given.box));
        EXPECT_FALSE(fixture.controller->isRunning());
        EXPECT_EQ(fixture.controller->state().Running, 0);
        EXPECT_EQ(fixture.reports.size(), 1U);
    }
}

TEST_F(RunTest, StopsBeforeAnyReply) {
    preference.Connections = 2;
    selectEngines(records("Quick", 1, "/200/s") + records("Slow", 3, "/never"));
    start({website("Shop", {"http://a.test/1", "http://a.test/2"})});
    ASSERT_TRUE(waitUntil([&] { return server.connections() == 3; }));
    clock.time = clock.time.addSecs(3 * 3600 + 2 * 60 + 1);
    EXPECT_EQ(controller->state().StatusBar1, "1 engines remaining ...");
    EXPECT_TRUE(waitUntil([&] { return controller->state().clock == "3 :2 :1"; }));
    EXPECT_TRUE(controller->cmdSubmit());
    EXPECT_EQ(controller->state().cmdSubmit, "&Submit");
    // The stop is still pending: the button does nothing.
    EXPECT_FALSE(controller->cmdSubmit());
    ASSERT_TRUE(waitForEnd());

    EXPECT_TRUE(done->stopped);
    EXPECT_EQ(done->cancelled, 2);
    EXPECT_EQ(done->success, 1);
    ASSERT_EQ(reports.size(), 1U);
    std::vector<int> results;
    for (const EngineResult& engine : controller->submit().EngineTable()) results.push_back(engine.Result);
    EXPECT_THAT(results, ElementsAre(Success, Cancelled, Cancelled, NotReached));
    const std::string report = readFile(reports[0].path);
    EXPECT_THAT(report, HasSubstr("2. Slow2</font></td><td><font face=arial size=2>Cancelled</font>"));
    EXPECT_THAT(report, HasSubstr("3. Slow3</font></td><td><font face=arial size=2>Unknown Error</font>"));
    EXPECT_EQ(home.read("fail.eng"), "Slow1\r\nSlow2\r\nSlow3\r\n");
    EXPECT_EQ(cell(controller->state().lsvReport, 0, 2), "Canceled");
    EXPECT_TRUE(boxes().empty());
    EXPECT_THAT(logText(), HasSubstr("HTTPMX_Cancelled\r\n"));
    EXPECT_EQ(controller->submit().socket(1).Stopped, -1);
}

// The stop comes between two batches of engines that end at once, with no request running.
TEST_F(RunTest, StopsWhileNothingIsSent) {
    preference.Connections = 2;
    selectEngines(records("E", 30000, ""));
    start({website("Shop", {"http://a.test/1"})});
    ASSERT_TRUE(waitUntil([&] { return !ended.empty(); }));
    EXPECT_EQ(cell(controller->state().lsvConnections, 0, 2), "Invalid SubmitData");
    EXPECT_EQ(controller->state().lsvConnections.at(0).icon, "Completed");
    EXPECT_FALSE(catalogue.loadEngineData());
    controller->cmdSubmit();
    const std::size_t endedAtStop = ended.size();
    ASSERT_TRUE(waitForEnd());
    EXPECT_LT(endedAtStop, 30000U);
    EXPECT_EQ(ended.size(), endedAtStop);
    EXPECT_TRUE(done->stopped);
    EXPECT_EQ(reports.size(), 1U);
}

TEST_F(RunTest, CanBeRunAgainWithMoreEngines) {
    const std::string site = website("Shop", {"http://a.test/"});
    selectEngines(records("E", 1, "/500/s"));
    home.write("fail.eng", "old\r\n");
    preference.Connections = 32767;
    run({site});
    EXPECT_EQ(home.read("fail.eng"), "E1\r\n");
    done.reset();
    selectEngines(records("E", 5, "/200/s"));
    ASSERT_TRUE(controller->cmdStart());
    ASSERT_TRUE(controller->cmdSubmit());
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(done->success, 5);
    EXPECT_EQ(controller->state().lsvReport.count(), 1);
    EXPECT_EQ(home.read("fail.eng"), "");
}

TEST_F(RunTest, KeepsThePasswordOutOfTheLog) {
    SubmissionFixture fixture("submit /d");
    fixture.selectEngines(
        "Name=G\nMethod=GET\nQuery=p=<password>\nAction=" + fixture.server.url("/200/s") +
        "\nName=P\nMethod=POST\nQuery=p=<password>&u=<url>\nAction=" + fixture.server.url("/200/s") +
        "\nName=None\nMethod=GET\nQuery=p=<password>\n"
        "\nName=Bad\nMethod=GET\nQuery=p=<password>\nAction=ftp://bad.test/\n");
    fixture.run({fixture.website("Shop", {"http://a.test/"}, "Password=se;cret\r\n")});
    const std::string logged = fixture.logText();
    EXPECT_THAT(logged, HasSubstr("/200/s?p=********\r\n"));
    EXPECT_THAT(logged, HasSubstr("p=********&u=http%3A%2F%2Fa.test%2F\r\n"));
    EXPECT_THAT(logged, HasSubstr("Script Error.\r\n Engine: None\r\nSubmitData: p=********\r\n"));
    EXPECT_THAT(logged, HasSubstr("URL: ftp://bad.test/?p=********\r\n"));
    EXPECT_THAT(logged, testing::Not(HasSubstr("cret")));
    EXPECT_THAT(fixture.server.requests(), testing::Contains(HasSubstr("p=se%3Bcret")));
}

}  // namespace

}  // namespace relay::test

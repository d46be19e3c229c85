// SPDX-License-Identifier: GPL-3.0-or-later
//
// Interrupted runs, their ledgers, and how they are continued.
#include "SubmissionFixture.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Paths.h"
#include "core/Text.h"

#include <atomic>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <sys/resource.h>

namespace relay::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// "site URL engine result" of each, in the order of the plan.
std::vector<std::string> described(const Results& results) {
    std::vector<std::string> all;
    for (int place = 0; place < results.count(); ++place) {
        const PairResult pair = results.at(place);
        all.push_back(std::string(pair.site) + " " + std::string(pair.URL) + " " + std::string(pair.engine) +
                      " " + std::string(pair.word()) + " " + std::string(pair.AddURL));
    }
    std::sort(all.begin(), all.end());
    return all;
}

// Engines that answer, fail or cannot be sent, around one that hangs until `answers` is set.
struct LedgerTest : testing::Test, SubmissionFixture {
    std::atomic<bool> answers = false;
    FaultServer engine{[this](FaultServer::Peer& peer) {
        const std::string path = peer.path();
        if (path.starts_with("/hang") && !answers) return peer.waitForClose();
        peer.send(FaultServer::answer(path.starts_with("/500") ? 500 : 200));
    }};

    std::string engineRecords() const {
        std::string text;
        for (const char* name : {"First", "500", "hang \xE9\"", "None", "Last"}) {
            const std::string start = std::string(name).substr(0, 4);
            text += std::string("Name=") + name + "\nMethod=GET\nQuery=u=<url>\nAddURL=http://add.test/\n";
            if (start != "None") text += "Action=" + engine.url("/" + start) + "\n";
        }
        return text;
    }
    std::vector<std::string> websites() const {
        return {website("Shop", {"http://a.test/1", "http://a.test/2"}, "Title=Shop\r\n"),
                website("Blog", {"http://a.test/1"}, "Title=Blog\r\n")};
    }
    // Leaves a run whose first URL is done and whose second hangs at its third engine.
    void cutOffRun() {
        preference.Connections = 1;
        selectEngines(engineRecords());
        answers = true;
        const std::size_t before = engine.requests().size();
        QObject::connect(&*controller, &SubmissionController::reportWritten, &*controller,
                         [this] { answers = false; });
        ASSERT_NO_FATAL_FAILURE(start(websites()));
        ASSERT_TRUE(waitUntil([&] { return engine.requests().size() == before + 7; }));
        controller.reset();
        answers = true;
        ended.clear();
    }
    void goOn() {
        openController();
        std::optional<CutOffRun> run = controller->cutOffRun();
        ASSERT_TRUE(run);
        ASSERT_TRUE(controller->resume(std::move(*run)));
        ASSERT_TRUE(controller->cmdSubmit());
        ASSERT_TRUE(waitForEnd());
    }
    std::string ledger() const { return home.path("run.jsonl"); }
};

TEST_F(LedgerTest, HasALineBeforeARequestIsSentAndOneWhenItHasEnded) {
    cutOffRun();
    EXPECT_EQ(modeOf(ledger()), 0600U);
    const std::vector<std::string> lines = linesOf(home.read("run.jsonl"));
    ASSERT_EQ(lines.size(), 17U) << home.read("run.jsonl");
    EXPECT_THAT(lines[0], testing::StartsWith(R"({"event":"ledger","version":1,"time":")"));
    for (const char* key : {"\"catalogue\":{", "\"settings\":\"", "\"websites\":[{"})
        EXPECT_THAT(lines[0], HasSubstr(key));
    const std::string site = home.path("Projects/Shop.kws");
    const std::string time = "\"time\":\"" + clock.time.toUTC().toString(Qt::ISODate).toStdString() + "\"";
    const std::string pair =
        time + ",\"website\":\"" + site + "\",\"url\":\"http://a.test/1\",\"engine\":\"First\"";
    EXPECT_EQ(lines[1], "{\"event\":\"start\"," + pair + "}");
    EXPECT_THAT(lines[2],
                testing::MatchesRegex("\\{\"event\":\"engine\"," + pair +
                                      ",\"code\":200,\"result\":2,\"word\":\"Success\",\"ms\":[0-9]+\\}"));
    EXPECT_THAT(lines[7], HasSubstr(R"("engine":"None","code":0,"result":3)"));  // never sent
    EXPECT_THAT(lines[16], HasSubstr(R"("event":"start")"));
    EXPECT_THAT(lines[16], HasSubstr(R"("engine":"hang \\xE9\"")"));
    EXPECT_THAT(home.read("run.jsonl"), Not(HasSubstr("Title")));
}

// The same as a run that was never cut off: results, reports, fail.eng, website files, summary.
TEST_F(LedgerTest, GoesOnAsIfNothingHadHappened) {
    SubmissionFixture whole;
    whole.preference.Connections = 1;
    whole.selectEngines(engineRecords());
    answers = true;
    whole.run({whole.website("Shop", {"http://a.test/1", "http://a.test/2"}, "Title=Shop\r\n"),
               whole.website("Blog", {"http://a.test/1"}, "Title=Blog\r\n")});
    const std::size_t before = engine.requests().size();

    cutOffRun();
    std::ofstream(ledger(), std::ios::app) << "{\"event\":\"engine\",\"time\":\"20";  // torn
    const std::optional<CutOffRun> run = findCutOffRun(home.paths().AppPath);
    ASSERT_TRUE(run);
    EXPECT_EQ(run->left(), 8);
    ASSERT_EQ(run->inFlight.size(), 1U);
    EXPECT_EQ(run->plan.engines[run->inFlight[0].engine], "hang \xE9\"");
    goOn();

    EXPECT_EQ(engine.requests().size() - before, 12U + 1U);  // the one in flight twice
    EXPECT_EQ(ended.size(), 8U);
    EXPECT_EQ(described(controller->state().results), described(whole.controller->state().results));
    EXPECT_EQ(done->success, whole.done->success);
    EXPECT_EQ(done->failed, whole.done->failed);
    EXPECT_EQ(done->urls, 3);
    EXPECT_EQ(done->sharedReports, whole.done->sharedReports);
    EXPECT_EQ(reports.size(), 3U);  // one of them before
    EXPECT_EQ(home.read("fail.eng"), whole.home.read("fail.eng"));
    for (const char* file :
         {"Projects/Shop.kws", "Projects/Blog.kws", "Reports/Submition/a.test_1(2002-Apr-01-1305).html",
          "Reports/Submition/a.test_2(2002-Apr-01-1305).html"})
        EXPECT_EQ(replaceAll(home.read(file), home.paths().AppPath, ""),
                  replaceAll(whole.home.read(file), whole.home.paths().AppPath, ""));
    EXPECT_EQ(texts(controller->state().lsvReport), texts(whole.controller->state().lsvReport));
    EXPECT_FALSE(fileExists(ledger()));
    EXPECT_FALSE(controller->cutOffRun());
}

// Killed between the report and its line.
TEST_F(LedgerTest, WritesNoSecondReportOfAUrl) {
    cutOffRun();
    const std::string whole = home.read("run.jsonl");
    const std::size_t report = whole.find("{\"event\":\"report\"");
    ASSERT_NE(report, npos);
    home.write("run.jsonl", whole.substr(0, report));
    goOn();
    EXPECT_THAT(home.read("Projects/Shop.kws"), HasSubstr("LastReport=2\r\n"));
    EXPECT_EQ(done->urls, 3);
}

TEST_F(LedgerTest, RefusesToGoOnWithSomethingElse) {
    const struct {
        std::function<void()> change;
        std::string named;  // empty: it may be continued
    } cases[] = {
        {[&] { loadEngines(engineRecords() + "# comment\n"); }, "the engine file krveng5.dat"},
        {[&] { loadEngines(engineRecords(), "[Free For All Links]\nX=1\n"); }, "the engine file catkws.dat"},
        {[&] { home.write("country.kws", "[Country Name]\r\nX=1\r\n"); }, "the engine file country.kws"},
        {[&] { session.settings.setValue(kApplication, "Preference", "BlockSpam", "1"); },
         "the setting BlockSpam"},
        {[&] { WriteIniValue(home.path("Projects/Blog.kws"), "Web Site Info", "Email", "x@y.test"); },
         "the website file " + home.path("Projects/Blog.kws")},
        {[&] { WriteIniValue(home.path("Projects/Shop.kws"), "URL", "URL2", "http://b.test/"); },
         "the website file " + home.path("Projects/Shop.kws")},
        {[&] { removeFile(home.path("Projects/Blog.kws")); },
         "the website file " + home.path("Projects/Blog.kws")},
        {[&] { WriteIniValue(home.path("Projects/Shop.kws"), "Report", "URL9", "x"); }, ""},
    };
    cutOffRun();
    openController();
    const std::optional<CutOffRun> run = controller->cutOffRun();
    ASSERT_TRUE(run);
    for (const auto& given : cases) {
        SCOPED_TRACE(given.named);
        ASSERT_TRUE(loadEngines(engineRecords()));
        home.write("country.kws", "");
        session.settings.setValue(kApplication, "Preference", "BlockSpam", "0");
        websites();
        given.change();
        EXPECT_EQ(controller->resume(*run), given.named.empty());
        if (given.named.empty()) continue;
        EXPECT_THAT(prompts.last().text, testing::EndsWith("Changed since it began:\r\n" + given.named));
        EXPECT_TRUE(controller->cutOffRun());  // nothing is lost
    }
}

TEST_F(LedgerTest, UsesTheAnswerThatTheRunWasGiven) {
    preference.BlockSpam = 1;  // answered, not kept
    cutOffRun();
    preference.BlockSpam = 0;
    goOn();
    EXPECT_EQ(preference.BlockSpam, 1);
}

TEST_F(LedgerTest, ReadsOnlyWhatIsALedger) {
    cutOffRun();
    const std::string whole = home.read("run.jsonl");
    const std::string head = whole.substr(0, whole.find('\n') + 1);
    const struct {
        std::string text;
        const char* expected;  // "run", "over", or words of the refusal
    } cases[] = {
        {whole, "run"},
        {head, "run"},
        {whole + "{\"event\":\"of another kind\"}\n\x01\n[1]\n{}\n7\n", "run"},
        {whole + "{\"event\":\"done\"}\n", "over"},
        {"", "over"},
        {head.substr(0, head.size() / 2), "over"},  // nothing was sent yet
        {"<html>", "no ledger"},
        {"{\"event\":\"engine\"}\n", "no ledger"},
        {replaceAll(head, "\"version\":1", "\"version\":2"), "no ledger"},
        {replaceAll(head, "\"engines\":[", "\"engines\":[7,"), "no ledger"},
        {replaceAll(head, "{\"url\":\"http://a.test/2\"}", "{\"url\":\"u\",\"engines\":[1,99]}"),
         "no ledger"},
        {replaceAll(head, "6572", "6"), "run"},
        {replaceAll(head, "{\"hex\":\"", "{\"hex\":\"0"), "no ledger"},
        {whole + std::string(2000000, 'x') + "\n{\"event\":\"done\"}\n", "over"},
        {std::string(1000000, '['), "no ledger"},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.text.substr(0, 60));
        home.write("run.jsonl", given.text);
        std::string outcome;
        try {
            outcome = readLedger(ledger()) ? "run" : "over";
        } catch (const Failure& failure) {
            outcome = failure.what();
        }
        EXPECT_THAT(outcome, HasSubstr(given.expected));
    }
    // A file that is somebody's stays, and the run takes another.
    openController();
    EXPECT_FALSE(controller->cutOffRun());
    EXPECT_THAT(logText(), HasSubstr("run.jsonl: This is no ledger"));
    ASSERT_NO_FATAL_FAILURE(run(websites()));
    EXPECT_EQ(home.read("run.jsonl"), std::string(1000000, '['));
}

TEST_F(LedgerTest, BelongsToOneProgramAtATime) {
    cutOffRun();
    const std::string path = home.paths().AppPath;
    const std::optional<CutOffRun> run = findCutOffRun(path);
    ASSERT_TRUE(run);
    LedgerHead head = run->head;
    {
        Ledger other;
        other.goOn(run->path, run->size);
        EXPECT_FALSE(findCutOffRun(path));
        Ledger third;
        EXPECT_THROW(third.goOn(run->path, run->size), Failure);
    }
    // Each run that was cut off stays until there are nine; then the oldest goes.
    for (int number = 2; number <= kMostLedgers; ++number) {
        Ledger next;
        head.time = head.time.addSecs(60);
        next.begin(path, head, run->plan);
        EXPECT_TRUE(fileExists(ledgerPath(path, number)));
    }
    EXPECT_EQ(findCutOffRun(path)->path, ledgerPath(path, kMostLedgers));
    Ledger tenth;
    tenth.begin(path, head, run->plan);
    EXPECT_GT(readLedger(ledgerPath(path, 1))->head.time, run->head.time);
    // Continued by another program meanwhile.
    tenth.leave();
    EXPECT_THROW(tenth.goOn(run->path, run->size + 1), Failure);
}

TEST_F(LedgerTest, GoesAwayOnAFullDiskAndTheRunGoesOn) {
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    preference.Connections = 3;
    selectEngines(records("E", 300, "/200/s"));
    std::vector<std::string> problems;
    QObject::connect(&*controller, &SubmissionController::ledgerFailed, &*controller,
                     [&](const std::string& problem) { problems.push_back(problem); });
    ASSERT_NO_FATAL_FAILURE(start(websites()));
    ASSERT_TRUE(waitUntil([&] { return ended.size() > 5; }));
    rlimit full = before;
    full.rlim_cur = static_cast<rlim_t>(home.read("run.jsonl").size()) + 100;
    setrlimit(RLIMIT_FSIZE, &full);
    const bool over = waitForEnd();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    ASSERT_TRUE(over);
    EXPECT_EQ(done->success, 900);
    EXPECT_THAT(problems, ElementsAre(HasSubstr("run.jsonl: File too large")));
    EXPECT_THAT(logText(), HasSubstr("Ledger: "));
    EXPECT_FALSE(fileExists(ledger()));
}

TEST_F(LedgerTest, LeavesOutWhatTheUserTookOutOfTheRun) {
    preference.Connections = 1;
    selectEngines(engineRecords());
    ASSERT_NO_FATAL_FAILURE(start(websites()));
    ASSERT_TRUE(waitUntil([&] { return engine.requests().size() == 3; }));
    controller->state().lsvSiteSubmitting.setHighlighted(1, true);
    controller->cmdRemove();
    prompts.answers = {true};
    EXPECT_TRUE(controller->closing());  // in the middle
    controller.reset();
    ended.clear();
    answers = true;
    goOn();
    for (const Ended& pair : ended) EXPECT_EQ(pair.url, "http://a.test/1");
    EXPECT_EQ(ended.size(), 3U + 5U);
    EXPECT_EQ(reports.size(), 2U);
}

TEST_F(LedgerTest, RunsExactlyThePairsAgainThatDidNotSucceed) {
    preference.Connections = 2;
    selectEngines(records("E", 3, "/200/s") + engineRecords());
    answers = true;
    run(websites());
    EXPECT_EQ(controller->state().results.countOf(Success), 3 * 6);
    done.reset();
    ended.clear();
    reports.clear();
    ASSERT_TRUE(controller->runFailedAgain());
    EXPECT_EQ(controller->state().page, 2);
    // Only the second URL of the first website and the other website's, by one engine less each time.
    controller->state().lsvSiteSubmitting.setHighlighted(0, true);
    controller->cmdRemove();
    ASSERT_TRUE(controller->cmdSubmit());
    ASSERT_TRUE(waitForEnd());
    std::vector<std::string> sent;
    for (const Ended& pair : ended) sent.push_back(pair.url + " " + pair.engine);
    std::sort(sent.begin(), sent.end());
    EXPECT_THAT(sent, ElementsAre("http://a.test/1 500", "http://a.test/1 None", "http://a.test/2 500",
                                  "http://a.test/2 None"));
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_EQ(reports[0].success + reports[0].failed, 2);
    EXPECT_EQ(home.read("fail.eng"), "500\r\nNone\r\n500\r\nNone\r\n");
    EXPECT_THAT(resultsAsCSV(controller->state().results),
                HasSubstr(home.path("Projects/Blog.kws") +
                          ",http://a.test/1,None,3,Failed,0,0,http://add.test/\r\n"));
}

// What a stop kept from being sent did not succeed either; what the user removed is left out.
TEST_F(LedgerTest, RunsWhatAStopKeptFromBeingSent) {
    preference.Connections = 1;
    selectEngines(engineRecords());
    ASSERT_NO_FATAL_FAILURE(start(websites()));
    ASSERT_TRUE(waitUntil([&] { return engine.requests().size() == 3; }));
    controller->state().lsvSiteSubmitting.setHighlighted(1, true);
    controller->cmdRemove();
    controller->cmdSubmit();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(controller->state().results.count(), 3);
    EXPECT_EQ(controller->state().results.countNotSucceeded(), 4 + 5);
    done.reset();
    ended.clear();
    answers = true;
    ASSERT_TRUE(controller->runFailedAgain());
    ASSERT_TRUE(controller->cmdSubmit());
    ASSERT_TRUE(waitForEnd());
    std::vector<std::string> sent;
    for (const Ended& pair : ended) sent.push_back(pair.url + " " + pair.engine);
    EXPECT_THAT(sent,
                ElementsAre("http://a.test/1 500", "http://a.test/1 hang \xE9\"", "http://a.test/1 None",
                            "http://a.test/1 Last", "http://a.test/1 First", "http://a.test/1 500",
                            "http://a.test/1 hang \xE9\"", "http://a.test/1 None", "http://a.test/1 Last"));
}

// A website file that goes in the middle leaves its fields to the URLs that follow; where they were never
// read, nothing is sent in their place.
TEST_F(LedgerTest, SendsNothingInTheNameOfAWebsiteThatHasGone) {
    preference.Connections = 1;
    selectEngines("Name=E\nMethod=GET\nQuery=t=<title>\nAction=" + engine.url("/s") + "\n");
    ASSERT_NO_FATAL_FAILURE(prepare(websites()));
    QObject::connect(&*controller, &SubmissionController::reportWritten, &*controller, [&] {
        if (reports.size() != 1) return;
        removeFile(home.path("Projects/Shop.kws"));
        removeFile(home.path("Projects/Blog.kws"));
    });
    clock.time = clock.time.addSecs(3600);  // asleep for an hour
    ASSERT_TRUE(controller->cmdSubmit());
    clock.time = clock.time.addSecs(-7200);
    ASSERT_TRUE(waitForEnd());
    std::vector<std::string> requests;
    for (const std::string& request : engine.requests())
        requests.push_back(request.substr(0, request.find(' ', 4)));
    EXPECT_THAT(requests, ElementsAre("GET /s?t=Shop", "GET /s?t=Shop"));
    ASSERT_EQ(ended.size(), 3U);
    EXPECT_EQ(ended[2].result, Failed);
    EXPECT_THAT(reports.at(2).problem, HasSubstr("The website file has gone"));
    EXPECT_FALSE(fileExists(home.path("Projects/Shop.kws")));
}

}  // namespace

}  // namespace relay::test

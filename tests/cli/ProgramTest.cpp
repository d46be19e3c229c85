// SPDX-License-Identifier: GPL-3.0-or-later
//
// The program as a process: signals, streams and exit codes.
#include "core/Text.h"
#include "practice/PracticeWeb.h"
#include "support/TestHome.h"

#include <QProcess>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <sys/types.h>

namespace relay::test {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ProgramTest : public testing::Test {
  protected:
    void SetUp() override {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("KORVEL_RELAY_HOME"),
                           QString::fromStdString(m_home.paths().AppPath));
        environment.insert(QStringLiteral("KORVEL_RELAY_DATA"), QStringLiteral(RELAY_DATA_FOLDER));
        m_process.setProcessEnvironment(environment);
    }
    void TearDown() override {
        if (m_process.state() == QProcess::NotRunning) return;
        m_process.kill();
        m_process.waitForFinished();
    }

    // Through the shell, so that a case can redirect streams: "$PROGRAM" stands for the program.
    void startShell(const std::string& script) {
        QProcessEnvironment environment = m_process.processEnvironment();
        environment.insert(QStringLiteral("PROGRAM"), QStringLiteral(RELAY_CLI_PROGRAM));
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QString::fromStdString(script)});
    }
    int run(const std::string& script) {
        startShell(script);
        return finish();
    }
    void startProgram(const QStringList& arguments) {
        m_process.start(QStringLiteral(RELAY_CLI_PROGRAM), arguments);
    }
    int finish() {
        EXPECT_TRUE(m_process.waitForFinished());
        EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
        m_out += m_process.readAllStandardOutput().toStdString();
        m_err += m_process.readAllStandardError().toStdString();
        return m_process.exitCode();
    }
    bool waitForOutput(const std::string& text) {
        while (m_out.find(text) == std::string::npos) {
            if (!m_process.waitForReadyRead()) return false;
            m_out += m_process.readAllStandardOutput().toStdString();
        }
        return true;
    }
    void signal(int number) { ::kill(static_cast<pid_t>(m_process.processId()), number); }

    // Engines on the practice web, each named after the outcome it plays (and a number, where there are
    // many).
    void useEngines(const std::vector<std::string>& outcomes) {
        m_web.start();
        std::string engines;
        for (const std::string& outcome : outcomes)
            engines += "Name=" + outcome + (outcomes.size() > 9 ? std::to_string(engines.size()) : "") +
                       "\r\nMethod=POST\r\nQuery=u=<URL>\r\nAction=" + m_web.address() + "/engines/x/" +
                       outcome + "\r\n";
        m_home.write("data/krveng5.dat", engines);
        m_home.write("data/catkws.dat", "[General For All Links]\r\nEND\r\n");
    }
    // A website, one engine that answers and two that never do.
    QStringList stuckSubmission() {
        useEngines({"submit", "never", "stall"});
        m_home.writeWebsite("site.kws", {"http://a.test/", "http://b.test/"});
        return {QStringLiteral("submit"), QStringLiteral("--json"), QStringLiteral("--all"),
                QStringLiteral("--website"), QString::fromStdString(m_home.path("site.kws"))};
    }

    // Two websites with three URLs, and engines of which one takes a second.
    QStringList longSubmission(int engineCount) {
        m_web.start();
        m_home.write("country.kws", "");
        m_home.write("data/catkws.dat", "[General For All Links]\r\nEND\r\n");
        std::string engines;
        for (int i = 1; i <= engineCount; ++i)
            engines += "Name=E" + std::to_string(i) +
                       "\r\nMethod=POST\r\nQuery=u=<URL>&t=<TITLE>&e=" + std::to_string(i) +
                       "&x=<entryby>\r\n" + "Action=" + m_web.address() + "/engines/x/" +
                       (i == engineCount / 2 ? "slow"
                        : i % 7 == 0         ? "500"
                                             : "submit") +
                       "\r\n";
        m_home.write("data/krveng5.dat", engines);
        return {QStringLiteral("submit"),
                QStringLiteral("--json"),
                QStringLiteral("--all"),
                QStringLiteral("--connections"),
                QStringLiteral("5"),
                QStringLiteral("--website"),
                QString::fromStdString(
                    m_home.writeWebsite("a.kws", {"http://a.test/1", "http://a.test/2"}, "Title=A\r\n")),
                QString::fromStdString(m_home.writeWebsite("b.kws", {"http://a.test/1"}, "Title=B\r\n"))};
    }
    // "E1 http://a.test/1" of each event of the kind that the program told, and the website's name where the
    // event has it.
    std::multiset<std::string> toldPairs(const std::string& kind) const {
        std::multiset<std::string> pairs;
        std::istringstream lines(m_out);
        for (std::string line; std::getline(lines, line);) {
            const nlohmann::json event = nlohmann::json::parse(line, nullptr, false);
            if (event.is_discarded() || event["event"] != kind) continue;
            std::string pair = event["engine"].get<std::string>() + " " + event["url"].get<std::string>();
            if (event.contains("website")) pair += event["website"] == m_home.path("a.kws") ? " A" : " B";
            pairs.insert(pair);
        }
        return pairs;
    }

    TestHome m_home;
    PracticeWeb m_web;
    QProcess m_process;
    std::string m_out;
    std::string m_err;
};

}  // namespace

TEST_F(ProgramTest, CtrlCStopsARunAsTheStopButtonDoes) {
    const QStringList command = stuckSubmission();
    for (const int number : {SIGINT, SIGTERM}) {
        SCOPED_TRACE(number);
        m_out.clear();
        startProgram(command);
        ASSERT_TRUE(waitForOutput("\"engine\":\"submit\""));
        signal(number);
        EXPECT_EQ(finish(), 130);
        const std::string last = m_out.substr(m_out.rfind('\n', m_out.size() - 2) + 1);
        const nlohmann::json done = nlohmann::json::parse(last);
        EXPECT_EQ(done["event"], "done");
        EXPECT_EQ(done["success"], 1);
        EXPECT_EQ(done["cancelled"], 2);
    }
    EXPECT_THAT(m_home.read("site.kws"), HasSubstr("LastReport=2\r\n"));
}

TEST_F(ProgramTest, ASecondCtrlCLeavesAtOnce) {
    startProgram(stuckSubmission());
    ASSERT_TRUE(waitForOutput("\"engine\":\"submit\""));
    signal(SIGINT);
    signal(SIGTERM);  // another number, or the system could merge the two
    EXPECT_EQ(finish(), 130);
    EXPECT_EQ(m_out.find("\"event\":\"done\""), std::string::npos);
}

// Killed four times at places that differ; what the practice web received is what counts.
TEST_F(ProgramTest, AKilledRunGoesOnAndSendsNothingTwiceButWhatWasInFlight) {
    constexpr int kEngines = 40;
    QStringList command = longSubmission(kEngines);
    std::multiset<std::string> told;
    std::multiset<std::string> named;
    for (const std::size_t killAfter : {1U, 30U, 25U, 39U}) {
        m_out.clear();
        startProgram(command);
        while (toldPairs("engine").size() < killAfter && m_process.waitForReadyRead())
            m_out += m_process.readAllStandardOutput().toStdString();
        m_process.kill();
        m_process.waitForFinished();
        m_out += m_process.readAllStandardOutput().toStdString();
        told.merge(toldPairs("engine"));
        named.merge(toldPairs("again"));
        command = QStringList{QStringLiteral("submit"),
                              QStringLiteral("--resume"),
                              QStringLiteral("--json"),
                              QStringLiteral("--connections"),
                              QStringLiteral("5"),
                              QStringLiteral("--csv"),
                              QString::fromStdString(m_home.path("all.csv"))};
    }
    m_out.clear();
    startProgram(command);
    EXPECT_EQ(finish(), 1) << m_err;  // an engine in seven does not succeed
    told.merge(toldPairs("engine"));
    named.merge(toldPairs("again"));

    std::map<std::string, std::size_t> received;
    for (const ReceivedSubmission& one : m_web.received())
        ++received["E" + one.fields.at(2).second + " " + one.fields.at(0).second + " " +
                   one.fields.at(1).second];
    EXPECT_EQ(received.size(), 3U * kEngines);
    for (const auto& [pair, times] : received) {
        const std::string withoutTitle = pair.substr(0, pair.rfind(' '));
        EXPECT_LE(times, 1 + named.count(pair)) << pair;
        EXPECT_LE(told.count(withoutTitle), withoutTitle.ends_with("/1") ? 2U : 1U) << pair;
    }
    EXPECT_FALSE(named.empty());
    EXPECT_LE(named.size(), 4U * 5);
    // One report a URL, and a table of the whole run.
    EXPECT_THAT(m_home.read("a.kws"), HasSubstr("LastReport=2\r\n"));
    EXPECT_THAT(m_home.read("b.kws"), HasSubstr("LastReport=1\r\n"));
    const std::string table = m_home.read("all.csv");
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 1 + 3 * kEngines);
    EXPECT_THAT(m_out, HasSubstr(R"("event":"done","urls":3,"success":105,"failed":15)"));
    EXPECT_EQ(run("\"$PROGRAM\" submit --resume"), 3);
    EXPECT_THAT(m_err, EndsWith("There is no interrupted run to continue.\n"));
}

TEST_F(ProgramTest, ThePracticeWebRunsUntilStoppedAndIsFoundThroughTheHome) {
    startProgram({QStringLiteral("practice")});
    ASSERT_TRUE(waitForOutput("\n"));
    EXPECT_THAT(m_out, StartsWith("http://127.0.0.1:"));
    const std::string address = m_out.substr(0, m_out.size() - 2);
    EXPECT_EQ(m_home.read("practice.addr"), address + "\n");

    QProcess install;
    install.setProcessEnvironment(m_process.processEnvironment());
    install.start(QStringLiteral(RELAY_CLI_PROGRAM),
                  {QStringLiteral("engines"), QStringLiteral("install"), QStringLiteral("--practice")});
    ASSERT_TRUE(install.waitForFinished());
    EXPECT_EQ(install.exitCode(), 0) << install.readAllStandardError().toStdString();
    EXPECT_THAT(m_home.read("data/krveng5.dat"), HasSubstr("Action=" + address + "/"));

    signal(SIGTERM);
    EXPECT_EQ(finish(), 130);
    EXPECT_FALSE(std::filesystem::exists(m_home.path("practice.addr")));

    // A killed practice web leaves its address behind, but does not answer.
    m_home.write("practice.addr", address + "\n");
    EXPECT_EQ(run("\"$PROGRAM\" engines install --practice --replace"), 3);
    EXPECT_THAT(m_err, HasSubstr("does not answer"));
}

TEST_F(ProgramTest, OpensNoMoreConnectionsThanItMayOpenFiles) {
    useEngines(std::vector<std::string>(300, "submit"));
    const std::string site = m_home.writeWebsite("site.kws", {"http://a.test/"});
    EXPECT_EQ(run("ulimit -n 128 && \"$PROGRAM\" submit --all --connections 300 --website " + site), 0)
        << m_out;
    EXPECT_THAT(m_err, testing::ContainsRegex("^Submit: Opening [0-9]+ of 300 connections: "));
}

TEST_F(ProgramTest, ResultsThatCannotBeWrittenAreAFailure) {
    EXPECT_EQ(run("\"$PROGRAM\" engines install"), 0);
    const std::tuple<const char*, int, const char*> cases[] = {
        {"$PROGRAM engines list > /dev/full", 3, "The results could not be written: No space left on device"},
        {"$PROGRAM engines list --json > /dev/full", 3, "The results could not be written: No space left"},
        {"$PROGRAM --help > /dev/full", 3, "The results could not be written"},
        {"$PROGRAM engines list >&-", 3, "The results could not be written: Bad file descriptor"},
        {"$PROGRAM engines list <&- >/dev/null 2>&-", 0, ""},
        {"{ $PROGRAM engines list; echo $? >&2; } | true", 0, "3\n"}};  // quiet about a reader who left
    for (const auto& [script, code, words] : cases) {
        SCOPED_TRACE(script);
        m_err.clear();
        EXPECT_EQ(run(replaceAll(script, "$PROGRAM", "\"$PROGRAM\"")), code);
        EXPECT_THAT(m_err, StartsWith(words));
        EXPECT_THAT(m_out, IsEmpty());
    }
}

TEST_F(ProgramTest, TheInstalledCataloguesPassTheCheck) {
    for (const std::string which : {"", " --replace --practice --practice-address 127.0.0.1:4711"}) {
        EXPECT_EQ(run("\"$PROGRAM\" --quiet engines install" + which + " && \"$PROGRAM\" engines check"), 0)
            << m_out << m_err;
        EXPECT_THAT(m_err, EndsWith("Nothing found.\n"));
        m_err.clear();
    }
}

TEST_F(ProgramTest, TwoProgramsAtOnceLoseNothing) {
    const std::string script = "cd " + m_home.path("") +
                               " && \"$PROGRAM\" website set s.kws Title=x && for i in 1 2 3 4 5 6; do " +
                               "\"$PROGRAM\" website add-url s.kws http://a.test/$i & \"$PROGRAM\" website "
                               "set s.kws Fax=$i & done; wait";
    EXPECT_EQ(run(script), 0) << m_err;
    const std::string file = m_home.read("s.kws");
    EXPECT_THAT(file, HasSubstr("LastURL=6\r\n"));
    for (int i = 1; i <= 6; ++i) EXPECT_THAT(file, HasSubstr("=http://a.test/" + std::to_string(i) + "\r\n"));
}

}  // namespace relay::test

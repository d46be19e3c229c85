// SPDX-License-Identifier: GPL-3.0-or-later
//
// The command "submit" on a practice web of the test's own.
#include "CommandLineFixture.h"
#include "practice/PracticeWeb.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace relay::test {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// One object per line, and nothing else.
std::vector<nlohmann::json> parseLines(const std::string& text) {
    std::vector<nlohmann::json> objects;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) objects.push_back(nlohmann::json::parse(line));
    return objects;
}

class SubmitTest : public testing::Test {
  protected:
    void SetUp() override {
        m_web.start();
        m_cli.home.write("country.kws", "[Country Name]\r\n[Country Code]\r\n");
        m_cli.home.write("data/catkws.dat", "[General For All Links]\r\nOther=1\r\nEND\r\n");
    }

    // Engines of type ENG, named after the outcome they play, with an optional ending.
    void useEngines(const std::vector<std::string>& outcomes, const std::string& ending = {}) {
        std::string text;
        for (const std::string& outcome : outcomes)
            text += "Name=" + outcome + ending +
                    "\r\nType=ENG\r\nCategory=N\r\nMethod=POST\r\nAction=" + m_web.address() + "/engines/" +
                    outcome + "/" + outcome + "\r\nQuery=url=<URL>&title=<TITLE>\r\n";
        m_cli.home.write("data/krveng5.dat", text);
    }
    std::string website(const std::string& name, const std::vector<std::string>& urls) {
        return m_cli.home.writeWebsite(name + ".kws", urls, "Title=" + name + "\r\n");
    }
    std::vector<std::string> receivedUrls() const {
        std::vector<std::string> urls;
        for (const ReceivedSubmission& received : m_web.received())
            urls.push_back(received.fields.at(0).second);
        return urls;
    }

    CommandLineFixture m_cli;
    PracticeWeb m_web;
};

}  // namespace

TEST_F(SubmitTest, WarnsOfAnEmptyPasswordThatAnEngineIsSent) {
    useEngines({"submit"});
    const std::string engines = m_cli.home.read("data/krveng5.dat");
    m_cli.home.write("data/krveng5.dat",
                     engines +
                         "Name=Keyed\r\nType=ENG\r\nCategory=N\r\nMethod=GET\r\nAction=" + m_web.address() +
                         "/engines/keyed/submit\r\n" + "Query=url=<URL>&key=<Password>\r\n");
    const std::string open = website("open", {"http://a.test/"});
    const std::string keyed =
        m_cli.home.writeWebsite("keyed.kws", {"http://b.test/"}, "Title=b\r\nPassword=k3y\r\n");
    const auto warned = [&](std::vector<std::string> options) {
        options.insert(options.begin(), {"submit", "--website", open, keyed});
        return m_cli.run(options).err;
    };
    EXPECT_THAT(warned({"--engine", "submit"}), Not(HasSubstr("password")));
    EXPECT_THAT(warned({"--all", "--quiet"}), Not(HasSubstr("password")));
    const std::string told = warned({"--all"});
    EXPECT_THAT(told, HasSubstr(open + ": The website has no password, but Keyed would be sent it."));
    EXPECT_THAT(told, Not(HasSubstr(keyed + ": The website has no password")));
}

TEST_F(SubmitTest, SubmitsTheUrlsOfAllWebsitesInOrderAndReportsTheOutcome) {
    useEngines({"submit", "404"});
    const std::string first = website("first", {"http://a.test/", "http://a.test/b"});
    const std::string second = website("second", {"http://c.test/", "http://c.test?"});

    const CommandResult result =
        m_cli.run({"submit", "--website", first, second, "--all", "--connections", "1"});

    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(receivedUrls(),
                ElementsAre("http://a.test/", "http://a.test/", "http://a.test/b", "http://a.test/b",
                            "http://c.test/", "http://c.test/", "http://c.test?", "http://c.test?"));
    const std::string reports = m_cli.home.path("Reports/Submition/");
    EXPECT_EQ(result.out,
              "Result   Requests\n"
              "Success  8\n"
              "All      8\n"
              "\n"
              "URL              Succeeded  Failed  Report\n"
              "http://a.test/   2          0       " +
                  reports +
                  "a.test_(2002-Apr-01-1305).html\n"
                  "http://a.test/b  2          0       " +
                  reports +
                  "a.test_b(2002-Apr-01-1305).html\n"
                  "http://c.test/   2          0       " +
                  reports +
                  "c.test_(2002-Apr-01-1305).html\n"
                  "http://c.test?   2          0       " +
                  reports +
                  "c.test_(2002-Apr-01-1305).html\n"
                  "\n"
                  "2 reports share one file, which contains the last of them.\n");
    EXPECT_THAT(m_cli.home.read("Reports/Submition/a.test_b(2002-Apr-01-1305).html"), HasSubstr("submit"));
    EXPECT_THAT(m_cli.home.read("first.kws"), HasSubstr("LastReport=2\r\n"));
}

TEST_F(SubmitTest, WritesOneJsonObjectForEachEvent) {
    useEngines({"submit", "503", "reset"}, "\xE9");
    const std::string file = website("site", {"http://a.test/"});

    const CommandResult result =
        m_cli.run({"--json", "submit", "--website", file, "--all", "--connections", "1"});

    EXPECT_EQ(result.code, 1);
    const std::vector<nlohmann::json> events = parseLines(result.out);
    ASSERT_EQ(events.size(), 5u) << result.out << result.err;
    const std::string expected[][2] = {
        {"submit", "Success"}, {"503", "Server Error"}, {"reset", "Server Error"}};
    const int codes[] = {200, 503, 10100};
    const int results[] = {2, 14, 10};
    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(events[i]["event"], "engine");
        EXPECT_EQ(events[i]["url"], "http://a.test/");
        EXPECT_EQ(events[i]["engine"], expected[i][0] + "\\xE9");
        EXPECT_EQ(events[i]["word"], expected[i][1]);
        EXPECT_EQ(events[i]["code"], codes[i]);
        EXPECT_EQ(events[i]["result"], results[i]);
        EXPECT_GE(events[i]["ms"].get<int>(), 0);
        EXPECT_EQ(events[i].size(), 7u);
    }
    const nlohmann::json& report = events[3];
    EXPECT_EQ(report["event"], "report");
    EXPECT_EQ(report["website"], file);
    EXPECT_THAT(report["path"].get<std::string>(), StartsWith(m_cli.home.path("Reports/Submition/")));
    EXPECT_EQ(report["success"], 1);
    EXPECT_EQ(report["failed"], 2);
    EXPECT_EQ(events[4], nlohmann::json::parse(
                             R"({"event":"done","urls":1,"success":1,"failed":2,"cancelled":0,"shared":0})"));
}

TEST_F(SubmitTest, SendsAgainWhatFailed) {
    useEngines({"submit", "500"});
    const std::string file = website("site", {"http://a.test/"});
    EXPECT_EQ(m_cli.run({"submit", "--website", file, "--all"}).code, 1);
    m_web.forgetReceived();

    const CommandResult again = m_cli.run({"submit", "--website", file, "--failed", "--json"});
    EXPECT_EQ(again.code, 1);
    EXPECT_THAT(again.out, HasSubstr(R"("engine":"500")"));
    EXPECT_THAT(again.out, Not(HasSubstr(R"("engine":"submit")")));
    m_cli.home.write("fail.eng", "");
    EXPECT_EQ(m_cli.run({"submit", "--website", file, "--failed"}).code, 3);
}

TEST_F(SubmitTest, RefusesWebsitesThatCannotBeSubmitted) {
    useEngines({"submit"});
    const std::string good = website("good", {"http://a.test/"});
    const std::string empty = website("empty", {});
    const std::string older = m_cli.home.write("older.kws", "[Web Site Info]\r\nTitle=Older\r\n");
    const std::pair<std::string, std::string> cases[] = {
        {empty, "There is not URL in current selected web site"},
        {older, "There is not URL in current selected web site"},
        {m_cli.home.path("missing.kws"), "there is no such website file"},
        {m_cli.home.path(""), "there is no such website file"}};
    for (const auto& [file, words] : cases) {
        const CommandResult result = m_cli.run({"submit", "--website", good, file, "--all"});
        EXPECT_EQ(result.code, 3) << file;
        EXPECT_THAT(result.err, HasSubstr(words));
        EXPECT_THAT(result.out, IsEmpty());
    }
    EXPECT_THAT(receivedUrls(), IsEmpty());
}

TEST_F(SubmitTest, ContinuesWhenAReportCannotBeWritten) {
    useEngines({"submit"});
    const std::string file = website("site", {"http://a.test/", "http://b.test/"});
    m_cli.home.write("Reports", "a file where the folder should be");

    const CommandResult result = m_cli.run({"submit", "--website", file, "--all"});

    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(receivedUrls(), ElementsAre("http://a.test/", "http://b.test/"));
    EXPECT_THAT(result.err, HasSubstr("The report of http://b.test/ could not be written: "));
    EXPECT_THAT(result.out, HasSubstr("(not written)"));
    EXPECT_THAT(m_cli.home.read("site.kws"), Not(HasSubstr("LastReport")));
}

TEST_F(SubmitTest, DistinguishesAFaultyReportFromAMissingOne) {
    useEngines({"submit"});
    const std::string file = website("site", {"http://a.test/"});
    std::filesystem::create_directories(m_cli.home.path("fail.eng/full"));

    const CommandResult result = m_cli.run({"submit", "--website", file, "--all"});

    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("was written, but with an error: " + m_cli.home.path("fail.eng") +
                                      ": Is a directory"));
    EXPECT_THAT(result.out, Not(HasSubstr("(not written)")));
    EXPECT_THAT(m_cli.home.read("site.kws"), HasSubstr("LastReport=1"));
}

TEST_F(SubmitTest, WarnsThatALongUrlIsCut) {
    const std::string file = website("site", {});
    EXPECT_THAT(m_cli.run({"website", "add-url", file, std::string(559, 'u')}).err, IsEmpty());
    EXPECT_THAT(m_cli.run({"website", "add-url", file, std::string(560, 'v')}).err,
                HasSubstr("Only the first 559 bytes are used: vvv"));
}

TEST_F(SubmitTest, TheSwitchesMayBeAnywhereInEitherCase) {
    useEngines({"submit"});
    m_cli.home.write("data/krveng5.dat", m_cli.home.read("data/krveng5.dat") +
                                             "Name=Broken\r\nAction=http://a.test/\r\nQuery=none\r\n");
    const std::string file = website("site", {"http://a.test/"});
    const std::string report = "Reports/Submition/a.test_(2002-Apr-01-1305).html";
    EXPECT_EQ(m_cli.run({"submit", "--website", file, "--all"}).code, 1);
    EXPECT_THAT(m_cli.home.read(report), Not(HasSubstr("submit</a>")));

    EXPECT_EQ(m_cli.run({"/u", "submit", "/D", "--website", file, "--all"}).code, 1);
    EXPECT_THAT(m_cli.home.read(report), HasSubstr("submit</a>"));
    EXPECT_THAT(m_cli.home.read("Error.log"), HasSubstr("Engine: Broken"));
}

TEST_F(SubmitTest, AStopBeforeTheRunSendsNothing) {
    useEngines({"submit"});
    m_cli.stop.request();
    const CommandResult result =
        m_cli.run({"submit", "--website", website("site", {"http://a.test/"}), "--all"});
    EXPECT_EQ(result.code, 130);
    EXPECT_THAT(receivedUrls(), IsEmpty());
}

TEST_F(SubmitTest, ShowsALiveCountOnATerminalOnlyAndLeavesNothingOfIt) {
    useEngines({"submit", "500"});
    const std::string file = website("site", {"http://a.test/"});
    const std::vector<std::string> command = {"submit", "--website", file, "--all"};
    EXPECT_THAT(m_cli.run(command).err, Not(HasSubstr("\033")));

    m_cli.errIsTerminal = true;
    const std::string err = m_cli.run(command).err;
    EXPECT_THAT(err, HasSubstr("\r\033[KURL 1 of 1, engine 1 of 2"));
    EXPECT_THAT(err, EndsWith("\r\033[KSubmit: Submission done !\n"));

    std::vector<std::string> quiet = command;
    quiet.push_back("--quiet");
    EXPECT_THAT(m_cli.run(quiet).err, IsEmpty());
}

}  // namespace relay::test

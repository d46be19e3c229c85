// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every folder under golden/ is a case: home/ is copied into a fresh home, then the commands of the file
// "transcript" (support/Transcript.h) run in it. Some commands exist only in transcripts:
//   practice-engines OUTCOME or OUTCOME=NAME or OUTCOME=NAME=FIELDS ...
//                  a catalogue of engines on a practice web, FIELDS in addition to those of every template
//   directories    the engines Yahoo, dmoz and Plain, which are directories, on the practice web of the home
//   practice-search the search engines of a practice web
//   received       the engine and the URL of each submission since
//   ftp-server LISTING   an FTP server with this listing; ftp-lie COMMAND ANSWER: instead of its own
//   ftp-files      what it was sent
//   terminal in|out|err, typed TEXT, variable NAME VALUE, stop
// WEB stands for the address of that practice web, HOST for its host and port, FTP for the FTP server's.
#include "CommandLineFixture.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "core/Url.h"
#include "practice/PracticeWeb.h"
#include "support/FtpServer.h"
#include "support/GoldenCases.h"
#include "support/Patterns.h"
#include "support/Transcript.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>

namespace relay::test {

namespace {

namespace fs = std::filesystem;

class CommandLineGolden : public testing::TestWithParam<std::string> {
  protected:
    CommandLineGolden() {
        m_transcript.on("practice-engines", [this](auto& outcomes) { useEngines(outcomes); });
        m_transcript.on("directories", [this](auto&) { useDirectories(); });
        m_transcript.on("practice-search", [this](auto&) {
            m_cli.home.write("data/kwreng.dat",
                             pointAtPracticeWeb(readFile(RELAY_DATA_FOLDER "/practice/kwreng.dat"), web()));
        });
        m_transcript.on("terminal", [this](auto& stream) {
            (stream.at(0) == "in" ? m_cli.inIsTerminal
             : stream[0] == "out" ? m_cli.outIsTerminal
                                  : m_cli.errIsTerminal) = true;
        });
        m_transcript.on("typed", [this](auto& text) { m_cli.typed = text.at(0); });
        m_transcript.on("variable", [this](auto& set) { m_cli.environment[set.at(0)] = set.at(1); });
        m_transcript.on("stop", [this](auto&) { m_cli.stop.request(); });
        m_transcript.on("ftp-server", [this](auto& listing) { m_ftp.listing = listing.at(0); });
        m_transcript.on("ftp-lie", [this](auto& lie) {
            m_ftp.lie = [lie](const std::string& command) {
                return command.starts_with(lie.at(0)) ? std::optional(lie.at(1)) : std::nullopt;
            };
        });
        m_transcript.on("ftp-files", [this](auto&) {
            for (const auto& [name, bytes] : m_ftp.files) m_transcript.out += name + ": " + bytes + "\n";
        });
        m_transcript.on("received", [this](auto&) { listReceived(); });
        m_transcript.otherwise = [this](Arguments arguments) {
            for (std::string& argument : arguments) {
                if (argument.find("WEB") != npos) argument = replaceAll(argument, "WEB", web());
                if (argument == "FTP") argument = m_ftp.host();
            }
            const CommandResult result = m_cli.run(arguments);
            return Said{result.out, result.err, result.code};
        };
        m_transcript.settle = [this](const std::string& text) {
            // Of a JSON line, of a line of a table, of a file, and of a port for data.
            std::string settled = replacePattern(text, R"(("ms":|,[A-Z][A-Za-z ]+,\d+,)\d+)", R"(\1N)");
            settled = replacePattern(settled, R"(202\d-\d\d-\d\d \d\d:\d\d:\d\d)", "NOW");
            settled = replacePattern(settled, R"((\(127,0,0,1,|established: |Port:)\d+(,\d+)?)", R"(\1N)");
            settled = replaceAll(settled, m_address, "WEB");
            settled = replaceAll(
                settled, ".localhost" + m_address.substr(std::min(m_address.rfind(':'), m_address.size())),
                ".localhost:PORT");
            return replaceAll(settled, GetURLHost(m_address), "HOST");
        };
    }

    // Starts the practice web at the first call.
    const std::string& web() {
        if (m_address.empty()) {
            m_web.start();
            m_address = m_web.address();
        }
        return m_address;
    }

    void useEngines(const Arguments& outcomes) {
        std::string text;
        for (const std::string& given : outcomes) {
            const std::string outcome = GetToken(given, '=', 1);
            const std::string name = GetToken(given, '=', 2);
            const std::size_t fields = outcome.size() + name.size() + 2;
            text += "Name=" + (name.empty() ? outcome : name) + "\r\nType=ENG\r\nCategory=N\r\nMethod=POST" +
                    "\r\nAction=" + web() + "/engines/" + outcome + "/" + outcome +
                    "\r\nQuery=url=<URL>&title=<TITLE>" +
                    (fields < given.size() ? "&" + given.substr(fields) : "") + "\r\n";
        }
        m_cli.home.write("data/krveng5.dat", text);
        m_cli.home.write("data/catkws.dat", "[General For All Links]\r\nOther=1\r\nEND\r\n");
    }
    void useDirectories() {
        const std::string port = web().substr(web().rfind(':'));
        m_cli.home.write("practice.addr", web() + "/\n");
        std::string engines = "Name=Alpha\r\nCategory=N\r\n";
        for (const char* name : {"Yahoo", "dmoz", "Plain", "Nowhere"})
            engines += std::string("Name=") + name + "\r\nType=DIR\r\nCategory=C\r\n";
        m_cli.home.write("data/krveng5.dat", engines);
        m_cli.home.write(
            "data/catkws.dat",
            "[Yahoo]\r\nURL=http://yahoo.localhost" + port +
                "/\r\nArts=Arts\r\n[dmoz]\r\nURL=http://dmoz.localhost" + port +
                "\r\nArts=/Arts/\r\nSociety=/Society\r\n[Plain]\r\nURL=" + web() +
                "/engines/plain/tree\r\nSection=/engines/plain/tree/section\r\n[Nowhere]\r\nGone=gone\r\n");
    }
    // Sorted: several connections may be overtaken by each other.
    void listReceived() {
        std::multiset<std::string> lines;
        for (const ReceivedSubmission& one : m_web.received())
            lines.insert(one.engine + " " + one.fields.at(0).second + "\n");
        for (const std::string& line : lines) m_transcript.out += line;
        m_web.forgetReceived();
    }

    CommandLineFixture m_cli;
    PracticeWeb m_web;
    FtpServer m_ftp;
    std::string m_address;
    Transcript m_transcript{m_cli.home};
};

}  // namespace

TEST_P(CommandLineGolden, SaysWhatTheTranscriptSays) {
    const fs::path folder = fs::path(TEST_FOLDER) / "golden" / GetParam();
    if (fs::exists(folder / "home"))
        fs::copy(folder / "home", m_cli.home.path(""), fs::copy_options::recursive);
    m_transcript.play((folder / "transcript").string());
}

INSTANTIATE_TEST_SUITE_P(Folders, CommandLineGolden, testing::ValuesIn(goldenCases(TEST_FOLDER "/golden")),
                         goldenName);

}  // namespace relay::test

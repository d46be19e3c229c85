// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every folder under golden/ is a case: home/ is copied into a fresh home, then the commands of the file
// "transcript" run in it, and their output must match it. In a transcript "$" begins a command, "| " a line
// of results, "! " a line of messages, "= " an exit code other than 0. Double quotes group an argument; \n,
// \r and \xNN stand for bytes. HOME is the home's path, WEB the practice web's address. Two commands exist
// only in transcripts: "cat FILE" shows a file, with its line ends, and "mode FILE" its permissions. Set
// RELAY_GOLDEN_UPDATE to write the transcripts instead.
#include "CommandLineFixture.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "practice/PracticeWeb.h"
#include "support/GoldenCases.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace relay::test {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> splitArguments(const std::string& line) {
    std::vector<std::string> arguments;
    bool quoted = false;
    bool inside = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == ' ' && !quoted) {
            inside = false;
            continue;
        }
        if (!inside) arguments.emplace_back();
        inside = true;
        if (line[i] == '"') {
            quoted = !quoted;
        } else if (line[i] == '\\' && line[i + 1] == 'x') {
            arguments.back() += static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else if (line[i] == '\\') {
            arguments.back() += line[++i] == 'n' ? '\n' : '\r';
        } else {
            arguments.back() += line[i];
        }
    }
    return arguments;
}

std::string prefixed(const std::string& prefix, const std::string& text) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) result += prefix + line + "\n";
    return result;
}

// The practice web of all cases.
const std::string& web() {
    static PracticeWeb server;
    static const std::string address = [] {
        server.start();
        return server.address();
    }();
    return address;
}

CommandResult perform(CommandLineFixture& fixture, std::vector<std::string> arguments) {
    if (arguments.at(0) == "cat")
        return {0, replaceAll(fixture.home.read(arguments.at(1)), "\r\n", "<CRLF>\n"), {}};
    if (arguments.at(0) == "mode") {
        std::ostringstream octal;
        octal << std::oct << modeOf(fixture.home.path(arguments.at(1))) << '\n';
        return {0, octal.str(), {}};
    }
    for (std::string& argument : arguments) {
        argument = replaceAll(argument, "HOME", fixture.home.paths().AppPath);
        if (argument.find("WEB") != npos) argument = replaceAll(argument, "WEB", web());
    }
    return fixture.run(arguments);
}

std::string play(CommandLineFixture& fixture, const std::string& transcript) {
    std::istringstream lines(transcript);
    std::string played;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('#')) played += line + "\n";
        if (!line.starts_with("$ ")) continue;
        const CommandResult result = perform(fixture, splitArguments(line.substr(2)));
        played += line + "\n" + prefixed("| ", result.out) + prefixed("! ", result.err);
        if (result.code != 0) played += "= " + std::to_string(result.code) + "\n";
    }
    played = replaceAll(played, fixture.home.paths().AppPath, "HOME");
    // A case that does not use the practice web does not start it.
    return transcript.find("WEB") == npos ? played : replaceAll(played, web(), "WEB");
}

class CommandLineGolden : public testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(CommandLineGolden, SaysWhatTheTranscriptSays) {
    const fs::path folder = fs::path(TEST_FOLDER) / "golden" / GetParam();
    CommandLineFixture fixture;
    if (fs::exists(folder / "home"))
        fs::copy(folder / "home", fixture.home.path(""), fs::copy_options::recursive);
    const std::string transcript = readFile((folder / "transcript").string());
    ASSERT_NE(transcript.find("$ "), std::string::npos);
    const std::string played = play(fixture, transcript);
    if (std::getenv("RELAY_GOLDEN_UPDATE") != nullptr) {
        std::ofstream(folder / "transcript", std::ios::binary) << played;
        return;
    }
    EXPECT_EQ(played, transcript);
}

INSTANTIATE_TEST_SUITE_P(Folders, CommandLineGolden, testing::ValuesIn(goldenCases(TEST_FOLDER "/golden")),
                         goldenName);

}  // namespace relay::test

// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandLineFixture.h"
#include "core/FileStore.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace relay::test {

using testing::HasSubstr;

// Examples that are copied from the help must not reach anybody's server: those that read a catalogue use a
// home with the practice catalogue, and the engines they name are in it.
TEST(HelpTest, EachHelpHasItsOwnExamplesOnThePracticeCatalogue) {
    CommandLineFixture cli;
    std::string practice;
    for (const char* file : {"/practice/krveng5.dat", "/practice/kwreng.dat"})
        practice += readFile(std::string(RELAY_DATA_FOLDER) + file);
    std::vector<std::string> commands;
    const std::function<void(const CommandNode&, const std::string&)> collect = [&](const CommandNode& node,
                                                                                    const std::string& path) {
        commands.push_back(path);
        for (const CommandNode& child : node.commands)
            collect(child, path.empty() ? child.name : path + " " + child.name);
    };
    collect(cli.tree(), "");
    for (const std::string& command : commands) {
        SCOPED_TRACE(command);
        std::vector<std::string> words;
        std::istringstream split(command);
        for (std::string word; split >> word;) words.push_back(word);
        words.emplace_back("--help");
        const CommandResult help = cli.run(words);
        EXPECT_EQ(help.code, 0) << help.err;
        int examples = 0;
        std::istringstream lines(help.out.substr(help.out.find("Examples")));
        for (std::string line; std::getline(lines, line);) {
            const std::string program = "  korvel-relay-cli ";
            if (!line.starts_with(program)) continue;
            ++examples;
            std::string example = line.substr(program.size());
            const std::string home = "--home try ";
            const bool practised = example.starts_with(home);
            if (practised) example.erase(0, home.size());
            const bool isLocal = example.starts_with("website ") || example.starts_with("meta ") ||
                                 example.starts_with("completion ") || example.starts_with("engines scrape ");
            const bool isNobodys = line.find("--host ftp.shop.example ") != std::string::npos ||
                                   line.find("--host '[::1]:") != std::string::npos;
            EXPECT_TRUE(practised || isLocal || isNobodys) << line;
            EXPECT_TRUE(example.starts_with(command)) << line;
            const std::size_t named = example.find("--engine '");
            if (named == std::string::npos) continue;
            const std::size_t start = named + 10;
            const std::string engine = example.substr(start, example.find('\'', start) - start);
            EXPECT_THAT(practice, HasSubstr("=" + engine + "\n"));
        }
        EXPECT_GT(examples, 0);
    }
}

}  // namespace relay::test

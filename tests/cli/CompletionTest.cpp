// SPDX-License-Identifier: GPL-3.0-or-later
//
// The tree of commands, the scripts for the shells, the man page and the guide name the same commands and
// options.
#include "CommandLineFixture.h"
#include "cli/CommandTree.h"
#include "core/FileStore.h"
#include "core/Text.h"
#include "support/Patterns.h"

#include <QProcess>
#include <QStandardPaths>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

namespace relay::test {

namespace {

using Names = std::set<std::string>;

// The commands by their words, "website show", with the long names of their own options; "" for the program.
void collect(const CommandNode& command, const std::string& path, std::map<std::string, Names>& commands) {
    for (const OptionNode& option : command.options)
        for (const std::string& name : option.names)
            if (name.starts_with("--")) commands[path].insert(name);
    for (const CommandNode& child : command.commands)
        collect(child, path.empty() ? child.name : path + " " + child.name, commands);
}
std::map<std::string, Names> commandsOf(const CommandNode& root) {
    std::map<std::string, Names> commands;
    collect(root, "", commands);
    return commands;
}
bool isGroup(const std::map<std::string, Names>& commands, const std::string& path) {
    const auto next = commands.upper_bound(path);
    return path.empty() || (next != commands.end() && next->first.starts_with(path + " "));
}
Names optionsIn(const std::string& text) {
    const std::vector<std::string> found = findPattern(text, "--[a-z][a-z-]*");
    return Names(found.begin(), found.end());
}

// Text without the marks of a man page.
std::string plain(std::string text) {
    text = replacePattern(text, R"(\\f[A-Z])", "");
    text = replaceAll(replaceAll(text, "\\-", "-"), "\"", "");
    return replacePattern(text, R"((^|\n)\.(B|I|R)[BIR]? )", R"(\1)");
}

}  // namespace

TEST(CompletionTest, TheManPageAndTheGuideNameEveryCommandAndOptionAndNoOther) {
    CommandLineFixture cli;
    const std::map<std::string, Names> commands = commandsOf(cli.tree());
    ASSERT_GT(commands.size(), 20U);
    const std::string page = plain(readFile(RELAY_SOURCE_FOLDER "/packaging/korvel-relay-cli.1"));
    const std::size_t start = page.find(".TP", page.find(".SH COMMANDS"));
    const std::size_t end = page.find(".SH", start);
    const Names general = optionsIn(page.substr(0, start) + page.substr(end));
    const std::string guide = readFile(RELAY_SOURCE_FOLDER "/docs/command-line.md");
    const Names inGuide = optionsIn(guide);

    Names wrong;
    std::map<std::string, Names> described;  // the options of a command's entries
    std::istringstream entries(replaceAll(page.substr(start, end - start), ".TP\n", "\x01"));
    std::string entry;
    std::getline(entries, entry, '\x01');
    while (std::getline(entries, entry, '\x01')) {
        const std::string head(firstLine(entry));
        const auto found = std::find_if(commands.rbegin(), commands.rend(), [&](const auto& command) {
            return !command.first.empty() && (head + " ").starts_with(command.first + " ");
        });
        if (found == commands.rend())
            wrong.insert("man: no such command: " + head);
        else
            described[found->first].merge(optionsIn(entry));
    }
    for (const auto& [path, options] : commands) {
        if (isGroup(commands, path)) continue;
        if (!described.contains(path)) wrong.insert("man: " + path + " is missing");
        for (const std::string& option : options)
            if (!described[path].contains(option) && !general.contains(option))
                wrong.insert("man: " + path + " " + option + " is missing");
        for (const std::string& option : described[path])
            if (!options.contains(option) && !general.contains(option))
                wrong.insert("man: " + path + " has no " + option);
        if (guide.find("\n    " + path) == npos && guide.find("korvel-relay-cli " + path) == npos)
            wrong.insert("guide: " + path + " is missing");
        for (const std::string& option : options)
            if (!inGuide.contains(option)) wrong.insert("guide: " + path + " " + option + " is missing");
    }
    EXPECT_THAT(wrong, testing::IsEmpty());
}

TEST(CompletionTest, EachScriptNamesEveryCommandAndOption) {
    CommandLineFixture cli;
    const std::map<std::string, Names> commands = commandsOf(cli.tree());
    for (const std::string shell : {"bash", "zsh", "fish"}) {
        const CommandResult script = cli.run({"completion", shell});
        ASSERT_EQ(script.code, 0);
        Names missing;
        for (const auto& [path, options] : commands) {
            if (!path.empty() && script.out.find("' " + path + "'") == npos) missing.insert(path);
            for (const std::string& option : options)
                if (script.out.find(shell == "fish" ? " -l " + option.substr(2) : option) == npos)
                    missing.insert(path + " " + option);
        }
        EXPECT_THAT(missing, testing::IsEmpty()) << shell;
    }
    EXPECT_EQ(cli.run({"completion", "csh"}).code, 2);
}

TEST(CompletionTest, BashCompletesWhatTheTreeHas) {
    const QString bash = QStandardPaths::findExecutable(QStringLiteral("bash"));
    if (bash.isEmpty()) GTEST_SKIP() << "no bash";
    CommandLineFixture cli;
    const std::map<std::string, Names> commands = commandsOf(cli.tree());
    // Types the words and asks for the last one; prints what is offered, on one line.
    std::string script = cli.run({"completion", "bash"}).out +
                         "try() { COMP_WORDS=(korvel-relay-cli \"$@\"); COMP_CWORD=$#; _korvel_relay_cli; "
                         "echo \"${COMPREPLY[*]}\"; }\ncd \"${0%/*}\" || exit\n";
    std::string wanted;
    for (const auto& [path, options] : commands) {
        script += "try " + path + " --\n";
        if (isGroup(commands, path)) script += "try --home x " + path + " ''\n";
    }
    script +=
        "try website show sho\ntry submit --csv sho\ntry --home = fo\ntry website details a --url ''\n"
        "try completion ''\n";
    cli.home.write("try/shop list.kws", "");
    cli.home.write("try/folder/x", "");
    const std::string file = cli.home.write("try/completion.bash", script);
    QProcess shell;
    shell.start(bash, {QStringLiteral("--norc"), QString::fromStdString(file)});
    ASSERT_TRUE(shell.waitForFinished(60000));
    EXPECT_EQ(shell.readAllStandardError().toStdString(), "");
    std::istringstream lines(shell.readAllStandardOutput().toStdString());
    const auto next = [&lines] {
        std::string line;
        std::getline(lines, line);
        std::istringstream split(line);
        return Names(std::istream_iterator<std::string>(split), {});
    };
    const Names common = {"--help", "--home", "--json", "--quiet"};
    for (const auto& [path, options] : commands) {
        Names all = options;
        all.insert(common.begin(), common.end());
        EXPECT_EQ(next(), all) << path;
        if (!isGroup(commands, path)) continue;
        Names children;
        for (const auto& [child, unused] : commands)
            if (child.size() > path.size() && child.starts_with(path.empty() ? path : path + " ") &&
                child.find(' ', path.empty() ? 0 : path.size() + 1) == npos)
                children.insert(child.substr(path.empty() ? 0 : path.size() + 1));
        EXPECT_EQ(next(), children) << path;
    }
    std::string rest;
    for (std::string line; std::getline(lines, line);) rest += line + "\n";
    EXPECT_EQ(rest, "shop list.kws\nshop list.kws\nfolder\n\nbash zsh fish\n");
}

}  // namespace relay::test

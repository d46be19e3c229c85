// SPDX-License-Identifier: GPL-3.0-or-later
//
// Output to a terminal, and what differs there.
#include "CommandLineFixture.h"
#include "cli/Console.h"
#include "cli/ConsolePrompts.h"
#include "cli/ProgressLine.h"
#include "cli/Table.h"
#include "cli/TerminalText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace relay::test {

using testing::HasSubstr;
using testing::Not;

TEST(TerminalText, EscapesControlCharacters) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain caf\xC3\xA9", "plain caf\xC3\xA9"},
        {"\x1B[2J\x07\x7F", "\\x1B[2J\\x07\\x7F"},
        {"a\r\nb\tc", "a\\x0D\\x0Ab\\x09c"},
        {std::string("nul\0!", 5), "nul\\x00!"},
        {"\xC2\x9B"
         "31m",
         "\\xC2\\x9B"
         "31m"},                                    // a one-character escape sequence
        {"\xE2\x80\xAEgnp", "\\xE2\\x80\\xAEgnp"},  // right-to-left override
        {"caf\xE9 \xF0\x9F", "caf\\xE9 \\xF0\\x9F"},
    };
    for (const auto& [bytes, expected] : cases) EXPECT_EQ(terminalText(bytes), expected);
    EXPECT_EQ(terminalLines("one\r\ntwo\rthree\x1B"), "one\ntwo\nthree\\x1B");
}

TEST(TerminalText, CountsColumnsAndNotBytes) {
    EXPECT_EQ(terminalWidth("caf\xC3\xA9"), 4u);
    EXPECT_EQ(terminalWidth("\xE6\x97\xA5\xE6\x9C\xAC"), 4u);  // two wide characters
    EXPECT_EQ(terminalWidth("e\xCC\x81"), 1u);                 // a combining accent
    EXPECT_EQ(cutToWidth("\xE6\x97\xA5\xE6\x9C\xAC", 3), "\xE6\x97\xA5");

    Table table({"Name", "Type"});
    table.add({"\xE6\x97\xA5\xE6\x9C\xAC", "ENG"});
    table.add({"", "DIR"});
    std::ostringstream out;
    table.write(out, false);
    EXPECT_EQ(out.str(), "Name  Type\n\xE6\x97\xA5\xE6\x9C\xAC  ENG\n      DIR\n");
}

TEST(Terminal, BoldHeadingsAndAHiddenPasswordAreForTerminals) {
    CommandLineFixture cli;
    const std::string file = cli.home.writeWebsite("site.kws", {"http://a.test/"}, "Password=secret\r\n");
    const auto show = [&](std::vector<std::string> more = {}) {
        std::vector<std::string> arguments = {"website", "show", file};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return cli.run(arguments).out;
    };
    EXPECT_THAT(show(), HasSubstr("secret"));
    EXPECT_THAT(show(), Not(HasSubstr("\033")));
    cli.outIsTerminal = true;
    EXPECT_THAT(show(), HasSubstr("\033[1mURL"));
    EXPECT_THAT(show(), Not(HasSubstr("secret")));
    EXPECT_THAT(show({"--json"}), Not(HasSubstr("secret")));
    EXPECT_THAT(show({"--show-password"}), HasSubstr("secret"));
    cli.home.write("data/catkws.dat", "[General For All Links]\r\nEND\r\n");
    cli.home.write("data/krveng5.dat",
                   "Name=E\r\nMethod=GET\r\nAction=http://e.test/\r\nQuery=t=<PASSWORD>\r\n");
    cli.typed = "new one\nand more";
    EXPECT_EQ(cli.run({"website", "set", file, "--password-file", "-"}).code, 0);
    const std::vector<std::string> preview = {"preview", "--website", file, "--engine", "E"};
    EXPECT_THAT(cli.run(preview).out, HasSubstr("http://e.test/?t=********\n"));
    cli.outIsTerminal = false;
    EXPECT_THAT(cli.run(preview).out, HasSubstr("http://e.test/?t=new+one\n"));
    cli.outIsTerminal = true;
    cli.environment["NO_COLOR"] = "1";
    EXPECT_THAT(show(), Not(HasSubstr("\033")));
}

TEST(ConsolePrompts, AskOnlyWhereSomeoneCanAnswer) {
    struct Case final {
        bool inIsTerminal;
        const char* typed;
        bool answer;
    };
    const Case cases[] = {{false, "y\n", false}, {true, "y\n", true}, {true, "Yes \n", true},
                          {true, "\n", false},   {true, "", false},   {true, "no\n", false}};
    for (const Case& given : cases) {
        std::istringstream in(given.typed);
        std::ostringstream out;
        std::ostringstream err;
        const FixedClock clock;
        StopSignal stop;
        Console console{in, out, err, clock, stop, {}, {}, given.inIsTerminal, true, true, 80, {}};
        ProgressLine progress(err, 80);
        ConsolePrompts prompts(console, progress);
        EXPECT_EQ(prompts.ask("Replace it?", "Save"), given.answer) << given.typed;
        EXPECT_THAT(err.str(), HasSubstr("Save: Replace it?"));
        EXPECT_EQ(out.str(), "");
    }
}

}  // namespace relay::test

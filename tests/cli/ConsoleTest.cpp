// SPDX-License-Identifier: GPL-3.0-or-later
//
// What reaches a terminal, and what a terminal changes.
#include "cli/Console.h"
#include "cli/ConsolePrompts.h"
#include "cli/ProgressLine.h"
#include "cli/StopSignal.h"
#include "cli/Table.h"
#include "cli/TerminalText.h"
#include "support/TestHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace relay::test {

using testing::HasSubstr;

TEST(TerminalText, HoldsNothingATerminalObeys) {
    EXPECT_EQ(terminalText("caf\xC3\xA9 caf\xE9 \x1B[2J\r\n"), "caf\xC3\xA9 caf\\xE9 \\x1B[2J\\x0D\\x0A");
    EXPECT_EQ(terminalText("\xC2\x9B"
                           "31m\xF0\x9F"),
              "\\xC2\\x9B"
              "31m\\xF0\\x9F");
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

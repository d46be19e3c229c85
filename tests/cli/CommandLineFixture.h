// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandTree.h"
#include "cli/StopSignal.h"
#include "support/TestHome.h"

#include <map>
#include <string>
#include <vector>

namespace relay::test {

// The result of one command.
struct CommandResult final {
    int code = -1;
    std::string out;
    std::string err;
};

// Runs commands in this process, on a home of their own, with controlled streams, environment and clock.
class CommandLineFixture final {
  public:
    CommandLineFixture();

    CommandResult run(const std::vector<std::string>& arguments);
    CommandNode tree();

    TestHome home;
    FixedClock clock;
    StopSignal stop;
    std::map<std::string, std::string> environment;
    std::string typed;  // contents of the input stream
    bool inIsTerminal = false;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
};

}  // namespace relay::test

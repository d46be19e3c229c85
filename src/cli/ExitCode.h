// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace relay {

// What the program tells its caller at its end. Scripts rely on these numbers.
enum ExitCode : int {
    kSucceeded = 0,
    kSomeFailed = 1,   // the run ended, and some engine did not succeed
    kWrongUsage = 2,   // the command line makes no sense
    kCouldNotRun = 3,  // something the command needs is missing or cannot be written
    kStopped = 130,    // Ctrl-C
};

// The command line cannot be understood: ends the program with kWrongUsage and a hint at the help.
class UsageError final : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace relay

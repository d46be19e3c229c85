// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace relay {

// The exit codes of the program. Scripts rely on these numbers.
enum ExitCode : int {
    kSucceeded = 0,
    kSomeFailed = 1,   // the run ended, but some engines did not succeed
    kWrongUsage = 2,   // invalid command line
    kCouldNotRun = 3,  // something needed is missing or cannot be written
    kStopped = 130,    // Ctrl-C
};

// An invalid command line: ends the program with kWrongUsage and a hint to the help.
class UsageError final : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace relay

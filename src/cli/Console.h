// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Clock.h"

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace relay {

class StopSignal;

// The environment of a command; tests replace all of it.
struct Console final {
    std::istream& in;
    std::ostream& out;  // results
    std::ostream& err;  // messages and progress
    const Clock& clock;
    StopSignal& stop;
    // Value of an environment variable, or nullopt.
    std::function<std::optional<std::string>(const char*)> environment;
    std::string programFolder;  // folder of the program file, without a trailing separator
    bool inIsTerminal = false;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
    int errColumns = 80;  // width of the terminal behind err
    // The errno of the first failed write to out, or 0. Empty if unknown.
    std::function<int()> outError;
};

}  // namespace relay

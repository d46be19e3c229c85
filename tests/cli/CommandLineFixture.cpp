// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandLineFixture.h"

#include "cli/CommandLine.h"
#include "cli/Console.h"

#include <sstream>

namespace relay::test {

CommandLineFixture::CommandLineFixture() {
    environment["KORVEL_RELAY_HOME"] = home.paths().AppPath;
    environment["KORVEL_RELAY_DATA"] = home.path("installed");
}

CommandResult CommandLineFixture::run(const std::vector<std::string>& arguments) {
    std::istringstream in(typed);
    std::ostringstream out;
    std::ostringstream err;
    Console console{.in = in,
                    .out = out,
                    .err = err,
                    .clock = clock,
                    .stop = stop,
                    .environment = [this](const char* name) -> std::optional<std::string> {
                        const auto found = environment.find(name);
                        if (found == environment.end()) return std::nullopt;
                        return found->second;
                    },
                    .programFolder = "/nowhere",
                    .inIsTerminal = inIsTerminal,
                    .outIsTerminal = outIsTerminal,
                    .errIsTerminal = errIsTerminal,
                    .errColumns = 60,
                    .outError = {}};
    const int code = runCommandLine(arguments, console);
    return {code, out.str(), err.str()};
}

}  // namespace relay::test

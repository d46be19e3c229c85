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

namespace {

Console consoleOf(CommandLineFixture& fixture, std::istream& in, std::ostream& out, std::ostream& err) {
    return {.in = in,
            .out = out,
            .err = err,
            .clock = fixture.clock,
            .stop = fixture.stop,
            .environment = [&fixture](const char* name) -> std::optional<std::string> {
                const auto found = fixture.environment.find(name);
                if (found == fixture.environment.end()) return std::nullopt;
                return found->second;
            },
            .programFolder = "/nowhere",
            .inIsTerminal = fixture.inIsTerminal,
            .outIsTerminal = fixture.outIsTerminal,
            .errIsTerminal = fixture.errIsTerminal,
            .errColumns = 60,
            .outError = {}};
}

}  // namespace

CommandResult CommandLineFixture::run(const std::vector<std::string>& arguments) {
    std::istringstream in(typed);
    std::ostringstream out;
    std::ostringstream err;
    Console console = consoleOf(*this, in, out, err);
    const int code = runCommandLine(arguments, console);
    return {code, out.str(), err.str()};
}

CommandNode CommandLineFixture::tree() {
    std::stringstream nothing;
    Console console = consoleOf(*this, nothing, nothing, nothing);
    return describeCommands(console);
}

}  // namespace relay::test

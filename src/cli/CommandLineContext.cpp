// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLineContext.h"

#include "cli/ExitCode.h"
#include "cli/TerminalText.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "session/InstalledData.h"

#include <algorithm>
#include <ostream>

namespace relay {

namespace {
std::string joined(const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& argument : arguments) {
        if (!line.empty()) line += ' ';
        line += argument;
    }
    return line;
}

// The text as one word of a shell's command line.
std::string shellWord(std::string_view text) {
    return "'" + replaceAll(text, "'", "'\\''") + "'";
}
}  // namespace

CommandLineContext::CommandLineContext(Console& console, const std::vector<std::string>& arguments)
    : m_console(console),
      m_commandLine(joined(arguments)),
      m_linksEngines(std::any_of(arguments.begin(), arguments.end(),
                                 [](const std::string& text) { return equalsNoCase(text, "/U"); })),
      m_progress(console.err, console.errColumns),
      m_prompts(console, m_progress) {}

std::ostream& CommandLineContext::out() {
    m_progress.erase();
    return m_console.out;
}

bool CommandLineContext::colours() const {
    const auto isSet = [&](const char* name) { return !m_console.environment(name).value_or("").empty(); };
    return m_console.outIsTerminal && !isSet("NO_COLOR") && m_console.environment("TERM") != "dumb";
}

void CommandLineContext::note(std::string_view text) {
    if (!quiet) warn(text);
}

void CommandLineContext::warn(std::string_view text) {
    m_progress.erase();
    m_console.err << terminalLines(text) << '\n' << std::flush;
}

void CommandLineContext::applyOptions() {
    m_prompts.setHolding(quiet);
    m_progress.setOn(m_console.errIsTerminal && !quiet && m_console.environment("TERM") != "dumb");
}

Paths CommandLineContext::choosePaths() const {
    Paths paths =
        homeOption.empty() ? Paths::fromEnvironment(m_console.environment) : Paths::insideHome(homeOption);
    paths.installedData = installedDataFolder(m_console.programFolder, m_console.environment);
    return paths;
}

Session& CommandLineContext::home() {
    if (m_home) return *m_home;
    auto home = std::make_unique<Session>(choosePaths(), m_console.clock, m_commandLine, m_prompts);
    try {
        prepareHome(home->paths, home->paths.installedData);
    } catch (const Failure& failure) {
        if (!folderExists(home->paths.AppPath))
            throw Failure(std::string("The home cannot be created: ") + failure.what(), failure.number());
        warn(std::string("The home cannot be written, so nothing is saved there: ") + failure.what());
    }
    home->readSettings(SettingsReader::CommandLine);
    m_home = std::move(home);
    return *m_home;
}

void CommandLineContext::finish(int exitCode) {
    m_progress.erase();
    if (exitCode == kCouldNotRun) m_prompts.showHeld();
}

// Tests for the files first, as the start of the window does.
bool CommandLineContext::load(bool (Catalogue::*step)()) {
    Catalogue& catalogue = home().catalogue;
    const bool present = catalogue.engineDataPresent();
    if (present && (catalogue.*step)()) return true;
    if (!present) m_prompts.message(kMissingDataNotice, kApplication, Icon::Information);
    warn("No engines could be loaded from " + home().paths.WindowsPath + "\n" + installHint());
    return false;
}

std::string CommandLineContext::installHint() const {
    const std::string sameHome = homeOption.empty() ? "" : "--home " + shellWord(homeOption) + " ";
    return "To install the program's catalogue, run: korvel-relay-cli " + sameHome + "engines install";
}

}  // namespace relay

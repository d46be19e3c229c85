// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "cli/ConsolePrompts.h"
#include "cli/ProgressLine.h"
#include "session/Session.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// What the commands share: the console, the common options, and the home.
class CommandLineContext final {
  public:
    // `arguments` as typed, without the program's name.
    CommandLineContext(Console& console, const std::vector<std::string>& arguments);

    std::string homeOption;  // --home, empty when not given
    bool json = false;
    bool quiet = false;  // results only

    Console& console() noexcept { return m_console; }
    Prompts& prompts() noexcept { return m_prompts; }
    ProgressLine& progress() noexcept { return m_progress; }
    // True for the switch "/U": reports then link to the engines' own pages. Unlike "/D", which the log finds
    // anywhere in the command line, it must be an argument of its own.
    bool linksEngines() const noexcept { return m_linksEngines; }

    // The stream for results; erases the progress line first.
    std::ostream& out();
    // True if results go to a terminal with colours.
    bool colours() const;
    // True if results go to a terminal, where others may look on; files and scripts get passwords as they
    // are.
    bool hidesPasswords() const noexcept { return m_console.outIsTerminal; }
    // note() shows a message unless --quiet is given; warn() always does.
    void note(std::string_view text);
    void warn(std::string_view text);

    // Call after parsing the options.
    void applyOptions();
    // Opens the home on the first call: makes its folders, copies missing files of the installation, starts
    // the log. Warns about a home that cannot be written and uses it; throws Failure if there is none and it
    // cannot be made.
    Session& home();
    // Loads the home's engines, or just their category tables. When the files are missing or unusable,
    // returns false after a message that says what to do.
    bool loadEngines() { return load(&Catalogue::loadEngineData); }
    bool loadEngineCategories() { return load(&Catalogue::loadEngineCategory); }
    // The command that installs the program's catalogue in this home.
    std::string installHint() const;
    // Call at the end. If the command could not run, shows the messages that --quiet held back.
    void finish(int exitCode);

  private:
    Paths choosePaths() const;
    bool load(bool (Catalogue::*step)());

    Console& m_console;
    std::string m_commandLine;  // all arguments joined by blanks
    bool m_linksEngines;
    ProgressLine m_progress;
    ConsolePrompts m_prompts;
    std::unique_ptr<Session> m_home;
};

}  // namespace relay

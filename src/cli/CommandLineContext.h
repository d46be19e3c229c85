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

// What the commands share: the console, the options that stand in front of every command, and the home.
class CommandLineContext final {
  public:
    // `arguments` as they were typed, without the program's name.
    CommandLineContext(Console& console, const std::vector<std::string>& arguments);

    std::string homeOption;  // --home, empty when not given
    bool json = false;
    bool quiet = false;  // results only

    Console& console() noexcept { return m_console; }
    Prompts& prompts() noexcept { return m_prompts; }
    ProgressLine& progress() noexcept { return m_progress; }
    // Whether the switch "/U" was given: reports then link to the engines' own pages. Unlike "/D", which the
    // log finds anywhere in the command line, it must be an argument of its own.
    bool linksEngines() const noexcept { return m_linksEngines; }

    // Where results go; a progress line is gone before they appear.
    std::ostream& out();
    // Whether results go to a terminal that takes colours.
    bool colours() const;
    // Whether results go to a terminal, which has people behind one's back; a file and a script get passwords
    // as they stand.
    bool hidesPasswords() const noexcept { return m_console.outIsTerminal; }
    // A message that --quiet keeps back, and one that is always told.
    void note(std::string_view text);
    void warn(std::string_view text);

    // Once the options are known.
    void applyOptions();
    // Opens the home at the first call: makes its folders, copies the files of the installation that are
    // absent, starts the log. A home that is there but cannot be written is told and used all the same.
    // Throws Failure when there is none and none can be made.
    Session& home();
    // At the end: messages that --quiet held back are told when the command could not run.
    void finish(int exitCode);

  private:
    Paths choosePaths() const;

    Console& m_console;
    std::string m_commandLine;  // all arguments joined by blanks
    bool m_linksEngines;
    ProgressLine m_progress;
    ConsolePrompts m_prompts;
    std::unique_ptr<Session> m_home;
};

}  // namespace relay

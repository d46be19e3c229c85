// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace relay::test {

using Arguments = std::vector<std::string>;

// What one command of a transcript came to.
struct Said final {
    std::string out;  // results
    std::string err;  // messages
    int code = 0;
};

// A case as a text file: commands, and what they say. "$" begins a command, "| " a line of its results, "! "
// one of its messages, "= " an exit code other than 0, "#" a comment. Double quotes hold an argument
// together; \n, \r, \\ and \xNN stand for bytes. HOME is the home's path. With RELAY_GOLDEN_UPDATE set the
// transcript is written instead of compared.
//
// Each transcript understands "cat FILE" (line ends as written), "find FILE WORDS" (the lines that hold the
// words), "mode FILE" (its permissions), "list FOLDER", "write FILE TEXT", "delete FILE", "fail-saves" and
// "mend-saves". With prompts it also understands "answer yes no", "input TEXT" and "choose FILE FILTER" ("-"
// for a dialog that is cancelled), and what a command showed is its message.
class Transcript final {
  public:
    explicit Transcript(const TestHome& home, ScriptedPrompts* prompts = nullptr);
    ~Transcript();
    Transcript(const Transcript&) = delete;
    Transcript& operator=(const Transcript&) = delete;

    // Adds a command of the room's own. It gets what stands behind its name, and puts its results into
    // `out`.
    void on(const std::string& name, std::function<void(const Arguments& arguments)> command);
    std::string out;
    // What any other command does; it gets its name, too.
    std::function<Said(const Arguments& arguments)> otherwise;
    // Applied to what a command said: for times and ports.
    std::function<std::string(const std::string& text)> settle;

    void play(const std::string& file);

  private:
    Said perform(Arguments arguments);
    std::string shown();

    const TestHome& m_home;
    std::map<std::string, std::function<void(const Arguments& arguments)>> m_commands;
    ScriptedPrompts* m_prompts;
};

}  // namespace relay::test

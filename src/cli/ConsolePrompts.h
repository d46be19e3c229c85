// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Prompts.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace relay {

class ProgressLine;
struct Console;

// Prompts on a terminal or without a user. Messages go to the error stream as "title: text". Questions are
// asked only if someone can answer; otherwise the answer is No, without waiting.
class ConsolePrompts final : public Prompts {
  public:
    ConsolePrompts(Console& console, ProgressLine& progress);

    // From here on messages other than failures are held until showHeld().
    void setHolding(bool on) noexcept { m_holding = on; }
    void showHeld();
    // Messages and questions so far, shown or held.
    int count() const noexcept { return m_count; }

    void message(std::string_view text, std::string_view title, Icon icon = Icon::None) override;
    bool ask(std::string_view text, std::string_view title) override;
    std::optional<std::string> input(std::string_view text, std::string_view title,
                                     std::string_view preset = {}) override;
    // Always cancelled: commands take their file names from the command line.
    FileChoice openFile(std::string_view filter, std::string_view folder) override;
    FileChoice saveFile(std::string_view filter, std::string_view folder, std::string_view name,
                        std::string_view title = {}) override;
    // Opens nothing.
    bool openWithSystem(std::string_view target) override;
    bool viewText(std::string_view file) override;
    bool startProgram(std::string_view file) override;
    void beep() override {}
    void busy(bool) override {}
    void status(std::string_view) override {}

  private:
    bool someoneAnswers() const noexcept;
    void write(const std::string& line);

    Console& m_console;
    ProgressLine& m_progress;
    std::vector<std::string> m_held;
    bool m_holding = false;
    int m_count = 0;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Prompts.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace relay::test {

// Answers from a list and records what was shown. An unexpected question is answered "no" or "cancelled".
class ScriptedPrompts final : public Prompts {
  public:
    struct Shown final {
        std::string
            kind;  // "message", "ask", "input", "open", "save", "folder", "system", "view", "start", "beep"
        std::string text;
        std::string title;
        Icon icon = Icon::None;
    };

    std::vector<Shown> shown;
    std::vector<std::string> statuses;
    std::vector<std::string> notices;
    std::deque<bool> answers;                       // for ask
    std::deque<std::optional<std::string>> inputs;  // for input
    std::deque<FileChoice> files;                   // for openFile, saveFile and chooseFolder
    bool systemOpens = true;
    int busyDepth = 0;

    void message(std::string_view text, std::string_view title, Icon icon = Icon::None) override;
    bool ask(std::string_view text, std::string_view title) override;
    std::optional<std::string> input(std::string_view text, std::string_view title,
                                     std::string_view preset = {}) override;
    FileChoice openFile(std::string_view filter, std::string_view folder) override;
    FileChoice saveFile(std::string_view filter, std::string_view folder, std::string_view name,
                        std::string_view title = {}) override;
    std::optional<std::string> chooseFolder(std::string_view title, std::string_view folder) override;
    bool openWithSystem(std::string_view target) override;
    bool viewText(std::string_view file) override;
    bool startProgram(std::string_view file) override;
    void beep() override;
    void busy(bool on) override;
    void status(std::string_view text) override;
    void notice(std::string_view text) override;

    // Empty when nothing was shown.
    const Shown& last() const;
};

}  // namespace relay::test

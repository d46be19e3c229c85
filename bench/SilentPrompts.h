// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Prompts.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace relay::bench {

// Answers "no" and "cancelled"; messages go to standard error.
class SilentPrompts final : public Prompts {
  public:
    void message(std::string_view text, std::string_view, Icon) override {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
    }
    bool ask(std::string_view, std::string_view) override { return false; }
    std::optional<std::string> input(std::string_view, std::string_view, std::string_view) override {
        return std::nullopt;
    }
    FileChoice openFile(std::string_view, std::string_view) override { return {}; }
    FileChoice saveFile(std::string_view, std::string_view, std::string_view, std::string_view) override {
        return {};
    }
    bool openWithSystem(std::string_view) override { return false; }
    bool viewText(std::string_view) override { return false; }
    bool startProgram(std::string_view) override { return false; }
    void beep() override {}
    void busy(bool) override {}
    void status(std::string_view) override {}
};

}  // namespace relay::bench

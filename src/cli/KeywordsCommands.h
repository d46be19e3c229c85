// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>
#include <vector>

namespace relay {

// keywords find PHRASE [--engine NAME] [--one-per-line]
class KeywordsFindCommand final : public Command {
  public:
    KeywordsFindCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_phrase;
    std::string m_engine;
    bool m_onePerLine = false;
};

// keywords combine FILE FILE...
class KeywordsCombineCommand final : public Command {
  public:
    KeywordsCombineCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::vector<std::string> m_files;
};

// keywords count FILE-or-URL... [--words 1-3]
class KeywordsCountCommand final : public Command {
  public:
    KeywordsCountCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::vector<std::string> m_names;
    std::string m_words = "1-3";
};

}  // namespace relay

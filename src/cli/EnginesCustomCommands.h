// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <string>
#include <vector>

namespace relay {

// engines custom list
class CustomListCommand final : public Command {
  public:
    CustomListCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;
};

// engines custom show NAME
class CustomShowCommand final : public Command {
  public:
    CustomShowCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_name;
};

// engines custom add NAME [--from FILE-or-URL] [--set KEY=VALUE...]
class CustomAddCommand final : public Command {
  public:
    CustomAddCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_name;
    std::string m_page;
    std::vector<std::string> m_assignments;
};

// engines custom remove NAME
class CustomRemoveCommand final : public Command {
  public:
    CustomRemoveCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_name;
};

// engines custom merge [--undo]
class CustomMergeCommand final : public Command {
  public:
    CustomMergeCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    bool m_undo = false;
};

// engines custom export [DIR]
class CustomExportCommand final : public Command {
  public:
    CustomExportCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_folder;
};

// engines custom import DIR
class CustomImportCommand final : public Command {
  public:
    CustomImportCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_folder;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "pagetools/MetaTags.h"

#include <string>
#include <string_view>
#include <vector>

namespace relay {

// meta show FILE-or-URL
class MetaShowCommand final : public Command {
  public:
    MetaShowCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    void show(std::string_view html);

    std::string m_page;
};

// meta insert FILE... and meta replace FILE..., with --title, --keywords, --description and --dry-run
class MetaChangeCommand : public Command {
  public:
    int execute() override;

  protected:
    MetaChangeCommand(CLI::App& parent, CommandLineContext& context, MetaTagChange::Way way,
                      const std::string& name, const std::string& description, const std::string& examples);

    MetaTagChange m_change;

  private:
    void checkTexts() const;
    bool changeOne(const std::string& file);
    void report(const std::string& file, std::string_view state, std::string_view message);

    std::vector<std::string> m_files;
    bool m_dryRun = false;
};

class MetaInsertCommand final : public MetaChangeCommand {
  public:
    MetaInsertCommand(CLI::App& parent, CommandLineContext& context);
};

class MetaReplaceCommand final : public MetaChangeCommand {
  public:
    MetaReplaceCommand(CLI::App& parent, CommandLineContext& context);
};

}  // namespace relay

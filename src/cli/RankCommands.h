// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "ranking/RankingReport.h"

#include <string>
#include <vector>

namespace relay {

class clsRanking;
struct RankedPage;
struct RankingEnd;

// rank save PROFILE --site URL... --keywords TEXT (--pages N or --links N)
class RankSaveCommand final : public Command {
  public:
    RankSaveCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_profile;
    std::vector<std::string> m_sites;
    std::string m_keywords;
    int m_pages = 0;
    int m_links = 0;
};

// What "run" and "analyse" share: the choice of the engines, the analysis, the report.
class RankWorkCommand : public Command {
  protected:
    RankWorkCommand(CLI::App& parent, CommandLineContext& context, const std::string& name,
                    const std::string& description, const std::string& examples);

    // Opens the profile and ticks the chosen engines. False after a message.
    bool prepare(clsRanking& ranking);
    // Analyses the saved pages, shows the positions and writes the report.
    int analyse(clsRanking& ranking, SaveResults save);

  private:
    void tickEngines(clsRanking& ranking);
    // False when an engine's pages could not be read as results.
    bool showPositions(const clsRanking& ranking);

    std::string m_profile;
    std::vector<std::string> m_engines;
    bool m_all = false;
};

// rank run PROFILE [--engine NAME... or --all]
class RankRunCommand final : public RankWorkCommand {
  public:
    RankRunCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    // An exit code.
    int fetch(clsRanking& ranking);
    void showPage(const clsRanking& ranking, const RankedPage& page);
    int ended(const RankingEnd& end);
};

// rank analyse PROFILE [--engine NAME... or --all]
class RankAnalyseCommand final : public RankWorkCommand {
  public:
    RankAnalyseCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;
};

// rank profiles
class RankProfilesCommand final : public Command {
  public:
    RankProfilesCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;
};

// rank show PROFILE
class RankShowCommand final : public Command {
  public:
    RankShowCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_profile;
};

// rank remove PROFILE
class RankRemoveCommand final : public Command {
  public:
    RankRemoveCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_profile;
};

// rank history PROFILE [--csv]
class RankHistoryCommand final : public Command {
  public:
    RankHistoryCommand(CLI::App& parent, CommandLineContext& context);
    int execute() override;

  private:
    std::string m_profile;
    bool m_csv = false;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
//
// The commands that fetch and read result pages.
#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/RankCommands.h"
#include "cli/StopSignal.h"
#include "cli/Table.h"
#include "core/Failure.h"
#include "core/JsonLine.h"
#include "ranking/clsRanking.h"

#include <QEventLoop>

#include <algorithm>
#include <ostream>

namespace relay {

namespace {

bool couldBeRead(RankState state) {
    return state != RankState::NoResultList && state != RankState::NoResultPage;
}

std::string jsonNumbers(const std::vector<int>& numbers) {
    std::string list = "[";
    for (const int number : numbers) list.append(list.size() > 1 ? "," : "").append(std::to_string(number));
    return list + "]";
}

}  // namespace

RankWorkCommand::RankWorkCommand(CLI::App& parent, CommandLineContext& context, const std::string& name,
                                 const std::string& description, const std::string& examples)
    : Command(parent, context, name, description, examples) {
    app().add_option("PROFILE", m_profile, "The profile's name")->required()->type_name("");
    CLI::Option* const one =
        app().add_option("--engine", m_engines, "One engine (default: those of the profile)");
    one->type_name("NAME")->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app().add_flag("--all", m_all, "Every engine of the ranking catalogue")->excludes(one);
}

bool RankWorkCommand::prepare(clsRanking& ranking) {
    if (!ranking.Load()) return false;
    if (ranking.engines().empty())
        throw Failure("There are no search engines in " + rankingCatalogueFile(context().home().paths) +
                      "\n" + context().installHint());
    const RankingProfiles profiles(context().home().paths);
    if (!profiles.IsProfileExist(m_profile)) profiles.load(m_profile);
    if (!ranking.cboProfile_Click(m_profile)) return false;
    tickEngines(ranking);
    const auto problem = setupProblem(ranking.state().setup, rankRows(ranking.state().lsvRankingEngines));
    if (problem) throw Failure(std::string(problem->text));
    return true;
}

void RankWorkCommand::tickEngines(clsRanking& ranking) {
    if (!m_engines.empty()) {
        ranking.tickEngines(m_engines);
        return;
    }
    std::vector<bool> held = RankingProfiles(context().home().paths).load(m_profile).wasChecked;
    held.resize(ranking.engines().size());
    const bool all = m_all || std::none_of(held.begin(), held.end(), [](bool on) { return on; });
    for (std::size_t engine = 0; engine < held.size(); ++engine)
        ranking.state().lsvRankingEngines.setChecked(static_cast<int>(engine), all || held[engine]);
}

int RankWorkCommand::analyse(clsRanking& ranking, SaveResults save) {
    StopSignal& stop = context().console().stop;
    const bool analysed = ranking.getResults([&stop] { return !stop.poll(); });
    context().progress().erase();
    if (stop.poll()) return kStopped;
    if (!analysed || ranking.analysis().empty()) return kCouldNotRun;
    const bool couldRead = showPositions(ranking);
    const RankingReport report = ranking.Report({save, false});
    if (report.path.empty()) return kCouldNotRun;
    if (context().json)
        JsonLine().add("event", "report").add("path", report.path).write(context().out());
    else
        context().out() << "\nReport: " << report.path << '\n';
    if (!report.problem.empty()) return kCouldNotRun;
    return couldRead ? kSucceeded : kSomeFailed;
}

bool RankWorkCommand::showPositions(const clsRanking& ranking) {
    bool couldRead = true;
    std::ostream& out = context().out();
    const std::vector<std::string>& sites = ranking.state().setup.sites;
    Table table({"Engine", "Site", "Positions", "Links", "State"});
    for (std::size_t engine = 0; engine < ranking.analysis().size(); ++engine) {
        const EngineAnalysis& found = ranking.analysis()[engine];
        if (!found.analysed) continue;
        couldRead = couldRead && couldBeRead(found.state);
        const std::string& name = ranking.engines()[engine].EngineName;
        for (std::size_t site = 0; site < sites.size(); ++site) {
            const std::string_view state = rankStateName(found.siteState(site));
            if (context().json)
                JsonLine()
                    .add("event", "position")
                    .add("engine", name)
                    .add("site", sites[site])
                    .addJson("positions", jsonNumbers(found.hits[site]))
                    .add("links", found.nLinkCount)
                    .add("state", state)
                    .write(out);
            else
                table.add(
                    {name, sites[site], found.sDomainHits(site), std::to_string(found.nLinkCount), state});
        }
    }
    if (!table.empty()) table.write(out, context().colours());
    return couldRead;
}

RankAnalyseCommand::RankAnalyseCommand(CLI::App& parent, CommandLineContext& context)
    : RankWorkCommand(
          parent, context, "analyse", "Find the positions in the saved pages and write a report",
          "--home try rank analyse shop\n--home try rank analyse shop --engine 'Harbour Search'") {}

int RankAnalyseCommand::execute() {
    context().console().stop.watch();
    clsRanking ranking(context().home().services, QLocale::system());
    return prepare(ranking) ? analyse(ranking, SaveResults::Never) : kCouldNotRun;
}

RankRunCommand::RankRunCommand(CLI::App& parent, CommandLineContext& context)
    : RankWorkCommand(parent, context, "run", "Ask the search engines, then analyse as \"rank analyse\" does",
                      "--home try rank run shop --all\n"
                      "--home try rank run shop --engine 'Harbour Search' --engine 'Beacon Finder' --json") {}

int RankRunCommand::execute() {
    StopSignal& stop = context().console().stop;
    stop.watch();
    Session& home = context().home();
    home.network.open();
    clsRanking ranking(home.services, QLocale::system());
    if (!prepare(ranking)) return kCouldNotRun;
    const int fetched = fetch(ranking);
    if (fetched != kSucceeded && fetched != kSomeFailed) return fetched;
    const int analysed = analyse(ranking, SaveResults::Always);
    return analysed == kSucceeded ? fetched : analysed;
}

int RankRunCommand::fetch(clsRanking& ranking) {
    StopSignal& stop = context().console().stop;
    if (stop.poll()) return kStopped;
    QEventLoop loop;
    std::optional<RankingEnd> end;
    QObject::connect(&ranking, &clsRanking::pageSaved, &loop,
                     [&](const RankedPage& page) { showPage(ranking, page); });
    QObject::connect(&ranking, &clsRanking::searchEnded, &loop, [&](const RankingEnd& ended) {
        end = ended;
        loop.quit();
    });
    QObject::connect(&stop, &StopSignal::requested, &loop, [&] {
        context().note("Stopping ...");
        ranking.CancelProcess();
    });
    if (!ranking.StartSearch()) return kCouldNotRun;
    if (!end) loop.exec();
    context().progress().erase();
    return ended(*end);
}

void RankRunCommand::showPage(const clsRanking& ranking, const RankedPage& page) {
    if (context().json) {
        std::ostream& out = context().out();
        JsonLine()
            .add("event", "page")
            .add("engine", page.engine)
            .add("page", page.page)
            .add("bytes", static_cast<std::int64_t>(page.bytes))
            .add("status", page.status)
            .write(out);
        out.flush();
    }
    if (!context().progress().isOn()) return;
    const RankingState& state = ranking.state();
    context().progress().show("Page " + std::to_string(state.progressValue + 1) + " of " +
                              std::to_string(state.progressMaximum) + "   " + page.engine);
}

int RankRunCommand::ended(const RankingEnd& end) {
    if (end.unsaved > 0)
        context().warn("Pages that could not be saved: " + std::to_string(end.unsaved) + ". " + end.problem);
    if (end.cancelled) return kStopped;
    return end.unsaved == 0 ? kSucceeded : kSomeFailed;
}

}  // namespace relay

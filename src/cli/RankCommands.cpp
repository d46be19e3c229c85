// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RankCommands.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/Table.h"
#include "core/IniFile.h"
#include "core/JsonLine.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "ranking/HistoryStore.h"
#include "ranking/RankingCatalogue.h"
#include "ranking/RankingProfiles.h"

#include <ostream>

namespace relay {

namespace {

void addProfileOption(CLI::App& app, std::string& profile) {
    app.add_option("PROFILE", profile, "The profile's name")->required()->type_name("");
}

std::string jsonTexts(const std::vector<std::string>& texts) {
    std::string list = "[";
    for (const std::string& text : texts) {
        if (list.size() > 1) list += ',';
        appendJsonText(list, text);
    }
    return list + "]";
}

std::string_view limitName(RankLimit limit) {
    return limit == RankLimit::Pages ? "pages" : "links";
}

// Rows of a profile have no names; an engine that the catalogue no longer has is shown by its number.
std::string engineName(const std::vector<RankEngine>& engines, std::size_t place) {
    return place < engines.size() ? engines[place].EngineName : "(engine " + std::to_string(place + 1) + ")";
}

std::vector<RankEngine> listedEngines(const Paths& paths) {
    std::vector<RankEngine> engines;
    // Without the catalogue, or the rest of it, a profile can still be shown.
    failureOf([&] { readRankEngines(IniFile::load(rankingCatalogueFile(paths)), engines); });
    return engines;
}

}  // namespace

RankSaveCommand::RankSaveCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "save", "Write a profile: sites, keywords and how far to look",
              "--home try rank save shop --site www.site-15.example --keywords 'paper shop' --pages 3\n"
              "--home try rank save shop --site www.site-15.example --site www.site-38.example "
              "--keywords 'paper shop' --links 30") {
    addProfileOption(app(), m_profile);
    app()
        .add_option("--site", m_sites, "A site to look for, without its scheme; may be repeated")
        ->required()
        ->type_name("URL");
    app().add_option("--keywords", m_keywords, "What to search for, up to 100 characters")->required();
    const CLI::Range range(1, 32767);
    CLI::Option* const pages =
        app().add_option("--pages", m_pages, "Pages to read of each engine")->type_name("N")->check(range);
    app()
        .add_option("--links", m_links, "Links to read of each engine")
        ->type_name("N")
        ->check(range)
        ->excludes(pages);
}

int RankSaveCommand::execute() {
    if (m_pages == 0 && m_links == 0) throw UsageError("--pages or --links is required");
    if (const auto problem = profileNameProblem(m_profile)) throw UsageError(*problem);
    if (hasControlByte(m_keywords)) throw UsageError("--keywords: one line without control characters");
    RankingSetup setup;
    setup.profile = m_profile;
    for (const std::string& site : m_sites) setup.sites.push_back(rankedSite(site));
    setup.keywords = m_keywords;
    setup.limit = m_pages > 0 ? RankLimit::Pages : RankLimit::Links;
    setup.pageLinks = std::to_string(m_pages > 0 ? m_pages : m_links);
    // The engines are chosen by a run.
    if (const auto problem = setupProblem(setup, {RankRow{true, {}, {}, {}}}))
        throw UsageError(std::string(problem->text));
    RankingProfiles(context().home().paths).saveProfile(setup);
    return kSucceeded;
}

RankProfilesCommand::RankProfilesCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "profiles", "List the profiles",
              "--home try rank profiles\n--home try rank profiles --json") {}

int RankProfilesCommand::execute() {
    std::ostream& out = context().out();
    Table table({"Profile", "Sites", "Date", "Report"});
    const std::vector<ProfileEntry> profiles = RankingProfiles(context().home().paths).loadProfile();
    for (const ProfileEntry& profile : profiles) {
        if (context().json)
            JsonLine()
                .add("profile", profile.name)
                .add("url", profile.URL)
                .add("date", profile.Date)
                .add("report", profile.ReportFile)
                .write(out);
        else
            table.add({profile.name, profile.URL, profile.Date, profile.ReportFile});
    }
    if (!table.empty()) table.write(out, context().colours());
    if (profiles.empty()) context().note("No profiles. Write one with: korvel-relay-cli rank save");
    return kSucceeded;
}

RankShowCommand::RankShowCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "show", "Show a profile and the results saved in it",
              "--home try rank show shop\n--home try rank show shop --json") {
    addProfileOption(app(), m_profile);
}

int RankShowCommand::execute() {
    const Paths& paths = context().home().paths;
    const RankingProfile profile = RankingProfiles(paths).load(m_profile);
    const std::vector<RankEngine> engines = listedEngines(paths);
    std::ostream& out = context().out();
    if (context().json) {
        std::string rows = "[";
        for (std::size_t place = 0; place < profile.engines.size(); ++place) {
            JsonLine row;
            row.add("engine", engineName(engines, place))
                .addJson("checked", profile.wasChecked[place] ? "true" : "false")
                .add("pages", profile.engines[place].pages)
                .add("position", profile.engines[place].position);
            std::string text = row.finish();
            text.pop_back();
            rows.append(place == 0 ? "" : ",").append(text);
        }
        JsonLine()
            .add("profile", profile.setup.profile)
            .addJson("sites", jsonTexts(profile.setup.sites))
            .add("keywords", profile.setup.keywords)
            .add("limit", limitName(profile.setup.limit))
            .add("number", profile.setup.pageLinks)
            .add("date", profile.Date)
            .add("report", profile.ReportFile)
            .addJson("engines", rows + "]")
            .write(out);
        return kSucceeded;
    }
    Table fields({});
    for (const std::string& site : profile.setup.sites) fields.add({"site", site});
    fields.add({"keywords", profile.setup.keywords});
    fields.add({limitName(profile.setup.limit), profile.setup.pageLinks});
    fields.add({"date", profile.Date});
    fields.add({"report", profile.ReportFile});
    fields.write(out, false);
    Table rows({"Engine", "Chosen", "Pages", "Position"});
    for (std::size_t place = 0; place < profile.engines.size(); ++place)
        rows.add({engineName(engines, place), profile.wasChecked[place] ? "yes" : "no",
                  profile.engines[place].pages, profile.engines[place].position});
    if (rows.empty()) return kSucceeded;
    out << '\n';
    rows.write(out, context().colours());
    return kSucceeded;
}

RankRemoveCommand::RankRemoveCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "remove", "Remove a profile; its pages, reports and history stay",
              "--home try rank remove shop") {
    addProfileOption(app(), m_profile);
}

int RankRemoveCommand::execute() {
    const RankingProfiles profiles(context().home().paths);
    profiles.load(m_profile);
    profiles.removeProfile(m_profile);
    return kSucceeded;
}

RankHistoryCommand::RankHistoryCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "history", "Show what every analysis of a profile found",
              "--home try rank history shop\n--home try rank history shop --csv > shop.csv") {
    addProfileOption(app(), m_profile);
    app().add_flag("--csv", m_csv, "As comma separated values");
}

int RankHistoryCommand::execute() {
    if (m_csv && context().json) throw UsageError("--csv excludes --json");
    const std::vector<HistoryReading> readings = HistoryStore(context().home().paths).readings(m_profile);
    std::ostream& out = context().out();
    if (m_csv) {
        out << historyCSV(readings);
        return kSucceeded;
    }
    Table table({"Fetched", "Analysed", "Engine", "Site", "Best", "State"});
    for (const HistoryReading& reading : readings)
        for (const HistoryPlace& place : reading.places) {
            if (context().json)
                JsonLine()
                    .add("fetched", historyTime(place.fetched))
                    .add("analysed", historyTime(reading.analysed))
                    .add("catalogue", historyTime(reading.catalogue))
                    .add("keywords", reading.keywords)
                    .add("engine", place.engine)
                    .add("site", place.site)
                    .add("state", rankStateName(place.state))
                    .add("best", place.best)
                    .add("positions", place.positions)
                    .add("links", place.links)
                    .write(out);
            else
                table.add({historyTime(place.fetched), historyTime(reading.analysed), place.engine,
                           place.site, place.best == 0 ? std::string() : std::to_string(place.best),
                           rankStateName(place.state)});
        }
    if (!table.empty()) table.write(out, context().colours());
    if (readings.empty())
        context().note("No history yet. Each \"rank run\" and \"rank analyse\" adds to it.");
    return kSucceeded;
}

}  // namespace relay

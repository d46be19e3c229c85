// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/EnginesCommands.h"

#include "catalogue/CatalogueCheck.h"
#include "catalogue/EngineFields.h"
#include "catalogue/EngineHealth.h"
#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/Table.h"
#include "core/Failure.h"
#include "core/FileNames.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/JsonLine.h"
#include "ranking/RankingCatalogue.h"
#include "ranking/RankingCheck.h"

#include <ostream>

namespace relay {

namespace {

void writeJson(const clsEngines& engine, std::ostream& out) {
    JsonLine line;
    for (const EngineField& field : EngineFields) {
        if (clsEngines::isNumber(field.key)) {
            line.add(field.name, std::int64_t{engine.number(field.key)});
        } else {
            line.add(field.name, engine.text(field.key));
        }
    }
    line.write(out);
}

constexpr std::string_view kEngineFile = "krveng5.dat";

// The findings of all files, as a table or as JSON.
class FindingList final {
  public:
    explicit FindingList(CommandLineContext& context) : m_context(context) {}

    template <typename FileFinding>
    void add(std::string_view file, const FileFinding& finding, std::string_view kind) {
        m_any = true;
        if (m_context.json) {
            JsonLine()
                .add("file", file)
                .add("line", static_cast<std::int64_t>(finding.line))
                .add("record", finding.record)
                .add("finding", kind)
                .add("text", finding.text)
                .write(m_context.out());
        } else {
            m_table.add(
                {std::string(file), std::to_string(finding.line), finding.record, kind, finding.text});
        }
    }

    int write() const {
        if (!m_table.empty()) m_table.write(m_context.out(), m_context.colours());
        if (!m_any) m_context.note("Nothing found.");
        return m_any ? kSomeFailed : kSucceeded;
    }

  private:
    CommandLineContext& m_context;
    Table m_table{{"File", "Line", "Record", "Finding", "What"}};
    bool m_any = false;
};

}  // namespace

EnginesListCommand::EnginesListCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "list", "List the engines of the catalogue, or the chosen ones",
              "--home try engines list\n--home try engines list --major\n"
              "--home try engines list --type ENG,DIR --no-adult --save-selection general.eng") {
    m_selection.addTo(app());
}

int EnginesListCommand::execute() {
    if (!context().loadEngines()) return kCouldNotRun;
    Catalogue& catalogue = context().home().catalogue;
    m_selection.apply(context(), catalogue);
    const Rows& rows =
        m_selection.isGiven() ? catalogue.lists.lsvSelectedEngines : catalogue.lists.lsvEngines;

    std::ostream& out = context().out();
    Table table({"Name", "Type", "Country", "Category", "Method", "Level"});
    for (int i = 0; i < rows.count(); ++i) {
        const clsEngines& engine = catalogue.engine(rows.at(i).key);
        if (context().json) {
            writeJson(engine, out);
        } else {
            table.add({engine.name(), engine.EngineType(), engine.Country(), engine.Category(),
                       engine.Method(), std::to_string(engine.SiteLevel())});
        }
    }
    if (!table.empty()) table.write(out, context().colours());
    if (rows.empty()) context().note("No engines.");
    return kSucceeded;
}

EnginesCheckCommand::EnginesCheckCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "check", "List everything that is wrong with the catalogue",
              "--home try engines check\n--home try engines check --json") {}

int EnginesCheckCommand::execute() {
    if (!context().loadEngineCategories()) return kCouldNotRun;
    const Session& home = context().home();
    const std::string file = home.paths.inWindows(kEngineFile);
    const std::string text = readFile(file);
    if (text.empty()) throw Failure(file + " is empty: no engine can be loaded from it.");
    FindingList list(context());
    for (const Finding& finding :
         checkCatalogue(text, home.catalogue.engineCategories, home.preference.refusesAdultSites()))
        list.add(kEngineFile, finding, findingName(finding.kind));
    const std::string ranking = rankingCatalogueFile(home.paths);
    if (fileExists(ranking)) {
        for (const RankFinding& finding : checkRankingCatalogue(readFile(ranking)))
            list.add(getFileNameFromFile(ranking), finding, rankFindingName(finding.kind));
    }
    return list.write();
}

EnginesHealthCommand::EnginesHealthCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "health", "List how the engines did in the submissions of this home",
              "--home try engines health") {}

int EnginesHealthCommand::execute() {
    const std::vector<EngineHealth> engines = HealthStore(context().home().paths).engines();
    Table table({"Engine", "Last success", "Failures in a row"});
    for (const EngineHealth& engine : engines) {
        const std::string success = healthTime(engine.lastSuccess);
        if (context().json)
            JsonLine()
                .add("engine", engine.engine)
                .add("last_success", success)
                .add("failures", std::int64_t{engine.failures})
                .write(context().out());
        else
            table.add({engine.engine, success.empty() ? "never" : success, std::to_string(engine.failures)});
    }
    if (!table.empty()) table.write(context().out(), context().colours());
    if (engines.empty()) context().note("Nothing was submitted from this home yet.");
    return kSucceeded;
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/SearchCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "core/Failure.h"
#include "core/JsonLine.h"
#include "core/Prompts.h"
#include "ranking/WebSearch.h"

#include <map>
#include <ostream>

namespace relay {

namespace {

const std::map<std::string, SearchType> kTypes = {
    {"general", SearchType::General}, {"url", SearchType::Url}, {"link", SearchType::Link}};

}  // namespace

SearchCommand::SearchCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "search", "Open a query on a search engine in the browser",
              "--home try search 'Harbour Search' 'paper shop'\n"
              "--home try search 'Harbour Search' http://www.site-15.example/ --type link --print") {
    app()
        .add_option("ENGINE", m_engine, "A search engine of the ranking catalogue")
        ->required()
        ->type_name("");
    app().add_option("TEXT", m_text, "What to search for")->required()->type_name("");
    app()
        .add_option("--type", m_type,
                    "general: the words; url: the host of an address; link: who links to it")
        ->type_name("TYPE")
        ->check(CLI::IsMember({"general", "url", "link"}));
    app().add_flag("--print", m_print, "Print the query's address and open nothing");
}

int SearchCommand::execute() {
    if (m_text.empty()) throw UsageError("Please enter the keywords you would like to search for.");
    Session& home = context().home();
    RankingCatalogue catalogue(home.services, RankReader::Search);
    if (!catalogue.loadEngineData()) {
        context().warn(context().installHint());
        return kCouldNotRun;
    }
    const std::size_t engine = catalogue.indexOf(m_engine);
    if (engine == npos) throw Failure("There is no search engine named \"" + m_engine + "\".");
    const std::string address = searchURL(catalogue.engines()[engine], kTypes.at(m_type), m_text);
    if (m_print) {
        if (context().json)
            JsonLine().add("url", address).write(context().out());
        else
            context().out() << address << '\n';
        return kSucceeded;
    }
    if (!context().prompts().openWithSystem(address)) throw Failure(cannotOpenText(address));
    return kSucceeded;
}

}  // namespace relay

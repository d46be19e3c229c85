// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "cli/CategoriesCommand.h"
#include "cli/Command.h"
#include "cli/CommandLineContext.h"
#include "cli/CompletionCommand.h"
#include "cli/DoorwayCommand.h"
#include "cli/EnginesCommands.h"
#include "cli/EnginesCustomCommands.h"
#include "cli/EnginesInstallCommand.h"
#include "cli/EnginesScrapeCommand.h"
#include "cli/ExitCode.h"
#include "cli/ExtrasCommands.h"
#include "cli/FtpCommands.h"
#include "cli/KeywordsCommands.h"
#include "cli/MetaCommands.h"
#include "cli/OptimizeCommand.h"
#include "cli/PracticeCommand.h"
#include "cli/PreviewCommand.h"
#include "cli/RankCommands.h"
#include "cli/SearchCommand.h"
#include "cli/SubmitCommand.h"
#include "cli/UpdateCommand.h"
#include "cli/WebsiteCommands.h"
#include "cli/WebsiteImportCommands.h"
#include "cli/WebsiteWebCommands.h"
#include "core/Failure.h"
#include "core/Text.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <memory>
#include <ostream>

namespace relay {

namespace {

constexpr const char* kAbout = "Submits web sites to search engines, directories and link pages.";
constexpr const char* kClosing =
    "\nThe switches /D (write a trace to Error.log) and /U (reports link to the engines' own pages) may\n"
    "be anywhere.\n"
    "\n"
    "Exit codes: 0 everything succeeded; 1 the run ended but some engines or files did not succeed;\n"
    "2 wrong usage; 3 could not run; 130 stopped by Ctrl-C.\n"
    "\n"
    "Examples with the practice catalogue, so nothing leaves this computer. The first command keeps\n"
    "running; enter the others in a second terminal:\n"
    "  korvel-relay-cli --home try practice\n"
    "  korvel-relay-cli --home try engines install --practice\n"
    "  korvel-relay-cli website set shop.kws Title='Paper Shop' Email=info@shop.example\n"
    "  korvel-relay-cli website add-url shop.kws http://shop.example/\n"
    "  korvel-relay-cli --home try submit --website shop.kws --all\n"
    "\n"
    "Help for a command: korvel-relay-cli submit --help";

// The parser has no options of this form, and the logic looks for the switches in the whole command line.
std::vector<std::string> withoutSwitches(const std::vector<std::string>& arguments) {
    std::vector<std::string> rest;
    for (const std::string& argument : arguments) {
        if (!equalsNoCase(argument, "/D") && !equalsNoCase(argument, "/U")) rest.push_back(argument);
    }
    return rest;
}

// The parser: the common options and the commands.
class Parser final {
  public:
    explicit Parser(CommandLineContext& context) : m_app(kAbout, "korvel-relay-cli"), m_context(context) {
        m_app.fallthrough();
        m_app.require_subcommand(1);
        m_app.footer(kClosing);
        m_app.set_version_flag("--version", "korvel-relay-cli " RELAY_VERSION);
        m_app.add_option("--home", context.homeOption, "Keep everything inside this folder")
            ->type_name("DIR")
            ->check(CLI::Validator([](std::string& text) { return text.empty() ? "is empty" : ""; }, ""));
        m_app.add_flag("--json", context.json, "Results as JSON, one object per line");
        m_app.add_flag("--quiet", context.quiet, "Only results and failures: no progress, no other messages");
        addCommands();
    }

    // Throws CLI::ParseError, also for help and version.
    Command& parse(std::vector<std::string> arguments) {
        // The parser would take the next word for the folder.
        if (std::find(arguments.begin(), arguments.end(), "--home=") != arguments.end())
            throw UsageError("--home: is empty");
        std::reverse(arguments.begin(), arguments.end());
        m_app.parse(std::move(arguments));
        for (const std::unique_ptr<Command>& command : m_commands) {
            if (command->isChosen()) return *command;
        }
        throw CLI::RequiredError("A command");
    }

    CommandNode tree() const { return commandTree(m_app); }
    // The usage error, in our own words where the parser's would mislead.
    std::string explain(const CLI::ParseError& error) const {
        if (error.get_name() != "RequiredError" || isCommandChosen()) return error.what();
        const std::vector<std::string> strangers = m_app.remaining(true);
        return strangers.empty() ? "A command is missing."
                                 : "\"" + strangers.front() + "\" is not a command.";
    }
    // "korvel-relay-cli website set", as far as the command line was parsed.
    std::string usedName() const {
        std::string name = m_app.get_name();
        for (const CLI::App* app = &m_app; !app->get_subcommands().empty();) {
            app = app->get_subcommands().front();
            name += " " + app->get_name();
        }
        return name;
    }
    int exit(const CLI::ParseError& error) {
        return m_app.exit(error, m_context.out(), m_context.console().err);
    }

  private:
    bool isCommandChosen() const {
        return std::any_of(m_commands.begin(), m_commands.end(),
                           [](const std::unique_ptr<Command>& command) { return command->isChosen(); });
    }
    static CLI::App& addGroup(CLI::App& parent, const char* name, const char* description,
                              const char* examples) {
        CLI::App& group = *parent.add_subcommand(name, description);
        group.require_subcommand(1);
        group.footer(exampleText(examples));
        return group;
    }
    template <typename Kind>
    void add(CLI::App& parent) {
        m_commands.push_back(std::make_unique<Kind>(parent, m_context));
    }
    void addCommands() {
        CLI::App& website = addGroup(m_app, "website", "Show and change website files",
                                     "website set shop.kws Title='Paper Shop' Email=info@shop.example\n"
                                     "website add-url shop.kws http://shop.example/\n"
                                     "website show shop.kws");
        add<WebsiteShowCommand>(website);
        add<WebsiteSetCommand>(website);
        add<WebsiteAddUrlCommand>(website);
        add<WebsiteImportUrlsCommand>(website);
        add<WebsiteExportUrlsCommand>(website);
        add<WebsiteImportFormCommand>(website);
        add<WebsiteImportSitemapCommand>(website);
        add<WebsiteUrlsFromWebCommand>(website);
        add<WebsiteDetailsCommand>(website);
        CLI::App& engines = addGroup(m_app, "engines", "List, check and install the engine catalogue",
                                     "--home try engines install --practice\n"
                                     "--home try engines list --country DE\n"
                                     "--home try engines check");
        add<EnginesListCommand>(engines);
        add<EnginesCheckCommand>(engines);
        add<EnginesHealthCommand>(engines);
        add<EnginesInstallCommand>(engines);
        add<EnginesScrapeCommand>(engines);
        CLI::App& custom =
            addGroup(engines, "custom", "Engines of your own",
                     "--home try engines custom add Harbour --from http://harbour.example/add\n"
                     "--home try engines custom merge");
        add<CustomListCommand>(custom);
        add<CustomShowCommand>(custom);
        add<CustomAddCommand>(custom);
        add<CustomRemoveCommand>(custom);
        add<CustomMergeCommand>(custom);
        add<CustomExportCommand>(custom);
        add<CustomImportCommand>(custom);
        CLI::App& categories =
            addGroup(m_app, "categories", "Walk through the categories of outside directories",
                     "--home try categories walk Yahoo Arts");
        add<CategoriesWalkCommand>(categories);
        add<UpdateCommand>(m_app);
        CLI::App& meta = addGroup(m_app, "meta", "Read and change the meta tags of pages",
                                  "meta show index.html\n"
                                  "meta replace index.html --title 'Paper Shop' --keywords 'paper, pens' "
                                  "--description 'Paper and pens' --dry-run");
        add<MetaShowCommand>(meta);
        add<MetaInsertCommand>(meta);
        add<MetaReplaceCommand>(meta);
        add<OptimizeCommand>(m_app);
        add<DoorwayCommand>(m_app);
        CLI::App& keywords = addGroup(m_app, "keywords", "Find, combine and count keywords",
                                      "--home try keywords find 'writing paper'\n"
                                      "--home try keywords count index.html");
        add<KeywordsFindCommand>(keywords);
        add<KeywordsCombineCommand>(keywords);
        add<KeywordsCountCommand>(keywords);
        CLI::App& ftp =
            addGroup(m_app, "ftp", "Upload files to an FTP server",
                     "ftp list /htdocs --host ftp.shop.example --user ada --password-file secret.txt --tls\n"
                     "ftp put index.html --host ftp.shop.example --user ada --password-file secret.txt "
                     "--path /htdocs --tls");
        add<FtpPutCommand>(ftp);
        add<FtpListCommand>(ftp);
        add<NewsCommand>(m_app);
        CLI::App& addIns =
            addGroup(m_app, "addins", "List the tools of the menu Add-Ins", "--home try addins list");
        add<AddInsListCommand>(addIns);
        add<PreviewCommand>(m_app);
        add<SubmitCommand>(m_app);
        CLI::App& rank = addGroup(m_app, "rank", "Find the positions of sites on search engines",
                                  "--home try rank save shop --site www.site-15.example --keywords 'paper "
                                  "shop' --pages 3\n"
                                  "--home try rank run shop --all\n"
                                  "--home try rank history shop");
        add<RankSaveCommand>(rank);
        add<RankRunCommand>(rank);
        add<RankAnalyseCommand>(rank);
        add<RankProfilesCommand>(rank);
        add<RankShowCommand>(rank);
        add<RankRemoveCommand>(rank);
        add<RankHistoryCommand>(rank);
        add<SearchCommand>(m_app);
        add<PracticeCommand>(m_app);
        add<CompletionCommand>(m_app);
    }

    CLI::App m_app;
    CommandLineContext& m_context;
    std::vector<std::unique_ptr<Command>> m_commands;
};

int wrongUsage(CommandLineContext& context, const Parser& parser, const std::string& words) {
    context.warn(words + "\nTry: " + parser.usedName() + " --help");
    return kWrongUsage;
}

int parseAndExecute(const std::vector<std::string>& arguments, CommandLineContext& context) {
    Parser parser(context);
    try {
        Command& command = parser.parse(withoutSwitches(arguments));
        context.applyOptions();
        return command.execute();
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return parser.exit(error);
        return wrongUsage(context, parser, parser.explain(error));
    } catch (const UsageError& error) {
        return wrongUsage(context, parser, error.what());
    } catch (const std::exception& failure) {
        context.warn(failureText(failure));
        return kCouldNotRun;
    }
}

// Results that could not be written are a failure. If the reader closed the pipe, there is no message.
int checkResults(CommandLineContext& context, int exitCode) {
    Console& console = context.console();
    if (console.out.flush()) return exitCode;
    const int reason = console.outError ? console.outError() : 0;
    if (reason != EPIPE) {
        std::string words = "The results could not be written";
        if (reason != 0) words += std::string(": ") + std::strerror(reason);
        context.warn(words);
    }
    return exitCode == kStopped ? kStopped : kCouldNotRun;
}

}  // namespace

CommandNode describeCommands(Console& console) {
    CommandLineContext context(console, {});
    return Parser(context).tree();
}

int runCommandLine(const std::vector<std::string>& arguments, Console& console) {
    try {
        CommandLineContext context(console, arguments);
        const int exitCode = checkResults(context, parseAndExecute(arguments, context));
        context.finish(exitCode);
        return exitCode;
    } catch (const std::exception& failure) {
        console.err << failureText(failure) << '\n' << std::flush;
        return kCouldNotRun;
    }
}

}  // namespace relay

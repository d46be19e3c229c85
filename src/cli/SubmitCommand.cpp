// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/SubmitCommand.h"

#include "catalogue/PasswordKey.h"
#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/StopSignal.h"
#include "cli/SubmissionWatcher.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "projects/WebsiteKeys.h"
#include "submission/SubmissionController.h"
#include "submission/SubmissionRecords.h"

#include <QEventLoop>
#include <QLocale>

#include <exception>
#include <filesystem>

namespace relay {

namespace {

// Adds the websites to the run, in order. Throws Failure when one cannot be submitted.
void addSites(SubmissionController& controller, CommandLineContext& context,
              const std::vector<std::string>& files) {
    for (const std::string& file : files) {
        requireWebsite(file);
        const std::filesystem::path path = absolutePath(file);
        const Rows& sites = controller.state().lsvSiteSelection;
        if (controller.hasSite(path.string())) {
            context.note("Named twice, submitted once: " + file);
            continue;
        }
        if (!controller.addSite(path.string(), path.stem().string(), {}) ||
            !sites.at(sites.count() - 1).checked)
            throw Failure(file + ": " + std::string(kNoURL));
    }
}

void warnOfEmptyPasswords(CommandLineContext& context, const EngineLists& lists,
                          const std::vector<std::string>& files) {
    const std::string warning = emptyPasswordWarning(lists);
    if (warning.empty()) return;
    for (const std::string& file : files)
        if (IniFile::load(file).value("Web Site Info", "Password").empty())
            context.note(file + ": " + warning);
}

}  // namespace

SubmitCommand::SubmitCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "submit", "Submit the URLs of websites to the chosen engines",
              "--home try submit --website shop.kws --all\n"
              "--home try submit --website shop.kws blog.kws --type ENG,DIR --no-adult --connections 20\n"
              "--home try submit --website shop.kws --failed\n"
              "--home try submit --website shop.kws --major --json > run.jsonl") {
    app()
        .add_option("--website", m_websites, "The website files, in the order of the run")
        ->type_name("FILE")
        ->required();
    app()
        .add_option("--connections", m_connections,
                    "Requests at a time, 1 to 1000 (default: from the settings)")
        ->type_name("N")
        ->check(CLI::Range(1, 1000));
    m_selection.addTo(app());
}

int SubmitCommand::execute() {
    if (!m_selection.chooses())
        throw UsageError(
            "No engines are chosen. Choose them with --all, --type, --country, --engine or another option.");
    StopSignal& stop = context().console().stop;
    stop.watch();
    if (!context().loadEngines()) return kCouldNotRun;
    Catalogue& catalogue = context().home().catalogue;
    m_selection.apply(context(), catalogue);
    if (m_connections > 0) context().home().preference.Connections = m_connections;
    if (stop.poll()) return kStopped;
    return run(catalogue);
}

int SubmitCommand::run(Catalogue& catalogue) {
    Session& home = context().home();
    Console& console = context().console();
    home.network.open();
    SubmissionController controller(home.services, catalogue, {QLocale::system(), context().linksEngines()});
    addSites(controller, context(), m_websites);
    warnOfEmptyPasswords(context(), catalogue.lists, m_websites);
    if (!controller.cmdNext() || !controller.cmdStart()) return kCouldNotRun;

    SubmissionWatcher watcher(context(), controller.state().lsvSiteSubmitting.count(),
                              controller.submit().NumOfEngines());
    QEventLoop loop;
    // A failure to report ends the run, which would otherwise go on unreported.
    std::exception_ptr untold;
    const auto tell = [&](const auto& telling) {
        try {
            if (!untold) telling();
        } catch (...) {
            untold = std::current_exception();
            loop.quit();
        }
    };
    QObject::connect(&controller, &SubmissionController::engineEnded, &loop,
                     [&](const EngineEnded& ended) { tell([&] { watcher.engineEnded(ended); }); });
    QObject::connect(&controller, &SubmissionController::reportWritten, &loop,
                     [&](const UrlReport& report) { tell([&] { watcher.reportWritten(report); }); });
    QObject::connect(&controller, &SubmissionController::runDone, &loop, [&](const RunSummary& summary) {
        tell([&] { watcher.runDone(summary); });
        loop.quit();
    });
    QObject::connect(&console.stop, &StopSignal::requested, &loop, [&] {
        context().note("Stopping ...");
        if (controller.isRunning()) controller.cmdSubmit();
    });
    if (console.stop.poll()) return kStopped;
    if (!controller.cmdSubmit()) return kCouldNotRun;
    const int failed = watcher.isDone() || untold ? 0 : loop.exec();
    if (untold) std::rethrow_exception(untold);
    return failed != 0 ? failed : watcher.exitCode();
}

}  // namespace relay

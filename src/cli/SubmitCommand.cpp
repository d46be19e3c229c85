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
#include "core/Paths.h"
#include "core/Trap.h"
#include "projects/WebsiteKeys.h"
#include "submission/SubmissionController.h"
#include "submission/SubmissionRecords.h"

#include <QEventLoop>
#include <QLocale>

#include <exception>
#include <filesystem>
#include <utility>

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
              "--home try submit --website shop.kws --failed --csv results.csv\n"
              "--home try submit --resume\n"
              "--home try submit --website shop.kws --major --json > run.jsonl") {
    app()
        .add_option("--website", m_websites, "The website files, in the order of the run")
        ->type_name("FILE");
    app().add_flag("--resume", m_resume, "Continue the run that a crash or a power cut interrupted");
    app()
        .add_option("--connections", m_connections,
                    "Requests at a time, 1 to 1000 (default: from the settings)")
        ->type_name("N")
        ->check(CLI::Range(1, 1000));
    app().add_option("--csv", m_csv, "At the end, write all results to a table")->type_name("FILE");
    m_selection.addTo(app());
}

void SubmitCommand::checkUsage() const {
    if (m_resume) {
        if (!m_websites.empty() || m_selection.isGiven())
            throw UsageError("--resume continues a run as it was: it takes no websites and no engines.");
    } else if (m_websites.empty()) {
        throw UsageError("--website is required");
    } else if (!m_selection.chooses()) {
        throw UsageError(
            "No engines are chosen. Choose them with --all, --type, --country, --engine or another option.");
    }
}

int SubmitCommand::execute() {
    checkUsage();
    // Better now than at the end of the run.
    if (!m_csv.empty() && !folderExists(std::filesystem::path(absolutePath(m_csv)).parent_path().string()))
        throw Failure(m_csv + ": there is no such folder.");
    StopSignal& stop = context().console().stop;
    stop.watch();
    std::optional<CutOffRun> cutOff;
    if (m_resume) {
        cutOff = findCutOffRun(context().home().paths.AppPath);
        if (!cutOff) throw Failure("There is no interrupted run to continue.");
    }
    if (!context().loadEngines()) return kCouldNotRun;
    Catalogue& catalogue = context().home().catalogue;
    m_selection.apply(context(), catalogue);
    if (m_connections > 0) context().home().preference.Connections = m_connections;
    if (stop.poll()) return kStopped;
    return run(catalogue, std::move(cutOff));
}

// The controller shows why not.
bool SubmitCommand::prepare(SubmissionController& controller, std::optional<CutOffRun>& cutOff) {
    if (cutOff) return controller.resume(*cutOff);
    addSites(controller, context(), m_websites);
    warnOfEmptyPasswords(context(), context().home().catalogue.lists, m_websites);
    return controller.cmdNext() && controller.cmdStart();
}

int SubmitCommand::run(Catalogue& catalogue, std::optional<CutOffRun> cutOff) {
    Session& home = context().home();
    home.network.open();
    SubmissionController controller(home.services, catalogue, {QLocale::system(), context().linksEngines()});
    if (!prepare(controller, cutOff)) return kCouldNotRun;
    SubmissionWatcher watcher(context(), controller);
    if (cutOff) watcher.goOn(*cutOff);
    cutOff.reset();
    try {
        return saveTable(controller, watch(controller, watcher));
    } catch (...) {
        // The table is saved even if the output failed.
        if (controller.state().results.count() > 0) saveTable(controller, kCouldNotRun);
        throw;
    }
}

int SubmitCommand::watch(SubmissionController& controller, SubmissionWatcher& watcher) {
    Console& console = context().console();
    QEventLoop loop;
    // If the output fails, the run ends instead of continuing unseen.
    std::exception_ptr outputFailure;
    const auto print = [&](const auto& printing) {
        try {
            if (!outputFailure) printing();
        } catch (...) {
            outputFailure = std::current_exception();
            loop.quit();
        }
    };
    QObject::connect(&controller, &SubmissionController::engineEnded, &loop,
                     [&](const EngineEnded& ended) { print([&] { watcher.engineEnded(ended); }); });
    QObject::connect(&controller, &SubmissionController::reportWritten, &loop,
                     [&](const UrlReport& report) { print([&] { watcher.reportWritten(report); }); });
    QObject::connect(&controller, &SubmissionController::ledgerFailed, &loop, [&](const std::string& why) {
        print([&] { context().warn("The run cannot be continued after a crash: " + why); });
    });
    QObject::connect(&controller, &SubmissionController::runDone, &loop, [&](const RunSummary& summary) {
        print([&] { watcher.runDone(summary); });
        loop.quit();
    });
    QObject::connect(&console.stop, &StopSignal::requested, &loop, [&] {
        context().note("Stopping ...");
        if (controller.isRunning()) controller.cmdSubmit();
    });
    if (console.stop.poll()) return kStopped;
    if (!controller.cmdSubmit()) return kCouldNotRun;
    const int failed = watcher.isDone() || outputFailure ? 0 : loop.exec();
    if (outputFailure) std::rethrow_exception(outputFailure);
    return failed != 0 ? failed : watcher.exitCode();
}

int SubmitCommand::saveTable(const SubmissionController& controller, int exitCode) {
    if (m_csv.empty()) return exitCode;
    const auto failure = failureOf([&] { saveResults(controller.state().results, m_csv); });
    if (!failure) return exitCode;
    context().warn("The table of results could not be written: " + *failure);
    return exitCode == kStopped ? kStopped : kCouldNotRun;
}

}  // namespace relay

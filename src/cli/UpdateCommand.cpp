// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/UpdateCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/StopSignal.h"
#include "cli/Table.h"
#include "core/Failure.h"
#include "core/JsonLine.h"
#include "practice/StarterServer.h"

#include <QEventLoop>

#include <optional>
#include <ostream>

namespace relay {

namespace {

int exitCodeOf(UpdateEnding ending) {
    switch (ending) {
        case UpdateEnding::Updated:
            return kSucceeded;
        case UpdateEnding::FileFailed:
            return kSomeFailed;
        case UpdateEnding::CouldNotRun:
            return kCouldNotRun;
        case UpdateEnding::Stopped:
            return kStopped;
    }
    return kCouldNotRun;
}

}  // namespace

UpdateCommand::UpdateCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "update", "Fetch the engine data from the update server",
              "--home try update\n--home try update --server catalogue.agency.example\n"
              "--home try update --undo") {
    CLI::Option* const server =
        app()
            .add_option("--server", m_server,
                        "The update server (default: that of korvel.ini, else the installed starter data)")
            ->type_name("HOST[:PORT]");
    app().add_flag("--undo", m_undo, "Take the last update back")->excludes(server);
}

int UpdateCommand::execute() {
    Session& home = context().home();
    EngineUpdate update(home.services, home.catalogue, starterServer(home.paths));
    if (m_undo) {
        update.undo();
        reportEnd(update, false);
        return kSucceeded;
    }
    if (app().count("--server") > 0) {
        try {
            update.setServer(m_server);
        } catch (const Failure& failure) {
            throw UsageError(std::string("--server: ") + failure.what());
        }
    }
    return fetch(update);
}

int UpdateCommand::fetch(EngineUpdate& update) {
    StopSignal& stop = context().console().stop;
    stop.watch();
    QEventLoop loop;
    std::optional<UpdateEnding> ending;
    QObject::connect(&update, &EngineUpdate::fileEnded, &loop,
                     [this](const UpdatedFile& file) { report(file); });
    QObject::connect(&update, &EngineUpdate::changed, &loop, [&] {
        const UpdateState& state = update.state();
        if (!state.step.empty())
            context().progress().show(state.step + ": " + std::to_string(state.value) + " bytes");
    });
    QObject::connect(&update, &EngineUpdate::ended, &loop, [&](UpdateEnding how) {
        ending = how;
        loop.quit();
    });
    QObject::connect(&stop, &StopSignal::requested, &loop, [&] { update.Close(); });
    if (stop.poll()) return kStopped;
    update.Start();
    const int failed = ending ? 0 : loop.exec();
    if (!ending) return failed != 0 ? failed : kCouldNotRun;
    if (*ending == UpdateEnding::CouldNotRun) return kCouldNotRun;  // a box said why
    if (!update.state().reason.empty()) context().warn(update.state().reason);
    reportEnd(update, *ending == UpdateEnding::Updated);
    return exitCodeOf(*ending);
}

void UpdateCommand::report(const UpdatedFile& file) {
    m_files.push_back(file);
    if (!context().json) return;
    std::ostream& out = context().out();
    JsonLine()
        .add("event", "file")
        .add("name", file.name)
        .add("status", file.status)
        .add("bytes", static_cast<std::int64_t>(file.bytes))
        .write(out);
    out.flush();
}

void UpdateCommand::reportEnd(const EngineUpdate& update, bool updated) {
    const CatalogueChange& change = update.change();
    std::ostream& out = context().out();
    if (context().json) {
        const auto count = [](const auto& names) { return static_cast<std::int64_t>(names.size()); };
        JsonLine()
            .add("event", "done")
            .addJson("updated", updated ? "true" : "false")
            .add("added", count(change.added))
            .add("removed", count(change.removed))
            .add("changed", count(change.changed))
            .write(out);
        return;
    }
    Table table({"File", "Status", "Bytes"});
    for (const UpdatedFile& file : m_files)
        table.add({file.name, std::to_string(file.status), std::to_string(file.bytes)});
    if (!table.empty()) table.write(out, context().colours());
    out << change.counts() << '\n';
    context().note(m_undo    ? std::string("The last update was taken back.")
                   : updated ? "Engine files have been successfully updated."
                             : std::to_string(m_files.size() - 1) + " of 5 files were replaced.");
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PracticeCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/StopSignal.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/JsonLine.h"
#include "core/Paths.h"
#include "core/Trap.h"
#include "practice/PracticeAddress.h"
#include "practice/PracticeWeb.h"
#include "practice/StarterServer.h"
#include "session/InstalledData.h"

#include <QEventLoop>

#include <optional>
#include <ostream>

namespace relay {

namespace {

// Makes the form pages ask for what the practice catalogue sends; without it they have the usual fields.
void describeEngines(PracticeWeb& web, const std::string& dataFolder) {
    const std::string engines = dataFolder + "/practice/krveng5.dat";
    const std::string categories = dataFolder + "/practice/catkws.dat";
    if (fileExists(engines) && fileExists(categories))
        web.describeEngines(readFile(engines), readFile(categories));
}

// Without the installed files the practice web is no update server.
void publishUpdate(PracticeWeb& web, const Paths& paths) {
    failureOf([&] { web.publish(readUpdateTexts(paths, "practice")); });
}

std::optional<std::string> otherPracticeWeb(const Paths& paths) {
    try {
        return runningPracticeWeb(paths);
    } catch (const Failure&) {
        return std::nullopt;  // none, or one that ended without removing its address
    }
}

}  // namespace

PracticeCommand::PracticeCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "practice", "Run the practice web until Ctrl-C",
              "--home try practice\n--home try practice --port 8080") {
    app()
        .add_option("--port", m_port, "Port on this machine (default: a free one)")
        ->type_name("N")
        ->check(CLI::Range(0, 65535));
}

void PracticeCommand::writeAddress(const std::string& address) {
    std::ostream& out = context().out();
    if (context().json) {
        JsonLine().add("address", address).write(out);
    } else {
        out << address << "/\n";
    }
    out.flush();
    context().note(
        "The practice web is running; open the address to see what it receives. Stop it with Ctrl-C.");
}

int PracticeCommand::execute() {
    StopSignal& stop = context().console().stop;
    stop.watch();
    const Paths& paths = context().home().paths;
    PracticeWeb web;
    describeEngines(web, paths.installedData);
    publishUpdate(web, paths);
    web.start(m_port);
    std::optional<PracticeAddress> kept;
    try {
        if (const std::optional<std::string> other = otherPracticeWeb(paths))
            context().warn(
                "Another practice web is running for this home; other commands will use that one: " + *other);
        else
            kept.emplace(paths, web.address());
    } catch (const Failure& failure) {
        context().warn(std::string("Other commands will not find the practice web: ") + failure.what());
    }
    writeAddress(web.address());
    QEventLoop loop;
    QObject::connect(&stop, &StopSignal::requested, &loop, &QEventLoop::quit);
    const int failed = stop.poll() ? 0 : loop.exec();
    return failed != 0 ? failed : kStopped;
}

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
//
// One submission with 50 connections to every engine of a home, with or without a ledger, measured from the
// catalogue's loading to the end of the run.
// Usage: bench_submit HOME WEBSITE ledger|none
// Prints: requests per second, seconds, CPU time a request in microseconds, longest time the event loop was
// held up in ms.
#include "SilentPrompts.h"
#include "core/Clock.h"
#include "session/Session.h"
#include "submission/SubmissionController.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <sys/resource.h>

namespace {

using namespace relay;
using Time = std::chrono::steady_clock;

constexpr int kTickMilliseconds = 5;

double since(Time::time_point begin) {
    return std::chrono::duration<double>(Time::now() - begin).count();
}

double processorSeconds() {
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

int run(const std::string& home, const std::string& website, bool keepLedger) {
    const SystemClock clock;
    bench::SilentPrompts prompts;
    Session session(Paths::insideHome(home), clock, {}, prompts);
    session.readSettings(SettingsReader::CommandLine);
    session.network.open();
    const Time::time_point begin = Time::now();
    if (!session.catalogue.loadEngineData()) return 1;
    session.catalogue.selection.EngineSelect(true);
    session.preference.Connections = 50;
    SubmissionController controller(session.services, session.catalogue,
                                    {QLocale::system(), false, keepLedger});
    controller.addSite(website, "Site", {});
    bool failed = !controller.cmdNext() || !controller.cmdStart() || !controller.cmdSubmit();
    QObject::connect(&controller, &SubmissionController::runDone, [&](const RunSummary& summary) {
        failed = failed || summary.failed != 0;
        QCoreApplication::exit();
    });
    Time::time_point last = Time::now();
    double longest = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        longest = std::max(longest, since(last));
        last = Time::now();
    });
    tick.start(kTickMilliseconds);
    if (!failed) QCoreApplication::exec();
    const double seconds = since(begin);
    const int count = controller.state().results.count();
    std::printf("%.0f %.4f %.2f %.1f\n", count / seconds, seconds, processorSeconds() * 1e6 / count,
                longest * 1000 - kTickMilliseconds);
    return failed ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc != 4) return 2;
    return run(argv[1], argv[2], std::string(argv[3]) == "ledger");
}

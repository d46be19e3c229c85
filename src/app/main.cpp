// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Options.h"
#include "app/Program.h"
#include "app/SingleInstance.h"
#include "app/WindowApplication.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "transport/Descriptors.h"
#include "widgets/Appearance.h"
#include "widgets/QtPrompts.h"

#include <QFile>
#include <QScopeGuard>

#include <csignal>
#include <cstdio>
#include <fcntl.h>

namespace {
using namespace relay;

constexpr int kCouldNotRun = 3;

Paths choosePaths(const Options& options) {
    if (!options.home.empty()) return Paths::insideHome(options.home);
    return Paths::fromEnvironment(environmentVariable);
}

// Qt can only open files whose names are valid text. A folder with another name is reached through its
// descriptor.
QString nameForQt(const std::string& folder) {
    const QString name = toScreen(folder);
    if (QFile::encodeName(name).toStdString() == folder) return name;
    const int number =
        ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);  // stays open until the program ends
    return number < 0 ? name : QStringLiteral("/proc/self/fd/%1").arg(number);
}

// False when another program has this home's window.
bool claimHome(SingleInstance& instance, Prompts& prompts) {
    const SingleInstance::Claim claim = instance.claim();
    if (claim != SingleInstance::Claim::Held) return claim == SingleInstance::Claim::Granted;
    if (!prompts.ask(instance.question(), kApplication)) return false;
    instance.takeOver();
    return true;
}

int runWindow(const Options& options, WindowApplication& application) {
    const SystemClock clock;
    QtPrompts prompts;
    std::unique_ptr<Program> program;
    application.failed = [&](std::string_view words) {
        if (program) program->log().WriteErrorLog(words);
        prompts.message(words, "Error", Icon::Critical);
    };
    const auto silent = qScopeGuard([&application] { application.failed = nullptr; });
    int exitCode = 0;
    const auto failure = failureOf([&] {
        const Paths paths = choosePaths(options);
        makeFolder(paths.AppPath);
        SingleInstance instance(nameForQt(paths.AppPath));
        if (!claimHome(instance, prompts)) return;
        program = std::make_unique<Program>(paths, options.commandLine, clock, prompts);
        QObject::connect(&instance, &SingleInstance::raiseWanted, &instance,
                         [&program] { program->bringToFront(); });
        prompts.setStatusSink(
            [&program](const QString& text, int milliseconds) { program->showStatus(text, milliseconds); });
        program->start();
        prompts.setWindow(&program->window());
        exitCode = QApplication::exec();
    });
    if (!failure) return exitCode;
    const std::string words = "Main_Error: " + *failure;
    if (program) {
        program->closeSplash();
        program->log().WriteErrorLog(words);
    }
    prompts.message(words, "Error", Icon::Critical);
    return kCouldNotRun;
}
}  // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int argument = 1; argument < argc; ++argument) arguments << toScreen(argv[argument]);
    const Options options = readOptions(arguments);
    if (!options.answer.isEmpty()) {
        for (const QString& line : options.answer.trimmed().split(QLatin1Char('\n')))
            std::fprintf(options.exitCode == 0 ? stdout : stderr, "%s\n",
                         escapeControlCharacters(fromScreen(line)).c_str());
        return options.exitCode;
    }
    std::signal(SIGXFSZ, SIG_IGN);  // exceeding the file size limit becomes a write error
    raiseDescriptorLimit();
    WindowApplication application(argc, argv);
    QApplication::setApplicationName(toScreen(kApplication));
    QApplication::setApplicationVersion(QStringLiteral(RELAY_VERSION));
    applyAppearance(application, qEnvironmentVariable("KORVEL_RELAY_PALETTE"));
    return runWindow(options, application);
}

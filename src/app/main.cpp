// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/OneWindow.h"
#include "app/Options.h"
#include "app/Program.h"
#include "core/Failure.h"
#include "core/Paths.h"
#include "core/ScreenText.h"
#include "transport/Descriptors.h"
#include "widgets/Look.h"
#include "widgets/QtPrompts.h"

#include <QApplication>
#include <QFile>

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

// Qt opens files by names that are text. A folder whose name is none is reached through its number.
QString nameForQt(const std::string& folder) {
    const QString name = toScreen(folder);
    if (QFile::encodeName(name).toStdString() == folder) return name;
    const int number = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);  // open to the end
    return number < 0 ? name : QStringLiteral("/proc/self/fd/%1").arg(number);
}

int runWindow(const Options& options) {
    const SystemClock clock;
    QtPrompts prompts;
    std::unique_ptr<Program> program;
    try {
        const Paths paths = choosePaths(options);
        makeFolder(paths.AppPath);
        OneWindow oneWindow(nameForQt(paths.AppPath));
        if (!oneWindow.claim()) return 0;
        program = std::make_unique<Program>(paths, options.commandLine, clock, prompts);
        QObject::connect(&oneWindow, &OneWindow::raiseWanted, &oneWindow,
                         [&program] { program->bringToFront(); });
        prompts.setStatusSink([&program](const QString& text) { program->showStatus(text); });
        program->start();
        prompts.setWindow(&program->window());
        return QApplication::exec();
    } catch (const std::exception& failure) {
        const std::string words = std::string("Main_Error: ") + failureText(failure);
        if (program) {
            program->closeSplash();
            program->log().WriteErrorLog(words);
        }
        prompts.message(words, "Error", Icon::Critical);
        return kCouldNotRun;
    }
}
}  // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int argument = 1; argument < argc; ++argument) arguments << toScreen(argv[argument]);
    const Options options = readOptions(arguments);
    if (!options.answer.isEmpty()) {
        std::fprintf(options.exitCode == 0 ? stdout : stderr, "%s\n", qPrintable(options.answer.trimmed()));
        return options.exitCode;
    }
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a write that fails
    raiseDescriptorLimit();
    QApplication application(argc, argv);
    QApplication::setApplicationName(toScreen(kApplication));
    QApplication::setApplicationVersion(QStringLiteral(RELAY_VERSION));
    applyLook(application, qEnvironmentVariable("KORVEL_RELAY_PALETTE"));
    return runWindow(options);
}

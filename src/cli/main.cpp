// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/DescriptorBuffer.h"
#include "cli/ExitCode.h"
#include "cli/StopSignal.h"
#include "core/Failure.h"
#include "core/Paths.h"
#include "transport/Descriptors.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

// The number of a standard stream that the caller closed must not be reused for another file. Writing to the
// stream still fails.
void occupyStandardStreams() {
    for (int descriptor = ::open("/dev/null", O_RDONLY); descriptor >= 0; descriptor = ::dup(descriptor)) {
        if (descriptor > STDERR_FILENO) {
            ::close(descriptor);
            return;
        }
    }
}

int terminalColumns() {
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

int reportFailure(const std::exception& failure) noexcept {
    std::fprintf(stderr, "%s\n", relay::failureText(failure));
    return relay::kCouldNotRun;
}

// Reports exceptions that leave an event handler and ends the event loops, whose end might never come.
class Application final : public QCoreApplication {
  public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QCoreApplication::notify(receiver, event);
        } catch (const std::exception& failure) {
            exit(reportFailure(failure));
            return false;
        }
    }
};

int run(int argc, char** argv) {
    const Application application(argc, argv);

    relay::DescriptorBuffer outBuffer(STDOUT_FILENO);
    relay::DescriptorBuffer errBuffer(STDERR_FILENO);
    std::ostream out(&outBuffer);
    std::ostream err(&errBuffer);
    const relay::SystemClock clock;
    relay::StopSignal stop;
    relay::Console console{.in = std::cin,
                           .out = out,
                           .err = err,
                           .clock = clock,
                           .stop = stop,
                           .environment = relay::environmentVariable,
                           .programFolder = QCoreApplication::applicationDirPath().toStdString(),
                           .inIsTerminal = ::isatty(STDIN_FILENO) == 1,
                           .outIsTerminal = ::isatty(STDOUT_FILENO) == 1,
                           .errIsTerminal = ::isatty(STDERR_FILENO) == 1,
                           .errColumns = terminalColumns(),
                           .outError = [&outBuffer] { return outBuffer.error(); }};
    return relay::runCommandLine({argv + 1, argv + argc}, console);
}

}  // namespace

int main(int argc, char** argv) {
    occupyStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);  // exceeding the file size limit becomes a write error
    relay::raiseDescriptorLimit();
    try {
        return run(argc, argv);
    } catch (const std::exception& failure) {
        return reportFailure(failure);
    }
}

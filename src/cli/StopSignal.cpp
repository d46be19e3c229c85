// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StopSignal.h"

#include "cli/ExitCode.h"
#include "core/Failure.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace relay {

namespace {

std::atomic<int> signalCount{0};
std::atomic<int> signalPipe{-1};
std::atomic<int> firstSignal{0};
std::atomic<long> firstTime{0};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<long>::is_always_lock_free,
              "the handler needs it");

// A wrapper may send one stop both to the program and to its process group; a person's second Ctrl-C comes
// later.
constexpr long kOneStop = 200;  // milliseconds

long milliseconds() {
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

// Calls only what a signal handler may call.
void onSignal(int number) {
    const int savedError = errno;
    if (signalCount.fetch_add(1) > 0) {
        if (number == firstSignal && milliseconds() - firstTime < kOneStop) return;
        ::_exit(kStopped);
    }
    firstSignal = number;
    firstTime = milliseconds();
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe.load(), &byte, 1);
    errno = savedError;
}

}  // namespace

struct StopSignal::Watch final {
    int pipe[2] = {-1, -1};
    struct sigaction oldInterrupt = {};
    struct sigaction oldTerminate = {};
    std::unique_ptr<QSocketNotifier> notifier;

    Watch() {
        if (::pipe2(pipe, O_CLOEXEC | O_NONBLOCK) != 0) throw Failure(std::strerror(errno));
        signalCount = 0;
        signalPipe = pipe[1];
        struct sigaction action = {};
        action.sa_handler = onSignal;
        action.sa_flags = SA_RESTART;
        ::sigaction(SIGINT, &action, &oldInterrupt);
        ::sigaction(SIGTERM, &action, &oldTerminate);
    }
    ~Watch() {
        ::sigaction(SIGINT, &oldInterrupt, nullptr);
        ::sigaction(SIGTERM, &oldTerminate, nullptr);
        notifier.reset();
        signalPipe = -1;
        ::close(pipe[0]);
        ::close(pipe[1]);
    }
};

StopSignal::StopSignal() = default;
StopSignal::~StopSignal() = default;

void StopSignal::watch() {
    if (m_watch) return;
    m_watch = std::make_unique<Watch>();
    m_watch->notifier = std::make_unique<QSocketNotifier>(m_watch->pipe[0], QSocketNotifier::Read);
    connect(m_watch->notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(m_watch->pipe[0], &byte, 1) == 1) request();
    });
}

void StopSignal::request() {
    if (m_requested) return;
    m_requested = true;
    Q_EMIT requested();
}

bool StopSignal::poll() {
    if (m_watch && signalCount > 0) request();
    return m_requested;
}

}  // namespace relay

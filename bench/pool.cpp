// SPDX-License-Identifier: GPL-3.0-or-later
// The connection pool with the classification of its replies, to compare with bench/bare_loop.cpp.
// Usage: bench_pool URL SLOTS REQUESTS; prints "requests/s  CPU microseconds/request  peak KiB".
//        bench_pool delay SLOTS REQUESTS; uses a server of its own that answers after 50 ms; prints
//        "requests/s  share of the ideal rate".
#include "SilentPrompts.h"
#include "core/Clock.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/SettingsStore.h"
#include "core/clsPreference.h"
#include "transport/Descriptors.h"
#include "transport/HttpNetwork.h"
#include "transport/frmHTTPMX.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <string>
#include <string_view>
#include <sys/epoll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Steady = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kDelay{50};

// Gives each index its next request when the last one has ended, and counts the replies by class.
class Run final {
  public:
    Run(relay::frmHTTPMX& pool, std::string url, long requests)
        : m_pool(pool), m_url(std::move(url)), m_requests(requests) {
        QObject::connect(&pool, &relay::frmHTTPMX::Completed, &pool,
                         [this](qint16 index, qint32 code, const std::string&) {
                             ++m_classes[classify(code)];
                             if (++m_ended == m_requests) QCoreApplication::quit();
                             next(index);
                         });
    }

    void start() {
        for (int index = 1; index <= m_pool.Connections(); ++index) next(static_cast<std::int16_t>(index));
    }
    bool allGood() const noexcept { return m_classes[2] == m_requests; }

  private:
    static int classify(qint32 code) {
        if (code < 499) return 2;
        if (code <= 499) return 3;
        if (code >= 500 && code <= 599) return 14;
        if (code == 10200) return 4;
        return code == 10100 ? 10 : 13;
    }

    // Every second request is a POST; about 150 bytes of query or body, as in bench/bare_loop.cpp.
    void next(std::int16_t index) {
        if (m_started == m_requests) return;
        const long number = m_started++;
        const std::string data = "url=http%3A%2F%2Fwww.example.com%2Fpage&number=" + std::to_string(number) +
                                 "&title=" + std::string(90, 't');
        if (number % 2 == 0)
            m_pool.Connect(index, m_url + "?" + data, "GET", data);
        else
            m_pool.Connect(index, m_url, "POST", data);
    }

    relay::frmHTTPMX& m_pool;
    const std::string m_url;
    const long m_requests;
    long m_started = 0;
    long m_ended = 0;
    long m_classes[15] = {};
};

// A server in a process of its own that answers every request after kDelay.
class DelayServer final {
  public:
    DelayServer() {
        m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_listener, generic, length) != 0 || ::listen(m_listener, 1024) != 0) std::exit(3);
        ::getsockname(m_listener, generic, &length);
        m_port = ntohs(address.sin_port);
        m_process = ::fork();
        if (m_process == 0) serve();
    }
    ~DelayServer() {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        ::close(m_listener);
    }
    std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/"; }

  private:
    struct Waiting final {
        int descriptor;
        Steady::time_point due;
    };

    [[noreturn]] void serve() const {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int poll = ::epoll_create1(0);
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = m_listener;
        ::epoll_ctl(poll, EPOLL_CTL_ADD, m_listener, &event);
        std::deque<Waiting> waiting;
        while (true) {
            epoll_event events[256];
            const int count = ::epoll_wait(poll, events, 256, waiting.empty() ? -1 : 1);
            for (int place = 0; place < count; ++place) {
                int descriptor = events[place].data.fd;
                if (descriptor == m_listener) {
                    descriptor = ::accept(m_listener, nullptr, nullptr);
                    event.data.fd = descriptor;
                    ::epoll_ctl(poll, EPOLL_CTL_ADD, descriptor, &event);
                } else {
                    char buffer[4096];
                    if (::recv(descriptor, buffer, sizeof buffer, 0) < 0) std::exit(3);
                    ::epoll_ctl(poll, EPOLL_CTL_DEL, descriptor, nullptr);
                    waiting.push_back({descriptor, Steady::now() + kDelay});
                }
            }
            for (; !waiting.empty() && waiting.front().due <= Steady::now(); waiting.pop_front()) {
                static constexpr std::string_view kAnswer = "HTTP/1.0 200 OK\r\nContent-Length: 2\r\n\r\nok";
                if (::send(waiting.front().descriptor, kAnswer.data(), kAnswer.size(), MSG_NOSIGNAL) < 0)
                    std::exit(3);
                ::close(waiting.front().descriptor);
            }
        }
    }

    int m_listener = -1;
    int m_port = 0;
    pid_t m_process = 0;
};

double cpuSeconds(const rusage& usage) {
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const bool delayed = std::strcmp(argv[1], "delay") == 0;
    const auto slots = static_cast<std::int16_t>(std::atol(argv[2]));
    const long requests = std::atol(argv[3]);
    std::optional<DelayServer> server;
    if (delayed) server.emplace();

    relay::raiseDescriptorLimit();
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    const relay::Paths paths = relay::Paths::insideHome(home.path().toStdString());
    const relay::SystemClock clock;
    relay::Log log(home.filePath(QStringLiteral("Error.log")).toStdString(), clock, "");
    relay::SettingsStore store(paths.settingsFile);
    relay::bench::SilentPrompts prompts;
    relay::clsPreference preference(paths, store, log, prompts);
    relay::HttpNetwork network;
    relay::frmHTTPMX pool(network, preference, log);
    pool.setConnections(slots);
    pool.Load();
    Run run(pool, delayed ? server->url() : std::string(argv[1]), requests);

    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    const auto begin = Steady::now();
    run.start();
    QCoreApplication::exec();
    const double taken = std::chrono::duration<double>(Steady::now() - begin).count();
    rusage after{};
    getrusage(RUSAGE_SELF, &after);

    const double rate = static_cast<double>(requests) / taken;
    if (delayed)
        std::printf("%.0f %.3f\n", rate, rate / (slots / std::chrono::duration<double>(kDelay).count()));
    else
        std::printf("%.0f %.2f %ld\n", rate,
                    (cpuSeconds(after) - cpuSeconds(before)) / static_cast<double>(requests) * 1e6,
                    after.ru_maxrss);
    return run.allGood() ? 0 : 1;
}

// SPDX-License-Identifier: GPL-3.0-or-later
//
// How fast the engine file loads compared with a bare loop over the same file, how the time grows with the
// file, and how much memory a load takes. Every run is a process of its own that starts with little memory;
// times are processor time; runs are interleaved, and the figures are medians of ratios, so they hold on any
// machine.
//
//   bench_catalogue [rounds]
#include "Ratios.h"
#include "SilentPrompts.h"
#include "core/Clock.h"
#include "session/Session.h"

#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace relay;
using relay::bench::median;

constexpr const char* kNames[] = {"Orbit Search", "Northern Directory", "Link Yard", "Daily Classifieds",
                                  "Market Row",   "Site of the Day",    "Oddments"};
constexpr const char* kTypes[] = {"ENG", "DIR", "FFA", "NEWS", "MALL", "HOT", "MIS"};
constexpr const char* kCountries[] = {"US", "DE", "GB", "FR", "AU", "NN", "JP"};

// About 260 bytes per record, usually one item per line; some lines have two, separated by a comma.
void writeEngines(const std::string& home, int records) {
    std::filesystem::create_directories(home + "/data");
    std::ofstream file(home + "/data/krveng5.dat", std::ios::binary);
    for (int number = 0; number < records; ++number) {
        const auto kind = static_cast<std::size_t>(number % 7);
        const std::string digits = std::to_string(1000000 + number);  // the same number of digits for each
        const std::string host = "http://e" + digits + ".test/";
        file << "Name=" << kNames[kind] << " " << digits << "\r\nHome=" << host << "\r\nAddURL=" << host
             << "add\r\nCountry=" << kCountries[number / 7 % 7] << "\r\nType=" << kTypes[kind]
             << "\r\nCategory=" << (kind == 2 ? "F" : "N")
             << "\r\nMethod=" << (number % 2 == 0 ? "GET" : "POST") << "\r\nAction=" << host
             << "cgi/add\r\nQuery=u=<URL>&t=<TITLE>\r\n"
             << "Adults=Yes,Language=English\r\nMaxTitle=60\r\nSiteLevel=3\r\n\r\n";
    }
    file << "END:Version 6.0\r\n";
    std::ofstream tables(home + "/data/catkws.dat", std::ios::binary);
    tables << "[Free For All Links]\r\nBusiness=1\r\n";
    for (int number = 0; number < records / 10; ++number) tables << "[Table " << number << "]\r\nArts=2\r\n";
}

// Processor time, because one thread does all the work and never waits, and other programs must not count.
double seconds(const std::function<void()>& work) {
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    };
    const double start = now();
    work();
    return now() - start;
}

// The minimum for any reader of such a file: lines, their items, and the "=" of each item.
std::size_t bareLoop(const std::string& home) {
    std::ifstream file(home + "/data/krveng5.dat", std::ios::binary);
    std::string line;
    std::size_t found = 0;
    while (std::getline(file, line)) {
        for (std::size_t start = 0; start < line.size();) {
            const std::size_t comma = std::min(line.find(',', start), line.size());
            found += line.find('=', start) < comma ? 1 : 0;
            start = comma + 1;
        }
    }
    return found;
}

double bareSeconds(const std::string& home) {
    return seconds([&] {
        if (bareLoop(home) == 0) std::exit(1);
    });
}

double loadSeconds(const std::string& home) {
    SystemClock clock;
    bench::SilentPrompts prompts;
    Session session(Paths::insideHome(home), clock, {}, prompts);
    return seconds([&] {
        if (!session.catalogue.loadEngineData()) std::exit(1);
    });
}

// The bare loop relative to the load, both repeated in a process whose memory is already mapped.
double repeatedSpeed(const std::string& home) {
    std::vector<double> speed;
    loadSeconds(home);
    for (int turn = 0; turn < 5; ++turn) {
        const double bare = bareSeconds(home);
        speed.push_back(bare / loadSeconds(home));
    }
    return median(speed);
}

struct ProcessFigures final {
    double value = 0;
    double bytes = 0;  // peak memory of the process
};

// Measures in a process of its own, as at program start: every page of its memory is new.
ProcessFigures inProcess(double (*measure)(const std::string&), const std::string& home) {
    int ends[2];
    if (pipe(ends) != 0) std::exit(1);
    const pid_t child = fork();
    if (child == 0) {
        const double value = measure(home);
        _exit(write(ends[1], &value, sizeof value) == sizeof value ? 0 : 1);
    }
    ProcessFigures figures;
    int status = 0;
    rusage usage{};
    const bool done = child > 0 && wait4(child, &status, 0, &usage) == child && status == 0 &&
                      read(ends[0], &figures.value, sizeof figures.value) == sizeof figures.value;
    if (!done) std::exit(1);
    close(ends[0]);
    close(ends[1]);
    figures.bytes = static_cast<double>(usage.ru_maxrss) * 1024;
    return figures;
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    const QTemporaryDir folder;
    const std::string one = folder.path().toStdString() + "/one";
    const std::string small = folder.path().toStdString() + "/small";
    const std::string large = folder.path().toStdString() + "/large";
    writeEngines(one, 1);
    writeEngines(small, 100000);
    writeEngines(large, 1000000);
    const auto bytes = static_cast<double>(std::filesystem::file_size(small + "/data/krveng5.dat"));

    std::vector<double> first, repeated, growth, memory, loads;
    for (int round = 0; round < rounds; ++round) {
        const double bare = inProcess(bareSeconds, small).value;
        const ProcessFigures load = inProcess(loadSeconds, small);
        loads.push_back(load.value);
        first.push_back(bare / load.value);
        repeated.push_back(inProcess(repeatedSpeed, small).value);
        growth.push_back(inProcess(loadSeconds, large).value / load.value);
        memory.push_back((load.bytes - inProcess(loadSeconds, one).bytes) / bytes);
    }
    std::printf("100,000 records, %.1f MB, first load %.0f ms\n", bytes / 1e6, median(loads) * 1e3);
    std::printf("first load / bare loop:               %.2f  (at least 0.55)\n", median(first));
    std::printf("repeated loads / bare loop:           %.2f  (at least 0.65)\n", median(repeated));
    std::printf("ten times the records take:           %.1f  (at most 13)\n", median(growth));
    std::printf("peak memory less one engine's / file: %.2f  (at most 1.8)\n", median(memory));
    return 0;
}

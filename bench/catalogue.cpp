// SPDX-License-Identifier: GPL-3.0-or-later
//
// How fast the engine file loads beside a bare loop over the same file, how much memory a load takes, and
// whether look-ups depend on the number of engines. Runs are interleaved in pairs; the figures are medians of
// ratios, so they hold on any machine.
//
//   bench_catalogue [pairs]
#include "Ratios.h"
#include "core/Clock.h"
#include "core/Prompts.h"
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
#include <vector>

namespace {

using namespace relay;
using relay::bench::median;

class SilentPrompts final : public Prompts {
  public:
    void message(std::string_view text, std::string_view, Icon) override {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
    }
    bool ask(std::string_view, std::string_view) override { return false; }
    std::optional<std::string> input(std::string_view, std::string_view, std::string_view) override {
        return {};
    }
    FileChoice openFile(std::string_view, std::string_view) override { return {}; }
    FileChoice saveFile(std::string_view, std::string_view, std::string_view) override { return {}; }
    bool openWithSystem(std::string_view) override { return false; }
    void beep() override {}
    void busy(bool) override {}
    void status(std::string_view) override {}
};

// One program on a home.
struct Program final {
    explicit Program(const std::string& home) : session(Paths::insideHome(home), clock, {}, prompts) {}

    bool load() { return session.catalogue.loadEngineData(); }

    SystemClock clock;
    SilentPrompts prompts;
    Session session;
    EngineLists& lists = session.catalogue.lists;
    EngineCategories& categories = session.catalogue.engineCategories;
};

constexpr const char* kNames[] = {"Orbit Search", "Northern Directory", "Link Yard", "Daily Classifieds",
                                  "Market Row",   "Site of the Day",    "Oddments"};
constexpr const char* kTypes[] = {"ENG", "DIR", "FFA", "NEWS", "MALL", "HOT", "MIS"};
constexpr const char* kCountries[] = {"US", "DE", "GB", "FR", "AU", "NN", "JP"};

// About 260 bytes a record, one item a line as a rule; some lines hold two, split at the comma.
void writeEngines(const std::string& home, int records) {
    std::filesystem::create_directories(home + "/data");
    std::ofstream file(home + "/data/krveng5.dat", std::ios::binary);
    for (int number = 0; number < records; ++number) {
        const auto kind = static_cast<std::size_t>(number % 7);
        const std::string digits = std::to_string(1000000 + number);  // as many for each
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

// Processor time: all work here is one thread that never waits, and other programs shall not count.
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

// The least that any reader of such a file does: lines, their items, and each item's "=".
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

double loadSeconds(const std::string& home) {
    Program program(home);
    return seconds([&] {
        if (!program.load()) std::exit(1);
    });
}

struct ProcessFigures final {
    double seconds = 0;
    double bytes = 0;  // the most memory the process ever held
};

// A load in a process of its own, as at the start of the program: every page of its memory is new.
ProcessFigures loadInProcess(const std::string& home) {
    int ends[2];
    if (pipe(ends) != 0) std::exit(1);
    const pid_t child = fork();
    if (child == 0) {
        const double time = loadSeconds(home);
        _exit(write(ends[1], &time, sizeof time) == sizeof time ? 0 : 1);
    }
    ProcessFigures figures;
    int status = 0;
    rusage usage{};
    const bool done = child > 0 && wait4(child, &status, 0, &usage) == child && status == 0 &&
                      read(ends[0], &figures.seconds, sizeof figures.seconds) == sizeof figures.seconds;
    if (!done) std::exit(1);
    close(ends[0]);
    close(ends[1]);
    figures.bytes = static_cast<double>(usage.ru_maxrss) * 1024;
    return figures;
}

// Nanoseconds of one look-up of an engine and of one of a table, in a shuffled order.
std::pair<double, double> lookupNanoseconds(const std::string& home, int records) {
    Program program(home);
    if (!program.load()) std::exit(1);
    constexpr int kLookups = 200000;
    std::vector<std::string> names;
    std::vector<std::string> tables;
    for (int step = 0; step < 1000; ++step) {
        const int number = static_cast<int>(step * 7919LL % records);
        names.push_back(std::string(kNames[number % 7]) + " " + std::to_string(1000000 + number));
        tables.push_back("table " + std::to_string(number / 10));
    }
    std::size_t found = 0;
    const double engines = seconds([&] {
        for (int step = 0; step < kLookups; ++step) {
            found +=
                program.lists.engines.find(names[static_cast<std::size_t>(step) % names.size()]) != nullptr;
        }
    });
    const double categories = seconds([&] {
        for (int step = 0; step < kLookups; ++step) {
            found += program.categories
                         .getEngineCategoryData(tables[static_cast<std::size_t>(step) % tables.size()])
                         .size();
        }
    });
    if (found < kLookups) std::exit(1);
    return {engines / kLookups * 1e9, categories / kLookups * 1e9};
}

}  // namespace

int main(int argc, char** argv) {
    const int pairs = argc > 1 ? std::atoi(argv[1]) : 7;
    const QTemporaryDir folder;
    const std::string small = folder.path().toStdString() + "/small";
    const std::string large = folder.path().toStdString() + "/large";
    const std::string tiny = folder.path().toStdString() + "/tiny";
    writeEngines(tiny, 1000);
    writeEngines(small, 100000);
    writeEngines(large, 1000000);
    const auto bytes = static_cast<double>(std::filesystem::file_size(small + "/data/krveng5.dat"));

    // The processes come first, so that they start with little memory.
    std::vector<double> memory;
    std::vector<double> growth;
    for (int pair = 0; pair < pairs; ++pair) {
        const ProcessFigures figures = loadInProcess(small);
        memory.push_back(figures.bytes / bytes);
        growth.push_back(loadInProcess(large).seconds / figures.seconds);
    }
    std::vector<double> speed;
    std::vector<double> loads;
    for (int pair = 0; pair < pairs; ++pair) {
        const double bare = seconds([&] {
            if (bareLoop(small) < 1000000) std::exit(1);
        });
        loads.push_back(loadSeconds(small));
        speed.push_back(bare / loads.back());
    }
    std::printf("100,000 records, %.1f MB, %.0f ms\n", bytes / 1e6, median(loads) * 1e3);
    std::printf("speed beside the bare loop:  %.2f  (at least 0.60)\n", median(speed));
    std::printf("ten times the records take:  %.1f  (at most 11)\n", median(growth));
    std::printf("peak memory / file:          %.2f  (at most 3.5)\n", median(memory));
    const auto few = lookupNanoseconds(tiny, 1000);
    const auto many = lookupNanoseconds(small, 100000);
    std::printf("look-up, 1,000 to 100,000:   engine %.0f to %.0f ns, table %.0f to %.0f ns\n", few.first,
                many.first, few.second, many.second);
    return 0;
}

// SPDX-License-Identifier: GPL-3.0-or-later
// The analysis of saved result pages: compared with reading the same files and one search without regard to
// case in each, pair by pair; and the CPU time of a page ten times as long with ten times the links.
// Usage: bench_analysis [PAIRS [PAGES]]
#include "Ratios.h"
#include "core/FileStore.h"
#include "core/Log.h"
#include "core/Text.h"
#include "ranking/RankingAnalysis.h"
#include "ranking/RankingPages.h"

#include <QTemporaryDir>

#include <cstdlib>
#include <ctime>

using namespace relay;
using bench::median;
using bench::milliseconds;

namespace {

constexpr int kEngines = 50;

// A page of about `size` bytes in lines, with `links` results in its list.
std::string pageOf(std::size_t size, int links, std::string_view opening) {
    std::string page = "<html><head><title>Results</title></head>\r\n<body><!-- results --><ol>\r\n";
    const std::size_t share = (size - 200) / static_cast<std::size_t>(links);
    for (int link = 0; link < links; ++link) {
        const std::size_t end = page.size() + share;
        const std::string number = std::to_string(link);
        page.append("<li>").append(opening).append("site").append(number).append(".test/\">Site ");
        page.append(number).append("</a>\r\n");
        while (page.size() + 62 < end)
            page += "<p class=\"s\">Bicycles, bells and what else a page says.</p>\r\n";
    }
    return page + "</ol><!-- end of results --><a href=\"?p=2\">Next page</a></body></html>\r\n";
}

std::vector<RankEngine> makeEngines() {
    std::vector<RankEngine> engines(kEngines);
    for (std::size_t i = 0; i < engines.size(); ++i) {
        RankEngine& engine = engines[i];
        engine.EngineName = "Engine " + std::to_string(i) + "x";
        engine.EngineKey = "own.engine.test";
        engine.EngineURL = "http://engine.test/";
        engine.ResultStartString = "<!-- results -->";
        engine.ResultEndString = "<!-- end of results -->";
        engine.NoFoundString = "No pages were found";
        engine.FilterKeyword1 = "sponsor";
    }
    return engines;
}

double cpuMilliseconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

void compareFiles(int pairs, int pages) {
    const QTemporaryDir folder(QStringLiteral("./bench-analysis-XXXXXX"));
    const std::string path = folder.path().toStdString();
    const std::vector<RankEngine> engines = makeEngines();
    const std::string page = pageOf(200 * 1024, 100, "<a href=\"http://");
    const int each = pages / kEngines;
    std::vector<std::string> files;
    for (const RankEngine& engine : engines) {
        for (int number = 1; number <= each; ++number) {
            files.push_back(path + "/" + pageFileName(engine.EngineName, number));
            writeFile(files.back(), page);
        }
    }
    const SystemClock clock;
    Log log(path + "/Error.log", clock, "");
    const AnalysisInput input{engines,
                              std::vector<bool>(engines.size(), true),
                              {"site7.test", "lantern.test"},
                              "bicycles",
                              path,
                              each,
                              {}};
    std::vector<double> ratios;
    for (int pair = 0; pair <= pairs; ++pair) {
        std::size_t found = 0;
        const double bare = milliseconds([&] {
            for (const std::string& file : files)
                found += findNoCase(readFile(file), "not in any page") != npos;
        });
        removeFile(path + "/trace.dat");
        int links = 0;
        const double ours = milliseconds([&] {
            RankingAnalysis analysis(input, path + "/trace.dat", log);
            analysis.getResults();
            for (const EngineAnalysis& engine : analysis.engines()) links += engine.nLinkCount;
        });
        if (found != 0 || links != static_cast<int>(files.size()) * 100) std::exit(1);
        if (pair == 0) continue;  // warms up
        ratios.push_back(bare / ours);
        std::printf(
            "%zu pages of 200 KB: read and searched once in %.0f ms, analysed in %.0f ms: %.2f of it\n",
            files.size(), bare, ours, ratios.back());
    }
    std::printf("median %.2f (0.15 wanted)\n", median(ratios));
}

double analyse(const std::vector<RankEngine>& engines, const std::string& page, int links) {
    const AnalysisInput input{engines, {true}, {"site7.test", "lantern.test"}, "bicycles", ".", 1, {}};
    EngineAnalysis result;
    std::string trace;
    const double begin = cpuMilliseconds();
    SearchURLALL(input, 0, page, 1, result, trace);
    const double time = cpuMilliseconds() - begin;
    if (result.nLinkCount != links) std::exit(1);
    return time;
}

void compareLengths(const char* name, std::string_view opening, int pairs) {
    constexpr std::size_t kMega = 1024 * 1024;
    const std::vector<RankEngine> engines = makeEngines();
    const std::string small = pageOf(kMega, 10'000, opening);
    const std::string large = pageOf(10 * kMega, 100'000, opening);
    std::vector<double> smallTimes;
    std::vector<double> largeTimes;
    for (int pair = 0; pair <= pairs; ++pair) {
        const double smallTime = analyse(engines, small, 10'000);
        const double largeTime = analyse(engines, large, 100'000);
        if (pair == 0) continue;
        smallTimes.push_back(smallTime);
        largeTimes.push_back(largeTime);
    }
    std::printf("%-20s 1 MB %.2f ms, 10 MB %.2f ms of CPU: %.1f times (14 at most)\n", name,
                median(smallTimes), median(largeTimes), median(largeTimes) / median(smallTimes));
}

}  // namespace

int main(int argc, char** argv) {
    const int pairs = argc > 1 ? std::atoi(argv[1]) : 9;
    const int pages = argc > 2 ? std::atoi(argv[2]) : 1000;
    compareLengths("quoted links", "<a href=\"http://", pairs);
    compareLengths("bare links", "<a href=http://", pairs);
    compareFiles(pairs, pages);
}

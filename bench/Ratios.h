// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace relay::bench {

inline double median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// How long the work takes.
template <typename Work>
double milliseconds(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// Collects the repetitions of every benchmark and prints the median of each and its speed relative to the
// peer: 1 is as fast as the peer, 0.5 takes twice as long.
class RatioReporter final : public benchmark::BenchmarkReporter {
  public:
    explicit RatioReporter(std::string peer) : m_peer(std::move(peer)) {}

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            if (m_times.find(run.run_name.function_name) == m_times.end())
                m_order.push_back(run.run_name.function_name);
            m_times[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                          static_cast<double>(run.iterations));
        }
    }
    void Finalize() override {
        const double peer = median(m_times[m_peer]);
        std::printf("%-28s %6s %12s %12s\n", "", "runs", "median ms", "of the peer");
        for (const std::string& name : m_order)
            std::printf("%-28s %6zu %12.3f %12.2f\n", name.c_str(), m_times[name].size(),
                        median(m_times[name]) * 1e3, peer / median(m_times[name]));
        std::printf("peer: %s\n", m_peer.c_str());
    }

  private:
    std::string m_peer;
    std::vector<std::string> m_order;
    std::map<std::string, std::vector<double>> m_times;
};

// Runs the registered benchmarks with their repetitions mixed, so that a slow moment of the machine affects
// all. Options of the command line override these.
inline int runInterleaved(int argc, char** argv, const std::string& peer) {
    std::vector<std::string> options = {argv[0], "--benchmark_enable_random_interleaving=true",
                                        "--benchmark_repetitions=9", "--benchmark_min_time=0.1"};
    options.insert(options.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    for (std::string& option : options) pointers.push_back(option.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 2;
    RatioReporter reporter(peer);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

}  // namespace relay::bench

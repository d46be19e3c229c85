// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionRecords.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct RunPlan;

// How one engine took one URL. The views last until the next run begins.
struct PairResult final {
    std::string_view website;  // path of the website file
    std::string_view site;     // the website's name in the lists
    std::string_view URL;
    std::string_view engine;
    std::string_view AddURL;  // the engine's page for adding a URL by hand; may be empty
    std::int16_t result = NotReached;
    std::int32_t code = 0;  // HTTP status or the pool's code; 0 when nothing was sent
    std::int64_t milliseconds = 0;

    std::string_view word() const noexcept { return resultWord(result); }
};

// The results of a run, one for each pair of engine and URL that has ended, in the order of their ends; of a
// run that was taken up again, with those from before. Pairs that a stop kept from being sent have none. The
// texts stand here once, so that a pair takes 20 bytes.
class Results final {
  public:
    int count() const noexcept { return static_cast<int>(m_pairs.size()); }
    bool empty() const noexcept { return m_pairs.empty(); }
    // Counts from 0; throws std::out_of_range.
    PairResult at(int place) const;
    // How many have the result.
    int countOf(std::int16_t result) const noexcept;

    // The rest is the run's.
    void begin(const RunPlan& plan);
    // `url` and `engine` are places in the plan, from 0.
    void add(std::size_t url, std::size_t engine, std::int16_t result, std::int32_t code,
             std::int64_t milliseconds);
    // Known once the engine was sent something.
    void setAddURL(std::size_t engine, std::string_view AddURL);

  private:
    friend RunPlan planFailedAgain(const Results& results);

    struct Site final {
        std::string website;
        std::string site;
        std::string URL;
    };
    struct Engine final {
        std::string name;
        std::string AddURL;
    };
    struct Pair final {
        std::uint16_t url;
        std::uint16_t engine;
        std::int16_t result;
        std::int32_t code;
        std::uint32_t milliseconds;
    };

    std::vector<Site> m_sites;
    std::vector<Engine> m_engines;
    std::vector<Pair> m_pairs;
    std::vector<int> m_counts;  // by result
};

// The results as a table of comma separated values (RFC 4180, lines end with CR LF): website, url, engine,
// result, word, code, ms, add_url.
std::string resultsAsCSV(const Results& results);
// The same into a file, replacing it. Throws Failure.
void saveResults(const Results& results, const std::string& path);

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/RunPlan.h"
#include "submission/SubmissionRecords.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

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

// The results of a run, one for each pair of engine and URL that has ended, in the order in which they ended;
// in a resumed run also those from before. Pairs that a stop kept from being sent have none. Each text is
// stored once, so a pair takes 16 bytes.
class Results final {
  public:
    int count() const noexcept { return static_cast<int>(m_pairs.size()); }
    bool empty() const noexcept { return m_pairs.empty(); }
    // Counts from 0; throws std::out_of_range.
    PairResult at(int place) const;
    // How many have the result.
    int countOf(std::int16_t result) const noexcept;
    // Pairs of the plan without a success, those never sent included.
    std::int64_t countNotSucceeded() const noexcept;

    // The rest is for the run. `addURLs` are those of the plan's engines, in their order.
    void begin(RunPlan plan, std::vector<std::string> addURLs);
    const RunPlan& plan() const noexcept { return m_plan; }
    void add(const PairEnd& end);
    const std::vector<PairEnd>& ends() const noexcept { return m_pairs; }
    // The user removed the URL of the plan, counted from 0, before it was started.
    void leaveOut(std::size_t url);
    bool isLeftOut(std::size_t url) const { return m_leftOut.at(url); }

  private:
    RunPlan m_plan;
    std::vector<std::string> m_addURLs;
    std::vector<PairEnd> m_pairs;
    std::vector<bool> m_leftOut;     // by URL
    std::array<int, 16> m_counts{};  // by result
};

// Exactly the pairs that did not succeed, those never sent included, in the order of the run.
RunPlan planFailedAgain(const Results& results);

// The results as a table of comma separated values (RFC 4180, lines end with CR LF): website, url, engine,
// result, word, code, ms, add_url.
std::string resultsAsCSV(const Results& results);
// The same into a file, replacing it. Throws Failure.
void saveResults(const Results& results, const std::string& path);

}  // namespace relay

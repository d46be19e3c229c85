// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "submission/SubmissionRecords.h"

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

// The results of a run, a line a request, as the last page of the wizard lists them: sorted by any column,
// filtered by the result's word, copied as text. The first million are kept.
class RunResults final {
  public:
    static constexpr std::size_t kMost = 1'000'000;

    RunResults();
    ~RunResults();

    // "Engine", "URL", "Web site", "Result", "Code", "ms"; the tag is the engine's name. Renewed by show().
    Rows lsvResults;

    void clear();
    // `website` is the name under which the website is listed.
    void add(const EngineEnded& ended, std::string_view website);
    std::size_t count() const noexcept { return m_records.size(); }

    // What the list can be filtered by: "All results (5)", then each word that there is, "Success (3)".
    struct Choice final {
        std::string caption;
        std::string_view word;  // empty: all
    };
    std::vector<Choice> choices() const;
    // Lists the results with the word, or all.
    void show(std::string_view word);
    // The highlighted rows, or all that are listed when none is: a line each, columns parted by tabs, under a
    // line of titles.
    std::string text() const;

  private:
    struct Record final {
        std::uint32_t engine;  // places in m_names
        std::uint32_t url;
        std::uint32_t website;
        std::int16_t result;
        std::array<char, 8> code;  // as texts, which rows show
        std::array<char, 16> milliseconds;
    };
    class Source;

    std::uint32_t placeOf(std::string_view name);

    std::deque<std::string> m_names;
    std::unordered_map<std::string_view, std::uint32_t> m_places;
    std::deque<Record> m_records;
    std::unique_ptr<Source> m_source;
};

}  // namespace relay

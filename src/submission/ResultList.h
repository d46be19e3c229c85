// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "submission/Results.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// The results of a run as a list, a row each: sorted by any column, filtered by the result's word, copied as
// text.
class ResultList final {
  public:
    explicit ResultList(const Results& results);
    ~ResultList();

    // "Engine", "URL", "Web site", "Result", "Code", "ms"; the tag is the engine's page for adding a URL.
    Rows lsvResults;

    // What the list can be filtered by: "All results (5)", then each word that there is, "Success (3)".
    struct Choice final {
        std::string caption;
        std::string_view word;  // empty: all
    };
    std::vector<Choice> choices() const;
    // Lists the results with the word, or all, in the order that was chosen before.
    void show(std::string_view word);
    // Before the results become those of another run.
    void clear();
    // The highlighted rows, or all that are listed when none is: a line each, columns parted by tabs, under a
    // line of titles.
    std::string text() const;

  private:
    struct Line;
    class Source;

    const Results& m_results;
    std::vector<Line> m_lines;  // that are listed
    std::unique_ptr<Source> m_source;
};

}  // namespace relay

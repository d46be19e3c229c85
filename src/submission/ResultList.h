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

// The results of a run as a list, one row each. It can be filtered by result word and copied as text.
class ResultList final {
  public:
    explicit ResultList(const Results& results);
    ~ResultList();

    // Columns "Engine", "URL", "Web site", "Result", "Code", "ms"; the tag is the engine's AddURL.
    Rows lsvResults;

    // The choices of the filter: "All results (5)", then one for each word, such as "Success (3)".
    struct Choice final {
        std::string caption;
        std::string_view word;  // empty: all
    };
    std::vector<Choice> choices() const;
    // Lists the results with the word, or all; keeps the sort order.
    void show(std::string_view word);
    // Must be called before another run starts.
    void clear();
    // The highlighted rows, or all rows if none is, as lines with tabs between the columns, below a line of
    // titles.
    std::string text() const;

  private:
    struct Line;
    class Source;

    const Results& m_results;
    std::vector<Line> m_lines;  // one per row
    std::unique_ptr<Source> m_source;
};

}  // namespace relay

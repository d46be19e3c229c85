// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/RunPlan.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

struct CutOffRun;

// Which engines the URLs of a run go to, where that is not all of them. Engines are places in the run's list
// of engines, from 1; URLs are found by their keys (see urlKey).
class RunParts final {
  public:
    struct Part final {
        std::vector<std::int16_t> reported;  // in the URL's report; empty: all
        std::vector<std::int16_t> due;       // to be sent
    };

    // Nothing: every URL goes to all engines.
    RunParts() = default;
    static RunParts of(const RunPlan& plan);
    // What is left of an interrupted run.
    static RunParts leftOf(const CutOffRun& run);

    // Null: all engines. Valid as long as the parts.
    const Part* find(std::string_view key) const;

  private:
    std::unordered_map<std::string, Part> m_parts;
};

}  // namespace relay

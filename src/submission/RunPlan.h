// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace relay {

class Results;

// One URL of a run and the engines it goes to.
struct PlannedURL final {
    std::string website;  // path of the website file
    std::string site;     // the website's name in the lists
    std::string URL;
    std::vector<std::int16_t> engines;  // places in RunPlan::engines from 1, ascending; empty: all of them
};

// What a run does. Its unit is the pair of an engine and a URL: each is sent once.
struct RunPlan final {
    std::vector<std::string> engines;  // names, in the order of sending
    std::vector<PlannedURL> urls;      // in the order of sending, those of a website together
};

// Exactly the pairs of the results that did not succeed, in the order of the run.
RunPlan planFailedAgain(const Results& results);

}  // namespace relay

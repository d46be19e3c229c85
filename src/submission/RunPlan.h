// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

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

    std::size_t enginesOf(std::size_t url) const {
        return urls[url].engines.empty() ? engines.size() : urls[url].engines.size();
    }
};

// The row key for a website file: every capital is marked, because keys ignore case and paths do not.
std::string siteKey(std::string_view path);
// The row key for a URL.
std::string urlKey(std::string_view websiteFile, std::string_view URL);

// How a pair of a plan has ended.
struct PairEnd final {
    std::uint16_t url = 0;  // places in the plan, from 0
    std::uint16_t engine = 0;
    std::int16_t result = 0;
    std::int32_t code = 0;
    std::uint32_t milliseconds = 0;
};

}  // namespace relay

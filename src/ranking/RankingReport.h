// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankingAnalysis.h"
#include "ranking/RankingSetup.h"

#include <QDateTime>
#include <QLocale>

#include <string>
#include <string_view>
#include <vector>

namespace relay {

class clsPreference;
struct Services;

// Everything a ranking report shows. Values go into the HTML unescaped.
struct ReportInput final {
    const RankingSetup& setup;
    const std::vector<RankEngine>& engines;
    const std::vector<RankRow>& rows;  // engines, rows and analysis belong together by their place
    const std::vector<EngineAnalysis>& analysis;
    const clsPreference& preference;
    QDateTime time;
    QLocale locale;
};

// The whole report without its last line end; lines end with CR LF.
std::string buildRankingReport(const ReportInput& input);
// A local path as a browser's address.
std::string getLocalHTML(std::string_view path);

// Writes the report into the folder and Date and ReportFile into the profile; returns the report's path.
// Throws Failure.
std::string writeRankingReport(const Services& services, const ReportInput& input, const std::string& folder);

}  // namespace relay

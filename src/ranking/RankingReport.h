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
// A local path with a drive as a browser's address; any other comes back unchanged.
std::string getLocalHTML(std::string_view path);

// What is to follow once the report is written.
enum class SaveResults { Always, Ask, Never };
struct ReportChoices final {
    SaveResults save = SaveResults::Ask;  // each engine's outcome, to the profile
    bool open = false;                    // the report, in the user's browser
};
struct RankingReport final {
    std::string path;     // empty when the report could not be written
    std::string date;     // as in the profile
    std::string problem;  // what failed, if something did
};
inline constexpr std::string_view kNoBrowserNotice =
    "Invalid Web Browser, please specify a correct web browser location from the 'Preference' setup window "
    "and try again!";

// Writes the report into the folder and lists it in the profile; then what was chosen. A failure ends it, and
// goes to the log and into the result; no message is shown.
RankingReport Report(const Services& services, const ReportInput& input, const std::string& folder,
                     const ReportChoices& choices);

}  // namespace relay

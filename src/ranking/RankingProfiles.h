// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankingSetup.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Paths;

// A profile as its file keeps it.
struct RankingProfile final {
    RankingSetup setup;
    std::string Date;        // of the last report; empty before the first
    std::string ReportFile;  // full path of the last report
    // By the engines' places in the catalogue; engines beyond the last one with an entry are missing. Column
    // "Status" is not kept.
    std::vector<RankRow> engines;
    // The engines that were checked when the results were saved. A row above is checked for every engine with
    // an entry, unless its check mark was written as a word that begins with "f".
    std::vector<bool> wasChecked;
};

// A row of the list of reports.
struct ProfileEntry final {
    std::string name;
    std::string URL;  // the sites, joined with ", "
    std::string Date;
    std::string ReportFile;
};

// The ranking profiles, AppPath/profile.kwr: an INI file with a section per profile. Every operation reads
// the current file and replaces it whole, under one lock of the folder; all throw Failure.
class RankingProfiles final {
  public:
    explicit RankingProfiles(const Paths& paths);

    const std::string& file() const noexcept { return m_file; }

    // In file order; none when there is no file.
    std::vector<ProfileEntry> loadProfile() const;
    bool IsProfileExist(std::string_view name) const;
    // With the name as it is written in the file. Failure when there is no such profile.
    RankingProfile load(std::string_view name) const;
    // Writes sites, keywords and limit. Failure for a name that is no plain file name.
    void saveProfile(const RankingSetup& setup) const;
    // Writes the keywords alone. Failure when there is no such profile.
    void setKeywords(std::string_view name, std::string_view keywords) const;
    // The profile's reports and saved pages stay. Does nothing when there is no such profile.
    void removeProfile(std::string_view name) const;
    // `date` in short form with the time.
    void noteReport(std::string_view name, std::string_view date, std::string_view reportFile) const;
    // The check mark, pages and positions of each engine, and the short date.
    void saveRankingResults(std::string_view name, const std::vector<RankRow>& rows,
                            std::string_view date) const;

  private:
    std::string m_file;
};

// Why this cannot be the name of a new profile, or nullopt: characters that a file name must not hold, and
// names that cannot be a folder.
std::optional<std::string> profileNameProblem(std::string_view name);

// A site as the list takes it: without its scheme. Throws Failure with the message for the user when the
// first "." is not beyond the second character, or nothing follows the scheme.
std::string rankedSite(std::string_view url);

inline constexpr std::size_t kLongestPhrase = 100;  // characters of a profile's keywords

// Why the setup cannot be run, as the screen says it, or nullopt. `rows` are the engines.
inline constexpr std::string_view kNoEngineSelected =
    "There is no engine selected. Please select the engine you want to search and try again.";
enum class SetupField { Profile, Sites, Keywords, PageLinks, Engines };
struct SetupProblem final {
    SetupField field;
    std::string_view text;
};
std::optional<SetupProblem> setupProblem(const RankingSetup& setup, const std::vector<RankRow>& rows);

}  // namespace relay

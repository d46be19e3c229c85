// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingProfiles.h"

#include "core/Failure.h"
#include "core/FileNames.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/Text.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <limits>

namespace relay {

namespace {

constexpr int kMostRows = std::numeric_limits<std::int16_t>::max();

// The number in a key such as "Engine12", or 0 for any other key.
int numberOf(std::string_view key, std::string_view word) {
    if (!startsWithNoCase(key, word)) return 0;
    key.remove_prefix(word.size());
    int number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    const bool whole = error == std::errc() && end == key.data() + key.size() && key.front() != '0';
    return whole && number <= kMostRows ? std::max(number, 0) : 0;
}

// The numbers of the keys that exist, ascending: a file that claims more than it holds costs nothing.
std::vector<int> numbersOf(const IniFile& file, std::string_view section, std::string_view word) {
    std::vector<int> numbers;
    for (const std::string& key : file.keys(section)) {
        if (const int number = numberOf(key, word); number > 0) numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::string numbered(std::string_view word, int number) {
    return std::string(word) + std::to_string(number);
}

// The profile's name as the file writes it; empty when there is none.
std::string nameInFile(const IniFile& file, std::string_view name) {
    for (std::string& section : file.sections())
        if (equalsNoCase(section, trim(name))) return std::move(section);
    return {};
}

bool holds(const IniFile& file, std::string_view name) {
    return !nameInFile(file, name).empty();
}

Failure noSuchProfile(std::string_view name) {
    return Failure("There is no ranking profile \"" + std::string(name) + "\".", 9);
}

// Reading takes surrounding blanks and quotes away, and a phrase in quotes is not the same without them.
std::string kept(std::string_view phrase) {
    phrase = firstLine(phrase);
    std::string_view inner = phrase;
    const bool blanks = trim(phrase).size() != phrase.size();
    const bool quotes =
        inner.size() > 1 && (inner.front() == '"' || inner.front() == '\'') && inner.front() == inner.back();
    return blanks || quotes ? "\"" + std::string(phrase) + "\"" : std::string(phrase);
}

std::vector<std::string> readSites(const IniFile& file, std::string_view name) {
    std::vector<std::string> sites;
    const int count = leadingInteger(file.value(name, "NumOfURL"));
    for (const int number : numbersOf(file, name, "URL")) {
        std::string site = file.value(name, numbered("URL", number));
        if (number <= count && !site.empty()) sites.push_back(std::move(site));
    }
    if (count == 0) {
        if (std::string site = file.value(name, "URL"); !site.empty()) sites.push_back(std::move(site));
    }
    return sites;
}

void readEngines(const IniFile& file, std::string_view name, RankingProfile& profile) {
    const std::vector<int> numbers = numbersOf(file, name, "Engine");
    const auto rows = static_cast<std::size_t>(numbers.empty() ? 0 : numbers.back());
    profile.engines.resize(rows);
    profile.wasChecked.resize(rows);
    for (const int number : numbers) {
        const std::string value = file.value(name, numbered("Engine", number));
        if (value.empty()) continue;
        const auto row = static_cast<std::size_t>(number) - 1;
        const std::string mark = GetToken(value, ';', 1);
        profile.engines[row] = {
            !startsWithNoCase(mark, "f"), GetToken(value, ';', 2), GetToken(value, ';', 3), {}};
        profile.wasChecked[row] = profile.engines[row].checked && trim(mark) != "0";
    }
}

std::string joinedSites(const std::vector<std::string>& sites) {
    std::string all;
    for (const std::string& site : sites) all.append(all.empty() ? "" : ", ").append(site);
    return all;
}

// Changes the file under the lock of its folder.
void change(const std::string& path, const std::function<void(IniFile& file)>& edit) {
    const FolderLock lock(path);
    IniFile file = IniFile::load(path);
    edit(file);
    file.save(path);
}

}  // namespace

RankingProfiles::RankingProfiles(const Paths& paths) : m_file(paths.inApp("profile.kwr")) {}

std::vector<ProfileEntry> RankingProfiles::loadProfile() const {
    const IniFile file = IniFile::load(m_file);
    std::vector<ProfileEntry> entries;
    for (const std::string& name : file.sections()) {
        entries.push_back(
            {name, file.value(name, "URL"), file.value(name, "Date"), file.value(name, "ReportFile")});
    }
    return entries;
}

bool RankingProfiles::IsProfileExist(std::string_view name) const {
    return holds(IniFile::load(m_file), name);
}

RankingProfile RankingProfiles::load(std::string_view name) const {
    const IniFile file = IniFile::load(m_file);
    if (!holds(file, name)) throw noSuchProfile(name);
    RankingProfile profile;
    profile.setup.profile = nameInFile(file, name);
    profile.setup.sites = readSites(file, name);
    profile.setup.keywords = file.value(name, "Keyword");
    profile.setup.limit = leadingInteger(file.value(name, "Type")) == 1 ? RankLimit::Links : RankLimit::Pages;
    profile.setup.pageLinks = file.value(name, "Value");
    profile.Date = file.value(name, "Date");
    profile.ReportFile = file.value(name, "ReportFile");
    readEngines(file, name, profile);
    return profile;
}

void RankingProfiles::saveProfile(const RankingSetup& setup) const {
    const std::string name = safeFileName(trim(setup.profile));
    change(m_file, [&](IniFile& file) {
        file.setValue(name, "NumOfURL", std::to_string(setup.sites.size()));
        for (std::size_t i = 0; i < setup.sites.size(); ++i)
            file.setValue(name, numbered("URL", static_cast<int>(i) + 1), setup.sites[i]);
        file.setValue(name, "URL", joinedSites(setup.sites));
        file.setValue(name, "Keyword", kept(setup.keywords));
        file.setValue(name, "Type", std::to_string(static_cast<int>(setup.limit)));
        file.setValue(name, "Value", setup.pageLinks);
    });
}

void RankingProfiles::setKeywords(std::string_view name, std::string_view keywords) const {
    change(m_file, [&](IniFile& file) {
        const std::string profile = nameInFile(file, name);
        if (profile.empty()) throw noSuchProfile(name);
        file.setValue(profile, "Keyword", kept(keywords));
    });
}

void RankingProfiles::removeProfile(std::string_view name) const {
    const FolderLock lock(m_file);
    IniFile file = IniFile::load(m_file);
    if (!holds(file, name)) return;
    file.removeSection(name);
    file.save(m_file);
}

void RankingProfiles::noteReport(std::string_view name, std::string_view date,
                                 std::string_view reportFile) const {
    change(m_file, [&](IniFile& file) {
        file.setValue(name, "Date", date);
        file.setValue(name, "ReportFile", reportFile);
    });
}

void RankingProfiles::saveRankingResults(std::string_view name, const std::vector<RankRow>& rows,
                                         std::string_view date) const {
    change(m_file, [&](IniFile& file) {
        int number = 0;
        for (const RankRow& row : rows) {
            std::string value = row.checked ? "-1;" : "0;";
            value.append(row.pages).append(";").append(row.position).append(";").append(date);
            file.setValue(name, numbered("Engine", ++number), value);
        }
    });
}

std::optional<std::string> profileNameProblem(std::string_view name) {
    if (name.find_first_of("\\/:*?\"<>|") != npos)
        return "A Project name cannot contain any of the following characters:\r\n\r\n\\ / : * ? < > | \"";
    try {
        safeFileName(trim(name));
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.what();
    }
}

std::string rankedSite(std::string_view url) {
    const std::size_t dot = url.find('.');
    const std::size_t scheme = url.find("://");
    const std::string_view site = scheme == npos ? url : url.substr(scheme + 3);
    // Every link contains an empty site.
    if (dot == npos || dot < 2 || site.empty() || hasControlByte(url))
        throw Failure("Invalid URL, please specify a correct web site URL and try again.", 5);
    return std::string(site);
}

std::optional<SetupProblem> setupProblem(const RankingSetup& setup, const std::vector<RankRow>& rows) {
    if (setup.profile.empty())
        return SetupProblem{SetupField::Profile,
                            "Please save the profile first before starting a new ranking."};
    if (setup.sites.empty())
        return SetupProblem{SetupField::Sites, "Please specify the web site URL you want to rank."};
    if (setup.keywords.empty())
        return SetupProblem{SetupField::Keywords, "Please enter the keywords you want to search for."};
    if (characterCount(setup.keywords) > kLongestPhrase)
        return SetupProblem{SetupField::Keywords, "The keywords must be less than 100 characters."};
    if (setup.pageLinks.empty())
        return SetupProblem{SetupField::PageLinks,
                            "Please specify the number of pages/links you want to search for."};
    if (std::none_of(rows.begin(), rows.end(), [](const RankRow& row) { return row.checked; }))
        return SetupProblem{SetupField::Engines, kNoEngineSelected};
    return std::nullopt;
}

}  // namespace relay

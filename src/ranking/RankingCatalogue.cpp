// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingCatalogue.h"

#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/Log.h"
#include "core/LoggedTrap.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "ranking/RankFields.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace relay {

const std::string_view kMissingRankingDataNotice =
    "Engine data file is corrupted or missing, you need to download the new engine data file from our web "
    "site by click on the 'File/Update Engine Data' menu item from the main menu bar and following the "
    "instruction on the screen.";

namespace {

// How a reader's failures appear.
struct Words final {
    std::string_view title;
    Icon icon;             // of the notice that the file is missing
    std::string_view log;  // first words of a line in the log
};

// Reads the file, or shows that it is missing. `remark` goes to the log after a failure.
bool readCatalogue(const Services& services, const Words& words,
                   const std::function<void(const IniFile& file)>& read,
                   const std::function<void()>& remark = {}) {
    const std::string path = rankingCatalogueFile(services.paths);
    if (!fileExists(path)) {
        services.prompts.message(kMissingRankingDataNotice, words.title, words.icon);
        return false;
    }
    try {
        read(IniFile::load(path));
        return true;
    } catch (const std::exception& failure) {
        services.log.WriteErrorLog(std::string(words.log) + numberedText(failure));
        if (remark) remark();
        services.prompts.message(std::string("loadEngineData_Error: ") + failureText(failure), words.title,
                                 Icon::Critical);
        return false;
    }
}

constexpr Words kKeywordWords{"Error", Icon::Information, "loadEngines_Error: "};

}  // namespace

std::string rankingCatalogueFile(const Paths& paths) {
    return paths.inWindows(kRankingCatalogueName);
}

bool RankingCatalogue::loadEngineData() {
    if (m_reader == RankReader::Search) {
        return readCatalogue(m_services, {"Web Search", Icon::Critical, "Search_loadEngines_Error: "},
                             [this](const IniFile& file) {
                                 m_engines.clear();
                                 readSearchEngines(file, m_engines);
                             });
    }
    return readCatalogue(
        m_services, {"Web Ranking", Icon::Critical, "Ranking_loadEngines_Error: "},
        [this](const IniFile& file) {
            m_engines.clear();
            readRankEngines(file, m_engines);
        },
        [this] {
            Log& log = m_services.log;
            log.WriteErrorLog("nNumOfEngines: " + std::to_string(m_engines.size()));
            log.WriteErrorLog("sEngineName: " +
                              (m_engines.empty() ? std::string() : m_engines.back().EngineName));
            log.WriteErrorLog("-------------");
        });
}

std::size_t RankingCatalogue::indexOf(std::string_view name) const noexcept {
    const auto found = std::find_if(m_engines.begin(), m_engines.end(), [name](const RankEngine& engine) {
        return equalsNoCase(engine.EngineName, name);
    });
    return found == m_engines.end() ? npos : static_cast<std::size_t>(found - m_engines.begin());
}

bool KeywordCatalogue::loadEngine() {
    return readCatalogue(m_services, kKeywordWords,
                         [this](const IniFile& file) { m_offered = readKeywordEngines(file); });
}

bool KeywordCatalogue::loadEngineData(std::string_view name) {
    return readCatalogue(m_services, kKeywordWords, [this, name](const IniFile& file) {
        m_engine = readKeywordEngine(file, name);
        m_NumOfURLs = readNumOfURLs(file);
    });
}

}  // namespace relay

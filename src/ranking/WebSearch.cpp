// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/WebSearch.h"

#include "core/Failure.h"
#include "core/IniFile.h"
#include "core/InputHistory.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Rows.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "projects/ProjectStore.h"
#include "projects/WebsiteFile.h"

#include <utility>

namespace relay {

namespace {

constexpr std::string_view kHistory = "Search";
constexpr std::string_view kLastKey = "Last";
constexpr std::string_view kLastURLKey = "LastURL";
constexpr int kMostPhrases = 30;

std::string historyFile(const Services& services) {
    return services.paths.inWindows("apikrv.dmc");
}

}  // namespace

std::string searchTerm(const RankEngine& engine, SearchType type, std::string_view text) {
    switch (type) {
        case SearchType::General:
            // Always the first seven characters, wherever the scheme stands.
            return std::string(containsNoCase(text, "http://") ? text.substr(7) : text);
        case SearchType::Url:
            return std::string(trim(engine.URLVisibility)) + GetURLHost(text);
        case SearchType::Link:
            break;
    }
    return "link:" + GetURLHost(text);
}

std::string searchURL(const RankEngine& engine, SearchType type, std::string_view text) {
    std::string address = engine.EngineURL + engine.QueryKeyword1 +
                          EncodeURLValue(searchTerm(engine, type, text)) + engine.QueryKeyword2;
    // Anything else would be opened as a file, or by the program that has claimed the scheme.
    const bool isWeb = startsWithNoCase(address, "http://") || startsWithNoCase(address, "https://");
    if (!isWeb || hasControlByte(address))
        throw Failure("The address of this search is no web address: " + address, 5);
    return address;
}

WebSearch::WebSearch(const Services& services)
    : catalogue(services, RankReader::Search), m_services(services) {}

bool WebSearch::loadWebProfile() {
    m_websites.clear();
    m_last = -1;
    return trap(m_services.prompts, "loadWebProfile_Error: ", [this] {
        const std::string last = ReadIniValue(historyFile(m_services), kHistory, kLastKey);
        for (const ProjectRecord& project : ProjectStore(m_services.paths.ProjectFilePath).loadProject()) {
            for (const WebsiteSlot& website : project.websites) {
                if (!last.empty() && website.file == last) m_last = static_cast<int>(m_websites.size());
                m_websites.push_back({website.name, website.file});
            }
        }
    });
}

std::vector<std::string> WebSearch::loadURLs(const SearchWebsite& website) {
    std::vector<std::string> urls;
    trap(m_services.prompts, "loadURLs_Error: ", [&] {
        Rows rows;
        loadUrlList(website.file, rows);
        for (int row = 0; row < rows.count(); ++row) urls.emplace_back(rows.at(row).text);
    });
    // A choice that cannot be kept is not worth a message.
    WriteIniValue(historyFile(m_services), kHistory, kLastKey, website.file);
    return urls;
}

std::string WebSearch::lastURL() const {
    return ReadIniValue(historyFile(m_services), kHistory, kLastURLKey);
}

void WebSearch::takeURL(std::string_view url) {
    // As above.
    WriteIniValue(historyFile(m_services), kHistory, kLastURLKey, url);
}

void WebSearch::loadHistory() {
    m_history = LoadInputHistory(historyFile(m_services), kHistory, kMostPhrases);
}

void WebSearch::saveHistory() {
    trap(m_services.prompts,
         "saveHistory_Error: ", [this] { SaveInputHistory(historyFile(m_services), kHistory, m_history); });
}

void WebSearch::cmdSearch(std::size_t engine, SearchType type, std::string_view text) {
    Prompts& prompts = m_services.prompts;
    if (text.empty()) {
        prompts.message("Please enter the keywords you would like to search for.", "Search",
                        Icon::Information);
        return;
    }
    if (engine >= catalogue.NumOfEngines()) {
        prompts.message("Please choose a search engine.", "Search", Icon::Information);
        return;
    }
    AddInputHistory(m_history, text);
    const BusyPointer busy(prompts);
    trap(
        prompts, "",
        [&] { openOrTell(prompts, searchURL(catalogue.engines()[engine], type, text), "Search"); }, "Search");
}

}  // namespace relay

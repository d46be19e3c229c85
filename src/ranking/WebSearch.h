// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankingCatalogue.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Services;

// What the web search looks for, in the order of cboSearchType.
enum class SearchType { General, Url, Link };
inline constexpr std::array<std::string_view, 3> kSearchTypes = {
    "General Keyword Search", "URL Verification Search", "Link population Search"};

// The query term before it is encoded.
std::string searchTerm(const RankEngine& engine, SearchType type, std::string_view text);
// The address of the query. Throws Failure for one that is not http or https, or has control characters.
std::string searchURL(const RankEngine& engine, SearchType type, std::string_view text);

// A website of the projects, to choose URLs from.
struct SearchWebsite final {
    std::string name;
    std::string file;
};

// Opens a query on a chosen engine in the user's browser; nothing is fetched.
class WebSearch final {
  public:
    explicit WebSearch(const Services& services);

    RankingCatalogue catalogue;

    // The projects' websites, and the place of the last one chosen (-1: none). A failure is shown.
    bool loadWebProfile();
    const std::vector<SearchWebsite>& websites() const noexcept { return m_websites; }
    int lastWebsite() const noexcept { return m_last; }
    // The URLs of a website, empty ones left out; remembers the choice. A failure is shown.
    std::vector<std::string> loadURLs(const SearchWebsite& website);
    // The URL that was taken last, from any website; empty when there was none.
    std::string lastURL() const;
    void takeURL(std::string_view url);

    // The earlier phrases, newest first.
    void loadHistory();
    void saveHistory();
    const std::vector<std::string>& history() const noexcept { return m_history; }

    // Shows a message when there is no text; otherwise opens the query's address. `engine` is a place in the
    // catalogue.
    void cmdSearch(std::size_t engine, SearchType type, std::string_view text);

  private:
    const Services& m_services;
    std::vector<SearchWebsite> m_websites;
    int m_last = -1;
    std::vector<std::string> m_history;
};

}  // namespace relay

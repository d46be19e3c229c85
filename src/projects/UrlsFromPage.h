// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <string>
#include <string_view>
#include <vector>

namespace relay {

class Prompts;

// "Add URL from Web": collects the links of a live page into the URL list. The caller fetches the page.
class UrlsFromPage final {
  public:
    UrlsFromPage(Rows& urls, Prompts& prompts) : m_urls(urls), m_prompts(prompts) {}

    std::vector<std::string> lstKeywords;  // the filters: links that contain one of them are left out

    // "&Add": false, after a message, for an empty filter.
    bool addFilter(std::string_view text);
    // "&Get": stores the page's address without its scheme and returns the address to fetch.
    std::string setPage(std::string_view txtWebURL);
    const std::string& page() const noexcept { return m_WebURL; }

    // Adds every "href=" of the page, in any tag, except those with "mailto:". One pass over the page.
    void getURL(std::string_view html);
    // The link as an absolute URL, by plain searches: "./" starts at the root of the host, and the last
    // segment of the page's address always counts as a file.
    std::string getFullURL(std::string_view link) const;

  private:
    bool passesFilters(std::string_view url) const;
    std::string getParentURL(std::string_view link) const;

    Rows& m_urls;
    Prompts& m_prompts;
    std::string m_WebURL;
};

}  // namespace relay

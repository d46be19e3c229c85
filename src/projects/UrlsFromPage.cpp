// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/UrlsFromPage.h"

#include "core/Prompts.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "projects/UrlList.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kAttribute = "href=";
constexpr std::string_view kParent = "../";

// The link without its quotes and the rest of its tag.
std::string_view bareLink(std::string_view link) {
    link = trim(link);
    if (link.starts_with('"')) link.remove_prefix(1);
    for (const char end : {' ', '\r', '\n'})
        if (const std::size_t cut = link.find(end); cut != npos) link = trim(link.substr(0, cut));
    if (link.ends_with('"')) link = trim(link.substr(0, link.size() - 1));
    return link;
}

}  // namespace

bool UrlsFromPage::addFilter(std::string_view text) {
    if (text.empty()) {
        m_prompts.message("Please enter a Filter string you want to add.", "Add URL from Web",
                          Icon::Information);
        return false;
    }
    lstKeywords.emplace_back(text);
    return true;
}

std::string UrlsFromPage::setPage(std::string_view txtWebURL) {
    const std::size_t scheme = txtWebURL.find("://");
    m_WebURL = scheme == npos ? txtWebURL : txtWebURL.substr(scheme + 3);
    return "http://" + m_WebURL;
}

void UrlsFromPage::getURL(std::string_view html) {
    m_prompts.status("Resolving data ......");
    const BusyPointer busy(m_prompts);
    trap(
        m_prompts, "getURL_Error: ",
        [&] {
            const RowsBatch batch(m_urls);
            std::size_t from = 0;
            while ((from = findNoCase(html, kAttribute, from)) != npos) {
                from += kAttribute.size();
                const std::size_t end = html.find('>', from);
                if (end == npos) break;
                const std::string_view link = html.substr(from, end - from);
                from = end + 1;
                if (link.empty() || containsNoCase(link, "mailto:")) continue;
                const std::string url = getFullURL(link);
                if (passesFilters(url)) addNewItem(m_urls, url);
            }
        },
        "Get URL");
    m_prompts.status("Done");
}

bool UrlsFromPage::passesFilters(std::string_view url) const {
    return std::none_of(lstKeywords.begin(), lstKeywords.end(), [url](const std::string& filter) {
        return !filter.empty() && containsNoCase(url, filter);
    });
}

std::string UrlsFromPage::getFullURL(std::string_view link) const {
    link = bareLink(link);
    if (startsWithNoCase(link, "http")) return std::string(link);
    const std::string scheme = "http://";
    const std::size_t slash = link.find('/');
    if (slash != npos) {
        const std::string_view prefix = link.substr(0, slash + 1);
        if (prefix == "/" || prefix == "./")
            return scheme + GetURLHost(m_WebURL) + std::string(link.substr(slash));
        if (prefix == kParent) return getParentURL(link);
    }
    return scheme + GetURLDirectory(m_WebURL) + "/" + std::string(link);
}

std::string UrlsFromPage::getParentURL(std::string_view link) const {
    std::size_t climbs = 0;
    for (std::size_t next; (next = link.find(kParent)) != npos; ++climbs)
        link.remove_prefix(next + kParent.size());
    // The last segment of the base is a file, so one more segment goes than there are "../".
    std::string_view base = m_WebURL;
    for (std::size_t slashes = 0; slashes <= climbs; ++slashes) {
        const std::size_t slash = base.rfind('/');
        base = base.substr(0, slash == npos ? 0 : slash);
    }
    return "http://" + std::string(base) + "/" + std::string(link);
}

}  // namespace relay

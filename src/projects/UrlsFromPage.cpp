// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/UrlsFromPage.h"

#include "core/Prompts.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "projects/UrlList.h"
#include "transport/frmHTTP.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kPurpose = "AddURLFromWeb";
constexpr std::string_view kTitle = "Add URL from Web";
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

UrlsFromPage::UrlsFromPage(Rows& urls, frmHTTP& fetcher, Prompts& prompts)
    : m_urls(urls), m_fetcher(fetcher), m_prompts(prompts) {
    const auto fail = [this](const std::string& words) {
        Q_EMIT statusChanged({});
        if (!words.empty()) m_prompts.message(words, kTitle, Icon::Information);
        Q_EMIT ended(false, words);
    };
    m_fetcher.setConsumer(
        kPurpose, {[this, fail](const FetchReply& reply) {
                       reply.isPage() ? takeReply(reply) : fail(fetchProblem(reply));
                   },
                   [fail](const FetchReply& reply) { fail(fetchProblem(reply)); }, [fail] { fail({}); }});
}

UrlsFromPage::~UrlsFromPage() {
    m_fetcher.removeConsumer(kPurpose);
    cancel();
}

bool UrlsFromPage::addFilter(std::string_view text) {
    if (text.empty()) {
        m_prompts.message("Please enter a Filter string you want to add.", kTitle, Icon::Information);
        return false;
    }
    lstKeywords.emplace_back(text);
    return true;
}

bool UrlsFromPage::fetchPage(std::string_view txtWebURL) {
    if (m_fetcher.isRunning()) return false;
    const std::string url = setPage(txtWebURL);
    Q_EMIT statusChanged("Connecting to : " + url);
    return m_fetcher.fetch(kPurpose, url);
}

bool UrlsFromPage::isFetching() const {
    return m_fetcher.isRunning(kPurpose);
}

void UrlsFromPage::cancel() {
    if (isFetching()) m_fetcher.Disconnect();
}

void UrlsFromPage::takeReply(const FetchReply& reply) {
    getURL(reply.text);
    const std::string problem = fetchProblem(reply);
    if (!problem.empty()) m_prompts.message(problem, kTitle, Icon::Information);
    Q_EMIT ended(true, problem);
}

std::string UrlsFromPage::setPage(std::string_view txtWebURL) {
    const std::size_t scheme = txtWebURL.find("://");
    m_WebURL = scheme == npos ? txtWebURL : txtWebURL.substr(scheme + 3);
    return "http://" + m_WebURL;
}

void UrlsFromPage::getURL(std::string_view html) {
    Q_EMIT statusChanged("Resolving data ......");
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
    Q_EMIT statusChanged("Done");
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

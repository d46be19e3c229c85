// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <QObject>

#include <string>
#include <string_view>
#include <vector>

namespace relay {

class Prompts;
class frmHTTP;
struct FetchReply;

// "Add URL from Web": collects the links of a live page into the URL list.
class UrlsFromPage final : public QObject {
    Q_OBJECT
  public:
    // Receives the fetcher's replies for its purpose as long as it lives; all arguments outlive it.
    UrlsFromPage(Rows& urls, frmHTTP& fetcher, Prompts& prompts);
    ~UrlsFromPage() override;  // cancels its request

    std::vector<std::string> lstKeywords;  // the filters: links that contain one of them are left out

    // "&Add": false, after a message, for an empty filter.
    bool addFilter(std::string_view text);
    // "&Get": requests the page, always by http. False, with nothing done, while the fetcher is in use. A
    // page that cannot be had is shown in a box; then, and after cancel(), ended() follows with false.
    bool fetchPage(std::string_view txtWebURL);
    bool isFetching() const;
    void cancel();

    // Stores the page's address without its scheme, against which links are resolved, and returns the address
    // to fetch.
    std::string setPage(std::string_view txtWebURL);
    const std::string& page() const noexcept { return m_WebURL; }
    // Adds every "href=" of the page, in any tag, except those with "mailto:". One pass over the page.
    void getURL(std::string_view html);
    // The link as an absolute URL, by plain searches: "./" starts at the root of the host, and the last
    // segment of the page's address always counts as a file.
    std::string getFullURL(std::string_view link) const;

  Q_SIGNALS:
    void statusChanged(const std::string& text);  // for StatusBar1
    // fetchPage has ended; true when the page's links were collected. `problem` says what is wrong with that
    // page (it was cut), or is empty.
    void ended(bool collected, const std::string& problem);

  private:
    void takeReply(const FetchReply& reply);
    bool passesFilters(std::string_view url) const;
    std::string getParentURL(std::string_view link) const;

    Rows& m_urls;
    frmHTTP& m_fetcher;
    Prompts& m_prompts;
    std::string m_WebURL;
};

}  // namespace relay

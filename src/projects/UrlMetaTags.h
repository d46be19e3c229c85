// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/MetaTags.h"

#include <string>
#include <string_view>

namespace relay {

class OpenWebsite;
class frmHTTP;
struct FetchReply;
struct Services;

// The meta tag commands of the URL list's toolbar. They work on the texts and the local file in the work area
// beside the list.
class UrlMetaTags final {
  public:
    // Receives the fetcher's replies for its purpose as long as it lives; all arguments outlive it.
    UrlMetaTags(OpenWebsite& website, frmHTTP& fetcher, const Services& services);
    ~UrlMetaTags();
    UrlMetaTags(const UrlMetaTags&) = delete;
    UrlMetaTags& operator=(const UrlMetaTags&) = delete;

    // Reads the tags of the selected URL's page, or of the local file where no URL is selected. Beeps while
    // the fetcher is in use.
    void GetMetaTag();
    // Each asks, then writes the texts into the local file.
    void InsertMetaTag();
    void ReplaceMetaTag();
    // For a URL that is no longer the selected one.
    void cancel();

  private:
    void takeReply(const FetchReply& reply);
    void change(MetaTagChange::Way way);

    OpenWebsite& m_website;
    frmHTTP& m_fetcher;
    const Services& m_services;
};

}  // namespace relay

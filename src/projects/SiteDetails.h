// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <string>
#include <string_view>

namespace relay {

class frmHTTP;
struct FetchReply;
struct Services;
struct WebsiteFields;

// "Get Site Details": fills a website's title, keywords and description from a live page.
class SiteDetails final : public QObject {
    Q_OBJECT
  public:
    // Receives the fetcher's replies for its purpose as long as it lives; all arguments outlive it.
    SiteDetails(WebsiteFields& fields, frmHTTP& fetcher, const Services& services);
    ~SiteDetails() override;  // cancels its request

    // cmdGetSiteInfo: asks for the page. Beeps while the fetcher is in use.
    void askAndFetch();
    // Requests the page, by http if the address has no scheme. False, with nothing done, while the fetcher is
    // in use. A page that cannot be had is shown in a box, and the fields stay; then, and after cancel(),
    // ended() follows with false.
    bool fetchPage(std::string_view address);
    // For a website that is no longer shown.
    void cancel();

    // Fills the three fields from the page, also with nothing; an empty page changes nothing. False, after a
    // message, when the page cannot be read to its end; then only what it had is filled in.
    bool SetSiteInfo(std::string_view html);

  Q_SIGNALS:
    void fieldsChanged();
    // fetchPage has ended; true when there was a page. `problem` says what is wrong with it (it was cut, it
    // is empty), or is empty.
    void ended(bool filled, const std::string& problem);

  private:
    void fail(const std::string& words);
    void takeReply(const FetchReply& reply);

    WebsiteFields& m_fields;
    frmHTTP& m_fetcher;
    const Services& m_services;
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CategoryPage.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace relay {

class frmHTTP;
struct EngineLists;
struct FetchReply;
struct Services;
struct WebsiteFields;

// The walk through the live categories of an outside directory, on the website panel's tab of the custom
// engines. Its lists and the chosen path are fields of the website; what was chosen goes into the table of
// custom engines, and from there into the website's file.
class CategoryWalk final : public QObject {
    Q_OBJECT
  public:
    struct Source final {
        // The path stored for an engine in the file of the open website.
        std::function<std::string(std::string_view engine)> storedPath;
        std::function<DirectoryHosts()> hosts;
    };

    // Receives the fetcher's replies for its purpose as long as it lives; all arguments outlive it.
    CategoryWalk(WebsiteFields& fields, EngineLists& lists, frmHTTP& fetcher, const Services& services,
                 Source source);
    ~CategoryWalk() override;  // cancels its request

    // A row of cboCustomEngines was chosen.
    void chooseEngine(int row);
    // A click, and a double click, on a row of lsvCustomMainCategory. Opening a row chooses it too.
    void chooseMainCategory(int row);
    void openMainCategory(int row);
    // A double click on a row of lsvCustomSubCategory: down, or up on the first row.
    void openSubCategory(int row);
    // The website is no longer shown.
    void leave();

    // The place in the table of the engine being walked; -1 before one was chosen.
    std::int16_t CustomEngineIndex() const noexcept { return m_index; }
    // The identifier found for it.
    std::string spaceID() const;
    const std::string& lblReadyToSubmit() const noexcept { return m_ready; }
    bool readyStandsOut() const noexcept { return m_readyStandsOut; }  // it is shown in blue

    void saveCustomCategory(const std::string& path);

  Q_SIGNALS:
    void changed();
    // A page was read, or could not be had; `problem` says why.
    void ended(const std::string& problem);

  private:
    void setCustomEngCategory(std::string_view name);
    void retrieveSubCategory(std::string link);
    void fetchPage(const std::string& words);
    void takeReply(const FetchReply& reply);
    void fail(const std::string& problem);
    void getCustomCateogry(std::string_view html);
    bool setCustomEngineSubCategory(std::string_view html, std::string& nextUrl);
    void setReady(std::string words, bool standsOut);
    std::string engineName() const;
    bool isBusy();

    WebsiteFields& m_fields;
    EngineLists& m_lists;
    frmHTTP& m_fetcher;
    const Services& m_services;
    Source m_source;
    std::int16_t m_index = -1;
    std::string m_address;      // of the page shown
    std::string m_fetchedPath;  // the path when that page was fetched
    std::string m_currentPath;  // of the main category
    std::string m_ready;
    bool m_readyStandsOut = false;
    bool m_addPageNext = false;  // the next page is the add page of dmoz
};

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "projects/Sitemap.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace relay {

// The fields of the website panel, which are the website in memory: the file is written from them and read
// into them. Members are named after their controls.
struct WebsiteFields final {
    std::string txtSiteTitle;
    std::string txtSiteKeywords;
    std::string txtSiteDescription;
    std::string cboWebType;
    std::string cboLanguage;
    std::string mainCategory;  // selected item of lstMainCategory, or empty
    std::string category;      // selected item of lstCategory, or empty
    std::string txtName;
    std::string txtEmail;
    std::string txtCompany;
    std::string txtAddress;
    std::string txtCity;
    std::string txtPostcode;
    std::string txtState;
    std::string cboCountry;
    std::string txtPhone;
    std::string txtFax;
    std::string txtPassword;       // plain text; never logged
    std::int16_t chkBlockFFA = 0;  // 0 or 1
    Rows lsvSiteURLs;              // key and text the URL, icon "HTMLFile", tag the local file or empty
    Rows lsvReports;  // text the URL, sub-item 1 the date, icon "HTMLFile", tag the report's path

    SitemapDates sitemap;  // of earlier imports

    // The custom engines tab: the current choice, not yet in the custom engines' table.
    int cboCustomEngines = -1;  // selected row, -1 for none
    std::string txtCustomCategory;
    Rows lsvCustomMainCategory;
    Rows lsvCustomSubCategory;

    // The work area beside the URL list; never saved.
    std::string txtURLTitle;
    std::string txtURLKeyword;
    std::string txtURLDescription;
    std::string txtURLFileLocation;
    std::string lblURLTitle = "Title:";
    std::string lblURLKeyword = "Keywords:";
    std::string lblURLDescription = "Description:";

    // Sets the column titles of the lists.
    WebsiteFields();

    // Resets everything for a new website except chkBlockFFA and txtURLFileLocation.
    void clear();
    // Empties the texts of the work area and resets its labels; txtURLFileLocation stays.
    void clearWorkArea();
    // Clears the custom engines tab.
    void clearCustomEngine();
};

// The kind of value of a key in section "Web Site Info".
enum class WebsiteKeyKind {
    Text,
    OneLine,  // text whose line breaks become blanks
    Flag,     // 0 or 1
    Kept,     // maintained by the program
};

// A key of the website file with its field and the control that shows it.
struct WebsiteKey final {
    std::string_view name;
    WebsiteKeyKind kind = WebsiteKeyKind::Text;
    std::string WebsiteFields::*field = nullptr;  // of texts
    const char* control = nullptr;                // of texts that are typed
};

// All keys, in the order of writing. The file, the panel and the command line use this table.
inline constexpr WebsiteKey kWebsiteKeys[] = {
    {"Version", WebsiteKeyKind::Kept},
    {"Title", WebsiteKeyKind::Text, &WebsiteFields::txtSiteTitle, "txtSiteTitle"},
    {"Keyword", WebsiteKeyKind::OneLine, &WebsiteFields::txtSiteKeywords, "txtSiteKeywords"},
    {"Description", WebsiteKeyKind::OneLine, &WebsiteFields::txtSiteDescription, "txtSiteDescription"},
    {"WebType", WebsiteKeyKind::Text, &WebsiteFields::cboWebType, "cboWebType"},
    {"Language", WebsiteKeyKind::Text, &WebsiteFields::cboLanguage, "cboLanguage"},
    {"LastURL", WebsiteKeyKind::Kept},
    {"MainCategory", WebsiteKeyKind::Text, &WebsiteFields::mainCategory},
    {"Category", WebsiteKeyKind::Text, &WebsiteFields::category},
    {"YourName", WebsiteKeyKind::Text, &WebsiteFields::txtName, "txtName"},
    {"Email", WebsiteKeyKind::Text, &WebsiteFields::txtEmail, "txtEmail"},
    {"Company", WebsiteKeyKind::Text, &WebsiteFields::txtCompany, "txtCompany"},
    {"Address", WebsiteKeyKind::Text, &WebsiteFields::txtAddress, "txtAddress"},
    {"City", WebsiteKeyKind::Text, &WebsiteFields::txtCity, "txtCity"},
    {"postcode", WebsiteKeyKind::Text, &WebsiteFields::txtPostcode, "txtPostcode"},
    {"State", WebsiteKeyKind::Text, &WebsiteFields::txtState, "txtState"},
    {"Country", WebsiteKeyKind::Text, &WebsiteFields::cboCountry, "cboCountry"},
    {"Phone", WebsiteKeyKind::Text, &WebsiteFields::txtPhone, "txtPhone"},
    {"Fax", WebsiteKeyKind::Text, &WebsiteFields::txtFax, "txtFax"},
    {"Password", WebsiteKeyKind::Text, &WebsiteFields::txtPassword, "txtPassword"},
    {"BlockFFA", WebsiteKeyKind::Flag},
    {"LastReport", WebsiteKeyKind::Kept},
};
// By name, without regard to case; nullptr if there is none.
const WebsiteKey* findWebsiteKey(std::string_view name) noexcept;

}  // namespace relay

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace relay {

// The website panel's fields: the website in memory. Each member is named after its control. There is no
// other website record: the file is written from these fields and read into them.
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
    std::string txtPassword;       // in plain; never logged
    std::int16_t chkBlockFFA = 0;  // 0 or 1
    Rows lsvSiteURLs;              // key and text the URL, icon "HTMLFile", tag the local file or empty
    Rows lsvReports;  // text the URL, sub-item 1 the date, icon "HTMLFile", tag the report's path

    // The custom engines tab: what the user is choosing at present, not yet in the custom engines' table.
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

    // Gives the lists their column titles.
    WebsiteFields();

    // As for a new website. chkBlockFFA and txtURLFileLocation keep their state.
    void clear();
    // Empties the texts of the work area and sets its labels to rest; txtURLFileLocation stays.
    void clearWorkArea();
    // Drops what stands on the custom engines tab.
    void clearCustomEngine();
};

// What a key of section "Web Site Info" holds.
enum class WebsiteKeyKind {
    Text,
    OneLine,  // text whose line breaks become blanks
    Flag,     // 0 or 1
    Kept,     // what the program keeps by itself; nobody sets it
};

// A key of the website file with its field and the control that shows it.
struct WebsiteKey final {
    std::string_view name;
    WebsiteKeyKind kind = WebsiteKeyKind::Text;
    std::string WebsiteFields::*field = nullptr;  // of texts
    const char* control = nullptr;                // of texts that are typed
};

// All of them, in the order of writing. The file, the panel and the command line go by this table.
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
// By name without regard to case; nullptr when there is no such key.
const WebsiteKey* findWebsiteKey(std::string_view name) noexcept;

}  // namespace relay

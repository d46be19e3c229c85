// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <cstdint>
#include <string>

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

    // Empties the texts of the work area and sets its labels to rest; txtURLFileLocation stays.
    void clearWorkArea();
    // Drops what stands on the custom engines tab.
    void clearCustomEngine();
};

// A website's contact details in the order of the panel and of the file. One table for both, so that no field
// can be told in one place and forgotten in another.
struct ContactField final {
    const char* key;  // in section "Web Site Info"
    std::string WebsiteFields::*field;
};
extern const ContactField kContactFields[11];

}  // namespace relay

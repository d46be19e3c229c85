// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/WebsiteFields.h"

namespace relay {

const ContactField kContactFields[11] = {
    {"YourName", &WebsiteFields::txtName},     {"Email", &WebsiteFields::txtEmail},
    {"Company", &WebsiteFields::txtCompany},   {"Address", &WebsiteFields::txtAddress},
    {"City", &WebsiteFields::txtCity},         {"postcode", &WebsiteFields::txtPostcode},
    {"State", &WebsiteFields::txtState},       {"Country", &WebsiteFields::cboCountry},
    {"Phone", &WebsiteFields::txtPhone},       {"Fax", &WebsiteFields::txtFax},
    {"Password", &WebsiteFields::txtPassword},
};

WebsiteFields::WebsiteFields() {
    lsvSiteURLs.setColumns({"Site URLs"});
    lsvReports.setColumns({"URLs", "Date Submitted"});
    lsvCustomMainCategory.setColumns({"Main Category"});
    lsvCustomSubCategory.setColumns({"Sub-Category"});
}

void WebsiteFields::clearWorkArea() {
    txtURLTitle.clear();
    txtURLKeyword.clear();
    txtURLDescription.clear();
    lblURLTitle = "Title:";
    lblURLKeyword = "Keywords:";
    lblURLDescription = "Description:";
}

void WebsiteFields::clearCustomEngine() {
    cboCustomEngines = -1;
    txtCustomCategory.clear();
    lsvCustomMainCategory.clear();
    lsvCustomSubCategory.clear();
}

}  // namespace relay

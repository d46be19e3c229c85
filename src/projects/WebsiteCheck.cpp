// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/WebsiteCheck.h"

#include "core/Prompts.h"
#include "core/Text.h"
#include "core/Trap.h"

#include <string>

namespace relay {

namespace {

struct FieldCheck final {
    MissingField field;
    bool (*missing)(const WebsiteFields&);
};

template <std::string WebsiteFields::*Field>
bool isEmpty(const WebsiteFields& fields) {
    return (fields.*Field).empty();
}

using F = WebsiteFields;
using Tab = WebsiteTab;

// In the order of the check.
const FieldCheck kChecks[] = {
    {{"txtSiteTitle", Tab::SiteInfo, "Please enter your web site title."}, isEmpty<&F::txtSiteTitle>},
    {{"txtSiteKeywords", Tab::SiteInfo, "Please enter the keywords."}, isEmpty<&F::txtSiteKeywords>},
    {{"txtSiteDescription", Tab::SiteInfo, "Please enter your web site description."},
     isEmpty<&F::txtSiteDescription>},
    {{"cboWebType", Tab::SiteInfo, "Please select your web type."}, isEmpty<&F::cboWebType>},
    {{"lsvSiteURLs", Tab::Urls, "Please enter your web site URL."},
     [](const F& fields) { return fields.lsvSiteURLs.empty(); }},
    {{"txtName", Tab::Contact, "Please enter your contact name."}, isEmpty<&F::txtName>},
    {{"txtEmail", Tab::Contact, "Please enter contact email address."}, isEmpty<&F::txtEmail>},
    {{"txtEmail", Tab::Contact, "Invalid email address. Please check your email address"},
     [](const F& fields) { return fields.txtEmail.find('@') == npos; }},
    {{"txtCompany", Tab::Contact, "Please enter your company name, or your own name if it is personal site."},
     isEmpty<&F::txtCompany>},
    {{"txtAddress", Tab::Contact, "Please enter your contact address."}, isEmpty<&F::txtAddress>},
    {{"txtCity", Tab::Contact, "Please enter your city."}, isEmpty<&F::txtCity>},
    {{"txtState", Tab::Contact, "Please enter state."}, isEmpty<&F::txtState>},
    {{"txtPostcode", Tab::Contact, "Please enter postcode."}, isEmpty<&F::txtPostcode>},
    {{"cboCountry", Tab::Contact, "Please enter country."}, isEmpty<&F::cboCountry>},
    {{"txtPhone", Tab::Contact, "Please enter your phone number."}, isEmpty<&F::txtPhone>},
    {{"txtFax", Tab::Contact,
      "Please enter your fax number, or use your phone nuber if no fax number available."},
     isEmpty<&F::txtFax>},
    {{"txtPassword", Tab::Contact, "Please enter a password."}, isEmpty<&F::txtPassword>},
    {{"lstCategory", Tab::Category, "Please select a category you want to submit."}, isEmpty<&F::category>},
};

constexpr std::string_view kSaveAnyway =
    "\r\nNot all the engines use all of the data, however you will need to complete all the fields so the "
    "program can submit the appropriate data to the appropriate engines as required.\r\n\r\nDo you want to "
    "save anyway ?";

}  // namespace

bool breaksGet(std::string_view value) {
    return hasControlByte(replaceAll(replaceAll(value, "\r", ""), "\n", ""));
}

std::string breaksGetNotice(const WebsiteFields& fields) {
    const auto notice = [](std::string_view name) { return std::string(name).append(kBreaksGet); };
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.control && breaksGet(fields.*key.field)) return notice(key.name);
    for (int row = 0; row < fields.lsvSiteURLs.count(); ++row)
        if (breaksGet(fields.lsvSiteURLs.at(row).text)) return notice("URL");
    return {};
}

std::optional<MissingField> firstMissingField(const WebsiteFields& fields) {
    for (const FieldCheck& check : kChecks)
        if (check.missing(fields)) return check.field;
    return std::nullopt;
}

bool isValidFields(const WebsiteFields& fields, Prompts& prompts,
                   const std::function<void(const MissingField&)>& show) {
    bool valid = false;
    trap(prompts, "Module: Validate Files\r\n", [&] {
        const auto missing = firstMissingField(fields);
        if (missing && show) show(*missing);
        valid = !missing ||
                prompts.ask(std::string(missing->message) + std::string(kSaveAnyway), "Save WebSite Details");
    });
    return valid;
}

}  // namespace relay

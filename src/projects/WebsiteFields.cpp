// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/WebsiteFields.h"

#include "core/Text.h"

#include <algorithm>
#include <iterator>

namespace relay {

const WebsiteKey* findWebsiteKey(std::string_view name) noexcept {
    const auto* const found =
        std::find_if(std::begin(kWebsiteKeys), std::end(kWebsiteKeys),
                     [name](const WebsiteKey& key) { return equalsNoCase(key.name, name); });
    return found == std::end(kWebsiteKeys) ? nullptr : found;
}

WebsiteFields::WebsiteFields() {
    lsvSiteURLs.setColumns({"Site URLs"});
    lsvReports.setColumns({"URLs", "Date Submitted"});
    lsvCustomMainCategory.setColumns({"Main Category"});
    lsvCustomSubCategory.setColumns({"Sub-Category"});
}

void WebsiteFields::clear() {
    for (const WebsiteKey& key : kWebsiteKeys)
        if (key.field) (this->*key.field).clear();
    cboLanguage = "English";
    lsvSiteURLs.clear();
    lsvReports.clear();
    sitemap.clear();
    clearCustomEngine();
    clearWorkArea();
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

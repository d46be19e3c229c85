// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/WorkList.h"

#include "core/Failure.h"
#include "core/IniFile.h"
#include "core/Rows.h"
#include "core/Text.h"
#include "projects/WebsiteFile.h"
#include "submission/SubmissionData.h"
#include "submission/SubmissionRecords.h"

namespace relay {

std::string siteKey(std::string_view path) {
    std::string key;
    for (const char c : path) {
        if ((c >= 'A' && c <= 'Z') || c == '\1') key += '\1';
        key += c;
    }
    return key;
}

std::string urlKey(std::string_view websiteFile, std::string_view URL) {
    return siteKey(websiteFile).append("|").append(URL);
}

void listSiteURLs(const Rows& lsvSiteSelection, Rows& lsvSiteSubmitting,
                  const std::function<void()>& listed) {
    const RowsBatch batch(lsvSiteSubmitting);
    lsvSiteSubmitting.clear();
    for (int site = 0; site < lsvSiteSelection.count(); ++site) {
        const Row row(lsvSiteSelection.at(site));
        if (!row.checked) continue;
        const IniFile file = loadWebsiteQuietly(row.tag);
        const int last = toInt16(leadingNumber(file.value(kWebsiteSection, "LastURL")));
        for (int number = 1; number <= last; ++number) {
            const std::string url = file.value(kUrlSection, "URL" + std::to_string(number));
            if (!url.empty())
                lsvSiteSubmitting.tryAdd({urlKey(row.tag, url), url, {row.text, ""}, "URL", row.tag});
            if (lsvSiteSubmitting.count() > kMostOfWork) throw Failure("Overflow", 6);
            listed();
        }
    }
}

}  // namespace relay

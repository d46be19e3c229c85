// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Help.h"

#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"

#include <algorithm>

namespace relay {

const std::vector<HelpTopic>& helpTopics() {
    static const std::vector<HelpTopic> topics = {
        {"SSTab2", "first-website.md#1-a-project"},
        {"tabSiteInfo", "first-website.md#2-a-website"},
        {"tabSiteUrls", "urls.md"},
        {"tabCategoryPage", "first-website.md#2-a-website"},
        {"tabContact", "first-website.md#2-a-website"},
        {"tabReports", "submitting.md#4-reports"},
        {"SSTab3", "first-website.md#4-engines"},
        {"frmPreference", "first-website.md#before-you-start"},
        {"frmUpdateEngines", "update-server.md#what-an-update-does"},
        {"frmAddURL", "urls.md#from-a-local-folder"},
        {"frmAddURLFromWeb", "urls.md#from-a-page"},
        {"frmMetaTag", "meta-tags.md"},
        {"frmMetaTagChanges", "meta-tags.md#write"},
        {"frmOptimizer", "page-tools.md#the-optimizer"},
        {"frmDoorway", "page-tools.md#doorway-pages"},
        {"frmSubmit", "submitting.md#from-the-window"},
        {"frmPreview", "submitting.md#what-an-engine-sees"},
        {"frmEngineBuilder", "custom-engines.md"},
        {"frmRanking", "ranking.md#make-a-profile-and-run-it"},
        {"frmKeywordBuilder", "page-tools.md#the-keyword-builder"},
        {"frmSearch", "ranking.md#search-the-web"},
        {"frmFTPClient", "ftp.md"},
        {"frmFTPLogin", "ftp.md#connect"},
        {"frmNews", "news.md"},
        {"frmAddIns", "add-ins.md"},
        {"frmAbout", kHelpContents},
    };
    return topics;
}

std::string_view helpPageOf(std::string_view screen) {
    const std::vector<HelpTopic>& topics = helpTopics();
    const auto found = std::find_if(topics.begin(), topics.end(),
                                    [screen](const HelpTopic& topic) { return topic.screen == screen; });
    return found == topics.end() ? std::string_view() : found->page;
}

std::string headingName(std::string_view heading) {
    std::string name;
    for (const char c : toLower(heading)) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == ' ') name += '-';
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || byte >= 0x80)
            name += c;
    }
    return name;
}

void openHelp(const Services& services, const std::function<void()>& showGuide) {
    const std::string file = services.paths.inApp("korvel.hlp");
    if (fileExists(file))
        openOrTell(services.prompts, file, "Help File");
    else if (!services.paths.installedGuide.empty())
        showGuide();
    else
        services.prompts.message("Help file is missing or could not be found.", "Help File",
                                 Icon::Information);
}

}  // namespace relay

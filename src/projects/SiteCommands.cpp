// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/SiteCommands.h"

#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "projects/WebsiteFields.h"

namespace relay {

namespace {
constexpr std::string_view kHtmlFilter =
    "HTML files (*.htm;*.html)|*.htm;*.html|Text files (*.txt)|*.txt|All Files (*.*)|*.*|";
}  // namespace

void chooseURL(WebsiteFields& fields, int row) {
    fields.txtURLFileLocation = std::string(fields.lsvSiteURLs.at(row).tag);
    fields.txtURLTitle.clear();
    fields.txtURLKeyword.clear();
    fields.txtURLDescription.clear();
}

void openFileLocation(WebsiteFields& fields, Prompts& prompts) {
    trap(prompts, "OpenFileLocation_Error: ", [&] {
        int filterIndex = 1;
        const std::string file = ShowFileDialog(prompts, false, kHtmlFilter, {}, {}, filterIndex);
        if (file.empty() || !fileExists(file)) return;
        fields.txtURLFileLocation = file;
        const int row = fields.lsvSiteURLs.firstHighlighted();
        if (row >= 0) fields.lsvSiteURLs.setTag(row, file);
    });
}

void viewReport(const WebsiteFields& fields, Prompts& prompts) {
    trap(prompts, "viewReport_Error: ", [&] {
        const int row = fields.lsvReports.firstHighlighted();
        const std::string file = row < 0 ? std::string() : std::string(fields.lsvReports.at(row).tag);
        const std::string name = file.substr(file.find_last_of("/\\") + 1);
        if (containsNoCase(name, ".htm") && fileExists(file))
            prompts.openWithSystem(file);
        else
            prompts.message("Report file is missing and corrupt. Please re-submit and try again.",
                            "View Report", Icon::Critical);
    });
}

void openHelp(const Paths& paths, Prompts& prompts) {
    trap(prompts, "Module: Help\r\n", [&] {
        const std::string file = paths.inApp("korvel.hlp");
        if (fileExists(file))
            prompts.openWithSystem(file);
        else
            prompts.message("Help file is missing or could not be found.", "Help File", Icon::Information);
    });
}

}  // namespace relay

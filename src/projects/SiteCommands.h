// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace relay {

class Prompts;
struct Paths;
struct WebsiteFields;

// A click on a row of lsvSiteURLs: its local file goes to the work area beside the list, whose other fields
// are emptied.
void chooseURL(WebsiteFields& fields, int row);
// cmdFileLocation: asks for an HTML file; one that exists becomes the local file of the selected URL.
void openFileLocation(WebsiteFields& fields, Prompts& prompts);
// cmdViewReport: hands the selected report to the system.
void viewReport(const WebsiteFields& fields, Prompts& prompts);

// "&Contents" of the Help menu.
void openHelp(const Paths& paths, Prompts& prompts);

}  // namespace relay
